#include "cli/Commands.h"

#include "base/Numbers.h"
#include "base/SendrelError.h"
#include "cli/Selection.h"
#include "cli/TableOutput.h"
#include "domain/composition/StandLevelsReport.h"
#include "domain/output/ReportFile.h"
#include "domain/standstock/StandStockDocument.h"
#include "domain/standstock/StandStockReport.h"
#include "domain/table/TableFile.h"

#include <QDir>

namespace sendrel {

namespace {

// The title box of the report dialog takes at most this many typed characters.
constexpr int kMostTitleCharacters = 50;

const QStringList kStatistics = {QStringLiteral("sph"), QStringLiteral("basal-area"), QStringLiteral("gtv")};

class ReportCommand : public Command {
public:
    QString name() const override { return QStringLiteral("report"); }
    QString synopsis() const override
    {
        return QStringLiteral("stand|stock RUN --kind S|H [--cycles C1,C2,..|--years Y1,Y2,..] [--classes START,WIDTH,COUNT] "
                              "[--title TEXT] [--description TEXT] [--format txt|csv|xlsx] [--definitions] [-o FILE|-]\n"
                              "       sendrel-cli [--db PATH] report composition RUN --kind S|H [--statistic sph|basal-area|gtv] "
                              "[--title TEXT] [--description TEXT] [--format txt|csv|xlsx] [--definitions] [-o FILE|-]");
    }
    QString summary() const override
    {
        return QStringLiteral("Fills the report tables and writes the report file, byte for byte the desktop's: the stand or stock "
                              "table of the selected years, or the species composition of one statistic through all years. "
                              "Without -o it goes to its normal place in the Work folder and its path is printed; -o - writes it "
                              "to stdout.");
    }
    QList<QCommandLineOption> options() const override
    {
        return {QCommandLineOption(QStringLiteral("kind"), QStringLiteral("Standing (S) or harvested (H) trees."), QStringLiteral("S|H")),
                QCommandLineOption(QStringLiteral("cycles"), QStringLiteral("The cycles to report (default: all)."),
                                   QStringLiteral("C1,C2,..")),
                QCommandLineOption(QStringLiteral("years"), QStringLiteral("The calendar years to report."), QStringLiteral("Y1,Y2,..")),
                QCommandLineOption(QStringLiteral("classes"),
                                   QStringLiteral("The diameter classes (default: the settings', else 0,10,10)."),
                                   QStringLiteral("START,WIDTH,COUNT")),
                QCommandLineOption(QStringLiteral("statistic"),
                                   QStringLiteral("Composition: density (default), basal area or gross total volume."),
                                   QStringLiteral("sph|basal-area|gtv")),
                QCommandLineOption(QStringLiteral("title"), QStringLiteral("The report's title, at most 50 characters."),
                                   QStringLiteral("TEXT")),
                QCommandLineOption(QStringLiteral("description"), QStringLiteral("The report's description."), QStringLiteral("TEXT")),
                QCommandLineOption(QStringLiteral("format"),
                                   QStringLiteral("txt (default): the report file; csv or xlsx: its table as numbers. Stand and stock: "
                                                  "csv one table of all years, xlsx a sheet per year. Composition: csv the table of "
                                                  "--statistic, xlsx a sheet per statistic (SPH, basal area, GTV)."),
                                   QStringLiteral("FORMAT")),
                DefinitionsOption(),
                QCommandLineOption(QStringLiteral("o"), QStringLiteral("Where the report goes: a file, or - for stdout."),
                                   QStringLiteral("FILE"))};
    }
    int minArguments() const override { return 2; }
    int maxArguments() const override { return 2; }

