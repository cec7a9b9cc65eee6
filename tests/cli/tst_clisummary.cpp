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
        // Imperial: per acre, the classes as the layout gives them (40 / 2.471053814671653).
        QTest::newRow("stand csv imperial")
            << QStringList{"--units", "imperial", "report", "stand", "CLIRPT", "--kind", "S", "--format", "csv", "-o", "-"}
            << "Year,Cycle,DBH class (cm),FD (TPA),PW (TPA),BL (TPA),HW (TPA),LW (TPA),Total (TPA)\r\n2000,1,12.5,16.18742569,0,0,0,0,16.18742569\r\n";
        QTest::newRow("summary csv imperial") << QStringList{"--units", "imperial", "summary", "CLIRPT", "--kind", "S", "--format", "csv", "-o", "-"}
                                              << "Year,Cycle,Before SPH (trees/acre),Before BA (sq.ft/acre),Before QMD (in),Before SDI (trees/acre),";
        QTest::newRow("summary txt imperial") << QStringList{"--units", "imperial", "summary", "CLIRPT", "--kind", "S", "-o", "-"}
                                              << "Stand summary: CLIRPT:Standing\n";
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

        // txt is the report file, byte for byte, also in imperial units: the report files stay metric.
        r = tool({"report", "stand", "CLIRPT", "--kind", "S", "--format", "txt", "-o", "-"});
        SENDREL_COMPARE_GOLDEN(r.out.toUtf8(), QStringLiteral("reports/cli_stand_all_cycles.txt"));
        SettingsStore store;
        store.SaveSetting(kSectionSendrel, QStringLiteral("Units"), QStringLiteral("imperial"));
        store.sync();
        r = tool({"report", "stock", "CLIRPT", "--kind", "S", "-o", "-"});
        SENDREL_COMPARE_GOLDEN(r.out.toUtf8(), QStringLiteral("reports/cli_stock_all_cycles.txt"));
        r = tool({"--units", "imperial", "report", "composition", "CLIRPT", "--kind", "S", "--statistic", "basal-area", "-o", "-"});
        SENDREL_COMPARE_GOLDEN(r.out.toUtf8(), QStringLiteral("reports/composition_basal-area.txt"));
        // The setting's units where --units says none; --units over the setting.
        r = tool({"summary", "CLIRPT", "--kind", "S", "--format", "json", "-o", "-"});
        QVERIFY(r.out.contains(QStringLiteral("\"units\": \"imperial\"")));
        r = tool({"--units", "metric", "summary", "CLIRPT", "--kind", "S", "--format", "json", "-o", "-"});
        QVERIFY(r.out.contains(QStringLiteral("\"units\": \"metric\"")));

        // --definitions: the CSV file's definitions beside it, both paths printed.
        r = tool({"summary", "CLIRPT", "--kind", "S", "--format", "csv", "--definitions", "--sdi", "summation"});
        const QString sidecar = QDir(m_db->workDir()).filePath(QStringLiteral("CLIRPT_Standing_Summary.definitions.csv"));
        QCOMPARE(r.out, placed + QLatin1Char('\n') + sidecar + QLatin1Char('\n'));
        const ReadBack definitions = ReadCsv(ReadWholeFile(sidecar));
        QCOMPARE(definitions.headers, (QStringList{"Section", "Name", "Unit", "Definition"}));
        QCOMPARE(definitions.rows.at(2).mid(0, 3), (QList<QVariant>{"Column", "Before SPH", "trees/acre"}));
        QVERIFY(definitions.rows.contains(QList<QVariant>{"File", "SDI method", QVariant(),
                                                         "Stand density index by the summation method, the sum over the tree records of "
                                                         "Trees_per_ha x (d / 25.4 cm) ^ 1.605, with exponent 1.605 and reference diameter "
                                                         "10 in: stems per acre of the reference diameter."}));
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
        QTest::newRow("no such units") << QStringList{"--units", "metres", "summary", "CLIRPT", "--kind", "S"} << 2
                                       << "--units takes metric or imperial, not 'metres'";
        QTest::newRow("definitions of stdout") << QStringList{"summary", "CLIRPT", "--kind", "S", "--format", "csv", "--definitions", "-o", "-"}
                                               << 2 << "--definitions needs a file";
        QTest::newRow("no such sdi method") << QStringList{"summary", "CLIRPT", "--kind", "S", "--sdi", "stage"} << 2
                                            << "--sdi takes reineke, summation, not 'stage'";
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
