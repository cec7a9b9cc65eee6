#include "cli/Cli.h"

#include "browser/RunList.h"
#include "cli/CliDatabaseSession.h"

namespace sendrel {

int CliRuns(CliContext &ctx)
{
    if (!ctx.args.isEmpty())
        return CliUsageError(ctx, QStringLiteral("runs takes no arguments\nusage: sendrel-cli --db PATH runs"));
    CliDatabaseSession session(ctx);
    session.open();
    for (const QString &entry : RunListEntries(session.tm)) {
        const RunEntry run = SplitRunEntry(entry);
        ctx.out << run.runId << '\t' << run.sorH() << '\t' << run.description << '\n';
    }
    return CliOk;
}

}  // namespace sendrel
