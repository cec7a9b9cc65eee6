#include "cli/Commands.h"

#include "base/SafeFileName.h"
#include "cli/Selection.h"
#include "cli/TableOutput.h"
#include "domain/compare/ComparisonCharts.h"
#include "domain/compare/ComparisonTables.h"
#include "domain/table/TableFile.h"

#include <QDir>

namespace sendrel {

namespace {

const QStringList kTables = {QStringLiteral("summary"), QStringLiteral("stand"), QStringLiteral("stock")};

class CompareCommand : public Command {
public:
    QString name() const override { return QStringLiteral("compare"); }
    QString synopsis() const override
    {
        return QStringLiteral("RUN RUN [RUN...] [--base RUN] [--table summary|stand|stock] [--year Y] [--classes S,W,N] "
                              "[--format txt|csv|xlsx|json] [--definitions] [-o FILE|-]");
    }
    QString summary() const override
    {
        return QStringLiteral("Runs side by side by calendar year: each run's values, run - base, percent difference (\"n/a\" where "
                              "the base is 0); cumulative removals and total yield; --table stand|stock: the difference table of "
                              "one year. Without -o it goes to the Work folder and its path is printed; -o - writes it to stdout.");
    }
    QList<QCommandLineOption> options() const override
    {
        return {QCommandLineOption(QStringLiteral("base"), QStringLiteral("The run the others are compared with (default: the first)."),
                                   QStringLiteral("RUN")),
                QCommandLineOption(QStringLiteral("table"), QStringLiteral("summary (default), or the stand or stock table of one year."),
                                   QStringLiteral("summary|stand|stock")),
                QCommandLineOption(QStringLiteral("year"), QStringLiteral("The calendar year of the stand or stock table."),
                                   QStringLiteral("Y")),
                QCommandLineOption(QStringLiteral("classes"), QStringLiteral("The diameter classes (default: the settings')."),
                                   QStringLiteral("START,WIDTH,COUNT")),
                QCommandLineOption(QStringLiteral("format"), QStringLiteral("txt (default, fixed columns), csv, xlsx or json."),
                                   QStringLiteral("FORMAT")),
                DefinitionsOption(),
                QCommandLineOption(QStringLiteral("o"), QStringLiteral("Where the comparison goes: a file, or - for stdout."),
                                   QStringLiteral("FILE"))};
    }
    int minArguments() const override { return kFewestComparedRuns; }
    int maxArguments() const override { return kMostComparedRuns; }

