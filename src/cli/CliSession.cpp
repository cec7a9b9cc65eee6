#include "cli/Commands.h"

#include "app/GameDB.h"
#include "base/SendrelError.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace sendrel {

std::vector<std::unique_ptr<Command>> AllCommands()
{
    std::vector<std::unique_ptr<Command>> commands;
    commands.push_back(MakeInitCommand());
    commands.push_back(MakeImportCommand());
    commands.push_back(MakeRunsCommand());
    commands.push_back(MakeYearsCommand());
    commands.push_back(MakeDeleteCommand());
    commands.push_back(MakeDescribeCommand());
    commands.push_back(MakeReportCommand());
    commands.push_back(MakeChartCommand());
    commands.push_back(MakeSummaryCommand());
    commands.push_back(MakeCompareCommand());
    commands.push_back(MakeCompactCommand());
    commands.push_back(MakeCopyCommand());
    commands.push_back(MakeBackupCommand());
    commands.push_back(MakeRestoreCommand());
    commands.push_back(MakeGenerateSampleCommand());
    commands.push_back(MakeSetupFoldersCommand());
    return commands;
}

CliSession::CliSession(CliContext &c) : ctx(c), questions(c.err), tm(settingsStore, questions)
{
    // A command's failure ends the command, not the process behind the caller's back: the
    // message the desktop would have shown has gone to stderr already.
    tm.EndProcess = [](int) { throw SendrelError(ErrNo::InvalidCall, QStringLiteral("sendrel-cli"), QStringLiteral("Stopped.")); };
    tm.ProgramDir = QCoreApplication::applicationDirPath();
    tm.settings.LoadSettings(tm.settingsStore, tm.ProgramDir);
    tm.DBEngine.setLockWait(ctx.lockWait.value_or(std::chrono::milliseconds(static_cast<qint64>(tm.settings.LockWaitSeconds * 1000))));
}

CliSession::~CliSession()
{
    CloseGameDB(tm);
}

void CliSession::open()
{
    if (ctx.dbPath.isEmpty()) {
        throw SendrelError(ErrNo::FileNotFound, QStringLiteral("sendrel-cli"),
                           QStringLiteral("No run database given: name one with --db PATH (the settings name no Data folder)."));
    }
    const bool server = clsDBEngine::IsServerDatabase(ctx.dbPath);
    if (!server && !QFileInfo(ctx.dbPath).isFile()) {
        throw SendrelError(ErrNo::FileNotFound, QStringLiteral("sendrel-cli"),
                           QStringLiteral("There is no run database at %1.").arg(QDir::toNativeSeparators(ctx.dbPath)));
    }
    tm.GameDBPath = ctx.dbPath;
    if (!server)
        tm.settings.DataDir = QDir::toNativeSeparators(QFileInfo(ctx.dbPath).absolutePath());
    try {
        tm.db.open(ctx.dbPath);
    } catch (const SendrelError &e) {
        throw e.withDescription(QStringLiteral("Cannot open the database.\n") + e.description());
    }
    TellOpeningNote(tm);
    ReadSpecies(tm);
}

namespace {
SendrelError noSuchRun(const QString &name, const QString &dbPath)
{
    return SendrelError(ErrNo::InvalidCall, QStringLiteral("sendrel-cli"),
                        QStringLiteral("There is no run %1 in %2.").arg(EscapedForLine(name), QDir::toNativeSeparators(dbPath)));
}
}  // namespace

UnitSystem CliSession::units() const
{
    return UnitSystemOfSetting(ctx.units.value_or(tm.settings.Units));
}

RunKey CliSession::requireRun(const QString &runId, RunKind kind)
{
    const RunKey run{TakenRunId(runId), kind};
    const QString stored = tm.db.storedRunId(run);
    if (stored.isNull())
        throw noSuchRun(run.displayName(), ctx.dbPath);
    return {stored, kind};
}

QString CliSession::requireRunId(const QString &runId)
{
    const QString taken = TakenRunId(runId);
    const QString stored = tm.db.storedRunId(taken);
    if (stored.isNull())
        throw noSuchRun(taken, ctx.dbPath);
    return stored;
}

}  // namespace sendrel
