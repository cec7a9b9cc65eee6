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

// Kept up to the number shown, and counted beyond, so that a hostile file cannot fill memory.
void warn(ImportResult &result, const TreeListFile &file, int column, const QString &what)
{
    if (result.warnings.size() == kShownWarnings) {
        ++result.moreWarnings;
        return;
    }
    result.warnings.append(QStringLiteral("%1, column %2: %3").arg(where(file)).arg(column).arg(what));
}

void warn(ImportResult &result, const TreeListFile &file, FieldWarnings &fields)
{
    for (const FieldWarning &w : fields)
        warn(result, file, w.column, w.text);
    fields.clear();
}

void warnOfHiddenHeader(ImportResult &result, const TreeListFile &file, QByteArrayView line, const QString &consequence)
{
    warn(result, file, static_cast<int>(line.indexOf(QByteArrayView("-999"))) + 1,
         QStringLiteral("\"-999\" behind characters that do not print is no header; %1.").arg(consequence));
}

qint64 cycleRows(RunStore &db, const RunKey &run)
{
    Statement count(db.DBEngine, QStringLiteral("SELECT count(*) FROM Model_Header WHERE Run_Id = ?1 AND Standing_Harvested = ?2"));
    count.bind(1, run.runId).bind(2, run.letter());
    const qint64 rows = count.next() ? count.integer(0) : 0;
    count.reset();
    return rows;
}

