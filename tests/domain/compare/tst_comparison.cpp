#include "support/TestMain.h"

#include "base/SendrelError.h"
#include "domain/compare/ComparisonCharts.h"
#include "domain/compare/ComparisonTables.h"
#include "domain/standstock/ClassLayout.h"
#include "support/CompareRuns.h"
#include "support/RunDatabase.h"

#include <cmath>

using namespace sendrel;
using namespace sendrel::test;

Q_DECLARE_METATYPE(TableRow)

namespace {

const QVariant kBlank;
const QVariant kNa = QStringLiteral("n/a");

const DataTable &tableNamed(const TableDocument &document, const QString &name)
{
    for (const DataTable &t : document.tables) {
        if (t.name == name)
            return t;
    }
    qFatal("no table %s", qPrintable(name));
}

// Cells equal: blanks and texts exactly, numbers to the last few bits (or to the tolerance of
// numbers worked out by hand). A NaN is never equal.
bool sameRow(const TableRow &got, const TableRow &expected, double tolerance = 1e-12)
{
    if (got.size() != expected.size())
        return false;
    for (qsizetype i = 0; i < got.size(); ++i) {
        const QVariant &g = got[i], &e = expected[i];
        if (e.isNull() != g.isNull() || (e.typeId() == QMetaType::QString && g != e))
            return false;
        if (!e.isNull() && e.typeId() != QMetaType::QString
            && !(std::fabs(g.toDouble() - e.toDouble()) <= tolerance * std::max(1.0, std::fabs(e.toDouble()))))
            return false;
    }
    return true;
}

QString shown(const TableRow &row)
{
    QStringList cells;
    for (const QVariant &v : row)
        cells.append(v.isNull() ? QStringLiteral("_") : v.toString());
    return cells.join(QLatin1Char('|'));
}

}  // namespace

class tst_comparison : public QObject {
    Q_OBJECT

    std::unique_ptr<RunDatabase> m_db;

    Comparison compare(const QStringList &runs, const QString &base = QString())
    {
        return ReadComparison(m_db->db, runs, base);
    }

private slots:
    // Nothing here writes: one database for all.
    void initTestCase()
    {
        m_db = std::make_unique<RunDatabase>();
        AddComparisonRuns(*m_db);
    }
    void cleanupTestCase() { m_db.reset(); }

    // The hand-made runs, row by row of the summary comparison: each run's value, run - base and
    // the percent difference, blanks where a run lacks the year, "n/a" where the base is 0;
    // removals of a run without a harvested list are 0; cumulative removals and total yield.
    void summaryRows_data()
    {
        QTest::addColumn<QString>("base");
        QTest::addColumn<QString>("table");
        QTest::addColumn<int>("row");
        QTest::addColumn<TableRow>("expected");
        const auto row = [](const char *base, const char *table, int r, const TableRow &expected) {
            QTest::addRow("%s %s %d", base, table, r) << QString::fromLatin1(base) << QString::fromLatin1(table) << r << expected;
        };
        // Years: the union 2000, 2010, 2020 (GROW only), 2030 (THIN only).
        row("", "Before harvest GTV", 0, {2000, 50.0, 50.0, 0.0, 0.0});
        row("", "Before harvest GTV", 1, {2010, 100.0, 105.0, 5.0, 5.0});
        row("", "Before harvest GTV", 2, {2020, 200.0, kBlank, kBlank, kBlank});
        row("", "Before harvest GTV", 3, {2030, kBlank, 180.0, kBlank, kBlank});
        row("", "Before harvest QMD", 1, {2010, 30.0, std::sqrt(95000.0 / 150), std::sqrt(95000.0 / 150) - 30, (std::sqrt(95000.0 / 150) - 30) / 30 * 100});
        row("", "After harvest SPH", 1, {2010, 100.0, 110.0, 10.0, 10.0});
        row("", "After harvest NMV", 1, {2010, 50.0, 32.5, -17.5, -35.0});
        row("", "Removals GTV", 0, {2000, 0.0, 0.0, 0.0, kNa});
        row("", "Removals GTV", 1, {2010, 0.0, 40.0, 40.0, kNa});
        row("", "Removals QMD", 1, {2010, kBlank, 30.0, kBlank, kBlank});
        row("", "Cumulative removals NMV", 1, {2010, 0.0, 20.0, 20.0, kNa});
        row("", "Cumulative removals NMV", 3, {2030, kBlank, 20.0, kBlank, kBlank});
        row("", "Total yield GTV", 1, {2010, 100.0, 105.0, 5.0, 5.0});
        row("", "Total yield GTV", 3, {2030, kBlank, 220.0, kBlank, kBlank});
        row("", "Total yield NMV", 2, {2020, 100.0, kBlank, kBlank, kBlank});
        // THIN as the base: GROW's columns become the differences.
        row("THIN", "Before harvest GTV", 1, {2010, 100.0, 105.0, -5.0, -5.0 / 105 * 100});
        row("THIN", "Removals GTV", 1, {2010, 0.0, 40.0, -40.0, -100.0});
    }
    void summaryRows()
    {
        QFETCH(QString, base);
        QFETCH(QString, table);
        QFETCH(int, row);
        QFETCH(TableRow, expected);
        const TableDocument document = SummaryComparisonDocument(compare({QStringLiteral("GROW"), QStringLiteral("THIN")}, base));
        const DataTable &t = tableNamed(document, table);
        QCOMPARE(t.rows.size(), 4);
        const TableRow &got = t.rows.at(row);
        QVERIFY2(sameRow(got, expected), qPrintable(shown(got) + QStringLiteral(" != ") + shown(expected)));
    }

