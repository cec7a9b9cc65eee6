// Species composition through time on a large run: 1,000,000 standing tree records and a
// harvested list of 1,000,000 more, in 20 cycles of 11 species.
//
//   bench_composition [--db PATH] [--cli PATH] [--repeat N] [--skip-plan]
//
// Measures the filling of the four charts (CalcStandLevelsReport), the composition report
// (tables and file), sendrel-cli's report composition and chart composition as whole processes,
// and, side by side on the same run, the per-point statements against the one pass over the run,
// with a check that both give the same numbers to the last bit.

#include "BenchCommon.h"

#include "base/ScriptedQuestions.h"
#include "domain/composition/StandLevelsReport.h"
#include "domain/composition/StandLevelsSeries.h"
#include "store/RunStore.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <sys/resource.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <vector>

using namespace sendrel;

namespace {

constexpr int kCycles = 20;
constexpr int kTreesPerCycle = 50000;
constexpr int kHarvestedPerCycle = 50000;
constexpr int kSpecies = 11;
const QString kRun = QStringLiteral("BIG");

struct Timing {
    double wallMs;
    double cpuMs;
};

// The best and the median of n runs: the machine may be shared.
void report(const char *what, std::vector<Timing> t)
{
    std::sort(t.begin(), t.end(), [](const Timing &a, const Timing &b) { return a.wallMs < b.wallMs; });
    const Timing &median = t[t.size() / 2];
    std::printf("%-44s best %8.0f ms wall %8.0f ms cpu   median %8.0f ms wall %8.0f ms cpu\n", what, t.front().wallMs, t.front().cpuMs,
                median.wallMs, median.cpuMs);
}

Timing measure(const std::function<void()> &work)
{
    QElapsedTimer wall;
    wall.start();
    const double cpu = bench::ThreadCpuMs();
    work();
    return {static_cast<double>(wall.nsecsElapsed()) / 1e6, bench::ThreadCpuMs() - cpu};
}

double childrenCpuMs()
{
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    return (usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) * 1e3 + (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e3;
}

// One whole sendrel-cli process, with a home of its own so that no user's settings take part.
Timing runTool(const QString &cli, const QString &home, const QStringList &arguments)
{
    QProcess tool;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("HOME"), home);
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), home + QStringLiteral("/config"));
    env.insert(QStringLiteral("XDG_RUNTIME_DIR"), home);
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    tool.setProcessEnvironment(env);
    const double cpu = childrenCpuMs();
    QElapsedTimer wall;
    wall.start();
    tool.start(cli, arguments);
    if (!tool.waitForFinished(600000) || tool.exitCode() != 0) {
        std::fprintf(stderr, "sendrel-cli %s failed: %s\n", qPrintable(arguments.join(QLatin1Char(' '))), tool.readAllStandardError().constData());
        std::exit(1);
    }
    return {static_cast<double>(wall.nsecsElapsed()) / 1e6, childrenCpuMs() - cpu};
}

