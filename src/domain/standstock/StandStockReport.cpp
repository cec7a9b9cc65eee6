#include "domain/standstock/StandStockReport.h"

#include "base/Numbers.h"
#include "base/SendrelError.h"
#include "base/UserQuestions.h"
#include "domain/output/ReportTables.h"
#include "domain/standstock/ClassLayout.h"
#include "domain/standstock/StandStockData.h"
#include "domain/standstock/StandStockTables.h"
#include "store/RunStore.h"

#include <optional>
#include <vector>

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

void readRunParameters(RunStore &db, StandStockReportRequest &request)
{
    if (const std::optional<QVariant> parameters = db.runParameters(request.This_RunId))
        request.This_RunDesc = parameters->isNull() ? QString() : parameters->toString();
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

CompiledStandStockReport CompileStandStockReport(RunStore &db, UserQuestions &questions, StandStockReportRequest &request,
                                                 const ClassLayout &layout, StandStockData &data, const ReportClock &clock,
                                                 const CalcReportFn &calcReport)
{
    CompiledStandStockReport report;
    if (request.cycles.isEmpty()) {
        questions.ShowInfoMessage(QStringLiteral("No Cycles Are Selected"));
        return report;
    }

    bool busy = false;
    std::optional<WriteTransaction> transaction;
    try {
        readRunParameters(db, request);

        ReportTextRequest text;
        text.title = StandStockReportTitle(request.This_RunId, request.density);
        text.description = StandStockReportDescription(request.This_RunDesc);
        if (!questions.askReportText(text))
            return report;
        text.description = withCrLf(text.description);

        if (request.SetMousePointer)
            request.SetMousePointer(kReportPointerHourglass);
        questions.showBusyMessage(kPleaseWait, QStringLiteral("Compiling report data..."));
        busy = true;

        // Prepared first: tables that cannot take the rows stop the report before any work.
        StandStockTableWriter writer(db);
        // The cycles are aggregated next, with no lock held, so that another program's import or
        // report is not kept waiting while the trees are read.
        std::vector<StandStockData> cycles;
        std::optional<SendrelError> aggregationFailure;
        for (const SelectedCycle &selected : std::as_const(request.cycles)) {
            questions.showBusyMessage(kPleaseWait, QStringLiteral("Compiling report data for cycle: ") + QString::number(selected.cycle));
            try {
                if (calcReport)
                    calcReport(selected.cycle);
                else
                    data.CalcReport(db, {request.This_RunId, KindOfText(request.This_SorH)}, selected.cycle);
            } catch (const SendrelError &e) {
                aggregationFailure = e;   // the cycles before it are written all the same
                break;
            }
            cycles.push_back(data);
        }
        // A damaged file is not written to at all.
        if (aggregationFailure && db.DBEngine.damageFound())
            throw *aggregationFailure;

        // The scratch tables are written and read back in one transaction: another program's report
        // can neither mix its rows in nor see these half written.
        transaction.emplace(db.DBEngine);
        ClearReportTables(db, false);
        for (qsizetype i = 0; i < static_cast<qsizetype>(cycles.size()); ++i) {
            const SelectedCycle &selected = request.cycles.at(i);
            const qint16 year = ToInt16(ReadNumber(selected.yearText));
            writer.write(cycles[i], layout, request.density, static_cast<qint16>(i + 1), request.This_RunId, selected.cycle, year,
                         text.title, text.description);
        }
        if (aggregationFailure)
            throw *aggregationFailure;

        report.ReportType = request.density ? ReportKind::Stand : ReportKind::Stock;
        const GeneratedReport generated = GenerateReport(db, questions, report.ReportType, request.This_RunId, request.reportPath,
                                                         text.description, clock);
        // The generator's own failure leaves the tables as they were written.
        transaction->commit();
        report.ReportFile = generated.path;
        report.text = generated.text;
        report.columns = generated.columns;

        questions.hideBusyMessage();
        busy = false;
        report.ReportOrientation = report.columns < kLandscapeFromColumns ? 1 : 2;
        report.compiled = true;
        return report;
    } catch (const SendrelError &e) {
        // What was written before the failure stays, as each statement would have left it.
        KeepWhatWasWritten(transaction);
        if (busy)
            questions.hideBusyMessage();
        questions.message({QStringLiteral("Sendrel"),
                              QStringLiteral("The following error occured:") + kCrLf + kCrLf + QLatin1Char('(')
                                  + QString::number(e.number()) + QStringLiteral(") ") + e.description(),
                              MsgIcon::Exclamation, MsgButtons::OK, Answer::OK});
        return report;
    }
}

}  // namespace sendrel
