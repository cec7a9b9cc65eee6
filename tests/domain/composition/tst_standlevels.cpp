#include "support/TestMain.h"
#include "support/Failures.h"
#include "support/GoldenFile.h"
#include "support/PerPointPlan.h"
#include "support/RunDatabase.h"

#include "domain/composition/StandLevelsReport.h"
#include "domain/composition/StandLevelsSeries.h"
#include "base/Numbers.h"
#include "store/Schema.h"

#include <QRandomGenerator>
#include <QTest>

using namespace sendrel;
using namespace sendrel::test;

namespace {

// A run as text. Headers "S1=2000 H5=2010": kind, cycle, year. Trees "S1:3x40": kind, cycle,
// species code, stems per ha; each tree 20 cm with 0.5 m3.
void addRun(RunDatabase &db, const QString &runId, const QString &headers, const QString &trees)
{
    QSet<QString> kinds;
    for (const QString &h : headers.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const QString kind = h.left(1);
        if (!kinds.contains(kind))
            db.addRun(runId, kind);
        kinds.insert(kind);
        db.addHeader(runId, kind, h.mid(1).section(QLatin1Char('='), 0, 0).toInt(), h.section(QLatin1Char('='), 1).toInt());
    }
    for (const QString &t : trees.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const QStringList parts = t.mid(1).split(QRegularExpression(QStringLiteral("[:x]")));
        db.addTree(runId, t.left(1), parts[0].toInt(), parts[1].toInt(), 20, parts[2].toDouble(), 0.5);
    }
}

struct Charts {
    std::array<ChartData, kStandLevelsCharts> data;
    StandLevelsCharts pointers() { return {&data[0], &data[1], &data[2], &data[3]}; }
};

// Each series as legend#colour: x=value at every point.
QString describe(const ChartData &c)
{
    QStringList series;
    for (const ChartData::Series &s : c.series()) {
        QStringList points;
        for (int p = 0; p < s.values.size(); ++p)
            points.append(QStringLiteral("%1=%2").arg(s.xs.at(p)).arg(s.values.at(p)));
        series.append(QStringLiteral("%1#%2: %3").arg(s.legend).arg(s.colour).arg(points.join(QLatin1Char(' '))));
    }
    return series.join(QStringLiteral(" | "));
}

QString axes(const ChartData &c)
{
    return QStringLiteral("x %1-%2/%3 y %4-%5/%6")
        .arg(c.ChartXAxisMin()).arg(c.ChartXAxisMax()).arg(c.ChartXAxisTicks())
        .arg(c.ChartYAxisMin()).arg(c.ChartYAxisMax()).arg(c.ChartYAxisTicks());
}

// A report request for the run as the window holds it after CalcStandLevelsReport.
StandLevelsReportRequest requestFor(RunDatabase &db, const QString &runId, StandLevelsStatistic statistic)
{
    Charts charts;
    const StandLevelsState state = CalcStandLevelsReport(db.db, db.questions, runId, QStringLiteral("S"), charts.pointers());
    StandLevelsReportRequest request;
    request.This_RunId = runId;
    request.This_SorH = QStringLiteral("Standing");
    request.This_RunDesc = QStringLiteral("Run desc");
    request.statistic = statistic;
    request.title = runId + QStringLiteral(": title");
    request.CycleRS = state.CycleRS;
    request.SpeciesListRS = state.SpeciesListRS;
    return request;
}

// A row in each scratch table, to show what a report leaves alone.
void fillScratchTables(RunDatabase &db)
{
    for (const char *table : {"Species2", "Report_Header", "Report_Detail", "Stand_Levels_Report"})
        db.exec(QStringLiteral("INSERT INTO %1 (Report_id) VALUES (9)").arg(QLatin1String(table)));
}

QString scratchCounts(RunDatabase &db)
{
    QStringList counts;
    for (const char *table : {"Species2", "Report_Header", "Report_Detail", "Stand_Levels_Report"})
        counts.append(QString::number(db.count(QLatin1String(table))));
    return counts.join(QLatin1Char('/'));
}

}  // namespace

