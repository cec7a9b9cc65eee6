#include "support/TestMain.h"

#include "base/SendrelError.h"
#include "store/CycleSums.h"
#include "store/DatabaseFile.h"
#include "store/RunStore.h"
#include "store/Schema.h"
#include "support/RunDatabase.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QThread>

#include <sqlite3.h>
#include <sys/resource.h>

#include <atomic>
#include <csignal>

using namespace sendrel;
using namespace sendrel::test;

namespace {

SendrelError failureOf(const std::function<void()> &f)
{
    try {
        f();
    } catch (const SendrelError &e) {
        return e;
    }
    return SendrelError(0, QString(), QString());
}

// A second program on the same file, with its own connection.
struct OtherProgram {
    sqlite3 *db = nullptr;
    explicit OtherProgram(const QString &path) { sqlite3_open(path.toUtf8().constData(), &db); }
    ~OtherProgram() { sqlite3_close(db); }
    int exec(const char *sql) { return sqlite3_exec(db, sql, nullptr, nullptr, nullptr); }
};

QByteArray Text(sqlite3 *db, const char *sql)
{
    sqlite3_stmt *stmt = nullptr;
    QByteArray text;
    if (sqlite3_prepare_v2(db, sql, -1, &stmt, nullptr) == SQLITE_OK && sqlite3_step(stmt) == SQLITE_ROW)
        text = reinterpret_cast<const char *>(sqlite3_column_text(stmt, 0));
    sqlite3_finalize(stmt);
    return text;
}

}  // namespace

class tst_runstore : public QObject {
    Q_OBJECT

private slots:
    void openingAndClosing()
    {
        QTemporaryDir dir;
        clsDBEngine engine;
        engine.CloseDB();   // closing a closed connection is no failure
        engine.PathToDB = dir.filePath(QStringLiteral("none.mdb"));
        QCOMPARE(failureOf([&] { engine.OpenDB(); }).number(), ErrNo::DatabaseFailure);
        QVERIFY(!QFile::exists(engine.PathToDB));   // a missing file is never made
        QCOMPARE(failureOf([&] { engine.SQLString = QStringLiteral("SELECT 1"); engine.RetreiveRecords(); }).number(), ErrNo::ClosedObject);

        // A database with species but without the run tables is no run database.
        const QString other = dir.filePath(QStringLiteral("other.mdb"));
        QCOMPARE(OtherProgram(other).exec("CREATE TABLE Species (Variant_ID, Num_Code, Str_Code, Name); INSERT INTO Species VALUES (2, 1, 'FD', "
                                          "'Fir'); CREATE TABLE Model_Run (Run_Id); CREATE TABLE Model_Header (Run_Id)"),
                 SQLITE_OK);
        QCOMPARE(failureOf([&] { RunStore().open(other); }).number(), ErrNo::CommandFailure);
    }

    void recordsetsAndRows()
    {
        RunDatabase f;
        clsDBEngine &engine = f.tm.DBEngine;
        QCOMPARE(engine.AddRecord(QStringLiteral("Model_Run"), {QStringLiteral("R1"), QStringLiteral("2001-02-03"), QStringLiteral("04:05:06"),
                                                                QStringLiteral("Not Used"), QStringLiteral("S")}, false),
                 0);
        QVariantList tooMany;
        for (int i = 0; i < 7; ++i)
            tooMany << i;
        QCOMPARE(failureOf([&] { engine.AddRecord(QStringLiteral("Model_Run"), tooMany, false); }).number(), ErrNo::ItemNotFound);

        // Text keys compare without regard to case; fields are found by any case; the variant is 2.
        engine.SQLString = QStringLiteral("SELECT Run_Id, Variant_ID FROM Model_Run WHERE Run_Id = 'r1' AND Standing_Harvested = 's'");
        Recordset rs = engine.RetreiveRecords();
        QCOMPARE(rs.RecordCount(), 1);
        QCOMPARE(rs.Fields(QStringLiteral("RUN_ID")).toString(), QStringLiteral("R1"));
        QCOMPARE(rs.Fields(1).toInt(), 2);
        QCOMPARE(failureOf([&] { rs.Fields(QStringLiteral("Nope")); }).number(), ErrNo::ItemNotFound);

        engine.SQLString = QStringLiteral("SELECT * FROM Model_Header");
        QVERIFY(engine.RetreiveRecords().Eof());   // no rows is no failure
    }

