#include "cli/Cli.h"

#include "cli/CliHeadless.h"

#include "app/Numbers.h"
#include "app/ScriptedQuestions.h"
#include "app/SendrelError.h"
#include "app/SettingsStore.h"
#include "app/ToolBox.h"
#include "app/TreeModel.h"
#include "output/ChartData.h"
#include "standstock/ClassCharts.h"
#include "standstock/ClassLayout.h"
#include "standstock/StandStockData.h"
#include "store/GameDB.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QRegularExpression>

namespace sendrel {

namespace {

ChartFileWriter &chartFileWriter()
{
    static ChartFileWriter writer;
    return writer;
}

const QString kChartUsage = QStringLiteral(
    "chart stand|stock RUN --kind S|H (--cycle C|--year Y) [--classes S,W,N] [--y-max N]\n"
    "      [--grid none|horizontal|vertical|both] [--bw] -o FILE.png|FILE.svg|FILE.pdf");

int chartUsage(CliContext &ctx, const QString &message)
{
    return CliCommandUsage(ctx, kChartUsage, message);
}

int failure(CliContext &ctx, const QString &message)
{
    return CliFailureMessage(ctx, message);
}

struct ChartRequest {
    bool density = true;
    QString runId;
    QString sorH;
    bool byCycle = false;
    QString cycleOrYear;
    bool hasClasses = false;
    QStringList classes;
    QString yMax;
    bool hasGrid = false;
    qint16 grid = 0;
    bool blackAndWhite = false;
    QString output;
};

// The run as stored (its Run Id in the stored spelling), or empty when there is none.
}  // namespace

void SetChartFileWriter(ChartFileWriter writer)
{
    chartFileWriter() = std::move(writer);
}

int CliChart(CliContext &ctx)
{
    QStringList args = ctx.args;
    if (args.isEmpty())
        return chartUsage(ctx, QStringLiteral("chart needs stand or stock"));
    const QString what = args.takeFirst();
    if (what != QLatin1String("stand") && what != QLatin1String("stock"))
        return chartUsage(ctx, QStringLiteral("chart ") + what + QStringLiteral(" is not available"));

    ChartRequest req;
    req.density = what == QLatin1String("stand");
    QString kind, cycle, year, classes, grid;
    bool hasKind = false, hasCycle = false, hasYear = false, hasYMax = false, hasOutput = false;
    if (!TakeOption(args, QStringLiteral("--kind"), kind, hasKind) || !TakeOption(args, QStringLiteral("--cycle"), cycle, hasCycle)
        || !TakeOption(args, QStringLiteral("--year"), year, hasYear)
        || !TakeOption(args, QStringLiteral("--classes"), classes, req.hasClasses)
        || !TakeOption(args, QStringLiteral("--y-max"), req.yMax, hasYMax)
        || !TakeOption(args, QStringLiteral("--grid"), grid, req.hasGrid)
        || !TakeOption(args, QStringLiteral("-o"), req.output, hasOutput))
        return chartUsage(ctx, QStringLiteral("an option lacks its value"));
    req.blackAndWhite = args.removeAll(QStringLiteral("--bw")) > 0;

    if (const QString fault = CheckRunAndKind(args, QStringLiteral("chart"), kind, hasKind, req.runId, req.sorH); !fault.isEmpty())
        return chartUsage(ctx, fault);
    if (hasCycle == hasYear)
        return chartUsage(ctx, QStringLiteral("give either --cycle or --year"));
    req.byCycle = hasCycle;
    req.cycleOrYear = hasCycle ? cycle : year;
    static const QRegularExpression wholeNumber(QStringLiteral("^-?[0-9]+$"));
    if (!wholeNumber.match(req.cycleOrYear).hasMatch())
        return chartUsage(ctx, (hasCycle ? QStringLiteral("--cycle") : QStringLiteral("--year")) + QStringLiteral(" takes a whole number"));
    if (req.hasClasses) {
        req.classes = classes.split(QLatin1Char(','));
        if (req.classes.size() != 3)
            return chartUsage(ctx, QStringLiteral("--classes takes START,WIDTH,COUNT"));
    }
    // The window's Y axis box takes digits only.
    static const QRegularExpression digits(QStringLiteral("^[0-9]+$"));
    if (hasYMax && !digits.match(req.yMax).hasMatch())
        return chartUsage(ctx, QStringLiteral("--y-max takes digits only"));
    if (req.hasGrid) {
        const QStringList grids = {QStringLiteral("none"), QStringLiteral("horizontal"), QStringLiteral("vertical"), QStringLiteral("both")};
        req.grid = static_cast<qint16>(grids.indexOf(grid));
        if (req.grid < 0)
            return chartUsage(ctx, QStringLiteral("--grid must be none, horizontal, vertical or both"));
    }
    const QString type = QFileInfo(req.output).suffix().toLower();
    if (!hasOutput || (type != QLatin1String("png") && type != QLatin1String("svg") && type != QLatin1String("pdf")))
        return chartUsage(ctx, QStringLiteral("-o needs a .png, .svg or .pdf file"));
    if (!chartFileWriter())
        return failure(ctx, QStringLiteral("this build cannot draw charts"));

    // The process's state as the desktop program has it, with nobody to ask.
    SettingsStore store;
    ScriptedQuestions questions;
    TreeModel tm(store, questions);
    PrepareHeadlessModel(tm, questions);

    // The layout as the window would take it from its boxes; a layout it refuses is refused here.
    ClassLayout layout;
    const ClassEntryCheck check = LayoutFromFlagsOrSettings(layout, req.hasClasses, req.classes, tm.settings);
    if (!check.passed()) {
        ctx.err << check.describe() << "\n";
        ctx.err.flush();
        return CliFailure;
    }

    OpenHeadlessDatabase(tm, ctx.dbPath);

    const QString runId = StoredRunId(tm, req.runId, req.sorH);
    if (runId.isEmpty())
        return failure(ctx, QStringLiteral("no run %1 of kind %2").arg(req.runId, req.sorH));

    // The cycle and its year from the list of years, as the window takes them.
    const QVector<CycleListEntry> cycles = UpdateHeaderList(tm, runId, req.sorH);
    const double wanted = ReadNumber(req.cycleOrYear);
    const CycleListEntry *chosen = nullptr;
    for (const CycleListEntry &e : cycles) {
        if ((req.byCycle && e.cycle == wanted) || (!req.byCycle && ReadNumber(e.yearText) == wanted)) {
            chosen = &e;
            break;
        }
    }
    if (!chosen)
        return failure(ctx, QStringLiteral("run %1 has no %2 %3").arg(runId, req.byCycle ? QStringLiteral("cycle") : QStringLiteral("year"), req.cycleOrYear));
    const QString yearText = DefaultText(ToInt16(ReadNumber(chosen->yearText)));

    StandStockData data(layout, tm.NumSpecies);
    data.CalcReport(tm, runId, req.sorH, ToInt16(chosen->cycle));

    ChartData gphDensity;
    ChartData gphMerchVol;
    const ClassChartMaxima maxima = FillClassCharts(tm, layout, data, gphDensity, gphMerchVol);
    ChartData &chart = req.density ? gphDensity : gphMerchVol;
    SetTitles(chart, ChartWindowTitles(tm.settings, req.density, runId, yearText));
    ApplyYAxisRule(chart, req.density ? maxima.density : maxima.merchVol, req.yMax);
    chart.ChartGrid(req.hasGrid ? req.grid : GridFrom(tm.settings.HorizontalGrid, tm.settings.VerticalGrid));
    chart.ChartScreenStyle(req.blackAndWhite ? 0 : 1);
    chart.ChartPrintStyle(req.blackAndWhite ? 2 : 3);

    chartFileWriter()(chart, req.output);
    return CliOk;
}

}  // namespace sendrel