    int run(CliContext &ctx, const QCommandLineParser &parser, const QStringList &args) override
    {
        const QString what = args.at(0);
        const bool composition = what == QLatin1String("composition");
        if (what != QLatin1String("stand") && what != QLatin1String("stock") && !composition)
            throw CliUsageFault{QStringLiteral("report takes stand, stock or composition, not '%1'").arg(what)};
        const RunKind kind = KindOption(parser);
        if (parser.isSet(QStringLiteral("title")) && parser.value(QStringLiteral("title")).size() > kMostTitleCharacters)
            throw CliUsageFault{QStringLiteral("--title takes at most %1 characters, as the dialog does").arg(kMostTitleCharacters)};
        if (parser.isSet(QStringLiteral("o")) && parser.value(QStringLiteral("o")).isEmpty())
            throw CliUsageFault{QStringLiteral("-o needs a file, or - for the standard output")};
        const TableFormat format = FormatOption(parser, {QStringLiteral("txt"), QStringLiteral("csv"), QStringLiteral("xlsx")});
        const bool definitions = DefinitionsAsked(parser, format);
        const QStringList ownOptions = composition
                                           ? QStringList{QStringLiteral("cycles"), QStringLiteral("years"), QStringLiteral("classes")}
                                           : QStringList{QStringLiteral("statistic")};
        for (const QString &option : ownOptions) {
            if (parser.isSet(option))
                throw CliUsageFault{QStringLiteral("--%1 is no option of report %2").arg(option, what)};
        }
        if (composition)
            return runComposition(ctx, parser, args.at(1), kind, format, definitions);

        CliSession session(ctx);
        ClassLayout layout;
        LayoutFromFlagsOrSettings(parser, session.tm.settings, layout);
        if (parser.isSet(QStringLiteral("title")))
            session.questions.reportTitle = parser.value(QStringLiteral("title"));
        if (parser.isSet(QStringLiteral("description")))
            session.questions.reportDescription = parser.value(QStringLiteral("description"));
        session.open();
        // The run as of one moment, from the look-up to the last line: another program's delete
        // comes wholly before (the run is missing) or wholly after.
        const ReadSnapshot snapshot(session.tm.db.DBEngine);
        const RunKey run = session.requireRun(args.at(1), kind);

        StandStockReportRequest request;
        request.This_RunId = run.runId;
        request.This_SorH = run.letter();
        request.density = what == QLatin1String("stand");
        // Every cycle by default: those with trees, as a harvested list has cycles without.
        const bool chosen = parser.isSet(QStringLiteral("cycles")) || parser.isSet(QStringLiteral("years"));
        for (const CycleListEntry &e : SelectedEntries(parser, UpdateHeaderList(session.tm.db, run), EscapedForLine(run.displayName()))) {
            if (chosen || CycleHasTrees(session.tm.db, run, e.cycle))
                request.cycles.append({ToInt16(e.cycle), e.yearText});
        }

        const qint16 kindOfReport = request.density ? ReportKind::Stand : ReportKind::Stock;
        const QString output = parser.value(QStringLiteral("o"));
        if (format != TableFormat::Txt) {
            StandStockData data(layout, session.tm.db.NumSpecies);
            const TableDocument document =
                CompileStandStockDocument(session.tm.db, {run, request.density, request.cycles, session.units()}, layout, data);
            const QString defaultPath =
                QDir(session.tm.ReportFolder()).filePath(ExportFileStem(run, ReportKindName(kindOfReport)) + TableFileSuffix(format));
            WriteTableOutput(ctx, format, output, defaultPath, document, definitions);
            return CliOk;
        }
        if (output.isEmpty())
            request.reportPath = ReportFilePath(session.tm.ReportFolder(), run.runId, kindOfReport);

        StandStockData data(layout, session.tm.db.NumSpecies);
        try {
            const CompiledStandStockReport report = CompileStandStockReport(session.tm.db, session.questions, request, layout, data);
            deliver(ctx, output, report.text, report.ReportFile);
        } catch (const SendrelError &e) {
            throw told(e);
        }
        return CliOk;
    }

private:
    // The composition window's "View Report", with the statistic of --statistic and the
    // dialog's presets unless --title and --description say otherwise.
    int runComposition(CliContext &ctx, const QCommandLineParser &parser, const QString &runId, RunKind kind, TableFormat format,
                       bool definitions)
    {
        const auto statistic = static_cast<StandLevelsStatistic>(ChoiceOption(parser, QStringLiteral("statistic"), kStatistics, 0));
        CliSession session(ctx);
        if (parser.isSet(QStringLiteral("title")))
            session.questions.reportTitle = parser.value(QStringLiteral("title"));
        if (parser.isSet(QStringLiteral("description")))
            session.questions.reportDescription = parser.value(QStringLiteral("description"));
        session.open();
        RunStore &db = session.tm.db;
        const ReadSnapshot snapshot(db.DBEngine);
        const RunKey run = session.requireRun(runId, kind);

        StandLevelsReportRequest request;
        request.This_RunId = run.runId;
        request.This_SorH = run.letter();
        // The description as the run browser hands it to the window.
        for (const RunRow &row : db.runs(run.runId)) {
            if (row.key == run)
                request.This_RunDesc = row.description;
        }
        request.statistic = statistic;
        request.title = StandLevelsChartTitles(session.tm.settings, statistic, run.runId).top;
        // The cycles, species and numbers that the window would find, read once: the report needs
        // no chart.
        request.sums = ReadStandLevelsCycleSums(db, run.runId, run.letter());
        request.CycleRS = request.sums->cycles;
        request.SpeciesListRS = request.sums->species;
        const QString output = parser.value(QStringLiteral("o"));
        if (format != TableFormat::Txt) {
            // The report's table as numbers, without its text.
            if (request.CycleRS.isEmpty() || request.SpeciesListRS.isEmpty())
                throw SendrelError(ErrNo::InvalidCall, QStringLiteral("sendrel-cli"),
                                   QStringLiteral("Run %1 has no cycles or no trees to report.").arg(EscapedForLine(run.displayName())));
            // The workbook holds every statistic, as the window's Export... writes it; the CSV the one asked for.
            const QString defaultPath = QDir(session.tm.ReportFolder())
                                            .filePath(ExportFileStem(run, ReportKindName(ReportKind::Species)) + TableFileSuffix(format));
            WriteTableOutput(ctx, format, output, defaultPath, StandLevelsDocument(db, *request.sums, statistic, run, session.units()),
                             definitions);
            return CliOk;
        }
        if (output.isEmpty())
            request.reportPath = ReportFilePath(session.tm.ReportFolder(), run.runId, ReportKind::Species);
        session.tm.CurrentRunId = run.runId;

        try {
            const CompiledStandLevelsReport report = CompileStandLevelsReport(db, session.questions, request);
            deliver(ctx, output, report.text, report.ReportFile);
        } catch (const SendrelError &e) {
            throw told(e);
        }
        return CliOk;
    }

    // A failed report in the words the desktop's box has for it.
    static SendrelError told(const SendrelError &e)
    {
        QString text = ReportFailureMessage(e).text;
        text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
        return e.withDescription(text);
    }

    // The report made: to stdout, to the file of -o, or its path printed when it went to its
    // place. Either file is written whole, and a failure leaves the one there as it was.
    static void deliver(CliContext &ctx, const QString &output, const QString &text, const QString &placed)
    {
        if (output == QLatin1String("-"))
            ctx.out << text;
        else if (output.isEmpty())
            ctx.out << placed << '\n';
        else
            SaveReportText(output, text);
    }
};

}  // namespace

std::unique_ptr<Command> MakeReportCommand()
{
    return std::make_unique<ReportCommand>();
}

}  // namespace sendrel
