#include "cli/Commands.h"

#include "base/SendrelError.h"
#include "domain/browser/RunList.h"
#include "domain/standstock/StandStockData.h"
#include "store/DatabaseFile.h"
#include "store/RunStore.h"
#include "store/Schema.h"

#include <QDir>
#include <QFileInfo>

namespace sendrel {

namespace {

QCommandLineOption kindOption(const QString &values = QStringLiteral("S|H"))
{
    return QCommandLineOption(QStringLiteral("kind"), QStringLiteral("The kind of the run: standing (S) or harvested (H)."), values);
}

class InitCommand : public Command {
public:
    QString name() const override { return QStringLiteral("init"); }
    QString synopsis() const override { return QString(); }
    QString summary() const override
    {
        return QStringLiteral("Makes a new run database at --db with every table and the species the installation ships.");
    }
    int run(CliContext &ctx, const QCommandLineParser &, const QStringList &) override
    {
        if (ctx.dbPath.isEmpty())
            throw CliUsageFault{QStringLiteral("init needs --db PATH")};
        // A server database is refused by the engine when it holds tables.
        if (!clsDBEngine::IsServerDatabase(ctx.dbPath) && QFileInfo::exists(ctx.dbPath)) {
            throw SendrelError(
                ErrNo::FileAlreadyExists, QStringLiteral("sendrel-cli"),
                QStringLiteral("%1 exists already; init makes only new databases.").arg(QDir::toNativeSeparators(ctx.dbPath)));
        }
        CreateRunDatabase(ctx.dbPath);
        return CliOk;
    }
};

class RunsCommand : public Command {
public:
    QString name() const override { return QStringLiteral("runs"); }
    QString synopsis() const override { return QString(); }
    QString summary() const override
    {
        return QStringLiteral("One line per run, in the run browser's order: Run Id, S or H, description (tabs between).");
    }
    int run(CliContext &ctx, const QCommandLineParser &, const QStringList &) override
    {
        CliSession session(ctx);
        session.open();
        for (const QString &entry : RunListEntries(session.tm.db)) {
            const RunEntry run = SplitRunEntry(entry);
            ctx.out << EscapedForLine(run.runId) << '\t' << KindLetter(run.kind()) << '\t' << EscapedForLine(run.description) << '\n';
        }
        return CliOk;
    }
};

class YearsCommand : public Command {
public:
    QString name() const override { return QStringLiteral("years"); }
    QString synopsis() const override { return QStringLiteral("RUN --kind S|H"); }
    QString summary() const override
    {
        return QStringLiteral("One line per cycle of the run, in the list's order: cycle number, calendar year.");
    }
    QList<QCommandLineOption> options() const override { return {kindOption()}; }
    int minArguments() const override { return 1; }
    int maxArguments() const override { return 1; }
    int run(CliContext &ctx, const QCommandLineParser &parser, const QStringList &args) override
    {
        const RunKind kind = KindOption(parser);
        CliSession session(ctx);
        session.open();
        const RunKey run = session.requireRun(args.first(), kind);
        // The stand and stock window's list of years, so the order is the same.
        for (const CycleListEntry &entry : UpdateHeaderList(session.tm.db, run))
            ctx.out << entry.cycle << '\t' << entry.yearText << '\n';
        return CliOk;
    }
};

class DeleteCommand : public Command {
public:
    QString name() const override { return QStringLiteral("delete"); }
    QString synopsis() const override { return QStringLiteral("RUN --kind S|H"); }
    QString summary() const override { return QStringLiteral("Deletes one run (one Run Id of one kind)."); }
    QList<QCommandLineOption> options() const override { return {kindOption()}; }
    int minArguments() const override { return 1; }
    int maxArguments() const override { return 1; }
    int run(CliContext &ctx, const QCommandLineParser &parser, const QStringList &args) override
    {
        const RunKind kind = KindOption(parser);
        CliSession session(ctx);
        session.open();
        const RunKey run = session.requireRun(args.first(), kind);
        session.tm.db.checkNotDamaged();
        session.tm.db.deleteRun(run);  // one unit: the whole run goes, or nothing of it
        return CliOk;
    }
};

class CompactCommand : public Command {
public:
    QString name() const override { return QStringLiteral("compact"); }
    QString synopsis() const override { return QString(); }
    QString summary() const override
    {
        return QStringLiteral("Gives the space of deleted runs back to the file system. Prints the bytes of the file (and its log) "
                              "before and after, a tab between.");
    }
    int run(CliContext &ctx, const QCommandLineParser &, const QStringList &) override
    {
        CliSession session(ctx);
        session.open();
        const CompactResult result = session.tm.db.compact();
        ctx.out << result.bytesBefore << '\t' << result.bytesAfter << '\n';
        return CliOk;
    }
};

class BackupCommand : public Command {
public:
    QString name() const override { return QStringLiteral("backup"); }
    QString synopsis() const override { return QStringLiteral("FILE"); }
    QString summary() const override
    {
        return QStringLiteral("Copies the run database to FILE, a new file, as it stands at one moment while other programs "
                              "read and write it. Refuses (exit 1) when FILE exists.");
    }
    int minArguments() const override { return 1; }
    int maxArguments() const override { return 1; }
    int run(CliContext &ctx, const QCommandLineParser &, const QStringList &args) override
    {
        CliSession session(ctx);
        session.open();
        BackupDatabase(session.tm.DBEngine, args.first());
        return CliOk;
    }
};

class RestoreCommand : public Command {
public:
    QString name() const override { return QStringLiteral("restore"); }
    QString synopsis() const override { return QStringLiteral("BACKUP"); }
    QString summary() const override
    {
        return QStringLiteral("Puts the content of the backup file BACKUP in place of the run database's, in one transaction "
                              "through the database's own log: other programs see the old database or the restored one. "
                              "A damaged backup is refused (exit 1) and nothing is touched.");
    }
    int minArguments() const override { return 1; }
    int maxArguments() const override { return 1; }
    int run(CliContext &ctx, const QCommandLineParser &, const QStringList &args) override
    {
        CliSession session(ctx);
        session.open();
        RestoreDatabase(session.tm.DBEngine, args.first());
        return CliOk;
    }
};

class DescribeCommand : public Command {
public:
    QString name() const override { return QStringLiteral("describe"); }
    QString synopsis() const override { return QStringLiteral("RUN [--description TEXT] [--parameters TEXT]"); }
    QString summary() const override
    {
        return QStringLiteral("Writes the run's row of the Run table (Run_Desc, run_parameters), as the suite's front end would.");
    }
    QList<QCommandLineOption> options() const override
    {
        return {QCommandLineOption(QStringLiteral("description"), QStringLiteral("The run's description."), QStringLiteral("TEXT")),
                QCommandLineOption(QStringLiteral("parameters"), QStringLiteral("The run's parameters, added to report descriptions."),
                                   QStringLiteral("TEXT"))};
    }
    int minArguments() const override { return 1; }
    int maxArguments() const override { return 1; }
    int run(CliContext &ctx, const QCommandLineParser &parser, const QStringList &args) override
    {
        if (!parser.isSet(QStringLiteral("description")) && !parser.isSet(QStringLiteral("parameters")))
            throw CliUsageFault{QStringLiteral("give --description, --parameters or both")};
        if (TakenRunId(args.first()).isEmpty())
            throw CliUsageFault{QStringLiteral("describe needs a Run Id")};
        CliSession session(ctx);
        session.open();
        // Only a run of the database is described: a Run row of its own would show in no list.
        const QString runId = session.requireRunId(args.first());
        session.tm.db.checkNotDamaged();
        const auto given = [&parser](const char *option) {
            const QString name = QLatin1String(option);
            return parser.isSet(name) ? std::optional<QString>(parser.value(name)) : std::nullopt;
        };
        session.tm.db.describeRun(runId, given("description"), given("parameters"));
        return CliOk;
    }
};

}  // namespace

std::unique_ptr<Command> MakeInitCommand()
{
    return std::make_unique<InitCommand>();
}

std::unique_ptr<Command> MakeRunsCommand()
{
    return std::make_unique<RunsCommand>();
}

std::unique_ptr<Command> MakeYearsCommand()
{
    return std::make_unique<YearsCommand>();
}

std::unique_ptr<Command> MakeDeleteCommand()
{
    return std::make_unique<DeleteCommand>();
}

std::unique_ptr<Command> MakeCompactCommand()
{
    return std::make_unique<CompactCommand>();
}

std::unique_ptr<Command> MakeBackupCommand()
{
    return std::make_unique<BackupCommand>();
}

std::unique_ptr<Command> MakeRestoreCommand()
{
    return std::make_unique<RestoreCommand>();
}

std::unique_ptr<Command> MakeDescribeCommand()
{
    return std::make_unique<DescribeCommand>();
}

}  // namespace sendrel
