#include "support/TestMain.h"
#include "support/RunDatabase.h"
#include "support/ServerDatabase.h"

#include "base/SendrelError.h"
#include "app/GameDB.h"
#include "store/Schema.h"

#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTest>

using namespace sendrel;
using namespace sendrel::test;

class tst_gamedb : public QObject {
    Q_OBJECT

    SendrelError openFails(RunDatabase &env, bool force)
    {
        try {
            OpenGameDB(env.tm, force);
        } catch (const SendrelError &e) {
            return e;
        }
        return SendrelError(0, {}, {});
    }

private slots:
    void openingAPresentFileAsksNothing()
    {
        RunDatabase env{RunDatabase::Db::None};
        env.openAsProgram();
        QVERIFY(env.questions.asked().isEmpty());
        QCOMPARE(env.tm.db.NumSpecies, 11);
        QCOMPARE(env.tm.settings.DataDir, QDir::toNativeSeparators(env.dir()));
        QCOMPARE(env.store.GetSetting(kSectionCommon, QStringLiteral("DataDir")), QDir::toNativeSeparators(env.dir()) + QDir::separator());
        // Reopening replaces the connection, with the settings' wait in seconds.
        env.tm.settings.LockWaitSeconds = 2.5;
        QVERIFY(OpenGameDB(env.tm, false));
        QCOMPARE(env.tm.DBEngine.lockWait(), std::chrono::milliseconds(2500));
        CloseGameDB(env.tm);
        CloseGameDB(env.tm);
    }

    // Reports go to the Work folder while it is there, else to the Data folder.
    void reportsGoWhereAFolderStillIs()
    {
        RunDatabase env{RunDatabase::Db::None};
        const QString work = env.dir() + QStringLiteral("/work");
        QVERIFY(QDir().mkpath(work));
        env.tm.settings.DataDir = env.dir();
        env.tm.settings.WorkDir = work;
        QCOMPARE(env.tm.ReportFolder(), work);
        QVERIFY(QDir(work).removeRecursively());
        QCOMPARE(env.tm.ReportFolder(), env.dir());
    }

    void aMissingFileIsAskedForAndMayMoveTheDataFolder()
    {
        RunDatabase env{RunDatabase::Db::None};
        QDir(env.dir()).mkdir(QStringLiteral("other"));
        const QString elsewhere = env.dir() + QStringLiteral("/other/tolv_game.mdb");
        CreateRunDatabase(elsewhere);
        env.tm.GameDBPath = env.dir() + QStringLiteral("/tolv_game.mdb");
        env.questions.answerOpenFile(elsewhere);
        QVERIFY(OpenGameDB(env.tm, false));
        QCOMPARE(env.questions.asked().size(), 1);
        QCOMPARE(env.questions.asked()[0].title, QStringLiteral("Sendrel - Locate Tolv Game Database"));
        QCOMPARE(env.questions.asked()[0].text, env.dir() + QStringLiteral("|tolv_game.mdb"));
        QCOMPARE(env.tm.GameDBPath, elsewhere);
        QCOMPARE(env.store.GetSetting(kSectionCommon, QStringLiteral("DataDir")), QDir::toNativeSeparators(env.dir() + QStringLiteral("/other/")));
    }

    void refusingTheFileIsCanceledByTheUser()
    {
        RunDatabase env{RunDatabase::Db::None};
        env.tm.GameDBPath = env.dir() + QStringLiteral("/tolv_game.mdb");
        env.questions.answerOpenFile(QString());
        env.questions.answerMessage(Answer::Retry);
        env.questions.answerOpenFile(QString());
        env.questions.answerMessage(Answer::Cancel);
        const SendrelError e = openFails(env, false);
        QCOMPARE(e.number(), ErrNo::DialogCancelled);
        QCOMPARE(e.description(), QStringLiteral("Canceled by the User"));
        QCOMPARE(env.questions.messageTexts().last(),
                 QStringLiteral("The file tolv_game.mdb is required to successfully run Sendrel. Do you want to try again?"));
        QCOMPARE(env.questions.pendingAnswers(), 0);
    }

    void forcingTheDialogAsksEvenForAPresentFile()
    {
        RunDatabase env{RunDatabase::Db::None};
        env.openAsProgram();
        env.questions.answerOpenFile(QString());
        env.questions.answerMessage(Answer::Cancel);
        QCOMPARE(openFails(env, true).number(), ErrNo::DialogCancelled);
    }

