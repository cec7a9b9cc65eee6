#pragma once

#include "domain/import/TreeListReader.h"

#include "store/CycleSums.h"
#include "store/DBEngine.h"
#include "store/EngineBackend.h"

#include <QByteArray>
#include <QString>

#include <memory>

namespace sendrel {

// Adds Model_Entries rows by position (kModelEntryTypes), through statements prepared on the
// engine's connection, so they stand inside the engine's transaction.
//
// Why values bound one by one with their own types: an import adds a million rows in one
// transaction, and a QVariant per value would cost as much as the insert. Why rows in batches: a statement that
// adds one row seeks the Model_Entries index from its root for every row; one that adds a batch
// keeps its cursors on the last page, where the rows of an import go. Together this halves the
// time of an import. Where the engine has a faster way in bulk (a server's COPY), the rows go that
// way instead, one by one as they are parsed.
class ModelEntryInserter {
public:
    static constexpr int kBatchRows = 256;

    // Prepares the inserts for this Run Id and kind. Fails as the engine does.
    ModelEntryInserter(clsDBEngine &engine, const QString &runId, const QString &kind);
    ~ModelEntryInserter();
    ModelEntryInserter(const ModelEntryInserter &) = delete;
    ModelEntryInserter &operator=(const ModelEntryInserter &) = delete;

    // Parse a row into nextRow(), then addNextRow(). The row may wait in the batch until flush(); a
    // failure of the database can therefore come at a later call than the row's own.
    TreeRecord &nextRow() { return m_rows[m_waiting]; }
    void addNextRow();
    // Writes the rows that wait.
    void flush();

    clsDBEngine &engine() const { return m_engine; }
    // The sums of the rows written so far, by cycle and species, for the run's kept sums.
    const CycleSumsBuilder &sums() const { return m_sums; }

private:
    void bindRow(Statement &stmt, int row, const TreeRecord &record);
    void addToSums(qint64 rowid, const TreeRecord &record);
    void writeRow(const TreeRecord &record);

    clsDBEngine &m_engine;
    CycleSumsBuilder m_sums;
    std::unique_ptr<Statement> m_single;
    std::unique_ptr<Statement> m_batch;
    std::unique_ptr<BulkWriter> m_bulk;
    int m_waiting = 0;
    TreeRecord m_rows[kBatchRows];
    QByteArray m_runId;
    QByteArray m_kind;
};

}  // namespace sendrel
