#include "cli/Cli.h"

#include "app/ToolBox.h"
#include "cli/CliDatabaseSession.h"

namespace sendrel {

namespace {
const QString kDescribeUsage = QStringLiteral("usage: sendrel-cli --db PATH describe RUN [--description TEXT] [--parameters TEXT]");

QString sqlText(const QString &text)
{
    return QLatin1Char('\'') + QuoteSQL(text) + QLatin1Char('\'');
}
}  // namespace

int CliDescribe(CliContext &ctx)
{
    QStringList args = ctx.args;
    QString description, parameters;
    bool hasDescription = false, hasParameters = false;
    if (!TakeOption(args, QStringLiteral("--description"), description, hasDescription)
        || !TakeOption(args, QStringLiteral("--parameters"), parameters, hasParameters))
        return CliUsageError(ctx, QStringLiteral("an option lacks its value\n") + kDescribeUsage);
    if (args.size() != 1 || args.first().startsWith(QLatin1String("--")))
        return CliUsageError(ctx, (args.isEmpty() ? QStringLiteral("no run given") : QStringLiteral("unexpected argument ") + args.last())
                                      + QLatin1Char('\n') + kDescribeUsage);
    if (!hasDescription && !hasParameters)
        return CliUsageError(ctx, QStringLiteral("give --description, --parameters or both\n") + kDescribeUsage);
    const QString runId = args.first();

    CliDatabaseSession session(ctx);
    session.open();
    clsDBEngine &db = session.tm.DBEngine;
    db.SQLString = QStringLiteral("SELECT Run_Id FROM Run WHERE Run_Id = ") + sqlText(runId);
    const bool exists = !db.RetreiveRecords().Eof();
    if (exists) {
        QStringList sets;
        if (hasDescription)
            sets.append(QStringLiteral("Run_Desc = ") + sqlText(description));
        if (hasParameters)
            sets.append(QStringLiteral("run_parameters = ") + sqlText(parameters));
        db.SQLString = QStringLiteral("UPDATE Run SET ") + sets.join(QStringLiteral(", ")) + QStringLiteral(" WHERE Run_Id = ") + sqlText(runId);
    } else {
        db.SQLString = QStringLiteral("INSERT INTO Run (Run_Id, Run_Desc, run_parameters) VALUES (") + sqlText(runId) + QStringLiteral(", ")
                       + (hasDescription ? sqlText(description) : QStringLiteral("NULL")) + QStringLiteral(", ")
                       + (hasParameters ? sqlText(parameters) : QStringLiteral("NULL")) + QStringLiteral(")");
    }
    db.Execute();
    return CliOk;
}

}  // namespace sendrel
