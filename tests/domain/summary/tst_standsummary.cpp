#include "support/TestMain.h"

#include "base/SendrelError.h"
#include "domain/composition/StandLevelsSeries.h"
#include "domain/summary/StandSummaryTable.h"
#include "domain/table/TableRender.h"
#include "domain/units/Units.h"
#include "support/RunDatabase.h"

#include <array>
#include <cmath>
#include <tuple>

using namespace sendrel;
using namespace sendrel::test;

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

// A stand of three cycles; the harvest's cycle numbers differ from the standing ones, and it
// has a year (2015) that the standing list lacks.
void addHandRun(RunDatabase &db)
{
    db.addRun(QStringLiteral("HAND"), QStringLiteral("S"));
    db.addRun(QStringLiteral("HAND"), QStringLiteral("H"));
    for (const auto &[kind, cycle, year] : {std::tuple{"S", 1, 2000}, {"S", 2, 2010}, {"S", 3, 2025}, {"H", 11, 2010}, {"H", 12, 2015}})
        db.addHeader(QStringLiteral("HAND"), QString::fromLatin1(kind), cycle, year);
    const struct {
        const char *kind;
        int cycle, species;
        double d, tph, total, gross, net;
    } trees[] = {{"S", 1, 1, 20, 100, 0.3, 0.25, 0.2}, {"S", 1, 2, 10, 200, 0.05, 0.04, 0.03}, {"S", 2, 1, 30, 100, 0.8, 0.7, 0.6},
                 {"S", 2, 2, 20, 100, 0.3, 0.25, 0.2}, {"H", 11, 2, 20, 60, 0.3, 0.25, 0.2},  {"S", 3, 1, 40, 100, 1.5, 1.3, 1.1},
                 {"H", 12, 1, 30, 10, 0.8, 0.7, 0.6}};
    Statement add(db.db.DBEngine, QStringLiteral("INSERT INTO Model_Entries (Run_Id, Standing_Harvested, Cycle_Number, Species_Code, "
                                                 "Current_Diameter, Trees_per_ha, Total_Volume, Gross_Merch_Volume, MerchVolLessDWB) "
                                                 "VALUES ('HAND', ?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8)"));
    for (const auto &t : trees)
        add.bind(1, QString::fromLatin1(t.kind)).bind(2, t.cycle).bind(3, t.species).bind(4, t.d).bind(5, t.tph).bind(6, t.total).bind(7, t.gross).bind(8, t.net).run();
}

qsizetype columnOf(RunKind kind, const QString &key)
{
    const QList<SummaryColumn> columns = StandSummaryColumns(kind);
    for (qsizetype c = 0; c < columns.size(); ++c) {
        if (columns[c].key == key)
            return c;
    }
    return -1;
}

// None also where the summary has no row of that year.
std::optional<double> cellOf(const StandSummary &s, int year, const QString &key)
{
    for (const StandSummaryRow &row : s.rows) {
        if (row.year == year)
            return StandSummaryColumns(s.run.kind).at(columnOf(s.run.kind, key)).value(row);
    }
    return std::nullopt;
}

}  // namespace

class tst_standsummary : public QObject {
    Q_OBJECT

    std::unique_ptr<RunDatabase> m_db;

private slots:
    void init()
    {
        m_db = std::make_unique<RunDatabase>();
        addHandRun(*m_db);
    }
    void cleanup() { m_db.reset(); }

