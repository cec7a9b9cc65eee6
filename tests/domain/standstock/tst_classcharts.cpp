#include "support/TestMain.h"
#include "support/RunDatabase.h"

#include "base/SendrelError.h"
#include "base/Settings.h"
#include "domain/output/ChartData.h"
#include "domain/standstock/ChartPages.h"
#include "domain/standstock/ClassCharts.h"
#include "domain/standstock/StandStockData.h"

#include <QTest>

using namespace sendrel;
using sendrel::test::RunDatabase;

class TestClassCharts : public QObject {
    Q_OBJECT

private slots:
    void chartOperations();
    void seriesPerSpeciesInOrderOfAppearance();
    void cycleWithoutTrees();
    void moreSpeciesThanClasses();
    void axisRules();
    void sampleAndChartWindow();
    void titles();
    void chartPages();
};

void TestClassCharts::chartOperations()
{
    ChartData g;
    g.ChartTopTitle(QStringLiteral("T"));
    g.ChartSeriesCount(2);
    g.ChartPointCount(3);
    g.ChartSeries(2);
    g.ChartPoint(3);
    g.ChartValue(7.5);
    QCOMPARE(g.ChartValue(), 7.5);
    g.ChartPointLabel(QStringLiteral("c"));
    g.ChartSeriesLegend(QStringLiteral("FD"));
    g.ChartSeriesColour(1, 4);
    g.ChartSeriesLegend(1, QStringLiteral("PW"));
    QCOMPARE(g.series().at(1).legend, QStringLiteral("FD"));
    QCOMPARE(g.series().at(0).colour, qint16(4));
    QCOMPARE(g.series().at(0).legend, QStringLiteral("PW"));

    // Raising and lowering the point count keeps what was written.
    g.ChartPointCount(5);
    g.ChartPointCount(3);
    QCOMPARE(g.value(2, 3), 7.5);
    QCOMPARE(g.pointLabels().at(2), QStringLiteral("c"));

    // Auto advance moves on to the next point, and after the last to the next series.
    g.ChartAutoAdvance(true);
    g.ChartSeries(1);
    g.ChartPoint(3);
    g.ChartValue(1);
    QCOMPARE(g.ChartPoint(), qint16(1));
    QCOMPARE(g.ChartSeries(), qint16(2));

    // A point or series beyond the counts is refused.
    g.ChartPoint(4);
    QVERIFY_THROWS_EXCEPTION(SendrelError, g.ChartValue(1));
    g.ChartPoint(1);
    g.ChartSeries(3);
    QVERIFY_THROWS_EXCEPTION(SendrelError, g.ChartValue(1));
    QVERIFY_THROWS_EXCEPTION(SendrelError, g.ChartSeriesLegend(0, QStringLiteral("x")));

    // Reset clears the data, not the titles.
    g.ChartReset(9);
    QCOMPARE(g.ChartSeriesCount(), qint16(0));
    QCOMPARE(g.ChartPointCount(), qint16(0));
    QCOMPARE(g.ChartTopTitle(), QStringLiteral("T"));

    g.ChartGrid(7);
    QCOMPARE(g.ChartGrid(), qint16(3));
    QCOMPARE(GridFrom(true, true), qint16(3));
    QCOMPARE(GridFrom(false, true), qint16(2));
    QCOMPARE(GridFrom(true, false), qint16(1));
    QCOMPARE(GridFrom(false, false), qint16(0));
}

