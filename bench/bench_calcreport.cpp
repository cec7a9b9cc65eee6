// CalcReport for one cycle of a large run: 1,000,000 tree records in 20 cycles of 50,000,
// 11 species, 30 diameter classes. Prints the time per cycle.
//
//   bench_calcreport [--db PATH]
//
// With --db the run database is made there once and reused by the next runs.

#include "BenchCommon.h"

#include "domain/standstock/ClassLayout.h"
#include "domain/standstock/StandStockData.h"
#include "store/RunStore.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QTemporaryDir>

#include <algorithm>
#include <vector>

using namespace sendrel;

namespace {
constexpr int kCycles = 20;
constexpr int kTreesPerCycle = 50000;
constexpr int kSpecies = 11;
}  // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    QTemporaryDir dir;
    const QString path =
        bench::ParseStandardOptions(parser, dir, QStringLiteral("CalcReport of one cycle of a 1,000,000-record run."), 0).dbPath;

    if (!QFileInfo::exists(path)) {
        QElapsedTimer fill;
        fill.start();
        bench::MakeLargeRun(path, QStringLiteral("BIG"), kCycles, kTreesPerCycle, kSpecies, false);
        std::printf("made %d records in %lld ms\n", kCycles * kTreesPerCycle, static_cast<long long>(fill.elapsed()));
    }

    RunStore db;
    db.open(path);
    ClassLayout layout;
    if (!layout.SetClasses(u"2", u"2.5", u"30").passed())
        qFatal("layout refused");
    StandStockData data(layout, db.NumSpecies);
    const RunKey run{QStringLiteral("BIG"), RunKind::Standing};

    data.CalcReport(db, run, 1);  // warm the file cache
    std::vector<double> ms;
    std::vector<double> cpu;
    for (int c = 1; c <= kCycles; ++c) {
        QElapsedTimer t;
        t.start();
        const double cpu0 = bench::ThreadCpuMs();
        data.CalcReport(db, run, static_cast<qint16>(c));
        cpu.push_back(bench::ThreadCpuMs() - cpu0);
        ms.push_back(t.nsecsElapsed() / 1e6);
        if (data.NextSpecies != kSpecies)
            qFatal("cycle %d: %d species", c, data.NextSpecies);
    }
    std::sort(ms.begin(), ms.end());
    std::sort(cpu.begin(), cpu.end());
    std::printf("CalcReport, one cycle of %d records (30 classes, %d species):\n"
                "  wall min %.1f ms, median %.1f ms, max %.1f ms\n"
                "  cpu  min %.1f ms, median %.1f ms, max %.1f ms\n"
                "load average: %s\n",
                kTreesPerCycle, kSpecies, ms.front(), ms[ms.size() / 2], ms.back(), cpu.front(), cpu[cpu.size() / 2], cpu.back(),
                bench::LoadAverage().constData());
    db.close();
    return 0;
}
