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

// Bytes of the list are Latin-1 characters; pure ASCII is already UTF-8.
void bindLatin1(sqlite3_stmt *stmt, int index, const char *text, int length, QByteArray &scratch)
{
    bool ascii = true;
    for (int i = 0; i < length; ++i)
        ascii = ascii && static_cast<uchar>(text[i]) < 0x80;
    if (ascii) {
        sqlite3_bind_text(stmt, index, text, length, SQLITE_TRANSIENT);
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
    const QByteArray sql = QStringLiteral("INSERT INTO Model_Entries (%1) VALUES (%2)")
                               .arg(names.join(QLatin1Char(',')), marks.join(QLatin1Char(',')))
                               .toUtf8();
    const int rc = sqlite3_prepare_v2(m_db, sql.constData(), static_cast<int>(sql.size()), &m_insert, nullptr);
    if (rc != SQLITE_OK)
        fail(rc);
    sqlite3_bind_text(m_insert, EntryPos::RunId + 1, m_runId.constData(), static_cast<int>(m_runId.size()), SQLITE_STATIC);
    sqlite3_bind_text(m_insert, EntryPos::StandingHarvested + 1, m_kind.constData(), static_cast<int>(m_kind.size()), SQLITE_STATIC);
}

ModelEntryInserter::~ModelEntryInserter()
{
    // Finalised before the engine may close the connection.
    sqlite3_finalize(m_insert);
}

void ModelEntryInserter::fail(int code) const
{
    const int primary = code & 0xff;
    const long number = primary == SQLITE_BUSY || primary == SQLITE_LOCKED ? ErrNo::DatabaseFailure : ErrNo::CommandFailure;
    throw SendrelError(number, kSource, QString::fromUtf8(sqlite3_errmsg(m_db)));
}

void ModelEntryInserter::AddModelEntry(const TreeRecord &record)
{
    QByteArray scratch;
    for (int pos = 0; pos < EntryPos::Count; ++pos) {
        const int index = pos + 1;
        switch (pos) {
        case EntryPos::RunId:
        case EntryPos::StandingHarvested:
            continue;   // bound once for the whole list
        case EntryPos::TreeId:
            bindLatin1(m_insert, index, record.treeId, record.treeIdLength, scratch);
            continue;
        case EntryPos::SpeciesLetters:
            bindLatin1(m_insert, index, record.letters, record.lettersLength, scratch);
            continue;
        default:
            break;
        }
        if (ModelEntryType(pos) == FieldType::Double)
            sqlite3_bind_double(m_insert, index, record.values[pos]);
        else
            sqlite3_bind_int(m_insert, index, static_cast<int>(record.values[pos]));
    }
    // A database locked by another program is tried again a few times, as AddRecord does.
    for (int attempt = 0;; ++attempt) {
        const int rc = sqlite3_step(m_insert);
        sqlite3_reset(m_insert);
        if (rc == SQLITE_DONE)
            return;
        const int primary = rc & 0xff;
        if ((primary != SQLITE_BUSY && primary != SQLITE_LOCKED) || attempt >= clsDBEngine::kAddRecordRetries)
            fail(rc);
        QThread::msleep(50);
    }
}

}  // namespace sendrel
