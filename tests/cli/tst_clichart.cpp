#include "support/TestMain.h"

#include "domain/output/ChartData.h"
#include "graph/Graph.h"
#include "support/CliRun.h"
#include "support/RunDatabase.h"

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QStandardPaths>
#include <QRegularExpression>

using namespace sendrel;
using namespace sendrel::test;

// sendrel-cli chart: the chart window's chart of each selected year, to the files asked for.
class tst_clichart : public QObject {
    Q_OBJECT

    std::unique_ptr<RunDatabase> m_db;
    QList<QPair<QString, QList<ChartData>>> m_written;   // path, pages

    CliRun chart(const QStringList &args)
    {
        m_written.clear();
        return RunTool(QStringList{QStringLiteral("--db"), m_db->path(), QStringLiteral("chart")} + args);
    }

private slots:
    void init()
    {
        m_db = std::make_unique<RunDatabase>();
        RunDatabase &db = *m_db;
        const QString r = QStringLiteral("R1");
        const QString s = QStringLiteral("S");
        db.addRun(r, s);
        db.addHeader(r, s, 1, 2000);
        db.addHeader(r, s, 2, 2010);
        db.addHeader(r, s, 3, 2020);
        db.addTree(r, s, 1, 3, 12, 40, 0.25);
        db.addTree(r, s, 1, 1, 17, 10, 2.0);
        db.addTree(r, s, 2, 3, 12, 30, 0.5);
        db.addTree(r, s, 2, 9, 33, 5, 1.0);
        SetChartFileWriter([this](const QList<ChartData> &pages, const QString &path) { m_written.append({path, pages}); });
    }
    void cleanup()
    {
        SetChartFileWriter({});
        m_db.reset();
    }

    void oneYear()
    {
        const CliRun r = chart({"stand", "r1", "--kind", "S", "--year", "2010", "--classes", "10,5,3", "-o", "x.png"});
        QCOMPARE(r.code, 0);
        QCOMPARE(m_written.size(), 1);
        QCOMPARE(m_written.first().first, QStringLiteral("x.png"));
        const ChartData &c = m_written.first().second.first();
        // The titles of a chart window of the year, the Run Id as stored.
        QCOMPARE(c.ChartTopTitle(), QStringLiteral("R1 (Standing, 2010): Density"));
        QCOMPARE(c.ChartLeftTitle(), QStringLiteral("Density (SPH)"));
        QCOMPARE(c.pointLabels(), (QVector<QString>{"12.5", "17.5", "22.5"}));
        QCOMPARE(c.series().at(0).legend, QStringLiteral("FD"));
        QCOMPARE(c.series().at(0).values, (QVector<double>{30, 0, 0}));
        QCOMPARE(c.series().at(1).legend, QStringLiteral("BL"));
        QCOMPARE(c.ChartYAxisMax(), 30.0);
        QCOMPARE(c.ChartScreenStyle(), qint16(1));
    }

    void options()
    {
        QCOMPARE(chart({"stock", "R1", "--kind", "s", "--cycle", "1", "--classes", "10,5,3", "--y-max", "500", "--grid", "both", "--bw",
                        "-o", "c.pdf"}).code,
                 0);
        const ChartData &c = m_written.first().second.first();
        QCOMPARE(c.ChartTopTitle(), QStringLiteral("R1 (Standing, 2000): Gross Total Volume"));
        QCOMPARE(c.ChartYAxisMax(), 500.0);
        QCOMPARE(c.ChartGrid(), qint16(3));
        QCOMPARE(c.ChartScreenStyle(), qint16(0));
        // A typed maximum below the data does not cut it off.
        QCOMPARE(chart({"stock", "R1", "--kind", "S", "--cycle", "1", "--classes", "10,5,3", "--y-max", "5", "-o", "c.svg"}).code, 0);
        QCOMPARE(m_written.first().second.first().ChartYAxisMax(), 20.0);
    }

    // The composition window's chart of one statistic over the years, with its titles and options.
    void composition()
    {
        QCOMPARE(chart({"composition", "r1", "--kind", "S", "--statistic", "gtv", "--y-max", "50", "--grid", "vertical", "--bw", "-o", "c.png"})
                     .code,
                 0);
        QCOMPARE(m_written.size(), 1);
        const ChartData &c = m_written.first().second.first();
        QCOMPARE(c.kind(), ChartData::Kind::TimeLines);
        QCOMPARE(c.ChartTopTitle(), QStringLiteral("R1 (Standing): Gross Total Volume by Species"));
        QCOMPARE(c.ChartLeftTitle(), QStringLiteral("GTV (cu.m/ha)"));
        QCOMPARE(c.ChartBottomTitle(), QStringLiteral("Calendar Year"));
        QCOMPARE(c.series().last().legend, QStringLiteral("Total"));
        QCOMPARE(c.series().last().values, (QVector<double>{30, 30, 20, 20, 0, 0}));
        QCOMPARE(c.ChartYAxisMax(), 50.0);
        QCOMPARE(c.ChartGrid(), qint16(2));
        QCOMPARE(c.ChartScreenStyle(), qint16(0));
        const CliRun r = chart({"composition", "R1", "--kind", "H", "-o", "c.png"});
        QCOMPARE(r.code, 1);
        QVERIFY2(r.err.contains(QStringLiteral("There is no run R1:Harvested")), qPrintable(r.err));
    }

