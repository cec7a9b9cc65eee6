#pragma once

#include "cli/Cli.h"

namespace sendrel {

struct TreeModel;

// "RUN --kind S|H", as years and delete take it. False after a usage message.
bool TakeRunAndKind(CliContext &ctx, const QString &usageLine, QString &runId, QString &kind, int &exitCode);

struct CliDatabaseSession;

// Opens the session's database and checks that it holds the run; false after telling why on stderr.
bool OpenSessionOnRun(CliDatabaseSession &session, const QString &runId, const QString &kind);

// True when Model_Run holds the run (Run Id and kind).
bool RunExists(TreeModel &tm, const QString &runId, const QString &kind);

// "There is no run <id>:<Standing|Harvested> in <db>."
QString NoSuchRunMessage(const CliContext &ctx, const QString &runId, const QString &kind);

}  // namespace sendrel
