#pragma once

// What the benchmarks share: their options (paths given explicitly, never an option taken for
// one), a large run made straight into a database, and clocks.

#include "store/CycleSums.h"
#include "store/DBEngine.h"
#include "store/Schema.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <sys/resource.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <vector>

namespace sendrel::bench {

// Parses the benchmark's options; an option value that begins with "-" (another option taken for
// a path) or a stray argument ends the program with its usage.
inline void ParseOptions(QCommandLineParser &parser, const QList<QCommandLineOption> &options, const QString &description)
{
    parser.setApplicationDescription(description);
    parser.addOptions(options);
    parser.addHelpOption();
    const bool parsed = parser.parse(QCoreApplication::arguments());
    if (!parsed || !parser.positionalArguments().isEmpty()) {
        // The parser has no error text for a stray argument: that one is ours to name.
        const QString error =
            parsed ? QStringLiteral("unexpected argument: %1").arg(parser.positionalArguments().constFirst()) : parser.errorText();
        std::fprintf(stderr, "%s\n%s", qPrintable(error), qPrintable(parser.helpText()));
        std::exit(2);
    }
    if (parser.isSet(QStringLiteral("help"))) {
        std::printf("%s", qPrintable(parser.helpText()));
        std::exit(0);
    }
    for (const QCommandLineOption &o : options) {
        if (!o.valueName().isEmpty() && parser.isSet(o) && parser.value(o).startsWith(QLatin1Char('-'))) {
            std::fprintf(stderr, "--%s needs a value, not '%s'\n", qPrintable(o.names().constLast()), qPrintable(parser.value(o)));
            std::exit(2);
        }
    }
}

// The options the benchmarks share, as parsed.
struct StandardOptions {
    QString dbPath;  // --db: the run database made once and reused; by default one in the temporary folder
    QString cli;  // --cli: the sendrel-cli timed; by default this build's
    int repeat = 1;  // --repeat: runs of each measure, at least 1
};

// Parses --db and, where defaultRepeat is above 0, --cli and --repeat, beside the benchmark's own
// options.
inline StandardOptions ParseStandardOptions(QCommandLineParser &parser, const QTemporaryDir &dir, const QString &description,
                                            int defaultRepeat, const QList<QCommandLineOption> &own = {})
{
    const QCommandLineOption db(QStringLiteral("db"), QStringLiteral("Run database to make once and reuse."), QStringLiteral("PATH"));
    const QCommandLineOption cli(QStringLiteral("cli"), QStringLiteral("sendrel-cli to time (default: beside this build's bench folder)."),
                                 QStringLiteral("PATH"));
    const QCommandLineOption repeat(QStringLiteral("repeat"), QStringLiteral("Runs of each measure (default %1).").arg(defaultRepeat),
                                    QStringLiteral("N"));
    QList<QCommandLineOption> options{db};
    if (defaultRepeat > 0)
        options << cli << repeat;
    ParseOptions(parser, options + own, description);
    StandardOptions chosen;
    chosen.dbPath = parser.isSet(db) ? parser.value(db) : dir.filePath(kGameDBFileName);
    chosen.cli =
        parser.isSet(cli) ? parser.value(cli) : QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("../bin/sendrel-cli"));
    chosen.repeat = parser.isSet(repeat) ? std::max(1, parser.value(repeat).toInt()) : std::max(1, defaultRepeat);
    return chosen;
}

// CPU time of this thread: the machine may be shared, and wall time then measures the others too.
inline double ThreadCpuMs()
{
    timespec ts{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return ts.tv_sec * 1e3 + ts.tv_nsec / 1e6;
}

struct Timing {
    double wallMs;
    double cpuMs;
};

// The best and the median of n runs: the machine may be shared.
inline void report(const char *what, std::vector<Timing> t)
{
    std::sort(t.begin(), t.end(), [](const Timing &a, const Timing &b) { return a.wallMs < b.wallMs; });
    const Timing &median = t[t.size() / 2];
    std::printf("%-44s best %8.0f ms wall %8.0f ms cpu   median %8.0f ms wall %8.0f ms cpu\n", what, t.front().wallMs, t.front().cpuMs,
                median.wallMs, median.cpuMs);
    std::fflush(stdout);
}

inline Timing measure(const std::function<void()> &work)
{
    QElapsedTimer wall;
    wall.start();
    const double cpu = ThreadCpuMs();
    work();
    return {static_cast<double>(wall.nsecsElapsed()) / 1e6, ThreadCpuMs() - cpu};
}

inline double ChildrenCpuMs()
{
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    return (usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) * 1e3 + (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e3;
}

// One whole sendrel-cli process, with a home of its own so that no user's settings take part.
inline Timing runTool(const QString &cli, const QString &home, const QStringList &arguments)
{
    QProcess tool;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("HOME"), home);
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), home + QStringLiteral("/config"));
    env.insert(QStringLiteral("XDG_RUNTIME_DIR"), home);
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    tool.setProcessEnvironment(env);
    const double cpu = ChildrenCpuMs();
    QElapsedTimer wall;
    wall.start();
    tool.start(cli, arguments);
    if (!tool.waitForFinished(600000) || tool.exitCode() != 0) {
        std::fprintf(stderr, "sendrel-cli %s failed: %s\n", qPrintable(arguments.join(QLatin1Char(' '))),
                     tool.readAllStandardError().constData());
        std::exit(1);
    }
    return {static_cast<double>(wall.nsecsElapsed()) / 1e6, ChildrenCpuMs() - cpu};
}