    // The same runs in imperial units, worked out by hand (1 stem/ha = 1 / 2.471053814671653 =
    // 0.40468564224 trees/acre, 1 cu.m/ha = 35.314666721 / 2.471053814671653 = 14.291338583
    // cu.ft/acre, 1 cm = 1 / 2.54 in); every value and difference back to metric within 1e-9, every
    // percent difference and "n/a" the metric one, bit for bit.
    void imperial()
    {
        const QStringList runs{QStringLiteral("GROW"), QStringLiteral("THIN")};
        const TableDocument metric = SummaryComparisonDocument(compare(runs));
        const TableDocument imperial = SummaryComparisonDocument(ReadComparison(m_db->db, runs, QString(), UnitSystem::Imperial));
        const struct {
            const char *table, *unit;
            TableRow row2010;
        } hand[] = {{"Before harvest GTV", "cu.ft/acre", {2010, 1429.1338583, 1500.5905512, 71.456692913, 5.0}},
                    {"Before harvest QMD", "in", {2010, 30 / 2.54, std::sqrt(95000.0 / 150) / 2.54, (std::sqrt(95000.0 / 150) - 30) / 2.54,
                                                  (std::sqrt(95000.0 / 150) - 30) / 30 * 100}},
                    {"After harvest SPH", "trees/acre", {2010, 40.468564224, 44.515420646, 4.0468564224, 10.0}},
                    {"Removals BA", "sq.ft/acre", {2010, 0.0, 40 * 0.070685834705770 * 4.356, 40 * 0.070685834705770 * 4.356, kNa}}};
        for (const auto &h : hand) {
            const DataTable &t = tableNamed(imperial, QLatin1String(h.table));
            QCOMPARE(t.columns.at(2).unit, QLatin1String(h.unit));
            QVERIFY2(sameRow(t.rows.at(1), h.row2010, 1e-9), qPrintable(shown(t.rows.at(1)) + QStringLiteral(" != ") + shown(h.row2010)));
        }
        QCOMPARE(imperial.units, QStringLiteral("imperial"));
        for (qsizetype i = 0; i < metric.tables.size(); ++i) {
            const Quantity quantity = CompareMeasures(UnitSystem::Imperial).at(i).quantity;
            const DataTable &m = metric.tables.at(i), &u = imperial.tables.at(i);
            for (qsizetype r = 0; r < m.rows.size(); ++r) {
                for (qsizetype c = 1; c < m.columns.size(); ++c) {
                    const QVariant &stored = m.rows[r][c], &shown = u.rows[r][c];
                    if (m.columns[c].unit == QLatin1String("%") || !IsNumberCell(stored))
                        QVERIFY2(shown == stored, qPrintable(u.name));
                    else
                        QVERIFY2(std::fabs(FromUnits(shown.toDouble(), quantity, UnitSystem::Imperial) - stored.toDouble())
                                     <= 1e-9 * std::max(1.0, std::fabs(stored.toDouble())),
                                 qPrintable(u.name));
                }
            }
        }
        // The difference tables: per acre, the classes in the units the layout was given in.
        ClassLayout layout;
        QVERIFY(layout.SetClasses(u"0", u"10", u"5").passed());
        const DataTable stand =
            tableNamed(DifferenceTableDocument(m_db->db, ReadComparison(m_db->db, runs, QString(), UnitSystem::Imperial), layout, 2010, true),
                       QStringLiteral("THIN - GROW"));
        QCOMPARE(stand.columns.first().unit, QStringLiteral("cm"));
        QCOMPARE(stand.columns.last().unit, QStringLiteral("trees/acre"));
        QVERIFY(sameRow(stand.rows.at(1), {15.0, 0.0, 20.234282112, 20.234282112}, 1e-9));
    }

