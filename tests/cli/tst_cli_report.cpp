#include "support/TestMain.h"
#include "support/GoldenFile.h"
#include "support/RunDatabase.h"
#include "support/SampleRuns.h"
#include "support/RunDatabase.h"

#include "base/SendrelError.h"
#include "base/Settings.h"
#include "base/SettingsStore.h"
#include "cli/Cli.h"

#include <QCoreApplication>
#include <QFile>
#include <QTest>

using namespace sendrel;
using namespace sendrel::test;

// The report command in process, on a run of three cycles, against files laid out by hand.
class TestCliReport : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void standAndStockToFiles_data();
    void standAndStockToFiles();
    void yearsTitleAndDescriptionToStdout();
    void normalPlaceWhenNoOutput();
    void classesFromSettings();
    void defaultClassesWithoutSettings();

    void refusedClassLayout_data();
    void refusedClassLayout();
    void failures_data();
    void failures();
    void usageErrors_data();
    void usageErrors();

private:
    int run(const QStringList &args);
    QString normalPlace(const QString &kind) const;

    std::unique_ptr<RunDatabase> m_db;
    QString m_out;
    QString m_err;
};

void TestCliReport::init()
{
    m_db = std::make_unique<RunDatabase>();
    AddReportTestRun(*m_db);
    QFile::remove(normalPlace(QStringLiteral("Stand")));
    QFile::remove(normalPlace(QStringLiteral("Stock")));
}

void TestCliReport::cleanup()
{
    QFile::remove(normalPlace(QStringLiteral("Stand")));
    QFile::remove(normalPlace(QStringLiteral("Stock")));
    SettingsStore store;
    for (const char *key : {"ClassesStart", "ClassesWidth", "NumClasses"}) {
        try {
            store.DeleteSetting(kSectionSendrel, QString::fromLatin1(key));
        } catch (const SendrelError &) {
            // Not stored: nothing to take away.
        }
    }
    store.sync();
    m_db.reset();
}

int TestCliReport::run(const QStringList &args)
{
    m_out.clear();
    m_err.clear();
    QTextStream out(&m_out);
    QTextStream err(&m_err);
    return RunCli(QStringList{QStringLiteral("--db"), m_db->path(), QStringLiteral("report")} + args, out, err);
}

// The tool's program folder, where a report goes when it is writable.
QString TestCliReport::normalPlace(const QString &kind) const
{
    return QCoreApplication::applicationDirPath() + QLatin1Char('/') + kReportTestRunId + QLatin1Char('_') + kind + QStringLiteral(".txt");
}

void TestCliReport::standAndStockToFiles_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<QString>("golden");
    QTest::newRow("stand") << "stand" << "reports/cli_stand_all_cycles.txt";
    QTest::newRow("stock") << "stock" << "reports/cli_stock_all_cycles.txt";
}

void TestCliReport::standAndStockToFiles()
{
    QFETCH(QString, what);
    QFETCH(QString, golden);
    const QString file = m_db->dir() + QStringLiteral("/out.txt");
    // Every cycle by default; the Run Id as stored, whatever its case on the line.
    QCOMPARE(run({what, "clirpt", "--kind", "S", "--classes", "10,5,4", "-o", file}), 0);
    QCOMPARE(m_err, QString());
    QCOMPARE(m_out, QString());
    SENDREL_COMPARE_GOLDEN(ReadWholeFile(file), golden);
    // The file of the normal place was moved, not left behind.
    QVERIFY(!QFile::exists(normalPlace(what == QLatin1String("stand") ? QStringLiteral("Stand") : QStringLiteral("Stock"))));

    // The same cycles named one by one, in another order, give the same file: the list's order rules.
    QCOMPARE(run({what, "CLIRPT", "--kind", "s", "--cycles", "3,1,2", "--classes", "10,5,4", "-o", "-"}), 0);
    SENDREL_COMPARE_GOLDEN(m_out.toUtf8(), golden);
}

