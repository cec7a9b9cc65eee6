#include "cli/Commands.h"

#include "cli/TableOutput.h"
#include "domain/summary/StandSummaryTable.h"
#include "domain/table/TableFile.h"

#include <QDir>

namespace sendrel {

namespace {

class SummaryCommand : public Command {
public:
    QString name() const override { return QStringLiteral("summary"); }
    QString synopsis() const override
    {
        return QStringLiteral("RUN --kind S|H [--format txt|csv|xlsx|json] [--definitions] [--sdi reineke|summation] [-o FILE|-]");
    }
    QString summary() const override
    {
        return QStringLiteral("The stand summary per cycle year: before harvest, removals, after harvest, periodic annual "
                              "increment (a harvested run: what each harvest took). Without -o it goes to the Work folder and "
                              "its path is printed; -o - writes it to stdout.");
    }
    QList<QCommandLineOption> options() const override
    {
        return {QCommandLineOption(QStringLiteral("kind"), QStringLiteral("Standing (S) or harvested (H) trees."), QStringLiteral("S|H")),
                QCommandLineOption(QStringLiteral("format"), QStringLiteral("txt (default, fixed columns), csv, xlsx or json."),
                                   QStringLiteral("FORMAT")),
                DefinitionsOption(),
                QCommandLineOption(QStringLiteral("sdi"),
                                   QStringLiteral("The stand density index by Reineke's formula from the mean diameter, or by summation "
                                                  "over the trees (default: the settings', reineke)."),
                                   QStringLiteral("METHOD")),
                QCommandLineOption(QStringLiteral("o"), QStringLiteral("Where the summary goes: a file, or - for stdout."),
                                   QStringLiteral("FILE"))};
    }
    int minArguments() const override { return 1; }
    int maxArguments() const override { return 1; }

    int run(CliContext &ctx, const QCommandLineParser &parser, const QStringList &args) override
    {
        const RunKind kind = KindOption(parser);
        const TableFormat format =
            FormatOption(parser, {QStringLiteral("txt"), QStringLiteral("csv"), QStringLiteral("xlsx"), QStringLiteral("json")});
        const QString output = parser.value(QStringLiteral("o"));
        if (parser.isSet(QStringLiteral("o")) && output.isEmpty())
            throw CliUsageFault{QStringLiteral("-o needs a file, or - for the standard output")};
        const bool definitions = DefinitionsAsked(parser, format);
        const QStringList methods{SdiMethodName(SdiMethod::Reineke), SdiMethodName(SdiMethod::Summation)};

        CliSession session(ctx);
        const SdiMethod method = parser.isSet(QStringLiteral("sdi"))
                                     ? static_cast<SdiMethod>(ChoiceOption(parser, QStringLiteral("sdi"), methods, 0))
                                     : SdiMethodOfSetting(session.tm.settings.SdiMethod);
        session.open();
        const StandSummary summary = ReadStandSummary(session.tm.db, session.requireRun(args.first(), kind), method);
        const QString defaultPath =
            QDir(session.tm.ReportFolder()).filePath(ExportFileStem(summary.run, QStringLiteral("Summary")) + TableFileSuffix(format));
        WriteTableOutput(ctx, format, output, defaultPath, StandSummaryDocument(summary, session.units()), definitions);
        return CliOk;
    }
};

}  // namespace

std::unique_ptr<Command> MakeSummaryCommand()
{
    return std::make_unique<SummaryCommand>();
}

}  // namespace sendrel
