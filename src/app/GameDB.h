#pragma once

#include <QString>
#include <QtGlobal>

#include <functional>

namespace sendrel {

struct TreeModel;

// Opens the run database at tm.GameDBPath, asking for the file when it is missing (always
// with forceDialog). beforeLocate runs once the path has been copied and before the file is
// looked for: the desktop creates its frame there, whose load sets up the folders. A path that was
// empty before (no Data folder named at all) is taken as beforeLocate leaves it. A file chosen with
// forceDialog replaces a server database as the database of the next start.
// Failures: number 32755 "Canceled by the User", or "Cannot open the database." and the cause.
bool OpenGameDB(TreeModel &tm, bool forceDialog, const std::function<void()> &beforeLocate = {});

// Opens the server database that the connection text names in place of the run database that is
// open, asking for its password when libpq finds none (in ~/.pgpass or PGPASSWORD): a password in
// the text, or the one the user gives, is kept in memory only. The database that was open stays
// open until the new one has opened whole, its runs' tables and species read; false when the user
// cancelled the password, which keeps it too. The text, without a password, becomes the database
// of the next start. Failures: "Cannot open the database." and the cause.
bool OpenServerDatabase(TreeModel &tm, const QString &connection);

// A connection text without the password it may hold (as user:password@ or password=), which
// goes to password; else the text as it is.
QString WithoutPassword(const QString &connection, QString &password);

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