    // Several years: a PDF holds one page per year in the order of the list; PNG and SVG get a
    // file per year.
    void severalYears_data()
    {
        QTest::addColumn<QStringList>("selection");
        QTest::addColumn<QString>("output");
        QTest::addColumn<QStringList>("paths");
        QTest::addColumn<QStringList>("titles");
        QTest::newRow("all years to a PDF") << QStringList() << "c.pdf" << QStringList{"c.pdf"}
                                            << QStringList{"R1 (Standing, 2000): Density", "R1 (Standing, 2010): Density", "R1 (Standing, 2020): Density"};
        QTest::newRow("years to a PDF") << QStringList{"--years", "2020,2000"} << "c.pdf" << QStringList{"c.pdf"}
                                        << QStringList{"R1 (Standing, 2000): Density", "R1 (Standing, 2020): Density"};
        QTest::newRow("cycles to PNG files") << QStringList{"--cycles", "1,2"} << "out/c.png" << QStringList{"out/c-2000.png", "out/c-2010.png"}
                                             << QStringList{"R1 (Standing, 2000): Density", "R1 (Standing, 2010): Density"};
    }
    void severalYears()
    {
        QFETCH(QStringList, selection);
        QFETCH(QString, output);
        QFETCH(QStringList, paths);
        QFETCH(QStringList, titles);
        QCOMPARE(chart(QStringList{"stand", "R1", "--kind", "S"} + selection + QStringList{"-o", output}).code, 0);
        QStringList writtenPaths;
        QStringList writtenTitles;
        for (const auto &w : std::as_const(m_written)) {
            writtenPaths.append(w.first);
            for (const ChartData &page : w.second)
                writtenTitles.append(page.ChartTopTitle());
        }
        QCOMPARE(writtenPaths, paths);
        QCOMPARE(writtenTitles, titles);
    }

    void usageErrors_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::newRow("no output") << QStringList{"stand", "R1", "--kind", "S", "--cycle", "1"};
        QTest::newRow("cycle and year") << QStringList{"stand", "R1", "--kind", "S", "--cycle", "1", "--year", "2000", "-o", "x.png"};
        QTest::newRow("unknown chart") << QStringList{"pie", "R1", "--kind", "S", "-o", "x.png"};
        QTest::newRow("a year of the composition") << QStringList{"composition", "R1", "--kind", "S", "--year", "2000", "-o", "x.png"};
        QTest::newRow("a statistic of a stand chart") << QStringList{"stand", "R1", "--kind", "S", "--statistic", "sph", "-o", "x.png"};
    }
    void usageErrors()
    {
        QFETCH(QStringList, args);
        QCOMPARE(chart(args).code, 2);
        QVERIFY(m_written.isEmpty());
    }

    // Through the chart component: the three file types, and one PDF page per year.
    void realFiles()
    {
        SetChartFileWriter([](const QList<ChartData> &pages, const QString &path) { Graph::SaveCharts(pages, path); });
        const QString dir = m_db->dir();
        QCOMPARE(chart({"stand", "R1", "--kind", "S", "--cycle", "1", "-o", dir + "/one.png"}).code, 0);
        QCOMPARE(QImage(dir + "/one.png").size(), Graph::kFileSize);
        QCOMPARE(chart({"stand", "R1", "--kind", "S", "--cycles", "1,2", "-o", dir + "/two.svg"}).code, 0);
        QVERIFY(QFileInfo(dir + "/two-2000.svg").size() > 0 && QFileInfo(dir + "/two-2010.svg").size() > 0);
        QCOMPARE(chart({"stock", "R1", "--kind", "S", "-o", dir + "/all.pdf"}).code, 0);
        const QByteArray pdf = ReadWholeFile(dir + "/all.pdf");
        QCOMPARE(pdf.count("/Type /Page\n") + pdf.count("/Type /Page\r") + pdf.count("/Type /Page "), 3);
        // Each page has the title of its year, in the order of the list.
        const QString pdftotext = QStandardPaths::findExecutable(QStringLiteral("pdftotext"));
        if (pdftotext.isEmpty())
            QSKIP("pdftotext is not installed");
        QProcess text;
        text.start(pdftotext, {dir + "/all.pdf", QStringLiteral("-")});
        QVERIFY(text.waitForFinished());
        const QStringList pages = QString::fromUtf8(text.readAllStandardOutput()).split(QLatin1Char('\f'));
        for (int i = 0; i < 3; ++i)
            QVERIFY2(pages.value(i).contains(QStringLiteral("R1 (Standing, %1): Gross Total Volume").arg(2000 + 10 * i)), qPrintable(pages.value(i)));
    }
};

SENDREL_TEST_MAIN(tst_clichart)
#include "tst_clichart.moc"
