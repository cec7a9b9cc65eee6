#include "support/TestMain.h"

#include "base/Settings.h"
#include "base/SettingsStore.h"
#include "domain/composition/StandLevelsReport.h"
#include "domain/table/TableRender.h"
#include "support/CliRun.h"
#include "support/GoldenFile.h"
#include "support/RunDatabase.h"
#include "support/SampleRuns.h"

#include <QDir>
#include <QFile>
#include <QSettings>

using namespace sendrel;
using namespace sendrel::test;

// sendrel-cli report over a run of three cycles: the desktop's report file, byte for byte, where
// the user asks for it.
class tst_clireport : public QObject {
    Q_OBJECT

    std::unique_ptr<RunDatabase> m_db;

    CliRun report(const QStringList &args)
    {
        return RunTool(QStringList{QStringLiteral("--db"), m_db->path(), QStringLiteral("report")} + args);
    }
    void setClasses(const QString &start, const QString &width, const QString &count)
    {
        SettingsStore store;
        store.SaveSetting(kSectionSendrel, QStringLiteral("ClassesStart"), start);
        store.SaveSetting(kSectionSendrel, QStringLiteral("ClassesWidth"), width);
        store.SaveSetting(kSectionSendrel, QStringLiteral("NumClasses"), count);
        store.SaveSetting(kSectionCommon, QStringLiteral("WorkDir"), m_db->workDir());
        store.sync();
    }

    // "HARV", harvested: cycle 1 (2000) without trees, cycle 2 (2010) with one.
    void addHarvestedRun()
    {
        m_db->addRun(QStringLiteral("HARV"), QStringLiteral("H"));
        m_db->addHeader(QStringLiteral("HARV"), QStringLiteral("H"), 1, 2000);
        m_db->addHeader(QStringLiteral("HARV"), QStringLiteral("H"), 2, 2010);
        m_db->addTree(QStringLiteral("HARV"), QStringLiteral("H"), 2, 3, 12, 40, 0.25);
    }

private slots:
    void init()
    {
        m_db = std::make_unique<RunDatabase>();
        AddReportTestRun(*m_db);
        setClasses(QStringLiteral("10"), QStringLiteral("5"), QStringLiteral("4"));
    }
    void cleanup() { m_db.reset(); }

    // The same file whichever way it is asked for: to a file, to stdout, or to its place.
    void standAndStock_data()
    {
        QTest::addColumn<QString>("what");
        QTest::addColumn<QString>("golden");
        QTest::newRow("stand") << "stand" << "reports/cli_stand_all_cycles.txt";
        QTest::newRow("stock") << "stock" << "reports/cli_stock_all_cycles.txt";
    }
    void standAndStock()
    {
        QFETCH(QString, what);
        QFETCH(QString, golden);
        const QString file = m_db->filePath(QStringLiteral("out.txt"));
        // Every cycle by default; the Run Id as stored, whatever its case on the line.
        CliRun r = report({what, QStringLiteral("clirpt"), QStringLiteral("--kind"), QStringLiteral("S"), QStringLiteral("-o"), file});
        QCOMPARE(r.code, 0);
        QCOMPARE(r.out + r.err, QString());
        SENDREL_COMPARE_GOLDEN(ReadWholeFile(file), golden);
        // -o writes only there: nothing in the Work folder.
        QCOMPARE(QDir(m_db->workDir()).entryList(QDir::Files), QStringList());

        // The cycles named in another order: the list's order rules.
        r = report({what, QStringLiteral("CLIRPT"), QStringLiteral("--kind"), QStringLiteral("s"), QStringLiteral("--cycles"),
                    QStringLiteral("3,1,2"), QStringLiteral("-o"), QStringLiteral("-")});
        SENDREL_COMPARE_GOLDEN(r.out.toUtf8(), golden);

        // Without -o: its place in the Work folder, and the path on stdout.
        r = report({what, QStringLiteral("CLIRPT"), QStringLiteral("--kind"), QStringLiteral("S")});
        const QString placed = QDir(m_db->workDir()).filePath(QStringLiteral("CLIRPT_%1.txt").arg(what == QLatin1String("stand") ? "Stand" : "Stock"));
        QCOMPARE(r.out, placed + QLatin1Char('\n'));
        SENDREL_COMPARE_GOLDEN(ReadWholeFile(placed), golden);
    }

