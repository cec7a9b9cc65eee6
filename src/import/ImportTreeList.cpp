#include "import/ImportTreeList.h"

#include "app/SendrelError.h"
#include "app/ToolBox.h"
#include "app/TreeModel.h"
#include "app/UserQuestions.h"
#include "import/ModelEntryInserter.h"
#include "import/TreeListFile.h"
#include "import/TreeListReader.h"

#include <QDir>

#include <optional>

namespace sendrel {

namespace {

QString lookupSQL(const QString &runId, const QString &kind)
{
    return QStringLiteral("SELECT * From Model_Run WHERE ") + QStringLiteral("Run_Id = '") + QuoteSQL(runId)
           + QStringLiteral("' and standing_harvested = '") + kind + QStringLiteral("'");
}

QString deleteSQL(const QString &table, const QString &runId, const QString &kind)
{
    return QStringLiteral("DELETE FROM ") + table + QStringLiteral(" WHERE Run_Id = '") + QuoteSQL(runId)
           + QStringLiteral("' and standing_harvested = '") + kind + QStringLiteral("'");
}

QString where(const TreeListFile &file)
{
    return QDir::toNativeSeparators(file.fileName()) + QStringLiteral(", line ") + QString::number(file.lineNumber());
}

// Keeps the engine's transaction state, so that the failure path rolls back only what is open.
class Transaction {
public:
    explicit Transaction(clsDBEngine &engine) : m_engine(engine) {}
    void start()
    {
        m_engine.StartTrans();
        m_open = true;
    }
    void commit()
    {
        m_engine.CommtTrans();
        m_open = false;
    }
    void rollbackIfOpen()
    {
        if (m_open) {
            m_open = false;
            m_engine.RollbckTrans();
        }
    }

private:
    clsDBEngine &m_engine;
    bool m_open = false;
};

}  // namespace

QString NextFreeRunId(TreeModel &tm, const QString &name)
{
    for (qint64 n = 1;; ++n) {
        const QString candidate = name + QLatin1Char(':') + QString::number(n);
        tm.ModelRunRS.MoveFirst();
        const bool taken = tm.ModelRunRS.Find(QStringLiteral("Run_Id = '") + QuoteSQL(name) + QLatin1Char(':')
                                              + QString::number(n) + QLatin1Char('\''));
        if (!taken)
            return candidate;
    }
}

void SettleRunId(TreeModel &tm, QString &runId, const QString &kind)
{
    tm.DialogResult = kDialogRename;
    while (tm.DialogResult == kDialogRename || tm.DialogResult == kDialogCheck) {
        tm.DBEngine.SQLString = lookupSQL(runId, kind);
        Recordset found = tm.DBEngine.RetreiveRecords();
        const bool taken = !found.Eof();
        found.Close();
        if (taken) {
            tm.DialogResult = tm.questions.askDuplicateId(runId);
            if (tm.DialogResult == kDialogRename) {
                runId = NextFreeRunId(tm, runId);
                tm.DialogResult = tm.questions.askRunId(runId);
            }
        } else if (tm.DialogResult == kDialogRename) {
            tm.DialogResult = tm.questions.askRunId(runId);
        } else {
            tm.DialogResult = kDialogOK;
        }
    }
}

ImportResult ImportTreeList(TreeModel &tm, const QString &fileName, const QString &kindText, const QString &proposedRunId)
{
    ImportResult result;
    result.kind = kindText.left(1).toUpper() == QLatin1String("H") ? QStringLiteral("H") : QStringLiteral("S");
    const QString &kind = result.kind;

    TreeListFile file(fileName);
    if (!file.open()) {
        result.ending = ImportEnding::Refused;
        result.detail = QStringLiteral("Cannot open the tree list %1: %2").arg(QDir::toNativeSeparators(fileName), file.errorString());
        tm.questions.ShowInfoMessage(result.detail);
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
        tm.questions.ShowInfoMessage(kInvalidFileFormatMessage);
        tm.questions.hideBusyMessage();
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
        tm.questions.ShowInfoMessage(result.detail);
        tm.questions.hideBusyMessage();
        return result;
    }

    QString runId = proposedRunId.isEmpty() ? SuggestRunId(current, fileName) : proposedRunId;
    SettleRunId(tm, runId, kind);
    result.runId = runId;
    if (tm.DialogResult == kDialogCancel) {
        result.ending = ImportEnding::Cancelled;
        return result;
    }

    Transaction transaction(tm.DBEngine);
    try {
        transaction.start();
        for (const char *table : {"Model_Entries", "Model_Header", "Model_Run"}) {
            tm.DBEngine.SQLString = deleteSQL(QLatin1String(table), runId, kind);
            tm.DBEngine.Execute();
        }
        transaction.commit();

        transaction.start();
        tm.DBEngine.AddRecord(QStringLiteral("Model_Run"),
                              {runId, stamp.dateText(), stamp.timeText(), QStringLiteral("Not Used"), kind}, false);
        transaction.commit();

        transaction.start();
        ModelEntryInserter entries(tm.DBEngine, runId, kind);
        AddModelHeader(tm.DBEngine, current, runId, kind);
        result.cyclesRead = 1;
        std::optional<qint16> shownCycle;
        for (;;) {
            // The busy message names the current cycle; it is only redrawn when that changes.
            if (shownCycle != current.cycle) {
                shownCycle = current.cycle;
                tm.questions.showBusyMessage(QStringLiteral("Please wait..."),
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
                AddModelHeader(tm.DBEngine, current, runId, kind);
                ++result.cyclesRead;
                break;
            case LineKind::Record: {
                TreeRecord &record = entries.nextRow();
                ParseTreeRecord(line, current.cycle, record);
                if (!IsValidSpeciesNumber(record.speciesNumber())) {
                    tm.questions.ShowInfoMessage(InvalidSpeciesMessage(record.speciesNumber()));
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
        transaction.commit();
        result.ending = ImportEnding::Completed;
    } catch (const SendrelError &e) {
        tm.questions.message({QStringLiteral("Sendrel"), QStringLiteral("Import Error"), MsgIcon::None, MsgButtons::OK, Answer::OK});
        result.ending = ImportEnding::Failed;
        result.detail = QStringLiteral("Import of %1 failed: %2").arg(where(file), e.description());
        result.cyclesRead = 0;
        result.treeRecordsRead = 0;
        transaction.rollbackIfOpen();
    }
    file.close();
    tm.questions.hideBusyMessage();
    return result;
}

}  // namespace sendrel
