// Species composition through time on a large run: 1,000,000 standing tree records and a
// harvested list of 1,000,000 more, in 20 cycles of 11 species.
//
//   bench_composition [--db PATH] [--cli PATH] [--repeat N] [--skip-plan]
//
// Measures the filling of the four charts (CalcStandLevelsReport), the composition report
// (tables and file), sendrel-cli's report composition and chart composition as whole processes,
// and, side by side on the same run, the per-point statements against the program's reading (the
// sums kept by the import, and the same summed from the records as for a run imported before
// they were kept), with a check that they give the same numbers.

#include "BenchCommon.h"
#include "PerPointPlan.h"

#include "domain/composition/StandLevelsReport.h"
#include "domain/composition/StandLevelsSeries.h"
#include "store/CycleSums.h"
#include "store/RunStore.h"
#include "support/ScriptedQuestions.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cstring>

using namespace sendrel;
using bench::measure;
using bench::report;
using bench::runTool;
using bench::Timing;

namespace {

constexpr int kCycles = 20;
constexpr int kTreesPerCycle = 50000;
constexpr int kHarvestedPerCycle = 50000;
constexpr int kSpecies = 11;
const QString kRun = QStringLiteral("BIG");

}  // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption skipPlanOption(QStringLiteral("skip-plan"),
                                            QStringLiteral("Leave out the per-point statements (some ten seconds)."));
    QTemporaryDir dir;
    const bench::StandardOptions options = bench::ParseStandardOptions(
        parser, dir, QStringLiteral("Species composition of a 1,000,000-record run with a 1,000,000-record harvested list."), 3,
        {skipPlanOption});
    const QString &path = options.dbPath;
    const QString &cli = options.cli;
    const int repeat = options.repeat;

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
    StandLevelsState state = CalcStandLevelsReport(db, questions, kRun, QStringLiteral("S"), pointers);  // warms the file cache
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
            reportTool.push_back(
                runTool(cli, home,
                        {QStringLiteral("--db"), path, QStringLiteral("report"), QStringLiteral("composition"), kRun,
                         QStringLiteral("--kind"), QStringLiteral("S"), QStringLiteral("-o"), dir.filePath(QStringLiteral("r.txt"))}));
            chartTool.push_back(
                runTool(cli, home,
                        {QStringLiteral("--db"), path, QStringLiteral("chart"), QStringLiteral("composition"), kRun,
                         QStringLiteral("--kind"), QStringLiteral("S"), QStringLiteral("-o"), dir.filePath(QStringLiteral("c.png"))}));
        }
        report("sendrel-cli report composition (process)", reportTool);
        report("sendrel-cli chart composition (process)", chartTool);
    } else {
        std::printf("no sendrel-cli at %s: the whole-process figures are left out\n", qPrintable(cli));
    }

    // Side by side: the sums alone, without the charts.
    StandLevelsSums fast;
    const Timing one = measure([&] { fast = ReadStandLevelsSums(db, kRun, QStringLiteral("S")); });
    std::printf("%-44s %8.0f ms wall %8.0f ms cpu\n", "sums read from the kept sums", one.wallMs, one.cpuMs);
    // A run imported before the sums were kept: its records are summed each time.
    const Timing summed = measure([&] {
        for (RunKind kind : {RunKind::Standing, RunKind::Harvested})
            SumCycleRecords(db.DBEngine, {kRun, kind});
    });
    std::printf("%-44s %8.0f ms wall %8.0f ms cpu\n", "the same summed from the records", summed.wallMs, summed.cpuMs);
    if (!parser.isSet(skipPlanOption)) {
        StandLevelsSums plan;
        const Timing perPoint = measure([&] { plan = ReadStandLevelsSumsPerPoint(db, kRun, QStringLiteral("S")); });
        const qsizetype statements = plan.cycles.size() * plan.passes * plan.species.size();
        std::printf("%-44s %8.0f ms wall %8.0f ms cpu (%lld statements)\n", "per-point statements", perPoint.wallMs, perPoint.cpuMs,
                    static_cast<long long>(statements));
        std::printf("kept sums faster by %.0f times (wall), %.0f times (cpu); summed from the records by %.1f times (wall)\n",
                    perPoint.wallMs / one.wallMs, perPoint.cpuMs / one.cpuMs, perPoint.wallMs / summed.wallMs);
        const int differing = DifferingCells(fast, plan);
        std::printf("same numbers (first pass to the last bit, second within rounding): %s (%lld values, %d cells differ)\n",
                    differing == 0 ? "yes" : "NO", static_cast<long long>(fast.cells.size() * 3), differing);
        if (differing != 0)
            return 1;
    }
    std::printf("load average: %s\n", bench::LoadAverage().constData());
    db.close();
    return 0;
}