    // The composition report of each statistic: the desktop's file, with its title and the run's
    // description and parameters as the dialog proposes them.
    void composition_data()
    {
        QTest::addColumn<QString>("statistic");
        QTest::newRow("sph") << "sph";
        QTest::newRow("basal-area") << "basal-area";
        QTest::newRow("gtv") << "gtv";
    }
    void composition()
    {
        QFETCH(QString, statistic);
        const QString golden = QStringLiteral("reports/composition_%1.txt").arg(statistic);
        CliRun r = report({"composition", "clirpt", "--kind", "S", "--statistic", statistic, "-o", "-"});
        QCOMPARE(r.code, 0);
        SENDREL_COMPARE_GOLDEN(r.out.toUtf8(), golden);
        r = report({"composition", "CLIRPT", "--kind", "standing", "--statistic", statistic});
        const QString placed = QDir(m_db->workDir()).filePath(QStringLiteral("CLIRPT_Species.txt"));
        QCOMPARE(r.out, placed + QLatin1Char('\n'));
        SENDREL_COMPARE_GOLDEN(ReadWholeFile(placed), golden);

        // As numbers: the table of the statistic asked for.
        r = report({"composition", "CLIRPT", "--kind", "S", "--statistic", statistic, "--format", "csv", "-o", "-"});
        QCOMPARE(r.code, 0);
        const auto shown = static_cast<StandLevelsStatistic>(QStringList{"sph", "basal-area", "gtv"}.indexOf(statistic));
        QCOMPARE(r.out.toUtf8(), CsvText(StandLevelsTable(m_db->db, ReadStandLevelsCycleSums(m_db->db, "CLIRPT", "S"), shown)));
    }

    void yearsTitleAndDescription()
    {
        const CliRun r = report({"stand", "CLIRPT", "--kind", "S", "--years", "2020,2000", "--title", "O'Brien's cut", "--description",
                                 "line 1\nline 2", "-o", "-"});
        QCOMPARE(r.code, 0);
        SENDREL_COMPARE_GOLDEN(r.out.toUtf8(), QStringLiteral("reports/cli_stand_two_years_titled.txt"));
    }

    void defaultClassesWithoutSettings()
    {
        QSettings(SettingsStore().fileName(), QSettings::IniFormat).clear();
        // 0, 10, 10: ten rows per block, labelled by their midpoints 5 to 95. The PW of 9 cm,
        // lost below 10, now counts in the first class and so comes first.
        const CliRun r = report({"stand", "CLIRPT", "--kind", "S", "--cycles", "1", "-o", "-"});
        const QStringList lines = r.out.split(QStringLiteral("\r\n"));
        QVERIFY2(lines.contains(QStringLiteral("DBH_Class         PW        FD        BL   Totals:")), qPrintable(r.out));
        const qsizetype first = lines.indexOf(QStringLiteral("         5       100         0         0       100"));
        QVERIFY2(first > 0, qPrintable(r.out));
        // PW 17 and FD 12 and 15 share the class 10-20; FD 40 + 20.5 = 60.5 prints as 61.
        QCOMPARE(lines.at(first + 1), QStringLiteral("        15        10        61         0        71"));
        QCOMPARE(lines.at(first + 4), QStringLiteral("        45         0         0         5         5"));
    }

