#include "support/TestMain.h"
#include "support/RunDatabase.h"

#include "cli/Cli.h"
#include "domain/output/ChartData.h"

#include <QTest>

using namespace sendrel;
using sendrel::test::RunDatabase;

// The chart command in process, with a file writer that keeps the chart instead of drawing it.
class TestCliChart : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void standChartOfAYear();
    void stockChartOfACycleWithOptions();
    void defaultClassesFromSettings();
    void refusedClassLayout_data();
    void refusedClassLayout();
    void usageErrors_data();
    void usageErrors();
    void failures_data();
    void failures();
    void missingDatabase();

private:
    int run(const QStringList &args);

    std::unique_ptr<RunDatabase> m_db;
    QString m_out;
    QString m_err;
    int m_written = 0;
    ChartData m_chart;
    QString m_path;
};

void TestCliChart::init()
{
    m_db = std::make_unique<RunDatabase>();
    RunDatabase &db = *m_db;
    const QString r = QStringLiteral("R1");
    const QString s = QStringLiteral("S");
    db.addRun(r, s);
    db.addHeader(r, s, 1, 2000);
    db.addHeader(r, s, 2, 2010);
    db.addTree(r, s, 1, 3, 12, 40, 0.25);
    db.addTree(r, s, 1, 1, 17, 10, 2.0);
    db.addTree(r, s, 2, 3, 12, 30, 0.5);
    db.addTree(r, s, 2, 9, 33, 5, 1.0);
    m_written = 0;
    m_chart = ChartData();
    SetChartFileWriter([this](const ChartData &chart, const QString &path) {
        ++m_written;
        m_chart = chart;
        m_path = path;
    });
}

void TestCliChart::cleanup()
{
    SetChartFileWriter({});
    m_db.reset();
}

int TestCliChart::run(const QStringList &args)
{
    m_out.clear();
    m_err.clear();
    QTextStream out(&m_out);
    QTextStream err(&m_err);
    return RunCli(QStringList{QStringLiteral("--db"), m_db->path(), QStringLiteral("chart")} + args, out, err);
}

void TestCliChart::standChartOfAYear()
{
    QCOMPARE(run({"stand", "r1", "--kind", "S", "--year", "2010", "--classes", "10,5,3", "-o", "/tmp/x.png"}), 0);
    QCOMPARE(m_err, QString());
    QCOMPARE(m_written, 1);
    QCOMPARE(m_path, QStringLiteral("/tmp/x.png"));
    // The titles of a chart window of the year, the Run Id as stored.
    QCOMPARE(m_chart.ChartTopTitle(), QStringLiteral("R1 (2010): Density"));
    QCOMPARE(m_chart.ChartLeftTitle(), QStringLiteral("Density (SPH)"));
    QCOMPARE(m_chart.ChartBottomTitle(), QStringLiteral("DBH Class (cm)"));
    QCOMPARE(m_chart.pointLabels(), (QVector<QString>{"12.5", "17.5", "22.5"}));
    QCOMPARE(m_chart.ChartSeriesCount(), qint16(2));
    QCOMPARE(m_chart.series().at(0).legend, QStringLiteral("FD"));
    QCOMPARE(m_chart.series().at(0).values, (QVector<double>{30, 0, 0}));
    QCOMPARE(m_chart.series().at(1).legend, QStringLiteral("BL"));
    QCOMPARE(m_chart.series().at(1).values, (QVector<double>{0, 0, 5}));
    QCOMPARE(m_chart.ChartYAxisMax(), 30.0);
    QCOMPARE(m_chart.ChartYAxisTicks(), 6);
    QCOMPARE(m_chart.ChartGrid(), qint16(0));
    QCOMPARE(m_chart.ChartScreenStyle(), qint16(1));
}

void TestCliChart::stockChartOfACycleWithOptions()
{
    QCOMPARE(run({"stock", "R1", "--kind", "s", "--cycle", "1", "--classes", "10,5,3", "--y-max", "500", "--grid", "both",
                  "--bw", "-o", "c.pdf"}),
             0);
    QCOMPARE(m_chart.ChartTopTitle(), QStringLiteral("R1 (2000): Gross Total Volume"));
    QCOMPARE(m_chart.ChartLeftTitle(), QStringLiteral("GTV(cu.m/ha)"));
    QCOMPARE(m_chart.series().at(0).legend, QStringLiteral("FD"));
    QCOMPARE(m_chart.series().at(0).values, (QVector<double>{10, 0, 0}));
    QCOMPARE(m_chart.series().at(1).legend, QStringLiteral("PW"));
    QCOMPARE(m_chart.series().at(1).values, (QVector<double>{0, 20, 0}));
    QCOMPARE(m_chart.ChartYAxisMax(), 500.0);
    QCOMPARE(m_chart.ChartGrid(), qint16(3));
    QCOMPARE(m_chart.ChartScreenStyle(), qint16(0));
    QCOMPARE(m_chart.ChartPrintStyle(), qint16(2));

    // A typed maximum below the data does not cut it off.
    QCOMPARE(run({"stock", "R1", "--kind", "S", "--cycle", "1", "--classes", "10,5,3", "--y-max", "5", "-o", "c.svg"}), 0);
    QCOMPARE(m_chart.ChartYAxisMax(), 20.0);
    QCOMPARE(run({"stock", "R1", "--kind", "S", "--cycle", "1", "--classes", "10,5,3", "--grid", "vertical", "-o", "c.svg"}), 0);
    QCOMPARE(m_chart.ChartGrid(), qint16(2));
}

