#pragma once

#include "app/Settings.h"
#include "store/DBEngine.h"
#include "store/Recordset.h"

#include <QString>

#include <functional>

namespace sendrel {

class SettingsStore;
class UserQuestions;

// What the process owns for its whole life: the engine, the long-lived recordsets, the
// settings variables, how it was started. One instance, made by the entry point and handed
// to whoever needs it (no global, so tests make their own).
struct TreeModel {
    TreeModel(SettingsStore &store, UserQuestions &questions);

    SettingsStore &store;
    UserQuestions &questions;
    Settings settings;          // DataDir and WorkDir live here as settings.DataDir, settings.WorkDir
    clsDBEngine DBEngine;

    QString ProgramDir;         // the folder of the executable
    QString GameDBPath;
    Recordset ModelRunRS;
    Recordset ModelEntriesRS;
    Recordset ModelHeaderRS;
    Recordset SpeciesRS;
    qint32 NumSpecies = 0;

    qint16 ModelVariant = 0;
    QString CurrentRunId;
    bool RunOnCommandLine = false;
    QString DialogResult;

    // Ends the process at once. The desktop exits; tests record the call instead.
    std::function<void(int)> EndProcess;

    // The parent of the program's folder: where an installation keeps Data, Work and Help.
    QString InstallationFolder() const;
};

// Thrown by EndProcess replacements in tests, so that "does not return" holds there too.
struct ProcessEnded {
    int code;
};

}  // namespace sendrel