bool sameBits(const StandLevelsSums &a, const StandLevelsSums &b, int &differing)
{
    differing = 0;
    if (a.cells.size() != b.cells.size() || a.species != b.species || a.cycles.size() != b.cycles.size())
        return false;
    for (qsizetype i = 0; i < a.cells.size(); ++i) {
        const StandLevelsCell &x = a.cells[i];
        const StandLevelsCell &y = b.cells[i];
        if (x.found != y.found || std::memcmp(&x.sph, &y.sph, sizeof(double)) != 0 || std::memcmp(&x.basalArea, &y.basalArea, sizeof(double)) != 0
            || std::memcmp(&x.totalVol, &y.totalVol, sizeof(double)) != 0)
            ++differing;
    }
    return differing == 0;
}

}  // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption dbOption(QStringLiteral("db"), QStringLiteral("Run database to make once and reuse."), QStringLiteral("PATH"));
    const QCommandLineOption cliOption(QStringLiteral("cli"), QStringLiteral("sendrel-cli to time (default: beside this build's bench folder)."),
                                       QStringLiteral("PATH"));
    const QCommandLineOption repeatOption(QStringLiteral("repeat"), QStringLiteral("Runs of each measurement (default 3)."), QStringLiteral("N"));
    const QCommandLineOption skipPlanOption(QStringLiteral("skip-plan"), QStringLiteral("Leave out the per-point statements (some ten seconds)."));
    bench::ParseOptions(parser, {dbOption, cliOption, repeatOption, skipPlanOption},
                        QStringLiteral("Species composition of a 1,000,000-record run with a 1,000,000-record harvested list."));
    QTemporaryDir dir;
    const QString path = parser.isSet(dbOption) ? parser.value(dbOption) : dir.filePath(kGameDBFileName);
    const QString cli = parser.isSet(cliOption) ? parser.value(cliOption)
                                                : QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("../bin/sendrel-cli"));
    const int repeat = parser.isSet(repeatOption) ? std::max(1, parser.value(repeatOption).toInt()) : 3;

    if (!QFileInfo::exists(path)) {
        QElapsedTimer fill;
        fill.start();
        bench::MakeLargeRun(path, kRun, kCycles, kTreesPerCycle, kSpecies, true, kHarvestedPerCycle);
        // The program never analyses its database: the run is measured as a user's file stands.
        clsDBEngine engine;
        engine.PathToDB = path;
        engine.OpenDB();
        Statement(engine, QStringLiteral("DROP TABLE IF EXISTS sqlite_stat1")).run();
        engine.CloseDB();
        std::printf("made %d standing and %d harvested records in %lld ms\n", kCycles * kTreesPerCycle, kCycles * kHarvestedPerCycle,
                    static_cast<long long>(fill.elapsed()));
    }

    RunStore db;
    db.open(path);
    ScriptedQuestions questions;
    std::array<ChartData, kStandLevelsCharts> charts;
    const StandLevelsCharts pointers{&charts[0], &charts[1], &charts[2], &charts[3]};
    StandLevelsState state = CalcStandLevelsReport(db, questions, kRun, QStringLiteral("S"), pointers);   // warms the file cache
    std::printf("%lld points, %lld series per chart\n", static_cast<long long>(charts[0].ChartPointCount()),
                static_cast<long long>(charts[0].ChartSeriesCount()));

    std::vector<Timing> calc;
    for (int i = 0; i < repeat; ++i)
        calc.push_back(measure([&] { state = CalcStandLevelsReport(db, questions, kRun, QStringLiteral("S"), pointers); }));
    report("CalcStandLevelsReport", calc);

    std::vector<Timing> tables;
    for (int i = 0; i < repeat; ++i) {
        StandLevelsReportRequest request;
        request.This_RunId = kRun;
        request.This_SorH = QStringLiteral("S");
        request.statistic = StandLevelsStatistic::MerchVol;
        request.title = QStringLiteral("BIG: Gross Total Volume by Species");
        request.CycleRS = state.CycleRS;
        request.SpeciesListRS = state.SpeciesListRS;
        request.reportPath = ReportFilePath(dir.path(), kRun, ReportKind::Species);
        questions.answerReportText(true);
        bool compiled = false;
        tables.push_back(measure([&] { compiled = CompileStandLevelsReport(db, questions, request).compiled; }));
        if (!compiled) {
            std::fprintf(stderr, "report failed: %s\n", qPrintable(questions.messageTexts().join(QLatin1Char('|'))));
            return 1;
        }
    }
    report("report tables and file", tables);

    if (QFileInfo::exists(cli)) {
        const QString home = dir.filePath(QStringLiteral("home"));
        QDir().mkpath(home);
        std::vector<Timing> reportTool;
        std::vector<Timing> chartTool;
        for (int i = 0; i < repeat; ++i) {
            reportTool.push_back(runTool(cli, home, {QStringLiteral("--db"), path, QStringLiteral("report"), QStringLiteral("composition"), kRun,
                                                     QStringLiteral("--kind"), QStringLiteral("S"), QStringLiteral("-o"), dir.filePath(QStringLiteral("r.txt"))}));
            chartTool.push_back(runTool(cli, home, {QStringLiteral("--db"), path, QStringLiteral("chart"), QStringLiteral("composition"), kRun,
                                                    QStringLiteral("--kind"), QStringLiteral("S"), QStringLiteral("-o"), dir.filePath(QStringLiteral("c.png"))}));
        }
        report("sendrel-cli report composition (process)", reportTool);
        report("sendrel-cli chart composition (process)", chartTool);
    } else {
        std::printf("no sendrel-cli at %s: the whole-process figures are left out\n", qPrintable(cli));
    }

    // Side by side: the sums alone, then filled into the charts.
    StandLevelsSums fast;
    const Timing one = measure([&] { fast = ReadStandLevelsSums(db, kRun, QStringLiteral("S")); });
    std::printf("%-44s %8.0f ms wall %8.0f ms cpu\n", "one pass over the run", one.wallMs, one.cpuMs);
    if (!parser.isSet(skipPlanOption)) {
        StandLevelsSums plan;
        const Timing perPoint = measure([&] { plan = ReadStandLevelsSumsPerPoint(db, kRun, QStringLiteral("S")); });
        const qsizetype statements = plan.cycles.size() * plan.passes * plan.species.size();
        std::printf("%-44s %8.0f ms wall %8.0f ms cpu (%lld statements)\n", "per-point statements", perPoint.wallMs, perPoint.cpuMs,
                    static_cast<long long>(statements));
        std::printf("one pass faster by %.1f times (wall), %.1f times (cpu)\n", perPoint.wallMs / one.wallMs, perPoint.cpuMs / one.cpuMs);
        int differing = 0;
        const bool same = sameBits(fast, plan, differing);
        std::printf("same numbers to the last bit: %s (%lld values, %d cells differ)\n", same ? "yes" : "NO",
                    static_cast<long long>(fast.cells.size() * 3), differing);
        if (!same)
            return 1;
    }
    std::printf("load average: %s\n", bench::LoadAverage().constData());
    db.close();
    return 0;
}