void TestClassCharts::seriesPerSpeciesInOrderOfAppearance()
{
    RunDatabase db;
    const QString r = QStringLiteral("R");
    const QString s = QStringLiteral("S");
    db.addTree(r, s, 1, 3, 12, 40, 0.25);    // FD in class 0
    db.addTree(r, s, 1, 1, 17, 10, 2.0);     // PW in class 1
    db.addTree(r, s, 1, 3, 17, 25, 0.5);
    db.addTree(r, s, 1, 9, 60, 3, 4.0);      // BL only in the bucket
    db.addTree(r, s, 1, 7, 12, 0, 1.0);      // PL without trees: no series
    ClassLayout layout;
    QVERIFY(layout.SetClasses(u"10", u"5", u"3").passed());
    StandStockData data(layout, db.tm.db.NumSpecies);
    data.CalcReport(db.db, {r, KindOfText(s)}, 1);

    ChartData density;
    ChartData volume;
    const ClassChartMaxima maxima = FillClassCharts(db.db, layout, data, density, volume);
    QCOMPARE(maxima.density, 40.0);
    QCOMPARE(maxima.merchVol, 20.0);   // 10 trees x 2.0, larger than the 12.5 of FD in class 1

    for (const ChartData *g : {&density, &volume}) {
        QCOMPARE(g->kind(), ChartData::Kind::ClassBars);
        QCOMPARE(g->ChartSeriesCount(), qint16(3));
        QCOMPARE(g->ChartPointCount(), qint16(3));
        // Every class is labelled by its midpoint, the bucket too.
        QCOMPARE(g->pointLabels(), (QVector<QString>{QStringLiteral("12.5"), QStringLiteral("17.5"), QStringLiteral("22.5")}));
        QCOMPARE(g->series().at(0).legend, QStringLiteral("FD"));
        QCOMPARE(g->series().at(1).legend, QStringLiteral("PW"));
        QCOMPARE(g->series().at(2).legend, QStringLiteral("BL"));
        QCOMPARE(g->series().at(0).colour, qint16(3));
        QCOMPARE(g->series().at(1).colour, qint16(1));
        QCOMPARE(g->series().at(2).colour, qint16(9));
    }
    QCOMPARE(density.series().at(0).values, (QVector<double>{40, 25, 0}));
    QCOMPARE(density.series().at(1).values, (QVector<double>{0, 10, 0}));
    QCOMPARE(density.series().at(2).values, (QVector<double>{0, 0, 3}));
    QCOMPARE(volume.series().at(0).values, (QVector<double>{10, 12.5, 0}));
    QCOMPARE(volume.series().at(2).values, (QVector<double>{0, 0, 12}));

    SetSampleYAxes(density, volume, maxima);
    QCOMPARE(density.ChartYAxisMin(), 0.0);
    QCOMPARE(density.ChartYAxisMax(), 40.0);
    QCOMPARE(density.ChartYAxisTicks(), 4);
    QCOMPARE(volume.ChartYAxisMax(), 20.0);   // step 5; 20.5 rounds to the even 20, a whole step
    QCOMPARE(volume.ChartYAxisTicks(), 4);

    // A second cycle replaces everything, legends included.
    data.CalcReport(db.db, {r, KindOfText(s)}, 2);
    FillClassCharts(db.db, layout, data, density, volume);
    QCOMPARE(density.ChartSeriesCount(), qint16(1));
    QCOMPARE(density.series().at(0).legend, QString());
}

void TestClassCharts::cycleWithoutTrees()
{
    RunDatabase db;
    ClassLayout layout;
    QVERIFY(layout.SetClasses(u"0", u"10", u"4").passed());
    StandStockData data(layout, db.tm.db.NumSpecies);
    data.CalcReport(db.db, {QStringLiteral("R"), RunKind::Standing}, 1);
    ChartData density;
    ChartData volume;
    // A chart window keeps the axes it had.
    density.ChartYAxisMax(70);
    PrintClassCharts(db.db, layout, data, density, volume, u"500");
    QCOMPARE(density.ChartYAxisMax(), 70.0);
    const ClassChartMaxima maxima = FillClassCharts(db.db, layout, data, density, volume);
    SetSampleYAxes(density, volume, maxima);
    for (const ChartData *g : {&density, &volume}) {
        QCOMPARE(g->ChartSeriesCount(), qint16(1));
        QCOMPARE(g->series().at(0).values, (QVector<double>{0, 0, 0, 0}));
        QCOMPARE(g->series().at(0).legend, QString());
        QCOMPARE(g->pointLabels().at(3), QStringLiteral("35"));
        QCOMPARE(g->ChartYAxisMin(), 0.0);
        QCOMPARE(g->ChartYAxisMax(), 0.0);
    }
}

