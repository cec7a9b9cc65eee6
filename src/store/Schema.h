#pragma once

#include <QString>
#include <QStringList>

namespace sendrel {

// Every table of the run database in SQLite's dialect. The three import tables keep their
// columns in positional order, since rows are added by position. Text keys compare without
// regard to case (NOCASE), as the suite's database always did.
QStringList RunDatabaseSchema();

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
