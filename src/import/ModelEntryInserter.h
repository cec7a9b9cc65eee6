#pragma once

#include "import/TreeListReader.h"

#include <QByteArray>
#include <QString>

struct sqlite3;
struct sqlite3_stmt;

namespace sendrel {

class clsDBEngine;

// Adds Model_Entries rows by position, as AddModelEntry does, through one statement prepared on
// the engine's own SQLite connection. An import adds a million rows in one transaction; going
// through QSqlQuery would cost a QVariant per value and a text conversion per 16-bit value, which
// is most of the time of an import, so the hot loop binds the values natively here. It uses the
// same connection, so it stands inside the engine's transaction like any other statement.
class ModelEntryInserter {
public:
    // Prepares the insert for this Run Id and kind. Fails as the engine does.
    ModelEntryInserter(clsDBEngine &engine, const QString &runId, const QString &kind);
    ~ModelEntryInserter();
    ModelEntryInserter(const ModelEntryInserter &) = delete;
    ModelEntryInserter &operator=(const ModelEntryInserter &) = delete;

    void AddModelEntry(const TreeRecord &record);

private:
    [[noreturn]] void fail(int code) const;

    sqlite3 *m_db = nullptr;
    sqlite3_stmt *m_insert = nullptr;
    QByteArray m_runId;
    QByteArray m_kind;
};

}  // namespace sendrel