void TestClassCharts::moreSpeciesThanClasses()
{
    RunDatabase db;
    for (int code = 1; code <= 5; ++code)
        db.addTree(QStringLiteral("R"), QStringLiteral("S"), 1, code, 10 + code, code, 1);
    ClassLayout layout;
    QVERIFY(layout.SetClasses(u"10", u"10", u"2").passed());
    StandStockData data(layout, db.tm.db.NumSpecies);
    data.CalcReport(db.db, {QStringLiteral("R"), RunKind::Standing}, 1);
    ChartData density;
    ChartData volume;
    FillClassCharts(db.db, layout, data, density, volume);
    QCOMPARE(density.ChartPointCount(), qint16(2));
    QCOMPARE(density.ChartSeriesCount(), qint16(5));
    QStringList legends;
    for (const ChartData::Series &s : density.series())
        legends.append(s.legend);
    QCOMPARE(legends, (QStringList{"PW", "LW", "FD", "BG", "HW"}));
}

void TestClassCharts::axisRules()
{
    ChartData g;
    // The chart window: 8 divisions; 0 to 37 widens to 40 in steps of 5.
    ApplyYAxisRule(g, 37, u"");
    QCOMPARE(g.ChartYAxisMax(), 40.0);
    QCOMPARE(g.ChartYAxisTicks(), 8);
    // A typed maximum widens the axis...
    ApplyYAxisRule(g, 37, u"100");
    QCOMPARE(g.ChartYAxisMax(), 100.0);
    QCOMPARE(g.ChartYAxisTicks(), 5);
    // ...but never cuts data off.
    ApplyYAxisRule(g, 37, u"10");
    QCOMPARE(g.ChartYAxisMax(), 40.0);
    // The sample: 5 divisions.
    SetYAxisFor(g, 37, kSampleDivisions);
    QCOMPARE(g.ChartYAxisMax(), 40.0);
    QCOMPARE(g.ChartYAxisTicks(), 4);
}

void TestClassCharts::sampleAndChartWindow()
{
    RunDatabase db;
    db.addTree(QStringLiteral("R"), QStringLiteral("H"), 4, 2, 31, 37, 1.0);
    ClassLayout layout;
    QVERIFY(layout.SetClasses(u"0", u"10", u"5").passed());
    StandStockData data(layout, db.tm.db.NumSpecies);
    ChartData density;
    ChartData volume;
    // The sample: 5 divisions; 0 to 37 gives 0 to 40 in 4.
    ClassChartMaxima maxima = PlotSampleCharts(db.db, data, layout, {QStringLiteral("R"), RunKind::Harvested}, 4, density, volume);
    QCOMPARE(maxima.density, 37.0);
    QCOMPARE(density.series().at(0).values, (QVector<double>{0, 0, 0, 37, 0}));
    QCOMPARE(density.ChartYAxisMax(), 40.0);
    QCOMPARE(density.ChartYAxisTicks(), 4);
    QCOMPARE(volume.ChartYAxisMax(), 40.0);
    // A chart window: 8 divisions, and the typed maximum.
    maxima = PrintClassCharts(db.db, layout, data, density, volume, u"");
    QCOMPARE(density.ChartYAxisTicks(), 8);
    PrintClassCharts(db.db, layout, data, density, volume, u"120");
    QCOMPARE(density.ChartYAxisMax(), 120.0);
    QCOMPARE(volume.ChartYAxisMax(), 120.0);
}