    void writeTransactionsRollBackWhenLeft()
    {
        RunDatabase f;
        {
            WriteTransaction t(f.tm.DBEngine);
            f.addRun(QStringLiteral("A"), QStringLiteral("S"));
        }
        QCOMPARE(f.count(QStringLiteral("Model_Run")), 0);
        WriteTransaction t(f.tm.DBEngine);
        f.addRun(QStringLiteral("A"), QStringLiteral("S"));
        t.commit();
        QCOMPARE(f.count(QStringLiteral("Model_Run")), 1);
    }

    // Two writers never settle one Run Id at once (the server lets writers of other Run Ids on).
    void aRunIdIsHeldByOneWriter()
    {
        RunDatabase f;
        WriteTransaction first(f.tm.DBEngine);
        f.db.holdRunId(QStringLiteral("Plot 7"));
        RunStore other;
        other.open(f.path());
        other.DBEngine.setLockWait(std::chrono::milliseconds(50));
        const auto holdIn = [&](const QString &runId) {
            return failureOf([&] {
                       WriteTransaction second(other.DBEngine);
                       other.holdRunId(runId);
                   }).number();
        };
        QCOMPARE(holdIn(QStringLiteral("PLOT 7")), ErrNo::DatabaseFailure);
        if (OnServer())
            QCOMPARE(holdIn(QStringLiteral("Plot 8")), 0L);
    }

    // The failures a user can meet, each with its number and a message that says what it is.
    void failuresAreNamed_data()
    {
        QTest::addColumn<QString>("situation");
        QTest::addColumn<long>("number");
        QTest::addColumn<QString>("said");
        QTest::newRow("a statement the database refuses") << "refused" << ErrNo::CommandFailure << "no_such_table";
        QTest::newRow("another program writing") << "locked" << ErrNo::DatabaseFailure << "in use by another program and stayed locked for 0.05 s";
        QTest::newRow("a full disk") << "full" << ErrNo::DatabaseFailure << "the disk is full";
        QTest::newRow("a file that is no database") << "text" << ErrNo::DatabaseFailure << "is not a run database";
        QTest::newRow("a damaged page") << "damaged" << ErrNo::DatabaseFailure << "is damaged";
        QTest::newRow("a damaged page found ahead of a write") << "checked" << ErrNo::DatabaseFailure << "is damaged";
    }
    void failuresAreNamed()
    {
        QFETCH(QString, situation);
        QFETCH(long, number);
        QFETCH(QString, said);
        // A server keeps its disk, its pages and its files to itself.
        if (OnServer() && situation != QLatin1String("refused") && situation != QLatin1String("locked"))
            QSKIP("a failure of the database file");
        RunDatabase f(RunDatabase::Db::Created);
        RunStore &db = f.db;
        db.DBEngine.setLockWait(std::chrono::milliseconds(50));
        std::function<void()> act;
        std::unique_ptr<OtherProgram> other;
        clsDBEngine otherConnection;
        if (situation == QLatin1String("locked") && OnServer()) {
            db.open(f.path());
            otherConnection.PathToDB = f.path();
            otherConnection.OpenDB();
            otherConnection.StartTrans();
            Statement(otherConnection, QStringLiteral("LOCK TABLE Model_Run IN EXCLUSIVE MODE")).run();
            QCOMPARE(Count(db, QStringLiteral("Model_Run")), 0);
            act = [&] {
                WriteTransaction t(db.DBEngine);
                AddRun(db, QStringLiteral("A"), QStringLiteral("S"));
            };
        } else if (situation == QLatin1String("refused")) {
            db.open(f.path());
            act = [&] { Exec(db, QStringLiteral("SELECT * FROM No_Such_Table")); };
        } else if (situation == QLatin1String("locked")) {
            db.open(f.path());
            other = std::make_unique<OtherProgram>(f.path());
            QCOMPARE(other->exec("BEGIN IMMEDIATE"), SQLITE_OK);
            // Readers go on while the other program writes; a writer waits, then fails.
            QCOMPARE(Count(db, QStringLiteral("Species")), 11);
            act = [&] { WriteTransaction t(db.DBEngine); };
        } else if (situation == QLatin1String("full")) {
            db.open(f.path());
            Exec(db, QStringLiteral("PRAGMA max_page_count = 60"));
            act = [&] {
                WriteTransaction t(db.DBEngine);
                for (int i = 0; i < 5000; ++i)
                    AddTree(db, QStringLiteral("R"), QStringLiteral("S"), 1, 1, 20, 100, 0.5);
                t.commit();
            };
        } else if (situation == QLatin1String("text")) {
            QFile::remove(f.path());
            QFile text(f.path());
            QVERIFY(text.open(QIODevice::WriteOnly));
            text.write("This is not a database, only text.\n");
            text.close();
            act = [&] { db.open(f.path()); };
        } else {
            db.open(f.path());
            for (int i = 0; i < 300; ++i)
                AddTree(db, QStringLiteral("R"), QStringLiteral("S"), 1, 1, 20, 100, 0.5);
            db.close();
            // Scribble over a page of the trees' table behind the first ones.
            QFile file(f.path());
            QVERIFY(file.open(QIODevice::ReadWrite));
            const qint64 pages = file.size() / 4096;
            QVERIFY(pages > 4);
            file.seek((pages - 2) * 4096);
            file.write(QByteArray(4096, '\xA5'));
            file.close();
            act = [&] {
                db.open(f.path());
                if (situation == QLatin1String("checked"))
                    db.checkNotDamaged();
                else
                    Count(db, QStringLiteral("Model_Entries"), QStringLiteral("Trees_per_ha > 0"));
            };
        }
        const SendrelError e = failureOf(act);
        QCOMPARE(e.number(), number);
        QVERIFY2(e.description().contains(said, Qt::CaseInsensitive), qPrintable(e.description()));
    }

