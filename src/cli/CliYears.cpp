#include "cli/Cli.h"

#include "cli/CliDatabaseSession.h"
#include "cli/CliRunArguments.h"
#include "standstock/StandStockData.h"

namespace sendrel {

int CliYears(CliContext &ctx)
{
    QString runId, kind;
    int code = CliOk;
    if (!TakeRunAndKind(ctx, QStringLiteral("usage: sendrel-cli --db PATH years RUN --kind S|H"), runId, kind, code))
        return code;
    CliDatabaseSession session(ctx);
    if (!OpenSessionOnRun(session, runId, kind))
        return CliFailure;
    // The stand and stock window's list of years, so the order is the same.
    for (const CycleListEntry &entry : UpdateHeaderList(session.tm, runId, kind))
        ctx.out << entry.cycle << '\t' << entry.yearText << '\n';
    return CliOk;
}

}  // namespace sendrel
