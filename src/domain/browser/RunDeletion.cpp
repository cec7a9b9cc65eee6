#include "domain/browser/RunDeletion.h"

#include "base/UserQuestions.h"
#include "domain/browser/RunList.h"
#include "store/RunStore.h"

namespace sendrel {

QString NoRunSelectedMessage()
{
    return QStringLiteral("No run selected");
}

FoundRuns FindSelectedRuns(const QStringList &selectedEntries, const QStringList &entries)
{
    FoundRuns result;
    for (const QString &text : selectedEntries) {
        if (entries.contains(text))
            result.found.append(text);
    }
    if (result.found.size() == selectedEntries.size())
        return result;
    if (!result.found.isEmpty())
        result.vanishedMessage = QStringLiteral("Some of the runs you selected were deleted by another application.");
    else if (selectedEntries.size() == 1)
        result.vanishedMessage = QStringLiteral("The run you selected was deleted by another application.");
    else
        result.vanishedMessage = QStringLiteral("The runs you selected were deleted by another application.");
    return result;
}

DeleteRunsResult DeleteConfirmedRuns(RunStore &db, UserQuestions &questions, const QStringList &found, const OpenReportWindows &openWindows)
{
    DeleteRunsResult result;
    bool checked = false;
    for (const QString &entry : found) {
        const RunEntry run = SplitRunEntry(entry);
        if (openWindows.isRunOpen(run.key())) {
            result.stoppedMessage =
                QStringLiteral("Can't delete this Run: ") + run.runId + QLatin1Char(':') + run.kindWord + QStringLiteral(" while open.");
            return result;
        }
        const Answer answer =
            questions.message({QStringLiteral("Delete?"), QStringLiteral("Delete run: ") + run.runId + QLatin1Char(':') + run.kindWord,
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
    return result;
}

QString CompactMessage(const CompactResult &result)
{
    const auto megabytes = [](qint64 bytes) { return QString::number(static_cast<double>(bytes) / (1024.0 * 1024.0), 'f', 1); };
    return QStringLiteral("The run database was compacted from %1 MB to %2 MB.")
        .arg(megabytes(result.bytesBefore), megabytes(result.bytesAfter));
}

}  // namespace sendrel
