// The SQLite file as a run database: the connection through QtSql's handle, its statements, its
// locks and journal, and its failures in the program's numbers.
#include "store/DBEngine.h"
#include "store/DatabaseFile.h"
#include "store/EngineBackend.h"

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

class SqliteStatement : public StatementBackend {
public:
    SqliteStatement(clsDBEngine &engine, sqlite3 *h, const QString &sql) : m_engine(engine), m_handle(h)
    {
        const QByteArray text = sql.toUtf8();
        const int rc = sqlite3_prepare_v2(h, text.constData(), static_cast<int>(text.size()), &m_stmt, nullptr);
        if (rc != SQLITE_OK) {
            sqlite3_finalize(m_stmt);
            m_stmt = nullptr;
            throw failure(rc);
        }
        if (!m_stmt)  // an empty text: nothing to run
            throw SendrelError(ErrNo::CommandFailure, kSource, QStringLiteral("The statement is empty."));
    }
    ~SqliteStatement() override { sqlite3_finalize(m_stmt); }

    void bindUtf8(int index, const char *bytes, int length, bool stable) override
    {
        sqlite3_bind_text(m_stmt, index, bytes, length, stable ? SQLITE_STATIC : SQLITE_TRANSIENT);
    }
    void bindDouble(int index, double value) override { sqlite3_bind_double(m_stmt, index, value); }
    void bindInteger(int index, qint64 value) override { sqlite3_bind_int64(m_stmt, index, value); }
    void bindNull(int index) override { sqlite3_bind_null(m_stmt, index); }

    bool next() override
    {
        const int rc = step();
        if (rc == SQLITE_ROW)
            return true;
        sqlite3_reset(m_stmt);
        if (rc != SQLITE_DONE)
            throw failure(rc);
        return false;
    }
    void run() override
    {
        const int rc = step();
        sqlite3_reset(m_stmt);
        if (rc != SQLITE_DONE && rc != SQLITE_ROW)
            throw failure(rc);
    }
    void reset() override { sqlite3_reset(m_stmt); }
    int columnCount() override { return sqlite3_column_count(m_stmt); }
    QString columnName(int column) override { return QString::fromUtf8(sqlite3_column_name(m_stmt, column)); }
    bool isNull(int column) const override { return sqlite3_column_type(m_stmt, column) == SQLITE_NULL; }
    double real(int column) const override { return sqlite3_column_double(m_stmt, column); }
    qint64 integer(int column) const override { return sqlite3_column_int64(m_stmt, column); }
    QString text(int column) const override
    {
        const auto *data = reinterpret_cast<const char *>(sqlite3_column_text(m_stmt, column));
        return QString::fromUtf8(data, sqlite3_column_bytes(m_stmt, column));
    }
    QVariant value(int column) const override
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
    qint32 changes() const override { return sqlite3_changes(m_handle); }

private:
    // errorFrom, noting damage.
    SendrelError failure(int rc)
    {
        const int primary = rc & 0xff;
        if (primary == SQLITE_CORRUPT || primary == SQLITE_NOTADB)
            m_engine.m_damageFound = true;
        return m_engine.errorFrom(rc);
    }

    int step()
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

    clsDBEngine &m_engine;
    sqlite3 *m_handle;
    sqlite3_stmt *m_stmt = nullptr;
};

class SqliteBackend : public EngineBackend {
public:
    explicit SqliteBackend(clsDBEngine &engine)
        : m_engine(engine), m_connectionName(QStringLiteral("sendrel-db-%1").arg(g_connectionCounter.fetchAndAddRelaxed(1)))
    {
    }
    ~SqliteBackend() override
    {
        m_handle = nullptr;
        if (!QSqlDatabase::contains(m_connectionName))
            return;
        {
            QSqlDatabase db = QSqlDatabase::database(m_connectionName, false);
            db.close();
        }
        QSqlDatabase::removeDatabase(m_connectionName);
    }

