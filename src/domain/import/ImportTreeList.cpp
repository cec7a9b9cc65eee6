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

// One message for all places of a list that may not have been read as meant: how many, and the
// first of them.
QString warningsText(const QString &fileName, const ImportResult &result)
{
    const qint64 count = result.warnings.size() + result.moreWarnings;
    QString text =
        QStringLiteral("%1 was imported, but %2 of it may not have been read as meant%3:\n\n")
            .arg(QDir::toNativeSeparators(fileName), count == 1 ? QStringLiteral("1 place") : QStringLiteral("%1 places").arg(count),
                 result.moreWarnings > 0 ? QStringLiteral(" (the first %1 below)").arg(result.warnings.size()) : QString()) +
        result.warnings.join(QLatin1Char('\n'));
    return text;
}

// Settles the Run Id with the user. renamedFrom: the Id whose next free name the user took
// unchanged through Rename, else "".
DialogEnd settle(RunStore &db, UserQuestions &questions, QString &runId, RunKind kind, QString &renamedFrom)
{
    DialogEnd dialogResult = DialogEnd::Rename;
    renamedFrom.clear();
    while (dialogResult == DialogEnd::Rename || dialogResult == DialogEnd::Check) {
        if (db.runExists({runId, kind})) {
            dialogResult = questions.askDuplicateId(runId);
            if (dialogResult == DialogEnd::Rename) {
                const QString base = runId;
                runId = NextFreeRunId(db, base);
                const QString offered = runId;
                dialogResult = questions.askRunId(runId);
                runId = TakenRunId(runId);
                renamedFrom = runId == offered ? base : QString();
            }
        } else if (dialogResult == DialogEnd::Rename) {
            dialogResult = questions.askRunId(runId);
            runId = TakenRunId(runId);
            renamedFrom.clear();
        } else {
            dialogResult = DialogEnd::OK;
        }
    }
    return dialogResult;
}

// The first header, a copy (the line's bytes move when the file reads on), or nothing when the
// file holds none with at least one more line behind it. Fails as the file's reading does.
std::optional<QByteArray> readFirstHeader(TreeListFile &file, ImportResult &result)
{
    while (!file.atEnd()) {
        const QByteArrayView line = file.readLine();
        if (ClassifyLine(line) == LineKind::Header) {
            if (file.atEnd())
                return std::nullopt;
            return line.toByteArray();
        }
        if (IsHiddenHeader(line))
            warnOfHiddenHeader(result, file, line, QStringLiteral("it and the lines behind it up to the first header were passed over"));
    }
    return std::nullopt;
}

// The first header's cycle and stamp.
struct ListStart {
    CycleHeader header;
    HeaderStamp stamp;
};

// Reads the list up to its first header, whose numbers and stamp come ahead of any question and
// any row, so that a fault there is refused in good order; nothing when the import ends there, as
// result tells (InvalidFile or Refused).
std::optional<ListStart> readListStart(TreeListFile &file, const QString &fileName, ImportResult &result)
{
    const auto refused = [&](const QString &detail) {
        result.ending = ImportEnding::Refused;
        result.detail = detail;
        return std::nullopt;
    };
    std::optional<QByteArray> firstHeader;
    try {
        firstHeader = readFirstHeader(file, result);
    } catch (const SendrelError &e) {
        return refused(QStringLiteral("Cannot import %1: %2.").arg(where(file), e.description()));
    }
    if (!firstHeader) {
        result.ending = ImportEnding::InvalidFile;
        result.detail = QStringLiteral("%1 holds no \"-999\" header with a line behind it.").arg(QDir::toNativeSeparators(fileName));
        return std::nullopt;
    }
    ListStart start;
    FieldWarnings fieldWarnings;
    try {
        start.header = ParseCycleHeader(*firstHeader, &fieldWarnings);
        start.stamp = ParseHeaderStamp(*firstHeader, &fieldWarnings);
        warn(result, file, fieldWarnings);
    } catch (const SendrelError &e) {
        return refused(QStringLiteral("Cannot import %1: the first header is out of range (%2).").arg(where(file), e.description()));
    }
    return start;
}

// Reads the rest of the list behind the header of the current cycle, adding each header and tree
// record of the run, and counts them in result. An invalid species number fails with its message
// in result.cause.
void readCycles(TreeListFile &file, UserQuestions &questions, ModelEntryInserter &entries, CycleHeader &current, const QString &runId,
                const QString &kind, ImportResult &result)
{
    FieldWarnings fieldWarnings;
    std::optional<qint16> shownCycle;
    for (;;) {
        // The busy message names the current cycle; it is only redrawn when that changes.
        if (shownCycle != current.cycle) {
            shownCycle = current.cycle;
            questions.showBusyMessage(QStringLiteral("Please wait..."),
                                      QStringLiteral("Importing cycle number: ") + QString::number(current.cycle));
        }
        if (file.atEnd())
            return;
        const QByteArrayView line = file.readLine();
        switch (ClassifyLine(line)) {
        case LineKind::Blank:
            break;
        case LineKind::Header:
            current = ParseCycleHeader(line, &fieldWarnings);
            warn(result, file, fieldWarnings);
            entries.flush();  // the trees of a cycle go in ahead of the next header
            AddModelHeader(entries.engine(), current, runId, kind);
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
                result.cause = InvalidSpeciesMessage(record.speciesNumber());
                throw SendrelError(ErrNo::InvalidCall, QStringLiteral("Sendrel"), result.cause);
            }
            entries.addNextRow();
            ++result.treeRecordsRead;
            break;
        }
        }
    }
}

