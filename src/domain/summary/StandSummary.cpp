#include "domain/summary/StandSummary.h"

#include "base/SendrelError.h"
#include "store/RunStore.h"

#include <QHash>
#include <QVector>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace sendrel {

namespace {

const QString kSource = QStringLiteral("StandSummary");

// The five sums in the order of the statement's columns: stems, basal area, total, gross
// merchantable and net merchantable volume.
using Sums = std::array<double, 5>;
using SumsBySpecies = QVector<Sums>;   // by species slot

Sums &at(SumsBySpecies &bySpecies, int slot)
{
    if (slot >= bySpecies.size())
        bySpecies.resize(slot + 1, Sums{});
    return bySpecies[slot];
}

// Species codes to slots in the order they are met; the usual small codes through a table.
class SpeciesSlots {
public:
    int slot(qint64 code)
    {
        if (code >= 0 && code < kDense) {
            int &s = m_dense[static_cast<size_t>(code)];
            if (s < 0)
                s = add();
            return s;
        }
        const auto found = m_other.constFind(code);
        return found != m_other.constEnd() ? *found : *m_other.insert(code, add());
    }
    int size() const { return m_count; }

private:
    static constexpr qint64 kDense = 4096;
    int add() { return m_count++; }
    std::vector<int> m_dense = std::vector<int>(kDense, -1);
    QHash<qint64, int> m_other;
    int m_count = 0;
};

// The species of one kind in the order of their first tree record in the table.
class FirstRecords {
public:
    void met(int slot, qint64 record)
    {
        if (slot >= static_cast<int>(m_first.size()))
            m_first.resize(slot + 1, std::numeric_limits<qint64>::max());
        m_first[slot] = std::min(m_first[slot], record);
    }
    QVector<int> order() const
    {
        QVector<std::pair<qint64, int>> met;
        for (int s = 0; s < static_cast<int>(m_first.size()); ++s) {
            if (m_first[s] != std::numeric_limits<qint64>::max())
                met.append({m_first[s], s});
        }
        std::sort(met.begin(), met.end());
        QVector<int> ordered;
        for (const auto &m : std::as_const(met))
            ordered.append(m.second);
        return ordered;
    }

private:
    std::vector<qint64> m_first;
};

struct Header {
    qint32 cycle = 0;
    qint32 year = 0;
    bool standing = true;
    SumsBySpecies bySpecies;   // the header's own trees
};

// A group's total: its species added one after the other in the given order, from 0.
StandSums totalOf(const SumsBySpecies &bySpecies, const QVector<int> &order)
{
    Sums total{};
    for (int slot : order) {
        if (slot >= bySpecies.size())
            continue;
        for (size_t i = 0; i < total.size(); ++i)
            total[i] += bySpecies[slot][i];
    }
    return {total[0], total[1], total[2], total[3], total[4]};
}

StandSums totalOf(const QHash<qint32, SumsBySpecies> &byYear, qint32 year, const QVector<int> &order)
{
    const auto found = byYear.constFind(year);
    return found == byYear.constEnd() ? StandSums{} : totalOf(*found, order);
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
    return std::sqrt(basalArea / sph / kSummaryBasalAreaFactor);
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
    // Every header of the run (a harvested run: of its own list) in table order, each with its
    // tree records in table order, the order in which the composition's grouped statements add
    // them. A header without trees still comes, once, with nulls.
    Statement rows(db.DBEngine,
                   QStringLiteral("SELECT h.rowid, h.Cycle, h.Cycle_Year, h.Standing_Harvested = 'S', e.rowid, e.Species_Code, "
                                  "e.Trees_per_ha, e.Current_Diameter, e.Total_Volume, e.Gross_Merch_Volume, e.MerchVolLessDWB "
                                  "FROM Model_Header AS h NOT INDEXED LEFT JOIN Model_Entries AS e "
                                  "ON e.Run_Id = h.Run_Id AND e.Standing_Harvested = h.Standing_Harvested AND e.Cycle_Number = h.Cycle "
                                  "WHERE h.Run_Id = ?1")
                       + (standingRun ? QString() : QStringLiteral(" AND h.Standing_Harvested = 'H'")));
    rows.bind(1, run.runId);

    SpeciesSlots species;
    FirstRecords firstStanding;
    FirstRecords firstHarvested;
    QList<Header> headers;
    QHash<qint32, SumsBySpecies> afterByYear;     // standing less harvested
    QHash<qint32, SumsBySpecies> removedByYear;   // harvested alone
    bool anyHarvested = false;

    qint64 headerRow = std::numeric_limits<qint64>::min();
    SumsBySpecies *own = nullptr;
    SumsBySpecies *after = nullptr;
    SumsBySpecies *removed = nullptr;
    bool standing = true;
    while (rows.next()) {
        if (rows.integer(0) != headerRow) {
            headerRow = rows.integer(0);
            standing = rows.integer(3) != 0;
            anyHarvested = anyHarvested || !standing;
            headers.append({static_cast<qint32>(rows.integer(1)), static_cast<qint32>(rows.integer(2)), standing, {}});
            // A list's pointers stay valid until the next append, which only a new header makes;
            // a hash's until the next insert, which also only comes here.
            own = standing == standingRun ? &headers.last().bySpecies : nullptr;
            const qint32 year = headers.last().year;
            after = standingRun ? &afterByYear[year] : nullptr;
            removed = standingRun && !standing ? &removedByYear[year] : nullptr;
        }
        if (rows.isNull(4))
            continue;   // a header without trees
        const int slot = species.slot(rows.integer(5));
        (standing ? firstStanding : firstHarvested).met(slot, rows.integer(4));

        // The products as the statements make them; a NULL factor makes a NULL that SUM passes by.
        const bool noTrees = rows.isNull(6);
        const double tph = rows.real(6);
        const double d = rows.real(7);
        const std::array<bool, 5> none = {noTrees, noTrees || rows.isNull(7), noTrees || rows.isNull(8),
                                          noTrees || rows.isNull(9), noTrees || rows.isNull(10)};
        const Sums products = {tph, d * d * kSummaryBasalAreaFactor * tph, rows.real(8) * tph, rows.real(9) * tph,
                               rows.real(10) * tph};
        if (own) {
            Sums &s = at(*own, slot);
            for (size_t i = 0; i < s.size(); ++i)
                s[i] += none[i] ? 0.0 : products[i];
        }
        if (after) {
            // IIf(kind = 'S', 1, -1) times the product: the sign flips exactly.
            Sums &s = at(*after, slot);
            for (size_t i = 0; i < s.size(); ++i)
                s[i] += none[i] ? 0.0 : standing ? products[i] : -products[i];
        }
        if (removed) {
            Sums &s = at(*removed, slot);
            for (size_t i = 0; i < s.size(); ++i)
                s[i] += none[i] ? 0.0 : products[i];
        }
    }

    StandSummary summary;
    summary.run = run;
    summary.hasHarvest = standingRun && anyHarvested;
    const bool anyOfKind = std::any_of(headers.cbegin(), headers.cend(), [&](const Header &h) { return h.standing == standingRun; });
    if (!anyOfKind && !db.runExists(run)) {
        throw SendrelError(ErrNo::InvalidCall, kSource,
                           QStringLiteral("The run %1 is not in the database; another program may have deleted it.").arg(run.displayName()));
    }

    const QVector<int> ownOrder = standingRun ? firstStanding.order() : firstHarvested.order();
    const QVector<int> harvestedOrder = firstHarvested.order();
    for (const Header &h : std::as_const(headers)) {
        if (h.standing != standingRun)
            continue;
        StandSummaryRow row;
        row.cycle = h.cycle;
        row.year = h.year;
        row.before = totalOf(h.bySpecies, ownOrder);
        if (standingRun) {
            row.after = totalOf(afterByYear, h.year, ownOrder);
            if (summary.hasHarvest)
                row.removed = totalOf(removedByYear, h.year, harvestedOrder);
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
