#pragma once

#include "cli/Cli.h"

namespace sendrel {

struct TreeModel;

// "RUN --kind S|H", as years and delete take it. False after a usage message.
bool TakeRunAndKind(CliContext &ctx, const QString &usageLine, QString &runId, QString &kind, int &exitCode);

// True when Model_Run holds the run (Run Id and kind).
bool RunExists(TreeModel &tm, const QString &runId, const QString &kind);

// "There is no run <id>:<Standing|Harvested> in <db>."
QString NoSuchRunMessage(const CliContext &ctx, const QString &runId, const QString &kind);

}  // namespace sendrel
