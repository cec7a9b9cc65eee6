#include "cli/Cli.h"

#include "cli/CliHeadless.h"

#include "app/Numbers.h"
#include "app/ScriptedQuestions.h"
#include "app/SendrelError.h"
#include "app/SettingsStore.h"
#include "app/ToolBox.h"
#include "app/TreeModel.h"
#include "output/ReportFile.h"
#include "standstock/ClassLayout.h"
#include "standstock/StandStockData.h"
#include "standstock/StandStockReport.h"
#include "store/GameDB.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <optional>

namespace sendrel {

namespace {

const QString kReportUsage = QStringLiteral(
    "report stand|stock RUN --kind S|H [--cycles C1,C2,..|--years Y1,Y2,..]\n"
    "      [--classes START,WIDTH,COUNT] [--title TEXT] [--description TEXT] [-o FILE|-]");

// The title box of the report dialog takes at most this many typed characters.
constexpr int kMostTitleCharacters = 50;

int reportUsage(CliContext &ctx, const QString &message)
{
    return CliCommandUsage(ctx, kReportUsage, message);
}

int failure(CliContext &ctx, const QString &message)
{
    return CliFailureMessage(ctx, message);
}

// The dialog's title and description: those of the flags, else as the dialog presets them.
// Every other message is recorded, to be told on stderr.
class ReportQuestions : public ScriptedQuestions {
public:
    std::optional<QString> title;
    std::optional<QString> description;

