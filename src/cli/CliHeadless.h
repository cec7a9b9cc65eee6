#pragma once

#include "standstock/ClassLayout.h"

#include <QString>
#include <QStringList>

namespace sendrel {

struct Settings;
struct TreeModel;
class ScriptedQuestions;

// The desktop's state for a command with nobody to ask: settings loaded, the program's folder
// known, and an end of the process turned into a failure of the command that carries the last
// message the user would have been told.
void PrepareHeadlessModel(TreeModel &tm, ScriptedQuestions &questions);

// Opens the run database at dbPath and reads the species, as a start does, without any dialog.
void OpenHeadlessDatabase(TreeModel &tm, const QString &dbPath);

// The class layout of --classes START,WIDTH,COUNT, else of the settings, taken as the window takes
// its boxes; a layout the window refuses is refused (check.passed() false).
ClassEntryCheck LayoutFromFlagsOrSettings(ClassLayout &layout, bool hasClasses, const QStringList &classes,
                                          const Settings &settings);

// The Run Id as stored (the lookup ignores case), or "" when the run of that kind is not there.
QString StoredRunId(TreeModel &tm, const QString &runId, const QString &sorH);

}  // namespace sendrel