    void open(bool create)
    {
        const QFileInfo file(m_engine.PathToDB);
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connectionName);
            // Opened through a URI so that a missing file is never created behind the user's back.
            QUrl url = QUrl::fromLocalFile(file.absoluteFilePath());
            url.setQuery(create ? QStringLiteral("mode=rwc") : openQuery(file, m_engine.access, m_engine.m_readOnly));
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
        if (!m_handle)
            throw SendrelError(ErrNo::DatabaseFailure, kSource, QStringLiteral("The run database is not an SQLite connection."));
        sqlite3_busy_timeout(m_handle, static_cast<int>(m_engine.lockWait().count()));
        // Reading the schema tells a file that is no database, or a damaged first page, at once.
        SqliteStatement(m_engine, m_handle, QStringLiteral("SELECT count(*) FROM sqlite_master")).run();
        // A page cache large enough that sorting the trees of one cycle (the stand table's
        // statement orders them by species and diameter) stays in memory instead of spilling to a
        // temporary file. It is taken only as needed and belongs to this connection.
        SqliteStatement(m_engine, m_handle, QStringLiteral("PRAGMA cache_size = -16384")).run();
        // Pages read through a memory map rather than copied in by the page cache.
        SqliteStatement(m_engine, m_handle, QStringLiteral("PRAGMA mmap_size = 1073741824")).next();
        SqliteStatement(m_engine, m_handle, QStringLiteral("PRAGMA synchronous = NORMAL")).run();
        // The write-ahead log grows to the size of the largest transaction (a whole import); at
        // the next checkpoint it goes back to this size, not to stay that large while the
        // program runs.
        SqliteStatement(m_engine, m_handle, QStringLiteral("PRAGMA journal_size_limit = 67108864")).run();
    }

    std::unique_ptr<StatementBackend> prepare(const QString &sql) override
    {
        return std::make_unique<SqliteStatement>(m_engine, m_handle, sql);
    }
    bool inTransaction() const override { return sqlite3_get_autocommit(m_handle) == 0; }
    qint64 lastInsertRowid() const override { return sqlite3_last_insert_rowid(m_handle); }
    void setLockWait(std::chrono::milliseconds wait) override { sqlite3_busy_timeout(m_handle, static_cast<int>(wait.count())); }
    QString tableLookup() const override { return QStringLiteral("SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = ?1"); }

    void useWriteAheadLog() override
    {
        // Readers go on reading while another program imports: the write-ahead log keeps what they
        // see. Its index lives in memory shared by the programs of one machine, which a network file
        // system cannot share: there the rollback journal keeps the file whole, readers then waiting
        // while a writer commits. A file on a medium that cannot hold the log stays in its old mode.
        const QString path = m_engine.PathToDB;
        const QString network = NetworkFileSystemName(m_engine.fileSystemTypeOf ? m_engine.fileSystemTypeOf(path) : FileSystemTypeOf(path));
        const QString wanted = network.isEmpty() ? QStringLiteral("wal") : QStringLiteral("delete");
        QString mode;
        {
            SqliteStatement current(m_engine, m_handle, QStringLiteral("PRAGMA journal_mode"));
            if (current.next())
                mode = current.text(0);
            current.reset();
        }
        if (!network.isEmpty()) {
            m_engine.m_openingNote = QStringLiteral("The run database %1 lies on a network file system (%2), which cannot share the "
                                                    "write-ahead log between programs: it is kept with a rollback journal, so other "
                                                    "programs wait while one writes.")
                                         .arg(QDir::toNativeSeparators(path), network);
        }
        if (mode.compare(wanted, Qt::CaseInsensitive) == 0)
            return;
        try {
            SqliteStatement(m_engine, m_handle, QStringLiteral("PRAGMA journal_mode = ") + wanted).next();
        } catch (const SendrelError &) {
            // The switch writes the file's header. A file, or a folder, that this program may only
            // read refuses it: such a file is still read in its old mode, and a write to it fails
            // when it is made, telling why. Anything else (a lock held past the wait, a damaged file)
            // is a failure like any other statement's.
            if ((sqlite3_errcode(m_handle) & 0xff) != SQLITE_READONLY)
                throw;
        }
    }

    QString quickCheck() override
    {
        SqliteStatement check(m_engine, m_handle, QStringLiteral("PRAGMA quick_check(1)"));
        QString problem;
        if (check.next())
            problem = check.text(0);
        check.reset();
        return problem;
    }

    void compact() override
    {
        SqliteStatement(m_engine, m_handle, QStringLiteral("VACUUM")).run();
        // The rewritten pages went through the log; a reader of another program may keep it from
        // being emptied now, and then it is emptied at a later checkpoint.
        SqliteStatement(m_engine, m_handle, QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE)")).run();
    }
    qint64 bytes() const override
    {
        const QString path = m_engine.PathToDB;
        return QFileInfo(path).size() + QFileInfo(path + QStringLiteral("-wal")).size();
    }
    void prepareEmptyDatabase() override
    {
        // A file cut short while it is made is removed anyway: no need to wait for the disk.
        SqliteStatement(m_engine, m_handle, QStringLiteral("PRAGMA synchronous = OFF")).run();
    }
    sqlite3 *sqliteHandle() const override { return m_handle; }

private:
    clsDBEngine &m_engine;
    QString m_connectionName;
    sqlite3 *m_handle = nullptr;
};

std::unique_ptr<EngineBackend> OpenSqliteBackend(clsDBEngine &engine, bool create)
{
    auto backend = std::make_unique<SqliteBackend>(engine);
    backend->open(create);
    return backend;
}

SendrelError clsDBEngine::errorFrom(int rc) const
{
    sqlite3 *h = m_backend ? m_backend->sqliteHandle() : nullptr;
    const QString cause = h ? QString::fromUtf8(sqlite3_errmsg(h)) : QString::fromUtf8(sqlite3_errstr(rc));
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
        return SendrelError(ErrNo::DatabaseFailure, kSource, QStringLiteral("The run database %1 is damaged (%2).").arg(file, cause));
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

}  // namespace sendrel