void TestCliReport::yearsTitleAndDescriptionToStdout()
{
    QCOMPARE(run({"stand", "CLIRPT", "--kind", "S", "--years", "2020,2000", "--classes", "10,5,4", "--title", "O'Brien's cut",
                  "--description", "line 1\nline 2", "-o", "-"}),
             0);
    QCOMPARE(m_err, QString());
    SENDREL_COMPARE_GOLDEN(m_out.toUtf8(), QStringLiteral("reports/cli_stand_two_years_titled.txt"));
    QVERIFY(!QFile::exists(normalPlace(QStringLiteral("Stand"))));
}

void TestCliReport::normalPlaceWhenNoOutput()
{
    QCOMPARE(run({"stock", "CLIRPT", "--kind", "S", "--classes", "10,5,4"}), 0);
    const QString path = normalPlace(QStringLiteral("Stock"));
    QCOMPARE(m_out, path + QLatin1Char('\n'));
    SENDREL_COMPARE_GOLDEN(ReadWholeFile(path), QStringLiteral("reports/cli_stock_all_cycles.txt"));
}

void TestCliReport::classesFromSettings()
{
    {
        SettingsStore store;
        store.SaveSetting(kSectionSendrel, QStringLiteral("ClassesStart"), QStringLiteral("10"));
        store.SaveSetting(kSectionSendrel, QStringLiteral("ClassesWidth"), QStringLiteral("5"));
        store.SaveSetting(kSectionSendrel, QStringLiteral("NumClasses"), QStringLiteral("4"));
        store.sync();
    }
    QCOMPARE(run({"stand", "CLIRPT", "--kind", "S", "-o", "-"}), 0);
    SENDREL_COMPARE_GOLDEN(m_out.toUtf8(), QStringLiteral("reports/cli_stand_all_cycles.txt"));
}

void TestCliReport::defaultClassesWithoutSettings()
{
    // 0, 10, 10: ten rows per block, labelled by their midpoints 5 to 95. The PW of 9 cm,
    // lost below 10, now counts in the first class and so comes first.
    QCOMPARE(run({"stand", "CLIRPT", "--kind", "S", "--cycles", "1", "-o", "-"}), 0);
    const QStringList lines = m_out.split(QStringLiteral("\r\n"));
    QVERIFY2(lines.contains(QStringLiteral("DBH_Class         PW        FD        BL   Totals:")), qPrintable(m_out));
    const qsizetype first = lines.indexOf(QStringLiteral("         5       100         0         0       100"));
    QVERIFY2(first > 0, qPrintable(m_out));
    // PW 17 and FD 12 and 15 share the class 10-20; FD 40 + 20.5 = 60.5 prints as 61.
    QCOMPARE(lines.at(first + 1), QStringLiteral("        15        10        61         0        71"));
    QCOMPARE(lines.at(first + 9), QStringLiteral("        95         0         0         0         0"));
    QCOMPARE(lines.at(first + 10), QString(50, QLatin1Char('_')));
    // The bucket from 90 up holds nothing; BL 40 counts in the class 40-50.
    QCOMPARE(lines.at(first + 4), QStringLiteral("        45         0         0         5         5"));
}

void TestCliReport::refusedClassLayout_data()
{
    QTest::addColumn<QString>("classes");
    QTest::addColumn<QString>("message");
    QTest::newRow("start off the half step") << "12.25,2.5,10" << "        Must be a multiple of:\nStarting: 0.5\n";
    QTest::newRow("width 0.25") << "0,0.25,10" << "        Must be a multiple of:\nClass width: 0.5\n";
    QTest::newRow("one class") << "0,10,1" << "Invalid.       Valid range is:\n# 0f Classes: 2 - 30\n";
    QTest::newRow("range hides step") << "2000,0.3,10" << "Invalid.       Valid range is:\nStarting: 0 - 1000\n";
}

void TestCliReport::refusedClassLayout()
{
    QFETCH(QString, classes);
    QFETCH(QString, message);
    QCOMPARE(run({"stand", "CLIRPT", "--kind", "S", "--classes", classes, "-o", "-"}), 1);
    QCOMPARE(m_err, message);
    QCOMPARE(m_out, QString());
    QVERIFY(!QFile::exists(normalPlace(QStringLiteral("Stand"))));
}

