#include "cli/Cli.h"

#include "app/SendrelError.h"
#include "app/SettingsStore.h"
#include "app/Settings.h"
#include "app/FolderLocation.h"
#include "store/Schema.h"

#include <functional>

namespace sendrel {

namespace {

struct CommandEntry {
    const char *name;
    std::function<int(CliContext &)> run;
};

const QString kUsage = QStringLiteral(
    "usage: sendrel-cli [--db PATH] <command> [arguments]\n"
    "commands: init, import, runs, years, delete, describe, report, chart\n"
    "developer extra: generate-sample STANDING.lst HARVESTED.lst [--seed N] [--run-name NAME] [--cycles N] [--records N]\n"
    "developer extra: register-installation FOLDER (sets Common DataDir and WorkDir to FOLDER/Data and FOLDER/Work when unset)");

QList<CommandEntry> commands()
{
    return {
        {"init", CliInit},
        {"chart", CliChart},
        {"import", CliImport},
        {"runs", CliRuns},
        {"years", CliYears},
        {"delete", CliDelete},
        {"describe", CliDescribe},
        {"generate-sample", CliGenerateSample},
        {"register-installation", CliRegisterInstallation},
        {"report", CliReport},
    };
}

QString defaultDbPath()
{
    SettingsStore store;
    const QString dataDir = store.GetSetting(kSectionCommon, QStringLiteral("DataDir"));
    return PathAddBackslash(dataDir) + kGameDBFileName;
}

}  // namespace

bool TakeOption(QStringList &args, const QString &name, QString &value, bool &present)
{
    const qsizetype at = args.indexOf(name);
    present = at >= 0;
    if (!present)
        return true;
    if (at + 1 >= args.size())
        return false;
    value = args.at(at + 1);
    args.remove(at, 2);
    return true;
}

int CliCommandUsage(CliContext &ctx, const QString &usage, const QString &message)
{
    ctx.err << "sendrel-cli: " << message << "\nusage: sendrel-cli [--db PATH] " << usage << "\n";
    ctx.err.flush();
    return CliUsage;
}

int CliFailureMessage(CliContext &ctx, const QString &message)
{
    ctx.err << "sendrel-cli: " << message << "\n";
    ctx.err.flush();
    return CliFailure;
}

QString CheckRunAndKind(const QStringList &args, const QString &command, const QString &kind, bool hasKind,
                        QString &runId, QString &sorH)
{
    for (const QString &a : args) {
        if (a.startsWith(QLatin1Char('-')))
            return QStringLiteral("unknown option ") + a;
    }
    if (args.size() != 1)
        return command + QStringLiteral(" needs one run");
    runId = args.first();
    sorH = kind.toUpper();
    if (!hasKind || (sorH != QLatin1String("S") && sorH != QLatin1String("H")))
        return QStringLiteral("--kind must be S or H");
    return QString();
}

int CliUsageError(CliContext &ctx, const QString &message)
{
    if (!message.isEmpty())
        ctx.err << "sendrel-cli: " << message << "\n";
    ctx.err << kUsage << "\n";
    ctx.err.flush();
    return CliUsage;
}

int RunCli(const QStringList &arguments, QTextStream &out, QTextStream &err)
{
    QStringList args = arguments;
    CliContext ctx{QString(), {}, out, err};
    QString db;
    bool hasDb = false;
    // Global options stand ahead of the command.
    while (!args.isEmpty() && args.first().startsWith(QLatin1String("--"))) {
        if (args.first() == QLatin1String("--db")) {
            if (args.size() < 2)
                return CliUsageError(ctx, QStringLiteral("--db needs a path"));
            db = args.at(1);
            hasDb = true;
            args.remove(0, 2);
        } else {
            return CliUsageError(ctx, QStringLiteral("unknown option ") + args.first());
        }
    }
    if (args.isEmpty())
        return CliUsageError(ctx, QStringLiteral("no command given"));

    const QString name = args.takeFirst();
    for (const CommandEntry &c : commands()) {
        if (name == QLatin1String(c.name)) {
            ctx.dbPath = hasDb ? db : defaultDbPath();
            ctx.args = args;
            try {
                const int code = c.run(ctx);
                out.flush();
                err.flush();
                return code;
            } catch (const SendrelError &e) {
                err << e.description() << "\n";
                if (e.number() != 0)
                    err << "(" << e.number() << ")\n";
                err.flush();
                return CliFailure;
            }
        }
    }
    return CliUsageError(ctx, QStringLiteral("unknown command ") + name);
}

}  // namespace sendrel