    void summaryShape()
    {
        const Comparison c = compare({QStringLiteral("grow"), QStringLiteral("THIN")}, QStringLiteral("thin"));
        QCOMPARE(c.runIds(), (QStringList{"GROW", "THIN"}));   // as stored
        QCOMPARE(c.years, (QList<qint32>{2000, 2010, 2020, 2030}));
        const TableDocument document = SummaryComparisonDocument(c);
        QCOMPARE(document.tables.size(), 7 + 6 + 7 + 4);
        QStringList headings;
        for (const TableColumn &column : document.tables.first().columns)
            headings.append(column.heading + QLatin1Char('|') + column.unit);
        QCOMPARE(headings, (QStringList{"Year|", "GROW|stems/ha", "THIN|stems/ha", "GROW - THIN|stems/ha", "GROW % of THIN|%"}));
        QCOMPARE(document.runs.at(1).description, QStringLiteral("THIN treatment"));
    }

    void refusals_data()
    {
        QTest::addColumn<QStringList>("runs");
        QTest::addColumn<QString>("base");
        QTest::addColumn<QString>("message");
        QTest::newRow("one run") << QStringList{"GROW"} << QString() << "takes 2 to 8 runs, not 1";
        QTest::newRow("nine runs") << QStringList{"A", "B", "C", "D", "E", "F", "G", "H", "I"} << QString() << "takes 2 to 8 runs, not 9";
        QTest::newRow("twice") << QStringList{"GROW", "grow"} << QString() << "Run grow is named twice";
        QTest::newRow("base elsewhere") << QStringList{"GROW", "THIN"} << "LATE" << "The base LATE is not one of the runs";
        QTest::newRow("no such run") << QStringList{"GROW", "NONE"} << QString() << "There is no run NONE:Standing";
        QTest::newRow("no common year") << QStringList{"GROW", "THIN", "LATE"} << QString()
                                        << "Runs GROW and LATE have no year in common; there is nothing to compare.";
    }
    void refusals()
    {
        QFETCH(QStringList, runs);
        QFETCH(QString, base);
        QFETCH(QString, message);
        try {
            compare(runs, base);
            QFAIL("compared");
        } catch (const SendrelError &e) {
            QVERIFY2(e.description().contains(message), qPrintable(e.description()));
        }
    }

