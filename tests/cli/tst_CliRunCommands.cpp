#include "support/TestMain.h"
#include "cli/Cli.h"
#include "domain/import/TreeListWriter.h"

#include "support/TreeListLines.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace sendrel;
using namespace sendrel::test;

namespace {

struct Run {
    int code;
    QString out;
    QString err;
};

Run cli(const QStringList &args)
{
    Run r;
    QTextStream out(&r.out);
    QTextStream err(&r.err);
    r.code = RunCli(args, out, err);
    out.flush();
    err.flush();
    return r;
}

}  // namespace

class tst_CliRunCommands : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_db;
    QString m_standing;
    QString m_harvested;

    QString path(const QString &name) const { return m_dir.filePath(name); }
    QStringList withDb(const QStringList &args) const { return QStringList{QStringLiteral("--db"), m_db} + args; }

    QString writeList(const QString &name, const QByteArray &content)
    {
        QFile f(path(name));
        f.open(QIODevice::WriteOnly);
        f.write(content);
        return f.fileName();
    }

private slots:
    void init()
    {
        static int n = 0;
        m_db = path(QStringLiteral("t%1.mdb").arg(++n));   // a new database for each test
        QCOMPARE(cli({QStringLiteral("--db"), m_db, QStringLiteral("init")}).code, 0);
        SampleStandOptions o;
        o.cycles = 5;
        o.recordsPerCycle = 20;
        o.thinningCycle = 2;
        m_standing = path(QStringLiteral("sample_s.lst"));
        m_harvested = path(QStringLiteral("sample_h.lst"));
        WriteSampleTreeListFiles(o, m_standing, m_harvested);
    }

    void importPrintsOneLine()
    {
        Run r = cli(withDb({QStringLiteral("import"), m_standing, QStringLiteral("--kind"), QStringLiteral("standing")}));
        QCOMPARE(r.code, 0);
        QCOMPARE(r.out, QStringLiteral("SAMPLE\tS\t5\t100\n"));
        QCOMPARE(r.err, QString());
        r = cli(withDb({QStringLiteral("import"), m_harvested, QStringLiteral("--kind"), QStringLiteral("H")}));
        QCOMPARE(r.code, 0);
        QVERIFY(r.out.startsWith(QStringLiteral("SAMPLE\tH\t5\t")));

        r = cli(withDb({QStringLiteral("runs")}));
        QCOMPARE(r.code, 0);
        QCOMPARE(r.out, QStringLiteral("SAMPLE\tH\t\nSAMPLE\tS\t\n"));
        r = cli(withDb({QStringLiteral("years"), QStringLiteral("SAMPLE"), QStringLiteral("--kind"), QStringLiteral("S")}));
        QCOMPARE(r.code, 0);
        QCOMPARE(r.out, QStringLiteral("1\t2000\n2\t2010\n3\t2020\n4\t2030\n5\t2040\n"));
    }

    void duplicates()
    {
        const QStringList import{QStringLiteral("import"), m_standing, QStringLiteral("--kind"), QStringLiteral("S")};
        QCOMPARE(cli(withDb(import)).code, 0);
        // fail (the default): exit 1, nothing touched.
        Run r = cli(withDb(import));
        QCOMPARE(r.code, 1);
        QCOMPARE(r.out, QString());
        QVERIFY(r.err.contains(QStringLiteral("A Run with this ID has already been imported.")));
        QVERIFY(r.err.contains(QStringLiteral("SAMPLE")));
        // rename: the next free name.
        r = cli(withDb(import + QStringList{QStringLiteral("--on-duplicate"), QStringLiteral("rename")}));
        QCOMPARE(r.code, 0);
        QCOMPARE(r.out, QStringLiteral("SAMPLE:1\tS\t5\t100\n"));
        // overwrite: replaced, still one run.
        r = cli(withDb(import + QStringList{QStringLiteral("--on-duplicate"), QStringLiteral("overwrite")}));
        QCOMPARE(r.code, 0);
        // In the order of the list rows: "SAMPLE:1:Standing" sorts ahead of "SAMPLE:Standing".
        QCOMPARE(cli(withDb({QStringLiteral("runs")})).out, QStringLiteral("SAMPLE:1\tS\t\nSAMPLE\tS\t\n"));
        // --run-id takes the place of the suggestion.
        r = cli(withDb(import + QStringList{QStringLiteral("--run-id"), QStringLiteral("Other one")}));
        QCOMPARE(r.out, QStringLiteral("Other one\tS\t5\t100\n"));
    }

    void importFailures()
    {
        Run r = cli(withDb({QStringLiteral("import"), path(QStringLiteral("none.lst")), QStringLiteral("--kind"), QStringLiteral("S")}));
        QCOMPARE(r.code, 1);
        QVERIFY(r.err.contains(QStringLiteral("none.lst")));

        const QString invalid = writeList(QStringLiteral("invalid.lst"), "no header here\r\n");
        r = cli(withDb({QStringLiteral("import"), invalid, QStringLiteral("--kind"), QStringLiteral("S")}));
        QCOMPARE(r.code, 1);
        QVERIFY(r.err.startsWith(QStringLiteral("Invalid File Format.  Expecting a Marquel file with -999 header.\n")));

        const QString bad = writeList(QStringLiteral("bad.lst"), TreeListText({HeaderLine(1, 1, 2000, "BAD"),
                                                                              TreeLine("1", "FD", 3, 1, 20, 0.2, 0.1),
                                                                              TreeLine("2", "FD", 14, 1, 20, 0.2, 0.1)}));
        r = cli(withDb({QStringLiteral("import"), bad, QStringLiteral("--kind"), QStringLiteral("S")}));
        QCOMPARE(r.code, 1);
        QCOMPARE(r.err.section(QLatin1Char('\n'), 0, 1),
                 QStringLiteral("Invalid species code: 14  (Valid range is 1-11)\nImport Error"));
        QVERIFY(r.err.contains(QStringLiteral("bad.lst, line 3")));
        // The Model_Run row of the failed import stays, as it does on the desktop.
        QCOMPARE(cli(withDb({QStringLiteral("runs")})).out, QStringLiteral("BAD\tS\t\n"));

        r = cli({QStringLiteral("--db"), path(QStringLiteral("missing.mdb")), QStringLiteral("runs")});
        QCOMPARE(r.code, 1);
        QVERIFY(r.err.contains(QStringLiteral("Cannot open the database.")));
    }

    void usageErrors_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::newRow("import without kind") << QStringList{QStringLiteral("import"), QStringLiteral("x.lst")};
        QTest::newRow("import with a bad kind") << QStringList{QStringLiteral("import"), QStringLiteral("x.lst"), QStringLiteral("--kind"), QStringLiteral("T")};
        QTest::newRow("import without file") << QStringList{QStringLiteral("import"), QStringLiteral("--kind"), QStringLiteral("S")};
        QTest::newRow("import, kind lacks value") << QStringList{QStringLiteral("import"), QStringLiteral("x.lst"), QStringLiteral("--kind")};
        QTest::newRow("import, unknown option") << QStringList{QStringLiteral("import"), QStringLiteral("x.lst"), QStringLiteral("--kind"), QStringLiteral("S"), QStringLiteral("--fast")};
        QTest::newRow("import, bad on-duplicate") << QStringList{QStringLiteral("import"), QStringLiteral("x.lst"), QStringLiteral("--kind"), QStringLiteral("S"), QStringLiteral("--on-duplicate"), QStringLiteral("merge")};
        QTest::newRow("runs with an argument") << QStringList{QStringLiteral("runs"), QStringLiteral("x")};
        QTest::newRow("years without kind") << QStringList{QStringLiteral("years"), QStringLiteral("A")};
        QTest::newRow("delete without run") << QStringList{QStringLiteral("delete"), QStringLiteral("--kind"), QStringLiteral("S")};
        QTest::newRow("describe without text") << QStringList{QStringLiteral("describe"), QStringLiteral("A")};
        QTest::newRow("generate-sample with one file") << QStringList{QStringLiteral("generate-sample"), QStringLiteral("a.lst")};
    }

    void usageErrors()
    {
        QFETCH(QStringList, args);
        const Run r = cli(withDb(args));
        QCOMPARE(r.code, 2);
        QVERIFY(r.err.contains(QStringLiteral("usage: sendrel-cli")));
        QCOMPARE(r.out, QString());
    }

    void deleteAndDescribe()
    {
        QCOMPARE(cli(withDb({QStringLiteral("import"), m_standing, QStringLiteral("--kind"), QStringLiteral("S")})).code, 0);
        QCOMPARE(cli(withDb({QStringLiteral("import"), m_harvested, QStringLiteral("--kind"), QStringLiteral("H")})).code, 0);

        Run r = cli(withDb({QStringLiteral("describe"), QStringLiteral("SAMPLE"), QStringLiteral("--description"), QStringLiteral("Thinned 'once'")}));
        QCOMPARE(r.code, 0);
        r = cli(withDb({QStringLiteral("describe"), QStringLiteral("SAMPLE"), QStringLiteral("--parameters"), QStringLiteral("SI 18")}));
        QCOMPARE(r.code, 0);
        QCOMPARE(cli(withDb({QStringLiteral("runs")})).out,
                 QStringLiteral("SAMPLE\tH\tThinned 'once'\nSAMPLE\tS\tThinned 'once'\n"));

        r = cli(withDb({QStringLiteral("delete"), QStringLiteral("SAMPLE"), QStringLiteral("--kind"), QStringLiteral("standing")}));
        QCOMPARE(r.code, 0);
        QCOMPARE(cli(withDb({QStringLiteral("runs")})).out, QStringLiteral("SAMPLE\tH\tThinned 'once'\n"));
        r = cli(withDb({QStringLiteral("years"), QStringLiteral("SAMPLE"), QStringLiteral("--kind"), QStringLiteral("S")}));
        QCOMPARE(r.code, 1);
        QVERIFY(r.err.contains(QStringLiteral("There is no run SAMPLE:Standing")));
        r = cli(withDb({QStringLiteral("delete"), QStringLiteral("SAMPLE"), QStringLiteral("--kind"), QStringLiteral("S")}));
        QCOMPARE(r.code, 1);
    }

    void generateSample()
    {
        const QString s = path(QStringLiteral("g_s.lst"));
        const QString h = path(QStringLiteral("g_h.lst"));
        const Run r = cli({QStringLiteral("generate-sample"), s, h, QStringLiteral("--seed"), QStringLiteral("7"), QStringLiteral("--cycles"),
                           QStringLiteral("6"), QStringLiteral("--records"), QStringLiteral("30"), QStringLiteral("--run-name"), QStringLiteral("DEMO")});
        QCOMPARE(r.code, 0);
        QVERIFY(r.out.startsWith(QStringLiteral("6\t180\t")));
        const Run imported = cli(withDb({QStringLiteral("import"), s, QStringLiteral("--kind"), QStringLiteral("S")}));
        QCOMPARE(imported.out, QStringLiteral("DEMO\tS\t6\t180\n"));
    }
};

SENDREL_TEST_MAIN(tst_CliRunCommands)
#include "tst_CliRunCommands.moc"
