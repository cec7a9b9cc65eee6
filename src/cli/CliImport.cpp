#include "cli/Cli.h"

#include "cli/CliDatabaseSession.h"
#include "import/ImportTreeList.h"

namespace sendrel {

namespace {
const QString kImportUsage = QStringLiteral(
    "usage: sendrel-cli --db PATH import FILE --kind standing|harvested|S|H [--run-id ID] [--on-duplicate fail|overwrite|rename]");

int usage(CliContext &ctx, const QString &problem)
{
    return CliUsageError(ctx, problem + QLatin1Char('\n') + kImportUsage);
}
}  // namespace

int CliImport(CliContext &ctx)
{
    QStringList args = ctx.args;
    QString kindText, runId, onDuplicate;
    bool hasKind = false, hasRunId = false, hasOnDuplicate = false;
    if (!TakeOption(args, QStringLiteral("--kind"), kindText, hasKind)
        || !TakeOption(args, QStringLiteral("--run-id"), runId, hasRunId)
        || !TakeOption(args, QStringLiteral("--on-duplicate"), onDuplicate, hasOnDuplicate))
        return usage(ctx, QStringLiteral("an option lacks its value"));
    if (args.size() != 1 || args.first().startsWith(QLatin1String("--")))
        return usage(ctx, args.isEmpty() ? QStringLiteral("no tree list given") : QStringLiteral("unexpected argument ") + args.last());
    if (!hasKind)
        return usage(ctx, QStringLiteral("--kind is required"));
    const QString kind = CliKind(kindText);
    if (kind.isEmpty())
        return usage(ctx, QStringLiteral("unknown kind ") + kindText);
    if (hasRunId && runId.isEmpty())
        return usage(ctx, QStringLiteral("--run-id needs a name"));

    CliDatabaseSession session(ctx);
    if (!hasOnDuplicate || onDuplicate == QLatin1String("fail"))
        session.questions.onDuplicate = CliQuestions::OnDuplicate::Fail;
    else if (onDuplicate == QLatin1String("overwrite"))
        session.questions.onDuplicate = CliQuestions::OnDuplicate::Overwrite;
    else if (onDuplicate == QLatin1String("rename"))
        session.questions.onDuplicate = CliQuestions::OnDuplicate::Rename;
    else
        return usage(ctx, QStringLiteral("unknown --on-duplicate ") + onDuplicate);

    session.open();
    const ImportResult r = ImportTreeList(session.tm, args.first(), kind, runId);
    if (r.completed()) {
        ctx.out << r.runId << '\t' << r.kind << '\t' << r.cyclesRead << '\t' << r.treeRecordsRead << '\n';
        return CliOk;
    }
    if (!r.detail.isEmpty() && r.ending != ImportEnding::Refused)   // a refusal has said it already
        ctx.err << r.detail << '\n';
    else if (r.ending == ImportEnding::Cancelled && !session.questions.duplicateRefused())
        ctx.err << "Import cancelled.\n";
    return CliFailure;
}

}  // namespace sendrel
