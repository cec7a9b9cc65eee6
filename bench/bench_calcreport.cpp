// CalcReport for one cycle of a large run: 1,000,000 tree records in 20 cycles of 50,000,
// 11 species, 30 diameter classes. Run by hand; prints the time per cycle.
// With a path argument the run database is kept there and reused by the next run. With
// --order-index an index that serves the statement's order (and covers its columns) is added
// to the bench's database first, to show what the sort of the statement costs.

#include "base/ScriptedQuestions.h"
#include "base/SettingsStore.h"
#include "app/TreeModel.h"
#include "domain/standstock/ClassLayout.h"
#include "domain/standstock/StandStockData.h"
#include "app/GameDB.h"
#include "store/Schema.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <algorithm>
#include <ctime>
#include <cstdio>
#include <vector>

using namespace sendrel;

namespace {

constexpr int kCycles = 20;
constexpr int kTreesPerCycle = 50000;
constexpr int kSpecies = 11;

// CPU time of this thread: the machine may be shared, and wall time then measures the others too.
double threadCpuMs()
{
    timespec ts{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return ts.tv_sec * 1e3 + ts.tv_nsec / 1e6;
}

void makeRun(const QString &path)
{
    CreateRunDatabase(path);
    const QString connection = QStringLiteral("bench-fill");
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
        db.setDatabaseName(path);
        if (!db.open())
            qFatal("cannot open %s", qPrintable(path));
        QSqlQuery q(db);
        q.exec(QStringLiteral("PRAGMA synchronous = OFF"));
        db.transaction();
        q.exec(QStringLiteral("INSERT INTO Model_Run (Run_Id, Run_Date, Run_Time, Not_Used, Standing_Harvested) VALUES ('BIG', '', '', '', 'S')"));
        q.prepare(QStringLiteral("INSERT INTO Model_Entries (Run_Id, Tree_Id, Species_Code, Trees_per_ha, Current_Diameter, "
                                 "Total_Volume, Cycle_Number, Standing_Harvested, MerchVolLessDWB) VALUES ('BIG', ?, ?, ?, ?, ?, ?, 'S', ?)"));
        QRandomGenerator rng(20240501);
        for (int c = 1; c <= kCycles; ++c) {
            for (int t = 0; t < kTreesPerCycle; ++t) {
                const double d = 2.0 + rng.generateDouble() * 78.0;
                const double volume = 0.0003 * d * d;
                q.bindValue(0, QString::number(t));
                q.bindValue(1, 1 + static_cast<int>(rng.bounded(kSpecies)));
                q.bindValue(2, 0.5 + rng.generateDouble() * 5.0);
                q.bindValue(3, d);
                q.bindValue(4, volume);
                q.bindValue(5, c);
                q.bindValue(6, volume * 0.9);
                if (!q.exec())
                    qFatal("insert failed: %s", qPrintable(q.lastError().text()));
            }
        }
        db.commit();
        q.exec(QStringLiteral("ANALYZE"));
        q = QSqlQuery();
        db.close();
    }
    QSqlDatabase::removeDatabase(connection);
}

}  // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QStringList args = app.arguments().mid(1);
    const bool orderIndex = args.removeAll(QStringLiteral("--order-index")) > 0;
    QTemporaryDir dir;
    const QString path = !args.isEmpty() ? args.first() : dir.filePath(kGameDBFileName);

    if (!QFileInfo::exists(path)) {
        QElapsedTimer fill;
        fill.start();
        makeRun(path);
        std::printf("made %d records in %lld ms\n", kCycles * kTreesPerCycle, static_cast<long long>(fill.elapsed()));
    }

    SettingsStore store(QStringLiteral("SendrelBench"));
    ScriptedQuestions questions;
    TreeModel tm(store, questions);
    tm.DBEngine.PathToDB = path;
    tm.DBEngine.OpenDB();
    ReadSpecies(tm);
    if (orderIndex) {
        tm.DBEngine.SQLString = QStringLiteral(
            "CREATE INDEX IF NOT EXISTS Bench_Entries_Order ON Model_Entries (Run_Id, Standing_Harvested, Cycle_Number, "
            "Species_Code, Current_Diameter, Total_Volume, Trees_per_ha, MerchVolLessDWB)");
        tm.DBEngine.Execute();
    }

    ClassLayout layout;
    if (!layout.SetClasses(u"2", u"2.5", u"30").passed())
        qFatal("layout refused");
    StandStockData data(layout, tm.db.NumSpecies);

    data.CalcReport(tm, QStringLiteral("BIG"), QStringLiteral("S"), 1);   // warm the file cache
    std::vector<double> ms;
    std::vector<double> cpu;
    for (int c = 1; c <= kCycles; ++c) {
        QElapsedTimer t;
        t.start();
        const double cpu0 = threadCpuMs();
        data.CalcReport(tm, QStringLiteral("BIG"), QStringLiteral("S"), static_cast<qint16>(c));
        cpu.push_back(threadCpuMs() - cpu0);
        ms.push_back(t.nsecsElapsed() / 1e6);
        if (data.NextSpecies != kSpecies)
            qFatal("cycle %d: %d species", c, data.NextSpecies);
    }
    std::sort(ms.begin(), ms.end());
    std::sort(cpu.begin(), cpu.end());
    std::printf("CalcReport, one cycle of %d records (30 classes, %d species):\n"
                "  wall min %.1f ms, median %.1f ms, max %.1f ms\n"
                "  cpu  min %.1f ms, median %.1f ms, max %.1f ms\n",
                kTreesPerCycle, kSpecies, ms.front(), ms[ms.size() / 2], ms.back(), cpu.front(), cpu[cpu.size() / 2],
                cpu.back());
    CloseGameDB(tm);
    return 0;
}
