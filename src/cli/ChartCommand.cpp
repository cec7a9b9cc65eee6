#include "cli/Commands.h"

#include "base/SendrelError.h"
#include "cli/Selection.h"
#include "domain/compare/Comparison.h"
#include "domain/composition/StandLevelsSeries.h"
#include "domain/output/ChartData.h"
#include "domain/standstock/ChartPages.h"
#include "domain/standstock/ClassCharts.h"

#include <QFileInfo>
#include <QRegularExpression>

namespace sendrel {

namespace {

const QStringList kGrids = {QStringLiteral("none"), QStringLiteral("horizontal"), QStringLiteral("vertical"), QStringLiteral("both")};
const QStringList kStatistics = {QStringLiteral("sph"), QStringLiteral("basal-area"), QStringLiteral("gtv")};

// -o of a chart: a .png, .svg or .pdf file, in a build that can draw.
QString chartOutput(const QCommandLineParser &parser)
{
    const QString output = parser.value(QStringLiteral("o"));
    const QString type = QFileInfo(output).suffix().toLower();
    if (output.isEmpty())
        throw CliUsageFault{QStringLiteral("-o needs a .png, .svg or .pdf file")};
    if (type != QLatin1String("png") && type != QLatin1String("svg") && type != QLatin1String("pdf"))
        throw RefusedValue(QStringLiteral("o"), QStringLiteral("a .png, .svg or .pdf file"), output);
    if (!CurrentChartFileWriter())
        throw SendrelError(ErrNo::InvalidCall, QStringLiteral("sendrel-cli"), QStringLiteral("This build cannot draw charts."));
    return output;
}

class ChartCommand : public Command {
public:
    QString name() const override { return QStringLiteral("chart"); }
    QString synopsis() const override
    {
        return QStringLiteral("stand|stock RUN --kind S|H [--cycle C|--year Y|--cycles C1,..|--years Y1,..] [--classes S,W,N] "
                              "[--y-max N] [--grid none|horizontal|vertical|both] [--bw] -o FILE.png|FILE.svg|FILE.pdf\n"
                              "       sendrel-cli [--db PATH] chart composition RUN --kind S|H [--statistic sph|basal-area|gtv] "
                              "[--y-max N] [--grid none|horizontal|vertical|both] [--bw] -o FILE.png|FILE.svg|FILE.pdf\n"
                              "       sendrel-cli [--db PATH] chart compare RUN RUN [RUN...] [--base RUN] [--statistic NAME|--density] "
                              "[--difference] [--bw] -o FILE.pdf|FILE.png|FILE.svg");
    }
    QString summary() const override
    {
        return QStringLiteral("Draws the chart window's chart of each selected year (all years when none is given): a PDF gets one "
                              "page per year in the order of the selection; PNG and SVG get one file per year, NAME-YEAR.png, "
                              "unless one year is selected. For composition: the composition window's chart of one statistic "
                              "over all years. For compare: one line per run over the years (or the differences from the base), "
                              "or the density diagram; a PDF without --statistic has one page per statistic, then the density "
                              "diagram, and PNG and SVG one file each, NAME-STATISTIC.png.");
    }
    QList<QCommandLineOption> options() const override
    {
        return {QCommandLineOption(QStringLiteral("kind"), QStringLiteral("Standing (S) or harvested (H) trees."), QStringLiteral("S|H")),
                QCommandLineOption(QStringLiteral("cycle"), QStringLiteral("One cycle."), QStringLiteral("C")),
                QCommandLineOption(QStringLiteral("year"), QStringLiteral("One calendar year."), QStringLiteral("Y")),
                QCommandLineOption(QStringLiteral("cycles"), QStringLiteral("Several cycles."), QStringLiteral("C1,C2,..")),
                QCommandLineOption(QStringLiteral("years"), QStringLiteral("Several calendar years."), QStringLiteral("Y1,Y2,..")),
                QCommandLineOption(QStringLiteral("classes"), QStringLiteral("The diameter classes (default: the settings')."),
                                   QStringLiteral("START,WIDTH,COUNT")),
                QCommandLineOption(QStringLiteral("statistic"),
                                   QStringLiteral("Composition: density (default), basal area or gross total volume. "
                                                  "Compare: sph, basal-area, qmd, sdi, gtv, gmv, nmv, "
                                                  "cumulative-gtv, cumulative-nmv, yield-gtv or yield-nmv."),
                                   QStringLiteral("NAME")),
                QCommandLineOption(QStringLiteral("base"), QStringLiteral("Compare: the base run (default: the first)."),
                                   QStringLiteral("RUN")),
                QCommandLineOption(QStringLiteral("density"), QStringLiteral("Compare: the density diagram.")),
                QCommandLineOption(QStringLiteral("difference"), QStringLiteral("Compare: the differences from the base.")),
                QCommandLineOption(QStringLiteral("y-max"),
                                   QStringLiteral("The Y axis maximum, digits only; it widens the axis, "
                                                  "never cuts data off."),
                                   QStringLiteral("N")),
                QCommandLineOption(QStringLiteral("grid"), QStringLiteral("Grid lines (default: the settings')."),
                                   QStringLiteral("none|horizontal|vertical|both")),
                QCommandLineOption(QStringLiteral("bw"), QStringLiteral("Black and white.")),
                QCommandLineOption(QStringLiteral("o"), QStringLiteral("The file: .png, .svg or .pdf."), QStringLiteral("FILE"))};
    }
    int minArguments() const override { return 2; }
    // compare and its runs.
    int maxArguments() const override { return 1 + kMostComparedRuns; }

