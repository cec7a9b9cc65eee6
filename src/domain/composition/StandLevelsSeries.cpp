#include "domain/composition/StandLevelsSeries.h"

#include "base/Numbers.h"
#include "base/Settings.h"
#include "base/ToolBox.h"
#include "base/UserQuestions.h"

#include <QHash>
#include <QSet>

#include <sqlite3.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace sendrel {

namespace {

const QString kPleaseWait = QStringLiteral("Please Wait");
constexpr qint32 kDivisions = 8;
constexpr qint16 kTotalColour = 13;

// The sums of one group as SQLite's SUM keeps them: the values added as doubles in the order the
// rows come, a NULL adding nothing. (So SQLite 3.40 adds, the library the program is built with;
// from 3.43 on SQLite compensates the rounding of its sums, and the test of the per-point
// statements against this pass would show it.)
struct GroupSums {
    double sph = 0;
    double basalArea = 0;
    double totalVol = 0;
    bool found = false;

    StandLevelsCell cell() const
    {
        // A sum that is not a number is NULL to SQLite; a NULL sum reads as 0.
        auto number = [](double v) { return std::isnan(v) ? 0.0 : v; };
        return {number(sph), number(basalArea), number(totalVol), found};
    }
};

// A product of the statements as SQLite computes it: NULL (nothing to add) when a factor is
// NULL or the result is not a number.
inline void add(double &sum, bool isNull, double product)
{
    if (!isNull && !std::isnan(product))
        sum += product;
}

// Species codes to slots 0, 1, ... in the order they are met; the usual small codes by table.
class SpeciesSlots {
public:
    int slot(qint64 code)
    {
        if (code >= 0 && code < kDense) {
            int &s = m_dense[static_cast<size_t>(code)];
            if (s < 0)
                s = add(code);
            return s;
        }
        auto found = m_other.constFind(code);
        return found != m_other.constEnd() ? *found : *m_other.insert(code, add(code));
    }
    qint64 code(int slot) const { return m_codes.at(slot); }

private:
    static constexpr qint64 kDense = 4096;
    int add(qint64 code)
    {
        m_codes.append(code);
        return static_cast<int>(m_codes.size() - 1);
    }
    std::vector<int> m_dense = std::vector<int>(kDense, -1);
    QHash<qint64, int> m_other;
    QList<qint64> m_codes;
};

using GroupRow = QVector<GroupSums>;   // by species slot

GroupSums &at(GroupRow &row, int slot)
{
    if (slot >= row.size())
        row.resize(slot + 1);
    return row[slot];
}

// The species of the run and kind, in the order of their first tree record in the table.
QList<qint64> speciesInTableOrder(RunStore &db, const QString &runId, const QString &kind)
{
    Statement list(db.DBEngine, QStringLiteral("SELECT Species_Code FROM Model_Entries WHERE Run_Id = ?1 AND Standing_Harvested = ?2 "
                                               "GROUP BY Species_Code ORDER BY MIN(rowid)"));
    list.bind(1, runId).bind(2, kind);
    QList<qint64> species;
    while (list.next())
        species.append(list.integer(0));
    return species;
}

QString trimBlanks(const QString &text)
{
    qsizetype first = 0;
    while (first < text.size() && text.at(first) == QLatin1Char(' '))
        ++first;
    qsizetype last = text.size();
    while (last > first && text.at(last - 1) == QLatin1Char(' '))
        --last;
    return text.mid(first, last - first);
}

// What one pass over a run's tree records gathers.
struct RunScan {
    SpeciesSlots speciesSlots;
    QHash<qint64, GroupRow> byCycle;   // first pass: cycle number -> species
    QHash<qint64, GroupRow> byYear;    // second pass: calendar year -> species
    QVector<qint64> firstRecord;       // by slot: the species' first tree record of the kind
};

// One header of the run: where its trees go.
struct HeaderTarget {
    GroupRow *first = nullptr;    // its cycle's first-pass sums, for the first header of a cycle of the kind
    GroupRow *second = nullptr;   // its year's second-pass sums
    double sign = 1;              // harvested trees count negative in the second pass
};

// Takes the rows of the scanning statement one by one, through a function of the statement's
// WHERE clause: SQLite hands it the values directly, and no row is made for the caller.
class RowCollector {
public:
    RowCollector(RunScan &scan, QHash<qint64, HeaderTarget> targets) : m_scan(scan), m_targets(std::move(targets)) {}

