// What a large run costs on disk and what gives the space back: imports a generated list of
// --records tree records (and a run of --staying records that stays) into a new run database, reads the whole
// file as the check ahead of an import's or a delete's first write does, deletes the large run,
// then compacts. Prints the bytes of the file and of its write-ahead log after each step, and
// each step's time.
//
//   bench_compact [--records N] [--staying N] [--cycles N] [--keep DIR]

#include "BenchCommon.h"

#include "cli/CliQuestions.h"
#include "domain/import/ImportTreeList.h"
#include "domain/import/TreeListWriter.h"
#include "store/RunStore.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cstdio>

using namespace sendrel;

namespace {

QString sizes(const QString &path)
{
    const auto mb = [](qint64 bytes) { return QString::number(static_cast<double>(bytes) / 1e6, 'f', 1); };
    return QStringLiteral("file %1 MB + log %2 MB").arg(mb(QFileInfo(path).size()), mb(QFileInfo(path + QStringLiteral("-wal")).size()));
}

void step(const char *what, const QElapsedTimer &timer, const QString &path)
{
    std::printf("%-34s %8.2f s   %s\n", what, static_cast<double>(timer.nsecsElapsed()) / 1e9, qPrintable(sizes(path)));
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption records(QStringLiteral("records"), QStringLiteral("Tree records of the large run."), QStringLiteral("N"),
                                     QStringLiteral("3000000"));
    const QCommandLineOption cycles(QStringLiteral("cycles"), QStringLiteral("Cycles of the large run."), QStringLiteral("N"),
                                    QStringLiteral("10"));
    const QCommandLineOption staying(QStringLiteral("staying"), QStringLiteral("Tree records of the run that stays."), QStringLiteral("N"),
                                     QStringLiteral("1000"));
    const QCommandLineOption keep(QStringLiteral("keep"), QStringLiteral("Work in DIR and leave it behind."), QStringLiteral("DIR"));
    bench::ParseOptions(parser, {records, staying, cycles, keep},
                        QStringLiteral("Disk space of a large run: import, check, delete, compact."));

    QTemporaryDir temporary;
    const QString dir = parser.isSet(keep) ? parser.value(keep) : temporary.path();
    QDir().mkpath(dir);
    const QString db = QDir(dir).filePath(QStringLiteral("tolv_game.mdb"));
    const QString large = QDir(dir).filePath(QStringLiteral("large.lst"));
    const QString small = QDir(dir).filePath(QStringLiteral("small.lst"));
    QFile::remove(db);

    SampleStandOptions options;
    options.cycles = parser.value(cycles).toInt();
    options.recordsPerCycle = parser.value(records).toInt() / options.cycles;
    WriteSampleTreeListFiles(options, large, QDir(dir).filePath(QStringLiteral("large-h.lst")));
    options.recordsPerCycle = qMax(1, parser.value(staying).toInt() / options.cycles);
    WriteSampleTreeListFiles(options, small, QDir(dir).filePath(QStringLiteral("small-h.lst")));
    std::printf("bench_compact: %d cycles of %d records, a run of %d records that stays, load average %s\n", options.cycles,
                parser.value(records).toInt() / options.cycles, options.recordsPerCycle * options.cycles, bench::LoadAverage().constData());

    CreateRunDatabase(db);
    RunStore store;
    store.open(db);
    QTextStream err(stderr);
    CliQuestions questions(err);
    QElapsedTimer timer;
    try {
        ImportTreeList(store, questions, small, RunKind::Standing, QStringLiteral("KEEP"));
        timer.start();
        const ImportResult imported = ImportTreeList(store, questions, large, RunKind::Standing, QStringLiteral("LARGE"));
        if (!imported.completed())
            return 1;
        step(qPrintable(QStringLiteral("import of %1 records").arg(imported.treeRecordsRead)), timer, db);
        timer.start();
        store.close();
        store.open(db);
        step("closed and opened again", timer, db);
        // Without the note of the last whole check, as after a write by another program.
        QFile::remove(db + QStringLiteral("-checked"));
        timer.start();
        store.checkNotDamaged();
        step("check of every page", timer, db);
        timer.start();
        store.deleteRun({QStringLiteral("LARGE"), RunKind::Standing});
        step("delete of the large run", timer, db);
        timer.start();
        const CompactResult compacted = store.compact();
        step("compact", timer, db);
        std::printf("compact gave back %.1f MB; load average %s\n", static_cast<double>(compacted.bytesBefore - compacted.bytesAfter) / 1e6,
                    bench::LoadAverage().constData());
    } catch (const SendrelError &e) {
        std::fprintf(stderr, "%s\n", qPrintable(e.description()));
        return 1;
    }
    return 0;
}
