#include "domain/import/ModelEntryInserter.h"

#include "base/SendrelError.h"

#include <QStringList>

namespace sendrel {

namespace {

// Bytes of the list are Latin-1 characters; pure ASCII is already UTF-8, and stays where it is
// until the statement has run.
void bindLatin1(Statement &stmt, int index, const char *text, int length, QByteArray &scratch)
{
    bool ascii = true;
    for (int i = 0; i < length; ++i)
        ascii = ascii && static_cast<uchar>(text[i]) < 0x80;
    if (ascii) {
        stmt.bindUtf8(index, text, length, true);
    } else {
        scratch = QString::fromLatin1(text, length).toUtf8();
        stmt.bindUtf8(index, scratch.constData(), static_cast<int>(scratch.size()), false);
    }
}

}  // namespace

ModelEntryInserter::ModelEntryInserter(clsDBEngine &engine, const QString &runId, const QString &kind)
    : m_engine(engine), m_runId(runId.toUtf8()), m_kind(kind.toUtf8())
{
    // Columns by position, as AddRecord fills them: the first 30 of the table.
    QStringList names;
    {
        Statement probe(engine, QStringLiteral("SELECT * FROM Model_Entries WHERE 1=0"));
        if (probe.columnCount() < EntryPos::Count) {
            throw SendrelError(ErrNo::ItemNotFound, QStringLiteral("SQLite"),
                               QStringLiteral("Item cannot be found in the collection corresponding to the requested name or ordinal: "
                                              "%1 values for table 'Model_Entries' of %2 columns.")
                                   .arg(EntryPos::Count)
                                   .arg(probe.columnCount()));
        }
        for (int i = 0; i < EntryPos::Count; ++i)
            names.append(QLatin1Char('"') + probe.columnName(i) + QLatin1Char('"'));
    }
    m_bulk = engine.backend().bulkInsert(QStringLiteral("Model_Entries"), names);
    if (m_bulk)
        return;
    QStringList marks;
    for (int i = 0; i < EntryPos::Count; ++i)
        marks.append(QStringLiteral("?"));
    const QString insert = QStringLiteral("INSERT INTO Model_Entries (%1) VALUES ").arg(names.join(QLatin1Char(',')));
    const QString row = QLatin1Char('(') + marks.join(QLatin1Char(',')) + QLatin1Char(')');
    QStringList rows;
    for (int i = 0; i < kBatchRows; ++i)
        rows.append(row);
    m_single = std::make_unique<Statement>(engine, insert + row);
    m_batch = std::make_unique<Statement>(engine, insert + rows.join(QLatin1Char(',')));
    // Run Id and kind are the same in every row of the list: bound once.
    for (int i = 0; i < kBatchRows; ++i) {
        for (Statement *stmt : {m_single.get(), m_batch.get()}) {
            if (stmt == m_single.get() && i > 0)
                continue;
            const int base = i * EntryPos::Count + 1;
            stmt->bindUtf8(base + EntryPos::RunId, m_runId.constData(), static_cast<int>(m_runId.size()), true);
            stmt->bindUtf8(base + EntryPos::StandingHarvested, m_kind.constData(), static_cast<int>(m_kind.size()), true);
        }
    }
}

// Rows still waiting belong to an import that failed: its transaction is rolled back anyway.
ModelEntryInserter::~ModelEntryInserter() = default;

void ModelEntryInserter::bindRow(Statement &stmt, int row, const TreeRecord &record)
{
    QByteArray scratch;
    const int base = row * EntryPos::Count + 1;
    for (int pos = 0; pos < EntryPos::Count; ++pos) {
        const int index = base + pos;
        switch (pos) {
        case EntryPos::RunId:
        case EntryPos::StandingHarvested:
            continue;  // bound once for the whole list
        case EntryPos::TreeId:
            bindLatin1(stmt, index, record.treeId, record.treeIdLength, scratch);
            continue;
        case EntryPos::SpeciesLetters:
            bindLatin1(stmt, index, record.letters, record.lettersLength, scratch);
            continue;
        default:
            break;
        }
        if (kModelEntryTypes[pos] == FieldType::Double)
            stmt.bind(index, record.values[pos]);
        else
            stmt.bind(index, static_cast<qint64>(record.values[pos]));
    }
}

void ModelEntryInserter::addToSums(qint64 rowid, const TreeRecord &record)
{
    // The values as the row holds them: whole-number columns cut to their integer.
    const auto &v = record.values;
    m_sums.add(rowid, static_cast<qint64>(v[EntryPos::CycleNumber]), static_cast<qint64>(v[EntryPos::SpeciesCode]), v[EntryPos::TreesPerHa],
               v[EntryPos::CurrentDiameter], v[EntryPos::TotalVolume], v[EntryPos::GrossMerchVolume], v[EntryPos::MerchVolLessDWB]);
}

void ModelEntryInserter::writeRow(const TreeRecord &record)
{
    QByteArray scratch;
    const auto latin1 = [&](const char *text, int length) {
        scratch = QString::fromLatin1(text, length).toUtf8();
        m_bulk->text(scratch.constData(), static_cast<int>(scratch.size()));
    };
    for (int pos = 0; pos < EntryPos::Count; ++pos) {
        switch (pos) {
        case EntryPos::RunId:
            m_bulk->text(m_runId.constData(), static_cast<int>(m_runId.size()));
            continue;
        case EntryPos::StandingHarvested:
            m_bulk->text(m_kind.constData(), static_cast<int>(m_kind.size()));
            continue;
        case EntryPos::TreeId:
            latin1(record.treeId, record.treeIdLength);
            continue;
        case EntryPos::SpeciesLetters:
            latin1(record.letters, record.lettersLength);
            continue;
        default:
            break;
        }
        if (kModelEntryTypes[pos] == FieldType::Double)
            m_bulk->number(record.values[pos]);
        else
            m_bulk->integer(static_cast<qint64>(record.values[pos]));
    }
    addToSums(m_bulk->endRow(), record);
}

void ModelEntryInserter::addNextRow()
{
    if (m_bulk) {
        writeRow(m_rows[0]);
        return;
    }
    if (++m_waiting < kBatchRows)
        return;
    m_waiting = 0;
    for (int i = 0; i < kBatchRows; ++i)
        bindRow(*m_batch, i, m_rows[i]);
    m_batch->run();
    // The rows of one statement take the rowids after the table's last, one by one. Should SQLite
    // ever choose otherwise, the kept sums would not match the records and would not be used.
    const qint64 first = m_engine.lastInsertRowid() - (kBatchRows - 1);
    for (int i = 0; i < kBatchRows; ++i)
        addToSums(first + i, m_rows[i]);
}

void ModelEntryInserter::flush()
{
    if (m_bulk) {
        m_bulk->finish();
        return;
    }
    const int waiting = m_waiting;
    m_waiting = 0;
    for (int i = 0; i < waiting; ++i) {
        bindRow(*m_single, 0, m_rows[i]);
        m_single->run();
        addToSums(m_engine.lastInsertRowid(), m_rows[i]);
    }
}

}  // namespace sendrel