    // (header rowid, record rowid, Species_Code, Trees_per_ha, Current_Diameter, Total_Volume)
    static void call(sqlite3_context *context, int, sqlite3_value **v)
    {
        auto *self = static_cast<RowCollector *>(sqlite3_user_data(context));
        try {
            self->take(v);
            sqlite3_result_int(context, 0);
        } catch (...) {
            sqlite3_result_error_nomem(context);
        }
    }

private:
    void take(sqlite3_value **v)
    {
        const qint64 header = sqlite3_value_int64(v[0]);
        if (header != m_header) {
            m_header = header;
            m_target = m_targets.value(header);
        }
        if (!m_target.first && !m_target.second)
            return;
        const int slot = m_scan.speciesSlots.slot(sqlite3_value_int64(v[2]));
        const bool noTrees = sqlite3_value_type(v[3]) == SQLITE_NULL;
        const bool noBasalArea = noTrees || sqlite3_value_type(v[4]) == SQLITE_NULL;
        const bool noTotalVol = noTrees || sqlite3_value_type(v[5]) == SQLITE_NULL;
        const double trees = sqlite3_value_double(v[3]);
        const double diameter = sqlite3_value_double(v[4]);
        const double sph = trees;
        const double basalArea = diameter * diameter * kBasalAreaFactor * trees;
        const double totalVol = sqlite3_value_double(v[5]) * trees;
        if (m_target.first) {
            GroupSums &g = at(*m_target.first, slot);
            add(g.sph, noTrees, sph);
            add(g.basalArea, noBasalArea, basalArea);
            add(g.totalVol, noTotalVol, totalVol);
            g.found = true;
            if (slot >= m_scan.firstRecord.size())
                m_scan.firstRecord.resize(slot + 1, -1);
            const qint64 record = sqlite3_value_int64(v[1]);
            if (m_scan.firstRecord[slot] < 0 || record < m_scan.firstRecord[slot])
                m_scan.firstRecord[slot] = record;
        }
        if (m_target.second) {
            // IIf(kind = 'S', 1, -1) times the product: the sign flips exactly.
            GroupSums &g = at(*m_target.second, slot);
            add(g.sph, noTrees, m_target.sign * sph);
            add(g.basalArea, noBasalArea, m_target.sign * basalArea);
            add(g.totalVol, noTotalVol, m_target.sign * totalVol);
            g.found = true;
        }
    }

