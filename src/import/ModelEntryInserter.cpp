#include "import/ModelEntryInserter.h"

#include "app/SendrelError.h"
#include "store/DBEngine.h"

#include <QSqlDriver>
#include <QSqlRecord>
#include <QStringList>
#include <QThread>

#include <sqlite3.h>

namespace sendrel {

namespace {

const QString kSource = QStringLiteral("SQLite");

// Bytes of the list are Latin-1 characters; pure ASCII is already UTF-8, and stays where it is
// until the statement has run.
void bindLatin1(sqlite3_stmt *stmt, int index, const char *text, int length, QByteArray &scratch)
{
    bool ascii = true;
    for (int i = 0; i < length; ++i)
        ascii = ascii && static_cast<uchar>(text[i]) < 0x80;
    if (ascii) {
        sqlite3_bind_text(stmt, index, text, length, SQLITE_STATIC);
    } else {
        scratch = QString::fromLatin1(text, length).toUtf8();
        sqlite3_bind_text(stmt, index, scratch.constData(), static_cast<int>(scratch.size()), SQLITE_TRANSIENT);
    }
}

}  // namespace

ModelEntryInserter::ModelEntryInserter(clsDBEngine &engine, const QString &runId, const QString &kind)
    : m_runId(runId.toUtf8()), m_kind(kind.toUtf8())
{
    QSqlDatabase db = engine.database();
    const QVariant handle = db.driver()->handle();
    if (qstrcmp(handle.typeName(), "sqlite3*") == 0)
        m_db = *static_cast<sqlite3 *const *>(handle.constData());
    if (!m_db)
        throw SendrelError(ErrNo::DatabaseFailure, kSource, QStringLiteral("The run database is not an SQLite connection."));

    // Columns by position, as AddRecord fills them: the first 30 of the table.
    const QSqlRecord columns = db.record(QStringLiteral("Model_Entries"));
    if (columns.count() < EntryPos::Count) {
        throw SendrelError(ErrNo::ItemNotFound, kSource,
                           QStringLiteral("Item cannot be found in the collection corresponding to the requested name or ordinal: "
                                          "%1 values for table 'Model_Entries' of %2 columns.")
                               .arg(EntryPos::Count).arg(columns.count()));
    }
    QStringList names;
    QStringList marks;
    for (int i = 0; i < EntryPos::Count; ++i) {
        names.append(QLatin1Char('"') + columns.fieldName(i) + QLatin1Char('"'));
        marks.append(QStringLiteral("?"));
    }
    const QString insert = QStringLiteral("INSERT INTO Model_Entries (%1) VALUES ").arg(names.join(QLatin1Char(',')));
    const QString row = QLatin1Char('(') + marks.join(QLatin1Char(',')) + QLatin1Char(')');
    QStringList rows;
    for (int i = 0; i < kBatchRows; ++i)
        rows.append(row);
    const QByteArray single = (insert + row).toUtf8();
    const QByteArray batch = (insert + rows.join(QLatin1Char(','))).toUtf8();
    int rc = sqlite3_prepare_v2(m_db, single.constData(), static_cast<int>(single.size()), &m_single, nullptr);
    if (rc == SQLITE_OK)
        rc = sqlite3_prepare_v2(m_db, batch.constData(), static_cast<int>(batch.size()), &m_batch, nullptr);
    if (rc != SQLITE_OK) {
        sqlite3_finalize(m_single);
        fail(rc);
    }
    // Run Id and kind are the same in every row of the list: bound once.
    for (int i = 0; i < kBatchRows; ++i) {
        for (sqlite3_stmt *stmt : {m_single, m_batch}) {
            if (stmt == m_single && i > 0)
                continue;
            const int base = i * EntryPos::Count + 1;
            sqlite3_bind_text(stmt, base + EntryPos::RunId, m_runId.constData(), static_cast<int>(m_runId.size()), SQLITE_STATIC);
            sqlite3_bind_text(stmt, base + EntryPos::StandingHarvested, m_kind.constData(), static_cast<int>(m_kind.size()),
                              SQLITE_STATIC);
        }
    }
}

ModelEntryInserter::~ModelEntryInserter()
{
    // Finalised before the engine may close the connection. Rows still waiting belong to an
    // import that failed: its transaction is rolled back anyway.
    sqlite3_finalize(m_single);
    sqlite3_finalize(m_batch);
}

void ModelEntryInserter::fail(int code) const
{
    const int primary = code & 0xff;
    const long number = primary == SQLITE_BUSY || primary == SQLITE_LOCKED ? ErrNo::DatabaseFailure : ErrNo::CommandFailure;
    throw SendrelError(number, kSource, QString::fromUtf8(sqlite3_errmsg(m_db)));
}

void ModelEntryInserter::bindRow(sqlite3_stmt *stmt, int row, const TreeRecord &record)
{
    QByteArray scratch;
    const int base = row * EntryPos::Count + 1;
    for (int pos = 0; pos < EntryPos::Count; ++pos) {
        const int index = base + pos;
        switch (pos) {
        case EntryPos::RunId:
        case EntryPos::StandingHarvested:
            continue;   // bound once for the whole list
        case EntryPos::TreeId:
            bindLatin1(stmt, index, record.treeId, record.treeIdLength, scratch);
            continue;
        case EntryPos::SpeciesLetters:
            bindLatin1(stmt, index, record.letters, record.lettersLength, scratch);
            continue;
        default:
            break;
        }
        if (kModelEntryTypes[pos] == FieldType::Double)
            sqlite3_bind_double(stmt, index, record.values[pos]);
        else
            sqlite3_bind_int(stmt, index, static_cast<int>(record.values[pos]));
    }
}

void ModelEntryInserter::step(sqlite3_stmt *stmt)
{
    // A database locked by another program is tried again a few times, as AddRecord does.
    for (int attempt = 0;; ++attempt) {
        const int rc = sqlite3_step(stmt);
        sqlite3_reset(stmt);
        if (rc == SQLITE_DONE)
            return;
        const int primary = rc & 0xff;
        if ((primary != SQLITE_BUSY && primary != SQLITE_LOCKED) || attempt >= clsDBEngine::kAddRecordRetries)
            fail(rc);
        QThread::msleep(50);
    }
}

void ModelEntryInserter::AddModelEntry(const TreeRecord &record)
{
    nextRow() = record;
    addNextRow();
}

void ModelEntryInserter::addNextRow()
{
    if (++m_waiting < kBatchRows)
        return;
    m_waiting = 0;
    for (int i = 0; i < kBatchRows; ++i)
        bindRow(m_batch, i, m_rows[i]);
    step(m_batch);
}

void ModelEntryInserter::flush()
{
    const int waiting = m_waiting;
    m_waiting = 0;
    for (int i = 0; i < waiting; ++i) {
        bindRow(m_single, 0, m_rows[i]);
        step(m_single);
    }
}

}  // namespace sendrel
