// The stand summary and the export of a whole stand table, on a large run: 1,000,000 standing
// tree records in 20 cycles of 50,000, 11 species, and a harvested list of 200,000 records whose
// cycles match the standing ones by year. Prints wall and CPU time of each.
//
//   bench_summary [--db PATH] [--out FOLDER] [--only summary|export]
//
// With --db the run database is made there once and reused by the next runs; --out keeps the
// workbook written; --only runs one of the two (for a profiler).

#include "BenchCommon.h"

#include "domain/standstock/ClassLayout.h"
#include "domain/standstock/StandStockData.h"
#include "domain/standstock/StandStockDocument.h"
#include "domain/summary/StandSummary.h"
#include "domain/table/TableFile.h"
#include "store/RunStore.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTemporaryDir>

#include <algorithm>
#include <functional>
#include <vector>

using namespace sendrel;

namespace {

constexpr int kCycles = 20;
constexpr int kTreesPerCycle = 50000;
constexpr int kSpecies = 11;
constexpr int kRounds = 5;

// Runs work kRounds times after one warming round; prints min and median of wall and CPU time.
void measure(const char *what, const std::function<void()> &work)
{
    work();
    std::vector<double> wall;
    std::vector<double> cpu;
    for (int i = 0; i < kRounds; ++i) {
        QElapsedTimer t;
        t.start();
        const double cpu0 = bench::ThreadCpuMs();
        work();
        cpu.push_back(bench::ThreadCpuMs() - cpu0);
        wall.push_back(t.nsecsElapsed() / 1e6);
    }
    std::sort(wall.begin(), wall.end());
    std::sort(cpu.begin(), cpu.end());
    std::printf("%s:\n  wall min %.0f ms, median %.0f ms\n  cpu  min %.0f ms, median %.0f ms\n", what, wall.front(), wall[wall.size() / 2],
                cpu.front(), cpu[cpu.size() / 2]);
}

}  // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption outOption(QStringLiteral("out"), QStringLiteral("Folder that keeps the workbook."), QStringLiteral("FOLDER"));
    const QCommandLineOption onlyOption(QStringLiteral("only"), QStringLiteral("summary or export alone."), QStringLiteral("WHICH"));
    QTemporaryDir dir;
    const QString path =
        bench::ParseStandardOptions(parser, dir, QStringLiteral("Stand summary and stand table export of a 1,000,000-record run."), 0,
                                    {outOption, onlyOption})
            .dbPath;
    const QString workbook =
        QDir(parser.isSet(outOption) ? parser.value(outOption) : dir.path()).filePath(QStringLiteral("BIG_Stand.xlsx"));

    if (!QFileInfo::exists(path)) {
        QElapsedTimer fill;
        fill.start();
        bench::MakeLargeRun(path, QStringLiteral("BIG"), kCycles, kTreesPerCycle, kSpecies, true);
        std::printf("made %d standing and %d harvested records in %lld ms\n", kCycles * kTreesPerCycle, kCycles * kTreesPerCycle / 5,
                    static_cast<long long>(fill.elapsed()));
    }

    RunStore db;
    db.open(path);
    const RunKey run{QStringLiteral("BIG"), RunKind::Standing};
    const QString only = parser.value(onlyOption);
    if (only != QLatin1String("export"))
        measure("stand summary, 20 cycles, standing and harvested", [&] {
            const StandSummary summary = ReadStandSummary(db, run);
            if (summary.rows.size() != kCycles || !summary.hasHarvest)
                qFatal("summary of %d rows", static_cast<int>(summary.rows.size()));
        });
    // The summation method reads every record of both lists, where the rest reads the kept sums.
    if (only != QLatin1String("export"))
        measure("stand summary by the summation SDI, 20 cycles, standing and harvested", [&] {
            if (!ReadStandSummary(db, run, SdiMethod::Summation).rows.first().summedSdi.before)
                qFatal("no summed SDI");
        });

    ClassLayout layout;
    if (!layout.SetClasses(u"2", u"2.5", u"30").passed())
        qFatal("layout refused");
    StandStockData data(layout, db.NumSpecies);
    StandStockExportRequest request{run, true, {}};
    for (int c = 1; c <= kCycles; ++c)
        request.cycles.append({static_cast<qint16>(c), QString::number(1990 + 10 * c)});
    if (only != QLatin1String("summary"))
        measure("stand table of 20 years to a workbook (aggregated, written)",
                [&] { SaveTableFile(CompileStandStockDocument(db, request, layout, data), TableFormat::Xlsx, workbook); });
    std::printf("load average: %s\n", bench::LoadAverage().constData());
    db.close();
    return 0;
}
