#include "support/TestMain.h"
#include "support/RunDatabase.h"

#include "domain/composition/StandLevelsReport.h"
#include "domain/composition/StandLevelsSeries.h"
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

// Every number of the sums, to the last bit.
QString exactly(const StandLevelsSums &s)
{
    QStringList out{s.kind};
    for (const CycleRow &c : s.cycles)
        out.append(QStringLiteral("cycle %1/%2").arg(c.cycle).arg(c.year));
    for (qint64 code : s.species)
        out.append(QStringLiteral("species %1").arg(code));
    for (const StandLevelsCell &c : s.cells) {
        QStringList cell{QString::number(c.found)};
        for (double v : {c.sph, c.basalArea, c.merchVol, c.totalVol})
            cell.append(QString::number(v, 'g', 17));
        out.append(cell.join(QLatin1Char(' ')));
    }
    return out.join(QLatin1Char('\n'));
}

struct Charts {
    std::array<ChartData, kStandLevelsCharts> data;
    StandLevelsCharts pointers() { return {&data[0], &data[1], &data[2], &data[3]}; }
};

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

    // The one pass over the run gives the very numbers of the per-point statements, to the last
    // bit: standing and harvested cycles numbered apart but meeting by year, a year twice, more cut
    // than stands, a header-less record, a NULL, and the other run left out.
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
            // Cycles numbered apart between the kinds, the headers out of the order of kind and cycle.
            addRun(db, run, QStringLiteral("S3=2010 H8=2000 S1=2000 H7=2010 S2=2010 S4=2020"), QString());
            const char *places[] = {"H7", "S1", "S2", "H8", "S3", "S4", "S1", "H7"};
            for (int t = 0; t < 400; ++t) {
                const QString place = QLatin1String(places[rng.bounded(8)]);
                const int species = QList<int>{3, 1, 9, 5, 200}.at(rng.bounded(5));
                db.addTree(run, place.left(1), place.mid(1).toInt(), species, 5 + rng.generateDouble() * 60,
                           rng.generateDouble() * 10, rng.generateDouble() * 3);
            }
            db.addTree(run, QStringLiteral("H"), 8, 11, 30, 500.3, 1.7);   // more cut than ever stood
        }
        db.exec(QStringLiteral("UPDATE Model_Entries SET Current_Diameter = NULL WHERE rowid = 17"));
        db.addTree(QStringLiteral("ORPHAN"), QStringLiteral("S"), 9, 4, 25, 3, 1);
        db.exec(QStringLiteral("UPDATE Model_Entries SET rowid = -1 WHERE Cycle_Number = 9"));

        const StandLevelsSums fast = ReadStandLevelsSums(db.db, runId, kind);
        const StandLevelsSums plan = ReadStandLevelsSumsPerPoint(db.db, runId, kind);
        QCOMPARE(exactly(fast), exactly(plan));
        QCOMPARE(fast.cells.size(), plan.cycles.size() * plan.passes * plan.species.size());
        QVERIFY(fast.cells.size() >= 12);
    }

    void kindOfText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("kind");
        for (const char *standing : {"Standing", "s", "", "x"})
            QTest::newRow(standing) << standing << "S";
        QTest::newRow("Harvested") << "Harvested" << "H";
        QTest::newRow("h") << "h" << "H";
    }
    void kindOfText()
    {
        QFETCH(QString, text);
        QFETCH(QString, kind);
        QCOMPARE(StandLevelsKind(text), kind);
    }
};

SENDREL_TEST_MAIN(tst_standlevels)
#include "tst_standlevels.moc"
