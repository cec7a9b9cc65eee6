#pragma once

#include "app/TreeModel.h"
#include "base/SettingsStore.h"
#include "cli/CliQuestions.h"
#include "cli/Command.h"
#include "domain/output/ChartData.h"
#include "domain/units/Units.h"

#include <memory>
#include <vector>

namespace sendrel {

// Every command of the tool, in the order its help lists them.
std::vector<std::unique_ptr<Command>> AllCommands();

// The process state for a command that works on the run database of --db: the settings as the
// desktop reads them, answers from the flags, and the database opened as the desktop opens it
// but never asking for a file and never writing the settings store. An end of the process that
// the desktop would take becomes a failure of the command.
class CliSession {
public:
    explicit CliSession(CliContext &ctx);
    ~CliSession();

    // Opens --db; fails with one wording when there is no such file or it is no run database.
    void open();
    // The run as stored (lookups ignore case, blanks at the ends of the Id are not part of it);
    // fails with one wording when there is none.
    RunKey requireRun(const QString &runId, RunKind kind);
    // The same for a Run Id of either kind: the Id as stored.
    QString requireRunId(const QString &runId);
    // The units of --units, else the settings'.
    UnitSystem units() const;

    CliContext &ctx;
    SettingsStore settingsStore;
    CliQuestions questions;
    TreeModel tm;
};

// The comparison charts of `chart compare` (arguments: "compare" and the runs).
int RunCompareChart(CliContext &ctx, const QCommandLineParser &parser, const QStringList &args, const QString &output);

// Writes the charts of the selected years: a PDF holds them all, one page each; PNG and SVG
// get one file per year, NAME-YEAR.png, unless there is only one.
void WriteChartFiles(const QList<ChartData> &pages, const QStringList &years, const QString &output);

// The commands, each in its own file.
std::unique_ptr<Command> MakeInitCommand();
std::unique_ptr<Command> MakeImportCommand();
std::unique_ptr<Command> MakeRunsCommand();
std::unique_ptr<Command> MakeYearsCommand();
std::unique_ptr<Command> MakeDeleteCommand();
std::unique_ptr<Command> MakeDescribeCommand();
std::unique_ptr<Command> MakeReportCommand();
std::unique_ptr<Command> MakeChartCommand();
std::unique_ptr<Command> MakeSummaryCommand();
std::unique_ptr<Command> MakeCompareCommand();
std::unique_ptr<Command> MakeCompactCommand();
std::unique_ptr<Command> MakeCopyCommand();
std::unique_ptr<Command> MakeBackupCommand();
std::unique_ptr<Command> MakeRestoreCommand();
std::unique_ptr<Command> MakeGenerateSampleCommand();
std::unique_ptr<Command> MakeSetupFoldersCommand();

}  // namespace sendrel
