#include "support/TestMain.h"

#include "base/Numbers.h"
#include "cli/CliQuestions.h"
#include "domain/import/ImportTreeList.h"
#include "domain/import/TreeListFile.h"
#include "domain/standstock/StandStockData.h"
#include "domain/standstock/StandStockReport.h"
#include "support/CliRun.h"
#include "support/OtherProgram.h"
#include "support/RunDatabase.h"
#include "support/SampleRuns.h"
#include "support/TreeListLines.h"

#include <QDir>
#include <QFile>

#include <functional>
#include <future>
#include <thread>
#include <utility>

#include <poll.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace sendrel;
using namespace sendrel::test;

namespace {

// A list of three cycles of two trees each, its lines joined by lineEnd.
QByteArray threeCycles(const QByteArray &lineEnd = "\r\n", const QByteArray &runName = "PLOT")
{
    QByteArray text;
    for (int c = 1; c <= 3; ++c) {
        text += HeaderLine(1, c, 1990 + 10 * c, c == 1 ? runName : QByteArray(), "03/15/2021 10:20:30") + lineEnd;
        text += TreeLine("1", "FD", 3, 100.0 + c, 20.0 + c, 0.5, 0.4) + lineEnd;
        text += TreeLine("2", "PL", 7, 50.0 + c, 12.0 + c, 0.2, 0.1) + lineEnd;
    }
    return text;
}

// One import as the headless tool answers it: the Run Id given, a taken one as onDuplicate says
// (refused by default). What the user was told is added to told.
ImportResult importList(RunStore &db, const QString &path, const QString &runId, QString *told = nullptr,
                        CliQuestions::OnDuplicate onDuplicate = CliQuestions::OnDuplicate::Fail)
{
    QString text;
    QTextStream stream(&text);
    CliQuestions questions(stream);
    questions.onDuplicate = onDuplicate;
    const ImportResult result = ImportTreeList(db, questions, path, RunKind::Standing, runId);
    for (const MessageRequest &m : ImportMessages(path, result))
        questions.message(m);
    stream.flush();
    if (told)
        *told += text;
    return result;
}

// The stand table of every cycle of a run, as "View Reports" makes it, with no file.
QString standReport(RunStore &db, const QString &runId)
{
    ClassLayout layout;
    layout.SetClasses(u"10", u"5", u"4");
    StandStockData data(layout, db.NumSpecies);
    StandStockReportRequest request;
    request.This_RunId = runId;
    request.This_SorH = QStringLiteral("S");
    for (const CycleListEntry &e : UpdateHeaderList(db, {runId, RunKind::Standing}))
        request.cycles.append({ToInt16(e.cycle), e.yearText});
    QString told;
    QTextStream stream(&told);
    CliQuestions questions(stream);
    return CompileStandStockReport(db, questions, request, layout, data).text;
}

// Runs work in a process of its own on the database at path and kills it (SIGKILL) once it calls
// the reached() it is given: a program killed in the middle of a write. False when it never got
// there. The child's page cache is small, so that pages of the unfinished write reach the log
// before the kill, as those of a large list do.
using MidWrite = std::function<void(RunStore &, const std::function<void()> &reached)>;
bool killedMidWrite(const QString &path, const MidWrite &work)
{
    int pipeEnds[2];
    if (::pipe(pipeEnds) != 0)
        return false;
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(pipeEnds[0]);
        try {
            RunStore db;
            db.open(path);
            Exec(db, QStringLiteral("PRAGMA cache_size = 20"));
            work(db, [&] {
                const char byte = 1;
                if (::write(pipeEnds[1], &byte, 1) == 1)
                    ::pause();
            });
        } catch (...) {
        }
        ::_exit(0);
    }
    ::close(pipeEnds[1]);
    pollfd ready{pipeEnds[0], POLLIN, 0};
    char byte = 0;
    const bool reached = ::poll(&ready, 1, 20000) == 1 && ::read(pipeEnds[0], &byte, 1) == 1;
    ::kill(child, SIGKILL);
    int status = 0;
    ::waitpid(child, &status, 0);
    ::close(pipeEnds[0]);
    return reached && WIFSIGNALED(status);
}

void damageAPageOfTheTrees(const QString &path)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    file.seek(file.size() / 4096 / 2 * 4096);
    file.write(QByteArray(4096, '\xA5'));
}

}  // namespace

