// Time of the largest stand and stock report: 20 selected years of 30 classes and twelve
// species (so "Other:" and all twelve column groups), written to the scratch tables and then
// turned into the report text file.
#include "BenchCommon.h"

#include "base/Numbers.h"
#include "base/ToolBox.h"
#include "domain/output/ReportFile.h"
#include "domain/output/ReportTables.h"
#include "domain/standstock/ClassLayout.h"
#include "domain/standstock/StandStockData.h"
#include "domain/standstock/StandStockTables.h"
#include "store/RunStore.h"
#include "support/ScriptedQuestions.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cstdio>

using namespace sendrel;

namespace {

constexpr int kCycles = 20;
constexpr int kClasses = 30;
constexpr int kSpecies = 12;

void fill(StandStockData &r, int numSpecies, int cycle)
{
    for (int i = 0; i < kClasses; ++i) {
        for (int code = 1; code <= numSpecies; ++code) {
            auto &e = r.ReportEntry(i, code);
            e.MinDia = 5.0 * i;
            e.MaxDia = 5.0 * i + 5.0;
            e.MidPoint = 5.0 * i + 2.5;
            e.DBHClass = FormatNumber2(i == kClasses - 1 ? e.MinDia : e.MidPoint, 1);
            if (code <= kSpecies) {
                e.Species = code;
                e.Density = 10.0 * code + i + cycle * 0.25;
                e.MerchVol = 0.1 * e.Density * i;
            }
        }
    }
    for (int k = 0; k < kSpecies; ++k)
        r.SpeciesType[k] = static_cast<qint16>(k + 1);
    r.NextSpecies = kSpecies;
    for (int i = 0; i < kClasses; ++i) {
        r.ClassTotals[i].Density = 0;
        r.ClassTotals[i].MerchVol = 0;
        for (int code = 1; code <= kSpecies; ++code) {
            r.ClassTotals[i].Density += IntegerPart(r.ReportEntry(i, code).Density + 0.5);
            r.ClassTotals[i].MerchVol += IntegerPart(r.ReportEntry(i, code).MerchVol + 0.5);
        }
    }
}

}  // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    bench::ParseOptions(parser, {}, QStringLiteral("The largest stand table report: writers and report file."));
    QTemporaryDir dir;
    const QString path = dir.filePath(kGameDBFileName);
    CreateRunDatabase(path);
    RunStore db;
    db.open(path);
    Statement(db.DBEngine, QStringLiteral("INSERT INTO Species (Num_Code, Str_Code, Name, Variant_ID) VALUES (12, 'XX', 'twelfth', 2)"))
        .run();
    db.readSpecies();
    ScriptedQuestions questions;

    ClassLayout layout;
    layout.SetClasses(u"0", u"5", u"30");
    StandStockData results(layout, db.NumSpecies);
    QElapsedTimer timer;
    timer.start();
    // As a report does it: one transaction for the tables and the reading of them.
    WriteTransaction transaction(db.DBEngine);
    ClearReportTables(db, false);
    StandStockTableWriter writer(db);
    for (int cycle = 1; cycle <= kCycles; ++cycle) {
        fill(results, db.NumSpecies, cycle);
        writer.write(results, layout, true, static_cast<qint16>(cycle), QStringLiteral("BENCH"), static_cast<qint16>(cycle),
                     static_cast<qint16>(2000 + 10 * cycle), QStringLiteral("BENCH: Stand Table"), QStringLiteral("Printed by: "));
    }
    const qint64 tablesMs = timer.restart();

    qint16 columns = 0;
    const QString file = ReportFilePath(dir.path(), QStringLiteral("BENCH"), ReportKind::Stand);
    const QString written = WriteReportFile(db, ReportKind::Stand, QStringLiteral("BENCH"), file, QStringLiteral("Printed by: "), columns);
    transaction.commit();
    const qint64 fileMs = timer.elapsed();
    if (written.isEmpty()) {
        std::fprintf(stderr, "report failed: %s\n", qPrintable(questions.messageTexts().join(QLatin1Char('|'))));
        return 1;
    }
    std::printf("stand table writers, %d cycles x %d classes x %d species: %lld ms\n", kCycles, kClasses, kSpecies,
                static_cast<long long>(tablesMs));
    std::printf("WriteReportFile, %d blocks (%lld bytes): %lld ms\n", kCycles, static_cast<long long>(QFileInfo(written).size()),
                static_cast<long long>(fileMs));
    std::printf("load average: %s\n", bench::LoadAverage().constData());
    db.close();
    return 0;
}