void TestCliReport::failures_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("message");
    QTest::newRow("unknown run") << QStringList{"stand", "R9", "--kind", "S", "-o", "-"} << "sendrel-cli: no run R9 of kind S\n";
    QTest::newRow("cycle not in run") << QStringList{"stand", "CLIRPT", "--kind", "S", "--cycles", "1,4", "-o", "-"}
                                      << "sendrel-cli: run CLIRPT has no cycle 4\n";
    QTest::newRow("year not in run") << QStringList{"stock", "CLIRPT", "--kind", "S", "--years", "1999", "-o", "-"}
                                     << "sendrel-cli: run CLIRPT has no year 1999\n";
    QTest::newRow("run without cycles") << QStringList{"stand", "EMPTY", "--kind", "S", "-o", "-"} << "No Cycles Are Selected\n";
    // No tree reaches the classes: blocks without rows, which the generator refuses.
    QTest::newRow("no tree in the classes") << QStringList{"stand", "CLIRPT", "--kind", "S", "--classes", "100,10,3", "-o", "-"}
                                            << "Error printing report\nEither BOF or EOF is True, or the current record has been deleted. (3021)\n";
    QTest::newRow("output not writable") << QStringList{"stand", "CLIRPT", "--kind", "S", "-o", "/nonexistent-folder/x.txt"}
                                         << "sendrel-cli: cannot write /nonexistent-folder/x.txt: ";
}

void TestCliReport::failures()
{
    QFETCH(QStringList, args);
    QFETCH(QString, message);
    m_db->addRun(QStringLiteral("EMPTY"), QStringLiteral("S"));
    QCOMPARE(run(args), 1);
    QVERIFY2(m_err.startsWith(message), qPrintable(m_err));
    QCOMPARE(m_out, QString());
}

void TestCliReport::usageErrors_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("message");
    QTest::newRow("composition not yet") << QStringList{"composition", "CLIRPT", "--kind", "S"} << "report composition is not available yet";
    QTest::newRow("unknown report") << QStringList{"volume", "CLIRPT", "--kind", "S"} << "report volume is not available";
    QTest::newRow("no report") << QStringList{} << "report needs stand or stock";
    QTest::newRow("no kind") << QStringList{"stand", "CLIRPT"} << "--kind must be S or H";
    QTest::newRow("kind X") << QStringList{"stand", "CLIRPT", "--kind", "X"} << "--kind must be S or H";
    QTest::newRow("cycles and years") << QStringList{"stand", "CLIRPT", "--kind", "S", "--cycles", "1", "--years", "2000"}
                                      << "give --cycles or --years, not both";
    QTest::newRow("cycles not numbers") << QStringList{"stand", "CLIRPT", "--kind", "S", "--cycles", "1,two"}
                                        << "--cycles takes whole numbers separated by commas";
    QTest::newRow("years empty part") << QStringList{"stand", "CLIRPT", "--kind", "S", "--years", "2000,"}
                                      << "--years takes whole numbers separated by commas";
    QTest::newRow("classes of two parts") << QStringList{"stand", "CLIRPT", "--kind", "S", "--classes", "0,10"}
                                          << "--classes takes START,WIDTH,COUNT";
    QTest::newRow("title of 51") << QStringList{"stand", "CLIRPT", "--kind", "S", "--title", QString(51, QLatin1Char('t'))}
                                 << "--title takes at most 50 characters";
    QTest::newRow("two runs") << QStringList{"stand", "CLIRPT", "R2", "--kind", "S"} << "report needs one run";
    QTest::newRow("unknown option") << QStringList{"stand", "CLIRPT", "--kind", "S", "--landscape"} << "unknown option --landscape";
    QTest::newRow("missing value") << QStringList{"stand", "CLIRPT", "--kind", "S", "-o"} << "an option lacks its value";
}

void TestCliReport::usageErrors()
{
    QFETCH(QStringList, args);
    QFETCH(QString, message);
    QCOMPARE(run(args), 2);
    QVERIFY2(m_err.startsWith(QStringLiteral("sendrel-cli: ") + message), qPrintable(m_err));
    QVERIFY(m_err.contains(QStringLiteral("usage: sendrel-cli [--db PATH] report stand|stock RUN")));
    QCOMPARE(m_out, QString());
}

SENDREL_TEST_MAIN(TestCliReport)
#include "tst_cli_report.moc"
