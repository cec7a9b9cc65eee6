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
    for (const CycleSpeciesSums &g : groups) {  // in the order of their first record
        if (!met.contains(g.species)) {
            met.insert(g.species);
            k.species.append(g.species);
        }
        k.byCycle[g.cycle].insert(g.species, g.sums);
    }
    return k;
}

// Summation method: per cycle of one list, the sum of Trees_per_ha * (d / 25.4) ^ 1.605 over its
// tree records, and the list's headers in table order. The kept sums have no such term, so the
// records are read: a cost that grows with them, taken only for this method.
struct SummedSdiList {
    QHash<qint64, double> byCycle;
    QList<CycleRow> headers;
};

SummedSdiList summedSdiOf(clsDBEngine &engine, const RunKey &run)
{
    SummedSdiList list;
    Statement trees(engine, QStringLiteral("SELECT Cycle_Number, Trees_per_ha, Current_Diameter FROM Model_Entries "
                                           "WHERE Run_Id = ?1 AND Standing_Harvested = ?2"));
    trees.bind(1, run.runId).bind(2, run.letter());
    while (trees.next()) {
        if (trees.isNull(1) || trees.isNull(2))
            continue;
        const double term = trees.real(1) * std::pow(trees.real(2) / kReinekeReferenceDiameter, kReinekeSlope);
        if (std::isfinite(term))
            list.byCycle[trees.integer(0)] += term;
    }
    Statement headers(engine, QStringLiteral("SELECT Cycle, Cycle_Year FROM Model_Header "
                                             "WHERE Run_Id = ?1 AND Standing_Harvested = ?2 ORDER BY rowid"));
    headers.bind(1, run.runId).bind(2, run.letter());
    while (headers.next())
        list.headers.append({static_cast<qint32>(headers.integer(0)), static_cast<qint32>(headers.integer(1))});
    return list;
}

// A year's sum over every header of the list with that year, as the kept sums' years add them.
double yearSum(const SummedSdiList &list, qint32 year)
{
    double sum = 0;
    for (const CycleRow &h : list.headers) {
        if (h.year == year)
            sum += list.byCycle.value(h.cycle);
    }
    return sum;
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

QString SdiMethodName(SdiMethod method)
{
    return method == SdiMethod::Summation ? QStringLiteral("summation") : QStringLiteral("reineke");
}

std::optional<SdiMethod> SdiMethodNamed(const QString &name)
{
    for (SdiMethod method : {SdiMethod::Reineke, SdiMethod::Summation}) {
        if (name.compare(SdiMethodName(method), Qt::CaseInsensitive) == 0)
            return method;
    }
    return std::nullopt;
}

SdiMethod SdiMethodOfSetting(const QString &text)
{
    return SdiMethodNamed(text.trimmed()).value_or(SdiMethod::Reineke);
}

StandSummary ReadStandSummary(RunStore &db, const RunKey &run, SdiMethod sdiMethod)
{
    const bool standingRun = run.kind == RunKind::Standing;
    ReadSnapshot snapshot(db.DBEngine);
    if (!db.runExists(run)) {
        throw SendrelError(
            ErrNo::InvalidCall, kSource,
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
    QHash<qint64, SpeciesSums> afterByYear;  // standing less harvested
    QHash<qint64, SpeciesSums> removedByYear;  // harvested alone
    QList<qint64> harvestedSpecies;
    if (standingRun) {
        const QList<CycleSpeciesSums> harvestedGroups = ReadCycleSums(db.DBEngine, {run.runId, RunKind::Harvested});
        Statement anyHarvested(db.DBEngine,
                               QStringLiteral("SELECT EXISTS (SELECT 1 FROM Model_Header WHERE Run_Id = ?1 AND Standing_Harvested = 'H')"));
        anyHarvested.bind(1, run.runId);
        summary.hasHarvest = anyHarvested.next() && anyHarvested.integer(0) != 0;
        anyHarvested.reset();
        afterByYear = YearSums(db.DBEngine, run.runId, ownGroups, harvestedGroups, -1.0);
        removedByYear = YearSums(db.DBEngine, run.runId, {}, harvestedGroups, 1.0);
        harvestedSpecies = kindSums(harvestedGroups).species;
    }
    for (const RunKey &source : summary.hasHarvest ? QList<RunKey>{run, {run.runId, RunKind::Harvested}} : QList<RunKey>{run}) {
        if (const std::optional<RunInfo> info = db.runInfo(source))
            summary.sources.append(*info);
    }
    const bool summation = sdiMethod == SdiMethod::Summation;
    summary.sdiMethod = sdiMethod;
    SummedSdiList ownSdi, harvestedSdi;
    if (summation) {
        ownSdi = summedSdiOf(db.DBEngine, run);
        if (summary.hasHarvest)
            harvestedSdi = summedSdiOf(db.DBEngine, {run.runId, RunKind::Harvested});
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
        if (summation) {
            row.summedSdi.before = ownSdi.byCycle.value(h.cycle);
            if (standingRun) {
                const double removed = yearSum(harvestedSdi, h.year);
                row.summedSdi.after = yearSum(ownSdi, h.year) - removed;
                if (summary.hasHarvest)
                    row.summedSdi.removed = removed;
            }
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
