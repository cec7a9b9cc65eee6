#include "domain/import/ImportTreeList.h"

#include "base/SendrelError.h"
#include "base/ToolBox.h"
#include "base/UserQuestions.h"
#include "domain/import/ModelEntryInserter.h"
#include "domain/import/TreeListFile.h"
#include "domain/import/TreeListReader.h"
#include "store/RunStore.h"

#include <QDir>

#include <optional>

namespace sendrel {

namespace {

QString where(const TreeListFile &file)
{
    return QDir::toNativeSeparators(file.fileName()) + QStringLiteral(", line ") + QString::number(file.lineNumber());
}

}  // namespace

QString NextFreeRunId(RunStore &db, const QString &name)
{
    for (qint64 n = 1;; ++n) {
        const QString candidate = name + QLatin1Char(':') + QString::number(n);
        db.ModelRunRS.MoveFirst();
        const bool taken = db.ModelRunRS.Find(QStringLiteral("Run_Id = '") + QuoteSQL(name) + QLatin1Char(':')
                                              + QString::number(n) + QLatin1Char('\''));
        if (!taken)
            return candidate;
    }
}

QString SettleRunId(RunStore &db, UserQuestions &questions, QString &runId, RunKind kind)
{
    QString dialogResult = kDialogRename;
    while (dialogResult == kDialogRename || dialogResult == kDialogCheck) {
        if (db.runExists({runId, kind})) {
            dialogResult = questions.askDuplicateId(runId);
            if (dialogResult == kDialogRename) {
                runId = NextFreeRunId(db, runId);
                dialogResult = questions.askRunId(runId);
            }
        } else if (dialogResult == kDialogRename) {
            dialogResult = questions.askRunId(runId);
        } else {
            dialogResult = kDialogOK;
        }
    }
    return dialogResult;
}

ImportResult ImportTreeList(RunStore &db, UserQuestions &questions, const QString &fileName, RunKind runKind,
                            const QString &proposedRunId)
{
    ImportResult result;
    result.kind = KindLetter(runKind);
    const QString &kind = result.kind;

    TreeListFile file(fileName);
    if (!file.open()) {
        result.ending = ImportEnding::Refused;
        result.detail = QStringLiteral("Cannot open the tree list %1: %2").arg(QDir::toNativeSeparators(fileName), file.errorString());
        questions.ShowInfoMessage(result.detail);
        return result;
    }

    // The first header; a file must hold at least one more line behind it.
    bool headerFound = false;
    QByteArray firstHeader;   // a copy: the line's bytes move when the file reads on
    while (!file.atEnd()) {
        const QByteArrayView line = file.readLine();
        if (ClassifyLine(line) == LineKind::Header) {
            firstHeader = line.toByteArray();
            headerFound = true;
            break;
        }
    }
    if (!headerFound || file.atEnd()) {
        result.ending = ImportEnding::InvalidFile;
        result.detail = QStringLiteral("%1 holds no \"-999\" header with a line behind it.").arg(QDir::toNativeSeparators(fileName));
        questions.ShowInfoMessage(kInvalidFileFormatMessage);
        questions.hideBusyMessage();
        return result;
    }

    // Numbers of the first header and its stamp come ahead of any question and any row, so a
    // fault there is refused in good order.
    CycleHeader current;
    HeaderStamp stamp;
    try {
        current = ParseCycleHeader(firstHeader);
        stamp = ParseHeaderStamp(firstHeader);
    } catch (const SendrelError &e) {
        result.ending = ImportEnding::Refused;
        result.detail = QStringLiteral("Cannot import %1: the first header is out of range (%2).").arg(where(file), e.description());
        questions.ShowInfoMessage(result.detail);
        questions.hideBusyMessage();
        return result;
    }

    QString runId = proposedRunId.isEmpty() ? SuggestRunId(current, fileName) : proposedRunId;
    result.dialogResult = SettleRunId(db, questions, runId, runKind);
    result.runId = runId;
    if (result.dialogResult == kDialogCancel) {
        result.ending = ImportEnding::Cancelled;
        return result;
    }

    clsDBEngine &engine = db.DBEngine;
    // Three transactions, as a forester's earlier data is to be kept when a later one fails:
    // the old rows go, the run row comes, then the whole list or nothing of it.
    std::optional<WriteTransaction> transaction;
    try {
        transaction.emplace(engine);
        db.deleteRun({runId, runKind});
        transaction->commit();

        transaction.emplace(engine);
        engine.AddRecord(QStringLiteral("Model_Run"), {runId, stamp.dateText(), stamp.timeText(), QStringLiteral("Not Used"), kind},
                         false);
        transaction->commit();

        transaction.emplace(engine);
        ModelEntryInserter entries(engine, runId, kind);
        AddModelHeader(engine, current, runId, kind);
        result.cyclesRead = 1;
        std::optional<qint16> shownCycle;
        for (;;) {
            // The busy message names the current cycle; it is only redrawn when that changes.
            if (shownCycle != current.cycle) {
                shownCycle = current.cycle;
                questions.showBusyMessage(QStringLiteral("Please wait..."),
                                             QStringLiteral("Importing cycle number: ") + QString::number(current.cycle));
            }
            if (file.atEnd())
                break;
            const QByteArrayView line = file.readLine();
            switch (ClassifyLine(line)) {
            case LineKind::Blank:
                break;
            case LineKind::Header:
                current = ParseCycleHeader(line);
                entries.flush();   // the trees of a cycle go in ahead of the next header
                AddModelHeader(engine, current, runId, kind);
                ++result.cyclesRead;
                break;
            case LineKind::Record: {
                TreeRecord &record = entries.nextRow();
                ParseTreeRecord(line, current.cycle, record);
                if (!IsValidSpeciesNumber(record.speciesNumber())) {
                    questions.ShowInfoMessage(InvalidSpeciesMessage(record.speciesNumber()));
                    throw SendrelError(ErrNo::InvalidCall, QStringLiteral("Sendrel"),
                                       InvalidSpeciesMessage(record.speciesNumber()));
                }
                entries.addNextRow();
                ++result.treeRecordsRead;
                break;
            }
            }
        }
        entries.flush();
        transaction->commit();
        result.ending = ImportEnding::Completed;
    } catch (const SendrelError &e) {
        // Rolled back first, so that nothing of this list stays whatever the user does next.
        if (transaction)
            transaction->rollback();
        result.ending = ImportEnding::Failed;
        result.detail = QStringLiteral("Import of %1 failed: %2").arg(where(file), e.description());
        result.cyclesRead = 0;
        result.treeRecordsRead = 0;
        questions.message({QStringLiteral("Sendrel"), QStringLiteral("Import Error") + QStringLiteral("\n\n") + result.detail,
                           MsgIcon::None, MsgButtons::OK, Answer::OK});
    }
    file.close();
    questions.hideBusyMessage();
    return result;
}

}  // namespace sendrel
