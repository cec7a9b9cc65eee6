#include "cli/Commands.h"

#include "base/Numbers.h"
#include "base/SendrelError.h"
#include "cli/Selection.h"
#include "cli/TableOutput.h"
#include "domain/export/StandStockExport.h"
#include "domain/output/ReportFile.h"
#include "domain/standstock/StandStockReport.h"

namespace sendrel {

namespace {

// The title box of the report dialog takes at most this many typed characters.
constexpr int kMostTitleCharacters = 50;

class ReportCommand : public Command {
public:
    QString name() const override { return QStringLiteral("report"); }
    QString synopsis() const override
    {
        return QStringLiteral("stand|stock RUN --kind S|H [--cycles C1,C2,..|--years Y1,Y2,..] [--classes START,WIDTH,COUNT] "
                              "[--title TEXT] [--description TEXT] [--format txt|csv|xlsx] [-o FILE|-]");
    }
    QString summary() const override
    {
        return QStringLiteral("Fills the report tables and writes the report file, byte for byte the desktop's. Without -o it goes "
                              "to its normal place in the Work folder and its path is printed; -o - writes it to stdout.");
    }
    QList<QCommandLineOption> options() const override
    {
        return {QCommandLineOption(QStringLiteral("kind"), QStringLiteral("Standing (S) or harvested (H) trees."), QStringLiteral("S|H")),
                QCommandLineOption(QStringLiteral("cycles"), QStringLiteral("The cycles to report (default: all)."), QStringLiteral("C1,C2,..")),
                QCommandLineOption(QStringLiteral("years"), QStringLiteral("The calendar years to report."), QStringLiteral("Y1,Y2,..")),
                QCommandLineOption(QStringLiteral("classes"),
                                   QStringLiteral("The diameter classes (default: the settings', else 0,10,10)."),
                                   QStringLiteral("START,WIDTH,COUNT")),
                QCommandLineOption(QStringLiteral("title"), QStringLiteral("The report's title, at most 50 characters."), QStringLiteral("TEXT")),
                QCommandLineOption(QStringLiteral("description"), QStringLiteral("The report's description."), QStringLiteral("TEXT")),
                QCommandLineOption(QStringLiteral("format"),
                                   QStringLiteral("txt (default): the report file; csv or xlsx: its table as numbers, a sheet per year."),
                                   QStringLiteral("FORMAT")),
                QCommandLineOption(QStringLiteral("o"), QStringLiteral("Where the report goes: a file, or - for stdout."), QStringLiteral("FILE"))};
    }
    int minArguments() const override { return 2; }
    int maxArguments() const override { return 2; }

    int run(CliContext &ctx, const QCommandLineParser &parser, const QStringList &args) override
    {
        const QString what = args.at(0);
        if (what != QLatin1String("stand") && what != QLatin1String("stock"))
            throw CliUsageFault{QStringLiteral("report takes stand or stock, not '%1'").arg(what)};
        const RunKind kind = KindOption(parser);
        if (parser.isSet(QStringLiteral("title")) && parser.value(QStringLiteral("title")).size() > kMostTitleCharacters)
            throw CliUsageFault{QStringLiteral("--title takes at most %1 characters, as the dialog does").arg(kMostTitleCharacters)};
        if (parser.isSet(QStringLiteral("o")) && parser.value(QStringLiteral("o")).isEmpty())
            throw CliUsageFault{QStringLiteral("-o needs a file, or - for the standard output")};
        const TableFormat format = FormatOption(parser, {QStringLiteral("txt"), QStringLiteral("csv"), QStringLiteral("xlsx")});

        CliSession session(ctx);
        ClassLayout layout;
        LayoutFromFlagsOrSettings(parser, session.tm.settings, layout);
        if (parser.isSet(QStringLiteral("title")))
            session.questions.reportTitle = parser.value(QStringLiteral("title"));
        if (parser.isSet(QStringLiteral("description")))
            session.questions.reportDescription = parser.value(QStringLiteral("description"));
        session.open();
        const RunKey run = session.requireRun(args.at(1), kind);

        StandStockReportRequest request;
        request.This_RunId = run.runId;
        request.This_SorH = run.letter();
        request.density = what == QLatin1String("stand");
        for (const CycleListEntry &e : SelectedEntries(parser, UpdateHeaderList(session.tm.db, run), EscapedForLine(run.displayName())))
            request.cycles.append({ToInt16(e.cycle), e.yearText});

        const qint16 kindOfReport = request.density ? ReportKind::Stand : ReportKind::Stock;
        const QString output = parser.value(QStringLiteral("o"));
        if (format != TableFormat::Txt) {
            StandStockData data(layout, session.tm.db.NumSpecies);
            const StandStockExport tables = CompileStandStockExport(session.tm.db, {run, request.density, request.cycles}, layout, data);
            QString defaultPath = ReportFilePath(session.tm.ReportFolder(), run.runId, kindOfReport);
            defaultPath.replace(defaultPath.size() - 4, 4, FormatSuffix(format));
            WriteTableOutput(ctx, format, output, defaultPath, {}, tables.years, tables.joined);
            return CliOk;
        }
        if (output.isEmpty())
            request.reportPath = ReportFilePath(session.tm.ReportFolder(), run.runId, kindOfReport);
        else if (output != QLatin1String("-"))
            request.reportPath = output;

        StandStockData data(layout, session.tm.db.NumSpecies);
        const CompiledStandStockReport report = CompileStandStockReport(session.tm.db, session.questions, request, layout, data);
        if (!report.compiled || report.text.isEmpty())
            return CliFailure;   // what went wrong has been told on stderr
        if (output == QLatin1String("-"))
            ctx.out << report.text;
        else if (output.isEmpty())
            ctx.out << report.ReportFile << '\n';
        return CliOk;
    }
};

}  // namespace

std::unique_ptr<Command> MakeReportCommand()
{
    return std::make_unique<ReportCommand>();
}

}  // namespace sendrel
