#include "cli/Commands.h"

#include "domain/import/CopyRuns.h"

namespace sendrel {

namespace {

class CopyCommand : public Command {
public:
    QString name() const override { return QStringLiteral("copy"); }
    QString synopsis() const override { return QStringLiteral("--from DB --to DB [RUN...]"); }
    QString summary() const override
    {
        return QStringLiteral("Copies runs (all when none is named; both kinds of each Run Id named) between run databases of either "
                              "engine, in one transaction of the target; a run the target holds already is refused as the import "
                              "refuses it, and nothing is copied. Prints one line per run copied: Run Id, S or H.");
    }
    QList<QCommandLineOption> options() const override
    {
        return {QCommandLineOption(QStringLiteral("from"), QStringLiteral("The run database copied from (a path or a connection text)."),
                                   QStringLiteral("DB")),
                QCommandLineOption(QStringLiteral("to"), QStringLiteral("The run database copied to (a path or a connection text)."),
                                   QStringLiteral("DB"))};
    }
    int maxArguments() const override { return 1 << 20; }
    int run(CliContext &ctx, const QCommandLineParser &parser, const QStringList &args) override
    {
        if (!parser.isSet(QStringLiteral("from")) || !parser.isSet(QStringLiteral("to")))
            throw CliUsageFault{QStringLiteral("copy needs --from DB and --to DB")};
        CliContext fromContext{parser.value(QStringLiteral("from")), ctx.lockWait, ctx.units, ctx.out, ctx.err};
        CliContext toContext{parser.value(QStringLiteral("to")), ctx.lockWait, ctx.units, ctx.out, ctx.err};
        CliSession from(fromContext);
        from.open();
        CliSession to(toContext);
        to.open();
        for (const RunKey &run : CopyRuns(from.tm.db, to.tm.db, args))
            ctx.out << EscapedForLine(run.runId) << '\t' << KindLetter(run.kind) << '\n';
        return CliOk;
    }
};

}  // namespace

std::unique_ptr<Command> MakeCopyCommand()
{
    return std::make_unique<CopyCommand>();
}

}  // namespace sendrel
