#pragma once

#include "base/SendrelError.h"

#include <QString>
#include <QVariant>

#include <chrono>
#include <memory>

struct sqlite3;

namespace sendrel {

class clsDBEngine;

// One prepared statement of an engine: values bound by position (from 1), rows stepped through.
class StatementBackend {
public:
    virtual ~StatementBackend() = default;
    virtual void bindUtf8(int index, const char *bytes, int length, bool stable) = 0;
    virtual void bindDouble(int index, double value) = 0;
    virtual void bindInteger(int index, qint64 value) = 0;
    virtual void bindNull(int index) = 0;
    // True with a row; false after the last, the statement then reset. Throws on a failure.
    virtual bool next() = 0;
    // Runs a statement without rows, then resets it.
    virtual void run() = 0;
    virtual void reset() = 0;
    virtual int columnCount() = 0;
    virtual QString columnName(int column) = 0;
    virtual bool isNull(int column) const = 0;
    virtual double real(int column) const = 0;
    virtual qint64 integer(int column) const = 0;
    virtual QString text(int column) const = 0;
    virtual QVariant value(int column) const = 0;
    virtual qint32 changes() const = 0;
};

// Rows added to one table in bulk, value by value in the order of the columns named, each row with
// a rowid of its own given in the order of the rows. The rows stand in the table after finish(),
// and other statements may run only then; rows may follow.
class BulkWriter {
public:
    virtual ~BulkWriter() = default;
    virtual void text(const char *utf8, int length) = 0;
    // A number that is not one is NULL, as SQLite stores it.
    virtual void number(double value) = 0;
    virtual void integer(qint64 value) = 0;
    // Ends the row: its rowid.
    virtual qint64 endRow() = 0;
    virtual void finish() = 0;
};

// What differs between the engines, in one place each: the SQLite file (SqliteBackend.cpp) and the
// PostgreSQL server (PostgresBackend.cpp). The program's SQL is SQLite's; the server's backend
// says it in its own dialect before it prepares it.
class EngineBackend {
public:
    virtual ~EngineBackend() = default;
    virtual std::unique_ptr<StatementBackend> prepare(const QString &sql) = 0;
    virtual bool inTransaction() const = 0;
    virtual qint64 lastInsertRowid() const = 0;
    virtual void setLockWait(std::chrono::milliseconds wait) = 0;
    // Whether the database holds a table of that name (not a temporary one).
    bool tableExists(const QString &name)
    {
        const std::unique_ptr<StatementBackend> table = prepare(tableLookup());
        const QByteArray utf8 = name.toUtf8();
        table->bindUtf8(1, utf8.constData(), static_cast<int>(utf8.size()), true);
        const bool exists = table->next();
        table->reset();
        return exists;
    }
    // Keeps other writers from a key (a Run Id, case ignored) until the open transaction ends. The
    // file's write lock already keeps every other writer out; the server's writers of other keys go on.
    virtual void holdKey(const QString &) {}
    // The statement that gives a row for the table named by ?1.
    virtual QString tableLookup() const = 0;
    // Readers go on while another program writes (the file's write-ahead log; a server does so anyway).
    virtual void useWriteAheadLog() = 0;
    // "ok", or what a quick look at the stored pages found ("ok" on a server, which checks its own).
    virtual QString quickCheck() = 0;
    // Gives the space of deleted rows back; the bytes the database takes.
    virtual void compact() = 0;
    virtual qint64 bytes() const = 0;
    // Makes the database's own prerequisites for the schema (the server's collation of NOCASE)
    // and refuses a database that holds other tables. Nothing on a new file.
    virtual void prepareEmptyDatabase() = 0;
    virtual sqlite3 *sqliteHandle() const { return nullptr; }
    // A bulk writer where the engine has a faster way than statements (the server's COPY), inside
    // the open transaction; nothing where statements are the fastest way (the file).
    virtual std::unique_ptr<BulkWriter> bulkInsert(const QString &, const QStringList &) { return nullptr; }
};

// The backends, made for an engine whose PathToDB names them.
std::unique_ptr<EngineBackend> OpenSqliteBackend(clsDBEngine &engine, bool create);
std::unique_ptr<EngineBackend> OpenPostgresBackend(clsDBEngine &engine, bool create);

// The server's dialect of one statement of the program's SQL: ?N and ? as $N, [name] as a quoted
// identifier, SQLite's types, INSERT OR IGNORE, the transaction statements; what the tests of the
// store check.
QString PostgresDialect(const QString &sql);

}  // namespace sendrel