void TestClassCharts::titles()
{
    ClassChartTitles t = SampleChartTitles(true);
    QCOMPARE(t.top, QStringLiteral("Stand Table"));
    QCOMPARE(t.left, QStringLiteral("Density (SPH)"));
    QCOMPARE(t.bottom, QStringLiteral("DBH Class (cm)"));
    t = SampleChartTitles(false);
    QCOMPARE(t.top, QStringLiteral("Stock Table"));
    QCOMPARE(t.left, QStringLiteral("GTV (cu.m/ha)"));

    Settings settings;
    settings.DensityTopTitle = QStringLiteral("Density");
    settings.DensityLeftTitle = QStringLiteral("Density (SPH)");
    settings.DensityBottomTitle = QStringLiteral("DBH Class (cm)");
    settings.MerchVolTopTitle = QStringLiteral("Gross Total Volume");
    settings.MerchVolLeftTitle = QStringLiteral("GTV(cu.m/ha)");
    settings.MerchVolBottomTitle = QStringLiteral("DBH");
    t = ChartWindowTitles(settings, false, {QStringLiteral("RUN7"), RunKind::Harvested}, QStringLiteral("2010"));
    QCOMPARE(t.top, QStringLiteral("RUN7 (Harvested, 2010): Gross Total Volume"));
    QCOMPARE(t.left, QStringLiteral("GTV(cu.m/ha)"));
    QCOMPARE(t.bottom, QStringLiteral("DBH"));
    QCOMPARE(ChartWindowCaption(settings, true, {QStringLiteral("RUN7"), RunKind::Standing}, QStringLiteral("2010")),
             QStringLiteral("Density: RUN7 (Standing, 2010)"));
    ChartData g;
    SetTitles(g, t);
    QCOMPARE(g.ChartTopTitle(), t.top);
    QCOMPARE(g.ChartLeftTitle(), t.left);
    QCOMPARE(g.ChartBottomTitle(), t.bottom);
}

// A page of the chart windows and of the chart files: the year's cells and texts, the typed
// maximum, the grid on both charts, the titles on the chart of the table chosen.
void TestClassCharts::chartPages()
{
    RunDatabase db;
    db.tm.settings.MerchVolTopTitle = QStringLiteral("Gross Total Volume");
    db.tm.settings.MerchVolLeftTitle = QStringLiteral("GTV (cu.m/ha)");
    db.addTree(QStringLiteral("R"), QStringLiteral("S"), 2, 3, 12, 40, 0.25);
    db.exec(QStringLiteral("INSERT INTO Report_Detail (Report_id) VALUES (1)"));
    BeginChartSequence(db.db);
    QCOMPARE(db.count(QStringLiteral("Report_Detail")), 0);

    ClassLayout layout;
    QVERIFY(layout.SetClasses(u"10", u"5", u"3").passed());
    StandStockData data(layout, db.tm.db.NumSpecies);
    ChartData density;
    ChartData volume;
    const ChartPageRequest request{{QStringLiteral("R"), RunKind::Standing}, {QStringLiteral(" 2010 "), 2}, false, QStringLiteral("30"), 1};
    const ChartPage page = MakeChartPage(db.db, db.tm.settings, layout, data, request, density, volume);
    QCOMPARE(page.yearText, QStringLiteral("2010"));
    QCOMPARE(page.caption, QStringLiteral("Gross Total Volume: R (Standing, 2010)"));
    QCOMPARE(volume.ChartTopTitle(), QStringLiteral("R (Standing, 2010): Gross Total Volume"));
    QCOMPARE(volume.ChartLeftTitle(), QStringLiteral("GTV (cu.m/ha)"));
    QCOMPARE(density.ChartTopTitle(), QString());
    QCOMPARE(page.maxima.merchVol, 10.0);
    QCOMPARE(volume.ChartYAxisMax(), 30.0);
    QCOMPARE(density.ChartYAxisMax(), 40.0);   // the data is above the typed maximum
    QCOMPARE(density.ChartGrid(), qint16(1));
    QCOMPARE(volume.ChartGrid(), qint16(1));
}

SENDREL_TEST_MAIN(TestClassCharts)
#include "tst_classcharts.moc"