class tst_standlevels : public QObject {
    Q_OBJECT

private slots:
    // The density chart of a run: one point per cycle and pass at its year, a series per species
    // and "Total".
    void series_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("headers");
        QTest::addColumn<QString>("trees");
        QTest::addColumn<QString>("sph");
        QTest::addColumn<QString>("axes");
        // The harvested list numbers its cycle 5 but meets the standing cycle 1 by its year.
        const QString headers = QStringLiteral("S1=2000 S2=2010 H5=2000");
        const QString trees = QStringLiteral("S1:3x40 S1:7x10 S2:3x50 S2:7x20 H5:3x15");
        QTest::newRow("standing: as imported, then less the harvest")
            << "S" << headers << trees
            << "FD#3: 2000=40 2000=25 2010=50 2010=50 | PL#7: 2000=10 2000=10 2010=20 2010=20 | Total#13: 2000=50 2000=35 2010=70 2010=70"
            << "x 2000-2010/5 y 0-70/7";
        QTest::newRow("harvested: one point per cycle, one axis division")
            << "Harvested" << headers << trees << "FD#3: 2000=15 | Total#13: 2000=15" << "x 2000-2000/1 y 0-16/8";
        QTest::newRow("more cut than stands: 0 shown, Total unclamped")
            << "s" << "S1=2000 H5=2000" << "S1:3x40 S1:7x10 H5:7x30"
            << "FD#3: 2000=40 2000=40 | PL#7: 2000=10 2000=0 | Total#13: 2000=50 2000=20" << "x 2000-2000/1 y 0-50/5";
        QTest::newRow("a species absent from a cycle, a code without a species")
            << "" << "S1=2000 S2=2010" << "S1:3x40 S2:200x5"
            << "FD#3: 2000=40 2000=40 2010=0 2010=0 | xx#0: 2000=0 2000=0 2010=5 2010=5 | Total#13: 2000=40 2000=40 2010=5 2010=5"
            << "x 2000-2010/5 y 0-40/8";
        QTest::newRow("a year twice: the second pass sums the whole year")
            << "S" << "S1=2000 S2=2000 H3=2000" << "S1:3x40 S2:3x10 H3:3x5"
            << "FD#3: 2000=40 2000=45 2000=10 2000=45 | Total#13: 2000=40 2000=45 2000=10 2000=45" << "x 2000-2000/1 y 0-50/5";
        QTest::newRow("no trees of the kind") << "S" << "S1=2000 H2=2000" << "H2:3x5" << "" << "x 0-0/0 y 0-0/0";
        QTest::newRow("no cycles") << "S" << "" << "" << "" << "x 0-0/0 y 0-0/0";
    }
    void series()
    {
        QFETCH(QString, kind);
        QFETCH(QString, headers);
        QFETCH(QString, trees);
        QFETCH(QString, sph);
        QFETCH(QString, axes);
        RunDatabase db;
        addRun(db, QStringLiteral("R"), headers, trees);
        Charts charts;
        const StandLevelsState state = CalcStandLevelsReport(db.db, db.questions, QStringLiteral("R"), kind, charts.pointers());
        QCOMPARE(describe(charts.data[0]), sph);
        QCOMPARE(::axes(charts.data[0]), axes);
        QCOMPARE(state.filled, !sph.isEmpty());
        QVERIFY(!db.questions.busyVisible());
    }

    // Basal area and gross total volume (not the net volume) on their charts; the fourth chart
    // holds zeros and an axis from 0 to 0.
    void statistics()
    {
        RunDatabase db;
        addRun(db, QStringLiteral("R"), QStringLiteral("S1=2000"), QStringLiteral("S1:3x40"));
        Charts charts;
        const StandLevelsState state = CalcStandLevelsReport(db.db, db.questions, QStringLiteral("R"), QStringLiteral("S"), charts.pointers());
        QCOMPARE(charts.data[1].value(1, 1), 20 * 20 * kBasalAreaFactor * 40);
        QCOMPARE(describe(charts.data[2]), QStringLiteral("FD#3: 2000=20 2000=20 | Total#13: 2000=20 2000=20"));
        QCOMPARE(describe(charts.data[3]), QStringLiteral("FD#3: 2000=0 2000=0 | Total#13: 2000=0 2000=0"));
        QCOMPARE(::axes(charts.data[3]), QStringLiteral("x 2000-2000/1 y 0-0/1"));
        QCOMPARE(state.MaxMerchVol, 20.0);
        QCOMPARE(state.MaxTotalVol, 0.0);
    }

    // The sums of cycles and species give the numbers of the per-point statements (the first pass
    // to the last bit, the second within rounding): standing and harvested cycles numbered apart
    // but meeting by year, a year twice, more cut than stands, a header-less record, a NULL, and
    // the other run left out.
    void samePlan_data()
    {
        QTest::addColumn<QString>("runId");
        QTest::addColumn<QString>("kind");
        QTest::newRow("standing, quotes in the Run Id") << "O'Neil \"7\"" << "S";
        QTest::newRow("harvested") << "O'Neil \"7\"" << "H";
        QTest::newRow("a record without its header") << "ORPHAN" << "S";
    }
    void samePlan()
    {
        QFETCH(QString, runId);
        QFETCH(QString, kind);
        RunDatabase db;
        QRandomGenerator rng(7);
        for (const QString &run : {QStringLiteral("O'Neil \"7\""), QStringLiteral("ORPHAN"), QStringLiteral("OTHER")}) {
            // Cycles numbered apart between the kinds, the headers out of the order of kind and cycle,
            // and enough of them for the sums' tables to grow.
            QStringList headers{"S3=2010", "H8=2000", "S1=2000", "H7=2010", "S2=2010", "S4=2020"};
            for (int c = 5; c <= 110; ++c)
                headers.append(QStringLiteral("%1%2=%3").arg(c % 2 ? "S" : "H").arg(c).arg(2000 + 10 * (c / 2)));
            addRun(db, run, headers.join(QLatin1Char(' ')), QString());
            for (int t = 0; t < 600; ++t) {
                const QString place = headers.at(rng.bounded(headers.size())).section(QLatin1Char('='), 0, 0);
                const int species = QList<int>{3, 1, 9, 5, 200}.at(rng.bounded(5));
                db.addTree(run, place.left(1), place.mid(1).toInt(), species, 5 + rng.generateDouble() * 60,
                           rng.generateDouble() * 10, rng.generateDouble() * 3);
            }
            db.addTree(run, QStringLiteral("H"), 8, 11, 30, 500.3, 1.7);   // more cut than ever stood
        }
        db.exec(QStringLiteral("UPDATE Model_Entries SET Current_Diameter = NULL WHERE rowid = 17"));
        db.addTree(QStringLiteral("ORPHAN"), QStringLiteral("S"), 999, 4, 25, 3, 1);
        db.exec(QStringLiteral("UPDATE Model_Entries SET rowid = -1 WHERE Cycle_Number = 999"));

        const StandLevelsSums fast = ReadStandLevelsSums(db.db, runId, kind);
        const StandLevelsSums plan = ReadStandLevelsSumsPerPoint(db.db, runId, kind);
        QCOMPARE(DifferingCells(fast, plan), 0);
        QCOMPARE(fast.cells.size(), plan.cycles.size() * plan.passes * plan.species.size());
        QVERIFY(fast.cells.size() >= 12);
    }

    // The columns of the report by the number of species: each its own up to eleven, then ten,
    // "Others: " with the rest and "Total:"; Species2 likewise, with 'Ot', 'All Other'.
    void reportColumns_data()
    {
        QTest::addColumn<int>("species");
        QTest::addColumn<QString>("headings");
        QTest::addColumn<QString>("values");
        QTest::addColumn<QString>("species2");
        QTest::addColumn<int>("orientation");
        const QString ten = QStringLiteral("PW|LW|FD|BG|HW|CW|PL|SE|BL|PY|");
        const QString tenValues = QStringLiteral("1|2|3|4|5|6|7|8|9|10|");
        QTest::newRow("4: portrait") << 4 << "PW|LW|FD|BG|Total:|NULL|NULL|NULL|NULL|NULL|NULL|NULL" << "1|2|3|4|10|NULL|NULL|NULL|NULL|NULL|NULL|NULL"
                                     << "PW|LW|FD|BG|NULL|NULL|NULL|NULL|NULL|NULL|NULL|NULL" << 1;
        QTest::newRow("5: landscape") << 5 << "PW|LW|FD|BG|HW|Total:|NULL|NULL|NULL|NULL|NULL|NULL"
                                      << "1|2|3|4|5|15|NULL|NULL|NULL|NULL|NULL|NULL" << "PW|LW|FD|BG|HW|NULL|NULL|NULL|NULL|NULL|NULL|NULL" << 2;
        QTest::newRow("11: no Others") << 11 << ten + "HM|Total:" << tenValues + "11|66" << ten + "HM|mountain hemlock" << 2;
        QTest::newRow("12: Others") << 12 << ten + "Others: |Total:" << tenValues + "23|78" << ten + "Ot|All Other" << 2;
        QTest::newRow("14: Others") << 14 << ten + "Others: |Total:" << tenValues + "50|105" << ten + "Ot|All Other" << 2;
    }
    void reportColumns()
    {
        QFETCH(int, species);
        QFETCH(QString, headings);
        QFETCH(QString, values);
        QFETCH(QString, species2);
        QFETCH(int, orientation);
        RunDatabase db;
        QString trees;
        for (int code = 1; code <= species; ++code)
            trees += QStringLiteral(" S1:%1x%1").arg(code);
        addRun(db, QStringLiteral("R"), QStringLiteral("S1=2000"), trees);
        StandLevelsReportRequest request = requestFor(db, QStringLiteral("R"), StandLevelsStatistic::Sph);
        db.questions.answerReportText(true);
        const CompiledStandLevelsReport report = CompileStandLevelsReport(db.db, db.questions, request);
        QVERIFY(report.compiled);
        QCOMPARE(report.ReportOrientation, qint16(orientation));
        auto columns = [](const char *pattern, int n) {
            QStringList c;
            for (int i = 1; i <= n; ++i)
                c.append(QString::fromLatin1(pattern).arg(i));
            return c.join(QLatin1Char(','));
        };
        QCOMPARE(db.rows(QStringLiteral("SELECT Year, ") + columns("Sp%1", 12) + QStringLiteral(" FROM Stand_Levels_Report")),
                 QStringList{QStringLiteral("2000|") + headings});
        QCOMPARE(db.rows(QStringLiteral("SELECT ") + columns("Value%1", 12) + QStringLiteral(" FROM Stand_Levels_Report")), QStringList{values});
        QCOMPARE(db.rows(QStringLiteral("SELECT ") + columns("Str_Code%1", 11) + QStringLiteral(", Name11 FROM Species2")), QStringList{species2});
        QCOMPARE(db.rows(QStringLiteral("SELECT Report_id, Run_ID, Report_Type, Num_Species FROM Report_Header")),
                 QStringList{QStringLiteral("1|R|SL_SPH|%1").arg(species)});
    }

    // Two presses of "View Report": the run's parameters join the description on each, also on
    // the one cancelled, which touches no table; the dialog's answers are stored as typed.
    void reportRoad()
    {
        RunDatabase db;
        addRun(db, QStringLiteral("R"), QStringLiteral("S1=2000 S2=2010 H3=2010"), QStringLiteral("S1:3x40 S2:3x30 S2:9x5 H3:3x10"));
        db.exec(QStringLiteral("INSERT INTO Run (Run_Id, run_parameters) VALUES ('R', 'Thinned')"));
        fillScratchTables(db);
        StandLevelsReportRequest request = requestFor(db, QStringLiteral("R"), StandLevelsStatistic::BasalArea);
        db.questions.answerReportText(false);
        QVERIFY(!CompileStandLevelsReport(db.db, db.questions, request).compiled);
        QCOMPARE(scratchCounts(db), QStringLiteral("1/1/1/1"));

        const QString typed = QStringLiteral("O'Brien's \"cut\"");
        db.questions.answerReportText(true, typed, typed + QStringLiteral("\nline 2"));
        const CompiledStandLevelsReport report = CompileStandLevelsReport(db.db, db.questions, request, FixedClock);
        QVERIFY(report.compiled);
        QCOMPARE(db.questions.asked().at(0).title, QStringLiteral("R: title"));
        QCOMPARE(db.questions.asked().at(0).text, QStringLiteral("Printed By:  \r\n\r\nRun desc\r\nThinned"));
        QCOMPARE(db.questions.asked().at(1).text, QStringLiteral("Printed By:  \r\n\r\nRun desc\r\nThinned\r\nThinned"));
        QCOMPARE(request.This_RunDesc, typed + QStringLiteral("\r\nline 2"));
        QCOMPARE(db.rows(QStringLiteral("SELECT Report_Type, Report_Title, [Desc] FROM Report_Header")),
                 QStringList{QStringLiteral("SL_BASAL_AREA|") + typed + QLatin1Char('|') + request.This_RunDesc});
        QCOMPARE(scratchCounts(db), QStringLiteral("1/1/0/2"));
        // The stand as imported, not less the harvest; the basal area of 20 cm trees.
        QCOMPARE(db.rows(QStringLiteral("SELECT Year, Value1, Value2, Value3 FROM Stand_Levels_Report ORDER BY Year")),
                 (QStringList{QStringLiteral("2000|%1|0|%1").arg(DefaultText(400 * kBasalAreaFactor * 40)),
                              QStringLiteral("2010|%1|%2|%3").arg(DefaultText(400 * kBasalAreaFactor * 30), DefaultText(400 * kBasalAreaFactor * 5),
                                                                  DefaultText(400 * kBasalAreaFactor * 30 + 400 * kBasalAreaFactor * 5))}));
        QVERIFY(report.text.startsWith(QStringLiteral("   ") + typed + QStringLiteral("\r\n")));
    }

    // Nothing to report: told, and no table touched.
    // The export holds the report's table, unrounded: the same columns, the same numbers.
    void exportIsTheReportsTable()
    {
        RunDatabase db;
        addRun(db, QStringLiteral("R"), QStringLiteral("S1=2000 S2=2010"), QStringLiteral("S1:3x100 S1:7x55.5 S2:3x90.25 S2:9x3"));
        StandLevelsReportRequest request = requestFor(db, QStringLiteral("R"), StandLevelsStatistic::BasalArea);
        db.questions.answerReportText(true);
        QVERIFY(CompileStandLevelsReport(db.db, db.questions, request).compiled);
        const DataTable table = StandLevelsTable(db.db, ReadStandLevelsCycleSums(db.db, QStringLiteral("R"), QStringLiteral("S")),
                                                 StandLevelsStatistic::BasalArea);
        QStringList headers;
        for (const TableColumn &c : table.columns)
            headers.append(c.headingWithUnit());
        QCOMPARE(headers, (QStringList{"Year", "FD (sq.m/ha)", "PL (sq.m/ha)", "BL (sq.m/ha)", "Total (sq.m/ha)"}));
        const QStringList rows = db.rows(QStringLiteral("SELECT [Year], Value1, Value2, Value3, Value4 FROM Stand_Levels_Report ORDER BY [Year]"));
        QCOMPARE(rows.size(), table.rows.size());
        for (qsizetype r = 0; r < rows.size(); ++r) {
            const QStringList stored = rows.at(r).split(QLatin1Char('|'));
            for (qsizetype c = 0; c < stored.size(); ++c)
                QVERIFY(qFuzzyCompare(1.0 + stored.at(c).toDouble(), 1.0 + table.rows.at(r).at(c).toDouble()));
        }
    }

    void reportRefused_data()
    {
        QTest::addColumn<QString>("runId");
        QTest::addColumn<QString>("said");
        QTest::newRow("no cycles") << "NOCYCLES" << "Run NOCYCLES:Standing has no cycles: there is nothing to report.";
        QTest::newRow("no trees of the kind") << "NOTREES" << "Run NOTREES:Standing has no trees: there is nothing to report.";
        QTest::newRow("deleted while the window is open")
            << "R" << "There is no run R:Standing in ";
        QTest::newRow("deleted while the dialog is up") << "R (dialog)" << "There is no run R:Standing in ";
    }
    void reportRefused()
    {
        QFETCH(QString, runId);
        QFETCH(QString, said);
        RunDatabase db;
        addRun(db, QStringLiteral("R"), QStringLiteral("S1=2000"), QStringLiteral("S1:3x40"));
        addRun(db, QStringLiteral("NOTREES"), QStringLiteral("S1=2000 H1=2000"), QStringLiteral("H1:3x40"));
        db.addRun(QStringLiteral("NOCYCLES"), QStringLiteral("S"));
        fillScratchTables(db);
        const bool duringDialog = runId.endsWith(QLatin1String("(dialog)"));
        StandLevelsReportRequest request = requestFor(db, runId.section(QLatin1Char(' '), 0, 0), StandLevelsStatistic::Sph);
        // Another program's delete, before the press or while the dialog is up.
        struct DeletingQuestions : ScriptedQuestions {
            std::function<void()> whileAsked;
            bool askReportText(ReportTextRequest &text) override
            {
                whileAsked();
                return ScriptedQuestions::askReportText(text);
            }
        } questions;
        questions.whileAsked = [&] { db.db.deleteRun({QStringLiteral("R"), RunKind::Standing}); };
        questions.answerReportText(true);
        if (!duringDialog)
            questions.whileAsked();
        const std::optional<SendrelError> failure = FailureOf([&] { CompileStandLevelsReport(db.db, questions, request); });
        QVERIFY(failure);
        QVERIFY2(ReportFailureMessage(*failure).text.startsWith(said), qPrintable(failure->description()));
        QCOMPARE(questions.asked().size(), duringDialog ? 1 : 0);
        QCOMPARE(scratchCounts(db), QStringLiteral("1/1/1/1"));
    }
};

SENDREL_TEST_MAIN(tst_standlevels)
#include "tst_standlevels.moc"
