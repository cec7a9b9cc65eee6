#pragma once

#include "store/DBEngine.h"
#include "store/Recordset.h"
#include "store/Run.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QVariant>

#include <functional>

#include <optional>
#include <vector>

namespace sendrel {

// A run as a run list shows it: the run and its description from the Run table ("" when none).
struct RunRow {
    RunKey key;
    QString description;
};

// What a file says of a run it was made from: its description from the Run table ("" when none)
// and when it was imported, as Model_Run keeps the date and the time (texts of the import).
struct RunInfo {
    RunKey key;
    QString description;
    QString importDate;
    QString importTime;
};

// One Model_Header row: a cycle of a run.
struct CycleRow {
    qint32 cycle = 0;
    qint32 year = 0;
};

// One tree record of a cycle as the stand and stock tables read it.
struct TreeRow {
    double speciesCode = 0;  // as stored; the caller rounds it to its integer type
    double diameter = 0;
    double totalVolume = 0;
    double treesPerHa = 0;
};

// One row of the Species table of the program's variant.
struct SpeciesInfo {
    qint32 numCode = 0;
    QString strCode;
    QString name;
};

// What compact() did: the bytes of the file and its write-ahead log before and after.
struct CompactResult {
    qint64 bytesBefore = 0;
    qint64 bytesAfter = 0;
};

// The run database as the program uses it: the engine, the species of the variant (read once and
// kept), and typed, bound statements for the runs, their cycles and their trees. Everything runs on the engine's one connection.
class RunStore {
public:
    clsDBEngine DBEngine;

    // The Species rows of the variant, and how many there are.
    Recordset SpeciesRS;
    qint32 NumSpecies = 0;

    // Opens the file and reads the species. Fails as the engine does.
    void open(const QString &path);
    // Closes the species' recordset and the engine; what never opened is skipped.
    void close();
    bool isOpen() const { return DBEngine.IsOpen(); }

    // Reads the Species rows of variant 2 into SpeciesRS and the species map.
    void readSpecies();
    // The Str_Code of a species number; "xx" when the variant has no such species.
    QString SpeciesStrCode(qint64 numCode) const;
    // The species of that number, or nullptr.
    const SpeciesInfo *species(qint64 numCode) const;
    const QList<SpeciesInfo> &speciesList() const { return m_species; }

    bool runExists(const RunKey &run);
    // Inside a write transaction: until it ends, no other import or delete settles this Run Id, so
    // that what a lookup found of it stays true. On a server, writers of other Run Ids go on.
    void holdRunId(const QString &runId) { DBEngine.holdKey(runId); }
    // The Run Id as stored (lookups ignore case), or "" when there is no such run.
    QString storedRunId(const RunKey &run);
    // The runs of the variant, or with onlyRunId only the runs of that Run Id that the Run table
    // knows, in the order of the database.
    QList<RunRow> runs(const std::optional<QString> &onlyRunId = std::nullopt);
    // The run with its description and import date and time; nothing when there is no such run.
    std::optional<RunInfo> runInfo(const RunKey &run);
    // The run_parameters of the Run row: nothing without a row, a null variant when it is null.
    std::optional<QVariant> runParameters(const QString &runId);

    // The Run Id as stored in Model_Run under either kind (lookups ignore case), or a null string.
    QString storedRunId(const QString &runId);
    // Writes the run's row of the Run table, adding it when there is none: the description and the
    // parameters that are given, each left as it was when not. One transaction.
    void describeRun(const QString &runId, const std::optional<QString> &description, const std::optional<QString> &parameters);

    // Removes one run as one unit: its kept sums and its rows of Model_Entries, Model_Header and
    // Model_Run go together or not at all. Inside a transaction of the caller (an overwrite) it is
    // part of that one; otherwise it is one of its own.
    void deleteRun(const RunKey &run);
    // A seam for tests: called ahead of each statement of a delete with the table's name; what it
    // throws stands for a failure of that statement.
    std::function<void(const QString &table)> beforeDeleteStatement;

    // Refuses a damaged file before a write, saying that nothing was written to it. The file is
    // read whole (every page) only when it is not as the last whole check, or this program's own
    // writes since, left it: a write by another program, a copy or a restore makes the next write
    // check it again; otherwise the check is one look at the file's state. Damage that comes
    // without a write to the file (the disk's) is met by SQLite when a page is read, and the
    // write that meets it is rolled back.
    void checkNotDamaged();

    // Gives the space of deleted runs back to the file system: the file is rewritten without its
    // free pages, then the write-ahead log is emptied. Holds the write lock while it works and
    // needs free disk space for a copy of what the file keeps.
    CompactResult compact();

    // The cycles of a run in the order of the table. Blanks at both ends of the Run Id are
    // not part of the lookup.
    QList<CycleRow> cycles(const RunKey &run);

    // The tree records of one cycle of a run, ordered by species code and diameter as an ORDER BY
    // orders them (NULL first), records of the same species and diameter in table order.
    std::vector<TreeRow> treesOfCycle(const RunKey &run, qint64 cycle);
    // Calls f(const TreeRow &) for each of them in that order.
    template <typename F>
    void forEachTree(const RunKey &run, qint64 cycle, F &&f);

private:
    // SQLite's hook after each commit to the log: the checkpoint, keeping the note of the last check.
    static int afterCommit(void *store, sqlite3 *handle, const char *database, int frames);
    // The file's state as the last whole check, or this program's writes since, left it ("" when unknown).
    QByteArray checkedState() const;
    void noteChecked(const QByteArray &state) const;
    // Runs f, which may copy the log into the file (a checkpoint), and keeps the note of the last
    // check when the file was as noted before it.
    template <typename F>
    void keepingCheck(F &&f);

    QList<SpeciesInfo> m_species;
    QHash<qint64, qsizetype> m_speciesIndex;
};

template <typename F>
void RunStore::forEachTree(const RunKey &run, qint64 cycle, F &&f)
{
    for (const TreeRow &row : treesOfCycle(run, cycle))
        f(row);
}

}  // namespace sendrel
