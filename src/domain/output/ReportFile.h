#pragma once

#include "base/SendrelError.h"

#include <QDateTime>
#include <QString>
#include <QtGlobal>

#include <functional>

namespace sendrel {

class RunStore;
class UserQuestions;

// Report kinds: the same numbers as the viewer's ReportType.
namespace ReportKind {
constexpr qint16 Stand = 0;
constexpr qint16 Stock = 1;
constexpr qint16 Species = 2;
}

// Where "Printed on:" takes its time from. The default is SOURCE_DATE_EPOCH (seconds, UTC)
// when that is set, else the local time now, so that reproducible runs give identical files.
using ReportClock = std::function<QDateTime()>;
QDateTime ReportClockNow();

// No Report_Header row for the run: there is nothing to report.
struct ReportDataUnavailable {};

// The report text of the scratch tables Report_Header and Report_Detail (kinds 0, 1) or
// Stand_Levels_Report (kind 2) for the run, with CR LF line ends. columns gets the number of
// species columns of the last block. Throws ReportDataUnavailable without a header row, and
// SendrelError when the tables cannot make a report.
QString MakeReportText(RunStore &db, qint16 kind, const QString &runId, const QString &description, qint16 &columns,
                       const ReportClock &clock = ReportClockNow);

// Writes the text to path as a whole: under a temporary name beside it, then moved into place.
void SaveReportText(const QString &path, const QString &text);

// What the generator made of the scratch tables.
struct GeneratedReport {
    QString path;        // the file written; "" when it failed or no path was given
    QString text;        // "" when it failed
    qint16 columns = 0;  // species columns of the last block
    bool ok() const { return !text.isEmpty(); }
};

// The generator: the report text of the run, written to path unless that is empty. A failure is
// told to the user ("The report data is unavailable.", or "Error printing report" and the cause)
// and leaves no file at path: path is the program's own report file (ReportFilePath), whose
// earlier report is not to pass for this one. A file the user named is written by SaveReportText
// once the text is made.
GeneratedReport GenerateReport(RunStore &db, UserQuestions &questions, qint16 kind, const QString &runId, const QString &path,
                               const QString &description, const ReportClock &clock = ReportClockNow);

// The report file at path (see ReportFilePath) for the run. Returns the path, or "" after
// telling the user what went wrong.
QString WriteReportFile(RunStore &db, UserQuestions &questions, qint16 kind, const QString &runId, const QString &path,
                        const QString &description, qint16 &columns, const ReportClock &clock = ReportClockNow);

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
