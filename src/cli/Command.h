#pragma once

#include "store/Run.h"

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QList>
#include <QString>
#include <QStringList>
#include <QTextStream>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace sendrel {

class ChartData;

enum CliExit { CliOk = 0, CliFailure = 1, CliUsage = 2 };

// What every command gets: the global options and the two streams.
struct CliContext {
    QString dbPath;  // --db, or the settings' DataDir + "tolv_game.mdb"
    std::optional<std::chrono::milliseconds> lockWait;  // --wait; else the settings' LockWaitSeconds
    std::optional<QString> units;  // --units: "metric" or "imperial"; else the settings' Units
    QTextStream &out;
    QTextStream &err;
};

// A usage error found while a command runs: told with the command's usage line, exit 2.
struct CliUsageFault {
    QString message;
};

// One command of the headless tool. A command declares its synopsis, its options and how many
// arguments it takes; the framework parses them with QCommandLineParser, answers --help and -h,
// refuses an option value that begins with "-" (but "-o -"), and runs it. Failures thrown as
// SendrelError are told on stderr with exit 1; CliUsageFault gives exit 2.
class Command {
public:
    virtual ~Command() = default;

    // The command's name and the rest of its synopsis ("RUN --kind S|H").
    virtual QString name() const = 0;
    virtual QString synopsis() const = 0;
    // One line for the tool's list of commands.
    virtual QString summary() const = 0;
    virtual QList<QCommandLineOption> options() const { return {}; }
    // How many arguments it takes besides its options.
    virtual int minArguments() const { return 0; }
    virtual int maxArguments() const { return 0; }

    // Runs with the options parsed; arguments are the command's own, behind its name.
    virtual int run(CliContext &ctx, const QCommandLineParser &parser, const QStringList &arguments) = 0;

    // "usage: sendrel-cli [--db PATH] NAME SYNOPSIS".
    QString usageLine() const;
    // The usage line, the summary and every option with its description.
    QString help() const;
};

// Parses and runs one command line of the tool (arguments without the program name).
int RunCli(const QStringList &arguments, QTextStream &out, QTextStream &err);

// Writes a chart to a .png, .svg or .pdf file (a PDF may hold several pages, one chart each).
// The tool's entry point supplies it, since drawing needs the windowing libraries that the
// command library keeps out; tests supply their own.
using ChartFileWriter = std::function<void(const QList<ChartData> &pages, const QString &path)>;
void SetChartFileWriter(ChartFileWriter writer);
const ChartFileWriter &CurrentChartFileWriter();

// Values shared by the commands, checked in one way with one wording.

// An option's value refused: "--NAME takes WHAT, not 'VALUE'" (-NAME for a one-letter option), the
// one wording for every refused value. A value that is missing or empty "needs" one instead.
CliUsageFault RefusedValue(const QString &option, const QString &what, const QString &value);

// --kind: standing, harvested, S or H, in any case.
RunKind KindOption(const QCommandLineParser &parser);
// "1,2,4": whole numbers separated by commas.
QList<qint64> NumberListOption(const QCommandLineParser &parser, const QString &name);
// One of the words given, as its index.
int ChoiceOption(const QCommandLineParser &parser, const QString &name, const QStringList &choices, int fallback);
// A Run Id as a user gives it to an option, without blanks at its ends: at most 25 characters, as
// the desktop's Run Id box takes.
QString RunIdArgument(const QString &text, const QString &option);

inline constexpr int kMostRunIdCharacters = 25;

// A Run Id as one line of output: backslash, tabs, line ends and other control characters are
// written as escapes ("\\", "\t", "\n", "\r", "\xNN"), so that one run is always one line.
QString EscapedForLine(const QString &text);

}  // namespace sendrel
