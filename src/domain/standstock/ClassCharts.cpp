#include "domain/standstock/ClassCharts.h"

#include "base/Numbers.h"
#include "base/Settings.h"
#include "base/ToolBox.h"
#include "domain/output/ChartData.h"
#include "domain/standstock/ClassLayout.h"
#include "domain/standstock/StandStockData.h"
#include "store/RunStore.h"

namespace sendrel {

ClassChartTitles SampleChartTitles(bool density)
{
    if (density)
        return {QStringLiteral("Stand Table"), QStringLiteral("Density (SPH)"), QStringLiteral("DBH Class (cm)")};
    return {QStringLiteral("Stock Table"), QStringLiteral("GTV (cu.m/ha)"), QStringLiteral("DBH Class (cm)")};
}

ClassChartTitles ChartWindowTitles(const Settings &settings, bool density, const RunKey &run, const QString &yearText)
{
    const QString &top = density ? settings.DensityTopTitle : settings.MerchVolTopTitle;
    return {ChartRunYear(run, yearText) + QStringLiteral(": ") + top, density ? settings.DensityLeftTitle : settings.MerchVolLeftTitle,
            density ? settings.DensityBottomTitle : settings.MerchVolBottomTitle};
}

QString ChartWindowCaption(const Settings &settings, bool density, const RunKey &run, const QString &yearText)
{
    const QString &top = density ? settings.DensityTopTitle : settings.MerchVolTopTitle;
    return top + QStringLiteral(": ") + ChartRunYear(run, yearText);
}

QString ChartRunYear(const RunKey &run, const QString &yearText)
{
    return run.runId + QStringLiteral(" (") + run.word() + QStringLiteral(", ") + yearText + QLatin1Char(')');
}

void SetTitles(ChartData &chart, const ClassChartTitles &titles)
{
    chart.ChartTopTitle(titles.top);
    chart.ChartLeftTitle(titles.left);
    chart.ChartBottomTitle(titles.bottom);
}

ClassChartMaxima FillClassCharts(const RunStore &db, const ClassLayout &layout, const StandStockData &data, ChartData &gphDensity,
                                 ChartData &gphMerchVol)
{
    const int n = layout.ClassCount();
    const int species = data.NextSpecies;
    ClassChartMaxima maxima;
    ChartData *both[] = {&gphDensity, &gphMerchVol};

    for (ChartData *g : both) {
        g->setKind(ChartData::Kind::ClassBars);
        g->ChartReset(9);
        g->ChartAutoAdvance(false);
        g->ChartIndexMode(1);
        g->ChartSeriesCount(static_cast<qint16>(species < 1 ? 1 : species));
        g->ChartPointCount(static_cast<qint16>(n));
        g->ChartSeries(1);
        for (int i = 1; i <= n; ++i) {
            g->ChartPoint(static_cast<qint16>(i));
            g->ChartPointLabel(DefaultText(layout.aClass[i - 1].MidPoint));
        }
    }
    if (species < 1)
        return maxima;  // one series of zeros, as ChartSeriesCount left it

    // The series of each code, from its position in SpeciesType.
    QVector<qint16> seriesOf(data.NumSpecies() + 1, qint16(0));
    for (int k = 0; k < species; ++k) {
        const qint16 code = data.SpeciesType[k];
        if (code >= 0 && code <= data.NumSpecies())
            seriesOf[code] = static_cast<qint16>(k + 1);
    }
    for (int c = 0; c < n; ++c) {
        for (int j = 1; j <= data.NumSpecies(); ++j) {
            const ReportEntryType &e = data.ReportEntry(c, j);
            if (e.Density == 0 || e.Species < 0 || e.Species > data.NumSpecies() || seriesOf[e.Species] == 0)
                continue;
            for (ChartData *g : both) {
                g->ChartSeries(seriesOf[e.Species]);
                g->ChartPoint(static_cast<qint16>(c + 1));
            }
            gphDensity.ChartValue(e.Density);
            gphMerchVol.ChartValue(e.MerchVol);
            maxima.density = qMax(maxima.density, e.Density);
            maxima.merchVol = qMax(maxima.merchVol, e.MerchVol);
        }
    }
    for (int s = 1; s <= species; ++s) {
        const qint16 code = data.SpeciesType[s - 1];
        const QString legend = db.SpeciesStrCode(code);
        for (ChartData *g : both) {
            g->ChartSeries(static_cast<qint16>(s));
            g->ChartSeriesColour(SpeciesColourIndex(code));
            g->ChartSeriesLegend(legend);
        }
    }
    return maxima;
}

ClassChartMaxima PlotSampleCharts(RunStore &db, StandStockData &data, const ClassLayout &layout, const RunKey &run, qint16 cycle,
                                  ChartData &gphDensity, ChartData &gphMerchVol)
{
    data.CalcReport(db, run, cycle);
    const ClassChartMaxima maxima = FillClassCharts(db, layout, data, gphDensity, gphMerchVol);
    SetSampleYAxes(gphDensity, gphMerchVol, maxima);
    return maxima;
}

ClassChartMaxima PrintClassCharts(const RunStore &db, const ClassLayout &layout, const StandStockData &data, ChartData &gphDensity,
                                  ChartData &gphMerchVol, QStringView txtYAxisMax)
{
    const ClassChartMaxima maxima = FillClassCharts(db, layout, data, gphDensity, gphMerchVol);
    // A year without species shows its empty classes on the axes the charts had.
    if (data.NextSpecies < 1)
        return maxima;
    ApplyYAxisRule(gphDensity, maxima.density, txtYAxisMax);
    ApplyYAxisRule(gphMerchVol, maxima.merchVol, txtYAxisMax);
    return maxima;
}

void SetYAxisFor(ChartData &chart, double maximum, qint32 divisions)
{
    double low = 0;
    double high = maximum;
    qint32 ticks = divisions;
    NiceAxisScale(low, high, ticks);
    chart.ChartYAxisMin(low);
    chart.ChartYAxisMax(high);
    chart.ChartYAxisTicks(ticks);
}

void SetSampleYAxes(ChartData &gphDensity, ChartData &gphMerchVol, const ClassChartMaxima &maxima)
{
    SetYAxisFor(gphDensity, maxima.density, kSampleDivisions);
    SetYAxisFor(gphMerchVol, maxima.merchVol, kSampleDivisions);
}

void ApplyYAxisRule(ChartData &chart, double maximum, QStringView txtYAxisMax)
{
    double high = maximum;
    if (!txtYAxisMax.isEmpty()) {
        const double typed = ReadNumber(txtYAxisMax);
        high = typed < maximum ? maximum : typed;
    }
    SetYAxisFor(chart, high, kChartWindowDivisions);
}

qint16 GridFrom(bool horizontal, bool vertical)
{
    if (vertical && horizontal)
        return 3;
    if (vertical)
        return 2;
    if (horizontal)
        return 1;
    return 0;
}

}  // namespace sendrel
