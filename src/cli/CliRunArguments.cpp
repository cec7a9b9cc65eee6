#include "cli/CliRunArguments.h"

#include "app/ToolBox.h"
#include "app/TreeModel.h"
#include "cli/CliDatabaseSession.h"

#include <QDir>

namespace sendrel {

bool TakeRunAndKind(CliContext &ctx, const QString &usageLine, QString &runId, QString &kind, int &exitCode)
{
    QStringList args = ctx.args;
    QString kindText;
    bool hasKind = false;
    QString problem;
    if (!TakeOption(args, QStringLiteral("--kind"), kindText, hasKind))
        problem = QStringLiteral("--kind lacks its value");
    else if (args.size() != 1 || args.first().startsWith(QLatin1String("--")))
        problem = args.isEmpty() ? QStringLiteral("no run given") : QStringLiteral("unexpected argument ") + args.last();
    else if (!hasKind)
        problem = QStringLiteral("--kind is required");
    else if ((kind = CliKind(kindText)).isEmpty())
        problem = QStringLiteral("unknown kind ") + kindText;
    if (!problem.isEmpty()) {
        exitCode = CliUsageError(ctx, problem + QLatin1Char('\n') + usageLine);
        return false;
    }
    runId = args.first();
    return true;
}

bool RunExists(TreeModel &tm, const QString &runId, const QString &kind)
{
    tm.DBEngine.SQLString = QStringLiteral("SELECT * From Model_Run WHERE Run_Id = '") + QuoteSQL(runId)
                            + QStringLiteral("' and standing_harvested = '") + kind + QStringLiteral("'");
    Recordset rs = tm.DBEngine.RetreiveRecords();
    return !rs.Eof();
}

QString NoSuchRunMessage(const CliContext &ctx, const QString &runId, const QString &kind)
{
    return QStringLiteral("There is no run %1:%2 in %3.")
        .arg(runId, kind == QLatin1String("S") ? QStringLiteral("Standing") : QStringLiteral("Harvested"),
             QDir::toNativeSeparators(ctx.dbPath));
}

bool OpenSessionOnRun(CliDatabaseSession &session, const QString &runId, const QString &kind)
{
    session.open();
    if (RunExists(session.tm, runId, kind))
        return true;
    session.ctx.err << NoSuchRunMessage(session.ctx, runId, kind) << '\n';
    return false;
}

}  // namespace sendrel