inline QByteArray LoadAverage()
{
    QFile load(QStringLiteral("/proc/loadavg"));
    load.open(QIODevice::ReadOnly);
    return load.readAll().split(' ').mid(0, 3).join(' ');
}

// A large run straight into a run database: `cycles` cycles in the years 2000, 2010,
// ... of `treesPerCycle` standing records each, over `species` species; with harvest, a
// harvested list of the same Run Id whose cycles match the standing ones by year, of
// `harvestedPerCycle` records each (by default a fifth of the standing ones, removing about a
// fifth of the stems). Diameters 2 to 80 cm, volumes after a simple form factor.
inline void AddLargeRun(clsDBEngine &engine, const QString &runId, int cycles, int treesPerCycle, int species, bool harvest,
                        int harvestedPerCycle = -1, quint32 seed = 20240501)
{
    WriteTransaction transaction(engine);
    Statement run(engine, QStringLiteral("INSERT INTO Model_Run (Run_Id, Run_Date, Run_Time, Not_Used, Standing_Harvested) "
                                         "VALUES (?1, '2024-05-01', '10:00:00', 'Not Used', ?2)"));
    Statement header(engine, QStringLiteral("INSERT INTO Model_Header (Run_Id, First_Header_Number, Cycle, Cycle_Year, "
                                            "Standing_Harvested) VALUES (?1, 1, ?2, ?3, ?4)"));
    Statement tree(engine, QStringLiteral("INSERT INTO Model_Entries (Run_Id, Tree_Id, Species_Code, Trees_per_ha, Current_Diameter, "
                                          "Total_Volume, Cycle_Number, Standing_Harvested, MerchVolLessDWB) "
                                          "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9)"));
    QRandomGenerator rng(seed);
    for (const char *kind : {"S", "H"}) {
        const bool standing = kind[0] == 'S';
        if (!standing && !harvest)
            break;
        run.bind(1, runId).bind(2, QString::fromLatin1(kind)).run();
        for (int c = 1; c <= cycles; ++c) {
            header.bind(1, runId).bind(2, c).bind(3, 1990 + 10 * c).bind(4, QString::fromLatin1(kind)).run();
            const int trees = standing ? treesPerCycle : harvestedPerCycle >= 0 ? harvestedPerCycle : treesPerCycle / 5;
            for (int t = 0; t < trees; ++t) {
                const double d = 2.0 + rng.generateDouble() * 78.0;
                const double volume = 0.0003 * d * d;
                tree.bind(1, runId)
                    .bind(2, QString::number(t))
                    .bind(3, 1 + static_cast<int>(rng.bounded(species)))
                    .bind(4, 0.5 + rng.generateDouble() * 5.0)
                    .bind(5, d)
                    .bind(6, volume)
                    .bind(7, c)
                    .bind(8, QString::fromLatin1(kind))
                    .bind(9, volume * 0.9)
                    .run();
            }
        }
    }
    // The sums of each cycle and species, as the import keeps them.
    for (RunKind kind : {RunKind::Standing, RunKind::Harvested})
        WriteCycleSums(engine, {runId, kind}, SumCycleRecords(engine, {runId, kind}));
    transaction.commit();
}

// The same into a new run database at path.
inline void MakeLargeRun(const QString &path, const QString &runId, int cycles, int treesPerCycle, int species, bool harvest,
                         int harvestedPerCycle = -1)
{
    CreateRunDatabase(path);
    clsDBEngine engine;
    engine.PathToDB = path;
    engine.OpenDB();
    AddLargeRun(engine, runId, cycles, treesPerCycle, species, harvest, harvestedPerCycle);
    Statement(engine, QStringLiteral("ANALYZE")).run();
    engine.CloseDB();
}

}  // namespace sendrel::bench
