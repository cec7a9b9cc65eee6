#pragma once

#include <QDateTime>
#include <QString>
#include <QtGlobal>

#include <functional>

namespace sendrel {

struct TreeModel;

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

// The report text file of the scratch tables Report_Header and Report_Detail (kinds 0, 1)
// or Stand_Levels_Report (kind 2), for tm.CurrentRunId. Returns the file's path, or "" after
// telling the user what went wrong. columns gets the number of species columns of the last block.
QString WriteReportFile(TreeModel &tm, qint16 kind, const QString &description, qint16 &columns,
                        const ReportClock &clock = ReportClockNow);

// Where the report of a kind goes: the program's folder when it can be written, else the Work
// folder; the Run Id, "_", "Stand", "Stock" or "Species", ".txt".
QString ReportFilePath(const TreeModel &tm, qint16 kind);
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
