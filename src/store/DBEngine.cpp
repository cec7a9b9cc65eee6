#include "store/DBEngine.h"

#include "base/SendrelError.h"
#include "store/DatabaseFile.h"

#include <QAtomicInt>
#include <QDir>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QThread>
#include <QUrl>

#include <sqlite3.h>

namespace sendrel {

namespace {

QAtomicInt g_connectionCounter;

const QString kSource = QStringLiteral("SQLite");

SendrelError closedConnection()
{
    return SendrelError(ErrNo::ClosedObject, kSource, QStringLiteral("Operation is not allowed when the object is closed."));
}

bool isBusy(int rc)
{
    const int primary = rc & 0xff;
    return primary == SQLITE_BUSY || primary == SQLITE_LOCKED;
}

// How a run database is opened: for reading and writing where the file and its folder can be
// written, else for reading only. The write-ahead log needs its index file beside the database;
// in a folder that cannot be written, a file without a log is read as it stands ("immutable":
// no other program can change it there either), while one with a log is read through it.
QString openQuery(const QFileInfo &file, clsDBEngine::Access access, bool &readOnly)
{
    using Access = clsDBEngine::Access;
    const bool folderWritable = access != Access::ReadOnlyFolder && QFileInfo(file.absolutePath()).isWritable();
    const bool fileWritable = access == Access::AsFound && file.isWritable();
    readOnly = !folderWritable || !fileWritable;
    if (!readOnly)
        return QStringLiteral("mode=rw");
    if (!folderWritable && !QFileInfo::exists(file.absoluteFilePath() + QStringLiteral("-wal")))
        return QStringLiteral("mode=ro&immutable=1");
    return QStringLiteral("mode=ro");
}

}  // namespace

clsDBEngine::clsDBEngine()
    : m_connectionName(QStringLiteral("sendrel-db-%1").arg(g_connectionCounter.fetchAndAddRelaxed(1)))
{
}

clsDBEngine::~clsDBEngine()
{
    CloseDB();
}

SendrelError clsDBEngine::errorFrom(int rc) const
{
    const QString cause = m_handle ? QString::fromUtf8(sqlite3_errmsg(m_handle)) : QString::fromUtf8(sqlite3_errstr(rc));
    const QString file = QDir::toNativeSeparators(PathToDB);
    switch (rc & 0xff) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return SendrelError(ErrNo::DatabaseFailure, kSource,
                            QStringLiteral("The run database %1 is in use by another program and stayed locked for %2 s (%3).")
                                .arg(file)
                                .arg(static_cast<double>(m_lockWait.count()) / 1000.0)
                                .arg(cause));
    case SQLITE_FULL:
        return SendrelError(ErrNo::DatabaseFailure, kSource,
                            QStringLiteral("There is no room left for the run database %1: the disk is full (%2).").arg(file, cause));
    case SQLITE_CORRUPT:
        return SendrelError(ErrNo::DatabaseFailure, kSource,
                            QStringLiteral("The run database %1 is damaged (%2).").arg(file, cause));
    case SQLITE_NOTADB:
        return SendrelError(ErrNo::DatabaseFailure, kSource, QStringLiteral("%1 is not a run database (%2).").arg(file, cause));
    case SQLITE_IOERR:
    case SQLITE_CANTOPEN:
    case SQLITE_READONLY:
    case SQLITE_PERM:
        return SendrelError(ErrNo::DatabaseFailure, kSource,
                            QStringLiteral("The run database %1 cannot be written or read (%2).").arg(file, cause));
    default:
        return SendrelError(ErrNo::CommandFailure, kSource, cause);
    }
}

SendrelError clsDBEngine::failure(int rc)
{
    const int primary = rc & 0xff;
    if (primary == SQLITE_CORRUPT || primary == SQLITE_NOTADB)
        m_damageFound = true;
    return errorFrom(rc);
}

void clsDBEngine::setLockWait(std::chrono::milliseconds wait)
{
    m_lockWait = wait;
    if (m_handle)
        sqlite3_busy_timeout(m_handle, static_cast<int>(wait.count()));
}

void clsDBEngine::OpenDB()
{
    open(false);
}

void clsDBEngine::CreateDB()
{
    open(true);
}