void TestCliChart::defaultClassesFromSettings()
{
    QCOMPARE(run({"stand", "R1", "--kind", "S", "--cycle", "1", "-o", "d.png"}), 0);
    QCOMPARE(m_chart.ChartPointCount(), qint16(10));
    QCOMPARE(m_chart.pointLabels().first(), QStringLiteral("5"));
    QCOMPARE(m_chart.pointLabels().last(), QStringLiteral("95"));
    // PW and FD share the class 10-20; within a class the species come by rising code.
    QCOMPARE(m_chart.series().at(0).legend, QStringLiteral("PW"));
    QCOMPARE(m_chart.series().at(0).values.at(1), 10.0);
    QCOMPARE(m_chart.series().at(1).values.at(1), 40.0);
}

void TestCliChart::refusedClassLayout_data()
{
    QTest::addColumn<QString>("classes");
    QTest::addColumn<QString>("message");
    // The texts of every fault are checked with the report command, which reads --classes alike.
    QTest::newRow("31 classes") << "0,10,31" << "Invalid.       Valid range is:\n# 0f Classes: 2 - 30\n";
}

void TestCliChart::refusedClassLayout()
{
    QFETCH(QString, classes);
    QFETCH(QString, message);
    QCOMPARE(run({"stand", "R1", "--kind", "S", "--cycle", "1", "--classes", classes, "-o", "x.png"}), 1);
    QCOMPARE(m_err, message);
    QCOMPARE(m_written, 0);
}

void TestCliChart::usageErrors_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::newRow("no output") << QStringList{"stand", "R1", "--kind", "S", "--cycle", "1"};
    QTest::newRow("unknown file type") << QStringList{"stand", "R1", "--kind", "S", "--cycle", "1", "-o", "x.jpg"};
    QTest::newRow("cycle and year") << QStringList{"stand", "R1", "--kind", "S", "--cycle", "1", "--year", "2000", "-o", "x.png"};
    QTest::newRow("neither cycle nor year") << QStringList{"stand", "R1", "--kind", "S", "-o", "x.png"};
    QTest::newRow("no kind") << QStringList{"stand", "R1", "--cycle", "1", "-o", "x.png"};
    QTest::newRow("kind X") << QStringList{"stand", "R1", "--kind", "X", "--cycle", "1", "-o", "x.png"};
    QTest::newRow("grid diagonal") << QStringList{"stand", "R1", "--kind", "S", "--cycle", "1", "--grid", "diagonal", "-o", "x.png"};
    QTest::newRow("y-max not digits") << QStringList{"stand", "R1", "--kind", "S", "--cycle", "1", "--y-max", "1e3", "-o", "x.png"};
    QTest::newRow("classes of two parts") << QStringList{"stand", "R1", "--kind", "S", "--cycle", "1", "--classes", "0,10", "-o", "x.png"};
    QTest::newRow("two runs") << QStringList{"stand", "R1", "R2", "--kind", "S", "--cycle", "1", "-o", "x.png"};
    QTest::newRow("unknown option") << QStringList{"stand", "R1", "--kind", "S", "--cycle", "1", "--colour", "-o", "x.png"};
    QTest::newRow("unknown chart") << QStringList{"pie", "R1", "--kind", "S", "--cycle", "1", "-o", "x.png"};
    QTest::newRow("missing value") << QStringList{"stand", "R1", "--kind", "S", "--cycle", "1", "-o"};
}

void TestCliChart::usageErrors()
{
    QFETCH(QStringList, args);
    QCOMPARE(run(args), 2);
    QVERIFY(m_err.contains(QStringLiteral("usage: sendrel-cli")));
    QCOMPARE(m_written, 0);
}

void TestCliChart::failures_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("message");
    QTest::newRow("unknown run") << QStringList{"stand", "R9", "--kind", "S", "--cycle", "1", "-o", "x.png"}
                                 << "sendrel-cli: no run R9 of kind S\n";
    QTest::newRow("kind not imported") << QStringList{"stand", "R1", "--kind", "H", "--cycle", "1", "-o", "x.png"}
                                       << "sendrel-cli: no run R1 of kind H\n";
    QTest::newRow("year not in run") << QStringList{"stand", "R1", "--kind", "S", "--year", "1999", "-o", "x.png"}
                                     << "sendrel-cli: run R1 has no year 1999\n";
    QTest::newRow("cycle not in run") << QStringList{"stand", "R1", "--kind", "S", "--cycle", "3", "-o", "x.png"}
                                      << "sendrel-cli: run R1 has no cycle 3\n";
}

void TestCliChart::failures()
{
    QFETCH(QStringList, args);
    QFETCH(QString, message);
    QCOMPARE(run(args), 1);
    QCOMPARE(m_err, message);
    QCOMPARE(m_written, 0);
}

void TestCliChart::missingDatabase()
{
    m_out.clear();
    m_err.clear();
    QTextStream out(&m_out);
    QTextStream err(&m_err);
    const QString missing = m_db->dir() + QStringLiteral("/none.mdb");
    QCOMPARE(RunCli({"--db", missing, "chart", "stand", "R1", "--kind", "S", "--cycle", "1", "-o", "x.png"}, out, err), 1);
    QVERIFY2(m_err.startsWith(QStringLiteral("Could not find file '") + missing + QStringLiteral("'.")), qPrintable(m_err));
    QCOMPARE(m_written, 0);
}

SENDREL_TEST_MAIN(TestCliChart)
#include "tst_clichart.moc"
