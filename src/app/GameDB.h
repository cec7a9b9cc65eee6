#pragma once

#include <QString>
#include <QtGlobal>

#include <functional>

namespace sendrel {

struct TreeModel;

// Opens the run database at tm.GameDBPath, asking for the file when it is missing (always
// with forceDialog). beforeLocate runs once the path has been copied and before the file is
// looked for: the desktop creates its frame there, whose load sets up the folders. A path that was
// empty before (no Data folder named at all) is taken as beforeLocate leaves it.
// Failures: number 32755 "Canceled by the User", or "Cannot open the database." and the cause.
bool OpenGameDB(TreeModel &tm, bool forceDialog, const std::function<void()> &beforeLocate = {});

// Reads the Species rows of variant 2; with none, tells the user and ends the process
// without saving settings.
void ReadSpecies(TreeModel &tm);

// Tells the user what the opening of the run database has to say, such as the rollback journal
// kept on a network file system: an information box on the desktop, a line on stderr headless.
void TellOpeningNote(TreeModel &tm);

// Closes the species' recordset and the engine; what never opened is skipped.
void CloseGameDB(TreeModel &tm);

inline const QString kGameDBFilter = QStringLiteral("Tolv Game Database (Tolv_Game.mdb)|Tolv_Game.mdb");

}  // namespace sendrel
