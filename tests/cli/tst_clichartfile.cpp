#include "support/TestMain.h"
#include "support/RunDatabase.h"

#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using sendrel::test::RunDatabase;

// sendrel-cli as a user runs it: the chart command draws files without a window.
class TestCliChartFile : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void drawsTheThreeFileTypes();
    void refusedLayoutWritesNothing();

private:
    int run(const QStringList &args);

    RunDatabase m_db;
    QTemporaryDir m_out;
    QByteArray m_stderr;
};

void TestCliChartFile::initTestCase()
{
    const QString r = QStringLiteral("PLOT 1");
    const QString s = QStringLiteral("S");
    m_db.addRun(r, s);
    m_db.addHeader(r, s, 1, 2000);
    for (int i = 0; i < 200; ++i)
        m_db.addTree(r, s, 1, 1 + i % 11, 5 + (i * 37) % 60, 1 + i % 5, 0.01 * (i % 40));
}

int TestCliChartFile::run(const QStringList &args)
{
    QProcess p;
    p.start(QStringLiteral(SENDREL_BIN_DIR "/sendrel-cli"), QStringList{QStringLiteral("--db"), m_db.path()} + args);
    if (!p.waitForFinished(60000))
        return -1;
    m_stderr = p.readAllStandardError();
    return p.exitCode();
}

void TestCliChartFile::drawsTheThreeFileTypes()
{
    const QString png = m_out.filePath(QStringLiteral("stand.png"));
    QCOMPARE(run({"chart", "stand", "PLOT 1", "--kind", "S", "--year", "2000", "--classes", "5,2.5,24", "-o", png}), 0);
    const QImage image(png);
    QCOMPARE(image.size(), QSize(1100, 700));

    const QString svg = m_out.filePath(QStringLiteral("stock.svg"));
    QCOMPARE(run({"chart", "stock", "PLOT 1", "--kind", "S", "--cycle", "1", "--bw", "--grid", "both", "-o", svg}), 0);
    QVERIFY(QFileInfo(svg).size() > 10000);

    const QString pdf = m_out.filePath(QStringLiteral("stock.pdf"));
    QCOMPARE(run({"chart", "stock", "PLOT 1", "--kind", "S", "--cycle", "1", "--y-max", "100", "-o", pdf}), 0);
    QVERIFY(QFileInfo(pdf).size() > 5000);
}

void TestCliChartFile::refusedLayoutWritesNothing()
{
    const QString png = m_out.filePath(QStringLiteral("refused.png"));
    QCOMPARE(run({"chart", "stand", "PLOT 1", "--kind", "S", "--cycle", "1", "--classes", "0,0.25,10", "-o", png}), 1);
    QVERIFY(m_stderr.contains("        Must be a multiple of:\nClass width: 0.5\n"));
    QVERIFY(!QFileInfo::exists(png));
}

SENDREL_TEST_MAIN(TestCliChartFile)
#include "tst_clichartfile.moc"
