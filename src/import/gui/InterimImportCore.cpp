// TEMPORARY: see InterimImportCore.h.
#include "import/gui/InterimImportCore.h"

#include "app/SendrelError.h"
#include "app/ToolBox.h"
#include "app/TreeModel.h"
#include "app/UserQuestions.h"
#include "browser/RunList.h"

namespace sendrel::interim {

OpenReportWindows::~OpenReportWindows() = default;

ImportResult ImportTreeList(TreeModel &tm, const QString &fileName, const QString &kind)
{
    Q_UNUSED(tm)
    Q_UNUSED(kind)
    throw SendrelError(ErrNo::InvalidCall, QStringLiteral("Sendrel"),
                       QStringLiteral("Importing tree lists is not part of this build yet: ") + fileName);
}

QString NextFreeRunId(TreeModel &tm, const QString &name)
{
    for (int n = 1;; ++n) {
        const QString candidate = name + QLatin1Char(':') + QString::number(n);
        tm.DBEngine.SQLString = QStringLiteral("SELECT Run_Id FROM Model_Run WHERE Run_Id = '") + QuoteSQL(candidate) + QStringLiteral("'");
        Recordset rs = tm.DBEngine.RetreiveRecords();
        const bool taken = !rs.Eof();
        rs.Close();
        if (!taken)
            return candidate;
    }
}

void DeleteRun(TreeModel &tm, const QString &runId, const QString &sorH)
{
    const QString where = QStringLiteral(" WHERE Run_Id = '") + QuoteSQL(runId) + QStringLiteral("' and Standing_Harvested = '") + sorH
                          + QStringLiteral("'");
    for (const char *table : {"Model_Entries", "Model_Header", "Model_Run"}) {
        tm.DBEngine.SQLString = QStringLiteral("DELETE FROM ") + QString::fromLatin1(table) + where;
        tm.DBEngine.Execute();
    }
}

void cmdDelete(TreeModel &tm, const QStringList &selected, const std::function<QStringList()> &refresh,
               const OpenReportWindows &openWindows)
{
    if (selected.isEmpty()) {
        tm.questions.message({QStringLiteral("Sendrel"), QStringLiteral("No run selected"), MsgIcon::Information, MsgButtons::OK, Answer::OK});
        return;
    }
    const QStringList list = refresh();
    QStringList found;
    for (const QString &text : selected) {
        if (list.contains(text))
            found.append(text);
    }
    if (found.size() < selected.size()) {
        QString text;
        if (!found.isEmpty())
            text = QStringLiteral("Some of the runs you selected were deleted by another application.");
        else if (selected.size() == 1)
            text = QStringLiteral("The run you selected was deleted by another application.");
        else
            text = QStringLiteral("The runs you selected were deleted by another application.");
        tm.questions.message({QStringLiteral("Sendrel"), text, MsgIcon::Information, MsgButtons::OK, Answer::OK});
    }
    if (found.isEmpty())
        return;
    for (const QString &entry : found) {
        const RunEntry run = SplitRunEntry(entry);
        const QString named = run.runId + QLatin1Char(':') + run.kindWord;
        if (openWindows.isRunOpen(run.runId, run.kindWord.left(1))) {
            tm.questions.ShowInfoMessage(QStringLiteral("Can't delete this Run: ") + named + QStringLiteral(" while open."));
            return;
        }
        const Answer a = tm.questions.message(
            {QStringLiteral("Delete?"), QStringLiteral("Delete run: ") + named, MsgIcon::Question, MsgButtons::OKCancel, Answer::OK});
        if (a != Answer::OK)
            continue;
        DeleteRun(tm, run.runId, run.kindWord.left(1));
    }
    refresh();
}

}  // namespace sendrel::interim
