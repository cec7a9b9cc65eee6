#pragma once

#include "domain/standstock/ClassCharts.h"
#include "domain/standstock/StandStockData.h"
#include "store/Run.h"

#include <QString>

namespace sendrel {

class ChartData;
class ClassLayout;
class RunStore;
struct Settings;

// The pages of "View Charts": one chart of the stand or stock table per selected year. The chart
// windows and the headless tool's chart files make a page through the same two steps, so that a
// file holds what the user saw when paging and printing.

// The report tables are emptied when a chart sequence starts: the charts don't read them, and a
// report of the window's earlier selection is gone from here on. One write transaction.
void BeginChartSequence(RunStore &db);

// The year of a list entry as a chart names it: its text as a whole number, without blanks.
QString ChartYearText(const CycleListEntry &entry);

// What a page is made of besides the cells and the classes.
struct ChartPageRequest {
    RunKey run;
    CycleListEntry entry;  // the selected year
    bool density = true;  // the stand table's chart is the one shown and printed, else the stock table's
    QString yAxisMax;  // the typed Y axis maximum, digits; empty follows the data
    qint16 grid = 0;  // ChartGrid of both charts
};

struct ChartPage {
    QString yearText;
    ClassChartTitles titles;  // top: Run Id, kind and year, ": " and the settings' top title
    QString caption;  // the settings' top title, ": ", Run Id, kind and year
    ClassChartMaxima maxima;  // MaxDensity and MaxMerchVol of the page
};

// First step of a page: the cells of the year's cycle (CalcReport) and the year's texts.
// A failure of the aggregation passes on.
ChartPage CompileChartPage(RunStore &db, const Settings &settings, StandStockData &data, const ChartPageRequest &request);

// A whole page, as a chart window shows it once made: the first step, then both charts filled
// with the Y axis rule of the typed maximum (PrintClassCharts), the grid on both, and the year's
// titles on the chart of the table chosen.
ChartPage MakeChartPage(RunStore &db, const Settings &settings, const ClassLayout &layout, StandStockData &data,
                        const ChartPageRequest &request, ChartData &gphDensity, ChartData &gphMerchVol);

}  // namespace sendrel