    // Compact gives the pages of a deleted run back to the file system; what stays is untouched.
    void compactGivesDeletedSpaceBack()
    {
        SKIP_ON_SERVER();
        RunDatabase f;
        {
            WriteTransaction t(f.tm.DBEngine);
            for (int i = 0; i < 20000; ++i)
                f.addTree(QStringLiteral("BIG"), QStringLiteral("S"), 1, 3, 20, 10, 0.5);
            f.addTree(QStringLiteral("KEEP"), QStringLiteral("S"), 1, 3, 20, 10, 0.5);
            t.commit();
        }
        f.db.deleteRun({QStringLiteral("BIG"), RunKind::Standing});
        const CompactResult r = f.db.compact();
        QVERIFY2(r.bytesBefore > 1000000 && r.bytesAfter * 4 < r.bytesBefore, qPrintable(QStringLiteral("%1 -> %2").arg(r.bytesBefore).arg(r.bytesAfter)));
        QCOMPARE(r.bytesAfter, QFileInfo(f.path()).size() + QFileInfo(f.path() + QStringLiteral("-wal")).size());
        QCOMPARE(f.count(QStringLiteral("Model_Entries")), 1);
    }

    // The write-ahead log on a file system of this machine; the rollback journal, with a note, on
    // one that reaches the file over a network.
    void journalByFileSystem_data()
    {
        QTest::addColumn<qint64>("type");
        QTest::addColumn<QString>("mode");
        QTest::addColumn<QString>("named");
        QTest::newRow("ext4") << qint64(0xEF53) << "wal" << QString();
        QTest::newRow("tmpfs") << qint64(0x01021994) << "wal" << QString();
        QTest::newRow("NFS") << qint64(0x6969) << "delete" << "(NFS)";
        QTest::newRow("SMB/CIFS") << qint64(0xFF534D42) << "delete" << "(SMB/CIFS)";
        QTest::newRow("SMB2") << qint64(0xFE534D42) << "delete" << "(SMB2)";
        QTest::newRow("sshfs") << qint64(0x65735546) << "delete" << "(FUSE";
        QTest::newRow("9P") << qint64(0x01021997) << "delete" << "(9P)";
    }
    void journalByFileSystem()
    {
        SKIP_ON_SERVER();
        QFETCH(qint64, type);
        QFETCH(QString, mode);
        QFETCH(QString, named);
        RunDatabase f;
        f.addTree(QStringLiteral("R"), QStringLiteral("S"), 1, 3, 20, 10, 0.5);
        f.db.close();
        f.tm.DBEngine.fileSystemTypeOf = [type](const QString &) { return type; };
        f.db.open(f.path());
        QCOMPARE(f.scalar(QStringLiteral("PRAGMA journal_mode")).toString(), mode);
        if (named.isEmpty())
            QCOMPARE(f.tm.DBEngine.openingNote(), QString());
        else
            QVERIFY2(f.tm.DBEngine.openingNote().contains(named), qPrintable(f.tm.DBEngine.openingNote()));
        QCOMPARE(f.count(QStringLiteral("Model_Entries")), 1);
        QCOMPARE(QFile::exists(f.path() + QStringLiteral("-wal")), mode == QLatin1String("wal"));
        // Back on a local disk the file takes the log again.
        f.db.close();
        f.tm.DBEngine.fileSystemTypeOf = [](const QString &) { return qint64(0xEF53); };
        f.db.open(f.path());
        QCOMPARE(f.scalar(QStringLiteral("PRAGMA journal_mode")).toString(), QStringLiteral("wal"));
    }