    int run(CliContext &ctx, const QCommandLineParser &parser, const QStringList &args) override
    {
        const QString what = args.at(0);
        const bool composition = what == QLatin1String("composition");
        if (what == QLatin1String("compare"))
            return RunCompareChart(ctx, parser, args, chartOutput(parser));
        if (what != QLatin1String("stand") && what != QLatin1String("stock") && !composition)
            throw CliUsageFault{QStringLiteral("chart takes stand, stock, composition or compare, not '%1'").arg(what)};
        if (args.size() > 2)
            throw CliUsageFault{QStringLiteral("unexpected argument '%1'").arg(args.at(2))};
        QStringList ownOptions = composition ? QStringList{QStringLiteral("cycle"), QStringLiteral("year"), QStringLiteral("cycles"),
                                                           QStringLiteral("years"), QStringLiteral("classes")}
                                             : QStringList{QStringLiteral("statistic")};
        ownOptions += QStringList{QStringLiteral("base"), QStringLiteral("density"), QStringLiteral("difference")};
        for (const QString &option : ownOptions) {
            if (parser.isSet(option))
                throw CliUsageFault{QStringLiteral("--%1 is no option of chart %2").arg(option, what)};
        }
        const int statistic = ChoiceOption(parser, QStringLiteral("statistic"), kStatistics, 0);
        const bool density = what == QLatin1String("stand");
        const RunKind kind = KindOption(parser);
        const QString yMax = parser.value(QStringLiteral("y-max"));
        static const QRegularExpression digits(QStringLiteral("^[0-9]{1,15}$"));
        if (parser.isSet(QStringLiteral("y-max")) && !digits.match(yMax).hasMatch())
            throw RefusedValue(QStringLiteral("y-max"), QStringLiteral("digits only"), yMax);
        const int grid = ChoiceOption(parser, QStringLiteral("grid"), kGrids, -1);
        const QString output = chartOutput(parser);

        const bool bw = parser.isSet(QStringLiteral("bw"));
        if (composition) {
            CliSession session(ctx);
            session.open();
            const RunKey run = session.requireRun(args.at(1), kind);
            std::array<ChartData, kStandLevelsCharts> charts;
            const StandLevelsState state = CalcStandLevelsReport(session.tm.db, session.questions, run.runId, run.letter(),
                                                                 {&charts[0], &charts[1], &charts[2], &charts[3]});
            if (!state.filled) {
                throw SendrelError(ErrNo::InvalidCall, QStringLiteral("sendrel-cli"),
                                   QStringLiteral("Run %1 has no %2.")
                                       .arg(EscapedForLine(run.displayName()),
                                            state.CycleRS.isEmpty() ? QStringLiteral("cycles") : QStringLiteral("trees")));
            }
            const auto shown = static_cast<StandLevelsStatistic>(statistic);
            ChartData &chart = charts[statistic];
            const StandLevelsTitles titles = StandLevelsChartTitles(session.tm.settings, shown, run.captionName());
            chart.ChartTopTitle(titles.top);
            chart.ChartLeftTitle(titles.left);
            chart.ChartBottomTitle(titles.bottom);
            ApplyYAxisRule(chart, state.maximum(shown), yMax);
            chart.ChartGrid(grid >= 0 ? static_cast<qint16>(grid)
                                      : GridFrom(session.tm.settings.HorizontalGrid, session.tm.settings.VerticalGrid));
            chart.ChartScreenStyle(bw ? 0 : 1);
            chart.ChartPrintStyle(bw ? 2 : 3);
            CurrentChartFileWriter()({chart}, output);
            return CliOk;
        }

        CliSession session(ctx);
        ClassLayout layout;
        LayoutFromFlagsOrSettings(parser, session.tm.settings, layout);
        session.open();
        const RunKey run = session.requireRun(args.at(1), kind);
        const QList<CycleListEntry> selected =
            SelectedEntries(parser, UpdateHeaderList(session.tm.db, run), EscapedForLine(run.displayName()));
        if (selected.isEmpty())
            throw SendrelError(ErrNo::InvalidCall, QStringLiteral("sendrel-cli"),
                               QStringLiteral("Run %1 has no cycles.").arg(EscapedForLine(run.displayName())));

        StandStockData data(layout, session.tm.db.NumSpecies);
        ChartPageRequest request;
        request.run = run;
        request.density = density;
        request.yAxisMax = yMax;
        request.grid =
            grid >= 0 ? static_cast<qint16>(grid) : GridFrom(session.tm.settings.HorizontalGrid, session.tm.settings.VerticalGrid);
        QList<ChartData> pages;
        QStringList years;
        // Each page as a chart window makes it when the user pages to its year.
        for (const CycleListEntry &entry : selected) {
            request.entry = entry;
            ChartData gphDensity;
            ChartData gphMerchVol;
            const ChartPage page = MakeChartPage(session.tm.db, session.tm.settings, layout, data, request, gphDensity, gphMerchVol);
            ChartData &chart = density ? gphDensity : gphMerchVol;
            chart.ChartScreenStyle(bw ? 0 : 1);
            chart.ChartPrintStyle(bw ? 2 : 3);
            pages.append(chart);
            years.append(page.yearText);
        }
        WriteChartFiles(pages, years, output);
        return CliOk;
    }
};

}  // namespace

void WriteChartFiles(const QList<ChartData> &pages, const QStringList &years, const QString &output)
{
    const ChartFileWriter &write = CurrentChartFileWriter();
    if (pages.size() == 1 || QFileInfo(output).suffix().compare(QLatin1String("pdf"), Qt::CaseInsensitive) == 0) {
        write(pages, output);
        return;
    }
    // One file per year beside the name given: NAME-YEAR.png.
    const QFileInfo info(output);
    const QString stem = info.path() + QLatin1Char('/') + info.completeBaseName();
    for (qsizetype i = 0; i < pages.size(); ++i)
        write({pages.at(i)}, stem + QLatin1Char('-') + years.at(i) + QLatin1Char('.') + info.suffix());
}

std::unique_ptr<Command> MakeChartCommand()
{
    return std::make_unique<ChartCommand>();
}

}  // namespace sendrel
