#include "domain/import/RunDeletion.h"

#include "base/SendrelError.h"
#include "base/UserQuestions.h"
#include "domain/browser/RunList.h"
#include "store/RunStore.h"

namespace sendrel {

DeleteRunsResult DeleteSelectedRuns(RunStore &db, UserQuestions &questions, const QStringList &selectedEntries,
                                    const std::function<QStringList()> &refresh, const OpenReportWindows &openWindows)
{
    DeleteRunsResult result;
    if (selectedEntries.isEmpty()) {
        questions.ShowInfoMessage(QStringLiteral("No run selected"));
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
        questions.message({QStringLiteral("Sendrel"), text, MsgIcon::Information, MsgButtons::OK, Answer::OK});
    }
    if (found.isEmpty())
        return result;

    bool checked = false;
    for (const QString &entry : found) {
        const RunEntry run = SplitRunEntry(entry);
        if (openWindows.isRunOpen(run.key())) {
            questions.ShowInfoMessage(QStringLiteral("Can't delete this Run: ") + run.runId + QLatin1Char(':') + run.kindWord
                                         + QStringLiteral(" while open."));
            result.stoppedAtOpenRun = true;
            return result;
        }
        const Answer answer = questions.message({QStringLiteral("Delete?"),
                                                    QStringLiteral("Delete run: ") + run.runId + QLatin1Char(':') + run.kindWord,
                                                    MsgIcon::Question, MsgButtons::OKCancel, Answer::OK});
        if (answer != Answer::OK)
            continue;
        if (!checked) {
            db.checkNotDamaged();
            checked = true;
        }
        db.deleteRun(run.key());
        result.deleted.append(entry);
    }
    result.entries = refresh();
    return result;
}

void CompactRunDatabase(RunStore &db, UserQuestions &questions)
{
    questions.showBusyMessage(QStringLiteral("Please wait..."), QStringLiteral("Compacting the run database..."));
    CompactResult result;
    try {
        result = db.compact();
    } catch (const SendrelError &) {
        questions.hideBusyMessage();
        throw;
    }
    questions.hideBusyMessage();
    questions.ShowInfoMessage(CompactMessage(result));
}

QString CompactMessage(const CompactResult &result)
{
    const auto megabytes = [](qint64 bytes) { return QString::number(static_cast<double>(bytes) / (1024.0 * 1024.0), 'f', 1); };
    return QStringLiteral("The run database was compacted from %1 MB to %2 MB.").arg(megabytes(result.bytesBefore), megabytes(result.bytesAfter));
}

}  // namespace sendrel