    // A backup is the database of one moment: rows another program has not committed are not in
    // it, rows committed meanwhile by a program that keeps writing are whole transactions.
    void backupWhileAnotherProgramWrites()
    {
        SKIP_ON_SERVER();
        RunDatabase f;
        {
            WriteTransaction t(f.tm.DBEngine);
            for (int i = 0; i < 3000; ++i)
                f.addTree(QStringLiteral("R"), QStringLiteral("S"), 1, 3, 20, 10, 0.5);
            f.addRun(QStringLiteral("R"), QStringLiteral("S"));
            t.commit();
        }
        OtherProgram pending(f.path());
        QCOMPARE(pending.exec("BEGIN IMMEDIATE; INSERT INTO Model_Run (Run_Id, Standing_Harvested) VALUES ('LATE', 'S')"), SQLITE_OK);
        std::atomic<bool> stop = false;
        std::atomic<int> committed = 0;
        const QString first = f.dir() + QStringLiteral("/first.bak");
        BackupDatabase(f.tm.DBEngine, first);
        QCOMPARE(pending.exec("COMMIT"), SQLITE_OK);
        // Now a program that keeps committing, a run row and its tree in each transaction.
        QThread *writer = QThread::create([&] {
            OtherProgram program(f.path());
            sqlite3_busy_timeout(program.db, 5000);
            for (int i = 0; !stop; ++i) {
                const QByteArray sql = QByteArray("BEGIN IMMEDIATE; INSERT INTO Model_Run (Run_Id, Standing_Harvested) VALUES ('W") + QByteArray::number(i)
                                       + "', 'S'); INSERT INTO Model_Entries (Run_Id, Standing_Harvested, Cycle_Number) VALUES ('W" + QByteArray::number(i)
                                       + "', 'S', 1); COMMIT";
                if (program.exec(sql.constData()) == SQLITE_OK)
                    ++committed;
            }
        });
        writer->start();
        while (committed < 5)
            QThread::msleep(1);
        const QString second = f.dir() + QStringLiteral("/second.bak");
        BackupDatabase(f.tm.DBEngine, second);
        stop = true;
        writer->wait();
        delete writer;

        for (const QString &copy : {first, second}) {
            OtherProgram backup(copy);
            QCOMPARE(QString::fromUtf8(Text(backup.db, "PRAGMA integrity_check")), QStringLiteral("ok"));
            QCOMPARE(Text(backup.db, "SELECT count(*) FROM Model_Entries WHERE Run_Id = 'R'"), QByteArray("3000"));
            QCOMPARE(Text(backup.db, "SELECT count(*) FROM Model_Run WHERE Run_Id = 'LATE'"), QByteArray(copy == first ? "0" : "1"));
            // Whole transactions only: every run row of the writer with its tree.
            QCOMPARE(Text(backup.db, "SELECT count(*) FROM Model_Run WHERE Run_Id LIKE 'W%'"),
                     Text(backup.db, "SELECT count(*) FROM Model_Entries WHERE Run_Id LIKE 'W%'"));
        }
        OtherProgram backup(second);
        QVERIFY(Text(backup.db, "SELECT count(*) FROM Model_Run WHERE Run_Id LIKE 'W%'").toInt() >= 5);
    }

