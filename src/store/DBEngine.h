#pragma once

#include "base/SendrelError.h"
#include "store/Recordset.h"

#include <QHash>
#include <QString>
#include <QVariant>
#include <QVariantList>

#include <chrono>
#include <functional>
#include <memory>

struct sqlite3;

namespace sendrel {

class Statement;
class EngineBackend;
class StatementBackend;

// The program's only way to the run database: an SQLite file (opened through QtSql) or a
// PostgreSQL database (through libpq), as PathToDB names it, a path or a connection text
// ("postgresql://..."). Callers set SQLString, then call RetreiveRecords (rows) or Execute
// (effect); typed code prepares a Statement. The SQL is SQLite's; what differs on the server is
// the backend's to say (store/EngineBackend.h). Every statement runs on the one connection, through
// one path that waits for a lock held by another program and maps the engine's failures to the
// program's numbers: busy, locked, full, damaged or unreadable give -2147467259 (the general
// failure), a statement the database refuses -2147217900.
class clsDBEngine {
public:
    clsDBEngine();
    ~clsDBEngine();
    clsDBEngine(const clsDBEngine &) = delete;
    clsDBEngine &operator=(const clsDBEngine &) = delete;

    // True when the text names a server database (a PostgreSQL connection text), not a file.
    static bool IsServerDatabase(const QString &pathOrConnection);
    bool IsServer() const { return IsServerDatabase(PathToDB); }

    // Closes the connection if open, then opens it on PathToDB. A missing file is not created.
    // A file that cannot be written, or lies in a folder that cannot be written (a read-only
    // share, an archive), is opened for reading only: everything but writing works.
    void OpenDB();
    // Makes a new, empty database file at PathToDB and opens it; fails when the file exists. On a
    // server it opens the database, which must hold no table.
    void CreateDB();
    // Closing a closed connection is no failure.
    void CloseDB();
    bool IsOpen() const;
    // True when the open file is read only (see OpenDB).
    bool IsReadOnly() const { return m_readOnly; }

    // What OpenDB takes the file and its folder to allow. Tests stand in here for a file or a
    // folder that cannot be written, which permissions do not show to the superuser.
    enum class Access { AsFound, ReadOnlyFile, ReadOnlyFolder };
    Access access = Access::AsFound;

    QString SQLString;
    QString PathToDB;
    // The password of a server database, given to the server beside PathToDB and kept in memory
    // only: a connection text is shown and kept in the settings, a password never is.
    QString Password;
    // True when the last open of a server database failed for want of a password: none was given,
    // and libpq found none in ~/.pgpass or PGPASSWORD.
    bool PasswordNeeded() const { return m_passwordNeeded; }

    Recordset RetreiveRecords();
    void Execute(qint32 *lRecords = nullptr);

    // One level of transaction. StartTrans takes the write lock at once (waiting for it as long
    // as lockWait allows), so that a writer never fails half way for a lock another writer holds.
    void StartTrans();
    void CommtTrans();
    void RollbckTrans();
    // Lets readers go on while another program writes; for a file known to be a run database.
    // On a network file system, where the log's shared index cannot be kept, the file keeps (or
    // goes back to) the rollback journal instead, and openingNote() says so.
    void UseWriteAheadLog();
    // What the user is to be told of the file opened, once: empty when nothing.
    const QString &openingNote() const { return m_openingNote; }
    // The statfs type of the file system that holds a path; FileSystemTypeOf unless a test tells
    // its own.
    std::function<qint64(const QString &path)> fileSystemTypeOf;
    // True while a transaction is open: SQLite ends one by itself on some failures (a full disk).
    bool InTransaction() const;

    // Adds one row, values by position from the first column (from the second with AutoN, whose
    // result is then the new row's auto number; else 0).
    qint32 AddRecord(const QString &table, const QVariantList &values, bool AutoN);

    // How long a statement waits for a lock that another program holds before it fails.
    void setLockWait(std::chrono::milliseconds wait);
    std::chrono::milliseconds lockWait() const { return m_lockWait; }
    static constexpr std::chrono::milliseconds kDefaultLockWait{10000};

    // The SQLite handle of the open connection: the one way to it. Fails when closed or on a server.
    sqlite3 *handle() const;
    // The open connection's engine. Fails when closed.
    EngineBackend &backend() const;