    int run(CliContext &ctx, const QCommandLineParser &parser, const QStringList &args) override
    {
        const int table = ChoiceOption(parser, QStringLiteral("table"), kTables, 0);
        const bool summaryTable = table == 0;
        for (const QString &option : {QStringLiteral("year"), QStringLiteral("classes")}) {
            if (summaryTable && parser.isSet(option))
                throw CliUsageFault{QStringLiteral("--%1 is no option of compare --table summary").arg(option)};
        }
        if (!summaryTable && !parser.isSet(QStringLiteral("year")))
            throw CliUsageFault{QStringLiteral("compare --table %1 needs --year").arg(kTables.at(table))};
        const QList<qint64> year = summaryTable ? QList<qint64>{} : NumberListOption(parser, QStringLiteral("year"));
        if (year.size() > 1)
            throw RefusedValue(QStringLiteral("year"), QStringLiteral("one calendar year"), parser.value(QStringLiteral("year")));
        QStringList runs;
        for (const QString &run : args)
            runs.append(RunIdArgument(run, QStringLiteral("compare")));
        const QString base =
            parser.isSet(QStringLiteral("base")) ? RunIdArgument(parser.value(QStringLiteral("base")), QStringLiteral("base")) : QString();
        const TableFormat format =
            FormatOption(parser, {QStringLiteral("txt"), QStringLiteral("csv"), QStringLiteral("xlsx"), QStringLiteral("json")});
        const QString output = parser.value(QStringLiteral("o"));
        if (parser.isSet(QStringLiteral("o")) && output.isEmpty())
            throw CliUsageFault{QStringLiteral("-o needs a file, or - for the standard output")};
        const bool definitions = DefinitionsAsked(parser, format);

        CliSession session(ctx);
        ClassLayout layout;
        if (!summaryTable)
            LayoutFromFlagsOrSettings(parser, session.tm.settings, layout);
        session.open();
        const Comparison comparison = ReadComparison(session.tm.db, runs, base, session.units());
        const TableDocument document =
            summaryTable ? SummaryComparisonDocument(comparison)
                         : DifferenceTableDocument(session.tm.db, comparison, layout, static_cast<qint32>(year.first()), table == 1);
        const QString stem = SafeFileStem(comparison.runIds().join(QLatin1Char('_'))) + QStringLiteral("_Compare") +
                             (summaryTable ? QString() : QLatin1Char('_') + kTables.at(table) + QString::number(year.first()));
        const QString defaultPath = QDir(session.tm.ReportFolder()).filePath(stem + TableFileSuffix(format));
        WriteTableOutput(ctx, format, output, defaultPath, document, definitions);
        return CliOk;
    }
};

}  // namespace

int RunCompareChart(CliContext &ctx, const QCommandLineParser &parser, const QStringList &args, const QString &output)
{
    for (const QString &option : {QStringLiteral("kind"), QStringLiteral("cycle"), QStringLiteral("year"), QStringLiteral("cycles"),
                                  QStringLiteral("years"), QStringLiteral("classes"), QStringLiteral("y-max"), QStringLiteral("grid")}) {
        if (parser.isSet(option))
            throw CliUsageFault{QStringLiteral("--%1 is no option of chart compare").arg(option)};
    }
    const bool density = parser.isSet(QStringLiteral("density"));
    const bool difference = parser.isSet(QStringLiteral("difference"));
    int statistic = -1;
    if (parser.isSet(QStringLiteral("statistic"))) {
        if (density)
            throw CliUsageFault{QStringLiteral("chart compare takes --statistic or --density, not both")};
        const QString name = parser.value(QStringLiteral("statistic"));
        statistic = CompareStatisticIndex(name);
        if (statistic < 0) {
            QStringList names;
            for (const CompareStatistic &s : CompareStatistics())
                names.append(s.name);
            throw RefusedValue(QStringLiteral("statistic"), names.join(QStringLiteral(", ")), name);
        }
    }
    if (density && difference)
        throw CliUsageFault{QStringLiteral("the density diagram has no --difference")};
    if (args.size() - 1 < kFewestComparedRuns)
        throw CliUsageFault{QStringLiteral("chart compare lacks an argument")};
    QStringList runs;
    for (const QString &run : args.mid(1))
        runs.append(RunIdArgument(run, QStringLiteral("compare")));
    const QString base =
        parser.isSet(QStringLiteral("base")) ? RunIdArgument(parser.value(QStringLiteral("base")), QStringLiteral("base")) : QString();

    CliSession session(ctx);
    session.open();
    const Comparison comparison = ReadComparison(session.tm.db, runs, base, session.units());
    const double maxSdi = session.tm.settings.MaxSDI;
    QList<ChartData> pages;
    QStringList names;
    if (density) {
        pages.append(DensityDiagram(comparison, maxSdi));
        names.append(QStringLiteral("density"));
    } else if (statistic >= 0) {
        pages.append(CompareChart(comparison, statistic, difference));
        names.append(CompareStatistics().at(statistic).name);
    } else {
        pages = CompareChartPages(comparison, difference, maxSdi);
        for (const CompareStatistic &s : CompareStatistics())
            names.append(s.name);
        names.append(QStringLiteral("density"));
    }
    const bool bw = parser.isSet(QStringLiteral("bw"));
    for (ChartData &page : pages) {
        page.ChartScreenStyle(bw ? 0 : 1);
        page.ChartPrintStyle(bw ? 2 : 3);
    }
    WriteChartFiles(pages, names, output);
    return CliOk;
}

std::unique_ptr<Command> MakeCompareCommand()
{
    return std::make_unique<CompareCommand>();
}

}  // namespace sendrel