void clsDBEngine::open(bool create)
{
    CloseDB();
    m_damageFound = false;
    m_openingNote.clear();
    const QFileInfo file(PathToDB);
    if (create && file.exists()) {
        throw SendrelError(58, kSource, QStringLiteral("File already exists: ") + QDir::toNativeSeparators(PathToDB));
    }
    if (!create && !file.isFile()) {
        throw SendrelError(ErrNo::DatabaseFailure, kSource,
                           QStringLiteral("Could not find file '%1'.").arg(QDir::toNativeSeparators(PathToDB)));
    }
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connectionName);
        // Opened through a URI so that a missing file is never created behind the user's back.
        QUrl url = QUrl::fromLocalFile(file.absoluteFilePath());
        url.setQuery(create ? QStringLiteral("mode=rwc") : openQuery(file, access, m_readOnly));
        db.setDatabaseName(url.toString(QUrl::FullyEncoded));
        db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_URI"));
        if (!db.open()) {
            const QString text = db.lastError().text();
            db = QSqlDatabase();
            QSqlDatabase::removeDatabase(m_connectionName);
            throw SendrelError(ErrNo::DatabaseFailure, kSource, text);
        }
        const QVariant h = db.driver()->handle();
        if (h.isValid() && qstrcmp(h.typeName(), "sqlite3*") == 0)
            m_handle = *static_cast<sqlite3 *const *>(h.constData());
    }
    if (!m_handle) {
        CloseDB();
        throw SendrelError(ErrNo::DatabaseFailure, kSource, QStringLiteral("The run database is not an SQLite connection."));
    }
    sqlite3_busy_timeout(m_handle, static_cast<int>(m_lockWait.count()));
    try {
        // Reading the schema tells a file that is no database, or a damaged first page, at once.
        Statement(*this, QStringLiteral("SELECT count(*) FROM sqlite_master")).run();
        // A page cache large enough that sorting the trees of one cycle (the stand table's
        // statement orders them by species and diameter) stays in memory instead of spilling to a
        // temporary file. It is taken only as needed and belongs to this connection.
        Statement(*this, QStringLiteral("PRAGMA cache_size = -16384")).run();
        // Pages read through a memory map rather than copied in by the page cache.
        Statement(*this, QStringLiteral("PRAGMA mmap_size = 1073741824")).next();
        Statement(*this, QStringLiteral("PRAGMA synchronous = NORMAL")).run();
        // The write-ahead log grows to the size of the largest transaction (a whole import); at
        // the next checkpoint it goes back to this size, not to stay that large while the
        // program runs.
        Statement(*this, QStringLiteral("PRAGMA journal_size_limit = 67108864")).run();
    } catch (const SendrelError &) {
        CloseDB();
        throw;
    }
}

void clsDBEngine::CloseDB()
{
    m_readOnly = false;
    m_inserts.clear();
    m_handle = nullptr;
    if (!QSqlDatabase::contains(m_connectionName))
        return;
    {
        QSqlDatabase db = QSqlDatabase::database(m_connectionName, false);
        db.close();
    }
    QSqlDatabase::removeDatabase(m_connectionName);
}

bool clsDBEngine::IsOpen() const
{
    return m_handle != nullptr;
}

sqlite3 *clsDBEngine::handle() const
{
    if (!m_handle)
        throw closedConnection();
    return m_handle;
}

Recordset clsDBEngine::RetreiveRecords()
{
    return Statement(*this, SQLString).fetchAll();
}

void clsDBEngine::Execute(qint32 *lRecords)
{
    Statement statement(*this, SQLString);
    statement.run();
    if (lRecords)
        *lRecords = statement.changes();
}

void clsDBEngine::StartTrans()
{
    Statement(*this, QStringLiteral("BEGIN IMMEDIATE")).run();
}

void clsDBEngine::CommtTrans()
{
    Statement(*this, QStringLiteral("COMMIT")).run();
}

void clsDBEngine::RollbckTrans()
{
    Statement(*this, QStringLiteral("ROLLBACK")).run();
}

void clsDBEngine::UseWriteAheadLog()
{
    // Readers go on reading while another program imports: the write-ahead log keeps what they
    // see. Its index lives in memory shared by the programs of one machine, which a network file
    // system cannot share: there the rollback journal keeps the file whole, readers then waiting
    // while a writer commits. A file on a medium that cannot hold the log stays in its old mode.
    const QString network = NetworkFileSystemName(fileSystemTypeOf ? fileSystemTypeOf(PathToDB) : FileSystemTypeOf(PathToDB));
    const QString wanted = network.isEmpty() ? QStringLiteral("wal") : QStringLiteral("delete");
    QString mode;
    {
        Statement current(*this, QStringLiteral("PRAGMA journal_mode"));
        if (current.next())
            mode = current.text(0);
        current.reset();
    }
    if (!network.isEmpty()) {
        m_openingNote = QStringLiteral("The run database %1 lies on a network file system (%2), which cannot share the "
                                       "write-ahead log between programs: it is kept with a rollback journal, so other "
                                       "programs wait while one writes.")
                            .arg(QDir::toNativeSeparators(PathToDB), network);
    }
    if (mode.compare(wanted, Qt::CaseInsensitive) == 0)
        return;
    try {
        Statement(*this, QStringLiteral("PRAGMA journal_mode = ") + wanted).next();
    } catch (const SendrelError &) {
        // The switch writes the file's header. A file, or a folder, that this program may only
        // read refuses it: such a file is still read in its old mode, and a write to it fails
        // when it is made, telling why. Anything else (a lock held past the wait, a damaged file)
        // is a failure like any other statement's.
        if ((sqlite3_errcode(handle()) & 0xff) != SQLITE_READONLY)
            throw;
    }
}

