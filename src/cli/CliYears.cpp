#include "cli/Cli.h"

#include "app/ToolBox.h"
#include "cli/CliDatabaseSession.h"
#include "cli/CliRunArguments.h"

namespace sendrel {

int CliYears(CliContext &ctx)
{
    QString runId, kind;
    int code = CliOk;
    if (!TakeRunAndKind(ctx, QStringLiteral("usage: sendrel-cli --db PATH years RUN --kind S|H"), runId, kind, code))
        return code;
    CliDatabaseSession session(ctx);
    session.open();
    if (!RunExists(session.tm, runId, kind)) {
        ctx.err << NoSuchRunMessage(ctx, runId, kind) << '\n';
        return CliFailure;
    }
    // The statement of the stand and stock window's list of years, so the order is the same.
    session.tm.DBEngine.SQLString = QStringLiteral("Select * from Model_Header where Run_Id = '") + QuoteSQL(runId).trimmed()
                                    + QStringLiteral("'") + QStringLiteral(" and Standing_Harvested = '") + kind + QStringLiteral("'");
    Recordset rs = session.tm.DBEngine.RetreiveRecords();
    for (; !rs.Eof(); rs.MoveNext())
        ctx.out << rs.Fields(QStringLiteral("Cycle")).toInt() << '\t' << rs.Fields(QStringLiteral("Cycle_Year")).toInt() << '\n';
    return CliOk;
}

}  // namespace sendrel
