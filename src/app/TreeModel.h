#pragma once

#include "base/Settings.h"
#include "base/UserQuestions.h"
#include "store/RunStore.h"

#include <QString>

#include <functional>

namespace sendrel {

class SettingsStore;
class UserQuestions;

// What the process owns for its whole life: the run database with the species it keeps,
// the settings variables, how it was started. One instance, made by the entry point and handed
// to whoever needs it (no global, so tests make their own).
struct TreeModel {
    TreeModel(SettingsStore &settingsStore, UserQuestions &questions);

    SettingsStore &settingsStore;
    UserQuestions &questions;
    Settings settings;  // DataDir and WorkDir live here as settings.DataDir, settings.WorkDir
    RunStore db;
    clsDBEngine &DBEngine;  // the one engine, db's

    QString ProgramDir;  // the folder of the executable
    QString GameDBPath;

    qint16 ModelVariant = 0;
    QString CurrentRunId;
    bool RunOnCommandLine = false;
    DialogEnd DialogResult = DialogEnd::Cancel;

    // Ends the process at once. The desktop exits; tests record the call instead.
    std::function<void(int)> EndProcess;

    // The parent of the program's folder: where an installation keeps Data, Work and Help.
    QString InstallationFolder() const;
    // Where report files go: the Work folder, which the user can write (an installation is
    // never written to); the Data folder when no Work folder is set.
    QString ReportFolder() const;
};

// Thrown by EndProcess replacements in tests, so that "does not return" holds there too.
struct ProcessEnded {
    int code;
};

}  // namespace sendrel
