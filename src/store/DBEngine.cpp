#include "store/DBEngine.h"

#include "app/SendrelError.h"

#include <QAtomicInt>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QThread>
#include <QUrl>

namespace sendrel {

namespace {

QAtomicInt g_connectionCounter;

const QString kSource = QStringLiteral("SQLite");

bool isBusy(const QSqlError &error)
{
    const QString code = error.nativeErrorCode();
    // SQLITE_BUSY, SQLITE_LOCKED and their extended codes.
    bool ok = false;
    const int n = code.toInt(&ok);
    if (ok && ((n & 0xff) == 5 || (n & 0xff) == 6))
        return true;
    return error.databaseText().contains(QLatin1String("locked"), Qt::CaseInsensitive);
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

SendrelError clsDBEngine::errorFrom(const QSqlError &error)
{
    QString text = error.databaseText();
    if (text.isEmpty())
        text = error.text();
    if (text.isEmpty())
        text = QStringLiteral("Unknown database failure");
    const long number = isBusy(error) || error.type() == QSqlError::ConnectionError ? ErrNo::DatabaseFailure
                                                                                     : ErrNo::CommandFailure;
    return SendrelError(number, kSource, text);
}

void clsDBEngine::OpenDB()
{
    CloseDB();
    if (!QFileInfo(PathToDB).isFile()) {
        throw SendrelError(ErrNo::DatabaseFailure, kSource,
                           QStringLiteral("Could not find file '%1'.").arg(PathToDB));
    }
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connectionName);
    // Opened through a URI so that a missing file is never created behind the user's back.
    QUrl url = QUrl::fromLocalFile(QFileInfo(PathToDB).absoluteFilePath());
    url.setQuery(QStringLiteral("mode=rw"));
    db.setDatabaseName(url.toString(QUrl::FullyEncoded));
    db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_URI;QSQLITE_BUSY_TIMEOUT=1000"));
    if (!db.open()) {
        const SendrelError e = errorFrom(db.lastError());
        db = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_connectionName);
        throw SendrelError(ErrNo::DatabaseFailure, e.source(), e.description());
    }
    // A page cache large enough that sorting the trees of one cycle (the stand table's statement
    // orders them by species and diameter) stays in memory instead of spilling to a temporary
    // file. It is taken only as needed, belongs to this connection and writes nothing to the file.
    QSqlQuery pragma(db);
    pragma.exec(QStringLiteral("PRAGMA cache_size = -16384"));
}

void clsDBEngine::CloseDB()
{
    qDeleteAll(m_inserts);
    m_inserts.clear();
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
    return QSqlDatabase::contains(m_connectionName) && QSqlDatabase::database(m_connectionName, false).isOpen();
}

QSqlDatabase clsDBEngine::database() const
{
    requireOpen();
    return QSqlDatabase::database(m_connectionName, false);
}

void clsDBEngine::requireOpen() const
{
    if (!IsOpen())
        throw SendrelError(ErrNo::ClosedObject, kSource, QStringLiteral("Operation is not allowed when the object is closed."));
}

Recordset clsDBEngine::RetreiveRecords()
{
    QSqlQuery query(database());
    query.setForwardOnly(true);
    if (!query.exec(SQLString))
        throw errorFrom(query.lastError());
    const QSqlRecord record = query.record();
    QStringList names;
    const int columns = record.count();
    names.reserve(columns);
    for (int i = 0; i < columns; ++i)
        names.append(record.fieldName(i));
    QVector<Recordset::Row> rows;
    while (query.next()) {
        Recordset::Row row(columns);
        for (int i = 0; i < columns; ++i)
            row[i] = query.value(i);
        rows.append(std::move(row));
    }
    if (query.lastError().isValid())
        throw errorFrom(query.lastError());
    return Recordset(std::move(names), std::move(rows));
}

void clsDBEngine::Execute(qint32 *lRecords)
{
    QSqlQuery query(database());
    if (!query.exec(SQLString))
        throw errorFrom(query.lastError());
    if (lRecords)
        *lRecords = query.numRowsAffected();
}

void clsDBEngine::StartTrans()
{
    QSqlDatabase db = database();
    if (!db.transaction())
        throw errorFrom(db.lastError());
}

void clsDBEngine::CommtTrans()
{
    QSqlDatabase db = database();
    if (!db.commit())
        throw errorFrom(db.lastError());
}

void clsDBEngine::RollbckTrans()
{
    QSqlDatabase db = database();
    if (!db.rollback())
        throw errorFrom(db.lastError());
}

QSqlQuery &clsDBEngine::insertFor(const QString &table, int valueCount, bool AutoN)
{
    const QString key = table.toLower() + QLatin1Char('|') + QString::number(valueCount) + (AutoN ? QLatin1String("|a") : QLatin1String(""));
    if (QSqlQuery *q = m_inserts.value(key))
        return *q;

    QSqlDatabase db = database();
    // The table's columns, as a select that reads no row gives them.
    QSqlQuery probe(db);
    if (!probe.exec(QStringLiteral("SELECT * FROM \"%1\" WHERE 1=0").arg(table)))
        throw errorFrom(probe.lastError());
    const QSqlRecord columns = probe.record();
    const int first = AutoN ? 1 : 0;
    if (first + valueCount > columns.count()) {
        throw SendrelError(ErrNo::ItemNotFound, kSource,
                           QStringLiteral("Item cannot be found in the collection corresponding to the requested name or ordinal: "
                                          "%1 values for table '%2' of %3 columns.")
                               .arg(valueCount).arg(table).arg(columns.count()));
    }
    QStringList names;
    QStringList marks;
    for (int i = 0; i < valueCount; ++i) {
        names.append(QLatin1Char('"') + columns.fieldName(first + i) + QLatin1Char('"'));
        marks.append(QStringLiteral("?"));
    }
    auto *query = new QSqlQuery(db);
    const QString sql = QStringLiteral("INSERT INTO \"%1\" (%2) VALUES (%3)").arg(table, names.join(QLatin1Char(',')), marks.join(QLatin1Char(',')));
    if (!query->prepare(sql)) {
        const SendrelError e = errorFrom(query->lastError());
        delete query;
        throw e;
    }
    m_inserts.insert(key, query);
    return *query;
}

qint32 clsDBEngine::AddRecord(const QString &table, const QVariantList &values, bool AutoN)
{
    for (int attempt = 0;; ++attempt) {
        try {
            QSqlQuery &query = insertFor(table, static_cast<int>(values.size()), AutoN);
            for (int i = 0; i < values.size(); ++i)
                query.bindValue(i, values[i]);
            if (!query.exec())
                throw errorFrom(query.lastError());
            return AutoN ? query.lastInsertId().toInt() : 0;
        } catch (const SendrelError &e) {
            // A row or table locked by another program: try the same statement again, a few times.
            if (e.number() != ErrNo::DatabaseFailure || attempt >= kAddRecordRetries)
                throw;
            QThread::msleep(50);
        }
    }
}

}  // namespace sendrel