// What must never go wrong: files that are no tree lists, line ends of every kind, several
// programs on one database, a full disk and a damaged file.
class tst_reliability : public QObject {
    Q_OBJECT

private slots:
    // Refused before a byte is read into memory or a question is asked, naming the file and,
    // where one was read, the line.
    void hostileFiles_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("refused");   // else failed in the list, rolled back
        QTest::addColumn<QString>("said");
        QTest::newRow("2 GB of zeros") << "zeros.lst" << true << "zeros.lst, line 1: the line is longer than 65536 bytes";
        QTest::newRow("a long line behind the header") << "long.lst" << false << "long.lst, line 3 failed: the line is longer than 65536 bytes";
        QTest::newRow("a pipe without a writer") << "fifo" << true << "fifo: it is no regular file";
        QTest::newRow("a character device") << "/dev/urandom" << true << "/dev/urandom: it is no regular file";
        QTest::newRow("a folder") << "folder" << true << "folder: it is no regular file";
    }
    void hostileFiles()
    {
        QFETCH(QString, name);
        QFETCH(bool, refused);
        QFETCH(QString, said);
        RunDatabase f;
        const QString path = name.startsWith(QLatin1Char('/')) ? name : f.filePath(name);
        if (name == QLatin1String("zeros.lst")) {
            QFile zeros(path);
            QVERIFY(zeros.open(QIODevice::WriteOnly) && zeros.resize(qint64(2) << 30));   // sparse: no disk used
        } else if (name == QLatin1String("long.lst")) {
            f.writeFile(name, "x\r\n" + HeaderLine(1, 1, 2000) + "\r\n" + QByteArray(70000, ' ') + "\r\n");
        } else if (name == QLatin1String("fifo")) {
            QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        } else if (name == QLatin1String("folder")) {
            QVERIFY(QDir().mkpath(path));
        }
        QString told;
        const ImportResult r = importList(f.db, path, QStringLiteral("R"), &told);
        QCOMPARE(r.ending, refused ? ImportEnding::Refused : ImportEnding::Failed);
        QVERIFY2(r.detail.contains(said), qPrintable(r.detail));
        QVERIFY2(told.contains(said), qPrintable(told));
        QCOMPARE(f.count(QStringLiteral("Model_Entries")), 0);
    }

    // Lines end at CR LF, LF or CR, also mixed, also where a read of the file ends between CR
    // and LF; a byte order mark and NUL bytes ahead of the first line are not part of it.
    void lineEnds_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QStringList>("lines");
        QTest::newRow("CR LF") << QByteArray("a\r\nb\r\n") << QStringList{"a", "b"};
        QTest::newRow("LF") << QByteArray("a\nb") << QStringList{"a", "b"};
        QTest::newRow("CR") << QByteArray("a\rb\r") << QStringList{"a", "b"};
        QTest::newRow("mixed") << QByteArray("a\rb\nc\r\nd\n\re") << QStringList{"a", "b", "c", "d", "", "e"};
        QTest::newRow("CR CR LF") << QByteArray("a\r\r\nb") << QStringList{"a", "", "b"};
        QTest::newRow("mark and NULs ahead of the first line only") << QByteArray("\0\xEF\xBB\xBF\0a\r\n\0b", 10)
                                                                    << QStringList{"a", QString(QChar(0)) + "b"};
        QTest::newRow("a line of the longest length") << QByteArray(TreeListFile::kMaxLineBytes, 'x') + "\nb"
                                                      << QStringList{QString(TreeListFile::kMaxLineBytes, 'x'), "b"};
        // 61681 lines of 17 bytes: the CR of the last one is the last byte of the first read.
        QTest::newRow("CR LF across two reads") << QByteArray(15, 'y').append("\r\n").repeated(61681) + "z"
                                                << QStringList(61681, QString(15, 'y')) + QStringList{"z"};
    }
    void lineEnds()
    {
        QFETCH(QByteArray, content);
        QFETCH(QStringList, lines);
        RunDatabase f(RunDatabase::Db::None);
        TreeListFile file(f.writeFile(QStringLiteral("t.lst"), content));
        QVERIFY(file.open());
        QStringList read;
        while (!file.atEnd())
            read.append(QString::fromLatin1(file.readLine()));
        QCOMPARE(read, lines);
        QCOMPARE(file.lineNumber(), lines.size());
    }

    // What once lost the first cycle or all but two records now imports the whole list.
    void everyRecordImported_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("LF") << threeCycles("\n");
        QTest::newRow("CR only") << threeCycles("\r");
        QTest::newRow("byte order mark") << "\xEF\xBB\xBF" + threeCycles();
        QTest::newRow("NUL ahead of the first header") << QByteArray(3, '\0') + threeCycles();
    }
    void everyRecordImported()
    {
        QFETCH(QByteArray, content);
        RunDatabase f;
        const QString entries = QStringLiteral("SELECT Cycle_Number, Tree_Id, Trees_per_ha, MerchVolLessDWB FROM Model_Entries ORDER BY rowid");
        QVERIFY(importList(f.db, f.writeFile(QStringLiteral("crlf.lst"), threeCycles()), QStringLiteral("A")).completed());
        const QStringList expected = f.rows(entries);
        f.exec(QStringLiteral("DELETE FROM Model_Entries"));
        QString told;
        const ImportResult r = importList(f.db, f.writeFile(QStringLiteral("t.lst"), content), QStringLiteral("B"), &told);
        QCOMPARE(r.cyclesRead, 3);
        QCOMPARE(r.treeRecordsRead, 6);
        QCOMPARE(f.rows(entries), expected);
        QCOMPARE(told, QString());
    }

    // A header that does not print as one is read as the rules say, and the user is told once,
    // after the import, with every such line named.
    void hiddenHeadersAreTold()
    {
        RunDatabase f;
        QByteArray list = threeCycles();
        list.insert(list.lastIndexOf("-999"), QByteArray(1, '\0'));   // line 8: the third header behind a NUL
        list.insert(0, "preamble\r\n\t");                            // line 2: the first behind a tab
        QString told;
        const ImportResult r = importList(f.db, f.writeFile(QStringLiteral("hidden.lst"), list), QStringLiteral("H"), &told);
        QVERIFY(r.completed());
        QCOMPARE(r.cyclesRead, 1);
        // The header read as a tree record is short of fields and has separators in number fields:
        // told as well.
        QCOMPARE(r.warnings.size(), 5);
        QVERIFY2(r.warnings.at(0).contains(QLatin1String("hidden.lst, line 2, column 2: ")), qPrintable(r.warnings.at(0)));
        QCOMPARE(r.treeRecordsRead, 5);
        QVERIFY2(r.warnings.at(1).contains(QLatin1String("hidden.lst, line 8, column 2: "))
                     && r.warnings.at(1).contains(QLatin1String("tree record of cycle 2")),
                 qPrintable(r.warnings.at(1)));
        QCOMPARE(told.count(QStringLiteral("may not have been read as meant")), 1);
    }

    // Texts that once broke a statement: stored as they are, listed one run a line,
    // reported.
    void hostileValues_data()
    {
        QTest::addColumn<QByteArray>("runName");
        QTest::addColumn<QString>("listed");   // or, for a Run Id refused, what is told
        QTest::newRow("NUL and tab in the run name") << QByteArray("NU\0L\tRUN", 8) << "control character U+0000 at position 3";
        QTest::newRow("quotes in the run name") << QByteArray("it's \"q\"") << "it's \"q\"\tS\t";
        QTest::newRow("escape sequence in the run name") << QByteArray("\x1b[31mRED") << "control character U+001b at position 1";
    }
    void hostileValues()
    {
        QFETCH(QByteArray, runName);
        QFETCH(QString, listed);
        RunDatabase f;
        QByteArray list = threeCycles("\r\n", "");
        list.replace(20, 10, runName.leftJustified(10, ' '));
        const QString runId = QString::fromLatin1(runName);
        QString told;
        const ImportResult r = importList(f.db, f.writeFile(QStringLiteral("v.lst"), list), QString(), &told);
        if (listed.contains(QLatin1String("control character"))) {
            QCOMPARE(r.ending, ImportEnding::Refused);
            QVERIFY2(told.contains(listed), qPrintable(told));
            QCOMPARE(f.count(QStringLiteral("Model_Run")), 0);
            return;
        }
        QVERIFY(r.completed());
        QCOMPARE(f.scalar(QStringLiteral("SELECT Run_Id FROM Model_Run")).toString(), runId);

        const CliRun runs = RunTool({"--db", f.path(), "runs"});
        QCOMPARE(runs.out.count(QLatin1Char('\n')), 1);
        QVERIFY2(runs.out.startsWith(listed), qPrintable(runs.out));
        for (const char *what : {"stand", "stock"}) {
            const CliRun report = RunTool({"--db", f.path(), "report", what, runId, "--kind", "S", "-o", "-"});
            QCOMPARE(report.err, QString());
            QCOMPARE(report.code, 0);
            QVERIFY(report.out.contains(QLatin1String("Totals:")));
        }
    }

    // A reader of another program reads on while an import holds the write lock with rows not yet
    // committed; a writer waits its time, then is told why it stops.
    void readersReadWhileAWriterWrites()
    {
        RunDatabase f;
        OtherProgram reader(f.path(), 20);
        QCOMPARE(Scalar(reader.db, QStringLiteral("PRAGMA journal_mode")).toString(), QStringLiteral("wal"));
        {
            WriteTransaction import(f.tm.DBEngine);
            AddRun(f.db, QStringLiteral("R"), QStringLiteral("S"));
            for (int i = 0; i < 2000; ++i)
                AddTree(f.db, QStringLiteral("R"), QStringLiteral("S"), 1, 3, 20, 10, 0.5);
            QCOMPARE(reader.db.runs().size(), 0);
            QCOMPARE(Count(reader.db, QStringLiteral("Model_Entries")), 0);
            try {
                WriteTransaction other(reader.db.DBEngine);
                QFAIL("a second writer got the lock");
            } catch (const SendrelError &e) {
                QVERIFY2(e.description().contains(QLatin1String("in use by another program and stayed locked for 0.02 s")),
                         qPrintable(e.description()));
            }
            import.commit();
        }
        QCOMPARE(Count(reader.db, QStringLiteral("Model_Entries")), 2000);
    }

    // A program killed in the middle of an overwrite or a delete leaves the database as it was,
    // the old run whole, and the file whole.
    void killedMidWrite_data()
    {
        QTest::addColumn<QString>("write");
        QTest::newRow("overwrite, in its third cycle") << "overwrite";
        QTest::newRow("delete, between its statements") << "delete";
    }
    void killedMidWrite()
    {
        QFETCH(QString, write);
        RunDatabase f;
        QByteArray list;
        for (int c = 1; c <= 4; ++c) {
            list += HeaderLine(1, c, 2000 + c, c == 1 ? QByteArray("KEEP") : QByteArray()) + "\r\n";
            for (int t = 0; t < 1000; ++t)
                list += TreeLine(QByteArray::number(t), "FD", 3, 10 + c, 20, 0.5, 0.4) + "\r\n";
        }
        const QString path = f.writeFile(QStringLiteral("keep.lst"), list);
        QVERIFY(importList(f.db, path, QString()).completed());
        QVERIFY(importList(f.db, f.writeFile(QStringLiteral("p.lst"), threeCycles()), QStringLiteral("OTHER")).completed());
        const QStringList before = RunTableRows(f.db);

        QVERIFY(::killedMidWrite(f.path(), [&](RunStore &db, const std::function<void()> &reached) {
            if (write == QLatin1String("delete")) {
                db.beforeDeleteStatement = [&](const QString &table) {
                    if (table == QLatin1String("Model_Header"))
                        reached();
                };
                db.deleteRun({QStringLiteral("KEEP"), RunKind::Standing});
                return;
            }
            struct Overwrite : CliQuestions {
                using CliQuestions::CliQuestions;
                std::function<void()> atThirdCycle;
                void showBusyMessage(const QString &, const QString &message) override
                {
                    if (message.endsWith(QLatin1String(": 3")))
                        atThirdCycle();
                }
            };
            QTextStream err(stderr);
            Overwrite questions(err);
            questions.onDuplicate = CliQuestions::OnDuplicate::Overwrite;
            questions.atThirdCycle = reached;
            ImportTreeList(db, questions, path, RunKind::Standing);
        }));
        OtherProgram after(f.path());
        QCOMPARE(Scalar(after.db, QStringLiteral("PRAGMA integrity_check")).toString(), QStringLiteral("ok"));
        QCOMPARE(RunTableRows(after.db), before);
        // The lock went with the process: the next writer writes.
        QVERIFY(importList(after.db, path, QStringLiteral("KEEP"), nullptr, CliQuestions::OnDuplicate::Overwrite).completed());
    }

    // Rename takes the next free name under the write lock: a name that another program takes while
    // this import waits for the lock is passed over for the next free one of the Id given,
    // "SAME:2", not "SAME:1:1".
    void renameChoosesUnderTheLock()
    {
        RunDatabase f;
        const QString list = f.writeFile(QStringLiteral("p.lst"), threeCycles());
        QVERIFY(importList(f.db, list, QStringLiteral("SAME")).completed());
        struct Renaming : CliQuestions {
            using CliQuestions::CliQuestions;
            std::function<void()> onFirstAsk;
            DialogEnd askRunId(QString &name) override
            {
                if (onFirstAsk)
                    std::exchange(onFirstAsk, nullptr)();
                return CliQuestions::askRunId(name);
            }
        };
        std::promise<void> asked;
        std::promise<void> taken;
        auto import = std::async(std::launch::async, [&] {
            OtherProgram program(f.path());
            QString told;
            QTextStream stream(&told);
            Renaming questions(stream);
            questions.onDuplicate = CliQuestions::OnDuplicate::Rename;
            questions.onFirstAsk = [&] {
                asked.set_value();
                taken.get_future().wait();
            };
            return ImportTreeList(program.db, questions, list, RunKind::Standing, QStringLiteral("SAME"));
        });
        asked.get_future().wait();
        OtherProgram other(f.path());
        {
            // Taken, not yet committed, so the import finds the name free, then waits for the lock.
            WriteTransaction hold(other.db.DBEngine);
            AddRun(other.db, QStringLiteral("SAME:1"), QStringLiteral("S"));
            taken.set_value();
            std::this_thread::sleep_for(std::chrono::milliseconds(200));
            hold.commit();
        }
        const ImportResult r = import.get();
        QVERIFY2(r.completed(), qPrintable(r.detail));
        QCOMPARE(r.runId, QStringLiteral("SAME:2"));
    }

    // Imports at once: each of its own Run Id completes whole; of one Run Id exactly one does, the
    // others meet the duplicate question, and that run holds one list, never two.
    void importsAtOnce_data()
    {
        QTest::addColumn<bool>("sameRunId");
        QTest::newRow("four Run Ids") << false;
        QTest::newRow("one Run Id") << true;
    }
    void importsAtOnce()
    {
        QFETCH(bool, sameRunId);
        RunDatabase f;
        QByteArray big;
        for (int c = 1; c <= 4; ++c) {
            big += HeaderLine(1, c, 2000 + c) + "\r\n";
            for (int t = 0; t < 500; ++t)
                big += TreeLine(QByteArray::number(t), "FD", 3, 10, 20, 0.5, 0.4) + "\r\n";
        }
        const QString list = f.writeFile(QStringLiteral("big.lst"), big);
        std::vector<std::future<ImportResult>> imports;
        for (int i = 0; i < 4; ++i) {
            const QString runId = sameRunId ? QStringLiteral("SAME") : QStringLiteral("RUN%1").arg(i);
            imports.push_back(std::async(std::launch::async, [&f, list, runId] {
                OtherProgram program(f.path());
                return importList(program.db, list, runId);
            }));
        }
        int completed = 0;
        int refused = 0;   // asked about the Run Id again, and refused as the tool's flag says
        for (auto &import : imports) {
            const ImportEnding ending = import.get().ending;
            completed += ending == ImportEnding::Completed ? 1 : 0;
            refused += ending == ImportEnding::Cancelled ? 1 : 0;
        }
        QCOMPARE(completed, sameRunId ? 1 : 4);
        QCOMPARE(refused, 4 - completed);
        QCOMPARE(f.count(QStringLiteral("Model_Run")), completed);
        QCOMPARE(f.count(QStringLiteral("Model_Header")), 4 * completed);
        QCOMPARE(f.count(QStringLiteral("Model_Entries")), 2000 * completed);
    }

    // An import that meets another program's write lock waits for it and completes.
    void anImportWaitsForAnotherWriter()
    {
        RunDatabase f;
        f.tm.DBEngine.setLockWait(std::chrono::seconds(10));
        std::promise<void> locked;
        std::thread other([&f, &locked] {
            OtherProgram program(f.path());
            WriteTransaction hold(program.db.DBEngine);
            locked.set_value();
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            hold.commit();
        });
        locked.get_future().wait();
        const ImportResult r = importList(f.db, f.writeFile(QStringLiteral("p.lst"), threeCycles()), QStringLiteral("P"));
        other.join();
        QVERIFY2(r.completed(), qPrintable(r.detail));
        QCOMPARE(f.count(QStringLiteral("Model_Entries")), 6);
    }

    // Reports of two runs made over and over at once, each on its own connection: every one is
    // the report made alone, byte for byte.
    void reportsAtOnceAreIsolated()
    {
        RunDatabase f;
        AddReportTestRun(f);
        QVERIFY(importList(f.db, f.writeFile(QStringLiteral("p.lst"), threeCycles()), QStringLiteral("PLOT")).completed());
        const QString alone[2] = {standReport(f.db, kReportTestRunId), standReport(f.db, QStringLiteral("PLOT"))};
        QVERIFY(alone[0].contains(QLatin1String("CLIRPT")) && alone[1].contains(QLatin1String("PLOT")));
        std::vector<std::future<int>> reporters;
        for (int i = 0; i < 2; ++i) {
            reporters.push_back(std::async(std::launch::async, [&f, &alone, i] {
                OtherProgram program(f.path());
                int wrong = 0;
                for (int n = 0; n < 10; ++n)
                    wrong += standReport(program.db, i == 0 ? kReportTestRunId : QStringLiteral("PLOT")) == alone[i] ? 0 : 1;
                return wrong;
            }));
        }
        for (auto &r : reporters)
            QCOMPARE(r.get(), 0);
    }

    // A full disk and a damaged page reach the user as what they are, with the file and the line;
    // a damaged file is refused before anything is written to it.
    void faults_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QString>("said");
        QTest::newRow("disk full in the list") << "full" << "big.lst";
        QTest::newRow("damaged page, import") << "import" << "is damaged";
        QTest::newRow("damaged page, delete") << "delete" << "is damaged";
        QTest::newRow("damaged page, describe") << "describe" << "is damaged";
        QTest::newRow("damaged page, report") << "report" << "is damaged";
    }
    void faults()
    {
        QFETCH(QString, fault);
        QFETCH(QString, said);
        RunDatabase f;
        QByteArray big = HeaderLine(1, 1, 2000) + "\r\n";
        for (int t = 0; t < 1000; ++t)
            big += TreeLine(QByteArray::number(t), "FD", 3, 10, 20, 0.5, 0.4) + "\r\n";
        const QString list = f.writeFile(QStringLiteral("big.lst"), big);
        QString told;
        if (fault == QLatin1String("full")) {
            f.exec(QStringLiteral("PRAGMA max_page_count = %1").arg(f.scalar(QStringLiteral("PRAGMA page_count")).toInt() + 20));
            const ImportResult r = importList(f.db, list, QStringLiteral("FULL"), &told);
            QCOMPARE(r.ending, ImportEnding::Failed);
            QVERIFY2(told.contains(QLatin1String("Import Error")) && told.contains(QLatin1String("the disk is full")), qPrintable(told));
            QVERIFY(!told.contains(QLatin1String("no transaction is active")));
            QCOMPARE(f.count(QStringLiteral("Model_Entries")), 0);
        } else {
            QVERIFY(importList(f.db, list, QStringLiteral("OLD")).completed());
            if (fault == QLatin1String("report"))   // rows in the report tables for the next report to clear
                QVERIFY(!standReport(f.db, QStringLiteral("OLD")).isEmpty());
            f.db.close();
            damageAPageOfTheTrees(f.path());
            const QByteArray damaged = ReadWholeFile(f.path());
            if (fault == QLatin1String("import")) {
                f.db.open(f.path());
                const ImportResult r = importList(f.db, list, QStringLiteral("NEW"), &told);
                QCOMPARE(r.ending, ImportEnding::Refused);
                f.db.close();
            } else {
                const QHash<QString, QStringList> commands = {{"delete", {"delete", "OLD", "--kind", "S"}},
                                                              {"describe", {"describe", "OLD", "--description", "hi"}},
                                                              {"report", {"report", "stand", "OLD", "--kind", "S", "-o", "-"}}};
                const CliRun r = RunTool(QStringList{"--db", f.path()} + commands.value(fault));
                QCOMPARE(r.code, 1);
                told = r.err;
            }
            // A report only reads until it meets the damage; it does not read the file whole.
            QVERIFY(fault == QLatin1String("report") || told.contains(QLatin1String("Nothing was written to it.")));
            QCOMPARE(ReadWholeFile(f.path()), damaged);
        }
        QVERIFY2(told.contains(said), qPrintable(told));
    }
};

SENDREL_TEST_MAIN(tst_reliability)
#include "tst_reliability.moc"
