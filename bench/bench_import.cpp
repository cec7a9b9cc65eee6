// Imports a generated tree list of a million records and, side by side, has Debian's sqlite3
// shell import the same rows as CSV into a copy of the same schema. Prints both times, their
// ratio and the peak memory of each process.
//
//   bench_import [--records N] [--cycles N] [--keep DIR]
//
// Each import runs in a process of its own (this program again, or sqlite3), so that times and
// peak resident memory are those of the import alone.

#include "BenchCommon.h"

#include "base/UserQuestions.h"
#include "domain/import/ImportTreeList.h"
#include "domain/import/TreeListWriter.h"
#include "store/RunStore.h"
#include "support/ScriptedQuestions.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <vector>

extern char **environ;

using namespace sendrel;

namespace {

struct ChildRun {
    int exitCode = -1;
    double wallMs = 0;
    double cpuMs = 0;  // user and system time
};

// The peak resident memory of this process. (wait4's figure for a spawned child starts from the
// parent's, so each process reports its own.)
double peakRssMb()
{
    QFile status(QStringLiteral("/proc/self/status"));
    status.open(QIODevice::ReadOnly);
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toDouble() / 1024.0;
    }
    return 0;
}

// Runs a program with stdout sent to outFile (or inherited) and measures it with wait4.
ChildRun runChild(const QStringList &argv, const QString &outFile = QString())
{
    std::vector<QByteArray> bytes;
    for (const QString &a : argv)
        bytes.push_back(a.toLocal8Bit());
    std::vector<char *> args;
    for (QByteArray &b : bytes)
        args.push_back(b.data());
    args.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    const QByteArray out = outFile.toLocal8Bit();
    if (!outFile.isEmpty())
        posix_spawn_file_actions_addopen(&actions, 1, out.constData(), O_WRONLY | O_CREAT | O_TRUNC, 0644);

    ChildRun run;
    QElapsedTimer timer;
    timer.start();
    pid_t pid = 0;
    if (posix_spawnp(&pid, args[0], &actions, nullptr, args.data(), environ) != 0) {
        std::fprintf(stderr, "cannot start %s\n", args[0]);
        posix_spawn_file_actions_destroy(&actions);
        return run;
    }
    int status = 0;
    struct rusage usage {};
    wait4(pid, &status, 0, &usage);
    run.wallMs = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    posix_spawn_file_actions_destroy(&actions);
    run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.cpuMs = (usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) * 1e3 + (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e3;
    return run;
}

// The child: one import through the core, as the desktop does it, answering the Run Id dialog.
int importChild(const QString &db, const QString &list)
{
    ScriptedQuestions questions;
    questions.answerRunId(DialogEnd::Check);
    RunStore store;
    store.open(db);

    QElapsedTimer timer;
    timer.start();
    const ImportResult r = ImportTreeList(store, questions, list, RunKind::Standing);
    const double ms = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    store.close();
    if (!r.completed()) {
        std::fprintf(stderr, "import did not complete: %s\n", qPrintable(r.detail));
        return 1;
    }
    std::printf("%.1f %lld %d %.1f\n", ms, static_cast<long long>(r.treeRecordsRead), r.cyclesRead, peakRssMb());
    return 0;
}

qint64 countRows(const QString &db)
{
    QTemporaryDir tmp;
    const QString out = tmp.filePath(QStringLiteral("count"));
    runChild({QStringLiteral("sqlite3"), db, QStringLiteral("SELECT COUNT(*) FROM Model_Entries")}, out);
    QFile f(out);
    f.open(QIODevice::ReadOnly);
    return f.readAll().trimmed().toLongLong();
}

}  // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() == 4 && args.at(1) == QLatin1String("--import-child"))
        return importChild(args.at(2), args.at(3));

    QCommandLineParser parser;
    const QCommandLineOption recordsOption(QStringLiteral("records"), QStringLiteral("Tree records (default 1000000)."),
                                           QStringLiteral("N"));
    const QCommandLineOption cyclesOption(QStringLiteral("cycles"), QStringLiteral("Cycles (default 10)."), QStringLiteral("N"));
    const QCommandLineOption keepOption(QStringLiteral("keep"), QStringLiteral("Folder to keep the files in."), QStringLiteral("DIR"));
    bench::ParseOptions(parser, {recordsOption, cyclesOption, keepOption},
                        QStringLiteral("Import of a generated tree list against sqlite3's CSV import of the same rows."));
    const qint64 records = parser.isSet(recordsOption) ? parser.value(recordsOption).toLongLong() : 1000000;
    const int cycles = parser.isSet(cyclesOption) ? parser.value(cyclesOption).toInt() : 10;
    const QString keep = parser.value(keepOption);
    if (records < 1 || cycles < 2) {
        std::fprintf(stderr, "--records must be positive and --cycles at least 2\n");
        return 2;
    }
    QTemporaryDir tmp;
    const QDir dir(keep.isEmpty() ? tmp.path() : keep);
    QDir().mkpath(dir.path());
    const QString list = dir.filePath(QStringLiteral("bench.lst"));
    const QString harvested = dir.filePath(QStringLiteral("bench_h.lst"));
    const QString ours = dir.filePath(QStringLiteral("ours.mdb"));
    const QString theirs = dir.filePath(QStringLiteral("sqlite3.mdb"));
    const QString csv = dir.filePath(QStringLiteral("rows.csv"));
    for (const QString &f : {ours, theirs})
        QFile::remove(f);

    SampleStandOptions options;
    options.cycles = cycles;
    options.recordsPerCycle = static_cast<int>(records / cycles);
    options.runName = QStringLiteral("BENCH");
    const SampleListCounts counts = WriteSampleTreeListFiles(options, list, harvested);
    std::printf("tree list: %lld records in %d cycles, %.1f MB\n", static_cast<long long>(counts.standingRecords), counts.cycles,
                static_cast<double>(QFile(list).size()) / 1e6);

    CreateRunDatabase(ours);
    CreateRunDatabase(theirs);

    const QString self = QCoreApplication::applicationFilePath();
    const QString childOut = dir.filePath(QStringLiteral("child.out"));
    const ChildRun import = runChild({self, QStringLiteral("--import-child"), ours, list}, childOut);
    QFile f(childOut);
    f.open(QIODevice::ReadOnly);
    const QList<QByteArray> parts = f.readAll().trimmed().split(' ');
    if (import.exitCode != 0 || parts.size() != 4) {
        std::fprintf(stderr, "our import failed\n");
        return 1;
    }
    const double importMs = parts.at(0).toDouble();
    const double importRssMb = parts.at(3).toDouble();

    // The same rows as CSV, written by sqlite3 itself, then imported by it.
    runChild({QStringLiteral("sqlite3"), QStringLiteral("-csv"), ours, QStringLiteral("SELECT * FROM Model_Entries")}, csv);
    const ChildRun shell =
        runChild({QStringLiteral("sqlite3"), QStringLiteral("-csv"), theirs, QStringLiteral(".import '%1' Model_Entries").arg(csv)});
    const qint64 oursRows = countRows(ours);
    const qint64 theirRows = countRows(theirs);

    std::printf("rows stored: ours %lld, sqlite3 %lld\n", static_cast<long long>(oursRows), static_cast<long long>(theirRows));
    std::printf("sendrel import: %.0f ms in the import, %.0f ms for the whole process (%.0f ms CPU), peak RSS %.1f MB\n", importMs,
                import.wallMs, import.cpuMs, importRssMb);
    std::printf("sqlite3 .import of the same rows as CSV: %.0f ms for the whole process (%.0f ms CPU)\n", shell.wallMs, shell.cpuMs);
    std::printf("ratio sqlite3 / sendrel (whole processes): %.2fx\n", shell.wallMs / import.wallMs);
    const bool ok =
        oursRows == records && theirRows == oursRows && import.wallMs < 3000 && importRssMb < 100 && shell.wallMs >= 1.5 * import.wallMs;
    // Wall times follow the machine's load: a busy machine stretches them, the CPU times less so.
    std::printf("load average at the end: %s\n", bench::LoadAverage().constData());
    std::printf("targets (under 3 s, under 100 MB, at least 1.5x): %s\n", ok ? "met" : "NOT met");
    return ok ? 0 : 1;
}
