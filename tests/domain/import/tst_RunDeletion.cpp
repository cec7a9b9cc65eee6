#include "support/TestMain.h"

#include "base/UserQuestions.h"
#include "domain/browser/RunList.h"
#include "domain/import/RunDeletion.h"
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
    // The Delete button over the runs A:S, A:H, A:1:S, B:S: which are selected, which another
    // program deleted meanwhile, which stand open in a report window, how the user answers.
    void deleteButton_data()
    {
        QTest::addColumn<QStringList>("selected");
        QTest::addColumn<QStringList>("vanished");
        QTest::addColumn<QStringList>("open");
        QTest::addColumn<QList<int>>("answers");   // Answer values for the "Delete?" boxes
        QTest::addColumn<QStringList>("told");
        QTest::addColumn<QStringList>("left");
        QTest::addColumn<int>("refreshes");
        const int ok = static_cast<int>(Answer::OK);
        const int cancel = static_cast<int>(Answer::Cancel);
        const QStringList all = {QStringLiteral("A:1:S"), QStringLiteral("A:H"), QStringLiteral("A:S"), QStringLiteral("B:S")};

        QTest::newRow("nothing selected") << QStringList() << QStringList() << QStringList() << QList<int>()
                                          << QStringList{QStringLiteral("No run selected")} << all << 0;
        QTest::newRow("one kind goes, the other stays")
            << QStringList{QStringLiteral("A:S")} << QStringList() << QStringList() << QList<int>{ok}
            << QStringList{QStringLiteral("Delete run: A:Standing")}
            << QStringList{QStringLiteral("A:1:S"), QStringLiteral("A:H"), QStringLiteral("B:S")} << 2;
        QTest::newRow("a Run Id with a colon is split at the last one")
            << QStringList{QStringLiteral("A:1:S")} << QStringList() << QStringList() << QList<int>{ok}
            << QStringList{QStringLiteral("Delete run: A:1:Standing")}
            << QStringList{QStringLiteral("A:H"), QStringLiteral("A:S"), QStringLiteral("B:S")} << 2;
        QTest::newRow("one vanished, the other asked")
            << QStringList{QStringLiteral("A:S"), QStringLiteral("B:S")} << QStringList{QStringLiteral("A:S")} << QStringList()
            << QList<int>{ok}
            << QStringList{QStringLiteral("Some of the runs you selected were deleted by another application."),
                           QStringLiteral("Delete run: B:Standing")}
            << QStringList{QStringLiteral("A:1:S"), QStringLiteral("A:H")} << 2;
        QTest::newRow("the one selected vanished")
            << QStringList{QStringLiteral("B:S")} << QStringList{QStringLiteral("B:S")} << QStringList() << QList<int>()
            << QStringList{QStringLiteral("The run you selected was deleted by another application.")}
            << QStringList{QStringLiteral("A:1:S"), QStringLiteral("A:H"), QStringLiteral("A:S")} << 1;
        QTest::newRow("both selected vanished")
            << QStringList{QStringLiteral("A:S"), QStringLiteral("B:S")} << QStringList{QStringLiteral("A:S"), QStringLiteral("B:S")}
            << QStringList() << QList<int>()
            << QStringList{QStringLiteral("The runs you selected were deleted by another application.")}
            << QStringList{QStringLiteral("A:1:S"), QStringLiteral("A:H")} << 1;
        QTest::newRow("an open run stops the command; those before it are gone")
            << all << QStringList() << QStringList{QStringLiteral("A:S")} << QList<int>{ok, ok}
            << QStringList{QStringLiteral("Delete run: A:1:Standing"), QStringLiteral("Delete run: A:Harvested"),
                           QStringLiteral("Can't delete this Run: A:Standing while open.")}
            << QStringList{QStringLiteral("A:S"), QStringLiteral("B:S")} << 1;
        QTest::newRow("cancel for every run deletes nothing, and refreshes")
            << QStringList{QStringLiteral("A:S"), QStringLiteral("B:S")} << QStringList() << QStringList() << QList<int>{cancel, cancel}
            << QStringList{QStringLiteral("Delete run: A:Standing"), QStringLiteral("Delete run: B:Standing")} << all << 2;
    }

    void deleteButton()
    {
        QFETCH(QStringList, selected);
        QFETCH(QStringList, vanished);
        QFETCH(QStringList, open);
        QFETCH(QList<int>, answers);
        QFETCH(QStringList, told);
        QFETCH(QStringList, left);
        QFETCH(int, refreshes);

        RunDatabase f;
        for (const QString &run : {QStringLiteral("A:S"), QStringLiteral("A:H"), QStringLiteral("A:1:S"), QStringLiteral("B:S")})
            addFullRun(f, keyOf(run));
        QStringList entries;
        for (const QString &run : selected)
            entries.append(MakeRunEntry(keyOf(run), QString()));
        for (const QString &run : vanished)
            f.db.deleteRun(keyOf(run));   // another program's doing
        OpenRuns windows;
        for (const QString &run : open)
            windows.open.append(keyOf(run));
        for (int a : answers)
            f.questions.answerMessage(static_cast<Answer>(a));

        int refreshed = 0;
        DeleteSelectedRuns(f.db, f.questions, entries, [&] { ++refreshed; return RunListEntries(f.db); }, windows);

        QCOMPARE(f.questions.messageTexts(), told);
        QCOMPARE(f.questions.pendingAnswers(), 0);
        QCOMPARE(refreshed, refreshes);
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
        DeleteSelectedRuns(f.db, questions, {MakeRunEntry(keyOf(QStringLiteral("A:S")), QString())}, [&] { return RunListEntries(f.db); },
                           OpenRuns());
        QCOMPARE(questions.last.title, QStringLiteral("Delete?"));
        QCOMPARE(questions.last.buttons, MsgButtons::OKCancel);
        QCOMPARE(questions.last.icon, MsgIcon::Question);
    }
};

SENDREL_TEST_MAIN(tst_RunDeletion)
#include "tst_RunDeletion.moc"