    RunScan &m_scan;
    QHash<qint64, HeaderTarget> m_targets;
    qint64 m_header = std::numeric_limits<qint64>::min();
    HeaderTarget m_target;
};

// The row function lives on the connection for one statement.
class RowFunction {
public:
    RowFunction(clsDBEngine &engine, RowCollector &collector) : m_handle(engine.handle())
    {
        const int rc = sqlite3_create_function_v2(m_handle, kName, 6, SQLITE_UTF8, &collector, &RowCollector::call, nullptr, nullptr, nullptr);
        if (rc != SQLITE_OK)
            throw engine.errorFrom(rc);
    }
    ~RowFunction() { sqlite3_create_function_v2(m_handle, kName, 6, SQLITE_UTF8, nullptr, nullptr, nullptr, nullptr, nullptr); }
    RowFunction(const RowFunction &) = delete;
    RowFunction &operator=(const RowFunction &) = delete;
    static constexpr const char *kName = "sendrel_composition_row";

private:
    sqlite3 *m_handle;
};

// Every header of the run by kind, cycle and table order, each with its trees in table order: the
// order in which the per-point statements add them, whose plans walk the index of Model_Header on
// run, kind and cycle, and for each header the index of Model_Entries on run, kind and cycle.
// (In a database analysed by ANALYZE SQLite may scan Model_Header in table order instead; the
// program never analyses one.) The first pass takes the trees of the kind once per cycle; the
// second every tree under every header, by year, the harvested negative.
RunScan scanRun(RunStore &db, const QString &runId, const QString &kind, bool twoPasses)
{
    const QString ofKindOnly = twoPasses ? QString() : QStringLiteral(" AND h.Standing_Harvested = ?2");
    RunScan scan;
    QHash<qint64, HeaderTarget> targets;
    Statement headers(db.DBEngine, QStringLiteral("SELECT h.rowid, h.Cycle, h.Cycle_Year, h.Standing_Harvested = ?2, h.Standing_Harvested = 'S' "
                                                  "FROM Model_Header AS h INDEXED BY Model_Header_Run WHERE h.Run_Id = ?1")
                                       + ofKindOnly);
    headers.bind(1, runId).bind(2, kind);
    struct Header {
        qint64 rowid;
        qint64 cycle;
        qint64 year;
        bool firstOfCycle;   // the first header of the kind with its cycle
        bool standing;
    };
    QList<Header> list;
    QSet<qint64> cyclesTaken;
    while (headers.next()) {
        const qint64 cycle = headers.integer(1);
        const bool firstOfCycle = headers.integer(3) != 0 && !cyclesTaken.contains(cycle);
        if (firstOfCycle)
            cyclesTaken.insert(cycle);
        list.append({headers.integer(0), cycle, headers.integer(2), firstOfCycle, headers.integer(4) != 0});
    }
    // Every group first, then the places of the groups: an insert may move what a hash holds.
    for (const Header &h : std::as_const(list)) {
        if (h.firstOfCycle)
            scan.byCycle[h.cycle];
        if (twoPasses)
            scan.byYear[h.year];
    }
    for (const Header &h : std::as_const(list)) {
        HeaderTarget t;
        if (h.firstOfCycle)
            t.first = &scan.byCycle[h.cycle];
        if (twoPasses) {
            t.second = &scan.byYear[h.year];
            t.sign = h.standing ? 1.0 : -1.0;
        }
        targets.insert(h.rowid, t);
    }

    RowCollector collector(scan, std::move(targets));
    {
        RowFunction function(db.DBEngine, collector);
        Statement rows(db.DBEngine,
                       QStringLiteral("SELECT COUNT(*) FROM Model_Header AS h INDEXED BY Model_Header_Run CROSS JOIN Model_Entries AS e "
                                      "ON e.Run_Id = h.Run_Id AND e.Standing_Harvested = h.Standing_Harvested AND e.Cycle_Number = h.Cycle "
                                      "WHERE h.Run_Id = ?1")
                           + ofKindOnly + QStringLiteral(" AND ") + QLatin1String(RowFunction::kName)
                           + QStringLiteral("(h.rowid, e.rowid, e.Species_Code, e.Trees_per_ha, e.Current_Diameter, e.Total_Volume)"));
        rows.bind(1, runId);
        if (!twoPasses)
            rows.bind(2, kind);
        while (rows.next()) {
        }
    }
    return scan;
}

// Whether every tree record of the kind has a header of its cycle, asked of the index on run,
// kind and cycle one distinct cycle at a time.
bool allRecordsHaveHeaders(RunStore &db, const QString &runId, const QString &kind)
{
    Statement orphans(db.DBEngine,
                      QStringLiteral("WITH RECURSIVE cycles(n) AS ("
                                     " SELECT MIN(Cycle_Number) FROM Model_Entries WHERE Run_Id = ?1 AND Standing_Harvested = ?2"
                                     " UNION ALL SELECT (SELECT MIN(Cycle_Number) FROM Model_Entries"
                                     "  WHERE Run_Id = ?1 AND Standing_Harvested = ?2 AND Cycle_Number > cycles.n)"
                                     " FROM cycles WHERE cycles.n IS NOT NULL) "
                                     "SELECT EXISTS (SELECT 1 FROM cycles WHERE n IS NOT NULL AND n NOT IN"
                                     " (SELECT Cycle FROM Model_Header WHERE Run_Id = ?1 AND Standing_Harvested = ?2))"
                                     " OR EXISTS (SELECT 1 FROM Model_Entries WHERE Run_Id = ?1 AND Standing_Harvested = ?2 AND Cycle_Number IS NULL)"));
    orphans.bind(1, runId).bind(2, kind);
    const bool some = orphans.next() && orphans.integer(0) != 0;
    orphans.reset();
    return !some;
}

// The species met under the headers, in table order; unless some tree records of the kind have
// no header of their cycle: then the table is asked.
QList<qint64> speciesOf(RunStore &db, const QString &runId, const QString &kind, const RunScan &scan)
{
    if (!allRecordsHaveHeaders(db, runId, kind))
        return speciesInTableOrder(db, runId, kind);
    QList<std::pair<qint64, qint64>> order;   // first record, code
    for (int s = 0; s < scan.firstRecord.size(); ++s) {
        if (scan.firstRecord[s] >= 0)
            order.append({scan.firstRecord[s], scan.speciesSlots.code(s)});
    }
    std::sort(order.begin(), order.end());
    QList<qint64> species;
    for (const auto &[record, code] : order)
        species.append(code);
    return species;
}

StandLevelsCell cellOf(const QHash<qint64, GroupRow> &rows, qint64 key, int slot)
{
    const auto found = rows.constFind(key);
    return found != rows.constEnd() && slot < found->size() ? found->at(slot).cell() : StandLevelsCell{};
}

}  // namespace

QString StandLevelsKind(QStringView This_SorH)
{
    return KindLetter(KindOfText(This_SorH));
}

