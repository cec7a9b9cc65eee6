#include "standstock/StandStockReport.h"

#include "app/Numbers.h"
#include "app/SendrelError.h"
#include "app/ToolBox.h"
#include "app/TreeModel.h"
#include "app/UserQuestions.h"
#include "standstock/ClassLayout.h"
#include "standstock/StandStockData.h"
#include "standstock/StandStockTables.h"

#include <QRegularExpression>

namespace sendrel {

namespace {

const QString kCrLf = QStringLiteral("\r\n");
const QString kPleaseWait = QStringLiteral("Please wait...");

constexpr qint16 kLandscapeFromColumns = 8;

// The description box of the dialog may give bare line feeds; the report and its table keep CR LF.
QString withCrLf(const QString &text)
{
    static const QRegularExpression bareLineFeed(QStringLiteral("(?<!\\r)\\n"));
    QString result = text;
    result.replace(bareLineFeed, kCrLf);
    return result;
}

void readRunParameters(TreeModel &tm, StandStockReportRequest &request)
{
    tm.DBEngine.SQLString = QStringLiteral("select run_parameters from run where run_id = '") + QuoteSQL(request.This_RunId)
                            + QLatin1Char('\'');
    Recordset run = tm.DBEngine.RetreiveRecords();
    if (!run.Eof()) {
        const QVariant parameters = run.Fields(QStringLiteral("run_parameters"));
        request.This_RunDesc = parameters.isNull() ? QString() : parameters.toString();
    }
}

void execute(TreeModel &tm, const QString &sql)
{
    tm.DBEngine.SQLString = sql;
    tm.DBEngine.Execute();
}

}  // namespace

QString StandStockReportTitle(const QString &runId, bool density)
{
    return runId + (density ? QStringLiteral(": Stand Table") : QStringLiteral(": Stock Table"));
}

QString StandStockReportDescription(const QString &runDesc)
{
    return QStringLiteral("Printed by: ") + kCrLf + kCrLf + runDesc;
}

CompiledStandStockReport CompileStandStockReport(TreeModel &tm, StandStockReportRequest &request, const ClassLayout &layout,
                                                 StandStockData &data, const ReportClock &clock, const CalcReportFn &calcReport)
{
    CompiledStandStockReport report;
    if (request.cycles.isEmpty()) {
        tm.questions.ShowInfoMessage(QStringLiteral("No Cycles Are Selected"));
        return report;
    }

    bool busy = false;
    try {
        readRunParameters(tm, request);

        ReportTextRequest text;
        text.title = StandStockReportTitle(request.This_RunId, request.density);
        text.description = StandStockReportDescription(request.This_RunDesc);
        if (!tm.questions.askReportText(text))
            return report;
        text.description = withCrLf(text.description);

        if (request.SetMousePointer)
            request.SetMousePointer(kReportPointerHourglass);
        tm.questions.showBusyMessage(kPleaseWait, QStringLiteral("Compiling report data..."));
        busy = true;

        execute(tm, QStringLiteral("DELETE FROM Species2"));
        execute(tm, QStringLiteral("DELETE FROM Report_Header"));
        execute(tm, QStringLiteral("DELETE FROM Report_Detail"));

        qint16 reportId = 0;
        for (const SelectedCycle &selected : std::as_const(request.cycles)) {
            ++reportId;
            const qint16 year = ToInt16(ReadNumber(selected.yearText));
            tm.questions.showBusyMessage(kPleaseWait, QStringLiteral("Compiling report data for cycle: ") + QString::number(selected.cycle));
            if (calcReport)
                calcReport(selected.cycle);
            else
                data.CalcReport(tm, request.This_RunId, request.This_SorH, selected.cycle);
            WriteStandStockTables(tm, data, layout, request.density, reportId, request.This_RunId, selected.cycle, year,
                                  text.title, text.description);
        }

        tm.CurrentRunId = request.This_RunId;
        report.ReportType = request.density ? ReportKind::Stand : ReportKind::Stock;
        report.ReportFile = WriteReportFile(tm, report.ReportType, text.description, report.columns, clock);

        tm.questions.hideBusyMessage();
        busy = false;
        report.ReportOrientation = report.columns < kLandscapeFromColumns ? 1 : 2;
        report.compiled = true;
        return report;
    } catch (const SendrelError &e) {
        if (busy)
            tm.questions.hideBusyMessage();
        tm.questions.message({QStringLiteral("Sendrel"),
                              QStringLiteral("The following error occured:") + kCrLf + kCrLf + QLatin1Char('(')
                                  + QString::number(e.number()) + QStringLiteral(") ") + e.description(),
                              MsgIcon::Exclamation, MsgButtons::OK, Answer::OK});
        return report;
    }
}

}  // namespace sendrel