    // An existing file is refused untouched; a copy that cannot be written whole leaves nothing.
    void backupNeverLeavesAPartOrReplaces()
    {
        SKIP_ON_SERVER();
        RunDatabase f;
        {
            WriteTransaction t(f.tm.DBEngine);
            for (int i = 0; i < 5000; ++i)
                f.addTree(QStringLiteral("R"), QStringLiteral("S"), 1, 3, 20, 10, 0.5);
            t.commit();
        }
        QTemporaryDir out;
        const QString taken = f.writeFile(QStringLiteral("taken.bak"), "mine");
        QCOMPARE(failureOf([&] { BackupDatabase(f.tm.DBEngine, taken); }).number(), 58);
        QCOMPARE(ReadWholeFile(taken), QByteArray("mine"));

        // A file size limit: the copy's writes fail with EFBIG part way.
        const QString target = out.filePath(QStringLiteral("full.bak"));
        rlimit before{};
        getrlimit(RLIMIT_FSIZE, &before);
        const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
        rlimit small = before;
        small.rlim_cur = 64 * 1024;
        setrlimit(RLIMIT_FSIZE, &small);
        const SendrelError e = failureOf([&] { BackupDatabase(f.tm.DBEngine, target); });
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, oldHandler);
        QVERIFY2(e.description().contains(QLatin1String("Cannot back up the run database")) && e.description().contains(target),
                 qPrintable(e.description()));
        QCOMPARE(QDir(out.path()).entryList(QDir::Files | QDir::Hidden), QStringList());

