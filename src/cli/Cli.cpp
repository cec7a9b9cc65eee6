#include "cli/Command.h"

#include "base/SendrelError.h"
#include "base/Settings.h"
#include "base/SettingsStore.h"
#include "cli/Commands.h"
#include "store/DBEngine.h"
#include "store/Schema.h"

#include <QDir>
#include <QRegularExpression>

namespace sendrel {

namespace {

const QString kTool = QStringLiteral("sendrel-cli");

QCommandLineOption helpOption()
{
    return QCommandLineOption({QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Shows this help."));
}

QString toolUsage()
{
    return QStringLiteral("usage: sendrel-cli [--db PATH] [--wait SECONDS] [--units metric|imperial] <command> [arguments]");
}

QString toolHelp(const std::vector<std::unique_ptr<Command>> &commands)
{
    QString text = toolUsage() +
                   QStringLiteral("\n\nThe headless tool of Sendrel: it never opens a window and never asks; "
                                  "where the desktop program would ask, a flag answers.\n\nGlobal options:\n"
                                  "  --db PATH        the run database (default: the Data folder of the settings)\n"
                                  "  --wait SECONDS   how long to wait for a database another program is writing (default 10)\n"
                                  "  --units metric|imperial\n"
                                  "                   units of the summary, the comparison (tables and charts) and of csv, xlsx and json "
                                  "tables (default: the settings', metric); report files are always metric\n"
                                  "  -h, --help       this help; after a command, that command's help\n\nCommands:\n");
    for (const auto &c : commands)
        text += QStringLiteral("  %1%2\n").arg(c->name().leftJustified(22), c->summary());
    text += QStringLiteral("\nExit status: 0 success, 1 failure (told on stderr), 2 usage error.\n");
    return text;
}

int usageError(CliContext &ctx, const QString &message, const QString &usage)
{
    ctx.err << kTool << ": " << message << "\n" << usage << "\n";
    ctx.err.flush();
    return CliUsage;
}

// The values given joined to their option ("--run-id=-x"): nothing else can be meant, so such a
// value may look like an option.
QStringList joinedValues(const QStringList &arguments)
{
    QStringList values;
    for (const QString &argument : arguments) {
        const qsizetype eq = argument.indexOf(QLatin1Char('='));
        if (argument.startsWith(QLatin1Char('-')) && eq > 1)
            values.append(argument.mid(eq + 1));
    }
    return values;
}

// A value that is an option name ("--help", "-o") is the next option, its own value missing before
// it. A negative number ("-0.5,5,10") and "-" (the standard output of -o) are values.
bool looksLikeOptionName(const QString &value)
{
    static const QRegularExpression name(QStringLiteral("^--?[A-Za-z]"));
    return name.match(value).hasMatch();
}

QString valueFault(const QCommandLineParser &parser, const QList<QCommandLineOption> &options, const QStringList &arguments)
{
    const QStringList joined = joinedValues(arguments);
    for (const QCommandLineOption &option : options) {
        if (option.valueName().isEmpty())
            continue;
        const QString name = option.names().constLast();
        if (!parser.isSet(name))
            continue;
        for (const QString &value : parser.values(name)) {
            if (looksLikeOptionName(value) && !joined.contains(value))
                return QStringLiteral("%1%2 needs a value, not '%3'")
                    .arg(name.size() == 1 ? QStringLiteral("-") : QStringLiteral("--"), name, value);
        }
        if (parser.values(name).size() > 1)
            return QStringLiteral("%1%2 is given more than once").arg(name.size() == 1 ? QStringLiteral("-") : QStringLiteral("--"), name);
    }
    return QString();
}

QString defaultDbPath()
{
    SettingsStore store;
    const QString dataDir = store.GetSetting(kSectionCommon, QStringLiteral("DataDir"));
    if (dataDir.isEmpty())
        return QString();
    return QDir(QDir::fromNativeSeparators(dataDir)).filePath(kGameDBFileName);
}

}  // namespace

QString Command::usageLine() const
{
    return QStringLiteral("usage: sendrel-cli [--db PATH] ") + name() + QLatin1Char(' ') + synopsis();
}

QString Command::help() const
{
    QString text = usageLine() + QStringLiteral("\n\n") + summary() + QLatin1Char('\n');
    const QList<QCommandLineOption> opts = options();
    if (!opts.isEmpty())
        text += QStringLiteral("\nOptions:\n");
    for (const QCommandLineOption &o : opts) {
        QStringList names;
        for (const QString &n : o.names())
            names.append((n.size() == 1 ? QStringLiteral("-") : QStringLiteral("--")) + n);
        QString head = names.join(QStringLiteral(", "));
        if (!o.valueName().isEmpty())
            head += QLatin1Char(' ') + o.valueName();
        text += QStringLiteral("  %1  %2\n").arg(head.leftJustified(30), o.description());
    }
    text += QStringLiteral("  %1  %2\n").arg(QStringLiteral("-h, --help").leftJustified(30), QStringLiteral("Shows this help."));
    return text;
}

int RunCli(const QStringList &arguments, QTextStream &out, QTextStream &err)
{
    CliContext ctx{QString(), std::nullopt, std::nullopt, out, err};
    const std::vector<std::unique_ptr<Command>> commands = AllCommands();

    // The global options stand ahead of the command; everything from the command on is its own.
    QCommandLineParser global;
    global.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
    const QCommandLineOption db(QStringLiteral("db"), QStringLiteral("The run database."), QStringLiteral("PATH"));
    const QCommandLineOption wait(QStringLiteral("wait"), QStringLiteral("Seconds to wait for a locked database."),
                                  QStringLiteral("SECONDS"));
    const QCommandLineOption units(QStringLiteral("units"), QStringLiteral("Units of summaries and tables."), QStringLiteral("UNITS"));
    global.addOptions({db, wait, units, helpOption()});
    if (!global.parse(QStringList{kTool} + arguments))
        return usageError(ctx, global.errorText(), toolUsage());
    if (const QString fault = valueFault(global, {db, wait, units}, arguments); !fault.isEmpty())
        return usageError(ctx, fault, toolUsage());
    const QStringList rest = global.positionalArguments();
    if (rest.isEmpty()) {
        if (!global.isSet(QStringLiteral("help")))
            return usageError(ctx, QStringLiteral("no command given"), toolUsage());
        out << toolHelp(commands);
        out.flush();
        return CliOk;
    }
    if (global.isSet(wait)) {
        static const QRegularExpression seconds(QStringLiteral("^[0-9]{1,5}(\\.[0-9]+)?$"));
        if (!seconds.match(global.value(wait)).hasMatch())
            return usageError(ctx, RefusedValue(QStringLiteral("wait"), QStringLiteral("a number of seconds"), global.value(wait)).message,
                              toolUsage());
        ctx.lockWait = std::chrono::milliseconds(static_cast<qint64>(global.value(wait).toDouble() * 1000));
    }

    if (global.isSet(units)) {
        const QString value = global.value(units);
        if (value != QLatin1String("metric") && value != QLatin1String("imperial"))
            return usageError(ctx, RefusedValue(QStringLiteral("units"), QStringLiteral("metric or imperial"), value).message, toolUsage());
        ctx.units = value;
    }

    const QString name = rest.first();
    Command *command = nullptr;
    for (const auto &c : commands) {
        if (c->name() == name)
            command = c.get();
    }
    if (!command)
        return usageError(ctx, QStringLiteral("unknown command '%1'").arg(name), toolUsage());

    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    const QList<QCommandLineOption> options = command->options();
    parser.addOptions(options);
    parser.addOption(helpOption());
    if (!parser.parse(QStringList{kTool} + rest.mid(1)))
        return usageError(ctx, parser.errorText(), command->usageLine());
    if (parser.isSet(QStringLiteral("help")) || global.isSet(QStringLiteral("help"))) {
        out << command->help();
        out.flush();
        return CliOk;
    }
    if (const QString fault = valueFault(parser, options, rest.mid(1)); !fault.isEmpty())
        return usageError(ctx, fault, command->usageLine());
    const QStringList args = parser.positionalArguments();
    if (args.size() < command->minArguments() || args.size() > command->maxArguments()) {
        const QString problem = args.size() < command->minArguments()
                                    ? QStringLiteral("%1 lacks an argument").arg(name)
                                    : QStringLiteral("unexpected argument '%1'").arg(args.at(command->maxArguments()));
        return usageError(ctx, problem, command->usageLine());
    }

    if (global.isSet(db)) {
        ctx.dbPath = global.value(db);
    } else {
        ctx.dbPath = defaultDbPath();
    }
    try {
        const int code = command->run(ctx, parser, args);
        out.flush();
        err.flush();
        return code;
    } catch (const CliUsageFault &fault) {
        out.flush();
        return usageError(ctx, fault.message, command->usageLine());
    } catch (const SendrelError &e) {
        out.flush();
        err << kTool << ": " << e.description() << "\n";
        err.flush();
        return CliFailure;
    }
}

CliUsageFault RefusedValue(const QString &option, const QString &what, const QString &value)
{
    // Escaped, so that a value with a line end in it still makes one line of stderr.
    return CliUsageFault{QStringLiteral("%1%2 takes %3, not '%4'")
                             .arg(option.size() == 1 ? QStringLiteral("-") : QStringLiteral("--"), option, what, EscapedForLine(value))};
}

RunKind KindOption(const QCommandLineParser &parser)
{
    if (!parser.isSet(QStringLiteral("kind")))
        throw CliUsageFault{QStringLiteral("--kind is required")};
    const QString text = parser.value(QStringLiteral("kind"));
    const std::optional<RunKind> kind = ParseKind(text);
    if (!kind)
        throw RefusedValue(QStringLiteral("kind"), QStringLiteral("standing, harvested, S or H"), text);
    return *kind;
}

QList<qint64> NumberListOption(const QCommandLineParser &parser, const QString &name)
{
    static const QRegularExpression wholeNumber(QStringLiteral("^-?[0-9]{1,9}$"));
    QList<qint64> numbers;
    const QString text = parser.value(name);
    for (const QString &part : text.split(QLatin1Char(','))) {
        const QString p = part.trimmed();
        if (!wholeNumber.match(p).hasMatch())
            throw RefusedValue(name, QStringLiteral("whole numbers separated by commas"), text);
        numbers.append(p.toLongLong());
    }
    return numbers;
}

int ChoiceOption(const QCommandLineParser &parser, const QString &name, const QStringList &choices, int fallback)
{
    if (!parser.isSet(name))
        return fallback;
    const QString text = parser.value(name);
    const qsizetype at = choices.indexOf(text.toLower());
    if (at < 0)
        throw RefusedValue(name, choices.join(QStringLiteral(", ")), text);
    return static_cast<int>(at);
}

QString RunIdArgument(const QString &given, const QString &option)
{
    const QString text = TakenRunId(given);
    if (text.isEmpty())
        throw CliUsageFault{QStringLiteral("--%1 needs a Run Id").arg(option)};
    if (text.size() > kMostRunIdCharacters) {
        throw RefusedValue(
            option, QStringLiteral("a Run Id of at most %1 characters, as the desktop's Run Id box does").arg(kMostRunIdCharacters), text);
    }
    return text;
}

QString EscapedForLine(const QString &text)
{
    QString line;
    line.reserve(text.size());
    for (const QChar c : text) {
        switch (c.unicode()) {
        case '\\':
            line += QStringLiteral("\\\\");
            break;
        case '\t':
            line += QStringLiteral("\\t");
            break;
        case '\n':
            line += QStringLiteral("\\n");
            break;
        case '\r':
            line += QStringLiteral("\\r");
            break;
        default:
            if (c.unicode() < 32 || c.unicode() == 127 || (c.unicode() >= 0x80 && c.unicode() < 0xa0))
                line += QStringLiteral("\\x%1").arg(c.unicode(), 2, 16, QLatin1Char('0'));
            else
                line += c;
        }
    }
    return line;
}

namespace {
ChartFileWriter &chartFileWriter()
{
    static ChartFileWriter writer;
    return writer;
}
}  // namespace

void SetChartFileWriter(ChartFileWriter writer)
{
    chartFileWriter() = std::move(writer);
}

const ChartFileWriter &CurrentChartFileWriter()
{
    return chartFileWriter();
}

}  // namespace sendrel
