#include "support/TestMain.h"
#include "base/SendrelError.h"
#include "store/DBEngine.h"
#include "store/Schema.h"

#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

using namespace sendrel;

class tst_dbengine : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_path;

    long failureOf(const std::function<void()> &f)
    {
        try {
            f();
        } catch (const SendrelError &e) {
            return e.number();
        }
        return 0;
    }

private slots:
    void init()
    {
        m_path = m_dir.filePath(QStringLiteral("tolv_game.mdb"));
        QFile::remove(m_path);
        CreateRunDatabase(m_path);
    }

    void closingTwiceAndOpeningAgain()
    {
        clsDBEngine db;
        db.CloseDB();
        db.PathToDB = m_path;
        db.OpenDB();
        db.OpenDB();
        QVERIFY(db.IsOpen());
        db.CloseDB();
        db.CloseDB();
        QVERIFY(!db.IsOpen());
        QCOMPARE(failureOf([&] { db.SQLString = QStringLiteral("SELECT 1"); db.RetreiveRecords(); }), ErrNo::ClosedObject);
    }

    void aMissingFileIsNeverCreated()
    {
        clsDBEngine db;
        db.PathToDB = m_dir.filePath(QStringLiteral("none.mdb"));
        QCOMPARE(failureOf([&] { db.OpenDB(); }), ErrNo::DatabaseFailure);
        QVERIFY(!QFile::exists(db.PathToDB));
    }

    void recordsetOperations()
    {
        clsDBEngine db;
        db.PathToDB = m_path;
        db.OpenDB();
        db.SQLString = QStringLiteral("SELECT * FROM Model_Run");
        Recordset empty = db.RetreiveRecords();
        QVERIFY(empty.Eof());
        QCOMPARE(empty.RecordCount(), 0);

        QCOMPARE(db.AddRecord(QStringLiteral("Model_Run"), {QStringLiteral("R1"), QStringLiteral("2001-02-03"), QStringLiteral("04:05:06"), QStringLiteral("Not Used"), QStringLiteral("S")}, false), 0);
        QCOMPARE(db.AddRecord(QStringLiteral("Model_Run"), {QStringLiteral("It's"), QVariant(), QVariant(), QStringLiteral("Not Used"), QStringLiteral("H")}, false), 0);

        // Text keys compare without regard to case, and Variant_ID takes the program's variant.
        db.SQLString = QStringLiteral("SELECT Run_Id, Variant_ID FROM Model_Run WHERE Run_Id = 'r1' AND Standing_Harvested = 's'");
        Recordset rs = db.RetreiveRecords();
        QCOMPARE(rs.RecordCount(), 1);
        QCOMPARE(rs.Fields(QStringLiteral("run_id")).toString(), QStringLiteral("R1"));
        QCOMPARE(rs.Fields(QStringLiteral("RUN_ID")).toString(), QStringLiteral("R1"));
        QCOMPARE(rs.Fields(1).toInt(), 2);
        QCOMPARE(failureOf([&] { rs.Fields(QStringLiteral("Nope")); }), ErrNo::ItemNotFound);

        db.SQLString = QStringLiteral("SELECT * FROM Model_Run ORDER BY Run_Id");
        Recordset all = db.RetreiveRecords();
        all.MoveLast();
        QCOMPARE(all.RecordCount(), 2);
        all.MoveFirst();
        QVERIFY(all.Find(QStringLiteral("Run_Id = 'it''s'")));
        QCOMPARE(all.Fields(QStringLiteral("Standing_Harvested")).toString(), QStringLiteral("H"));
        all.MoveFirst();
        QVERIFY(!all.Find(QStringLiteral("Run_Id = 'R9'")));
        QVERIFY(all.Eof());

        db.SQLString = QStringLiteral("SELECT * FROM Species");
        Recordset sp = db.RetreiveRecords();
        QVERIFY(sp.Find(QStringLiteral("Num_Code = 6")));
        QCOMPARE(sp.Fields(QStringLiteral("Str_Code")).toString(), QStringLiteral("CW"));
        all.Close();
        QCOMPARE(failureOf([&] { all.Close(); }), ErrNo::ClosedObject);
    }

    void addRecordByPosition()
    {
        clsDBEngine db;
        db.PathToDB = m_path;
        db.OpenDB();
        QVariantList tooMany;
        for (int i = 0; i < 7; ++i)
            tooMany << i;
        QCOMPARE(failureOf([&] { db.AddRecord(QStringLiteral("Model_Run"), tooMany, false); }), ErrNo::ItemNotFound);
        QCOMPARE(failureOf([&] { db.AddRecord(QStringLiteral("No_Such_Table"), {1}, false); }), ErrNo::CommandFailure);

        db.SQLString = QStringLiteral("CREATE TABLE Numbered (Id INTEGER PRIMARY KEY AUTOINCREMENT, Name TEXT)");
        db.Execute();
        QCOMPARE(db.AddRecord(QStringLiteral("Numbered"), {QStringLiteral("a")}, true), 1);
        QCOMPARE(db.AddRecord(QStringLiteral("Numbered"), {QStringLiteral("b")}, true), 2);
    }

    void transactionsAndFailures()
    {
        clsDBEngine db;
        db.PathToDB = m_path;
        db.OpenDB();
        db.StartTrans();
        db.AddRecord(QStringLiteral("Model_Header"), {QStringLiteral("R"), 1, 1, 2001, QStringLiteral("S")}, false);
        db.RollbckTrans();
        db.SQLString = QStringLiteral("SELECT COUNT(*) FROM Model_Header");
        QCOMPARE(db.RetreiveRecords().Fields(0).toInt(), 0);

        db.SQLString = QStringLiteral("SELECT nonsense FROM");
        QCOMPARE(failureOf([&] { db.RetreiveRecords(); }), ErrNo::CommandFailure);
        QCOMPARE(failureOf([&] { db.Execute(); }), ErrNo::CommandFailure);
    }

    void aLockedDatabaseFailsAfterBoundedRetries()
    {
        clsDBEngine db;
        db.PathToDB = m_path;
        db.OpenDB();
        {
            QSqlDatabase other = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("other"));
            other.setDatabaseName(m_path);
            QVERIFY(other.open());
            QSqlQuery lock(other);
            QVERIFY(lock.exec(QStringLiteral("BEGIN EXCLUSIVE")));
            QCOMPARE(failureOf([&] {
                         db.AddRecord(QStringLiteral("Model_Header"), {QStringLiteral("R"), 1, 1, 2001, QStringLiteral("S")}, false);
                     }),
                     ErrNo::DatabaseFailure);
            QVERIFY(lock.exec(QStringLiteral("ROLLBACK")));
            lock = QSqlQuery();
            other.close();
        }
        QSqlDatabase::removeDatabase(QStringLiteral("other"));
        // Once the lock is gone the same statement goes through.
        db.AddRecord(QStringLiteral("Model_Header"), {QStringLiteral("R"), 1, 1, 2001, QStringLiteral("S")}, false);
    }

    void aFileThatIsNoDatabaseIsLeftAlone()
    {
        const QString path = m_dir.filePath(QStringLiteral("text.mdb"));
        QFile f(path);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("This is not a database, only text.\n");
        f.close();
        clsDBEngine db;
        db.PathToDB = path;
        try {
            db.OpenDB();
            db.SQLString = QStringLiteral("Select * from Model_Run  WHERE 0=0");
            db.RetreiveRecords();
            QFAIL("read rows from text");
        } catch (const SendrelError &e) {
            QVERIFY(e.description().contains(QLatin1String("not a database")));
        }
        db.CloseDB();
        QVERIFY(f.open(QIODevice::ReadOnly));
        QCOMPARE(f.readAll(), QByteArray("This is not a database, only text.\n"));
    }
};

SENDREL_TEST_MAIN(tst_dbengine)
#include "tst_dbengine.moc"
