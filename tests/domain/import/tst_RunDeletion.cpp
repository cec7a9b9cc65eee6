#include "support/TestMain.h"
#include "base/UserQuestions.h"
#include "domain/browser/RunList.h"
#include "domain/import/RunDeletion.h"

#include "support/RunDatabase.h"

#include <QSet>
#include <QTest>

using namespace sendrel;
using namespace sendrel::test;

namespace {

struct OpenRuns : OpenReportWindows {
    QSet<QString> open;   // "runId|S"
    bool isRunOpen(const QString &runId, const QString &sorH) const override
    {
        return open.contains(runId + QLatin1Char('|') + sorH);
    }
};

// A run with one header and one tree row of its kind.
void addFullRun(RunDatabase &f, const QString &runId, const QString &kind)
{
    f.addRun(runId, kind);
    f.tm.DBEngine.AddRecord(QStringLiteral("Model_Header"), {runId, 1, 1, 2000, kind}, false);
    QVariantList entry(30, 0);
    entry[0] = runId;
    entry[21] = kind;
    f.tm.DBEngine.AddRecord(QStringLiteral("Model_Entries"), entry, false);
}

QString entry(const QString &runId, const QString &kind)
{
    return MakeRunEntry(runId, kind, QString());
}

}  // namespace

class tst_RunDeletion : public QObject {
    Q_OBJECT

private:
    static QStringList kinds(RunDatabase &f, const QString &table)
    {
        return f.rows(QStringLiteral("SELECT Run_Id || ':' || Standing_Harvested FROM ") + table + QStringLiteral(" ORDER BY 1"));
    }

private slots:
    void deleteRunLeavesTheOtherKind()
    {
        RunDatabase f;
        addFullRun(f, QStringLiteral("A"), QStringLiteral("S"));
        addFullRun(f, QStringLiteral("A"), QStringLiteral("H"));
        addFullRun(f, QStringLiteral("A:1"), QStringLiteral("S"));
        DeleteRun(f.tm, QStringLiteral("A"), QStringLiteral("S"));
        for (const char *table : {"Model_Run", "Model_Header", "Model_Entries"})
            QCOMPARE(kinds(f, QLatin1String(table)), QStringList({QStringLiteral("A:1:S"), QStringLiteral("A:H")}));
    }

    void nothingSelected()
    {
        RunDatabase f;
        addFullRun(f, QStringLiteral("A"), QStringLiteral("S"));
        int refreshes = 0;
        const DeleteRunsResult r = DeleteSelectedRuns(f.tm, {}, [&] { ++refreshes; return RunListEntries(f.tm); }, OpenRuns());
        QCOMPARE(f.questions.messageTexts(), QStringList({QStringLiteral("No run selected")}));
        QCOMPARE(f.questions.asked().first().title, QStringLiteral("Sendrel"));
        QCOMPARE(refreshes, 0);
        QVERIFY(!r.refreshed);
        QCOMPARE(f.count(QStringLiteral("Model_Run")), 1);
    }

    void oneVanishedThenAskedAboutTheOther()
    {
        RunDatabase f;
        addFullRun(f, QStringLiteral("A"), QStringLiteral("S"));
        addFullRun(f, QStringLiteral("B"), QStringLiteral("S"));
        const QStringList selected = RunListEntries(f.tm);
        DeleteRun(f.tm, QStringLiteral("A"), QStringLiteral("S"));   // another program's doing

        f.questions.answerMessage(Answer::OK);
        const DeleteRunsResult r = DeleteSelectedRuns(f.tm, selected, [&] { return RunListEntries(f.tm); }, OpenRuns());
        QCOMPARE(f.questions.messageTexts(),
                 QStringList({QStringLiteral("Some of the runs you selected were deleted by another application."),
                              QStringLiteral("Delete run: B:Standing")}));
        const auto &ask = f.questions.asked().at(1);
        QCOMPARE(ask.title, QStringLiteral("Delete?"));
        QCOMPARE(r.deleted, QStringList({entry(QStringLiteral("B"), QStringLiteral("S"))}));
        QCOMPARE(r.entries, QStringList());
        QCOMPARE(f.count(QStringLiteral("Model_Entries")), 0);
    }

    void allVanished_data()
    {
        QTest::addColumn<int>("selected");
        QTest::addColumn<QString>("text");
        QTest::newRow("one") << 1 << QStringLiteral("The run you selected was deleted by another application.");
        QTest::newRow("several") << 2 << QStringLiteral("The runs you selected were deleted by another application.");
    }

    void allVanished()
    {
        QFETCH(int, selected);
        QFETCH(QString, text);
        RunDatabase f;
        const QStringList gone = QStringList({entry(QStringLiteral("X"), QStringLiteral("S")), entry(QStringLiteral("Y"), QStringLiteral("H"))})
                                     .mid(0, selected);
        const DeleteRunsResult r = DeleteSelectedRuns(f.tm, gone, [&] { return RunListEntries(f.tm); }, OpenRuns());
        QCOMPARE(f.questions.messageTexts(), QStringList({text}));
        QVERIFY(r.refreshed);
        QVERIFY(r.deleted.isEmpty());
    }