bool clsDBEngine::InTransaction() const
{
    return m_handle && sqlite3_get_autocommit(m_handle) == 0;
}

Statement &clsDBEngine::insertFor(const QString &table, int valueCount, bool AutoN)
{
    const QString key = table.toLower() + QLatin1Char('|') + QString::number(valueCount) + (AutoN ? QLatin1String("|a") : QLatin1String(""));
    if (const auto found = m_inserts.constFind(key); found != m_inserts.constEnd())
        return **found;

    QString quotedTable = table;
    quotedTable.replace(QLatin1Char('"'), QStringLiteral("\"\""));
    // The table's columns, as a select that reads no row gives them.
    Statement probe(*this, QStringLiteral("SELECT * FROM \"%1\" WHERE 1=0").arg(quotedTable));
    const int first = AutoN ? 1 : 0;
    if (first + valueCount > probe.columnCount()) {
        throw SendrelError(ErrNo::ItemNotFound, kSource,
                           QStringLiteral("Item cannot be found in the collection corresponding to the requested name or ordinal: "
                                          "%1 values for table '%2' of %3 columns.")
                               .arg(valueCount).arg(table).arg(probe.columnCount()));
    }
    QStringList names;
    QStringList marks;
    for (int i = 0; i < valueCount; ++i) {
        names.append(QLatin1Char('"') + probe.columnName(first + i) + QLatin1Char('"'));
        marks.append(QStringLiteral("?"));
    }
    auto insert = std::make_shared<Statement>(
        *this, QStringLiteral("INSERT INTO \"%1\" (%2) VALUES (%3)").arg(quotedTable, names.join(QLatin1Char(',')), marks.join(QLatin1Char(','))));
    m_inserts.insert(key, insert);
    return *insert;
}

qint32 clsDBEngine::AddRecord(const QString &table, const QVariantList &values, bool AutoN)
{
    Statement &insert = insertFor(table, static_cast<int>(values.size()), AutoN);
    for (int i = 0; i < values.size(); ++i)
        insert.bind(i + 1, values[i]);
    insert.run();
    return AutoN ? static_cast<qint32>(sqlite3_last_insert_rowid(handle())) : 0;
}

qint64 clsDBEngine::lastInsertRowid() const
{
    return sqlite3_last_insert_rowid(handle());
}

// Statement

Statement::Statement(clsDBEngine &engine, const QString &sql) : m_engine(engine)
{
    sqlite3 *h = engine.handle();
    const QByteArray text = sql.toUtf8();
    const int rc = sqlite3_prepare_v2(h, text.constData(), static_cast<int>(text.size()), &m_stmt, nullptr);
    if (rc != SQLITE_OK) {
        sqlite3_finalize(m_stmt);
        m_stmt = nullptr;
        throw engine.failure(rc);
    }
    if (!m_stmt)   // an empty text: nothing to run
        throw SendrelError(ErrNo::CommandFailure, kSource, QStringLiteral("The statement is empty."));
}

Statement::~Statement()
{
    sqlite3_finalize(m_stmt);
}

Statement &Statement::bind(int index, const QString &text)
{
    const QByteArray utf8 = text.toUtf8();
    sqlite3_bind_text(m_stmt, index, utf8.constData(), static_cast<int>(utf8.size()), SQLITE_TRANSIENT);
    return *this;
}

Statement &Statement::bind(int index, double value)
{
    sqlite3_bind_double(m_stmt, index, value);
    return *this;
}

Statement &Statement::bind(int index, qint64 value)
{
    sqlite3_bind_int64(m_stmt, index, value);
    return *this;
}

Statement &Statement::bindUtf8(int index, const char *bytes, int length, bool stable)
{
    sqlite3_bind_text(m_stmt, index, bytes, length, stable ? SQLITE_STATIC : SQLITE_TRANSIENT);
    return *this;
}

Statement &Statement::bindNull(int index)
{
    sqlite3_bind_null(m_stmt, index);
    return *this;
}