    // Species by class of each run and of run - base, over the stand and stock window's classes:
    // the species the union of the runs', totals by class and by species; a run without the year
    // blank, with a note.
    void differenceTables_data()
    {
        QTest::addColumn<bool>("density");
        QTest::addColumn<int>("year");
        QTest::addColumn<QString>("table");
        QTest::addColumn<int>("row");   // -1 the totals
        QTest::addColumn<TableRow>("expected");
        QTest::newRow("GROW 35") << true << 2010 << "GROW" << 3 << TableRow{35.0, 100.0, 0.0, 100.0};
        QTest::newRow("GROW totals") << true << 2010 << "GROW" << -1 << TableRow{"Total", 100.0, 0.0, 100.0};
        QTest::newRow("THIN 15") << true << 2010 << "THIN" << 1 << TableRow{15.0, 0.0, 50.0, 50.0};
        QTest::newRow("THIN totals") << true << 2010 << "THIN" << -1 << TableRow{"Total", 100.0, 50.0, 150.0};
        QTest::newRow("difference 15") << true << 2010 << "THIN - GROW" << 1 << TableRow{15.0, 0.0, 50.0, 50.0};
        QTest::newRow("difference 35") << true << 2010 << "THIN - GROW" << 3 << TableRow{35.0, 0.0, 0.0, 0.0};
        QTest::newRow("difference totals") << true << 2010 << "THIN - GROW" << -1 << TableRow{"Total", 0.0, 50.0, 50.0};
        QTest::newRow("bucket") << true << 2030 << "THIN" << 4 << TableRow{40.0, 60.0, 60.0};
        QTest::newRow("stock") << false << 2010 << "THIN - GROW" << -1 << TableRow{"Total", 0.0, 5.0, 5.0};
        QTest::newRow("year lacking") << true << 2020 << "THIN" << 3 << TableRow{35.0, kBlank, kBlank};
        QTest::newRow("base lacking") << true << 2030 << "THIN - GROW" << -1 << TableRow{"Total", kBlank, kBlank};
    }
    void differenceTables()
    {
        QFETCH(bool, density);
        QFETCH(int, year);
        QFETCH(QString, table);
        QFETCH(int, row);
        QFETCH(TableRow, expected);
        ClassLayout layout;
        QVERIFY(layout.SetClasses(u"0", u"10", u"5").passed());
        const TableDocument document =
            DifferenceTableDocument(m_db->db, compare({QStringLiteral("GROW"), QStringLiteral("THIN")}), layout, year, density);
        QCOMPARE(document.tables.size(), 3);
        const DataTable &t = tableNamed(document, table);
        // The species of the runs in that year, whether or not each run has them.
        QCOMPARE(t.columns.size(), year == 2010 ? 4 : 3);
        QCOMPARE(t.columns.at(1).heading, m_db->db.SpeciesStrCode(1));
        QCOMPARE(t.columns.at(year == 2010 ? 2 : 1).heading, m_db->db.SpeciesStrCode(year == 2010 ? 2 : 1));
        const TableRow &got = row < 0 ? t.totals.first() : t.rows.at(row);
        QVERIFY2(sameRow(got, expected), qPrintable(shown(got) + QStringLiteral(" != ") + shown(expected)));
        QCOMPARE(t.notes.isEmpty(), expected.at(1).isValid() || table.contains(QLatin1Char('-')));
    }

    void differenceTableOfNoRunsYear()
    {
        ClassLayout layout;
        QVERIFY(layout.SetClasses(u"0", u"10", u"5").passed());
        QVERIFY_THROWS_EXCEPTION(SendrelError, DifferenceTableDocument(m_db->db, compare({QStringLiteral("GROW"), QStringLiteral("THIN")}),
                                                                       layout, 2050, true));
    }

    // The lines over the years: the base first and heavier, a harvest as the drop within its year,
    // a year without a run's number left out; differences only where both have the year.
    void charts()
    {
        const Comparison c = compare({QStringLiteral("GROW"), QStringLiteral("THIN")}, QStringLiteral("THIN"));
        const int gtv = CompareStatisticIndex(QStringLiteral("GTV"));
        const ChartData lines = CompareChart(c, gtv, false);
        QCOMPARE(lines.series().size(), 2);
        QCOMPARE(lines.series().at(0).legend, QStringLiteral("THIN (base)"));
        QCOMPARE(lines.series().at(0).xs, (QVector<double>{2000, 2010, 2010, 2030}));
        QCOMPARE(lines.series().at(0).values, (QVector<double>{50, 105, 65, 180}));
        QVERIFY(lines.series().at(0).width > lines.series().at(1).width);
        QCOMPARE(lines.series().at(1).values, (QVector<double>{50, 100, 200}));
        const ChartData differences = CompareChart(c, gtv, true);
        QCOMPARE(differences.series().at(1).xs, (QVector<double>{2000, 2010, 2010}));
        QCOMPARE(differences.series().at(1).values, (QVector<double>{0, -5, 35}));
        QVERIFY(differences.ChartYAxisMin() <= -5);
        const ChartData yield = CompareChart(c, CompareStatisticIndex(QStringLiteral("yield-gtv")), false);
        QCOMPARE(yield.series().at(0).values, (QVector<double>{50, 105, 220}));
        QCOMPARE(CompareStatisticIndex(QStringLiteral("volume")), -1);
        // Imperial: per acre (1 cu.m/ha = 14.291338583 cu.ft/acre), the titles with the units.
        const ChartData feet = CompareChart(ReadComparison(m_db->db, {"GROW", "THIN"}, "THIN", UnitSystem::Imperial), gtv, true);
        QVERIFY(std::fabs(feet.series().at(1).values.at(2) - 35 * 14.291338583) < 1e-6);
        QCOMPARE(feet.ChartLeftTitle(), QStringLiteral("GTV (cu.ft/acre)"));
        QCOMPARE(CompareStatistics().first().titleIn(UnitSystem::Imperial), QStringLiteral("Trees per acre"));
        QCOMPARE(CompareChartPages(c, false, 1000).size(), CompareStatistics().size() + 1);
    }

