#pragma once

#include "app/SettingsStore.h"
#include "app/TreeModel.h"
#include "cli/Cli.h"
#include "cli/CliQuestions.h"

namespace sendrel {

// What a command of the headless tool works with: the process state over the run database of
// --db, opened as the desktop opens it (engine, Model_Run recordset), but never asking for a file
// and never writing the settings store.
struct CliDatabaseSession {
    explicit CliDatabaseSession(CliContext &ctx);
    ~CliDatabaseSession();

    // Opens ctx.dbPath; fails (SendrelError) when it is not there or not a run database.
    void open();

    CliContext &ctx;
    SettingsStore store;
    CliQuestions questions;
    TreeModel tm;
};

// "S" or "H" from standing|harvested|S|H (any case); "" for anything else.
QString CliKind(const QString &text);

}  // namespace sendrel
