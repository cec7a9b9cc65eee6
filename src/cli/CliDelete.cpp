#include "cli/Cli.h"

#include "cli/CliDatabaseSession.h"
#include "cli/CliRunArguments.h"
#include "import/RunDeletion.h"

namespace sendrel {

int CliDelete(CliContext &ctx)
{
    QString runId, kind;
    int code = CliOk;
    if (!TakeRunAndKind(ctx, QStringLiteral("usage: sendrel-cli --db PATH delete RUN --kind S|H"), runId, kind, code))
        return code;
    CliDatabaseSession session(ctx);
    if (!OpenSessionOnRun(session, runId, kind))
        return CliFailure;
    DeleteRun(session.tm, runId, kind);
    return CliOk;
}

}  // namespace sendrel