    // Whether the database holds a table of that name.
    bool tableExists(const QString &name);
    // Inside a write transaction: no other writer holds the key (case ignored) until it ends.
    void holdKey(const QString &key);

    // A failure of SQLite (result code rc on this connection) in the program's form.
    SendrelError errorFrom(int rc) const;
    // True once a statement of this connection has found the file damaged or no database, until
    // it is opened again: what was written before such a failure is not to be committed.
    bool damageFound() const { return m_damageFound; }

    // The rowid of the last row added on this connection.
    qint64 lastInsertRowid() const;

private:
    friend class Statement;
    friend class SqliteBackend;
    friend class SqliteStatement;
    friend class PostgresBackend;
    void open(bool create);
    Statement &insertFor(const QString &table, int valueCount, bool AutoN);

    std::unique_ptr<EngineBackend> m_backend;
    std::chrono::milliseconds m_lockWait = kDefaultLockWait;
    bool m_damageFound = false;
    bool m_readOnly = false;
    bool m_passwordNeeded = false;
    QString m_openingNote;
    QHash<QString, std::shared_ptr<Statement>> m_inserts;
};

// A statement prepared on the engine's connection, with values bound by position (from 1; the SQL
// marks them ?N or ?).
// Rows are read with next(); run() is for statements without rows. A lock held by another
// program is waited for within the engine's lockWait, then fails like any other failure.
class Statement {
public:
    Statement(clsDBEngine &engine, const QString &sql);
    ~Statement();
    Statement(const Statement &) = delete;
    Statement &operator=(const Statement &) = delete;

    Statement &bind(int index, const QString &text);
    Statement &bind(int index, double value);
    Statement &bind(int index, qint64 value);
    Statement &bind(int index, int value) { return bind(index, static_cast<qint64>(value)); }
    Statement &bindNull(int index);
    // UTF-8 bytes; with stable the caller keeps them unchanged until the statement has run, and
    // they are not copied.
    Statement &bindUtf8(int index, const char *bytes, int length, bool stable);
    // Texts, numbers and nulls as they come; anything else as its text.
    Statement &bind(int index, const QVariant &value);

    // Steps to the next row: true while there is one. After the last row the statement is reset
    // and can be run again with new values.
    bool next();
    // Runs a statement that gives no rows, then resets it for the next values.
    void run();
    void reset();

    int columnCount() const;
    QString columnName(int column) const;
    bool isNull(int column) const;
    double real(int column) const;
    qint64 integer(int column) const;
    QString text(int column) const;
    // The value as its stored type gives it: integer, double, text or null.
    QVariant value(int column) const;
    // Rows changed by the last run.
    qint32 changes() const;
    // Every row that is left, as a fully fetched recordset.
    Recordset fetchAll();

private:
    clsDBEngine &m_engine;
    std::unique_ptr<StatementBackend> m_impl;
};

// The engine's transaction for a stretch of writes: begun at construction (taking the write lock
// at once), committed by commit(), rolled back when left without a commit. A rollback never hides
// the failure that led to it.
class WriteTransaction {
public:
    explicit WriteTransaction(clsDBEngine &engine);
    ~WriteTransaction();
    WriteTransaction(const WriteTransaction &) = delete;
    WriteTransaction &operator=(const WriteTransaction &) = delete;

    void commit();
    // Rolls back what is open; nothing when SQLite has already ended the transaction.
    void rollback() noexcept;
    bool isOpen() const { return m_open; }
    clsDBEngine &engine() const { return m_engine; }

private:
    clsDBEngine &m_engine;
    bool m_open = false;
};

// Reads that must see the database as of one moment, also while another program writes: a read
// transaction from construction to end() or destruction. Inside an open transaction it adds
// nothing, that transaction already being one moment.
class ReadSnapshot {
public:
    explicit ReadSnapshot(clsDBEngine &engine);
    ~ReadSnapshot();
    ReadSnapshot(const ReadSnapshot &) = delete;
    ReadSnapshot &operator=(const ReadSnapshot &) = delete;

    void end();

private:
    clsDBEngine &m_engine;
    bool m_open;
};

}  // namespace sendrel
