#pragma once

#include "base/SendrelError.h"
#include "base/UserQuestions.h"

#include <QDateTime>
#include <QString>
#include <QtGlobal>

#include <functional>

namespace sendrel {

class RunStore;

// Report kinds: the same numbers as the viewer's ReportType.
namespace ReportKind {
constexpr qint16 Stand = 0;
constexpr qint16 Stock = 1;
constexpr qint16 Species = 2;
}  // namespace ReportKind

// Where "Printed on:" takes its time from. The default is SOURCE_DATE_EPOCH (seconds, UTC)
// when that is set, else the local time now, so that reproducible runs give identical files.
using ReportClock = std::function<QDateTime()>;
QDateTime ReportClockNow();

// The report text of the scratch tables Report_Header and Report_Detail (kinds 0, 1) or
// Stand_Levels_Report (kind 2) for the run, with CR LF line ends. columns gets the number of
// species columns of the last block. Throws SendrelError: ErrNo::ReportDataUnavailable without
// a header row, another number when the tables cannot make a report.
QString MakeReportText(RunStore &db, qint16 kind, const QString &runId, const QString &description, qint16 &columns,
                       const ReportClock &clock = ReportClockNow);

// Writes the text to path as a whole (SaveWholeFile): a failure leaves the earlier file as it was.
void SaveReportText(const QString &path, const QString &text);

// What the generator made of the scratch tables.
struct GeneratedReport {
    QString path;  // the file written; "" when no path was given
    QString text;
    qint16 columns = 0;  // species columns of the last block
};

// The generator: the report text of the run, written to path unless that is empty. Throws a
// SendrelError of the generator (see IsGeneratorFailure) when it fails; the file at path is
// then as it was, the report of another run or kind in it included.
GeneratedReport GenerateReport(RunStore &db, qint16 kind, const QString &runId, const QString &path, const QString &description,
                               const ReportClock &clock = ReportClockNow);

// The report file at path (see ReportFilePath) for the run: its path. Fails as GenerateReport.
QString WriteReportFile(RunStore &db, qint16 kind, const QString &runId, const QString &path, const QString &description, qint16 &columns,
                        const ReportClock &clock = ReportClockNow);

// True for a failure of the generator itself, told as "Error printing report".
bool IsGeneratorFailure(const SendrelError &e);
// How a failed report is told, in a window's box and on the tool's stderr alike: "No Cycles Are
// Selected" and the like as information, "The report data is unavailable.", "Error printing
// report" and the cause for the generator, else the event handler's "The following error occured:".
MessageRequest ReportFailureMessage(const SendrelError &e);

// Where the report of a kind goes: the folder, the run's safe file name (SafeFileStem), "_",
// "Stand", "Stock" or "Species", ".txt".
QString ReportFilePath(const QString &folder, const QString &runId, qint16 kind);
QString ReportKindName(qint16 kind);

// The pieces of the report's layout, for whoever needs to line text up with it.
constexpr int kReportCellWidth = 10;
QString LeftCell(const QString &text);
QString RightCell(const QString &text);
// "#,##0": no decimals, a half away from zero, the locale's thousands separator.
QString FormatWholeNumber(double value);
// The date and time in the locale's default text form: short date, time with seconds.
QString DefaultDateTimeText(const QDateTime &when);

}  // namespace sendrel