    bool askReportText(ReportTextRequest &request) override
    {
        if (title)
            request.title = *title;
        if (description)
            request.description = *description;
        return true;
    }
};

struct ReportOptions {
    bool density = true;
    QString runId;
    QString sorH;
    bool byCycle = true;
    QList<double> wanted;          // empty: every cycle
    QString wantedText;            // as given, for messages
    bool hasClasses = false;
    QStringList classes;
    bool hasOutput = false;
    QString output;
};

// "1,2,4" as whole numbers; false when a part is not one.
bool readNumberList(const QString &text, QList<double> &numbers)
{
    static const QRegularExpression wholeNumber(QStringLiteral("^-?[0-9]+$"));
    numbers.clear();
    for (const QString &part : text.split(QLatin1Char(','))) {
        const QString p = part.trimmed();
        if (!wholeNumber.match(p).hasMatch())
            return false;
        numbers.append(ReadNumber(p));
    }
    return !numbers.isEmpty();
}

// The run as stored (its Run Id in the stored spelling), or empty when there is none.
// What the user would have been shown, one message after the other, in the tool's line ends.
QString toldMessages(const ScriptedQuestions &questions)
{
    QStringList texts = questions.messageTexts();
    for (QString &t : texts)
        t.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    return texts.join(QLatin1Char('\n'));
}

}  // namespace

int CliReport(CliContext &ctx)
{
    QStringList args = ctx.args;
    if (args.isEmpty())
        return reportUsage(ctx, QStringLiteral("report needs stand or stock"));
    const QString what = args.takeFirst();
    if (what == QLatin1String("composition"))
        return reportUsage(ctx, QStringLiteral("report composition is not available yet"));
    if (what != QLatin1String("stand") && what != QLatin1String("stock"))
        return reportUsage(ctx, QStringLiteral("report ") + what + QStringLiteral(" is not available"));

    ReportOptions opt;
    opt.density = what == QLatin1String("stand");
    ReportQuestions questions;
    QString kind, cycles, years, classes, title, description;
    bool hasKind = false, hasCycles = false, hasYears = false, hasTitle = false, hasDescription = false;
    if (!TakeOption(args, QStringLiteral("--kind"), kind, hasKind) || !TakeOption(args, QStringLiteral("--cycles"), cycles, hasCycles)
        || !TakeOption(args, QStringLiteral("--years"), years, hasYears)
        || !TakeOption(args, QStringLiteral("--classes"), classes, opt.hasClasses)
        || !TakeOption(args, QStringLiteral("--title"), title, hasTitle)
        || !TakeOption(args, QStringLiteral("--description"), description, hasDescription)
        || !TakeOption(args, QStringLiteral("-o"), opt.output, opt.hasOutput))
        return reportUsage(ctx, QStringLiteral("an option lacks its value"));

    if (const QString fault = CheckRunAndKind(args, QStringLiteral("report"), kind, hasKind, opt.runId, opt.sorH); !fault.isEmpty())
        return reportUsage(ctx, fault);
    if (hasCycles && hasYears)
        return reportUsage(ctx, QStringLiteral("give --cycles or --years, not both"));
    if (hasCycles || hasYears) {
        opt.byCycle = hasCycles;
        opt.wantedText = hasCycles ? cycles : years;
        if (!readNumberList(opt.wantedText, opt.wanted))
            return reportUsage(ctx, (hasCycles ? QStringLiteral("--cycles") : QStringLiteral("--years"))
                                        + QStringLiteral(" takes whole numbers separated by commas"));
    }
    if (opt.hasClasses) {
        opt.classes = classes.split(QLatin1Char(','));
        if (opt.classes.size() != 3)
            return reportUsage(ctx, QStringLiteral("--classes takes START,WIDTH,COUNT"));
    }
    if (hasTitle) {
        if (title.size() > kMostTitleCharacters)
            return reportUsage(ctx, QStringLiteral("--title takes at most %1 characters, as the dialog does").arg(kMostTitleCharacters));
        questions.title = title;
    }
    if (hasDescription)
        questions.description = description;
    if (opt.hasOutput && opt.output.isEmpty())
        return reportUsage(ctx, QStringLiteral("-o needs a file, or - for the standard output"));

    // The process's state as the desktop program has it, with the flags as the answers.
    SettingsStore store;
    TreeModel tm(store, questions);
    PrepareHeadlessModel(tm, questions);

    // The layout as the window would take it from its boxes; a layout it refuses is refused here.
    ClassLayout layout;
    const ClassEntryCheck check = LayoutFromFlagsOrSettings(layout, opt.hasClasses, opt.classes, tm.settings);
    if (!check.passed()) {
        ctx.err << check.describe() << "\n";
        ctx.err.flush();
        return CliFailure;
    }

    OpenHeadlessDatabase(tm, ctx.dbPath);

    StandStockReportRequest request;
    request.This_RunId = StoredRunId(tm, opt.runId, opt.sorH);
    if (request.This_RunId.isEmpty())
        return failure(ctx, QStringLiteral("no run %1 of kind %2").arg(opt.runId, opt.sorH));
    request.This_SorH = opt.sorH;
    request.density = opt.density;

    // The selected entries of the list of years, in the list's order.
    const QVector<CycleListEntry> entries = UpdateHeaderList(tm, request.This_RunId, opt.sorH);
    for (const double w : std::as_const(opt.wanted)) {
        bool found = false;
        for (const CycleListEntry &e : entries)
            found = found || (opt.byCycle ? e.cycle == w : ReadNumber(e.yearText) == w);
        if (!found)
            return failure(ctx, QStringLiteral("run %1 has no %2 %3")
                                    .arg(request.This_RunId, opt.byCycle ? QStringLiteral("cycle") : QStringLiteral("year"), DefaultText(w)));
    }
    for (const CycleListEntry &e : entries) {
        const double key = opt.byCycle ? e.cycle : ReadNumber(e.yearText);
        if (opt.wanted.isEmpty() || opt.wanted.contains(key))
            request.cycles.append({ToInt16(e.cycle), e.yearText});
    }

    StandStockData data(layout, tm.NumSpecies);
    const CompiledStandStockReport report = CompileStandStockReport(tm, request, layout, data);
    if (!report.compiled || report.ReportFile.isEmpty()) {
        const QString told = toldMessages(questions);
        ctx.err << (told.isEmpty() ? QStringLiteral("The report was not made.") : told) << "\n";
        ctx.err.flush();
        return CliFailure;
    }

    if (!opt.hasOutput) {
        ctx.out << report.ReportFile << "\n";
        return CliOk;
    }

    // Elsewhere than its normal place: the file made there is moved, as the viewer would
    // leave nothing behind.
    QFile made(report.ReportFile);
    if (!made.open(QIODevice::ReadOnly))
        return failure(ctx, QStringLiteral("cannot read %1: %2").arg(report.ReportFile, made.errorString()));
    const QByteArray bytes = made.readAll();
    made.close();
    if (opt.output == QLatin1String("-")) {
        ctx.out << QString::fromUtf8(bytes);
        ctx.out.flush();
    } else if (QFileInfo(opt.output).absoluteFilePath() != QFileInfo(report.ReportFile).absoluteFilePath()) {
        QFile target(opt.output);
        if (!target.open(QIODevice::WriteOnly | QIODevice::Truncate) || target.write(bytes) != bytes.size() || !target.flush())
            return failure(ctx, QStringLiteral("cannot write %1: %2").arg(opt.output, target.errorString()));
        target.close();
    } else {
        return CliOk;
    }
    QFile::remove(report.ReportFile);
    return CliOk;
}

}  // namespace sendrel
