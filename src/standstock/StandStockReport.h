#pragma once

#include "output/ReportFile.h"
#include "standstock/StandStockResults.h"

#include <QList>
#include <QString>
#include <QtGlobal>

#include <functional>

namespace sendrel {

struct TreeModel;

// One selected entry of the list of cycles: its item value and its text, the year.
struct SelectedCycle {
    qint16 cycle;
    QString yearText;
};

// What "View Reports" of a stand and stock window works on.
struct StandStockReportRequest {
    QString This_RunId;
    QString This_RunDesc;            // replaced by the run's parameters from the Run table
    bool density = true;             // optDensity: a stand table; else a stock table
    QList<SelectedCycle> cycles;     // the selected entries, in the list's order
    qint16 iNumofClasses = 0;        // classes of the window's layout
};

// How the compile ended and what the viewer is to show.
struct CompiledStandStockReport {
    bool compiled = false;           // false: nothing to show (no cycle, cancelled, or a failure shown)
    QString ReportFile;              // "" when the generator failed and said so
    qint16 ReportType = 0;           // 0 stand table, 1 stock table
    qint16 ReportOrientation = 1;    // 1 portrait, 2 landscape from 8 species columns
    qint16 columns = 0;
};

// Runs the aggregation of one cycle into the results that the writers read.
using CalcReportFn = std::function<void(qint16 cycle)>;

// The compile of "View Reports", everything but the windows: asks for title and description
// through tm.questions, empties the scratch tables, aggregates and writes each selected cycle,
// and makes the report file. A failure is shown as the event handler shows it and gives
// compiled == false, with the rows written so far left in the scratch tables.
CompiledStandStockReport CompileStandStockReport(TreeModel &tm, StandStockReportRequest &request,
                                                 const StandStockResults &results, const CalcReportFn &calcReport,
                                                 const ReportClock &clock = ReportClockNow);

// The title that the dialog proposes: Run Id and ": Stand Table" or ": Stock Table".
QString StandStockReportTitle(const QString &runId, bool density);

}  // namespace sendrel
