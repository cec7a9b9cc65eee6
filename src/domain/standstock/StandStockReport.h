#pragma once

#include "domain/output/ReportFile.h"
#include "store/Run.h"

#include <QList>
#include <QString>
#include <QtGlobal>

#include <functional>

namespace sendrel {

class RunStore;
class UserQuestions;
class ClassLayout;
class StandStockData;

// One selected entry of the list of cycles: its item value and its text, the year.
struct SelectedCycle {
    qint16 cycle;
    QString yearText;
};

// What "View Reports" of a stand and stock window works on.
struct StandStockReportRequest {
    QString This_RunId;
    QString This_SorH;  // "S" standing, "H" harvested
    QString This_RunDesc;  // replaced by the run's parameters from the Run table
    bool density = true;  // optDensity: a stand table; else a stock table
    QList<SelectedCycle> cycles;  // the selected entries, in the list's order
    QString reportPath;  // where the report file goes; "" for the text alone
    // The frame's mouse pointer (0 default, 11 hourglass): the hourglass goes up once the
    // dialog has been answered. A caller without a pointer leaves it empty.
    std::function<void(int pointer)> SetMousePointer;
};

// What the viewer is to show of a compiled report.
struct CompiledStandStockReport {
    bool compiled = false;  // false: the user cancelled the dialog, nothing was done
    QString ReportFile;  // "" when no path was given
    QString text;  // the report's text
    qint16 ReportType = 0;  // 0 stand table, 1 stock table
    qint16 ReportOrientation = 1;  // 1 portrait, 2 landscape from 8 species columns
    qint16 columns = 0;
};

// Aggregates one cycle into the data that the writers read.
using CalcReportFn = std::function<void(qint16 cycle)>;

// The compile of "View Reports", everything but the windows: asks for title and description
// through questions, then, reading the run as of one moment (another program's delete comes
// wholly before or wholly after), fills the scratch tables with each selected cycle aggregated
// over the classes in use of layout, and makes the report text and file. The aggregation of a
// cycle is data.CalcReport for the request's run and kind unless calcReport says otherwise.
// Fails (SendrelError, told with ReportFailureMessage) with ErrNo::NothingToReport when no cycle
// is selected or a selected cycle has no trees in the classes, ErrNo::RunMissing when the run is
// not in the database, as the generator fails, or as the database does; a file at the report's
// path is then as it was.
CompiledStandStockReport CompileStandStockReport(RunStore &db, UserQuestions &questions, StandStockReportRequest &request,
                                                 const ClassLayout &layout, StandStockData &data, const ReportClock &clock = ReportClockNow,
                                                 const CalcReportFn &calcReport = {});

// Whether a cycle of the run has tree records.
bool CycleHasTrees(RunStore &db, const RunKey &run, qint64 cycle);
// The refusal of a selected cycle without trees: "Cycle 3 (2010) of SAMPLE, Harvested, has no
// trees." (with inTheClasses: "... has no trees in the diameter classes.").
SendrelError CycleWithoutTrees(const RunKey &run, const SelectedCycle &cycle, bool inTheClasses);

// The title that the dialog proposes: Run Id and ": Stand Table" or ": Stock Table".
QString StandStockReportTitle(const QString &runId, bool density);
// The description that the dialog proposes: "Printed by: ", two line ends, the run's text.
QString StandStockReportDescription(const QString &runDesc);

// The frame's mouse pointers that the compile sets.
inline constexpr int kReportPointerDefault = 0;
inline constexpr int kReportPointerHourglass = 11;

}  // namespace sendrel
