#pragma once

#include "app/SendrelError.h"
#include "store/Recordset.h"

#include <QHash>
#include <QSqlDatabase>
#include <QString>
#include <QVariantList>

class QSqlError;
class QSqlQuery;

namespace sendrel {

// The program's only way to the run database (an SQLite file). Callers set SQLString, then call
// RetreiveRecords (rows) or Execute (effect). Failures of the database layer are passed on as
// they come, as SendrelError with number, source and description.
class clsDBEngine {
public:
    clsDBEngine();
    ~clsDBEngine();
    clsDBEngine(const clsDBEngine &) = delete;
    clsDBEngine &operator=(const clsDBEngine &) = delete;

    // Closes the connection if open, then opens it on PathToDB. A missing file is not created.
    void OpenDB();
    // Closing a closed connection is no failure.
    void CloseDB();
    bool IsOpen() const;

    QString SQLString;
    QString PathToDB;

    Recordset RetreiveRecords();
    void Execute(qint32 *lRecords = nullptr);

    void StartTrans();
    void CommtTrans();
    void RollbckTrans();

    // Adds one row, values by position from the first column (from the second with AutoN, whose
    // result is then the new row's auto number; else 0). A locked database is tried again a
    // bounded number of times, then fails like any other failure.
    qint32 AddRecord(const QString &table, const QVariantList &values, bool AutoN);

    // The open connection, for statements prepared once and run many times.
    QSqlDatabase database() const;

    // A failure of the database layer in the program's form.
    static SendrelError errorFrom(const QSqlError &error);

    static constexpr int kAddRecordRetries = 5;

private:
    void requireOpen() const;
    QSqlQuery &insertFor(const QString &table, int valueCount, bool AutoN);

    QString m_connectionName;
    QHash<QString, QSqlQuery *> m_inserts;
};

}  // namespace sendrel
