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

// The reads of one summary see the database as of one moment, also while another program writes.
class ReadSnapshot {
public:
    explicit ReadSnapshot(clsDBEngine &engine) : m_engine(engine), m_open(!engine.InTransaction())
    {
        if (m_open)
            Statement(m_engine, QStringLiteral("BEGIN")).run();
    }
    ~ReadSnapshot()
    {
        if (m_open) {
            try {
                Statement(m_engine, QStringLiteral("ROLLBACK")).run();
            } catch (const SendrelError &) {
                // Nothing was written; a failed end of a read changes nothing.
            }
        }
    }
    void end()
    {
        if (m_open)
            Statement(m_engine, QStringLiteral("COMMIT")).run();
        m_open = false;
    }
    ReadSnapshot(const ReadSnapshot &) = delete;
    ReadSnapshot &operator=(const ReadSnapshot &) = delete;

private:
    clsDBEngine &m_engine;
    bool m_open;
};

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
    ReadSnapshot snapshot(db.DBEngine);
    if (!db.runExists(run)) {
        throw SendrelError(ErrNo::InvalidCall, kSource,
                           QStringLiteral("The run %1 is not in the database; another program may have deleted it.").arg(run.displayName()));
    }
    // Every header of the run (a harvested run: of its own list) in table order, each with its
    // tree records in table order: the order in which the composition's grouped statements add
    // them. The products are the statements' own, factor by factor in their order and with the
    // same constant. A NULL reads as 0 and makes a product of 0 (or -0), which adds nothing, as
    // SUM passes a NULL product by.
    Statement headerRows(db.DBEngine, QStringLiteral("SELECT Cycle, Cycle_Year, Standing_Harvested, Standing_Harvested = 'S' "
                                                     "FROM Model_Header WHERE Run_Id = ?1")
                                          + (standingRun ? QString() : QStringLiteral(" AND Standing_Harvested = 'H'"))
                                          + QStringLiteral(" ORDER BY rowid"));
    headerRows.bind(1, run.runId);
    Statement trees(db.DBEngine, QStringLiteral("SELECT rowid, Species_Code, Trees_per_ha, Current_Diameter, Total_Volume, "
                                                "Gross_Merch_Volume, MerchVolLessDWB FROM Model_Entries "
                                                "WHERE Run_Id = ?1 AND Standing_Harvested = ?2 AND Cycle_Number = ?3"));

    SpeciesSlots species;
    FirstRecords firstStanding;
    FirstRecords firstHarvested;
    QList<Header> headers;
    QHash<qint32, SumsBySpecies> afterByYear;     // standing less harvested
    QHash<qint32, SumsBySpecies> removedByYear;   // harvested alone
    bool anyHarvested = false;
    QList<QString> kinds;
    while (headerRows.next()) {
        headers.append({static_cast<qint32>(headerRows.integer(0)), static_cast<qint32>(headerRows.integer(1)), headerRows.integer(3) != 0, {}});
        kinds.append(headerRows.text(2));
        anyHarvested = anyHarvested || !headers.last().standing;
    }

    std::vector<qsizetype> metUnder;   // by species slot: the last header under which it was met
    for (qsizetype h = 0; h < headers.size(); ++h) {
        Header &header = headers[h];
        const bool standing = header.standing;
        SumsBySpecies *own = standing == standingRun ? &header.bySpecies : nullptr;
        SumsBySpecies *after = standingRun ? &afterByYear[header.year] : nullptr;
        SumsBySpecies *removed = standingRun && !standing ? &removedByYear[header.year] : nullptr;
        FirstRecords &first = standing ? firstStanding : firstHarvested;
        trees.bind(1, run.runId).bind(2, kinds.at(h)).bind(3, static_cast<qint64>(header.cycle));
        while (trees.next()) {
            const int slot = species.slot(trees.integer(1));
            // A header's trees come in table order: a species' first record here is its earliest.
            if (slot >= static_cast<int>(metUnder.size()))
                metUnder.resize(slot + 1, -1);
            if (metUnder[slot] != h) {
                metUnder[slot] = h;
                first.met(slot, trees.integer(0));
            }
            const double tph = trees.real(2);
            const double d = trees.real(3);
            const Sums products = {tph, d * d * kSummaryBasalAreaFactor * tph, trees.real(4) * tph, trees.real(5) * tph,
                                   trees.real(6) * tph};
            if (own) {
                Sums &s = at(*own, slot);
                for (size_t i = 0; i < s.size(); ++i)
                    s[i] += products[i];
            }
            if (after) {
                // IIf(kind = 'S', 1, -1) times the product: the sign flips exactly.
                Sums &s = at(*after, slot);
                for (size_t i = 0; i < s.size(); ++i)
                    s[i] += standing ? products[i] : -products[i];
            }
            if (removed) {
                Sums &s = at(*removed, slot);
                for (size_t i = 0; i < s.size(); ++i)
                    s[i] += products[i];
            }
        }
    }
    snapshot.end();

    StandSummary summary;
    summary.run = run;
    summary.hasHarvest = standingRun && anyHarvested;

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