    // What the settings may keep of a connection text: the password goes to memory.
    void passwordLeavesTheConnectionText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("kept");
        QTest::addColumn<QString>("password");
        QTest::newRow("none") << "postgresql://anna@db:5433/growth" << "postgresql://anna@db:5433/growth" << "";
        QTest::newRow("user:password@") << "postgresql://anna:s%40cret@db/growth" << "postgresql://anna@db/growth" << "s@cret";
        QTest::newRow("parameter, last") << "postgresql:///growth?host=/run/pg&password=x" << "postgresql:///growth?host=/run/pg" << "x";
        QTest::newRow("parameter, first") << "postgres://db/g?password=x&sslmode=require" << "postgres://db/g?sslmode=require" << "x";
        QTest::newRow("an @ after the host") << "postgresql://db/g?options=a:b@c" << "postgresql://db/g?options=a:b@c" << "";
    }

    void passwordLeavesTheConnectionText()
    {
        QFETCH(QString, text);
        QFETCH(QString, kept);
        QFETCH(QString, password);
        QString found;
        QCOMPARE(WithoutPassword(text, found), kept);
        QCOMPARE(found, password);
    }

    // A server database that wants a password: Cancel, a database without species and one that
    // cannot be opened keep the file open; the password given is used in memory and the settings keep the text alone.
    void serverDatabaseAsksForItsPassword()
    {
        if (const QString why = ServerUnavailable(); !why.isEmpty())
            QSKIP(qPrintable(why));
        qunsetenv("PGPASSWORD");
        RunDatabase env{RunDatabase::Db::None};
        env.openAsProgram();
        const QString server = NewServerDatabase();
        CreateRunDatabase(server);
        const QString anna = PasswordRole(server, QStringLiteral("anna"), QStringLiteral("secret"));
        const QString noSpecies = NewServerDatabase();
        CreateRunDatabase(noSpecies);
        {
            RunStore other;
            other.open(noSpecies);
            Exec(other, QStringLiteral("UPDATE Species SET Variant_ID = 1"));
        }
        QVERIFY_THROWS_EXCEPTION(SendrelError, OpenServerDatabase(env.tm, noSpecies));
        QCOMPARE(env.tm.DBEngine.PathToDB, env.path());

        env.questions.answerPassword(false);
        QVERIFY(!OpenServerDatabase(env.tm, anna));
        QCOMPARE(env.questions.asked().last().text, anna);
        QCOMPARE(env.tm.DBEngine.PathToDB, env.path());
        QVERIFY(env.tm.db.isOpen());

        env.questions.answerPassword(true, QStringLiteral("wrong"));
        const SendrelError e = [&] {
            try {
                OpenServerDatabase(env.tm, anna);
            } catch (const SendrelError &e) {
                return e;
            }
            return SendrelError(0, {}, {});
        }();
        QVERIFY(e.description().startsWith(QStringLiteral("Cannot open the database.\n")));
        QVERIFY(e.description().contains(QLatin1String("password authentication failed")));
        QCOMPARE(env.tm.DBEngine.PathToDB, env.path());
        QVERIFY(env.tm.db.isOpen());

        env.questions.answerPassword(true, QStringLiteral("secret"));
        QVERIFY(OpenServerDatabase(env.tm, anna));
        QCOMPARE(env.tm.DBEngine.PathToDB, anna);
        QCOMPARE(env.tm.db.NumSpecies, 11);
        QCOMPARE(env.store.GetSetting(kSectionSendrel, QStringLiteral("ServerDatabase")), anna);
        QVERIFY(!ReadWholeFile(env.store.fileName()).contains("secret"));
        QCOMPARE(env.questions.pendingAnswers(), 0);
    }

    void aFileWithoutModelRunCannotBeOpened()
    {
        RunDatabase env{RunDatabase::Db::None};
        const QString path = env.dir() + QStringLiteral("/tolv_game.mdb");
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("make"));
            db.setDatabaseName(path);
            QVERIFY(db.open());
            QSqlQuery(db).exec(QStringLiteral("CREATE TABLE Other (x INTEGER)"));
            db.close();
        }
        QSqlDatabase::removeDatabase(QStringLiteral("make"));
        const QByteArray before = ReadWholeFile(path);
        QVERIFY(!before.isEmpty());

        env.tm.GameDBPath = path;
        const SendrelError e = openFails(env, false);
        QVERIFY(e.description().startsWith(QStringLiteral("Cannot open the database.\n")));
        QVERIFY(e.description().contains(QLatin1String("Model_Run")));
        QCOMPARE(ReadWholeFile(path), before);
    }

    void missingSpeciesEndsTheProcess()
    {
        RunDatabase env{RunDatabase::Db::None};
        CreateRunDatabase(env.path());
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("edit"));
            db.setDatabaseName(env.path());
            QVERIFY(db.open());
            QSqlQuery(db).exec(QStringLiteral("UPDATE Species SET Variant_ID = 1"));
            db.close();
        }
        QSqlDatabase::removeDatabase(QStringLiteral("edit"));
        env.tm.GameDBPath = env.path();
        QVERIFY_THROWS_EXCEPTION(ProcessEnded, OpenGameDB(env.tm, false));
        QCOMPARE(env.ended.value(0, -1), 1);
        QCOMPARE(env.questions.asked().last().title, QStringLiteral("Missing Data"));
        QCOMPARE(env.questions.asked().last().text, QStringLiteral("Species codes for the current variant are missing from the database."));
        QVERIFY(!env.tm.DBEngine.IsOpen());
    }
};

SENDREL_TEST_MAIN(tst_gamedb)
#include "tst_gamedb.moc"
