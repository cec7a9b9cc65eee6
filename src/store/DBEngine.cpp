#include "store/DBEngine.h"

#include "base/SendrelError.h"
#include "store/EngineBackend.h"

#include <QDir>
#include <QFileInfo>

namespace sendrel {

namespace {

SendrelError closedConnection()
{
    return SendrelError(ErrNo::ClosedObject, QStringLiteral("SQLite"),
                        QStringLiteral("Operation is not allowed when the object is closed."));
}

}  // namespace

clsDBEngine::clsDBEngine() = default;

clsDBEngine::~clsDBEngine()
{
    CloseDB();
}

bool clsDBEngine::IsServerDatabase(const QString &pathOrConnection)
{
    return pathOrConnection.startsWith(QLatin1String("postgresql://"), Qt::CaseInsensitive) ||
           pathOrConnection.startsWith(QLatin1String("postgres://"), Qt::CaseInsensitive);
}

void clsDBEngine::setLockWait(std::chrono::milliseconds wait)
{
    m_lockWait = wait;
    if (m_backend)
        m_backend->setLockWait(wait);
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
    m_passwordNeeded = false;
    m_openingNote.clear();
    if (IsServer()) {
        m_backend = OpenPostgresBackend(*this, create);
        return;
    }
    const QFileInfo file(PathToDB);
    if (create && file.exists()) {
        throw SendrelError(ErrNo::FileAlreadyExists, QStringLiteral("SQLite"),
                           QStringLiteral("File already exists: ") + QDir::toNativeSeparators(PathToDB));
    }
    if (!create && !file.isFile()) {
        throw SendrelError(ErrNo::DatabaseFailure, QStringLiteral("SQLite"),
                           QStringLiteral("Could not find file '%1'.").arg(QDir::toNativeSeparators(PathToDB)));
    }
    m_backend = OpenSqliteBackend(*this, create);
}

void clsDBEngine::CloseDB()
{
    m_readOnly = false;
    m_inserts.clear();
    m_backend.reset();
}

bool clsDBEngine::IsOpen() const
{
    return m_backend != nullptr;
}

EngineBackend &clsDBEngine::backend() const
{
    if (!m_backend)
        throw closedConnection();
    return *m_backend;
}

sqlite3 *clsDBEngine::handle() const
{
    sqlite3 *h = backend().sqliteHandle();
    if (!h) {
        throw SendrelError(ErrNo::InvalidCall, QStringLiteral("Sendrel"),
                           QStringLiteral("%1 is a server database: this works on a database file only.").arg(PathToDB));
    }
    return h;
}

void clsDBEngine::holdKey(const QString &key)
{
    backend().holdKey(key);
}

bool clsDBEngine::tableExists(const QString &name)
{
    return backend().tableExists(name);
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
    backend().useWriteAheadLog();
}

bool clsDBEngine::InTransaction() const
{
    return m_backend && m_backend->inTransaction();
}

Statement &clsDBEngine::insertFor(const QString &table, int valueCount, bool AutoN)
{
    const QString key =
        table.toLower() + QLatin1Char('|') + QString::number(valueCount) + (AutoN ? QLatin1String("|a") : QLatin1String(""));
    if (const auto found = m_inserts.constFind(key); found != m_inserts.constEnd())
        return **found;

    QString quotedTable = table;
    quotedTable.replace(QLatin1Char('"'), QStringLiteral("\"\""));
    // The table's columns, as a select that reads no row gives them.
    Statement probe(*this, QStringLiteral("SELECT * FROM \"%1\" WHERE 1=0").arg(quotedTable));
    const int first = AutoN ? 1 : 0;
    const int columns = probe.columnCount();
    if (first + valueCount > columns) {
        throw SendrelError(ErrNo::ItemNotFound, QStringLiteral("SQLite"),
                           QStringLiteral("Item cannot be found in the collection corresponding to the requested name or ordinal: "
                                          "%1 values for table '%2' of %3 columns.")
                               .arg(valueCount)
                               .arg(table)
                               .arg(columns));
    }
    QStringList names;
    QStringList marks;
    for (int i = 0; i < valueCount; ++i) {
        names.append(QLatin1Char('"') + probe.columnName(first + i) + QLatin1Char('"'));
        marks.append(QStringLiteral("?"));
    }
    auto insert = std::make_shared<Statement>(
        *this,
        QStringLiteral("INSERT INTO \"%1\" (%2) VALUES (%3)").arg(quotedTable, names.join(QLatin1Char(',')), marks.join(QLatin1Char(','))));
    m_inserts.insert(key, insert);
    return *insert;
}

qint32 clsDBEngine::AddRecord(const QString &table, const QVariantList &values, bool AutoN)
{
    Statement &insert = insertFor(table, static_cast<int>(values.size()), AutoN);
    for (int i = 0; i < values.size(); ++i)
        insert.bind(i + 1, values[i]);
    insert.run();
    return AutoN ? static_cast<qint32>(lastInsertRowid()) : 0;
}

qint64 clsDBEngine::lastInsertRowid() const
{
    return backend().lastInsertRowid();
}

// Statement

Statement::Statement(clsDBEngine &engine, const QString &sql) : m_engine(engine), m_impl(engine.backend().prepare(sql))
{
}

Statement::~Statement() = default;

Statement &Statement::bind(int index, const QString &text)
{
    const QByteArray utf8 = text.toUtf8();
    m_impl->bindUtf8(index, utf8.constData(), static_cast<int>(utf8.size()), false);
    return *this;
}

Statement &Statement::bind(int index, double value)
{
    m_impl->bindDouble(index, value);
    return *this;
}

Statement &Statement::bind(int index, qint64 value)
{
    m_impl->bindInteger(index, value);
    return *this;
}

Statement &Statement::bindUtf8(int index, const char *bytes, int length, bool stable)
{
    m_impl->bindUtf8(index, bytes, length, stable);
    return *this;
}

Statement &Statement::bindNull(int index)
{
    m_impl->bindNull(index);
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

bool Statement::next()
{
    return m_impl->next();
}

void Statement::run()
{
    m_impl->run();
}

void Statement::reset()
{
    m_impl->reset();
}

int Statement::columnCount() const
{
    return m_impl->columnCount();
}

QString Statement::columnName(int column) const
{
    return m_impl->columnName(column);
}

bool Statement::isNull(int column) const
{
    return m_impl->isNull(column);
}

double Statement::real(int column) const
{
    return m_impl->real(column);
}

qint64 Statement::integer(int column) const
{
    return m_impl->integer(column);
}

QString Statement::text(int column) const
{
    return m_impl->text(column);
}

QVariant Statement::value(int column) const
{
    return m_impl->value(column);
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
    return m_impl->changes();
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
