#include "support/TestMain.h"

#include "base/Settings.h"
#include "base/SettingsStore.h"
#include "domain/output/ChartData.h"
#include "store/Schema.h"
#include "support/CliRun.h"
#include "support/RunDatabase.h"
#include "support/TreeListLines.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

using namespace sendrel;
using namespace sendrel::test;

// The tool as a user meets it: help, usage errors, one wording for what is missing, and the
// commands that manage runs.
class tst_clitool : public QObject {
    Q_OBJECT

    std::unique_ptr<RunDatabase> m_db;

    CliRun tool(const QStringList &args) { return RunTool(QStringList{QStringLiteral("--db"), m_db->path()} + args); }

    QString writeList(const QString &name, const QByteArray &runName, int cycles)
    {
        QList<QByteArray> lines;
        for (int c = 1; c <= cycles; ++c) {
            lines.append(HeaderLine(1, c, 1990 + 10 * c, c == 1 ? runName : QByteArray(), "03/15/2021 10:20:30"));
            lines.append(TreeLine("1", "FD", 3, 100.0 + c, 20.0 + c, 0.5, 0.4));
        }
        return m_db->writeFile(name, TreeListText(lines));
    }

private slots:
    void init()
    {
        m_db = std::make_unique<RunDatabase>();
        SetChartFileWriter([](const QList<ChartData> &, const QString &) {});
    }
    void cleanup() { m_db.reset(); }

