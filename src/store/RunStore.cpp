#include "store/RunStore.h"

#include "base/SendrelError.h"
#include "store/CycleSums.h"
#include "store/Schema.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace sendrel {

namespace {

// A recordset that is kept for the process but read by nothing: the statement is checked now,
// its rows are fetched only if someone reads them, so a large run does not slow the start.
Recordset deferredRecordset(clsDBEngine &engine, const QString &sql)
{
    { Statement check(engine, sql); }
    clsDBEngine *e = &engine;
    return Recordset::deferred([e, sql](QStringList &names, QVector<Recordset::Row> &rows) {
        e->SQLString = sql;
        Recordset full = e->RetreiveRecords();
        for (int i = 0; i < full.FieldCount(); ++i)
            names.append(full.FieldName(i));
        for (full.MoveFirst(); !full.Eof(); full.MoveNext()) {
            Recordset::Row row(names.size());
            for (int i = 0; i < names.size(); ++i)
                row[i] = full.Fields(i);
            rows.append(row);
        }
    });
}

QString trimBlanks(const QString &text)
{
    qsizetype first = 0;
    while (first < text.size() && text.at(first) == QLatin1Char(' '))
        ++first;
    qsizetype last = text.size();
    while (last > first && text.at(last - 1) == QLatin1Char(' '))
        --last;
    return text.mid(first, last - first);
}

}  // namespace

void RunStore::open(const QString &path)
{
    close();
    DBEngine.PathToDB = path;
    DBEngine.OpenDB();
    MakeScratchReportTables(DBEngine);
    DBEngine.SQLString = QStringLiteral("Select * from Model_Run  WHERE 0=0");
    ModelRunRS = DBEngine.RetreiveRecords();
    DBEngine.UseWriteAheadLog();
    ModelEntriesRS = deferredRecordset(DBEngine, QStringLiteral("Select * from Model_Entries WHERE 0=0"));
    ModelHeaderRS = deferredRecordset(DBEngine, QStringLiteral("Select * from Model_Header"));
    readSpecies();
}

void RunStore::close()
{
    for (Recordset *rs : {&ModelRunRS, &ModelHeaderRS, &ModelEntriesRS, &SpeciesRS}) {
        if (rs->IsOpen())
            rs->Close();
    }
    DBEngine.CloseDB();
}

void RunStore::readSpecies()
{
    DBEngine.SQLString = QStringLiteral("Select * from Species where Variant_ID=2");
    SpeciesRS = DBEngine.RetreiveRecords();
    m_species.clear();
    m_speciesIndex.clear();
    for (SpeciesRS.MoveFirst(); !SpeciesRS.Eof(); SpeciesRS.MoveNext()) {
        SpeciesInfo s;
        s.numCode = SpeciesRS.Fields(QStringLiteral("Num_Code")).toInt();
        s.strCode = SpeciesRS.Fields(QStringLiteral("Str_Code")).toString();
        s.name = SpeciesRS.Fields(QStringLiteral("Name")).toString();
        if (!m_speciesIndex.contains(s.numCode))
            m_speciesIndex.insert(s.numCode, m_species.size());
        m_species.append(s);
    }
    SpeciesRS.MoveFirst();
    NumSpecies = SpeciesRS.RecordCount();
}

QString RunStore::SpeciesStrCode(qint64 numCode) const
{
    const SpeciesInfo *s = species(numCode);
    return s ? s->strCode : QStringLiteral("xx");
}

const SpeciesInfo *RunStore::species(qint64 numCode) const
{
    const auto found = m_speciesIndex.constFind(numCode);
    return found == m_speciesIndex.constEnd() ? nullptr : &m_species.at(*found);
}

bool RunStore::runExists(const RunKey &run)
{
    return !storedRunId(run).isNull();
}

QString RunStore::storedRunId(const RunKey &run)
{
    Statement lookup(DBEngine, QStringLiteral("SELECT Run_Id FROM Model_Run WHERE Run_Id = ?1 AND Standing_Harvested = ?2"));
    lookup.bind(1, run.runId).bind(2, run.letter());
    if (!lookup.next())
        return QString();
    const QString stored = lookup.text(0);
    lookup.reset();
    return stored.isNull() ? QStringLiteral("") : stored;
}

QList<RunRow> RunStore::runs(const std::optional<QString> &onlyRunId)
{
    const QString select = QStringLiteral(
        "SELECT Model_Run.Run_Id, Model_Run.Standing_Harvested, Run.Run_Desc "
        "FROM Model_Run LEFT JOIN Run ON Model_Run.Run_Id = Run.Run_Id");
    Statement list(DBEngine, onlyRunId ? select + QStringLiteral(" WHERE Run.Run_ID = ?1") : select + QStringLiteral(" WHERE Variant_ID = 2"));
    if (onlyRunId)
        list.bind(1, *onlyRunId);
    QList<RunRow> rows;
    while (list.next()) {
        RunRow row;
        row.key.runId = list.text(0);
        // Anything but "S" lists as harvested.
        row.key.kind = list.text(1) == QLatin1String("S") ? RunKind::Standing : RunKind::Harvested;
        row.description = list.text(2);
        rows.append(row);
    }
    return rows;
}