    // Stems against QMD on log axes, the harvest as a step, and Reineke's lines at their fractions
    // of the maximum: at the reference diameter a line's stems are its SDI; in imperial units per
    // acre against inches, the reference diameter 10 in.
    void densityDiagram_data()
    {
        QTest::addColumn<int>("units");
        QTest::addColumn<double>("perArea");
        QTest::addColumn<double>("reference");
        QTest::addColumn<QString>("axes");
        QTest::newRow("metric") << int(UnitSystem::Metric) << 1.0 << 25.4 << "SPH (stems/ha) QMD (cm)";
        QTest::newRow("imperial") << int(UnitSystem::Imperial) << 0.40468564224 << 10.0 << "SPH (trees/acre) QMD (in)";
    }
    void densityDiagram()
    {
        QFETCH(int, units);
        QFETCH(double, perArea);
        QFETCH(double, reference);
        QFETCH(QString, axes);
        const ChartData d =
            DensityDiagram(ReadComparison(m_db->db, {"GROW", "THIN"}, QString(), static_cast<UnitSystem>(units)), 800);
        QVERIFY(d.ChartLogAxes());
        QCOMPARE(d.series().size(), 2 + 3);
        const QVector<double> stems{100, 150, 110, 60};
        for (qsizetype i = 0; i < stems.size(); ++i)
            QVERIFY(std::fabs(d.series().at(1).values.at(i) - stems[i] * perArea) < 1e-9);
        QCOMPARE(d.series().at(1).xs.at(3), 45.0 * reference / 25.4);
        QCOMPARE(d.ChartLeftTitle() + QLatin1Char(' ') + d.ChartBottomTitle(), axes);
        const double maximum = 800 * perArea;
        QVERIFY(d.ChartTopTitle().contains(QStringLiteral("maximum SDI ") + QString::number(maximum, 'f', 0)));
        for (int l = 0; l < 3; ++l) {
            const double f = kReinekeLineFractions[l];
            const ChartData::Series &line = d.series().at(2 + l);
            QCOMPARE(line.legend, QStringLiteral("SDI %1 (%2% of %3)").arg(QString::number(f * maximum, 'f', 0)).arg(100 * f).arg(QString::number(maximum, 'f', 0)));
            const double slope = std::log(line.values[1] / line.values[0]) / std::log(line.xs[1] / line.xs[0]);
            QVERIFY(std::fabs(slope + 1.605) < 1e-9);
            const double atReference = line.values[0] * std::pow(line.xs[0] / reference, 1.605);
            QVERIFY(std::fabs(atReference - maximum * f) < 1e-9);
            QVERIFY(d.ChartYAxisMin() <= line.values[1] && d.ChartYAxisMax() >= line.values[0]);
        }
    }

    void joinedForCsv()
    {
        const TableDocument document = SummaryComparisonDocument(compare({QStringLiteral("GROW"), QStringLiteral("THIN")}));
        const DataTable joined = JoinedTable(document);
        QCOMPARE(joined.rows.size(), document.tables.size() * 4);
        QCOMPARE(joined.columns.at(2).heading, QStringLiteral("GROW"));
        QVERIFY(joined.columns.at(2).unit.isEmpty());   // units differ by table
        QCOMPARE(joined.rows.at(5).first().toString(), document.tables.at(1).title);
        QCOMPARE(joined.rows.at(5).mid(1), document.tables.at(1).rows.at(1));
        // The totals follow each table's rows.
        ClassLayout layout;
        QVERIFY(layout.SetClasses(u"0", u"10", u"5").passed());
        const DataTable tables = JoinedTable(DifferenceTableDocument(m_db->db, compare({QStringLiteral("GROW"), QStringLiteral("THIN")}), layout, 2010, true));
        QCOMPARE(tables.rows.size(), 3 * (5 + 1));
        QCOMPARE(tables.rows.at(5).at(1).toString(), QStringLiteral("Total"));
    }
};

SENDREL_TEST_MAIN(tst_comparison)
#include "tst_comparison.moc"
