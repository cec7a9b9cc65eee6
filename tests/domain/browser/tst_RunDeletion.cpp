#include "support/TestMain.h"

#include "base/UserQuestions.h"
#include "domain/browser/RunList.h"
#include "domain/browser/RunDeletion.h"
#include "support/RunDatabase.h"

#include <QSet>

using namespace sendrel;
using namespace sendrel::test;

namespace {

struct OpenRuns : OpenReportWindows {
    QList<RunKey> open;
    bool isRunOpen(const RunKey &run) const override { return open.contains(run); }
};

// "A:S" as a run of the tables.
RunKey keyOf(const QString &text)
{
    const qsizetype colon = text.lastIndexOf(QLatin1Char(':'));
    return {text.left(colon), KindOfText(text.mid(colon + 1))};
}

// A run with one header and one tree row of its kind.
void addFullRun(RunDatabase &f, const RunKey &run)
{
    f.addRun(run.runId, run.letter());
    f.addHeader(run.runId, run.letter(), 1, 2000);
    f.addTree(run.runId, run.letter(), 1, 3, 20, 100, 0.5);
}

}  // namespace

class tst_RunDeletion : public QObject {
    Q_OBJECT

private slots:
    // The selected entries found again in the list as re-read, and what is told of the others.
    void vanishedRuns_data()
    {
        QTest::addColumn<QStringList>("selected");
        QTest::addColumn<QStringList>("found");
        QTest::addColumn<QString>("told");
        QTest::newRow("all there") << QStringList{"A:S", "B:S"} << QStringList{"A:S", "B:S"} << QString();
        QTest::newRow("one of two gone") << QStringList{"C:S", "B:S"} << QStringList{"B:S"}
                                         << "Some of the runs you selected were deleted by another application.";
        QTest::newRow("the one gone") << QStringList{"C:S"} << QStringList() << "The run you selected was deleted by another application.";
        QTest::newRow("both gone") << QStringList{"C:S", "D:H"} << QStringList()
                                   << "The runs you selected were deleted by another application.";
    }
    void vanishedRuns()
    {
        QFETCH(QStringList, selected);
        QFETCH(QStringList, found);
        QFETCH(QString, told);
        const auto entries = [](const QStringList &runs) {
            QStringList out;
            for (const QString &run : runs)
                out.append(MakeRunEntry(keyOf(run), QString()));
            return out;
        };
        const FoundRuns r = FindSelectedRuns(entries(selected), entries({"A:1:S", "A:H", "A:S", "B:S"}));
        QCOMPARE(r.found, entries(found));
        QCOMPARE(r.vanishedMessage, told);
    }

    // Delete over the runs A:S, A:H, A:1:S, B:S: which stand open in a report window, how the user
    // answers; each run goes whole.
    void deleteConfirmed_data()
    {
        QTest::addColumn<QStringList>("found");
        QTest::addColumn<QStringList>("open");
        QTest::addColumn<QList<int>>("answers");   // Answer values for the "Delete?" boxes
        QTest::addColumn<QStringList>("asked");
        QTest::addColumn<QString>("stopped");
        QTest::addColumn<QStringList>("left");
        const int ok = static_cast<int>(Answer::OK);
        const int cancel = static_cast<int>(Answer::Cancel);
        const QStringList all = {QStringLiteral("A:1:S"), QStringLiteral("A:H"), QStringLiteral("A:S"), QStringLiteral("B:S")};

        QTest::newRow("one kind goes, the other stays")
            << QStringList{"A:S"} << QStringList() << QList<int>{ok} << QStringList{"Delete run: A:Standing"} << QString()
            << QStringList{"A:1:S", "A:H", "B:S"};
        QTest::newRow("a Run Id with a colon is split at the last one")
            << QStringList{"A:1:S"} << QStringList() << QList<int>{ok} << QStringList{"Delete run: A:1:Standing"} << QString()
            << QStringList{"A:H", "A:S", "B:S"};
        QTest::newRow("an open run stops the command; those before it are gone")
            << all << QStringList{"A:S"} << QList<int>{ok, ok}
            << QStringList{"Delete run: A:1:Standing", "Delete run: A:Harvested"} << "Can't delete this Run: A:Standing while open."
            << QStringList{"A:S", "B:S"};
        QTest::newRow("cancel for every run deletes nothing")
            << QStringList{"A:S", "B:S"} << QStringList() << QList<int>{cancel, cancel}
            << QStringList{"Delete run: A:Standing", "Delete run: B:Standing"} << QString() << all;
    }

    void deleteConfirmed()
    {
        QFETCH(QStringList, found);
        QFETCH(QStringList, open);
        QFETCH(QList<int>, answers);
        QFETCH(QStringList, asked);
        QFETCH(QString, stopped);
        QFETCH(QStringList, left);

        RunDatabase f;
        for (const QString &run : {QStringLiteral("A:S"), QStringLiteral("A:H"), QStringLiteral("A:1:S"), QStringLiteral("B:S")})
            addFullRun(f, keyOf(run));
        QStringList entries;
        for (const QString &run : found)
            entries.append(MakeRunEntry(keyOf(run), QString()));
        OpenRuns windows;
        for (const QString &run : open)
            windows.open.append(keyOf(run));
        for (int a : answers)
            f.questions.answerMessage(static_cast<Answer>(a));

        const DeleteRunsResult r = DeleteConfirmedRuns(f.db, f.questions, entries, windows);

        QCOMPARE(f.questions.messageTexts(), asked);
        QCOMPARE(f.questions.pendingAnswers(), 0);
        QCOMPARE(r.stoppedMessage, stopped);
        QCOMPARE(r.deleted.size(), 4 - left.size());
        // The three tables agree on what is left.
        for (const char *table : {"Model_Run", "Model_Header", "Model_Entries"}) {
            QCOMPARE(f.rows(QStringLiteral("SELECT DISTINCT Run_Id || ':' || Standing_Harvested FROM %1 ORDER BY 1").arg(QLatin1String(table))),
                     left);
        }
    }

    void theQuestionIsOkCancelWithItsIcon()
    {
        struct Recorder : ScriptedQuestions {
            MessageRequest last;
            Answer message(const MessageRequest &request) override
            {
                last = request;
                return ScriptedQuestions::message(request);
            }
        } questions;
        RunDatabase f;
        addFullRun(f, keyOf(QStringLiteral("A:S")));
        questions.answerMessage(Answer::Cancel);
        DeleteConfirmedRuns(f.db, questions, {MakeRunEntry(keyOf(QStringLiteral("A:S")), QString())}, OpenRuns());
        QCOMPARE(questions.last.title, QStringLiteral("Delete?"));
        QCOMPARE(questions.last.buttons, MsgButtons::OKCancel);
        QCOMPARE(questions.last.icon, MsgIcon::Question);
    }
};

SENDREL_TEST_MAIN(tst_RunDeletion)
#include "tst_RunDeletion.moc"