std::optional<QVariant> RunStore::runParameters(const QString &runId)
{
    Statement lookup(DBEngine, QStringLiteral("SELECT run_parameters FROM Run WHERE Run_Id = ?1"));
    lookup.bind(1, runId);
    if (!lookup.next())
        return std::nullopt;
    const QVariant value = lookup.value(0);
    lookup.reset();
    return value;
}

void RunStore::deleteRun(const RunKey &run)
{
    DeleteCycleSums(DBEngine, run);
    for (const char *table : {"Model_Entries", "Model_Header", "Model_Run"}) {
        Statement remove(DBEngine, QStringLiteral("DELETE FROM %1 WHERE Run_Id = ?1 AND Standing_Harvested = ?2").arg(QLatin1String(table)));
        remove.bind(1, run.runId).bind(2, run.letter()).run();
    }
}

void RunStore::checkNotDamaged()
{
    const QString nothingWritten = QStringLiteral(" Nothing was written to it.");
    QString problem;
    try {
        Statement check(DBEngine, QStringLiteral("PRAGMA quick_check(1)"));
        if (check.next())
            problem = check.text(0);
        check.reset();
    } catch (const SendrelError &e) {
        throw e.withDescription(e.description() + nothingWritten);
    }
    if (problem != QLatin1String("ok")) {
        throw SendrelError(ErrNo::DatabaseFailure, QStringLiteral("SQLite"),
                           QStringLiteral("The run database %1 is damaged (%2).").arg(QDir::toNativeSeparators(DBEngine.PathToDB), problem)
                               + nothingWritten);
    }
}

CompactResult RunStore::compact()
{
    const QString path = DBEngine.PathToDB;
    const auto bytes = [&path] { return QFileInfo(path).size() + QFileInfo(path + QStringLiteral("-wal")).size(); };
    CompactResult result;
    result.bytesBefore = bytes();
    Statement(DBEngine, QStringLiteral("VACUUM")).run();
    // The rewritten pages went through the log; a reader of another program may keep it from
    // being emptied now, and then it is emptied at a later checkpoint.
    Statement(DBEngine, QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE)")).run();
    result.bytesAfter = bytes();
    return result;
}

QList<CycleRow> RunStore::cycles(const RunKey &run)
{
    Statement list(DBEngine, QStringLiteral("SELECT Cycle, Cycle_Year FROM Model_Header "
                                            "WHERE Run_Id = ?1 AND Standing_Harvested = ?2 ORDER BY rowid"));
    list.bind(1, trimBlanks(run.runId)).bind(2, run.letter());
    QList<CycleRow> rows;
    while (list.next())
        rows.append({static_cast<qint32>(list.integer(0)), static_cast<qint32>(list.integer(1))});
    return rows;
}

std::vector<TreeRow> RunStore::treesOfCycle(const RunKey &run, qint64 cycle)
{
    // Read in the index's order and sorted here: SQLite's sorter took two thirds of the time of a
    // stand table's cycle. A stable sort keeps records alike in species and diameter in table order.
    Statement trees(DBEngine, QStringLiteral("SELECT Species_Code, Current_Diameter, Total_Volume, Trees_per_ha, "
                                             "Species_Code IS NULL, Current_Diameter IS NULL "
                                             "FROM Model_Entries WHERE Run_Id = ?1 AND Standing_Harvested = ?2 AND Cycle_Number = ?3"));
    trees.bind(1, run.runId).bind(2, run.letter()).bind(3, cycle);
    struct Keyed {
        bool speciesNull;
        bool diameterNull;
        TreeRow row;
    };
    std::vector<Keyed> keyed;
    while (trees.next())
        keyed.push_back({trees.integer(4) != 0, trees.integer(5) != 0, {trees.real(0), trees.real(1), trees.real(2), trees.real(3)}});
    std::stable_sort(keyed.begin(), keyed.end(), [](const Keyed &a, const Keyed &b) {
        if (a.speciesNull != b.speciesNull)
            return a.speciesNull;
        if (a.row.speciesCode != b.row.speciesCode)
            return a.row.speciesCode < b.row.speciesCode;
        if (a.diameterNull != b.diameterNull)
            return a.diameterNull;
        return a.row.diameter < b.row.diameter;
    });
    std::vector<TreeRow> rows;
    rows.reserve(keyed.size());
    for (const Keyed &k : keyed)
        rows.push_back(k.row);
    return rows;
}

}  // namespace sendrel