// One message for all places of a list that may not have been read as meant: how many, and the
// first of them.
QString warningsText(const QString &fileName, const ImportResult &result)
{
    const qint64 count = result.warnings.size() + result.moreWarnings;
    QString text = QStringLiteral("%1 was imported, but %2 of it may not have been read as meant%3:\n\n")
                       .arg(QDir::toNativeSeparators(fileName),
                            count == 1 ? QStringLiteral("1 place") : QStringLiteral("%1 places").arg(count),
                            result.moreWarnings > 0 ? QStringLiteral(" (the first %1 below)").arg(result.warnings.size()) : QString())
                   + result.warnings.join(QLatin1Char('\n'));
    return text;
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
    const QString kind = KindLetter(runKind);
    const auto refuse = [&](const QString &detail) {
        result.ending = ImportEnding::Refused;
        result.detail = detail;
        questions.ShowInfoMessage(detail);
        questions.hideBusyMessage();
        return result;
    };

    TreeListFile file(fileName);
    if (!file.open())
        return refuse(QStringLiteral("Cannot open the tree list %1: %2").arg(QDir::toNativeSeparators(fileName), file.errorString()));

    // The first header; a file must hold at least one more line behind it.
    bool headerFound = false;
    bool atEnd = true;
    QByteArray firstHeader;   // a copy: the line's bytes move when the file reads on
    try {
        while (!file.atEnd()) {
            const QByteArrayView line = file.readLine();
            if (ClassifyLine(line) == LineKind::Header) {
                firstHeader = line.toByteArray();
                headerFound = true;
                break;
            }
            if (IsHiddenHeader(line))
                warnOfHiddenHeader(result, file, line, QStringLiteral("it and the lines behind it up to the first header were passed over"));
        }
        atEnd = file.atEnd();
    } catch (const SendrelError &e) {
        return refuse(QStringLiteral("Cannot import %1: %2.").arg(where(file), e.description()));
    }
    if (!headerFound || atEnd) {
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
    FieldWarnings fieldWarnings;
    try {
        current = ParseCycleHeader(firstHeader, &fieldWarnings);
        stamp = ParseHeaderStamp(firstHeader, &fieldWarnings);
        warn(result, file, fieldWarnings);
    } catch (const SendrelError &e) {
        return refuse(QStringLiteral("Cannot import %1: the first header is out of range (%2).").arg(where(file), e.description()));
    }

    QString runId = proposedRunId.isEmpty() ? SuggestRunId(current, fileName) : proposedRunId;
    result.dialogResult = SettleRunId(db, questions, runId, runKind);
    result.runId = runId;
    if (result.dialogResult == kDialogCancel) {
        result.ending = ImportEnding::Cancelled;
        return result;
    }

    try {
        db.checkNotDamaged();
    } catch (const SendrelError &e) {
        return refuse(QStringLiteral("Cannot import %1: %2").arg(QDir::toNativeSeparators(fileName), e.description()));
    }

    clsDBEngine &engine = db.DBEngine;
    // Three transactions, as a forester's earlier data is to be kept when a later one fails:
    // the old rows go, the run row comes, then the whole list or nothing of it.
    std::optional<WriteTransaction> transaction;
    bool committing = false;
    try {
        // What the user settled is looked up again under the write lock, before the old rows go
        // (unless they are to be overwritten) and before the run row comes: another program may
        // have imported the Run Id since. Then the user is asked again, with no lock held.
        const auto takenMeanwhile = [&](bool beforeRunRow) {
            if ((!beforeRunRow && result.dialogResult != kDialogOK) || !db.runExists({runId, runKind}))
                return false;
            transaction->rollback();
            result.dialogResult = SettleRunId(db, questions, runId, runKind);
            result.runId = runId;
            return true;
        };
        for (;;) {
            transaction.emplace(engine);
            if (!takenMeanwhile(false)) {
                db.deleteRun({runId, runKind});
                transaction->commit();
                transaction.emplace(engine);
                if (!takenMeanwhile(true)) {
                    engine.AddRecord(QStringLiteral("Model_Run"),
                                     {runId, stamp.dateText(), stamp.timeText(), QStringLiteral("Not Used"), kind}, false);
                    transaction->commit();
                    break;
                }
            }
            if (result.dialogResult == kDialogCancel) {
                result.ending = ImportEnding::Cancelled;
                return result;
            }
        }

        transaction.emplace(engine);
        // Another import of the same run, overwriting between the transactions, may have come
        // first: its list stays, and this one adds nothing to it.
        if (!db.runExists({runId, runKind}) || cycleRows(db, {runId, runKind}) > 0) {
            throw SendrelError(ErrNo::DatabaseFailure, QStringLiteral("Sendrel"),
                               QStringLiteral("another program imported or deleted the run %1 while this import ran, "
                                              "so nothing of this list was stored")
                                   .arg(RunKey{runId, runKind}.displayName()));
        }
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
                current = ParseCycleHeader(line, &fieldWarnings);
                warn(result, file, fieldWarnings);
                entries.flush();   // the trees of a cycle go in ahead of the next header
                AddModelHeader(engine, current, runId, kind);
                ++result.cyclesRead;
                break;
            case LineKind::Record: {
                if (IsHiddenHeader(line))
                    warnOfHiddenHeader(result, file, line, QStringLiteral("it was read as a tree record of cycle %1").arg(current.cycle));
                TreeRecord &record = entries.nextRow();
                ParseTreeRecord(line, current.cycle, record, &fieldWarnings);
                if (!fieldWarnings.empty())
                    warn(result, file, fieldWarnings);
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
        committing = true;
        entries.flush();
        WriteCycleSums(engine, {runId, runKind}, entries.sums().groups());
        transaction->commit();
        result.ending = ImportEnding::Completed;
    } catch (const SendrelError &e) {
        // Rolled back first, so that nothing of this list stays whatever the user does next.
        if (transaction)
            transaction->rollback();
        result.ending = ImportEnding::Failed;
        // Rows wait in memory until the end of the list: a full disk is met there, as it is written.
        result.detail = committing ? QStringLiteral("Import of %1 failed as its %2 lines were written: %3")
                                         .arg(QDir::toNativeSeparators(fileName)).arg(file.lineNumber()).arg(e.description())
                                   : QStringLiteral("Import of %1 failed: %2").arg(where(file), e.description());
        result.cyclesRead = 0;
        result.treeRecordsRead = 0;
        questions.message({QStringLiteral("Sendrel"), QStringLiteral("Import Error") + QStringLiteral("\n\n") + result.detail,
                           MsgIcon::None, MsgButtons::OK, Answer::OK});
    }
    file.close();
    questions.hideBusyMessage();
    if (result.completed() && !result.warnings.isEmpty())
        questions.message({QStringLiteral("Sendrel"), warningsText(fileName, result), MsgIcon::Exclamation, MsgButtons::OK, Answer::OK});
    return result;
}

}  // namespace sendrel