// Why a settled Run Id cannot be stored, or "".
QString runIdFault(const QString &runId)
{
    if (runId.isEmpty())
        return QStringLiteral("the Run Id is empty once the blanks at its ends are taken off");
    const std::optional<QChar> control = ControlCharacterIn(runId);
    if (!control)
        return QString();
    return QStringLiteral("the Run Id holds the control character U+%1 at position %2; a Run Id may hold no control characters "
                          "(line ends, tabs, escapes)")
        .arg(control->unicode(), 4, 16, QLatin1Char('0'))
        .arg(runId.indexOf(*control) + 1);
}

}  // namespace

QString NextFreeRunId(RunStore &db, const QString &name)
{
    for (qint64 n = 1;; ++n) {
        const QString candidate = name + QLatin1Char(':') + QString::number(n);
        if (db.storedRunId(candidate).isNull())
            return candidate;
    }
}

QList<MessageRequest> ImportMessages(const QString &fileName, const ImportResult &result)
{
    const auto info = [](const QString &text) {
        return MessageRequest{QStringLiteral("Sendrel"), text, MsgIcon::Information, MsgButtons::OK, Answer::OK};
    };
    switch (result.ending) {
    case ImportEnding::Refused:
        return {info(result.detail)};
    case ImportEnding::InvalidFile:
        return {info(kInvalidFileFormatMessage)};
    case ImportEnding::Failed: {
        QList<MessageRequest> told;
        if (!result.cause.isEmpty())
            told.append(info(result.cause));
        told.append({QStringLiteral("Sendrel"), QStringLiteral("Import Error") + QStringLiteral("\n\n") + result.detail, MsgIcon::None,
                     MsgButtons::OK, Answer::OK});
        return told;
    }
    case ImportEnding::Completed:
        if (!result.warnings.isEmpty())
            return {{QStringLiteral("Sendrel"), warningsText(fileName, result), MsgIcon::Exclamation, MsgButtons::OK, Answer::OK}};
        return {};
    case ImportEnding::Cancelled:
        break;
    }
    return {};
}

ImportResult ImportTreeList(RunStore &db, UserQuestions &questions, const QString &fileName, RunKind runKind, const QString &proposedRunId)
{
    ImportResult result;
    const QString kind = KindLetter(runKind);
    const auto refuse = [&](const QString &detail) {
        result.ending = ImportEnding::Refused;
        result.detail = detail;
        questions.hideBusyMessage();
        return result;
    };

    TreeListFile file(fileName);
    if (!file.open())
        return refuse(QStringLiteral("Cannot open the tree list %1: %2").arg(QDir::toNativeSeparators(fileName), file.errorString()));

    const std::optional<ListStart> start = readListStart(file, fileName, result);
    if (!start) {
        questions.hideBusyMessage();
        return result;
    }
    CycleHeader current = start->header;
    const HeaderStamp &stamp = start->stamp;

    QString runId = TakenRunId(proposedRunId.isEmpty() ? SuggestRunId(current, fileName) : proposedRunId);
    QString renamedFrom;
    // Settles the Run Id with the user (again, when another program took it meanwhile); false when
    // the import ends there.
    const auto settled = [&] {
        result.dialogResult = settle(db, questions, runId, runKind, renamedFrom);
        result.runId = runId;
        if (result.dialogResult == DialogEnd::Cancel) {
            result.ending = ImportEnding::Cancelled;
            return false;
        }
        if (const QString fault = runIdFault(runId); !fault.isEmpty()) {
            refuse(QStringLiteral("Cannot import %1: %2.").arg(QDir::toNativeSeparators(fileName), fault));
            return false;
        }
        return true;
    };
    if (!settled())
        return result;

    try {
        db.checkNotDamaged();
    } catch (const SendrelError &e) {
        return refuse(QStringLiteral("Cannot import %1: %2").arg(QDir::toNativeSeparators(fileName), e.description()));
    }

    clsDBEngine &engine = db.DBEngine;
    // One unit: the rows an overwrite replaces go, and the run row, every header and every tree
    // record come, in one transaction. Until it commits, once the whole list is read and stored,
    // every other program sees the old run; a failure, a refusal or a killed process leaves the
    // database as it was.
    std::optional<WriteTransaction> transaction;
    bool committing = false;
    try {
        for (;;) {
            transaction.emplace(engine);
            if (!renamedFrom.isEmpty())
                db.holdRunId(renamedFrom);  // the renames of one Run Id choose their names in turn
            db.holdRunId(runId);
            // What the user settled is looked up again under the write lock: another program may
            // have imported the Run Id since.
            if (result.dialogResult == DialogEnd::Overwrite || !db.runExists({runId, runKind}))
                break;
            if (!renamedFrom.isEmpty()) {
                // Rename takes the next free name, chosen here where no other import can take it too.
                runId = NextFreeRunId(db, renamedFrom);
                result.runId = runId;
                break;
            }
            // The user is asked again with no lock held.
            transaction->rollback();
            if (!settled())
                return result;
        }
        db.deleteRun({runId, runKind});
        engine.AddRecord(QStringLiteral("Model_Run"), {runId, stamp.dateText(), stamp.timeText(), QStringLiteral("Not Used"), kind}, false);

        ModelEntryInserter entries(engine, runId, kind);
        AddModelHeader(engine, current, runId, kind);
        result.cyclesRead = 1;
        readCycles(file, questions, entries, current, runId, kind, result);
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
                                         .arg(QDir::toNativeSeparators(fileName))
                                         .arg(file.lineNumber())
                                         .arg(e.description())
                                   : QStringLiteral("Import of %1 failed: %2").arg(where(file), e.description());
        result.cyclesRead = 0;
        result.treeRecordsRead = 0;
    }
    file.close();
    questions.hideBusyMessage();
    return result;
}

}  // namespace sendrel
