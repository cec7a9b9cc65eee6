#pragma once

#include "domain/compare/Comparison.h"
#include "domain/output/ChartData.h"

namespace sendrel {

// What a comparison charts over the years: a statistic of the standing stand (before harvest,
// then after harvest, so that a harvest draws as the drop within its year), or cumulative
// removals and total yield.
struct CompareStatistic {
    QString name;  // as the tool takes it: "gtv", "basal-area", "yield-nmv"
    QString title;  // "Gross total volume"
    QString before;  // the measure's key; the only one where after is empty
    QString after;

    // The title in the units given: "Trees per acre" for imperial stems.
    QString titleIn(UnitSystem units) const;
};
const QList<CompareStatistic> &CompareStatistics();
// The index of a statistic by its name, any case; -1 when there is none.
int CompareStatisticIndex(const QString &name);

// The fractions of the maximum that the diagram draws.
inline constexpr double kReinekeLineFractions[] = {0.25, 0.35, 0.60};

// The charts are in the comparison's units.
// One line per run over the years, the base first and heavier; difference: each run less the
// base, where both have the year (the base then lies on 0).
ChartData CompareChart(const Comparison &comparison, int statistic, bool difference);
// Stems per hectare against quadratic mean diameter on log axes: each run's path through its
// years, a harvest as the step from before to after, and Reineke's lines at 25%, 35% and 60% of
// maxSdi (stems per hectare, as the setting keeps it), named with it.
ChartData DensityDiagram(const Comparison &comparison, double maxSdi);
// Every statistic, then the density diagram: the pages of a chart file.
QList<ChartData> CompareChartPages(const Comparison &comparison, bool difference, double maxSdi);

}  // namespace sendrel