    // The hand-made run, cell by cell: sums, the formulas of QMD, SDI and PAI, removals matched by
    // year, a harvest year without a standing cycle left out, and the harvested run's own table.
    void numbers_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<int>("year");
        QTest::addColumn<QString>("key");
        QTest::addColumn<double>("expected");
        const auto row = [](const char *kind, int year, const char *key, double expected) {
            QTest::addRow("%s %d %s", kind, year, key) << QString::fromLatin1(kind) << year << QString::fromLatin1(key) << expected;
        };
        row("S", 2000, "before_sph", 300);
        row("S", 2000, "before_basal_area", 4.7123889803844001);       // k * (20² * 100 + 10² * 200)
        row("S", 2000, "before_qmd", 14.142135623730949);              // sqrt(BA / SPH / k) = sqrt(200)
        row("S", 2000, "before_sdi", 117.20326522093313);              // SPH * (QMD / 25.4) ^ 1.605
        row("S", 2000, "before_gmv", 33);
        row("S", 2000, "before_nmv", 26);
        row("S", 2000, "removed_sph", 0);                              // a harvested list, but no harvest that year
        row("S", 2000, "removed_qmd", kNone);
        row("S", 2000, "after_gtv", 40);
        row("S", 2000, "pai_gtv", 7);                                  // (110 - 40) / 10
        row("S", 2000, "pai_nmv", 5.4);                                // (80 - 26) / 10
        row("S", 2010, "removed_sph", 60);                             // harvested cycle 11, matched by its year
        row("S", 2010, "removed_qmd", 20);
        row("S", 2010, "removed_gmv", 15);
        row("S", 2010, "removed_nmv", 12);
        row("S", 2010, "after_sph", 140);
        row("S", 2010, "after_qmd", 27.516228977511748);
        row("S", 2010, "after_sdi", 159.18792755025424);
        row("S", 2010, "pai_gtv", 58.0 / 15);                          // (150 - 92) / 15 years
        row("S", 2010, "pai_nmv", 2.8);
        row("S", 2025, "before_qmd", 40);
        row("S", 2025, "pai_gtv", kNone);                              // the last row has no next stand
        row("S", 2015, "year", kNone);                                 // a harvest year alone has no row
        row("H", 2010, "cycle", 11);                                   // its own list's cycle
        row("H", 2015, "harvested_qmd", 30);
        row("H", 2015, "harvested_sdi", 13.062355484189469);
    }
    void numbers()
    {
        QFETCH(QString, kind);
        QFETCH(int, year);
        QFETCH(QString, key);
        QFETCH(double, expected);
        const StandSummary s = ReadStandSummary(m_db->db, {QStringLiteral("HAND"), *ParseKind(kind)});
        const std::optional<double> value = cellOf(s, year, key);
        if (std::isnan(expected)) {
            QVERIFY2(!value, qPrintable(QString::number(value.value_or(0))));
            return;
        }
        QVERIFY(value);
        QVERIFY2(std::fabs(*value - expected) <= 1e-12 * std::max(1.0, std::fabs(expected)),
                 qPrintable(QStringLiteral("%1 != %2").arg(*value, 0, 'g', 17).arg(expected, 0, 'g', 17)));
    }

    // The stand of 2000 in imperial units, each value worked out by hand from the metric one; the
    // headings say the units, and the shown value goes back to the stored one within 1e-9.
    void imperial_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<double>("expected");
        QTest::addColumn<QString>("unit");
        QTest::newRow("stems") << "before_sph" << 121.40569267200001 << "trees/acre";          // 300 / 2.471053814671653
        QTest::newRow("basal area") << "before_basal_area" << 20.527166398554446 << "sq.ft/acre";   // 4.712388980 * 3.280839895^2 / 2.471053815
        QTest::newRow("qmd") << "before_qmd" << 5.5677699306027355 << "in";                    // 14.14213562 / 2.54
        QTest::newRow("sdi per acre") << "before_sdi" << 47.430478658558386 << "trees/acre";   // 117.2032652 / 2.471053815
        QTest::newRow("volume") << "before_gtv" << 571.6535433070865 << "cu.ft/acre";          // 40 * 3.280839895^3 / 2.471053815
        QTest::newRow("increment") << "pai_gtv" << 100.03937007874013 << "cu.ft/acre/yr";      // 7 * 3.280839895^3 / 2.471053815
        QTest::newRow("year stays") << "year" << 2000.0 << "";
    }
    void imperial()
    {
        QFETCH(QString, key);
        QFETCH(double, expected);
        QFETCH(QString, unit);
        const StandSummary s = ReadStandSummary(m_db->db, {QStringLiteral("HAND"), RunKind::Standing});
        const DataTable metric = StandSummaryDocument(s).tables.first();
        const DataTable imperial = StandSummaryDocument(s, UnitSystem::Imperial).tables.first();
        const qsizetype c = imperial.columnOf(key);
        QCOMPARE(imperial.columns.at(c).unit, unit);
        const double shown = imperial.rows.first().at(c).toDouble();
        QVERIFY2(std::fabs(shown - expected) <= 1e-9 * expected, qPrintable(QString::number(shown, 'g', 17)));
        const double stored = metric.rows.first().at(c).toDouble();
        const Quantity quantity = StandSummaryColumns(RunKind::Standing).at(c).quantity;
        QVERIFY(std::fabs(FromUnits(shown, quantity, UnitSystem::Imperial) - stored) <= 1e-9 * stored);
        // The chart of the column draws the same numbers.
        if (key != QLatin1String("year"))
            QCOMPARE(StandSummaryChart(s, c, UnitSystem::Imperial).series().first().values.first(), shown);
    }

    // The summation method's index, by hand: each tree's stems times (d / 25.4) ^ 1.605.
    void summation_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<int>("year");
        QTest::addColumn<QString>("key");
        QTest::addColumn<double>("expected");
        QTest::newRow("before") << "S" << 2000 << "before_sdi" << 112.93825311525602;    // 100 (20/25.4)^1.605 + 200 (10/25.4)^1.605
        QTest::newRow("after, by year") << "S" << 2010 << "after_sdi" << 157.87910916905764;   // 100 (30/25.4)^1.605 + 100 (20/25.4)^1.605 - 60 (20/25.4)^1.605
        QTest::newRow("one diameter: Reineke's") << "H" << 2015 << "harvested_sdi" << 13.062355484189469;
        // A second standing cycle in 2025 with 50 stems of 25.4 cm: after harvest is the whole year's.
        QTest::newRow("two cycles of a year") << "S" << 2025 << "after_sdi" << 257.2755951971045;   // 100 (40/25.4)^1.605 + 50
    }
    void summation()
    {
        QFETCH(QString, kind);
        QFETCH(int, year);
        QFETCH(QString, key);
        QFETCH(double, expected);
        if (year == 2025) {
            m_db->addHeader(QStringLiteral("HAND"), QStringLiteral("S"), 4, 2025);
            m_db->addTree(QStringLiteral("HAND"), QStringLiteral("S"), 4, 1, 25.4, 50, 1.0);
        }
        const StandSummary s = ReadStandSummary(m_db->db, {QStringLiteral("HAND"), *ParseKind(kind)}, SdiMethod::Summation);
        const std::optional<double> value = cellOf(s, year, key);
        QVERIFY(value);
        QVERIFY2(std::fabs(*value - expected) <= 1e-12 * expected, qPrintable(QString::number(*value, 'g', 17)));
    }

    // What the document says of its numbers: the method of the index with its reference diameter in
    // the units shown, what net merchantable volume deducts, the units, both lists of the Run Id.
    void definitions()
    {
        const RunKey hand{QStringLiteral("HAND"), RunKind::Standing};
        const TableDocument reineke = StandSummaryDocument(ReadStandSummary(m_db->db, hand));
        const TableDocument summed = StandSummaryDocument(ReadStandSummary(m_db->db, hand, SdiMethod::Summation), UnitSystem::Imperial);
        const auto definition = [](const TableDocument &d, const QString &key) {
            return d.tables.first().columns.at(d.tables.first().columnOf(key)).definition;
        };
        QVERIFY(definition(reineke, QStringLiteral("before_sdi")).contains(QStringLiteral("Reineke's formula")));
        QVERIFY(definition(reineke, QStringLiteral("before_sdi")).contains(QStringLiteral("reference diameter 25.4 cm")));
        QVERIFY(definition(summed, QStringLiteral("after_sdi")).contains(QStringLiteral("summation method")));
        QVERIFY(definition(summed, QStringLiteral("after_sdi")).contains(QStringLiteral("reference diameter 10 in: stems per acre")));
        QVERIFY(definition(summed, QStringLiteral("before_gtv")).contains(QStringLiteral("Converted from the stored cu.m/ha to cu.ft/acre")));
        QVERIFY(definition(reineke, QStringLiteral("removed_nmv")).contains(QStringLiteral("less the deductions for decay, waste and breakage")));
        QCOMPARE(summed.facts.first().name, QStringLiteral("SDI method"));
        QVERIFY(summed.facts.first().text.startsWith(QStringLiteral("Stand density index by the summation method")));
        QCOMPARE(summed.units, QStringLiteral("imperial"));
        QCOMPARE(SdiMethodOfSetting(QStringLiteral("Summation")), SdiMethod::Summation);
        QCOMPARE(SdiMethodOfSetting(QStringLiteral("sum")), SdiMethod::Reineke);
        QCOMPARE(reineke.runs.size(), 2);
        QCOMPARE(reineke.runs.at(1).kind, QStringLiteral("Harvested"));
        QCOMPARE(reineke.runs.at(1).imported, QStringLiteral("2023-11-14 22:13:20"));
        for (const TableColumn &c : reineke.tables.first().columns)
            QVERIFY2(!c.definition.isEmpty(), qPrintable(c.key));
    }

    // Without a harvested list: no removals, and what stays is what stood, to the last bit.
    void runWithoutHarvest()
    {
        for (const char *table : {"Model_Run", "Model_Header", "Model_Entries"})
            m_db->exec(QStringLiteral("DELETE FROM %1 WHERE Standing_Harvested = 'H'").arg(QLatin1String(table)));
        const StandSummary s = ReadStandSummary(m_db->db, {QStringLiteral("HAND"), RunKind::Standing});
        QVERIFY(!s.hasHarvest);
        for (const StandSummaryRow &r : s.rows) {
            QVERIFY(!r.removed);
            QCOMPARE(r.after.sph, r.before.sph);
            QCOMPARE(r.after.basalArea, r.before.basalArea);
            QCOMPARE(r.after.netMerchVolume, r.before.netMerchVolume);
        }
        QCOMPARE(*s.rows.first().paiTotalVolume, (110.0 - 40.0) / 10);
    }

    // The hand-made run bent at its edges: the header rows out of cycle order, two standing cycles
    // in one year, and a harvested species that the standing list lacks.
    void rowsAtTheirEdges()
    {
        m_db->exec(QStringLiteral("UPDATE Model_Header SET Cycle_Year = 2010 WHERE Standing_Harvested = 'S' AND Cycle = 3"));
        m_db->exec(QStringLiteral("DELETE FROM Model_Header WHERE Standing_Harvested = 'S' AND Cycle = 1"));
        m_db->addHeader(QStringLiteral("HAND"), QStringLiteral("S"), 1, 2000);
        m_db->exec(QStringLiteral("INSERT INTO Model_Entries (Run_Id, Standing_Harvested, Cycle_Number, Species_Code, Current_Diameter, "
                                  "Trees_per_ha) VALUES ('HAND', 'H', 11, 9, 10, 5)"));
        const StandSummary s = ReadStandSummary(m_db->db, {QStringLiteral("HAND"), RunKind::Standing});
        QCOMPARE(s.rows.size(), 3);
        QCOMPARE(s.rows.last().cycle, 1);           // in the order of the table
        QVERIFY(!s.rows.first().paiTotalVolume);    // 2010 to 2010: no years between
        QCOMPARE(s.rows.first().removed->sph, 65.0);
    }

    void formulasAtTheirEdges()
    {
        QVERIFY(!QuadraticMeanDiameter(0, 0));
        QVERIFY(!QuadraticMeanDiameter(1, -5));          // more taken than stood
        QVERIFY(QuadraticMeanDiameter(0, 100) == 0.0);   // stems of no diameter
        QCOMPARE(*StandDensityIndex(0, 0), 0.0);
        QVERIFY(!StandDensityIndex(-1, 10));
        QVERIFY(!StandDensityIndex(1, -5));
        QCOMPARE(TableCellText(-0.0004, 2), QStringLiteral("0.00"));
    }

    // The summary's stand before and after harvest is the composition's "Total" at a cycle's two
    // points, to the last bit: both add the same records in the same order.
    // The summary's stand before and after harvest is the "Total" line the composition charts draw.
    void sumsAreTheCompositionsTotals()
    {
        const StandSummary summary = ReadStandSummary(m_db->db, {QStringLiteral("HAND"), RunKind::Standing});
        std::array<ChartData, kStandLevelsCharts> charts;
        CalcStandLevelsReport(m_db->db, m_db->questions, QStringLiteral("HAND"), QStringLiteral("S"),
                              {&charts[0], &charts[1], &charts[2], &charts[3]});
        auto total = [&](StandLevelsStatistic statistic, int point) { return charts[static_cast<int>(statistic)].series().last().values.at(point); };
        QCOMPARE(charts[0].series().last().legend, QStringLiteral("Total"));
        QCOMPARE(summary.rows.size() * 2, charts[0].series().last().values.size());
        for (int i = 0; i < summary.rows.size(); ++i) {
            const StandSummaryRow &row = summary.rows.at(i);
            QCOMPARE(row.before.sph, total(StandLevelsStatistic::Sph, 2 * i));
            QCOMPARE(row.before.basalArea, total(StandLevelsStatistic::BasalArea, 2 * i));
            QCOMPARE(row.before.totalVolume, total(StandLevelsStatistic::MerchVol, 2 * i));
            QCOMPARE(row.after.sph, total(StandLevelsStatistic::Sph, 2 * i + 1));
            QCOMPARE(row.after.basalArea, total(StandLevelsStatistic::BasalArea, 2 * i + 1));
            QCOMPARE(row.after.totalVolume, total(StandLevelsStatistic::MerchVol, 2 * i + 1));
        }
    }

    void aRunThatIsGone()
    {
        try {
            ReadStandSummary(m_db->db, {QStringLiteral("GONE"), RunKind::Standing});
            QFAIL("read a run that is not there");
        } catch (const SendrelError &e) {
            QVERIFY2(e.description().contains(QStringLiteral("GONE:Standing is not in the database")), qPrintable(e.description()));
        }
    }

    // The forms of the table carry the same numbers: JSON objects in column order, text columns.
    void textJsonAndChart()
    {
        const StandSummary s = ReadStandSummary(m_db->db, {QStringLiteral("HAND"), RunKind::Standing});
        const TableDocument document = StandSummaryDocument(s);
        const DataTable &table = document.tables.first();
        QCOMPARE(table.columns.size(), StandSummaryColumns(RunKind::Standing).size());
        QCOMPARE(table.columns.last().headingWithUnit(), QStringLiteral("PAI NMV (cu.m/ha/yr)"));
        QCOMPARE(table.columns.at(table.columnOf(QStringLiteral("removed_gmv"))).group, QStringLiteral("Removals"));
        QCOMPARE(table.rows.first().at(table.columnOf(QStringLiteral("pai_gtv"))).toDouble(), 7.0);
        QCOMPARE(StandSummaryColumns(RunKind::Harvested).size(), 9);

        const QStringList lines = FixedText(document).split(QLatin1Char('\n'));
        QCOMPARE(lines.at(0), QStringLiteral("Stand summary: HAND:Standing"));
        // The columns of a group widen alike under a title longer than they are.
        QVERIFY2(lines.at(2).startsWith(QStringLiteral("  Year  Cycle       SPH       BA     QMD       SDI      GTV")), qPrintable(lines.at(2)));
        QVERIFY2(lines.at(2).endsWith(QStringLiteral("      NMV             GTV            NMV")), qPrintable(lines.at(2)));
        QVERIFY2(lines.at(5).startsWith(QStringLiteral("  2010      2       200    10.21    25.5       201    110.0     95.0     80.0        60     1.88    20.0     18.0     15.0")),
                 qPrintable(lines.at(5)));

        const ChartData chart = StandSummaryChart(s, columnOf(RunKind::Standing, QStringLiteral("pai_gtv")));
        QCOMPARE(chart.series().size(), 1);
        QCOMPARE(chart.series().first().xs, (QVector<double>{2000, 2010}));   // no point where there is no number
        QCOMPARE(chart.series().first().colour, qint16(13));
        QCOMPARE(chart.series().first().legend, QStringLiteral("PAI GTV (cu.m/ha/yr)"));
    }
};

SENDREL_TEST_MAIN(tst_standsummary)
#include "tst_standsummary.moc"