    void openRunStopsTheCommand()
    {
        RunDatabase f;
        addFullRun(f, QStringLiteral("A"), QStringLiteral("S"));
        addFullRun(f, QStringLiteral("B"), QStringLiteral("H"));
        addFullRun(f, QStringLiteral("C"), QStringLiteral("S"));
        OpenRuns open;
        open.open.insert(QStringLiteral("B|H"));
        int refreshes = 0;
        f.questions.answerMessage(Answer::OK);
        const DeleteRunsResult r =
            DeleteSelectedRuns(f.tm, RunListEntries(f.tm), [&] { ++refreshes; return RunListEntries(f.tm); }, open);
        QCOMPARE(f.questions.messageTexts(), QStringList({QStringLiteral("Delete run: A:Standing"),
                                                          QStringLiteral("Can't delete this Run: B:Harvested while open.")}));
        QVERIFY(r.stoppedAtOpenRun);
        QCOMPARE(refreshes, 1);   // no refresh behind the refusal
        QCOMPARE(kinds(f, QStringLiteral("Model_Run")), QStringList({QStringLiteral("B:H"), QStringLiteral("C:S")}));
    }

    void theOtherKindOfAnOpenRunGoes()
    {
        RunDatabase f;
        addFullRun(f, QStringLiteral("A"), QStringLiteral("S"));
        addFullRun(f, QStringLiteral("A"), QStringLiteral("H"));
        OpenRuns open;
        open.open.insert(QStringLiteral("A|S"));
        f.questions.answerMessage(Answer::OK);
        DeleteSelectedRuns(f.tm, {entry(QStringLiteral("A"), QStringLiteral("H"))}, [&] { return RunListEntries(f.tm); }, open);
        QCOMPARE(kinds(f, QStringLiteral("Model_Run")), QStringList({QStringLiteral("A:S")}));
    }

    void cancelForEveryRunDeletesNothing()
    {
        RunDatabase f;
        addFullRun(f, QStringLiteral("A"), QStringLiteral("S"));
        addFullRun(f, QStringLiteral("B"), QStringLiteral("S"));
        f.questions.answerMessage(Answer::Cancel);
        f.questions.answerMessage(Answer::Cancel);
        int refreshes = 0;
        const DeleteRunsResult r =
            DeleteSelectedRuns(f.tm, RunListEntries(f.tm), [&] { ++refreshes; return RunListEntries(f.tm); }, OpenRuns());
        QCOMPARE(refreshes, 2);   // refreshed all the same
        QCOMPARE(r.entries.size(), 2);
        QCOMPARE(f.count(QStringLiteral("Model_Entries")), 2);
    }

    void runIdWithAColon()
    {
        RunDatabase f;
        addFullRun(f, QStringLiteral("A"), QStringLiteral("S"));
        addFullRun(f, QStringLiteral("A:1"), QStringLiteral("S"));
        addFullRun(f, QStringLiteral("A:1"), QStringLiteral("H"));
        const QString selected = entry(QStringLiteral("A:1"), QStringLiteral("S"));
        QCOMPARE(selected, QStringLiteral("A:1:Standing\t"));
        f.questions.answerMessage(Answer::OK);
        DeleteSelectedRuns(f.tm, {selected}, [&] { return RunListEntries(f.tm); }, OpenRuns());
        QCOMPARE(f.questions.messageTexts(), QStringList({QStringLiteral("Delete run: A:1:Standing")}));
        for (const char *table : {"Model_Run", "Model_Header", "Model_Entries"})
            QCOMPARE(kinds(f, QLatin1String(table)), QStringList({QStringLiteral("A:1:H"), QStringLiteral("A:S")}));
    }

    void questionIsOkCancelWithTheQuestionIcon()
    {
        // The box's form is the seam's to show: a recording seam sees it.
        struct Recorder : ScriptedQuestions {
            MessageRequest last;
            Answer message(const MessageRequest &request) override
            {
                if (request.buttons != MsgButtons::OK)
                    last = request;
                return ScriptedQuestions::message(request);
            }
        } questions;
        RunDatabase f;
        addFullRun(f, QStringLiteral("A"), QStringLiteral("S"));
        TreeModel tm(f.store, questions);
        tm.DBEngine.PathToDB = f.path();
        tm.DBEngine.OpenDB();
        questions.answerMessage(Answer::Cancel);
        DeleteSelectedRuns(tm, {entry(QStringLiteral("A"), QStringLiteral("S"))}, [&] { return RunListEntries(tm); }, OpenRuns());
        QCOMPARE(questions.last.title, QStringLiteral("Delete?"));
        QCOMPARE(questions.last.text, QStringLiteral("Delete run: A:Standing"));
        QCOMPARE(questions.last.buttons, MsgButtons::OKCancel);
        QCOMPARE(questions.last.icon, MsgIcon::Question);
    }
};

SENDREL_TEST_MAIN(tst_RunDeletion)
#include "tst_RunDeletion.moc"