        // A file kept with the rollback journal, locked by a writer past the wait: refused, not
        // copied part way.
        f.db.close();
        f.tm.DBEngine.fileSystemTypeOf = [](const QString &) { return qint64(0x6969); };
        f.db.open(f.path());
        f.tm.DBEngine.setLockWait(std::chrono::milliseconds(30));
        OtherProgram writer(f.path());
        QCOMPARE(writer.exec("BEGIN EXCLUSIVE"), SQLITE_OK);
        const QString locked = failureOf([&] { BackupDatabase(f.tm.DBEngine, target); }).description();
        QVERIFY2(locked.contains(QLatin1String("stayed locked")), qPrintable(locked));
        QCOMPARE(QDir(out.path()).entryList(QDir::Files | QDir::Hidden), QStringList());
    }

    // A window's kind text: "H" or "h" first is harvested, anything else standing. A kind given by
    // name (--kind) is a letter or a word in any case, or none.
    void kindOfText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("letter");
        QTest::addColumn<QString>("parsed");
        QTest::newRow("Standing") << "Standing" << "S" << "S";
        QTest::newRow("s") << "s" << "S" << "S";
        QTest::newRow("empty") << "" << "S" << "";
        QTest::newRow("x") << "x" << "S" << "";
        QTest::newRow("harvested") << "harvested" << "H" << "H";
        QTest::newRow("h") << "h" << "H" << "H";
        QTest::newRow("hx") << "hx" << "H" << "";
    }
    void kindOfText()
    {
        QFETCH(QString, text);
        QFETCH(QString, letter);
        QFETCH(QString, parsed);
        QCOMPARE(KindLetter(KindOfText(text)), letter);
        const std::optional<RunKind> kind = ParseKind(text);
        QCOMPARE(kind ? KindLetter(*kind) : QString(), parsed);
    }

    // A NULL column is no number: the sums pass it by as SQL's SUM does, a column NULL in every
    // record sums to 0, and the kept sums read back the same.
    void aNullIsPassedByInTheSums()
    {
        RunDatabase f;
        const RunKey run{QStringLiteral("N"), RunKind::Standing};
        f.addRun(run.runId, QStringLiteral("S"));
        f.addHeader(run.runId, QStringLiteral("S"), 1, 2000);
        f.addTree(run.runId, QStringLiteral("S"), 1, 3, 20, 100, 0.5);
        f.addTree(run.runId, QStringLiteral("S"), 1, 3, 30, 50, 0.8);
        f.exec(QStringLiteral("UPDATE Model_Entries SET Total_Volume = NULL WHERE Current_Diameter = 30"));
        WriteCycleSums(f.db.DBEngine, run, SumCycleRecords(f.db.DBEngine, run));
        for (const QList<CycleSpeciesSums> &groups : {SumCycleRecords(f.db.DBEngine, run), ReadCycleSums(f.db.DBEngine, run)}) {
            QCOMPARE(groups.size(), 1);
            QCOMPARE(groups[0].sums.sph, 150.0);
            QCOMPARE(groups[0].sums.totalVolume, 50.0);
            QCOMPARE(groups[0].sums.grossMerchVolume, 0.0);   // not in any record
        }
    }

    // A Run Id is taken without the blanks at its ends; a control character anywhere is named.
    void runIdsAsTaken_data()
    {
        QTest::addColumn<QString>("given");
        QTest::addColumn<QString>("taken");
        QTest::addColumn<int>("control");   // the first control character, or -1
        QTest::newRow("blanks at both ends") << " \t A B \u00a0" << "A B" << -1;
        QTest::newRow("only blanks") << "   " << "" << -1;
        QTest::newRow("a line end inside") << "A\nB" << "A\nB" << 10;
        QTest::newRow("an escape") << "\x1b[31mRED" << "\x1b[31mRED" << 27;
        QTest::newRow("DEL and a C1 control") << "A\x7f\u0085" << "A\x7f\u0085" << 127;
        QTest::newRow("a dash and a colon are no controls") << "-x:1" << "-x:1" << -1;
    }
    void runIdsAsTaken()
    {
        QFETCH(QString, given);
        QFETCH(QString, taken);
        QFETCH(int, control);
        QCOMPARE(TakenRunId(given), taken);
        const std::optional<QChar> found = ControlCharacterIn(taken);
        QCOMPARE(found ? found->unicode() : -1, control);
    }

    // Kept sums are read while they still describe the records; otherwise the records are summed.
    // The kept ones are marked (a stem added to each) to tell which were read.
    void keptSumsOnlyWhileTheRecordsStay_data()
    {
        QTest::addColumn<QString>("change");
        QTest::addColumn<bool>("keptRead");
        QTest::newRow("records unchanged") << "" << true;
        QTest::newRow("last record of a cycle deleted") << "DELETE FROM Model_Entries WHERE rowid = (SELECT MAX(rowid) FROM Model_Entries WHERE Cycle_Number = 2)" << false;
        QTest::newRow("a record added to a cycle") << "INSERT INTO Model_Entries (Run_Id, Standing_Harvested, Cycle_Number, Species_Code, Trees_per_ha) "
                                                      "VALUES ('K', 'S', 1, 3, 1)" << false;
        QTest::newRow("a cycle's sums missing") << "DELETE FROM Model_Cycle_Sums WHERE Cycle_Number = 1" << false;
        QTest::newRow("a database from before the sums") << "DROP TABLE Model_Cycle_Sums" << false;
    }
    void keptSumsOnlyWhileTheRecordsStay()
    {
        QFETCH(QString, change);
        QFETCH(bool, keptRead);
        RunDatabase f;
        const RunKey run{QStringLiteral("K"), RunKind::Standing};
        f.addRun(run.runId, QStringLiteral("S"));
        f.addHeader(run.runId, QStringLiteral("S"), 1, 2000);
        f.addHeader(run.runId, QStringLiteral("S"), 2, 2010);
        for (int t = 0; t < 6; ++t)
            f.addTree(run.runId, QStringLiteral("S"), 1 + t % 2, 3 + t % 3, 10 + t, 100 + t, 0.5 * t);
        f.addTree(QStringLiteral("OTHER"), QStringLiteral("S"), 1, 3, 20, 7, 1);
        WriteCycleSums(f.db.DBEngine, run, SumCycleRecords(f.db.DBEngine, run));
        f.exec(QStringLiteral("UPDATE Model_Cycle_Sums SET Sph = Sph + 1"));
        if (!change.isEmpty())
            f.exec(change);

        const QList<CycleSpeciesSums> read = ReadCycleSums(f.db.DBEngine, run);
        const QList<CycleSpeciesSums> records = SumCycleRecords(f.db.DBEngine, run);
        QCOMPARE(read.size(), records.size());
        for (qsizetype i = 0; i < read.size(); ++i) {
            QCOMPARE(read[i].species, records[i].species);
            QCOMPARE(read[i].sums.sph, records[i].sums.sph + (keptRead ? 1 : 0));
            QCOMPARE(read[i].sums.netMerchVolume, records[i].sums.netMerchVolume);
        }

        // A delete takes the run's kept sums with it, in a database from before them too.
        f.db.deleteRun(run);
        QCOMPARE(f.count(QStringLiteral("Model_Cycle_Sums")), 0);
        QVERIFY(ReadCycleSums(f.db.DBEngine, run).isEmpty());
    }

    // A delete is one unit: a failure ahead of any of its statements leaves the whole database as
    // it was; inside the caller's transaction it is part of that one.
    void deleteIsOneUnit_data()
    {
        QTest::addColumn<QString>("failAt");
        for (const char *table : {"Model_Cycle_Sums", "Model_Entries", "Model_Header", "Model_Run"})
            QTest::newRow(table) << table;
    }
    void deleteIsOneUnit()
    {
        QFETCH(QString, failAt);
        RunDatabase f;
        const RunKey run{QStringLiteral("D"), RunKind::Standing};
        f.addRun(run.runId, QStringLiteral("S"));
        f.addHeader(run.runId, QStringLiteral("S"), 1, 2000);
        f.addTree(run.runId, QStringLiteral("S"), 1, 3, 20, 100, 0.5);
        WriteCycleSums(f.db.DBEngine, run, SumCycleRecords(f.db.DBEngine, run));
        const auto everything = [&f] { return RunTableRows(f.db); };
        const QStringList before = everything();
        QCOMPARE(before.size(), 4);
        QStringList reached;
        f.db.beforeDeleteStatement = [&](const QString &table) {
            reached.append(table);
            if (table == failAt)
                throw SendrelError(ErrNo::DatabaseFailure, QStringLiteral("test"), QStringLiteral("injected"));
        };
        QCOMPARE(failureOf([&] { f.db.deleteRun(run); }).description(), QStringLiteral("injected"));
        QCOMPARE(reached.constLast(), failAt);
        QVERIFY(!f.db.DBEngine.InTransaction());
        QCOMPARE(everything(), before);

        f.db.beforeDeleteStatement = nullptr;
        {
            WriteTransaction caller(f.db.DBEngine);
            f.db.deleteRun(run);
            QVERIFY(f.db.DBEngine.InTransaction());   // not committed on its own
        }
        QCOMPARE(everything(), before);
        f.db.deleteRun(run);
        QCOMPARE(everything(), QStringList());
    }

    // Describe writes the Run row of a run, adding it once, each text only when given.
    void describeRun()
    {
        RunDatabase f;
        f.addRun(QStringLiteral("Plot"), QStringLiteral("H"));
        QCOMPARE(f.db.storedRunId(QStringLiteral("PLOT")), QStringLiteral("Plot"));   // either kind, any case
        QVERIFY(f.db.storedRunId(QStringLiteral("Plo")).isNull());
        f.db.describeRun(QStringLiteral("Plot"), QStringLiteral("Thinned"), std::nullopt);
        f.db.describeRun(QStringLiteral("Plot"), std::nullopt, QStringLiteral("sdi=400"));
        QCOMPARE(f.rows(QStringLiteral("SELECT Run_Id, Run_Desc, run_parameters FROM Run")), QStringList{"Plot|Thinned|sdi=400"});
    }

    void runsCyclesAndTrees()
    {
        RunDatabase f;
        f.addRun(QStringLiteral("B:1"), QStringLiteral("S"), QStringLiteral("Thinned"));
        f.addRun(QStringLiteral("B:1"), QStringLiteral("H"));
        f.addRun(QStringLiteral("A"), QStringLiteral("S"));
        f.exec(QStringLiteral("INSERT INTO Run (Run_Id, run_parameters) VALUES ('A', NULL)"));
        f.addHeader(QStringLiteral("B:1"), QStringLiteral("S"), 3, 2020);
        f.addHeader(QStringLiteral("B:1"), QStringLiteral("S"), 1, 2000);
        f.addHeader(QStringLiteral("B:1"), QStringLiteral("H"), 1, 2000);
        f.addTree(QStringLiteral("B:1"), QStringLiteral("S"), 1, 5, 30, 10, 1);
        f.addTree(QStringLiteral("B:1"), QStringLiteral("S"), 1, 2, 40, 20, 2);
        f.addTree(QStringLiteral("B:1"), QStringLiteral("S"), 1, 2, 10, 30, 3);
        f.addTree(QStringLiteral("B:1"), QStringLiteral("H"), 1, 2, 10, 99, 9);
        RunStore &db = f.db;
        const RunKey standing{QStringLiteral("b:1"), RunKind::Standing};

        QCOMPARE(db.storedRunId(standing), QStringLiteral("B:1"));
        QVERIFY(!db.runExists({QStringLiteral("B"), RunKind::Standing}));
        QCOMPARE(db.runs().size(), 3);
        const QList<RunRow> only = db.runs(QStringLiteral("B:1"));
        QCOMPARE(only.size(), 2);
        QCOMPARE(only.first().description, QStringLiteral("Thinned"));
        QVERIFY(!db.runParameters(QStringLiteral("B:1"))->isValid() || db.runParameters(QStringLiteral("B:1"))->isNull());
        QVERIFY(!db.runParameters(QStringLiteral("C")).has_value());

        // Cycles in the order of the table, not of their numbers.
        const QList<CycleRow> cycles = db.cycles({QStringLiteral("  B:1 "), RunKind::Standing});
        QCOMPARE(cycles.size(), 2);
        QCOMPARE(cycles.at(0).year, 2020);
        QCOMPARE(cycles.at(1).cycle, 1);

        // The trees of one cycle and kind, by species and diameter.
        QStringList trees;
        db.forEachTree(standing, 1, [&](const TreeRow &t) { trees.append(QStringLiteral("%1/%2").arg(t.speciesCode).arg(t.diameter)); });
        QCOMPARE(trees, (QStringList{QStringLiteral("2/10"), QStringLiteral("2/40"), QStringLiteral("5/30")}));

        // One kind goes, the other stays.
        db.deleteRun(standing);
        QCOMPARE(f.count(QStringLiteral("Model_Entries")), 1);
        QCOMPARE(f.count(QStringLiteral("Model_Header")), 1);
        QVERIFY(db.runExists({QStringLiteral("B:1"), RunKind::Harvested}));

        QCOMPARE(db.SpeciesStrCode(5), QStringLiteral("HW"));
        QCOMPARE(db.SpeciesStrCode(99), QStringLiteral("xx"));
        QCOMPARE(db.NumSpecies, 11);
    }
};

SENDREL_TEST_MAIN(tst_runstore)
#include "tst_runstore.moc"
