#include "domain/compare/ComparisonCharts.h"

#include "base/ToolBox.h"
#include "domain/summary/StandSummary.h"

#include <algorithm>
#include <cmath>

namespace sendrel {

namespace {

constexpr qint32 kDivisions = 8;
constexpr double kBaseWidth = 4.0;
constexpr double kRunWidth = 2.0;
constexpr double kReferenceWidth = 1.0;
constexpr qint16 kReferenceColour = 0;

const CompareMeasure *measureOf(const QString &key, UnitSystem units)
{
    for (const CompareMeasure &m : CompareMeasures(units)) {
        if (m.key == key)
            return &m;
    }
    return nullptr;
}

// The run's colour: the palette's first hand-picked colours, which stand apart at a glance.
qint16 runColour(int run)
{
    return static_cast<qint16>(run + 1);
}

QString runLegend(const Comparison &c, int run)
{
    return c.runs.at(run).run.runId + (run == c.base ? QStringLiteral(" (base)") : QString());
}

// The series of the runs, the base first, so that the heavier base line is drawn under the others
// and keeps the first dash pattern (solid) in black and white.
QList<int> drawingOrder(const Comparison &c)
{
    QList<int> order{c.base};
    for (int r = 0; r < c.runs.size(); ++r) {
        if (r != c.base)
            order.append(r);
    }
    return order;
}

// Rounded axes: x over the years, y from 0 (or below, for a negative value).
void setAxes(ChartData &chart, double firstX, double lastX, double lowest, double highest)
{
    qint32 ticks = kDivisions;
    NiceAxisScale(firstX, lastX, ticks);
    chart.ChartXAxisMin(firstX);
    chart.ChartXAxisMax(lastX);
    chart.ChartXAxisTicks(ticks);
    lowest = std::min(lowest, 0.0);
    highest = std::max(highest, 0.0);
    double zero = 0;
    if (lowest < 0) {
        double depth = -lowest;
        ticks = kDivisions;
        NiceAxisScale(zero, depth, ticks);
        lowest = -depth;
    }
    zero = 0;
    ticks = kDivisions;
    NiceAxisScale(zero, highest, ticks);
    const double step = highest / ticks;
    chart.ChartYAxisMin(lowest);
    chart.ChartYAxisMax(highest);
    chart.ChartYAxisTicks(static_cast<qint32>(std::lround((highest - lowest) / step)));
}

// The power of ten at or below v (down) or at or above it (up): a log axis labels its powers.
double logBound(double v, bool up)
{
    const double power = std::pow(10.0, std::floor(std::log10(v)));
    return up && power < v ? power * 10 : power;
}

QString number(double v)
{
    return QString::number(v, 'f', 0);
}

}  // namespace

const QList<CompareStatistic> &CompareStatistics()
{
    static const QList<CompareStatistic> statistics = {
        {QStringLiteral("sph"), QStringLiteral("Stems per hectare"), QStringLiteral("before_sph"), QStringLiteral("after_sph")},
        {QStringLiteral("basal-area"), QStringLiteral("Basal area"), QStringLiteral("before_basal_area"),
         QStringLiteral("after_basal_area")},
        {QStringLiteral("qmd"), QStringLiteral("Quadratic mean diameter"), QStringLiteral("before_qmd"), QStringLiteral("after_qmd")},
        {QStringLiteral("sdi"), QStringLiteral("Stand density index"), QStringLiteral("before_sdi"), QStringLiteral("after_sdi")},
        {QStringLiteral("gtv"), QStringLiteral("Gross total volume"), QStringLiteral("before_gtv"), QStringLiteral("after_gtv")},
        {QStringLiteral("gmv"), QStringLiteral("Gross merchantable volume"), QStringLiteral("before_gmv"), QStringLiteral("after_gmv")},
        {QStringLiteral("nmv"), QStringLiteral("Net merchantable volume"), QStringLiteral("before_nmv"), QStringLiteral("after_nmv")},
        {QStringLiteral("cumulative-gtv"), QStringLiteral("Cumulative removals GTV"), QStringLiteral("cumulative_gtv"), QString()},
        {QStringLiteral("cumulative-nmv"), QStringLiteral("Cumulative removals NMV"), QStringLiteral("cumulative_nmv"), QString()},
        {QStringLiteral("yield-gtv"), QStringLiteral("Total yield GTV"), QStringLiteral("yield_gtv"), QString()},
        {QStringLiteral("yield-nmv"), QStringLiteral("Total yield NMV"), QStringLiteral("yield_nmv"), QString()},
    };
    return statistics;
}

QString CompareStatistic::titleIn(UnitSystem units) const
{
    return units == UnitSystem::Imperial && name == QLatin1String("sph") ? QStringLiteral("Trees per acre") : title;
}

int CompareStatisticIndex(const QString &name)
{
    const QList<CompareStatistic> &all = CompareStatistics();
    for (qsizetype i = 0; i < all.size(); ++i) {
        if (all[i].name.compare(name, Qt::CaseInsensitive) == 0)
            return static_cast<int>(i);
    }
    return -1;
}

ChartData CompareChart(const Comparison &comparison, int statistic, bool difference)
{
    const CompareStatistic &s = CompareStatistics().at(statistic);
    QList<const CompareMeasure *> parts{measureOf(s.before, comparison.units)};
    if (!s.after.isEmpty())
        parts.append(measureOf(s.after, comparison.units));
    ChartData chart;
    chart.setKind(ChartData::Kind::TimeLines);
    chart.ChartSeriesCount(static_cast<qint16>(comparison.runs.size()));
    double lowest = 0, highest = 0;
    const QList<int> order = drawingOrder(comparison);
    for (qsizetype i = 0; i < order.size(); ++i) {
        const int r = order[i];
        QVector<double> xs, values;
        for (const qint32 year : comparison.years) {
            for (const CompareMeasure *m : std::as_const(parts)) {
                const CompareCell cell = CompareValue(comparison, *m, r, year);
                const std::optional<double> v = difference ? cell.difference : cell.value;
                // A harvest that took nothing draws no step.
                if (!v || (m != parts.first() && !values.isEmpty() && xs.last() == year && values.last() == *v))
                    continue;
                xs.append(year);
                values.append(*v);
                lowest = std::min(lowest, *v);
                highest = std::max(highest, *v);
            }
        }
        const auto series = static_cast<qint16>(i + 1);
        chart.ChartSeriesPath(series, xs, values);
        chart.ChartSeriesLine(series, r == comparison.base ? kBaseWidth : kRunWidth, true);
        chart.ChartSeriesColour(series, runColour(r));
        chart.ChartSeriesLegend(series, runLegend(comparison, r));
    }
    setAxes(chart, comparison.years.first(), comparison.years.last(), lowest, highest);
    const CompareMeasure &first = *parts.first();
    chart.ChartTopTitle((difference ? QStringLiteral("Difference from %1: ").arg(comparison.baseRun().run.runId) : QString()) +
                        s.titleIn(comparison.units) + (parts.size() > 1 ? QStringLiteral(", before and after harvest") : QString()));
    chart.ChartLeftTitle(first.name + QStringLiteral(" (") + first.unit + QLatin1Char(')'));
    chart.ChartBottomTitle(QStringLiteral("Year"));
    chart.ChartGrid(1);
    return chart;
}

ChartData DensityDiagram(const Comparison &comparison, double maxSdi)
{
    const UnitSystem units = comparison.units;
    const CompareMeasure *sph[] = {measureOf(QStringLiteral("before_sph"), units), measureOf(QStringLiteral("after_sph"), units)};
    const CompareMeasure *qmd[] = {measureOf(QStringLiteral("before_qmd"), units), measureOf(QStringLiteral("after_qmd"), units)};
    // Stems and diameters as shown, and the maximum and the reference diameter with them: the
    // lines keep their slope, and at the reference diameter a line's stems are still its SDI.
    const double maximum = ToUnits(maxSdi, Quantity::StemsPerArea, units);
    const double reference = ToUnits(kReinekeReferenceDiameter, Quantity::Diameter, units);
    ChartData chart;
    chart.setKind(ChartData::Kind::TimeLines);
    chart.ChartLogAxes(true);
    const auto lines = static_cast<qint16>(std::size(kReinekeLineFractions));
    chart.ChartSeriesCount(static_cast<qint16>(comparison.runs.size() + lines));
    double xLow = 0, xHigh = 0, yLow = 0, yHigh = 0;
    bool any = false;
    const QList<int> order = drawingOrder(comparison);
    for (qsizetype i = 0; i < order.size(); ++i) {
        const int r = order[i];
        const ComparedRun &run = comparison.runs.at(r);
        QVector<double> xs, values;
        for (const qint32 year : comparison.years) {
            for (int part = 0; part < 2; ++part) {
                const std::optional<double> n = sph[part]->shown(run, year);
                const std::optional<double> d = qmd[part]->shown(run, year);
                // No point without stems; a harvest that took nothing draws no step.
                if (!n || !d || *n <= 0 || (part == 1 && !xs.isEmpty() && xs.last() == *d && values.last() == *n))
                    continue;
                xs.append(*d);
                values.append(*n);
                xLow = any ? std::min(xLow, *d) : *d;
                xHigh = any ? std::max(xHigh, *d) : *d;
                yLow = any ? std::min(yLow, *n) : *n;
                yHigh = any ? std::max(yHigh, *n) : *n;
                any = true;
            }
        }
        const auto series = static_cast<qint16>(i + 1);
        chart.ChartSeriesPath(series, xs, values);
        chart.ChartSeriesLine(series, r == comparison.base ? kBaseWidth : kRunWidth, true);
        chart.ChartSeriesColour(series, runColour(r));
        chart.ChartSeriesLegend(series, runLegend(comparison, r));
    }
    if (!any) {
        xLow = 10, xHigh = 50, yLow = 100, yHigh = 1000;
    }
    xLow = logBound(xLow, false);
    xHigh = logBound(xHigh, true);
    // Reineke's lines over the diameters of the axis: stems = fraction * max * (QMD / 25.4) ^ -1.605,
    // straight on log axes. The axis of stems takes in the lines where they cross the diameters.
    const auto reineke = [maximum, reference](double fraction, double d) {
        return fraction * maximum * std::pow(d / reference, -kReinekeSlope);
    };
    yLow = std::min(yLow, reineke(kReinekeLineFractions[0], xHigh));
    yHigh = std::max(yHigh, reineke(kReinekeLineFractions[lines - 1], xLow));
    yLow = logBound(yLow, false);
    yHigh = logBound(yHigh, true);
    for (qint16 l = 0; l < lines; ++l) {
        const double f = kReinekeLineFractions[l];
        const auto series = static_cast<qint16>(comparison.runs.size() + l + 1);
        chart.ChartSeriesPath(series, {xLow, xHigh}, {reineke(f, xLow), reineke(f, xHigh)});
        chart.ChartSeriesLine(series, kReferenceWidth, false);
        chart.ChartSeriesColour(series, kReferenceColour);
        chart.ChartSeriesLegend(series, QStringLiteral("SDI %1 (%2% of %3)").arg(number(f * maximum), number(f * 100), number(maximum)));
    }
    chart.ChartXAxisMin(xLow);
    chart.ChartXAxisMax(xHigh);
    chart.ChartYAxisMin(yLow);
    chart.ChartYAxisMax(yHigh);
    chart.ChartTopTitle(
        QStringLiteral("Density diagram: %1 against QMD, maximum SDI %2")
            .arg(units == UnitSystem::Imperial ? QStringLiteral("trees per acre") : QStringLiteral("stems per hectare"), number(maximum)));
    chart.ChartLeftTitle(QStringLiteral("SPH (%1)").arg(sph[0]->unit));
    chart.ChartBottomTitle(QStringLiteral("QMD (%1)").arg(qmd[0]->unit));
    chart.ChartGrid(3);
    return chart;
}

QList<ChartData> CompareChartPages(const Comparison &comparison, bool difference, double maxSdi)
{
    QList<ChartData> pages;
    for (int s = 0; s < CompareStatistics().size(); ++s)
        pages.append(CompareChart(comparison, s, difference));
    pages.append(DensityDiagram(comparison, maxSdi));
    return pages;
}

}  // namespace sendrel
