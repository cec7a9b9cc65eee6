#include "domain/import/CopyRuns.h"

#include "base/SendrelError.h"
#include "domain/import/TreeListReader.h"
#include "store/CycleSums.h"
#include "store/EngineBackend.h"

#include <QDir>

#include <algorithm>
#include <cmath>

namespace sendrel {

namespace {

const QString kSource = QStringLiteral("Sendrel");

// The columns of Model_Entries that an import writes, by the names the source gives them.
QStringList entryColumns(clsDBEngine &engine)
{
    Statement probe(engine, QStringLiteral("SELECT * FROM Model_Entries WHERE 1=0"));
    QStringList names;
    for (int i = 0; i < EntryPos::Count; ++i)
        names.append(probe.columnName(i));
    return names;
}

// The rows of one statement of the source into the target, value by value as they are stored.
void copyRows(Statement &rows, clsDBEngine &target, const QString &insert, int columns)
{
    Statement add(target, insert);
    while (rows.next()) {
        for (int i = 0; i < columns; ++i)
            add.bind(i + 1, rows.value(i));
        add.run();
    }
}

void copyRun(clsDBEngine &source, clsDBEngine &target, const RunKey &run, const QStringList &columns)
{
    Statement runRow(source, QStringLiteral("SELECT Run_Id, Run_Date, Run_Time, Not_Used, Standing_Harvested, Variant_ID FROM Model_Run "
                                            "WHERE Run_Id = ?1 AND Standing_Harvested = ?2"));
    copyRows(runRow.bind(1, run.runId).bind(2, run.letter()), target,
             QStringLiteral(
                 "INSERT INTO Model_Run (Run_Id, Run_Date, Run_Time, Not_Used, Standing_Harvested, Variant_ID) VALUES (?, ?, ?, ?, ?, ?)"),
             6);
    Statement headers(source, QStringLiteral("SELECT Run_Id, First_Header_Number, Cycle, Cycle_Year, Standing_Harvested FROM Model_Header "
                                             "WHERE Run_Id = ?1 AND Standing_Harvested = ?2 ORDER BY rowid"));
    copyRows(headers.bind(1, run.runId).bind(2, run.letter()), target,
             QStringLiteral(
                 "INSERT INTO Model_Header (Run_Id, First_Header_Number, Cycle, Cycle_Year, Standing_Harvested) VALUES (?, ?, ?, ?, ?)"),
             5);

    QStringList quoted;
    QStringList marks;
    for (const QString &name : columns) {
        quoted.append(QLatin1Char('"') + name + QLatin1Char('"'));
        marks.append(QStringLiteral("?"));
    }
    Statement entries(source, QStringLiteral("SELECT %1 FROM Model_Entries WHERE Run_Id = ?1 AND Standing_Harvested = ?2 ORDER BY rowid")
                                  .arg(quoted.join(QLatin1Char(','))));
    entries.bind(1, run.runId).bind(2, run.letter());
    // The server's bulk way where it has one; else one prepared insert.
    std::unique_ptr<BulkWriter> bulk = target.backend().bulkInsert(QStringLiteral("Model_Entries"), columns);
    std::unique_ptr<Statement> insert;
    if (!bulk) {
        insert = std::make_unique<Statement>(
            target,
            QStringLiteral("INSERT INTO Model_Entries (%1) VALUES (%2)").arg(quoted.join(QLatin1Char(',')), marks.join(QLatin1Char(','))));
    }
    CycleSumsBuilder sums;
    const auto number = [&entries](int pos) { return entries.isNull(pos) ? std::nan("") : entries.real(pos); };
    while (entries.next()) {
        qint64 rowid = 0;
        if (bulk) {
            for (int pos = 0; pos < EntryPos::Count; ++pos) {
                const QVariant v = entries.value(pos);
                if (v.isNull()) {
                    bulk->number(std::nan(""));
                } else if (v.typeId() == QMetaType::LongLong) {
                    bulk->integer(v.toLongLong());
                } else if (v.typeId() == QMetaType::Double) {
                    bulk->number(v.toDouble());
                } else {
                    const QByteArray utf8 = v.toString().toUtf8();
                    bulk->text(utf8.constData(), static_cast<int>(utf8.size()));
                }
            }
            rowid = bulk->endRow();
        } else {
            for (int pos = 0; pos < EntryPos::Count; ++pos)
                insert->bind(pos + 1, entries.value(pos));
            insert->run();
            rowid = target.lastInsertRowid();
        }
        sums.add(rowid, entries.integer(EntryPos::CycleNumber), entries.integer(EntryPos::SpeciesCode), number(EntryPos::TreesPerHa),
                 number(EntryPos::CurrentDiameter), number(EntryPos::TotalVolume), number(EntryPos::GrossMerchVolume),
                 number(EntryPos::MerchVolLessDWB));
    }
    if (bulk)
        bulk->finish();
    WriteCycleSums(target, run, sums.groups());

    Statement described(source, QStringLiteral("SELECT Run_Id, Run_Desc, run_parameters FROM Run WHERE Run_Id = ?1"));
    copyRows(described.bind(1, run.runId), target,
             QStringLiteral("INSERT OR IGNORE INTO Run (Run_Id, Run_Desc, run_parameters) VALUES (?, ?, ?)"), 3);
}

}  // namespace

QList<RunKey> CopyRuns(RunStore &from, RunStore &to, const QStringList &runIds)
{
    ReadSnapshot snapshot(from.DBEngine);
    const auto named = [&runIds](const QString &runId) {
        return runIds.isEmpty() || std::any_of(runIds.begin(), runIds.end(),
                                               [&runId](const QString &id) { return id.compare(runId, Qt::CaseInsensitive) == 0; });
    };
    QList<RunKey> runs;
    for (const RunRow &row : from.runs()) {
        if (named(row.key.runId))
            runs.append(row.key);
    }
    for (const QString &id : runIds) {
        if (std::none_of(runs.begin(), runs.end(), [&id](const RunKey &k) { return k.runId.compare(id, Qt::CaseInsensitive) == 0; })) {
            throw SendrelError(ErrNo::RunMissing, kSource,
                               QStringLiteral("There is no run %1 in %2.").arg(id, QDir::toNativeSeparators(from.DBEngine.PathToDB)));
        }
    }
    const QStringList columns = entryColumns(from.DBEngine);
    WriteTransaction transaction(to.DBEngine);
    for (const RunKey &run : runs) {
        if (to.runExists(run)) {
            throw SendrelError(ErrNo::FileAlreadyExists, kSource,
                               QStringLiteral("The run %1 is in %2 already: nothing was copied.")
                                   .arg(run.displayName(), QDir::toNativeSeparators(to.DBEngine.PathToDB)));
        }
    }
    for (const RunKey &run : runs)
        copyRun(from.DBEngine, to.DBEngine, run, columns);
    transaction.commit();
    return runs;
}

}  // namespace sendrel
