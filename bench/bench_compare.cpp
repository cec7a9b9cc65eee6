// The comparison of 8 runs of 1,000,000 standing records (20 cycles of 50,000, 11 species) and
// 200,000 harvested records each: the summary comparison, the difference stand table of one year
// and the chart PDF of every statistic, each as a whole sendrel-cli process, and the two tables
// in process. Prints the best and the median of wall and CPU time.
//
//   bench_compare [--db PATH] [--cli PATH] [--repeat N]
//
// With --db the run database is made there once (8 runs, about 10 minutes) and reused.

#include "BenchCommon.h"

#include "domain/compare/ComparisonTables.h"
#include "domain/standstock/ClassLayout.h"
#include "store/RunStore.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

using namespace sendrel;

namespace {

constexpr int kRuns = 8;
constexpr int kCycles = 20;
constexpr int kTreesPerCycle = 50000;
constexpr int kHarvestedPerCycle = 10000;
constexpr int kSpecies = 11;

QStringList runIds()
{
    QStringList ids;
    for (int r = 1; r <= kRuns; ++r)
        ids.append(QStringLiteral("T%1").arg(r));
    return ids;
}

}  // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    QTemporaryDir dir;
    const bench::StandardOptions options =
        bench::ParseStandardOptions(parser, dir, QStringLiteral("Comparison of 8 runs of 1,200,000 records each."), 5);
    const QString &path = options.dbPath;
    const QString &cli = options.cli;
    const int repeat = options.repeat;

    if (!QFileInfo::exists(path)) {
        QElapsedTimer fill;
        fill.start();
        CreateRunDatabase(path);
        clsDBEngine engine;
        engine.PathToDB = path;
        engine.OpenDB();
        for (int r = 0; r < kRuns; ++r)
            bench::AddLargeRun(engine, runIds().at(r), kCycles, kTreesPerCycle, kSpecies, true, kHarvestedPerCycle, 20240501 + r);
        Statement(engine, QStringLiteral("ANALYZE")).run();
        engine.CloseDB();
        std::printf("made %d runs of %d standing and %d harvested records in %lld ms\n", kRuns, kCycles * kTreesPerCycle,
                    kCycles * kHarvestedPerCycle, static_cast<long long>(fill.elapsed()));
    }

    const QString year = QStringLiteral("2100");  // cycle 11 of 20
    {
        RunStore db;
        db.open(path);
        ClassLayout layout;
        if (!layout.SetClasses(u"0", u"5", u"16").passed())
            qFatal("layout refused");
        std::vector<bench::Timing> summary, table;
        for (int i = 0; i < repeat; ++i) {
            Comparison comparison;
            summary.push_back(bench::measure([&] { SummaryComparisonDocument(comparison = ReadComparison(db, runIds())); }));
            table.push_back(bench::measure([&] { DifferenceTableDocument(db, comparison, layout, year.toInt(), true); }));
        }
        bench::report("summary comparison, in process", summary);
        bench::report("difference stand table of one year, in process", table);
        db.close();
    }

    if (QFileInfo::exists(cli)) {
        const QStringList common = QStringList{QStringLiteral("--db"), path};
        std::vector<bench::Timing> summary, table, charts;
        for (int i = 0; i < repeat; ++i) {
            summary.push_back(bench::runTool(cli, dir.path(),
                                             common + QStringList{QStringLiteral("compare")} + runIds() +
                                                 QStringList{QStringLiteral("-o"), dir.filePath(QStringLiteral("c.txt"))}));
            table.push_back(bench::runTool(cli, dir.path(),
                                           common + QStringList{QStringLiteral("compare")} + runIds() +
                                               QStringList{QStringLiteral("--table"), QStringLiteral("stand"), QStringLiteral("--year"),
                                                           year, QStringLiteral("--classes"), QStringLiteral("0,5,16"),
                                                           QStringLiteral("-o"), dir.filePath(QStringLiteral("t.txt"))}));
            charts.push_back(bench::runTool(cli, dir.path(),
                                            common + QStringList{QStringLiteral("chart"), QStringLiteral("compare")} + runIds() +
                                                QStringList{QStringLiteral("-o"), dir.filePath(QStringLiteral("all.pdf"))}));
        }
        bench::report("sendrel-cli compare (summary), whole process", summary);
        bench::report("sendrel-cli compare --table stand, whole process", table);
        bench::report("sendrel-cli chart compare, every statistic to PDF", charts);
    }
    std::printf("load average: %s\n", bench::LoadAverage().constData());
    return 0;
}
