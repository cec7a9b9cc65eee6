#include "domain/summary/StandSummary.h"

#include "base/SendrelError.h"
#include "store/CycleSums.h"
#include "store/RunStore.h"

#include <QHash>
#include <QSet>

#include <cmath>

namespace sendrel {

namespace {

const QString kSource = QStringLiteral("StandSummary");

// A group's total: its species added one after the other in the given order, from 0, as the
// composition's "Total" adds them. A sum that came to no number counts 0, as a NULL sum reads.
StandSums totalOf(const SpeciesSums &bySpecies, const QList<qint64> &order)
{
    const auto number = [](double v) { return std::isnan(v) ? 0.0 : v; };
    StandSums total;
    for (qint64 species : order) {
        const auto found = bySpecies.constFind(species);
        if (found == bySpecies.constEnd())
            continue;
        total.sph += number(found->sph);
        total.basalArea += number(found->basalArea);
        total.totalVolume += number(found->totalVolume);
        total.grossMerchVolume += number(found->grossMerchVolume);
        total.netMerchVolume += number(found->netMerchVolume);
    }
    return total;
}

// The species of the sums in the order of their first tree record, and the sums of each cycle.
struct KindSums {
    QList<qint64> species;
    QHash<qint64, SpeciesSums> byCycle;
};

KindSums kindSums(const QList<CycleSpeciesSums> &groups)
{
    KindSums k;
    QSet<qint64> met;
    for (const CycleSpeciesSums &g : groups) {   // in the order of their first record
        if (!met.contains(g.species)) {
            met.insert(g.species);
            k.species.append(g.species);
        }
        k.byCycle[g.cycle].insert(g.species, g.sums);
    }
    return k;
}

std::optional<double> increment(double next, double now, qint32 years)
{
    if (years <= 0)
        return std::nullopt;
    return (next - now) / years;
}

}  // namespace

std::optional<double> QuadraticMeanDiameter(double basalArea, double sph)
{
    if (!(sph > 0) || basalArea < 0)
        return std::nullopt;
    return std::sqrt(basalArea / sph / kBasalAreaFactor);
}

std::optional<double> StandDensityIndex(double basalArea, double sph)
{
    if (sph == 0)
        return 0.0;
    const std::optional<double> qmd = QuadraticMeanDiameter(basalArea, sph);
    if (!qmd)
        return std::nullopt;
    return sph * std::pow(*qmd / kReinekeReferenceDiameter, kReinekeSlope);
}

StandSummary ReadStandSummary(RunStore &db, const RunKey &run)
{
    const bool standingRun = run.kind == RunKind::Standing;
    ReadSnapshot snapshot(db.DBEngine);
    if (!db.runExists(run)) {
        throw SendrelError(ErrNo::InvalidCall, kSource,
                           QStringLiteral("The run %1 is not in the database; another program may have deleted it.").arg(run.displayName()));
    }
    // The sums of the run's tree records by cycle and species, as the composition reads them.
    const QList<CycleSpeciesSums> ownGroups = ReadCycleSums(db.DBEngine, run);
    const KindSums own = kindSums(ownGroups);
    QList<CycleRow> headers;
    {
        Statement headerRows(db.DBEngine, QStringLiteral("SELECT Cycle, Cycle_Year FROM Model_Header "
                                                         "WHERE Run_Id = ?1 AND Standing_Harvested = ?2 ORDER BY rowid"));
        headerRows.bind(1, run.runId).bind(2, run.letter());
        while (headerRows.next())
            headers.append({static_cast<qint32>(headerRows.integer(0)), static_cast<qint32>(headerRows.integer(1))});
    }
    StandSummary summary;
    summary.run = run;
    QHash<qint64, SpeciesSums> afterByYear;     // standing less harvested
    QHash<qint64, SpeciesSums> removedByYear;   // harvested alone
    QList<qint64> harvestedSpecies;
    if (standingRun) {
        const QList<CycleSpeciesSums> harvestedGroups = ReadCycleSums(db.DBEngine, {run.runId, RunKind::Harvested});
        Statement anyHarvested(db.DBEngine, QStringLiteral("SELECT EXISTS (SELECT 1 FROM Model_Header WHERE Run_Id = ?1 AND Standing_Harvested = 'H')"));
        anyHarvested.bind(1, run.runId);
        summary.hasHarvest = anyHarvested.next() && anyHarvested.integer(0) != 0;
        anyHarvested.reset();
        afterByYear = YearSums(db.DBEngine, run.runId, ownGroups, harvestedGroups, -1.0);
        removedByYear = YearSums(db.DBEngine, run.runId, {}, harvestedGroups, 1.0);
        harvestedSpecies = kindSums(harvestedGroups).species;
    }
    snapshot.end();

    for (const CycleRow &h : std::as_const(headers)) {
        StandSummaryRow row;
        row.cycle = h.cycle;
        row.year = h.year;
        row.before = totalOf(own.byCycle.value(h.cycle), own.species);
        if (standingRun) {
            row.after = totalOf(afterByYear.value(h.year), own.species);
            if (summary.hasHarvest)
                row.removed = totalOf(removedByYear.value(h.year), harvestedSpecies);
        }
        summary.rows.append(row);
    }
    if (standingRun) {
        for (qsizetype r = 0; r + 1 < summary.rows.size(); ++r) {
            StandSummaryRow &row = summary.rows[r];
            const StandSummaryRow &next = summary.rows.at(r + 1);
            row.paiTotalVolume = increment(next.before.totalVolume, row.after.totalVolume, next.year - row.year);
            row.paiNetMerchVolume = increment(next.before.netMerchVolume, row.after.netMerchVolume, next.year - row.year);
        }
    }
    return summary;
}

}  // namespace sendrel