StandLevelsSums ReadStandLevelsSums(RunStore &db, const QString &This_RunId, const QString &This_SorH)
{
    StandLevelsSums sums;
    sums.kind = StandLevelsKind(This_SorH);
    sums.passes = sums.kind == QLatin1String("S") ? 2 : 1;
    sums.cycles = db.cycles({This_RunId, KindOfText(sums.kind)});
    if (sums.cycles.isEmpty())
        return sums;
    const bool twoPasses = sums.passes == 2;
    RunScan scan = scanRun(db, This_RunId, sums.kind, twoPasses);
    sums.species = speciesOf(db, This_RunId, sums.kind, scan);

    QVector<int> slotOf;
    for (qint64 code : std::as_const(sums.species))
        slotOf.append(scan.speciesSlots.slot(code));
    sums.cells.reserve(sums.cycles.size() * sums.passes * sums.species.size());
    for (const CycleRow &c : std::as_const(sums.cycles)) {
        for (int slot : std::as_const(slotOf))
            sums.cells.append(cellOf(scan.byCycle, c.cycle, slot));
        if (!twoPasses)
            continue;
        for (int slot : std::as_const(slotOf))
            sums.cells.append(cellOf(scan.byYear, c.year, slot));
    }
    return sums;
}

StandLevelsCycleSums ReadStandLevelsCycleSums(RunStore &db, const QString &This_RunId, const QString &This_SorH)
{
    const QString kind = StandLevelsKind(This_SorH);
    StandLevelsCycleSums sums;
    sums.cycles = db.cycles({This_RunId, KindOfText(kind)});
    if (sums.cycles.isEmpty())
        return sums;
    RunScan scan = scanRun(db, This_RunId, kind, false);
    sums.species = speciesOf(db, This_RunId, kind, scan);
    for (auto row = scan.byCycle.cbegin(); row != scan.byCycle.cend(); ++row) {
        for (int slot = 0; slot < row->size(); ++slot) {
            if (row->at(slot).found)
                sums.cells.insert({row.key(), scan.speciesSlots.code(slot)}, row->at(slot).cell());
        }
    }
    return sums;
}