Statement &Statement::bind(int index, const QVariant &value)
{
    if (value.isNull())
        return bindNull(index);
    switch (value.typeId()) {
    case QMetaType::Double:
    case QMetaType::Float:
        return bind(index, value.toDouble());
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Bool:
        return bind(index, value.toLongLong());
    default:
        return bind(index, value.toString());
    }
}

int Statement::step()
{
    // SQLite waits for a lock by itself (the busy timeout); a lock it refuses at once is tried
    // again until the same wait is used up. Never after a row has come, which would repeat rows
    // (and the clock is not read for each row of a large read).
    if (sqlite3_stmt_busy(m_stmt) != 0)
        return sqlite3_step(m_stmt);
    const auto deadline = std::chrono::steady_clock::now() + m_engine.lockWait();
    for (;;) {
        const int rc = sqlite3_step(m_stmt);
        if (!isBusy(rc) || std::chrono::steady_clock::now() >= deadline)
            return rc;
        sqlite3_reset(m_stmt);
        QThread::msleep(10);
    }
}

bool Statement::next()
{
    const int rc = step();
    if (rc == SQLITE_ROW)
        return true;
    sqlite3_reset(m_stmt);
    if (rc != SQLITE_DONE)
        throw m_engine.failure(rc);
    return false;
}

void Statement::run()
{
    const int rc = step();
    sqlite3_reset(m_stmt);
    if (rc != SQLITE_DONE && rc != SQLITE_ROW)
        throw m_engine.failure(rc);
}

void Statement::reset()
{
    sqlite3_reset(m_stmt);
}

int Statement::columnCount() const
{
    return sqlite3_column_count(m_stmt);
}

QString Statement::columnName(int column) const
{
    return QString::fromUtf8(sqlite3_column_name(m_stmt, column));
}

bool Statement::isNull(int column) const
{
    return sqlite3_column_type(m_stmt, column) == SQLITE_NULL;
}

double Statement::real(int column) const
{
    return sqlite3_column_double(m_stmt, column);
}

qint64 Statement::integer(int column) const
{
    return sqlite3_column_int64(m_stmt, column);
}

QString Statement::text(int column) const
{
    const auto *data = reinterpret_cast<const char *>(sqlite3_column_text(m_stmt, column));
    return QString::fromUtf8(data, sqlite3_column_bytes(m_stmt, column));
}

QVariant Statement::value(int column) const
{
    switch (sqlite3_column_type(m_stmt, column)) {
    case SQLITE_INTEGER:
        return QVariant(integer(column));
    case SQLITE_FLOAT:
        return QVariant(real(column));
    case SQLITE_NULL:
        return QVariant();
    default:
        return QVariant(text(column));
    }
}

Recordset Statement::fetchAll()
{
    QStringList names;
    const int columns = columnCount();
    names.reserve(columns);
    for (int i = 0; i < columns; ++i)
        names.append(columnName(i));
    QVector<Recordset::Row> rows;
    while (next()) {
        Recordset::Row row(columns);
        for (int i = 0; i < columns; ++i)
            row[i] = value(i);
        rows.append(std::move(row));
    }
    return Recordset(std::move(names), std::move(rows));
}

qint32 Statement::changes() const
{
    return sqlite3_changes(m_engine.handle());
}

// WriteTransaction

WriteTransaction::WriteTransaction(clsDBEngine &engine) : m_engine(engine)
{
    m_engine.StartTrans();
    m_open = true;
}

WriteTransaction::~WriteTransaction()
{
    if (m_open)
        rollback();
}

void WriteTransaction::commit()
{
    m_engine.CommtTrans();
    m_open = false;
}

void WriteTransaction::rollback() noexcept
{
    m_open = false;
    // A full disk or an I/O failure makes SQLite roll back by itself; a second rollback would
    // only fail with "no transaction is active" and hide the real cause.
    if (!m_engine.InTransaction())
        return;
    try {
        m_engine.RollbckTrans();
    } catch (const SendrelError &) {
        // The failure that brought us here is the one to tell.
    }
}

// ReadSnapshot

ReadSnapshot::ReadSnapshot(clsDBEngine &engine) : m_engine(engine), m_open(!engine.InTransaction())
{
    if (m_open)
        Statement(m_engine, QStringLiteral("BEGIN")).run();
}

ReadSnapshot::~ReadSnapshot()
{
    if (!m_open || !m_engine.InTransaction())
        return;
    try {
        Statement(m_engine, QStringLiteral("ROLLBACK")).run();
    } catch (const SendrelError &) {
        // Nothing was written; a failed end of a read changes nothing.
    }
}

void ReadSnapshot::end()
{
    if (m_open && m_engine.InTransaction())
        Statement(m_engine, QStringLiteral("COMMIT")).run();
    m_open = false;
}

}  // namespace sendrel