    // --help, alone or after a command, prints the usage on stdout. A usage error exits 2 with a
    // usage line on stderr, nothing done: above all, an option never takes the next option as its
    // value.
    void usage_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("said");
        QTest::newRow("the tool") << QStringList{"--help"} << 0 << "Commands:";
        QTest::newRow("the tool, short") << QStringList{"-h"} << 0 << "usage: sendrel-cli [--db PATH]";
        QTest::newRow("a command") << QStringList{"report", "--help"} << 0 << "usage: sendrel-cli [--db PATH] report stand|stock";
        QTest::newRow("help ahead of a command") << QStringList{"--help", "years"} << 0 << "years RUN --kind S|H";
        QTest::newRow("--db --help") << QStringList{"--db", "--help", "init"} << 2 << "--db needs a value, not '--help'";
        QTest::newRow("--run-id -x") << QStringList{"--db", "x.mdb", "import", "a.lst", "--kind", "S", "--run-id", "-x"} << 2
                                     << "--run-id needs a value, not '-x'";
        QTest::newRow("no command") << QStringList{} << 2 << "no command given";
        QTest::newRow("unknown command") << QStringList{"merge"} << 2 << "unknown command 'merge'";
        QTest::newRow("unknown option") << QStringList{"runs", "--fast"} << 2 << "Unknown option 'fast'";
        QTest::newRow("missing value") << QStringList{"years", "R", "--kind"} << 2 << "Missing value after '--kind'";
        QTest::newRow("an argument too many") << QStringList{"runs", "x"} << 2 << "unexpected argument 'x'";
        QTest::newRow("an argument too few") << QStringList{"delete", "--kind", "S"} << 2 << "delete lacks an argument";
        QTest::newRow("no kind") << QStringList{"years", "R"} << 2 << "--kind is required";
        QTest::newRow("an option twice") << QStringList{"years", "R", "--kind", "S", "--kind", "H"} << 2
                                         << "--kind is given more than once";
        QTest::newRow("describe without text") << QStringList{"describe", "R"} << 2 << "give --description, --parameters or both";
    }
    void usage()
    {
        QFETCH(QStringList, args);
        QFETCH(int, code);
        QFETCH(QString, said);
        const CliRun r = RunTool(args);
        QCOMPARE(r.code, code);
        const QString &told = code == 0 ? r.out : r.err;
        QVERIFY2(told.contains(said) && (code == 0 || told.contains(QLatin1String("usage: sendrel-cli"))), qPrintable(told));
        QCOMPARE(code == 0 ? r.err : r.out, QString());
        QVERIFY(!QFile::exists(QStringLiteral("--help")));
    }

    // Every refused option value in one wording that names it, on one line.
    void refusedValues_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QString>("said");
        const QString longId(26, QLatin1Char('R'));
        QTest::newRow("--wait") << QStringList{"--wait", "soon", "runs"} << "--wait takes a number of seconds, not 'soon'";
        QTest::newRow("--wait of more than a day") << QStringList{"--wait", "100000", "runs"} << "--wait takes a number of seconds, not '100000'";
        QTest::newRow("--kind") << QStringList{"years", "R", "--kind", "T"} << "--kind takes standing, harvested, S or H, not 'T'";
        QTest::newRow("a line end in the value") << QStringList{"years", "R", "--kind", "S\nH"}
                                                 << "--kind takes standing, harvested, S or H, not 'S\\nH'";
        QTest::newRow("a choice") << QStringList{"import", "a.lst", "--kind", "S", "--on-duplicate", "merge"}
                                  << "--on-duplicate takes fail, overwrite, rename, not 'merge'";
        QTest::newRow("a format") << QStringList{"report", "stand", "R", "--kind", "S", "--format", "json"}
                                  << "--format takes txt, csv, xlsx, not 'json'";
        QTest::newRow("a statistic") << QStringList{"report", "composition", "R", "--kind", "S", "--statistic", "merch"}
                                     << "--statistic takes sph, basal-area, gtv, not 'merch'";
        QTest::newRow("a grid") << QStringList{"chart", "stand", "R", "--kind", "S", "--grid", "diagonal", "-o", "x.png"}
                                << "--grid takes none, horizontal, vertical, both, not 'diagonal'";
        QTest::newRow("a list of cycles") << QStringList{"report", "stand", "R", "--kind", "S", "--cycles", "1,two"}
                                          << "--cycles takes whole numbers separated by commas, not '1,two'";
        QTest::newRow("two for one cycle") << QStringList{"chart", "stand", "R", "--kind", "S", "--cycle", "1,2", "-o", "x.png"}
                                           << "--cycle takes one whole number, not '1,2'";
        QTest::newRow("classes of two parts") << QStringList{"report", "stand", "R", "--kind", "S", "--classes", "0,10"}
                                              << "--classes takes START,WIDTH,COUNT, not '0,10'";
        QTest::newRow("a y-axis maximum") << QStringList{"chart", "stand", "R", "--kind", "S", "--y-max", "1e3", "-o", "x.png"}
                                          << "--y-max takes digits only, not '1e3'";
        QTest::newRow("a chart file") << QStringList{"chart", "stand", "R", "--kind", "S", "-o", "x.jpg"}
                                      << "-o takes a .png, .svg or .pdf file, not 'x.jpg'";
        QTest::newRow("a seed") << QStringList{"generate-sample", "s.lst", "h.lst", "--seed", "2147483648"}
                                << "--seed takes a number from 0 to 2147483647, not '2147483648'";
        QTest::newRow("a Run Id longer than the box")
            << QStringList{"import", "a.lst", "--kind", "S", "--run-id", longId}
            << "--run-id takes a Run Id of at most 25 characters, as the desktop's Run Id box does, not '" + longId + "'";
    }
    void refusedValues()
    {
        QFETCH(QStringList, args);
        QFETCH(QString, said);
        m_db->addRun(QStringLiteral("R"), QStringLiteral("S"));
        const CliRun r = tool(args);
        QCOMPARE(r.code, 2);
        QCOMPARE(r.err.section(QLatin1Char('\n'), 0, 0), QStringLiteral("sendrel-cli: ") + said);
        QCOMPARE(r.out, QString());
    }

    // Option values at their limits: a value joined with =, a Run Id as long as the box takes, a
    // choice in capitals, a DEL escaped like the other control characters, --wait in seconds.
    void valuesAtTheirLimits()
    {
        m_db->addRun(QStringLiteral("R"), QStringLiteral("S"));
        QCOMPARE(tool({"describe", "R", "--description=-h is no option here"}).code, 0);   // joined: a value, whatever it looks like
        const CliRun longest = tool({"import", "a.lst", "--kind", "S", "--run-id", QString(25, QLatin1Char('R')), "--on-duplicate", "FAIL"});
        QCOMPARE(longest.code, 1);   // the list is missing; the values passed
        QVERIFY2(!longest.err.contains(QLatin1String(" takes ")), qPrintable(longest.err));
        const CliRun del = tool({"years", "R", "--kind", QStringLiteral("S\x7f")});
        QCOMPARE(del.code, 2);
        QVERIFY2(del.err.contains(QLatin1String("not 'S\\x7f'")), qPrintable(del.err));

        // --wait is in seconds: a write waits that long for another program's lock and says so.
        clsDBEngine other;
        other.PathToDB = m_db->path();
        other.OpenDB();
        other.StartTrans();
        if (OnServer())  // a server takes a writer's locks as it writes
            Statement(other, QStringLiteral("LOCK TABLE Run IN EXCLUSIVE MODE")).run();
        const CliRun locked = tool({"--wait", "0.2", "describe", "R", "--description", "x"});
        QCOMPARE(locked.code, 1);
        QVERIFY2(locked.err.contains(QLatin1String("stayed locked for 0.2 s")), qPrintable(locked.err));
    }

    // A standard output that cannot be written (a full disk) is a failure, not a success.
    void aFullStandardOutputFails()
    {
        m_db->addRun(QStringLiteral("R"), QStringLiteral("S"));
        m_db->addHeader(QStringLiteral("R"), QStringLiteral("S"), 1, 2000);
        QFile full(QStringLiteral("/dev/full"));
        QVERIFY(full.open(QIODevice::WriteOnly));
        QString said;
        QTextStream out(&full);
        QTextStream err(&said);
        const int code = RunCli({"--db", m_db->path(), "summary", "R", "--kind", "S", "-o", "-"}, out, err);
        err.flush();
        QCOMPARE(code, 1);
        QVERIFY2(said.contains(QLatin1String("Cannot write the standard output.")), qPrintable(said));
    }

    // Every command says a missing database and a missing run the same way.
    void oneWordingForWhatIsMissing_data()
    {
        QTest::addColumn<QStringList>("command");
        QTest::addColumn<QString>("run");
        QTest::newRow("runs") << QStringList{"runs"} << "";
        QTest::newRow("years") << QStringList{"years", "NOPE", "--kind", "S"} << "NOPE:Standing";
        QTest::newRow("delete") << QStringList{"delete", "NOPE", "--kind", "S"} << "NOPE:Standing";
        QTest::newRow("report") << QStringList{"report", "stand", "NOPE", "--kind", "S", "-o", "-"} << "NOPE:Standing";
        QTest::newRow("chart") << QStringList{"chart", "stand", "NOPE", "--kind", "S", "-o", "x.pdf"} << "NOPE:Standing";
        QTest::newRow("describe, either kind") << QStringList{"describe", " NOPE ", "--description", "x"} << "NOPE";
    }
    void oneWordingForWhatIsMissing()
    {
        QFETCH(QStringList, command);
        QFETCH(QString, run);
        const QString gone = m_db->filePath(QStringLiteral("gone.mdb"));
        CliRun r = RunTool(QStringList{"--db", gone} + command);
        QCOMPARE(r.code, 1);
        QCOMPARE(r.err, QStringLiteral("sendrel-cli: There is no run database at %1.\n").arg(QDir::toNativeSeparators(gone)));
        QVERIFY(!QFile::exists(gone));
        if (command.first() == QLatin1String("runs"))
            return;
        r = tool(command);
        QCOMPARE(r.code, 1);
        QCOMPARE(r.err, QStringLiteral("sendrel-cli: There is no run %1 in %2.\n").arg(run, QDir::toNativeSeparators(m_db->path())));
        QCOMPARE(m_db->count(QStringLiteral("Run")), 0);   // nothing added for a run that is not there
    }

    // One rule for a Run Id wherever it is given: blanks at its ends are no part of it; a control
    // character refuses the import; a leading "-" is a Run Id joined to its option by "=".
    void runIdsAsGiven()
    {
        const QString list = writeList(QStringLiteral("plot.lst"), "", 2);
        QCOMPARE(tool({"import", list, "--kind", "S", "--run-id", "  Mine\t"}).out, QStringLiteral("Mine\tS\t2\t2\n"));
        QCOMPARE(tool({"years", " mine ", "--kind", "S"}).out, QStringLiteral("1\t2000\n2\t2010\n"));
        QCOMPARE(tool({"describe", "MINE  ", "--parameters", "p"}).code, 0);
        QCOMPARE(m_db->rows(QStringLiteral("SELECT Run_Id, run_parameters FROM Run")), QStringList{"Mine|p"});
        QCOMPARE(tool({"import", list, "--kind", "S", "--run-id=-x"}).out, QStringLiteral("-x\tS\t2\t2\n"));
        const CliRun refused = tool({"import", list, "--kind", "S", "--run-id", "A\nB"});
        QCOMPARE(refused.code, 1);
        QVERIFY2(refused.err.contains(QLatin1String("control character U+000a at position 2")), qPrintable(refused.err));
        QCOMPARE(m_db->count(QStringLiteral("Model_Run")), 2);
        // No name in the header nor before the file's suffix: nothing to confirm.
        QCOMPARE(tool({"import", writeList(QStringLiteral(".lst"), "", 1), "--kind", "S"}).err, QStringLiteral("Import cancelled.\n"));
    }

    // A new file, or an empty server database; one that holds tables is refused and left as it is.
    void initMakesANewDatabaseOnce()
    {
        RunDatabase empty(RunDatabase::Db::None);
        const QString path = OnServer() ? empty.path() : m_db->filePath(QStringLiteral("new.mdb"));
        QCOMPARE(RunTool({"--db", path, "init"}).code, 0);
        const QByteArray made = ReadWholeFile(path);
        const CliRun again = RunTool({"--db", path, "init"});
        QCOMPARE(again.code, 1);
        QVERIFY2(again.err.contains(QLatin1String("init makes only new databases")), qPrintable(again.err));
        QCOMPARE(ReadWholeFile(path), made);
        QCOMPARE(RunTool({"--db", path, "runs"}).out, QString());
    }

    void importListAndDelete()
    {
        const QString list = writeList(QStringLiteral("plot.lst"), "PLOT 7", 3);
        CliRun r = tool({"import", list, "--kind", "standing"});
        QCOMPARE(r.out, QStringLiteral("PLOT 7\tS\t3\t3\n"));
        QCOMPARE(tool({"import", list, "--kind", "H"}).code, 0);
        QCOMPARE(tool({"describe", "PLOT 7", "--description", "Thinned\tfrom below"}).code, 0);
        QCOMPARE(tool({"years", "plot 7", "--kind", "S"}).out, QStringLiteral("1\t2000\n2\t2010\n3\t2020\n"));
        // One run is one line: tabs and line ends of texts are written as escapes.
        QCOMPARE(tool({"runs"}).out, QStringLiteral("PLOT 7\tH\tThinned\\tfrom below\nPLOT 7\tS\tThinned\\tfrom below\n"));

        // A taken Run Id: fail touches nothing, overwrite replaces, rename takes the next free name.
        r = tool({"import", list, "--kind", "S"});
        QCOMPARE(r.code, 1);
        QVERIFY(r.err.contains(QLatin1String("Duplicate Run ID: PLOT 7")));
        QCOMPARE(tool({"import", writeList(QStringLiteral("one.lst"), "PLOT 7", 1), "--kind", "S", "--on-duplicate", "overwrite"}).out,
                 QStringLiteral("PLOT 7\tS\t1\t1\n"));
        QCOMPARE(tool({"import", list, "--kind", "S", "--on-duplicate", "rename"}).out, QStringLiteral("PLOT 7:1\tS\t3\t3\n"));
        QCOMPARE(tool({"import", list, "--kind", "S", "--run-id", "Mine"}).out, QStringLiteral("Mine\tS\t3\t3\n"));

        QCOMPARE(tool({"delete", "PLOT 7", "--kind", "S"}).code, 0);
        QCOMPARE(m_db->count(QStringLiteral("Model_Entries"), QStringLiteral("Run_Id = 'PLOT 7'")), 3);   // the harvested list
        QCOMPARE(m_db->count(QStringLiteral("Model_Run")), 3);
        const CliRun compacted = tool({"compact"});
        QCOMPARE(compacted.code, 0);
        QVERIFY2(compacted.out.contains(QRegularExpression(QStringLiteral("^[0-9]+\t[0-9]+\n$"))), qPrintable(compacted.out));
    }

    // copy: from this half's engine to a file and from there into a new database of this half's
    // engine, rows, kept sums and description as they were; a run the target holds is refused whole.
    void copyRunsBetweenDatabases()
    {
        QCOMPARE(tool({"import", writeList(QStringLiteral("plot.lst"), "PLOT 7", 3), "--kind", "S"}).code, 0);
        QCOMPARE(tool({"import", writeList(QStringLiteral("other.lst"), "OTHER", 2), "--kind", "H"}).code, 0);
        QCOMPARE(tool({"describe", "PLOT 7", "--description", "Thinned"}).code, 0);
        m_db->addRun(QStringLiteral("NULLS"), QStringLiteral("S"));  // a tree with most of its columns NULL
        m_db->addTree(QStringLiteral("NULLS"), QStringLiteral("S"), 1, 3, 25, 40, 0.5);
        const QString file = m_db->filePath(QStringLiteral("copy.mdb"));
        CreateRunDatabase(file);
        QCOMPARE(RunTool({"copy", "--from", m_db->path(), "--to", file, "plot 7", "NULLS"}).out, QStringLiteral("PLOT 7\tS\nNULLS\tS\n"));
        RunDatabase back(RunDatabase::Db::Created);
        QCOMPARE(RunTool({"copy", "--from", file, "--to", back.path()}).out, QStringLiteral("PLOT 7\tS\nNULLS\tS\n"));
        const QStringList summary{"summary", "PLOT 7", "--kind", "S", "--format", "csv", "-o", "-"};
        QCOMPARE(RunTool(QStringList{"--db", back.path()} + summary).out, tool(summary).out);
        back.db.open(back.path());
        const QString sums = QStringLiteral("SELECT Run_Id, Cycle_Number, Species_Code, Sph, Basal_Area, Total_Volume, Gross_Merch_Volume, "
                                            "Merch_Vol_Less_DWB FROM Model_Cycle_Sums WHERE Run_Id = 'PLOT 7' ORDER BY First_Record");
        QCOMPARE(back.rows(sums), m_db->rows(sums));
        const QString entries = QStringLiteral("SELECT * FROM Model_Entries WHERE Run_Id <> 'OTHER' ORDER BY rowid");
        QCOMPARE(back.rows(entries), m_db->rows(entries));

        const CliRun again = RunTool({"copy", "--from", m_db->path(), "--to", file});
        QCOMPARE(again.code, 1);
        QVERIFY2(again.err.contains(QLatin1String("PLOT 7:Standing is in")), qPrintable(again.err));
        QCOMPARE(RunTool({"--db", file, "runs"}).out, QStringLiteral("NULLS\tS\t\nPLOT 7\tS\tThinned\n"));
    }

    void aFailedImportSaysWhere()
    {
        const QString bad = m_db->writeFile(QStringLiteral("bad.lst"), TreeListText({HeaderLine(1, 1, 2000, "BAD"), TreeLine("1", "XX", 12, 1, 10, 0.1, 0)}));
        const CliRun r = tool({"import", bad, "--kind", "S"});
        QCOMPARE(r.code, 1);
        QVERIFY2(r.err.contains(QLatin1String("Invalid species code: 12")), qPrintable(r.err));
        QVERIFY2(r.err.contains(QLatin1String("bad.lst, line 2")), qPrintable(r.err));
        QCOMPARE(m_db->count(QStringLiteral("Model_Entries")), 0);
    }

    // Fields the reading cut are told on stderr, their count and the first ten; the import succeeds.
    void importWarningsGoToStderr()
    {
        const QString list = m_db->writeFile(QStringLiteral("comma.lst"),
                                             TreeListText({HeaderLine(1, 1, 2000, "C"),
                                                           ColumnLine().at(1, TreeLine("1", "FD", 3, 250.0, 30.0, 0.9, 0.7)).at(50, " 25,4")}));
        const CliRun r = tool({"import", list, "--kind", "S"});
        QCOMPARE(r.code, 0);
        QCOMPARE(r.out, QStringLiteral("C\tS\t1\t1\n"));
        QVERIFY2(r.err.contains(QLatin1String("1 place of it may not have been read as meant:\n\n"))
                     && r.err.contains(QLatin1String("comma.lst, line 2, column 53: the diameter")),
                 qPrintable(r.err));
    }

    void backupMakesANewFileOnly()
    {
        SKIP_ON_SERVER();
        QCOMPARE(tool({"import", writeList(QStringLiteral("plot.lst"), "PLOT 7", 3), "--kind", "S"}).code, 0);
        const QString copy = m_db->filePath(QStringLiteral("copy.mdb"));
        CliRun r = tool({"backup", copy});
        QCOMPARE(r.code, 0);
        QCOMPARE(r.out + r.err, QString());
        QCOMPARE(RunTool({"--db", copy, "runs"}).out, tool({"runs"}).out);
        const QByteArray made = ReadWholeFile(copy);
        r = tool({"backup", copy});
        QCOMPARE(r.code, 1);
        QVERIFY2(r.err.contains(QLatin1String("exists already")), qPrintable(r.err));
        QCOMPARE(ReadWholeFile(copy), made);
        QCOMPARE(tool({"backup"}).code, 2);

        // Restored over a changed database, with its log in place: the runs of the backup.
        const QString before = tool({"runs"}).out;
        QCOMPARE(tool({"delete", "PLOT 7", "--kind", "S"}).code, 0);
        QCOMPARE(tool({"restore", copy}).code, 0);
        QCOMPARE(tool({"runs"}).out, before);
        QCOMPARE(m_db->scalar(QStringLiteral("PRAGMA integrity_check")).toString(), QStringLiteral("ok"));
        // A damaged backup touches nothing.
        QByteArray damaged = made;
        damaged.replace(4096, 4096, QByteArray(4096, 'x'));
        const QString bad = m_db->writeFile(QStringLiteral("bad.mdb"), damaged);
        QCOMPARE(tool({"delete", "PLOT 7", "--kind", "S"}).code, 0);
        r = tool({"restore", bad});
        QCOMPARE(r.code, 1);
        QVERIFY2(r.err.contains(QLatin1String("the backup does not read whole")), qPrintable(r.err));
        QCOMPARE(tool({"runs"}).out, QString());
    }

    void developerExtras()
    {
        const QString standing = m_db->filePath(QStringLiteral("s.lst"));
        const QString harvested = m_db->filePath(QStringLiteral("h.lst"));
        const CliRun r = RunTool({"generate-sample", standing, harvested, "--seed", "3", "--cycles", "4", "--records", "20"});
        QCOMPARE(r.code, 0);
        QVERIFY(r.out.startsWith(QLatin1String("4\t80\t")));
        QCOMPARE(tool({"import", standing, "--kind", "S"}).code, 0);

        // The first start's folders, as an installer sets them up per user: the installation's
        // files copied, a file the user has kept, a folder already named kept.
        QDir(m_db->dir()).mkpath(QStringLiteral("inst/Data"));
        QDir(m_db->dir()).mkpath(QStringLiteral("inst/Work"));
        QFile::copy(m_db->path(), m_db->filePath(QStringLiteral("inst/Data/tolv_game.mdb")));
        const QString documents = QString::fromLocal8Bit(qgetenv("XDG_DOCUMENTS_DIR"));
        QDir().mkpath(documents + QStringLiteral("/Tolvane/Data"));
        QFile mine(documents + QStringLiteral("/Tolvane/Data/tolv_game.mdb"));
        QVERIFY(mine.open(QIODevice::WriteOnly));
        mine.write("the user's own");
        mine.close();
        SettingsStore store;
        store.SaveSetting(kSectionCommon, QStringLiteral("WorkDir"), m_db->workDir());
        store.sync();
        const CliRun setup = RunTool({"setup-folders", "--installation", m_db->filePath(QStringLiteral("inst"))});
        QCOMPARE(setup.code, 0);
        SettingsStore after;
        QCOMPARE(after.GetSetting(kSectionCommon, QStringLiteral("WorkDir")), m_db->workDir());
        QCOMPARE(QDir::cleanPath(QDir::fromNativeSeparators(after.GetSetting(kSectionCommon, QStringLiteral("DataDir")))),
                 documents + QStringLiteral("/Tolvane/Data"));
        QCOMPARE(ReadWholeFile(documents + QStringLiteral("/Tolvane/Data/tolv_game.mdb")), QByteArray("the user's own"));
    }
};

SENDREL_TEST_MAIN(tst_clitool)
#include "tst_clitool.moc"