StandLevelsSums ReadStandLevelsSumsPerPoint(RunStore &db, const QString &This_RunId, const QString &This_SorH)
{
    StandLevelsSums sums;
    sums.kind = StandLevelsKind(This_SorH);
    sums.passes = sums.kind == QLatin1String("S") ? 2 : 1;
    clsDBEngine &engine = db.DBEngine;
    const QString run = QuoteSQL(This_RunId);
    const QString constant = DefaultText(kBasalAreaFactor);

    // Without ORDER BY the table's order would be the planner's choice: both lists say theirs.
    engine.SQLString = QStringLiteral("Select * from Model_Header where Run_Id = '") + trimBlanks(run) + QStringLiteral("'")
                       + QStringLiteral(" and Standing_Harvested = '") + sums.kind + QStringLiteral("'") + QStringLiteral(" ORDER BY rowid");
    for (Recordset cycleRS = engine.RetreiveRecords(); !cycleRS.Eof(); cycleRS.MoveNext())
        sums.cycles.append({cycleRS.Fields(QStringLiteral("Cycle")).toInt(), cycleRS.Fields(QStringLiteral("Cycle_Year")).toInt()});
    if (sums.cycles.isEmpty())
        return sums;
    engine.SQLString = QStringLiteral("SELECT species_code FROM Model_Entries WHERE ") + QStringLiteral("run_id = '") + run
                       + QStringLiteral("' AND Standing_Harvested = '") + sums.kind + QStringLiteral("' GROUP BY species_code ORDER BY MIN(rowid)");
    for (Recordset speciesRS = engine.RetreiveRecords(); !speciesRS.Eof(); speciesRS.MoveNext())
        sums.species.append(speciesRS.Fields(0).toLongLong());
    if (sums.species.isEmpty())
        return sums;

    const QString oneKind = QStringLiteral("SELECT cycle_number, model_entries.Species_Code, ") + QStringLiteral("Sum([Trees_per_ha]) AS SPH, ")
                            + QStringLiteral("Sum([current_diameter]*[current_diameter]*") + constant + QStringLiteral("*[trees_per_ha]) AS BasalArea, ")
                            + QStringLiteral("Sum(([MerchVolLessDWB]*[trees_per_ha])) AS MerchVol, ")
                            + QStringLiteral("Sum(([total_volume]*[trees_per_ha])) AS TotalVol  ") + QStringLiteral("FROM model_entries  ")
                            + QStringLiteral("WHERE [Model_Entries].[run_id] = '") + run + QStringLiteral("' ")
                            + QStringLiteral(" AND [Model_Entries].[Standing_Harvested] = '") + sums.kind + QStringLiteral("' ")
                            + QStringLiteral("GROUP BY cycle_number, model_entries.Species_Code");
    const QString sign = QStringLiteral("IIf([Model_Entries].[Standing_Harvested]='S',1,-1)");
    const QString lessHarvest =
        QStringLiteral("SELECT Model_Header.Cycle_Year, model_entries.Species_Code, ") + QStringLiteral("Sum(") + sign + QStringLiteral("*[Trees_per_ha]) AS SPH, ")
        + QStringLiteral("Sum(") + sign + QStringLiteral("*[current_diameter]*[current_diameter]* ") + constant + QStringLiteral("*[trees_per_ha]) AS BasalArea,  ")
        + QStringLiteral("Sum(") + sign + QStringLiteral("*([MerchVolLessDWB]*[trees_per_ha])) AS MerchVol, ")
        + QStringLiteral("Sum(") + sign + QStringLiteral("*([total_volume]*[trees_per_ha])) AS TotalVol  ")
        + QStringLiteral("FROM model_entries INNER JOIN Model_Header ON (model_entries.Standing_Harvested = Model_Header.Standing_Harvested) "
                         "AND (model_entries.Cycle_Number = Model_Header.Cycle) AND (model_entries.Run_Id = Model_Header.Run_Id) ")
        + QStringLiteral("WHERE [Model_Entries].[run_id] = '") + run + QStringLiteral("' ")
        + QStringLiteral("GROUP BY Model_Header.Cycle_Year, model_entries.Species_Code");

    for (const CycleRow &c : std::as_const(sums.cycles)) {
        for (int pass = 1; pass <= sums.passes; ++pass) {
            const QString tail = pass == 2 ? QStringLiteral(" HAVING Model_Header.Cycle_Year = ") + QString::number(c.year)
                                           : QStringLiteral(" HAVING Cycle_number = ") + QString::number(c.cycle);
            for (qint64 code : std::as_const(sums.species)) {
                engine.SQLString = (pass == 2 ? lessHarvest : oneKind) + tail + QStringLiteral(" and species_code = ") + QString::number(code);
                const Recordset entriesRS = engine.RetreiveRecords();
                StandLevelsCell cell;
                if (!entriesRS.Eof()) {
                    cell.found = true;
                    cell.sph = entriesRS.Fields(QStringLiteral("Sph")).toDouble();
                    cell.basalArea = entriesRS.Fields(QStringLiteral("BasalArea")).toDouble();
                    cell.totalVol = entriesRS.Fields(QStringLiteral("TotalVol")).toDouble();
                }
                sums.cells.append(cell);
            }
        }
    }
    return sums;
}

double StandLevelsState::maximum(StandLevelsStatistic statistic) const
{
    switch (statistic) {
    case StandLevelsStatistic::Sph: return MaxSph;
    case StandLevelsStatistic::BasalArea: return MaxBasalArea;
    case StandLevelsStatistic::MerchVol: return MaxMerchVol;
    case StandLevelsStatistic::TotalVol: return MaxTotalVol;
    }
    return 0;
}

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
    ChartData &gphSph = *charts[0];
    ChartData &gphBasalArea = *charts[1];
    ChartData &gphMerchVol = *charts[2];
    ChartData &gphTotalVol = *charts[3];

    double minYear = sums.cycles.first().year;
    double maxYear = minYear;
    qint16 point = 0;
    for (const CycleRow &c : std::as_const(sums.cycles)) {
        const double year = c.year;
        minYear = qMin(minYear, year);
        maxYear = qMax(maxYear, year);
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

StandLevelsTitles StandLevelsChartTitles(const Settings &settings, StandLevelsStatistic statistic, const QString &runId)
{
    switch (statistic) {
    case StandLevelsStatistic::Sph:
        return {runId + QStringLiteral(": Density by Species"), settings.StandLevels_Sph_LeftTitle, settings.StandLevels_Sph_BottomTitle};
    case StandLevelsStatistic::BasalArea:
        return {runId + QStringLiteral(": Basal Area by Species"), settings.StandLevels_BasalArea_LeftTitle,
                settings.StandLevels_BasalArea_BottomTitle};
    case StandLevelsStatistic::MerchVol:
        return {runId + QStringLiteral(": Gross Total Volume by Species"), settings.StandLevels_MerchVol_LeftTitle,
                settings.StandLevels_MerchVol_BottomTitle};
    case StandLevelsStatistic::TotalVol:
        break;
    }
    return {runId + QStringLiteral(": Total Volume by Species"), settings.StandLevels_TotalVol_LeftTitle,
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
