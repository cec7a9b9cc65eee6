#include "cli/Commands.h"

#include "app/FolderLocation.h"
#include "base/SendrelError.h"
#include "base/Settings.h"
#include "domain/import/TreeListWriter.h"

#include <QCoreApplication>
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
        throw RefusedValue(name, QStringLiteral("a number from %1 to %2").arg(minimum).arg(maximum), parser.value(name));
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

// What an installer does for each user: the first start's Data and Work folders, at their
// defaults under the documents folder, filled from the installation. Folders the settings name
// already are kept, and so are files a user has there already.
class SetupFoldersCommand : public Command {
public:
    QString name() const override { return QStringLiteral("setup-folders"); }
    QString synopsis() const override { return QStringLiteral("[--installation FOLDER]"); }
    QString summary() const override
    {
        return QStringLiteral("Sets up the user's Data and Work folders as a first start does with its defaults (under the "
                              "documents folder, filled from the installation), unless the settings name existing ones.");
    }
    QList<QCommandLineOption> options() const override
    {
        return {QCommandLineOption(QStringLiteral("installation"),
                                   QStringLiteral("The installation whose Data and Work files are copied (default: this program's)."),
                                   QStringLiteral("FOLDER"))};
    }
    int run(CliContext &ctx, const QCommandLineParser &parser, const QStringList &) override
    {
        // Every question takes its default, without a word: Yes to the default folder, No to
        // overwriting a file the user has.
        struct Defaults : CliQuestions {
            using CliQuestions::CliQuestions;
            Answer message(const MessageRequest &request) override { return request.defaultAnswer; }
        };
        SettingsStore store;
        Defaults questions(ctx.err);
        TreeModel tm(store, questions);
        tm.ProgramDir = parser.isSet(QStringLiteral("installation"))
                            ? QDir(parser.value(QStringLiteral("installation"))).filePath(QStringLiteral("bin"))
                            : QCoreApplication::applicationDirPath();
        tm.settings.LoadSettings(store, tm.ProgramDir);
        if (!LocateDirectories(tm))
            throw SendrelError(ErrNo::PathNotFound, QStringLiteral("sendrel-cli"), QStringLiteral("The folders could not be set up."));
        ctx.out << "DataDir\t" << tm.settings.DataDir << "\nWorkDir\t" << tm.settings.WorkDir << '\n';
        return CliOk;
    }
};

}  // namespace

std::unique_ptr<Command> MakeGenerateSampleCommand()
{
    return std::make_unique<GenerateSampleCommand>();
}

std::unique_ptr<Command> MakeSetupFoldersCommand()
{
    return std::make_unique<SetupFoldersCommand>();
}

}  // namespace sendrel
