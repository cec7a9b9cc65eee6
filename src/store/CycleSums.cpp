#include "store/CycleSums.h"

#include "store/DBEngine.h"

#include <QSet>

#include <algorithm>
#include <cmath>

namespace sendrel {

namespace {

// A SUM passes by a NULL and a product that is not a number (SQLite makes it NULL).
inline void addProduct(double &sum, double product)
{
    if (!std::isnan(product))
        sum += product;
}

// A column's number, NULL as not a number: so a product with it is none, as in SQL.
double numberOf(const Statement &row, int column)
{
    return row.isNull(column) ? std::nan("") : row.real(column);
}

// Whether the database keeps sums at all: one from before them does not, until a writer makes the table.
bool sumsTableExists(clsDBEngine &engine)
{
    return engine.tableExists(QStringLiteral("Model_Cycle_Sums"));
}

QList<CycleSpeciesSums> keptSums(clsDBEngine &engine, const RunKey &run)
{
    Statement kept(engine, QStringLiteral("SELECT Cycle_Number, Species_Code, First_Record, Last_Record, Sph, Basal_Area, Total_Volume, "
                                          "Gross_Merch_Volume, Merch_Vol_Less_DWB FROM Model_Cycle_Sums "
                                          "WHERE Run_Id = ?1 AND Standing_Harvested = ?2 ORDER BY First_Record"));
    kept.bind(1, run.runId).bind(2, run.letter());
    // A sum that came to no number is kept as NULL.
    const auto number = [&kept](int column) { return numberOf(kept, column); };
    QList<CycleSpeciesSums> groups;
    while (kept.next()) {
        groups.append(
            {kept.integer(0), kept.integer(1), kept.integer(2), kept.integer(3), {number(4), number(5), number(6), number(7), number(8)}});
    }
    return groups;
}

// Whether the kept sums still describe the records: for every cycle of the run's headers and of
// the sums, the last record of the cycle is the one the sums end with. A record added or removed
// at the end of a cycle, or a list deleted and imported again by a program that keeps no sums,
// shows there. The lookups are single index seeks.
bool stillTheRecords(clsDBEngine &engine, const RunKey &run, const QList<CycleSpeciesSums> &kept)
{
    QHash<qint64, qint64> lastOfCycle;
    for (const CycleSpeciesSums &g : kept)
        lastOfCycle[g.cycle] = std::max(lastOfCycle.value(g.cycle, g.lastRecord), g.lastRecord);
    QSet<qint64> cycles(lastOfCycle.keyBegin(), lastOfCycle.keyEnd());
    Statement headers(engine, QStringLiteral("SELECT DISTINCT Cycle FROM Model_Header WHERE Run_Id = ?1 AND Standing_Harvested = ?2"));
    headers.bind(1, run.runId).bind(2, run.letter());
    while (headers.next())
        cycles.insert(headers.integer(0));
    Statement last(
        engine, QStringLiteral("SELECT MAX(rowid) FROM Model_Entries WHERE Run_Id = ?1 AND Standing_Harvested = ?2 AND Cycle_Number = ?3"));
    for (qint64 cycle : std::as_const(cycles)) {
        last.bind(1, run.runId).bind(2, run.letter()).bind(3, cycle);
        const bool hasRecords = last.next() && !last.isNull(0);
        const qint64 lastRecord = hasRecords ? last.integer(0) : 0;
        last.reset();
        const auto found = lastOfCycle.constFind(cycle);
        if (hasRecords != (found != lastOfCycle.constEnd()) || (hasRecords && *found != lastRecord))
            return false;
    }
    return true;
}

}  // namespace

void CycleSumsBuilder::add(qint64 record, qint64 cycle, qint64 species, double treesPerHa, double diameter, double totalVolume,
                           double grossMerchVolume, double netMerchVolume)
{
    const std::pair<qint64, qint64> key{cycle, species};
    auto found = m_index.constFind(key);
    if (found == m_index.constEnd()) {
        found = m_index.insert(key, m_groups.size());
        m_groups.append({cycle, species, record, record, {}});
    }
    CycleSpeciesSums &g = m_groups[*found];
    g.lastRecord = record;
    // The statements' products, factor by factor in their order.
    addProduct(g.sums.sph, treesPerHa);
    addProduct(g.sums.basalArea, diameter * diameter * kBasalAreaFactor * treesPerHa);
    addProduct(g.sums.totalVolume, totalVolume * treesPerHa);
    addProduct(g.sums.grossMerchVolume, grossMerchVolume * treesPerHa);
    addProduct(g.sums.netMerchVolume, netMerchVolume * treesPerHa);
}

void WriteCycleSums(clsDBEngine &engine, const RunKey &run, const QList<CycleSpeciesSums> &groups)
{
    MakeCycleSumsTable(engine);
    DeleteCycleSums(engine, run);
    Statement insert(engine, QStringLiteral("INSERT INTO Model_Cycle_Sums (Run_Id, Standing_Harvested, Cycle_Number, Species_Code, "
                                            "First_Record, Last_Record, Sph, Basal_Area, Total_Volume, Gross_Merch_Volume, "
                                            "Merch_Vol_Less_DWB) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11)"));
    for (const CycleSpeciesSums &g : groups) {
        insert.bind(1, run.runId).bind(2, run.letter()).bind(3, g.cycle).bind(4, g.species).bind(5, g.firstRecord).bind(6, g.lastRecord);
        insert.bind(7, g.sums.sph).bind(8, g.sums.basalArea).bind(9, g.sums.totalVolume).bind(10, g.sums.grossMerchVolume);
        insert.bind(11, g.sums.netMerchVolume).run();
    }
}

void MakeCycleSumsTable(clsDBEngine &engine)
{
    // Looked for first: a server locks the table to make even an index that is there, and writers
    // of other runs would wait for each other.
    if (engine.tableExists(QStringLiteral("Model_Cycle_Sums")))
        return;
    Statement(engine, QStringLiteral("CREATE TABLE IF NOT EXISTS Model_Cycle_Sums (\n"
                                     "  Run_Id TEXT COLLATE NOCASE NOT NULL,\n"
                                     "  Standing_Harvested TEXT COLLATE NOCASE NOT NULL,\n"
                                     "  Cycle_Number INTEGER,\n"
                                     "  Species_Code INTEGER,\n"
                                     "  First_Record INTEGER,\n"
                                     "  Last_Record INTEGER,\n"
                                     "  Sph REAL,\n"
                                     "  Basal_Area REAL,\n"
                                     "  Total_Volume REAL,\n"
                                     "  Gross_Merch_Volume REAL,\n"
                                     "  Merch_Vol_Less_DWB REAL)"))
        .run();
    Statement(engine, QStringLiteral("CREATE INDEX IF NOT EXISTS Model_Cycle_Sums_Run ON Model_Cycle_Sums (Run_Id, Standing_Harvested)"))
        .run();
}

void DeleteCycleSums(clsDBEngine &engine, const RunKey &run)
{
    MakeCycleSumsTable(engine);
    Statement(engine, QStringLiteral("DELETE FROM Model_Cycle_Sums WHERE Run_Id = ?1 AND Standing_Harvested = ?2"))
        .bind(1, run.runId)
        .bind(2, run.letter())
        .run();
}

QList<CycleSpeciesSums> ReadCycleSums(clsDBEngine &engine, const RunKey &run)
{
    ReadSnapshot snapshot(engine);
    if (sumsTableExists(engine)) {
        QList<CycleSpeciesSums> kept = keptSums(engine, run);
        if (stillTheRecords(engine, run, kept))
            return kept;
    }
    return SumCycleRecords(engine, run);
}

QHash<qint64, SpeciesSums> YearSums(clsDBEngine &engine, const QString &runId, const QList<CycleSpeciesSums> &standing,
                                    const QList<CycleSpeciesSums> &harvested, double harvestedSign)
{
    QHash<std::pair<bool, qint64>, QList<const CycleSpeciesSums *>> byCycle;  // (standing, cycle)
    for (const CycleSpeciesSums &g : standing)
        byCycle[{true, g.cycle}].append(&g);
    for (const CycleSpeciesSums &g : harvested)
        byCycle[{false, g.cycle}].append(&g);
    const auto number = [](double v) { return std::isnan(v) ? 0.0 : v; };

    Statement headers(engine, QStringLiteral("SELECT Cycle, Cycle_Year, Standing_Harvested = 'S' FROM Model_Header "
                                             "WHERE Run_Id = ?1 ORDER BY Standing_Harvested = 'S' DESC, rowid"));
    headers.bind(1, runId);
    QHash<qint64, SpeciesSums> byYear;
    while (headers.next()) {
        const bool isStanding = headers.integer(2) != 0;
        const auto groups = byCycle.constFind({isStanding, headers.integer(0)});
        if (groups == byCycle.constEnd())
            continue;
        const double sign = isStanding ? 1.0 : harvestedSign;
        SpeciesSums &year = byYear[headers.integer(1)];
        for (const CycleSpeciesSums *g : *groups) {
            TreeSums &sum = year[g->species];
            sum.sph += sign * number(g->sums.sph);
            sum.basalArea += sign * number(g->sums.basalArea);
            sum.totalVolume += sign * number(g->sums.totalVolume);
            sum.grossMerchVolume += sign * number(g->sums.grossMerchVolume);
            sum.netMerchVolume += sign * number(g->sums.netMerchVolume);
        }
    }
    return byYear;
}

QList<CycleSpeciesSums> SumCycleRecords(clsDBEngine &engine, const RunKey &run)
{
    // Through the index on run, kind and cycle, whose entries of one cycle stand in rowid order:
    // the records of each group in table order.
    Statement records(engine, QStringLiteral("SELECT rowid, Cycle_Number, Species_Code, Trees_per_ha, Current_Diameter, Total_Volume, "
                                             "Gross_Merch_Volume, MerchVolLessDWB FROM Model_Entries "
                                             "WHERE Run_Id = ?1 AND Standing_Harvested = ?2 ORDER BY Cycle_Number, rowid"));
    records.bind(1, run.runId).bind(2, run.letter());
    const auto number = [&records](int column) { return numberOf(records, column); };
    CycleSumsBuilder builder;
    while (records.next()) {
        builder.add(records.integer(0), records.integer(1), records.integer(2), number(3), number(4), number(5), number(6), number(7));
    }
    QList<CycleSpeciesSums> groups = builder.groups();
    std::sort(groups.begin(), groups.end(),
              [](const CycleSpeciesSums &a, const CycleSpeciesSums &b) { return a.firstRecord < b.firstRecord; });
    return groups;
}

}  // namespace sendrel
