#pragma once

#include <QString>
#include <QStringList>

namespace sendrel {

class clsDBEngine;

// Every table of the run database in SQLite's dialect. The three import tables keep their
// columns in positional order, since rows are added by position. Text keys compare without
// regard to case (NOCASE), as the suite's database always did.
QStringList RunDatabaseSchema();

// The scratch report tables (Report_Header, Report_Detail, Stand_Levels_Report, Species2), part
// of RunDatabaseSchema as the suite's database has them.
QStringList ScratchReportTableSchema();
// The scratch report tables as tables of the connection's own temporary database, by the same
// names, which the file's tables stand behind: a report writes nothing into the file (so that a
// read-only one gives reports too), and no other program sees its rows. Made at each opening.
void MakeScratchReportTables(clsDBEngine &engine);

// The Species rows that the installation ships (variant 2).
struct SpeciesRow {
    int Num_Code;
    const char *Str_Code;
    const char *Name;
};
const QList<SpeciesRow> &InstalledSpecies();

// Creates a new run database file with every table and the installed Species rows.
// Fails when the file exists already.
void CreateRunDatabase(const QString &path);

inline const QString kGameDBFileName = QStringLiteral("tolv_game.mdb");

}  // namespace sendrel
