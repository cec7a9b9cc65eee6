#pragma once

#include <QString>
#include <QStringView>
#include <QtGlobal>

namespace sendrel {

class ChartData;
class ClassLayout;
class StandStockData;
struct Settings;
class RunStore;
struct RunKey;

// The class charts of one cycle (stand table and stock table), filled the same way for the
// sample of the stand and stock window, the chart windows and the headless tool.

struct ClassChartTitles {
    QString top;
    QString left;
    QString bottom;
};

// The sample charts' own titles: "Stand Table" / "Stock Table" over "Density (SPH)" or
// "GTV (cu.m/ha)" and "DBH Class (cm)".
ClassChartTitles SampleChartTitles(bool density);
// A chart window's titles for one year: the run and year (ChartRunYear), ": " and the top title
// of the settings; left and bottom titles from the settings.
ClassChartTitles ChartWindowTitles(const Settings &settings, bool density, const RunKey &run, const QString &yearText);
// A chart window's caption: the settings' top title, ": ", the run and year (ChartRunYear).
QString ChartWindowCaption(const Settings &settings, bool density, const RunKey &run, const QString &yearText);
// "Run Id (Standing, 2020)": the kind is named, since both kinds of a Run Id have charts.
QString ChartRunYear(const RunKey &run, const QString &yearText);
void SetTitles(ChartData &chart, const ClassChartTitles &titles);

// The largest single cell on each chart: the axis follows it, not a sum over species.
struct ClassChartMaxima {
    double density = 0;
    double merchVol = 0;
};

// Fills both charts from the cells of the last CalcReport: one bar group per class, labelled
// by its midpoint (the bucket class's too); one series per species found, in the order of
// SpeciesType, coloured by SpeciesColourIndex and named by its Str_Code; the unrounded cells.
// With no species, one series of zeros and no legend. Titles and axes are left alone.
ClassChartMaxima FillClassCharts(const RunStore &db, const ClassLayout &layout, const StandStockData &data, ChartData &gphDensity,
                                 ChartData &gphMerchVol);

// The sample of the stand and stock window for the first selected cycle: CalcReport, both
// charts filled, their y axes from 0 with 5 divisions. Titles stay as set. The window draws.
ClassChartMaxima PlotSampleCharts(RunStore &db, StandStockData &data, const ClassLayout &layout, const RunKey &run, qint16 cycle,
                                  ChartData &gphDensity, ChartData &gphMerchVol);
// A chart window's PrintChart: both charts filled from the cells of the parent's last
// CalcReport and their y axes set by the typed maximum; with no species the axes stay as they
// were. Returns MaxDensity and MaxMerchVol.
ClassChartMaxima PrintClassCharts(const RunStore &db, const ClassLayout &layout, const StandStockData &data, ChartData &gphDensity,
                                  ChartData &gphMerchVol, QStringView txtYAxisMax);

// The y axis from 0 to the maximum widened by NiceAxisScale with the divisions wished.
void SetYAxisFor(ChartData &chart, double maximum, qint32 divisions);
// The sample's axes: 5 divisions each.
void SetSampleYAxes(ChartData &gphDensity, ChartData &gphMerchVol, const ClassChartMaxima &maxima);
// A chart window's y axis rule: the typed maximum (digits) widens the axis, never cuts data
// off; empty follows the data. 8 divisions.
void ApplyYAxisRule(ChartData &chart, double maximum, QStringView txtYAxisMax);
// The divisions wished on each kind of chart.
inline constexpr qint32 kSampleDivisions = 5;
inline constexpr qint32 kChartWindowDivisions = 8;

// ChartGrid from the grid boxes: 3 both, 2 vertical, 1 horizontal, 0 none.
qint16 GridFrom(bool horizontal, bool vertical);

}  // namespace sendrel
