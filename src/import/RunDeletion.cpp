#include "import/RunDeletion.h"

#include "app/ToolBox.h"
#include "app/TreeModel.h"
#include "app/UserQuestions.h"
#include "browser/RunList.h"

namespace sendrel {

void DeleteRun(TreeModel &tm, const QString &runId, const QString &sorH)
{
    for (const char *table : {"Model_Entries", "Model_Header", "Model_Run"}) {
        tm.DBEngine.SQLString = QStringLiteral("DELETE FROM ") + QLatin1String(table) + QStringLiteral(" WHERE Run_Id = '")
                                + QuoteSQL(runId) + QStringLiteral("' and Standing_Harvested = '") + sorH + QStringLiteral("'");
        tm.DBEngine.Execute();
    }
}

DeleteRunsResult DeleteSelectedRuns(TreeModel &tm, const QStringList &selectedEntries,
                                    const std::function<QStringList()> &refresh, const OpenReportWindows &openWindows)
{
    DeleteRunsResult result;
    if (selectedEntries.isEmpty()) {
        tm.questions.ShowInfoMessage(QStringLiteral("No run selected"));
        return result;
    }

    // Another program may have removed runs since the list was filled.
    result.entries = refresh();
    result.refreshed = true;
    QStringList found;
    for (const QString &text : selectedEntries) {
        if (result.entries.contains(text))
            found.append(text);
    }
    if (found.size() < selectedEntries.size()) {
        QString text;
        if (!found.isEmpty())
            text = QStringLiteral("Some of the runs you selected were deleted by another application.");
        else if (selectedEntries.size() == 1)
            text = QStringLiteral("The run you selected was deleted by another application.");
        else
            text = QStringLiteral("The runs you selected were deleted by another application.");
        tm.questions.message({QStringLiteral("Sendrel"), text, MsgIcon::Information, MsgButtons::OK, Answer::OK});
    }
    if (found.isEmpty())
        return result;

    for (const QString &entry : found) {
        const RunEntry run = SplitRunEntry(entry);
        const QString sorH = run.kindWord.left(1);
        if (openWindows.isRunOpen(run.runId, sorH)) {
            tm.questions.ShowInfoMessage(QStringLiteral("Can't delete this Run: ") + run.runId + QLatin1Char(':') + run.kindWord
                                         + QStringLiteral(" while open."));
            result.stoppedAtOpenRun = true;
            return result;
        }
        const Answer answer = tm.questions.message({QStringLiteral("Delete?"),
                                                    QStringLiteral("Delete run: ") + run.runId + QLatin1Char(':') + run.kindWord,
                                                    MsgIcon::Question, MsgButtons::OKCancel, Answer::OK});
        if (answer != Answer::OK)
            continue;
        DeleteRun(tm, run.runId, sorH);
        result.deleted.append(entry);
    }
    result.entries = refresh();
    return result;
}

}  // namespace sendrel
