#include "store/RunStore.h"

#include "base/SendrelError.h"
#include "store/CycleSums.h"
#include "store/EngineBackend.h"
#include "store/Schema.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>

#include <sqlite3.h>
#include <sys/stat.h>

namespace sendrel {

namespace {

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

// What tells the file's bytes apart from those of the last whole check: any write to the file, by
// any program, moves its change time; a copy or a restore is another inode.
QByteArray fileState(const QString &path)
{
    struct stat st {};
    if (::stat(QFile::encodeName(path).constData(), &st) != 0)
        return QByteArray();
    return QByteArray::number(static_cast<qulonglong>(st.st_dev)) + ' ' + QByteArray::number(static_cast<qulonglong>(st.st_ino)) + ' ' +
           QByteArray::number(static_cast<qlonglong>(st.st_size)) + ' ' + QByteArray::number(static_cast<qlonglong>(st.st_ctim.tv_sec)) +
           '.' + QByteArray::number(static_cast<qlonglong>(st.st_ctim.tv_nsec));
}

// The note beside the file: "tolv_game.mdb-checked".
QString checkNotePath(const QString &path)
{
    return path + QStringLiteral("-checked");
}

// SQLite's own threshold for copying the log into the file after a commit, in pages.
constexpr int kCheckpointFrames = 1000;

}  // namespace

QByteArray RunStore::checkedState() const
{
    QFile note(checkNotePath(DBEngine.PathToDB));
    if (!note.open(QIODevice::ReadOnly))
        return QByteArray();
    return note.readAll();
}

void RunStore::noteChecked(const QByteArray &state) const
{
    // Without the note the next write reads the file whole again: a note that cannot be written
    // costs time, never safety.
    if (state.isEmpty())
        return;
    QSaveFile note(checkNotePath(DBEngine.PathToDB));
    if (note.open(QIODevice::WriteOnly) && note.write(state) == state.size())
        note.commit();
}

template <typename F>
void RunStore::keepingCheck(F &&f)
{
    const QString path = DBEngine.PathToDB;
    const QByteArray before = path.isEmpty() ? QByteArray() : fileState(path);
    const bool asChecked = !before.isEmpty() && before == checkedState();
    f();
    if (asChecked) {
        const QByteArray after = fileState(path);
        if (after != before)
            noteChecked(after);
    }
}

int RunStore::afterCommit(void *store, sqlite3 *handle, const char *database, int frames)
{
    if (frames >= kCheckpointFrames) {
        // What the log holds was committed through SQLite: copying it into the file keeps the file
        // as whole as it was.
        static_cast<RunStore *>(store)->keepingCheck(
            [&] { sqlite3_wal_checkpoint_v2(handle, database, SQLITE_CHECKPOINT_PASSIVE, nullptr, nullptr); });
    }
    return SQLITE_OK;
}

void RunStore::open(const QString &path)
{
    close();
    DBEngine.PathToDB = path;
    DBEngine.OpenDB();
    MakeScratchReportTables(DBEngine);
    // A file without the run tables is no run database: refused here rather than at the first read.
    {
        Statement probe(DBEngine, QStringLiteral("SELECT 1 FROM Model_Run, Model_Header, Model_Entries"));
    }
    DBEngine.UseWriteAheadLog();
    if (sqlite3 *handle = DBEngine.backend().sqliteHandle())
        sqlite3_wal_hook(handle, &RunStore::afterCommit, this);
    readSpecies();
}

void RunStore::close()
{
    if (SpeciesRS.IsOpen())
        SpeciesRS.Close();
    // The last connection to close copies the log into the file.
    if (DBEngine.IsOpen())
        keepingCheck([this] { DBEngine.CloseDB(); });
    else
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
    const QString select = QStringLiteral("SELECT Model_Run.Run_Id, Model_Run.Standing_Harvested, Run.Run_Desc "
                                          "FROM Model_Run LEFT JOIN Run ON Model_Run.Run_Id = Run.Run_Id");
    // The order of the table, which a server keeps only when asked.
    const QString order = QStringLiteral(" ORDER BY Model_Run.rowid");
    Statement list(DBEngine, onlyRunId ? select + QStringLiteral(" WHERE Run.Run_ID = ?1") + order
                                       : select + QStringLiteral(" WHERE Variant_ID = 2") + order);
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

std::optional<RunInfo> RunStore::runInfo(const RunKey &run)
{
    Statement lookup(DBEngine, QStringLiteral("SELECT Model_Run.Run_Id, Model_Run.Run_Date, Model_Run.Run_Time, Run.Run_Desc "
                                              "FROM Model_Run LEFT JOIN Run ON Model_Run.Run_Id = Run.Run_Id "
                                              "WHERE Model_Run.Run_Id = ?1 AND Model_Run.Standing_Harvested = ?2"));
    lookup.bind(1, run.runId).bind(2, run.letter());
    if (!lookup.next())
        return std::nullopt;
    RunInfo info{{lookup.text(0), run.kind}, lookup.text(3), lookup.text(1), lookup.text(2)};
    lookup.reset();
    return info;
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

QString RunStore::storedRunId(const QString &runId)
{
    Statement lookup(DBEngine, QStringLiteral("SELECT Run_Id FROM Model_Run WHERE Run_Id = ?1 LIMIT 1"));
    lookup.bind(1, runId);
    if (!lookup.next())
        return QString();
    const QString stored = lookup.text(0);
    lookup.reset();
    return stored.isNull() ? QStringLiteral("") : stored;
}

void RunStore::describeRun(const QString &runId, const std::optional<QString> &description, const std::optional<QString> &parameters)
{
    WriteTransaction transaction(DBEngine);
    Statement(DBEngine, QStringLiteral("INSERT OR IGNORE INTO Run (Run_Id) VALUES (?1)")).bind(1, runId).run();
    if (description)
        Statement(DBEngine, QStringLiteral("UPDATE Run SET Run_Desc = ?1 WHERE Run_Id = ?2")).bind(1, *description).bind(2, runId).run();
    if (parameters)
        Statement(DBEngine, QStringLiteral("UPDATE Run SET run_parameters = ?1 WHERE Run_Id = ?2"))
            .bind(1, *parameters)
            .bind(2, runId)
            .run();
    transaction.commit();
}

void RunStore::deleteRun(const RunKey &run)
{
    std::optional<WriteTransaction> own;
    if (!DBEngine.InTransaction())
        own.emplace(DBEngine);
    holdRunId(run.runId);
    for (const char *table : {"Model_Cycle_Sums", "Model_Entries", "Model_Header", "Model_Run"}) {
        const QString name = QLatin1String(table);
        if (beforeDeleteStatement)
            beforeDeleteStatement(name);
        if (name == QLatin1String("Model_Cycle_Sums")) {
            DeleteCycleSums(DBEngine, run);
            continue;
        }
        Statement remove(DBEngine, QStringLiteral("DELETE FROM %1 WHERE Run_Id = ?1 AND Standing_Harvested = ?2").arg(name));
        remove.bind(1, run.runId).bind(2, run.letter()).run();
    }
    if (own)
        own->commit();
}

void RunStore::checkNotDamaged()
{
    const QByteArray state = fileState(DBEngine.PathToDB);
    if (!state.isEmpty() && state == checkedState())
        return;
    const QString nothingWritten = QStringLiteral(" Nothing was written to it.");
    QString problem;
    try {
        problem = DBEngine.backend().quickCheck();
    } catch (const SendrelError &e) {
        throw e.withDescription(e.description() + nothingWritten);
    }
    if (problem != QLatin1String("ok")) {
        throw SendrelError(
            ErrNo::DatabaseFailure, QStringLiteral("SQLite"),
            QStringLiteral("The run database %1 is damaged (%2).").arg(QDir::toNativeSeparators(DBEngine.PathToDB), problem) +
                nothingWritten);
    }
    noteChecked(state);
}

CompactResult RunStore::compact()
{
    EngineBackend &engine = DBEngine.backend();
    CompactResult result;
    result.bytesBefore = engine.bytes();
    keepingCheck([&engine] { engine.compact(); });
    result.bytesAfter = engine.bytes();
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
