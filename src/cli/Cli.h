#pragma once

#include <QString>
#include <QStringList>
#include <QTextStream>

#include <functional>

namespace sendrel {

class ChartData;

// The headless tool. Exit status: 0 success, 1 failure (message on err), 2 usage error.
struct CliContext {
    QString dbPath;          // --db, or the settings' DataDir + "tolv_game.mdb"
    QStringList args;        // the command's own arguments, behind its name
    QTextStream &out;
    QTextStream &err;
};

enum CliExit { CliOk = 0, CliFailure = 1, CliUsage = 2 };

// Runs one command line (arguments without the program name).
int RunCli(const QStringList &arguments, QTextStream &out, QTextStream &err);

// Prints "usage: ..." for the command (or the whole tool) and gives CliUsage.
int CliUsageError(CliContext &ctx, const QString &message);

// A command's own usage error: the message and "usage: sendrel-cli [--db PATH] " + usage.
int CliCommandUsage(CliContext &ctx, const QString &usage, const QString &message);
// A failure told on stderr; gives CliFailure.
int CliFailureMessage(CliContext &ctx, const QString &message);

// What must be left of a command's arguments once its options are taken: no unknown option, one
// run, and a kind of S or H (in either case). Sets runId and sorH; gives the fault, or "".
QString CheckRunAndKind(const QStringList &args, const QString &command, const QString &kind, bool hasKind,
                        QString &runId, QString &sorH);

// Pulls "--name value" out of args; false with a usage message when the value is missing.
bool TakeOption(QStringList &args, const QString &name, QString &value, bool &present);

// Commands, one file each.
int CliInit(CliContext &ctx);
int CliImport(CliContext &ctx);
int CliRuns(CliContext &ctx);
int CliYears(CliContext &ctx);
int CliDelete(CliContext &ctx);
int CliDescribe(CliContext &ctx);
int CliGenerateSample(CliContext &ctx);
int CliRegisterInstallation(CliContext &ctx);   // developer extra: what an installer sets   // developer extra: sample tree lists
int CliChart(CliContext &ctx);
int CliReport(CliContext &ctx);

// Writes a chart to a .png, .svg or .pdf file. The tool's entry point supplies it, since drawing
// needs the windowing libraries that the command library keeps out; tests supply their own.
using ChartFileWriter = std::function<void(const ChartData &chart, const QString &path)>;
void SetChartFileWriter(ChartFileWriter writer);

}  // namespace sendrel
