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

#include <QRegularExpression>

namespace sendrel {

namespace {

const QString kCrLf = QStringLiteral("\r\n");
const QString kSource = QStringLiteral("Sendrel");

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

bool CycleHasTrees(RunStore &db, const RunKey &run, qint64 cycle)
{
    Statement any(db.DBEngine, QStringLiteral("SELECT 1 FROM Model_Entries WHERE Run_Id = ?1 AND Standing_Harvested = ?2 "
                                              "AND Cycle_Number = ?3 LIMIT 1"));
    any.bind(1, run.runId).bind(2, run.letter()).bind(3, cycle);
    const bool found = any.next();
    any.reset();
    return found;
}

SendrelError CycleWithoutTrees(const RunKey &run, const SelectedCycle &cycle, bool inTheClasses)
{
    return SendrelError(ErrNo::NothingToReport, kSource,
                        QStringLiteral("Cycle %1 (%2) of %3, %4, has no trees%5.")
                            .arg(QString::number(cycle.cycle), cycle.yearText, run.runId, run.word(),
                                 inTheClasses ? QStringLiteral(" in the diameter classes") : QString()));
}

CompiledStandStockReport CompileStandStockReport(RunStore &db, UserQuestions &questions, StandStockReportRequest &request,
                                                 const ClassLayout &layout, StandStockData &data, const ReportClock &clock,
                                                 const CalcReportFn &calcReport)
{
    CompiledStandStockReport report;
    if (request.cycles.isEmpty())
        throw SendrelError(ErrNo::NothingToReport, kSource, QStringLiteral("No Cycles Are Selected"));

    readRunParameters(db, request);
    ReportTextRequest text;
    text.title = StandStockReportTitle(request.This_RunId, request.density);
    text.description = StandStockReportDescription(request.This_RunDesc);
    if (!questions.askReportText(text))
        return report;
    text.description = withCrLf(text.description);

    if (request.SetMousePointer)
        request.SetMousePointer(kReportPointerHourglass);
    BusyMessage busy(questions, QStringLiteral("Compiling report data..."));

    // The run as of one moment, from the check that it is there to the last line of the text:
    // another program's delete comes wholly before (the run is missing) or after (the report is
    // whole). The scratch tables are this connection's own, so that nothing is written into the file.
    const RunKey run{request.This_RunId, KindOfText(request.This_SorH)};
    ReadSnapshot snapshot(db.DBEngine);
    RequireRun(db, run);
    ClearReportTables(db, false);
    StandStockTableWriter writer(db);
    qint16 reportId = 0;
    for (const SelectedCycle &selected : std::as_const(request.cycles)) {
        busy.show(QStringLiteral("Compiling report data for cycle: ") + QString::number(selected.cycle));
        if (calcReport)
            calcReport(selected.cycle);
        else
            data.CalcReport(db, run, selected.cycle);
        // A block without a species has no rows, which the generator cannot print: the cycle is
        // refused by name instead.
        if (data.NextSpecies < 1)
            throw CycleWithoutTrees(run, selected, CycleHasTrees(db, run, selected.cycle));
        writer.write(data, layout, request.density, ++reportId, request.This_RunId, selected.cycle, ToInt16(ReadNumber(selected.yearText)),
                     text.title, text.description);
    }

    report.ReportType = request.density ? ReportKind::Stand : ReportKind::Stock;
    const GeneratedReport generated =
        GenerateReport(db, report.ReportType, request.This_RunId, request.reportPath, text.description, clock);
    snapshot.end();
    report.ReportFile = generated.path;
    report.text = generated.text;
    report.columns = generated.columns;
    report.ReportOrientation = report.columns < kLandscapeFromColumns ? 1 : 2;
    report.compiled = true;
    return report;
}

}  // namespace sendrel
