#pragma once

#include "store/DBEngine.h"
#include "store/Recordset.h"
#include "store/Run.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QVariant>

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
    double speciesCode = 0;   // as stored; the caller rounds it to its integer type
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

// The run database as the program uses it: the engine, the long-lived recordsets kept from the
// opening, the species of the variant (read once and kept), and typed, bound statements for the
// runs, their cycles and their trees. Everything runs on the engine's one connection.
class RunStore {
public:
    clsDBEngine DBEngine;

    // All of Model_Run as of the opening (the search for a free Run Id reads it), and two
    // recordsets kept for the process whose rows nothing reads: fetched only when first read.
    Recordset ModelRunRS;
    Recordset ModelEntriesRS;
    Recordset ModelHeaderRS;
    // The Species rows of the variant, and how many there are.
    Recordset SpeciesRS;
    qint32 NumSpecies = 0;

    // Opens the file and reads the long-lived recordsets and the species. Fails as the engine does.
    void open(const QString &path);
    // Closes the recordsets and the engine; what never opened is skipped.
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
    // The Run Id as stored (lookups ignore case), or "" when there is no such run.
    QString storedRunId(const RunKey &run);
    // The runs of the variant, or with onlyRunId only the runs of that Run Id that the Run table
    // knows, in the order of the database.
    QList<RunRow> runs(const std::optional<QString> &onlyRunId = std::nullopt);
    // The run with its description and import date and time; nothing when there is no such run.
    std::optional<RunInfo> runInfo(const RunKey &run);
    // The run_parameters of the Run row: nothing without a row, a null variant when it is null.
    std::optional<QVariant> runParameters(const QString &runId);

    // Removes the rows of one run: its kept sums, then Model_Entries, Model_Header and Model_Run,
    // in that order. Each statement stands alone: a caller wanting all or nothing opens a transaction.
    void deleteRun(const RunKey &run);

    // Reads every page of the file and fails when one is damaged, saying that nothing was written.
    // Called ahead of the first write of an import or a delete, so that a damaged file is not
    // made worse; it costs a read of the whole file.
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
    template <typename F> void forEachTree(const RunKey &run, qint64 cycle, F &&f);

private:
    QList<SpeciesInfo> m_species;
    QHash<qint64, qsizetype> m_speciesIndex;
};

template <typename F> void RunStore::forEachTree(const RunKey &run, qint64 cycle, F &&f)
{
    for (const TreeRow &row : treesOfCycle(run, cycle))
        f(row);
}

}  // namespace sendrel
