#include "support/TestMain.h"

#include "base/Settings.h"
#include "base/SettingsStore.h"
#include "support/CliRun.h"
#include "support/GoldenFile.h"
#include "support/RunDatabase.h"
#include "support/SampleRuns.h"
#include "support/TableReadBack.h"

#include <QDir>

using namespace sendrel;
using namespace sendrel::test;

// sendrel-cli summary in its four forms, and the reports as CSV and workbooks.
class tst_clisummary : public QObject {
    Q_OBJECT

    std::unique_ptr<RunDatabase> m_db;

    CliRun tool(const QStringList &args)
    {
        return RunTool(QStringList{QStringLiteral("--db"), m_db->path()} + args);
    }

private slots:
    void init()
    {
        m_db = std::make_unique<RunDatabase>();
        AddReportTestRun(*m_db);
        SettingsStore store;
        store.SaveSetting(kSectionSendrel, QStringLiteral("ClassesStart"), QStringLiteral("10"));
        store.SaveSetting(kSectionSendrel, QStringLiteral("ClassesWidth"), QStringLiteral("5"));
        store.SaveSetting(kSectionSendrel, QStringLiteral("NumClasses"), QStringLiteral("4"));
        store.SaveSetting(kSectionCommon, QStringLiteral("WorkDir"), m_db->workDir());
        store.sync();
    }
    void cleanup() { m_db.reset(); }

    // Each form to the standard output begins as it should; txt stays the report file itself.
    void formsOnStdout_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QString>("begins");
        QTest::newRow("summary txt") << QStringList{"summary", "clirpt", "--kind", "S", "-o", "-"} << "Stand summary: CLIRPT:Standing\n";
        QTest::newRow("summary csv") << QStringList{"summary", "CLIRPT", "--kind", "S", "--format", "csv", "-o", "-"}
                                     << "Year,Cycle,Before SPH (stems/ha),Before BA (sq.m/ha),";
        QTest::newRow("summary json") << QStringList{"summary", "CLIRPT", "--kind", "H", "--format", "json", "-o", "-"}
                                      << "{\n  \"title\": \"Stand summary: CLIRPT:Harvested\",\n";
        QTest::newRow("stand csv") << QStringList{"report", "stand", "CLIRPT", "--kind", "S", "--format", "csv", "-o", "-"}
                                   << "Year,Cycle,DBH class (cm),FD (SPH),PW (SPH),BL (SPH),HW (SPH),LW (SPH),Total (SPH)\r\n2000,1,12.5,40,0,0,0,0,40\r\n";
    }
    void formsOnStdout()
    {
        QFETCH(QStringList, args);
        QFETCH(QString, begins);
        const CliRun r = tool(args);
        QCOMPARE(r.err, QString());
        QCOMPARE(r.code, 0);
        QVERIFY2(r.out.startsWith(begins), qPrintable(r.out.left(400)));
    }

    void files()
    {
        // Without -o a file in the Work folder, its path printed.
        CliRun r = tool({"summary", "CLIRPT", "--kind", "S", "--format", "csv"});
        const QString placed = QDir(m_db->workDir()).filePath(QStringLiteral("CLIRPT_Standing_Summary.csv"));
        QCOMPARE(r.out, placed + QLatin1Char('\n'));
        QVERIFY(ReadWholeFile(placed).startsWith("Year,Cycle,"));

        // txt is the report file, byte for byte.
        r = tool({"report", "stand", "CLIRPT", "--kind", "S", "--format", "txt", "-o", "-"});
        SENDREL_COMPARE_GOLDEN(r.out.toUtf8(), QStringLiteral("reports/cli_stand_all_cycles.txt"));
    }

    // A workbook with -o FILE: the sheets the desktop's Export... writes, whatever --statistic says.
    void workbooks_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QStringList>("sheets");
        QTest::newRow("stand: a sheet per year") << QStringList{"report", "stand", "CLIRPT", "--kind", "S"}
                                                 << QStringList{"2000 cycle 1", "2010 cycle 2", "2020 cycle 3", "Definitions"};
        QTest::newRow("composition: a sheet per statistic")
            << QStringList{"report", "composition", "CLIRPT", "--kind", "S", "--statistic", "gtv"} << QStringList{"SPH", "Basal area", "GTV", "Definitions"};
        QTest::newRow("summary: one sheet") << QStringList{"summary", "CLIRPT", "--kind", "S"} << QStringList{"Stand summary", "Definitions"};
    }
    void workbooks()
    {
        QFETCH(QStringList, args);
        QFETCH(QStringList, sheets);
        const QString book = m_db->filePath(QStringLiteral("book.xlsx"));
        const CliRun r = tool(args + QStringList{"--format", "xlsx", "-o", book});
        QCOMPARE(r.err, QString());
        QCOMPARE(r.code, 0);
        QCOMPARE(WorkbookSheets(book), sheets);
    }

    void faults_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("said");
        QTest::newRow("workbook to stdout") << QStringList{"summary", "CLIRPT", "--kind", "S", "--format", "xlsx", "-o", "-"} << 2
                                            << "a workbook cannot go to the standard output";
        QTest::newRow("no such run") << QStringList{"summary", "NONE", "--kind", "S"} << 1 << "There is no run NONE:Standing";
        QTest::newRow("a missing folder") << QStringList{"summary", "CLIRPT", "--kind", "S", "--format", "xlsx", "-o", "missing/s.xlsx"} << 1
                                          << "missing/s.xlsx";
        QTest::newRow("a folder in place of the file")
            << QStringList{"report", "stand", "CLIRPT", "--kind", "S", "--format", "csv", "-o", "Work"} << 1 << "Work";
    }
    void faults()
    {
        QFETCH(QStringList, args);
        QFETCH(int, code);
        QFETCH(QString, said);
        for (QString &a : args) {
            if (a.startsWith(QLatin1String("missing")) || a == QLatin1String("Work"))
                a = m_db->filePath(a);
        }
        const CliRun r = tool(args);
        QCOMPARE(r.code, code);
        QVERIFY2(r.err.contains(said), qPrintable(r.err));
        QCOMPARE(r.out, QString());
        QCOMPARE(QDir(m_db->workDir()).entryList(QDir::Files | QDir::Hidden), QStringList());
    }
};

SENDREL_TEST_MAIN(tst_clisummary)
#include "tst_clisummary.moc"
