// Small writes to a large run database: sendrel-cli's describe and an import of a small list
// (overwriting it each time), as whole processes, on a database of 10,000,000 tree records
// (10 cycles of 1,000,000, 11 species). Every write checks that the file is not damaged; the file
// is read whole only when another program has written it since the last whole check, so the first
// write after the file was made costs that read and the writes behind it do not. Also times that
// read alone.
//
//   bench_smallwrites [--db PATH] [--cli PATH] [--records N] [--repeat N]

#include "BenchCommon.h"

#include "domain/import/TreeListWriter.h"
#include "store/RunStore.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

using namespace sendrel;
using bench::report;
using bench::runTool;
using bench::Timing;

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption dbOption(QStringLiteral("db"), QStringLiteral("Make the large run database here once and reuse it."),
                                      QStringLiteral("PATH"));
    const QCommandLineOption cliOption(
        QStringLiteral("cli"), QStringLiteral("sendrel-cli to time (default: beside this build's bench folder)."), QStringLiteral("PATH"));
    const QCommandLineOption records(QStringLiteral("records"), QStringLiteral("Tree records of the large run."), QStringLiteral("N"),
                                     QStringLiteral("10000000"));
    const QCommandLineOption repeat(QStringLiteral("repeat"), QStringLiteral("Times each write is made."), QStringLiteral("N"),
                                    QStringLiteral("9"));
    bench::ParseOptions(parser, {dbOption, cliOption, records, repeat}, QStringLiteral("Small writes to a large run database."));
    const QString cli = parser.isSet(cliOption)
                            ? parser.value(cliOption)
                            : QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("../bin/sendrel-cli"));
    if (!QFileInfo::exists(cli)) {
        std::fprintf(stderr, "no sendrel-cli at %s\n", qPrintable(cli));
        return 2;
    }
    QTemporaryDir temporary;
    const QString path = parser.isSet(dbOption) ? parser.value(dbOption) : temporary.filePath(QStringLiteral("tolv_game.mdb"));
    const int cycles = 10;
    const int perCycle = parser.value(records).toInt() / cycles;
    if (!QFileInfo::exists(path)) {
        std::printf("making %d records in %s...\n", perCycle * cycles, qPrintable(path));
        std::fflush(stdout);
        bench::MakeLargeRun(path, QStringLiteral("BIG"), cycles, perCycle, 11, false);
    }
    const QString home = temporary.filePath(QStringLiteral("home"));
    QDir().mkpath(home);
    const QString small = temporary.filePath(QStringLiteral("small.lst"));
    SampleStandOptions options;
    options.cycles = 2;
    options.recordsPerCycle = 50;
    WriteSampleTreeListFiles(options, small, temporary.filePath(QStringLiteral("small-h.lst")));
    std::printf("bench_smallwrites: %s, %.0f MB, load average %s\n", qPrintable(path), static_cast<double>(QFileInfo(path).size()) / 1e6,
                bench::LoadAverage().constData());

    // As the benchmark made the file, no whole check has read it yet.
    const QString note = path + QStringLiteral("-checked");
    QFile::remove(note);
    const QStringList describe{QStringLiteral("--db"),          path,
                               QStringLiteral("describe"),      QStringLiteral("BIG"),
                               QStringLiteral("--description"), QStringLiteral("Grown without treatment")};
    report("describe, the file new to the check", {runTool(cli, home, describe)});
    std::vector<Timing> described;
    std::vector<Timing> imported;
    for (int i = 0; i < parser.value(repeat).toInt(); ++i) {
        described.push_back(runTool(cli, home, describe));
        imported.push_back(
            runTool(cli, home,
                    {QStringLiteral("--db"), path, QStringLiteral("import"), small, QStringLiteral("--kind"), QStringLiteral("S"),
                     QStringLiteral("--run-id"), QStringLiteral("SMALL"), QStringLiteral("--on-duplicate"), QStringLiteral("overwrite")}));
    }
    report("describe (process)", described);
    report("import of 100 records (process)", imported);

    RunStore store;
    store.open(path);
    QFile::remove(note);
    report("the whole check alone (every page read)", {bench::measure([&] { store.checkNotDamaged(); })});
    store.close();
    std::printf("load average %s\n", bench::LoadAverage().constData());
    return 0;
}
