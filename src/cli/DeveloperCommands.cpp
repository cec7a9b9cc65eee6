#include "cli/Commands.h"

#include "app/FolderLocation.h"
#include "base/SendrelError.h"
#include "base/Settings.h"
#include "domain/import/TreeListWriter.h"

#include <QDir>
#include <QFileInfo>

namespace sendrel {

namespace {

int numberOption(const QCommandLineParser &parser, const QString &name, int minimum, int maximum, int fallback)
{
    if (!parser.isSet(name))
        return fallback;
    bool ok = false;
    const int n = parser.value(name).toInt(&ok);
    if (!ok || n < minimum || n > maximum)
        throw CliUsageFault{QStringLiteral("--%1 takes a number from %2 to %3").arg(name).arg(minimum).arg(maximum)};
    return n;
}

// A developer's extra: writes the standing and harvested lists of a made-up stand.
class GenerateSampleCommand : public Command {
public:
    QString name() const override { return QStringLiteral("generate-sample"); }
    QString synopsis() const override
    {
        return QStringLiteral("STANDING.lst HARVESTED.lst [--seed N] [--run-name NAME] [--cycles N] [--records N]");
    }
    QString summary() const override
    {
        return QStringLiteral("Developer extra: writes deterministic sample tree lists of a mixed stand thinned from below.");
    }
    QList<QCommandLineOption> options() const override
    {
        return {QCommandLineOption(QStringLiteral("seed"), QStringLiteral("Seed of the made-up stand."), QStringLiteral("N")),
                QCommandLineOption(QStringLiteral("run-name"), QStringLiteral("Run name in the headers."), QStringLiteral("NAME")),
                QCommandLineOption(QStringLiteral("cycles"), QStringLiteral("Cycles, 2 to 99."), QStringLiteral("N")),
                QCommandLineOption(QStringLiteral("records"), QStringLiteral("Tree records per cycle."), QStringLiteral("N"))};
    }
    int minArguments() const override { return 2; }
    int maxArguments() const override { return 2; }
    int run(CliContext &ctx, const QCommandLineParser &parser, const QStringList &args) override
    {
        SampleStandOptions options;
        options.seed = static_cast<quint32>(numberOption(parser, QStringLiteral("seed"), 0, 2147483647, 1));
        options.cycles = numberOption(parser, QStringLiteral("cycles"), 2, 99, options.cycles);
        options.recordsPerCycle = numberOption(parser, QStringLiteral("records"), 1, 9999999, options.recordsPerCycle);
        if (parser.isSet(QStringLiteral("run-name")))
            options.runName = parser.value(QStringLiteral("run-name"));
        if (options.thinningCycle > options.cycles)
            options.thinningCycle = options.cycles;
        const SampleListCounts counts = WriteSampleTreeListFiles(options, args.at(0), args.at(1));
        ctx.out << counts.cycles << '\t' << counts.standingRecords << '\t' << counts.harvestedRecords << '\n';
        return CliOk;
    }
};

// What the suite's installer does: points the shared settings at an installation's Data and Work
// folders, so that a first start opens the bundled database. A folder already set is left alone.
class RegisterInstallationCommand : public Command {
public:
    QString name() const override { return QStringLiteral("register-installation"); }
    QString synopsis() const override { return QStringLiteral("FOLDER"); }
    QString summary() const override
    {
        return QStringLiteral("Developer extra: sets Common DataDir and WorkDir to FOLDER/Data and FOLDER/Work when they name no folder.");
    }
    int minArguments() const override { return 1; }
    int maxArguments() const override { return 1; }
    int run(CliContext &ctx, const QCommandLineParser &, const QStringList &args) override
    {
        const QString root = QFileInfo(args.first()).absoluteFilePath();
        SettingsStore store;
        for (const QString &key : {QStringLiteral("DataDir"), QStringLiteral("WorkDir")}) {
            const QString folder = root + QLatin1Char('/') + key.left(4);
            if (!PathIsDirectory(folder))
                throw SendrelError(ErrNo::PathNotFound, QStringLiteral("sendrel-cli"), folder + QStringLiteral(" is no folder."));
            const QString current = store.GetSetting(kSectionCommon, key);
            if (!current.isEmpty() && PathIsDirectory(current)) {
                ctx.out << key << "\t" << current << "\t(kept)\n";
                continue;
            }
            const QString value = PathAddBackslash(QDir::toNativeSeparators(folder));
            store.SaveSetting(kSectionCommon, key, value);
            ctx.out << key << "\t" << value << "\n";
        }
        store.sync();
        return CliOk;
    }
};

}  // namespace

std::unique_ptr<Command> MakeGenerateSampleCommand()
{
    return std::make_unique<GenerateSampleCommand>();
}

std::unique_ptr<Command> MakeRegisterInstallationCommand()
{
    return std::make_unique<RegisterInstallationCommand>();
}

}  // namespace sendrel
