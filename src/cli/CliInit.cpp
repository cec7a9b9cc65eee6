#include "cli/Cli.h"

#include "store/Schema.h"

#include <QFileInfo>

namespace sendrel {

int CliInit(CliContext &ctx)
{
    if (!ctx.args.isEmpty())
        return CliUsageError(ctx, QStringLiteral("init takes no arguments"));
    if (QFileInfo::exists(ctx.dbPath)) {
        ctx.err << "sendrel-cli: " << ctx.dbPath << " exists already; init makes only new databases.\n";
        return CliFailure;
    }
    CreateRunDatabase(ctx.dbPath);
    return CliOk;
}

}  // namespace sendrel
