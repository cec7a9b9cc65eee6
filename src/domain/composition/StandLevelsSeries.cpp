#include "domain/composition/StandLevelsSeries.h"

#include "base/Numbers.h"
#include "base/Settings.h"
#include "base/ToolBox.h"
#include "base/UserQuestions.h"
#include "store/CycleSums.h"

#include <QHash>
#include <QSet>

#include <cmath>

namespace sendrel {

namespace {

const QString kPleaseWait = QStringLiteral("Please Wait");
constexpr qint32 kDivisions = 8;
constexpr qint16 kTotalColour = 13;

StandLevelsCell cellOf(const TreeSums &s)
{
    // A sum that came to no number is NULL to SQLite, and a NULL sum reads as 0.
    auto number = [](double v) { return std::isnan(v) ? 0.0 : v; };
    return {number(s.sph), number(s.basalArea), number(s.totalVolume), true};
}

StandLevelsCell cellOf(const SpeciesSums &sums, qint64 species)
{
    const auto found = sums.constFind(species);
    return found == sums.constEnd() ? StandLevelsCell{} : cellOf(*found);
}

// The species of the sums in the order of their first tree record.
QList<qint64> speciesInOrder(const QList<CycleSpeciesSums> &sums)
{
    QList<qint64> species;
    QSet<qint64> met;
    for (const CycleSpeciesSums &g : sums) {  // in the order of their first record
        if (!met.contains(g.species)) {
            met.insert(g.species);
            species.append(g.species);
        }
    }
    return species;
}

}  // namespace

StandLevelsSums ReadStandLevelsSums(RunStore &db, const QString &This_RunId, const QString &This_SorH)
{
    StandLevelsSums sums;
    const RunKind kind = KindOfText(This_SorH);
    sums.kind = kind;
    sums.passes = kind == RunKind::Standing ? 2 : 1;
    ReadSnapshot snapshot(db.DBEngine);
    sums.cycles = db.cycles({This_RunId, kind});
    if (sums.cycles.isEmpty())
        return sums;
    const QList<CycleSpeciesSums> own = ReadCycleSums(db.DBEngine, {This_RunId, kind});
    sums.species = speciesInOrder(own);
    QHash<std::pair<qint64, qint64>, StandLevelsCell> first;  // (cycle, species)
    for (const CycleSpeciesSums &g : own)
        first.insert({g.cycle, g.species}, cellOf(g.sums));
    // The second pass: the stand of each year less what was harvested in it.
    QHash<qint64, SpeciesSums> second;
    if (sums.passes == 2)
        second = YearSums(db.DBEngine, This_RunId, own, ReadCycleSums(db.DBEngine, {This_RunId, RunKind::Harvested}), -1.0);
    snapshot.end();

    sums.cells.reserve(sums.cycles.size() * sums.passes * sums.species.size());
    for (const CycleRow &c : std::as_const(sums.cycles)) {
        for (qint64 code : std::as_const(sums.species))
            sums.cells.append(first.value({c.cycle, code}));
        if (sums.passes == 1)
            continue;
        const SpeciesSums year = second.value(c.year);
        for (qint64 code : std::as_const(sums.species))
            sums.cells.append(cellOf(year, code));
    }
    return sums;
}

StandLevelsCycleSums ReadStandLevelsCycleSums(RunStore &db, const QString &This_RunId, const QString &This_SorH)
{
    const RunKind kind = KindOfText(This_SorH);
    StandLevelsCycleSums sums;
    ReadSnapshot snapshot(db.DBEngine);
    sums.cycles = db.cycles({This_RunId, kind});
    if (sums.cycles.isEmpty())
        return sums;
    const QList<CycleSpeciesSums> own = ReadCycleSums(db.DBEngine, {This_RunId, kind});
    snapshot.end();
    sums.species = speciesInOrder(own);
    for (const CycleSpeciesSums &g : own)
        sums.cells.insert({g.cycle, g.species}, cellOf(g.sums));
    return sums;
}

double StandLevelsState::maximum(StandLevelsStatistic statistic) const
{
    switch (statistic) {
    case StandLevelsStatistic::Sph:
        return MaxSph;
    case StandLevelsStatistic::BasalArea:
        return MaxBasalArea;
    case StandLevelsStatistic::MerchVol:
        return MaxMerchVol;
    case StandLevelsStatistic::TotalVol:
        return MaxTotalVol;
    }
    return 0;
}

namespace {

// Each species' value and the "Total" at each point (a cycle, or a pass of it); the largest totals
// go to state.
void plotPoints(const StandLevelsSums &sums, const StandLevelsCharts &charts, StandLevelsState &state)
{
    const int species = static_cast<int>(sums.species.size());
    const qint16 seriesCount = ToInt16(species + 1.0);
    ChartData &gphSph = *charts[0];
    ChartData &gphBasalArea = *charts[1];
    ChartData &gphMerchVol = *charts[2];
    ChartData &gphTotalVol = *charts[3];

    qint16 point = 0;
    for (const CycleRow &c : std::as_const(sums.cycles)) {
        const double year = c.year;
        for (int pass = 1; pass <= sums.passes; ++pass) {
            ++point;
            double totalSph = 0;
            double totalBasalArea = 0;
            double totalVol = 0;
            for (int s = 0; s < species; ++s) {
                const StandLevelsCell &cell = sums.cell(point - 1, s);
                for (ChartData *g : charts) {
                    g->ChartSeries(static_cast<qint16>(s + 1));
                    g->ChartPoint(point);
                }
                // The charts show no stand below nothing; the "Total" keeps what the species sum to.
                auto shown = [pass](double v) { return pass == 2 && v < 0 ? 0.0 : v; };
                gphSph.ChartValue(shown(cell.sph));
                gphBasalArea.ChartValue(shown(cell.basalArea));
                gphMerchVol.ChartValue(shown(cell.totalVol));
                if (cell.found) {
                    totalSph += cell.sph;
                    totalBasalArea += cell.basalArea;
                    totalVol += cell.totalVol;
                }
                for (ChartData *g : charts)
                    g->ChartPointX(year);
            }
            for (ChartData *g : charts) {
                g->ChartSeries(seriesCount);
                g->ChartPoint(point);
                g->ChartPointX(year);
            }
            gphSph.ChartValue(totalSph);
            gphBasalArea.ChartValue(totalBasalArea);
            gphMerchVol.ChartValue(totalVol);
            gphTotalVol.ChartValue(0);
            state.MaxSph = qMax(state.MaxSph, totalSph);
            state.MaxBasalArea = qMax(state.MaxBasalArea, totalBasalArea);
            state.MaxMerchVol = qMax(state.MaxMerchVol, totalVol);
        }
    }
}

// The axes over the years and up to the largest totals, and the legend and colour of each species
// and of the "Total".
void scaleAndLabel(const RunStore &db, const StandLevelsSums &sums, const StandLevelsCharts &charts, const StandLevelsState &state)
{
    const int species = static_cast<int>(sums.species.size());
    const qint16 seriesCount = ToInt16(species + 1.0);
    double minYear = sums.cycles.first().year;
    double maxYear = minYear;
    for (const CycleRow &c : std::as_const(sums.cycles)) {
        minYear = qMin(minYear, double(c.year));
        maxYear = qMax(maxYear, double(c.year));
    }
    qint32 ticks = kDivisions;
    NiceAxisScale(minYear, maxYear, ticks);
    for (ChartData *g : charts) {
        g->ChartIndexMode(0);
        g->ChartSeries(1);
        g->ChartXAxisMin(minYear);
        g->ChartXAxisMax(maxYear);
        g->ChartXAxisTicks(ticks);
    }
    const StandLevelsStatistic order[] = {StandLevelsStatistic::Sph, StandLevelsStatistic::BasalArea, StandLevelsStatistic::MerchVol,
                                          StandLevelsStatistic::TotalVol};
    for (StandLevelsStatistic statistic : order) {
        double low = 0;
        double high = state.maximum(statistic);
        qint32 divisions = kDivisions;
        NiceAxisScale(low, high, divisions);
        ChartData &g = *charts[static_cast<int>(statistic)];
        g.ChartYAxisMin(low);
        g.ChartYAxisMax(high);
        g.ChartYAxisTicks(divisions);
    }
    for (int s = 0; s < species; ++s) {
        const qint16 code = ToInt16(static_cast<double>(sums.species.at(s)));
        for (ChartData *g : charts) {
            g->ChartSeriesLegend(static_cast<qint16>(s + 1), db.SpeciesStrCode(code));
            g->ChartSeriesColour(static_cast<qint16>(s + 1), SpeciesColourIndex(code));
        }
    }
    for (ChartData *g : charts) {
        g->ChartSeriesLegend(seriesCount, QStringLiteral("Total"));
        g->ChartSeriesColour(seriesCount, SpeciesColourIndex(kTotalColour));
    }
}

}  // namespace

StandLevelsState FillStandLevelsCharts(const RunStore &db, const StandLevelsSums &sums, const StandLevelsCharts &charts)
{
    StandLevelsState state;
    state.kind = sums.kind;
    state.CycleRS = sums.cycles;
    state.SpeciesListRS = sums.species;
    for (ChartData *g : charts) {
        g->setKind(ChartData::Kind::TimeLines);
        g->ChartReset(9);
    }
    if (sums.cycles.isEmpty() || sums.species.isEmpty())
        return state;

    const int species = static_cast<int>(sums.species.size());
    const qint16 seriesCount = ToInt16(species + 1.0);
    for (ChartData *g : charts) {
        g->ChartAutoAdvance(false);
        g->ChartIndexMode(1);
        g->ChartPointCount(ToInt16(static_cast<double>(sums.passes) * sums.cycles.size()));
        g->ChartSeriesCount(seriesCount);
        g->ChartPoint(1);
    }
    plotPoints(sums, charts, state);
    scaleAndLabel(db, sums, charts, state);
    state.filled = true;
    return state;
}

StandLevelsState CalcStandLevelsReport(RunStore &db, UserQuestions &questions, const QString &This_RunId, const QString &This_SorH,
                                       const StandLevelsCharts &charts)
{
    for (ChartData *g : charts) {
        g->setKind(ChartData::Kind::TimeLines);
        g->ChartReset(9);
    }
    questions.showBusyMessage(kPleaseWait, QStringLiteral("Retrieving species composition through time graph data"));
    try {
        const StandLevelsSums sums = ReadStandLevelsSums(db, This_RunId, This_SorH);
        if (!sums.cycles.isEmpty() && !sums.species.isEmpty())
            questions.showBusyMessage(kPleaseWait, QStringLiteral("Plotting species composition through time graph data"));
        const StandLevelsState state = FillStandLevelsCharts(db, sums, charts);
        questions.hideBusyMessage();
        return state;
    } catch (...) {
        questions.hideBusyMessage();
        throw;
    }
}

StandLevelsTitles StandLevelsChartTitles(const Settings &settings, StandLevelsStatistic statistic, const QString &runName)
{
    switch (statistic) {
    case StandLevelsStatistic::Sph:
        return {runName + QStringLiteral(": Density by Species"), settings.StandLevels_Sph_LeftTitle, settings.StandLevels_Sph_BottomTitle};
    case StandLevelsStatistic::BasalArea:
        return {runName + QStringLiteral(": Basal Area by Species"), settings.StandLevels_BasalArea_LeftTitle,
                settings.StandLevels_BasalArea_BottomTitle};
    case StandLevelsStatistic::MerchVol:
        return {runName + QStringLiteral(": Gross Total Volume by Species"), settings.StandLevels_MerchVol_LeftTitle,
                settings.StandLevels_MerchVol_BottomTitle};
    case StandLevelsStatistic::TotalVol:
        break;
    }
    return {runName + QStringLiteral(": Total Volume by Species"), settings.StandLevels_TotalVol_LeftTitle,
            settings.StandLevels_TotalVol_BottomTitle};
}

StandLevelsStatistic DefaultStandLevelsStatistic(const Settings &settings)
{
    if (settings.StandLevelsDefault_Sph)
        return StandLevelsStatistic::Sph;
    if (settings.StandLevelsDefault_BasalArea)
        return StandLevelsStatistic::BasalArea;
    if (settings.StandLevelsDefault_MerchVol)
        return StandLevelsStatistic::MerchVol;
    return StandLevelsStatistic::TotalVol;
}

}  // namespace sendrel
