#include "cli/Cli.h"

#include "import/TreeListWriter.h"

namespace sendrel {

namespace {
const QString kGenerateUsage = QStringLiteral(
    "usage: sendrel-cli generate-sample STANDING.lst HARVESTED.lst [--seed N] [--run-name NAME] [--cycles N] [--records N]");

bool takeNumber(QStringList &args, const QString &name, int minimum, int maximum, int &value, QString &problem)
{
    QString text;
    bool present = false;
    if (!TakeOption(args, name, text, present)) {
        problem = name + QStringLiteral(" lacks its value");
        return false;
    }
    if (!present)
        return true;
    bool ok = false;
    const int n = text.toInt(&ok);
    if (!ok || n < minimum || n > maximum) {
        problem = QStringLiteral("%1 takes a number from %2 to %3").arg(name).arg(minimum).arg(maximum);
        return false;
    }
    value = n;
    return true;
}
}  // namespace

// A developer's extra: writes the sample standing and harvested lists of a made-up stand.
int CliGenerateSample(CliContext &ctx)
{
    QStringList args = ctx.args;
    SampleStandOptions options;
    int seed = 1;
    QString problem;
    QString runName;
    bool hasRunName = false;
    if (!takeNumber(args, QStringLiteral("--seed"), 0, 2147483647, seed, problem)
        || !takeNumber(args, QStringLiteral("--cycles"), 2, 99, options.cycles, problem)
        || !takeNumber(args, QStringLiteral("--records"), 1, 9999999, options.recordsPerCycle, problem))
        return CliUsageError(ctx, problem + QLatin1Char('\n') + kGenerateUsage);
    if (!TakeOption(args, QStringLiteral("--run-name"), runName, hasRunName))
        return CliUsageError(ctx, QStringLiteral("--run-name lacks its value\n") + kGenerateUsage);
    if (args.size() != 2 || args.first().startsWith(QLatin1String("--")) || args.last().startsWith(QLatin1String("--")))
        return CliUsageError(ctx, QStringLiteral("give the two files to write\n") + kGenerateUsage);
    options.seed = static_cast<quint32>(seed);
    if (hasRunName)
        options.runName = runName;
    if (options.thinningCycle > options.cycles)
        options.thinningCycle = options.cycles;
    const SampleListCounts counts = WriteSampleTreeListFiles(options, args.at(0), args.at(1));
    ctx.out << counts.cycles << '\t' << counts.standingRecords << '\t' << counts.harvestedRecords << '\n';
    return CliOk;
}

}  // namespace sendrel