    // What the desktop would refuse or fail on fails here with its words, and leaves no file; a
    // file of the user's at -o stays as it was.
    void failures_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QString>("said");
        QTest::newRow("a start off the half step") << QStringList{"stand", "CLIRPT", "--kind", "S", "--classes", "12.25,2.5,10"}
                                                   << "        Must be a multiple of:\nStarting: 0.5\n";
        QTest::newRow("range hides step") << QStringList{"stand", "CLIRPT", "--kind", "S", "--classes", "2000,0.3,10"}
                                          << "Invalid.       Valid range is:\nStarting: 0 - 1000\n";
        // A negative number is a value, refused by the class layout's own words, not as a usage error.
        QTest::newRow("a negative start") << QStringList{"stand", "CLIRPT", "--kind", "S", "--classes", "-0.5,5,10"}
                                          << "Invalid.       Valid range is:\nStarting: 0 - 1000\n";
        QTest::newRow("a cycle the run lacks") << QStringList{"stand", "CLIRPT", "--kind", "S", "--cycles", "1,4"}
                                               << "Run CLIRPT:Standing has no cycle 4.";
        QTest::newRow("a year the run lacks") << QStringList{"stock", "CLIRPT", "--kind", "S", "--years", "1999"}
                                              << "Run CLIRPT:Standing has no year 1999.";
        QTest::newRow("a run without cycles") << QStringList{"stand", "EMPTY", "--kind", "S"} << "No Cycles Are Selected";
        QTest::newRow("a composition without cycles") << QStringList{"composition", "EMPTY", "--kind", "S"}
                                                      << "Run EMPTY:Standing has no cycles: there is nothing to report.";
        QTest::newRow("no tree in the classes") << QStringList{"stand", "CLIRPT", "--kind", "S", "--classes", "100,10,3"}
                                                << "Cycle 1 (2000) of CLIRPT, Standing, has no trees in the diameter classes.";
        QTest::newRow("a chosen cycle without trees") << QStringList{"stand", "HARV", "--kind", "H", "--cycles", "1,2"}
                                                      << "Cycle 1 (2000) of HARV, Harvested, has no trees.";
        QTest::newRow("an output that cannot be written")
            << QStringList{"stand", "CLIRPT", "--kind", "S", "-o", "/nonexistent-folder/x.txt"} << "/nonexistent-folder/x.txt";
        QTest::newRow("no tree in the classes, over a file of the user")
            << QStringList{"stand", "CLIRPT", "--kind", "S", "--classes", "100,10,3", "-o", "mine.txt"} << "has no trees in the diameter classes";
    }
    void failures()
    {
        QFETCH(QStringList, args);
        QFETCH(QString, said);
        m_db->addRun(QStringLiteral("EMPTY"), QStringLiteral("S"));
        addHarvestedRun();
        const qsizetype mine = args.indexOf(QStringLiteral("mine.txt"));
        if (mine >= 0)
            args[mine] = m_db->writeFile(QStringLiteral("mine.txt"), "the user's own");
        const CliRun r = report(args);
        QCOMPARE(r.code, 1);
        QVERIFY2(r.err.contains(said), qPrintable(r.err));
        QCOMPARE(r.out, QString());
        QCOMPARE(QDir(m_db->workDir()).entryList(QDir::Files), QStringList());
        if (mine >= 0)
            QCOMPARE(ReadWholeFile(args.at(mine)), QByteArray("the user's own"));
    }

    // Every cycle by default means the cycles with trees: a harvested list has cycles without.
    void defaultTakesTheCyclesWithTrees()
    {
        addHarvestedRun();
        const CliRun r = report({"stand", "HARV", "--kind", "H", "-o", "-"});
        QCOMPARE(r.err, QString());
        QCOMPARE(r.code, 0);
        QCOMPARE(r.out.count(QLatin1String("Cycle Year")), 1);
        QVERIFY(r.out.contains(QLatin1String("Cycle Year 2010 ")));
    }

    void usageErrors_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QString>("said");
        QTest::newRow("an unknown report") << QStringList{"volume", "CLIRPT", "--kind", "S"} << "report takes stand, stock or composition, not 'volume'";
        QTest::newRow("cycles and years") << QStringList{"stand", "CLIRPT", "--kind", "S", "--cycles", "1", "--years", "2000"}
                                          << "give one of --cycle, --year, --cycles and --years";
        QTest::newRow("classes of a composition") << QStringList{"composition", "CLIRPT", "--kind", "S", "--classes", "0,10,10"}
                                                  << "--classes is no option of report composition";
        QTest::newRow("a statistic of a stand table") << QStringList{"stand", "CLIRPT", "--kind", "S", "--statistic", "gtv"}
                                                      << "--statistic is no option of report stand";
        QTest::newRow("a title of 51") << QStringList{"stand", "CLIRPT", "--kind", "S", "--title", QString(51, QLatin1Char('t'))}
                                       << "--title takes at most 50 characters";
    }
    void usageErrors()
    {
        QFETCH(QStringList, args);
        QFETCH(QString, said);
        const CliRun r = report(args);
        QCOMPARE(r.code, 2);
        QVERIFY2(r.err.contains(said), qPrintable(r.err));
    }
};

SENDREL_TEST_MAIN(tst_clireport)
#include "tst_clireport.moc"
