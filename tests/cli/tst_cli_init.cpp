#include "support/TestMain.h"
#include "cli/Cli.h"
#include "support/RunDatabase.h"

#include "base/Settings.h"
#include "base/SettingsStore.h"

#include <QDir>

#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

using namespace sendrel;
using sendrel::test::ReadWholeFile;

class tst_cli_init : public QObject {
    Q_OBJECT

    int run(const QStringList &args, QString &out, QString &err)
    {
        out.clear();
        err.clear();
        QTextStream o(&out);
        QTextStream e(&err);
        return RunCli(args, o, e);
    }

private slots:
    void initMakesANewDatabaseOnce()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("tolv_game.mdb"));
        QString out, err;
        QCOMPARE(run({QStringLiteral("--db"), path, QStringLiteral("init")}, out, err), 0);
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("check"));
            db.setDatabaseName(path);
            QVERIFY(db.open());
            QSqlQuery q(db);
            QVERIFY(q.exec(QStringLiteral("SELECT Str_Code FROM Species WHERE Variant_ID = 2 ORDER BY Num_Code")));
            QStringList codes;
            while (q.next())
                codes << q.value(0).toString();
            QCOMPARE(codes.join(QLatin1Char(',')), QStringLiteral("PW,LW,FD,BG,HW,CW,PL,SE,BL,PY,HM"));
            for (const char *table : {"Model_Run", "Model_Header", "Model_Entries", "Run", "Report_Header", "Report_Detail", "Stand_Levels_Report", "Species2"})
                QVERIFY2(db.tables().contains(QLatin1String(table)), table);
            q = QSqlQuery();
            db.close();
        }
        QSqlDatabase::removeDatabase(QStringLiteral("check"));

        const QByteArray before = ReadWholeFile(path);
        QVERIFY(!before.isEmpty());
        QCOMPARE(run({QStringLiteral("--db"), path, QStringLiteral("init")}, out, err), 1);
        QVERIFY(err.contains(path));
        QCOMPARE(ReadWholeFile(path), before);
    }

    void registerInstallationSetsOnlyMissingFolders()
    {
        QTemporaryDir dir;
        QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("Data")));
        QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("Work")));
        QString out, err;
        {
            SettingsStore store;
            store.SaveSetting(kSectionCommon, QStringLiteral("DataDir"), dir.path());
            store.SaveSetting(kSectionCommon, QStringLiteral("WorkDir"), QStringLiteral("/gone/"));
        }
        QCOMPARE(run({QStringLiteral("register-installation"), dir.path()}, out, err), 0);
        SettingsStore store;
        QCOMPARE(store.GetSetting(kSectionCommon, QStringLiteral("DataDir")), dir.path());
        QCOMPARE(store.GetSetting(kSectionCommon, QStringLiteral("WorkDir")), QDir::toNativeSeparators(dir.path() + QStringLiteral("/Work/")));
        QCOMPARE(run({QStringLiteral("register-installation"), dir.path() + QStringLiteral("/none")}, out, err), 1);
    }

    void usageErrors()
    {
        QString out, err;
        QCOMPARE(run({QStringLiteral("frobnicate")}, out, err), 2);
        QVERIFY(err.contains(QLatin1String("usage: sendrel-cli")));
        QCOMPARE(run({QStringLiteral("--verbose"), QStringLiteral("init")}, out, err), 2);
        QCOMPARE(run({QStringLiteral("--db")}, out, err), 2);
        QCOMPARE(run({}, out, err), 2);
        QCOMPARE(run({QStringLiteral("--db"), QStringLiteral("/tmp/x.mdb"), QStringLiteral("init"), QStringLiteral("extra")}, out, err), 2);
    }
};

SENDREL_TEST_MAIN(tst_cli_init)
#include "tst_cli_init.moc"
