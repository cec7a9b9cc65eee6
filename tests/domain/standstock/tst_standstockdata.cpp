#include "support/TestMain.h"
#include "support/RunDatabase.h"

#include "base/SendrelError.h"
#include "domain/standstock/ClassRuler.h"
#include "domain/standstock/StandStockData.h"

#include <QTest>

using namespace sendrel;
using sendrel::test::RunDatabase;

class TestStandStockData : public QObject {
    Q_OBJECT

private slots:
    void cellsOfOneCycle();
    void roundedTotalsAreSumsOfRoundedCells();
    void emptyCycleClearsEverything();
    void labelDecimals();
    void editedClassesOfUnlikeWidth();
    void aRunIdWithAQuote();
    void speciesCodeOutOfRangeFails();
    void letsEventsRunOncePerCall();
};

// Classes 10-15, 15-20 and the bucket from 20; trees of run R1, standing, cycle 1, with
// others around them that must not count.
static void addStandard(RunDatabase &db)
{
    db.addRun(QStringLiteral("R1"), QStringLiteral("S"));
    const QString r = QStringLiteral("R1");
    const QString s = QStringLiteral("S");
    db.addTree(r, s, 1, 3, 15.0, 10, 0.5);    // on an edge: the upper class
    db.addTree(r, s, 1, 3, 14.99, 5, 0.2);    // class 0
    db.addTree(r, s, 1, 1, 20.0, 2, 1.0);     // the bucket's MinDia: the bucket
    db.addTree(r, s, 1, 1, 95.0, 1, 3.0);     // far above the last MaxDia: the bucket
    db.addTree(r, s, 1, 5, 9.99, 100, 0.1);   // below the first class: lost
    db.addTree(r, s, 1, 7, 12.0, 0, 0.3);     // no trees per hectare: a cell, no species
    db.addTree(r, s, 1, 9, 30.0, 0.4, 1.0);   // only in the bucket
    db.addTree(r, QStringLiteral("H"), 1, 2, 12.0, 50, 0.2);   // harvested
    db.addTree(r, s, 2, 4, 12.0, 50, 0.2);                     // another cycle
    db.addTree(QStringLiteral("R2"), s, 1, 6, 12.0, 50, 0.2);  // another run
}

void TestStandStockData::cellsOfOneCycle()
{
    RunDatabase db;
    addStandard(db);
    ClassLayout layout;
    QVERIFY(layout.SetClasses(u"10", u"5", u"3").passed());
    StandStockData data(layout, db.tm.db.NumSpecies);
    QCOMPARE(data.NumSpecies(), 11);
    data.CalcReport(db.db, {QStringLiteral("R1"), RunKind::Standing}, 1);

    const ReportEntryType &c0 = data.ReportEntry(0, 3);
    QCOMPARE(c0.DBHClass, QStringLiteral(" 12.5"));
    QCOMPARE(c0.MinDia, 10.0);
    QCOMPARE(c0.MaxDia, 15.0);
    QCOMPARE(c0.MidPoint, 12.5);
    QCOMPARE(c0.Species, qint16(3));
    QCOMPARE(c0.Density, 5.0);
    QCOMPARE(c0.MerchVol, 1.0);   // Total_Volume x trees, not the net volume
    QCOMPARE(data.ReportEntry(1, 3).Density, 10.0);
    QCOMPARE(data.ReportEntry(1, 3).MerchVol, 5.0);
    QCOMPARE(data.ReportEntry(1, 3).DBHClass, QStringLiteral(" 17.5"));
    QCOMPARE(data.ReportEntry(2, 1).Density, 3.0);
    QCOMPARE(data.ReportEntry(2, 1).MerchVol, 5.0);
    QCOMPARE(data.ReportEntry(2, 1).DBHClass, QStringLiteral(" 20.0"));   // the bucket by its MinDia
    QCOMPARE(data.ReportEntry(2, 9).Density, 0.4);
    QCOMPARE(data.ReportEntry(2, 9).MerchVol, 0.4);

    // Every species met has its code in class 0, also one found only in the bucket.
    QCOMPARE(data.ReportEntry(0, 1).Species, qint16(1));
    QCOMPARE(data.ReportEntry(0, 9).Species, qint16(9));
    QCOMPARE(data.ReportEntry(0, 1).Density, 0.0);
    QCOMPARE(data.ReportEntry(0, 7).Species, qint16(7));
    QCOMPARE(data.ReportEntry(0, 7).Density, 0.0);
    // The lost tree, the harvested one, the other cycle's and the other run's leave no trace.
    QCOMPARE(data.ReportEntry(0, 5).Species, qint16(-1));
    QCOMPARE(data.ReportEntry(0, 2).Species, qint16(-1));
    QCOMPARE(data.ReportEntry(0, 4).Species, qint16(-1));
    QCOMPARE(data.ReportEntry(0, 6).Species, qint16(-1));
    QCOMPARE(data.ReportEntry(1, 1).Species, qint16(-1));

    // Order of first appearance from the smallest class up; species 7 has no density.
    QCOMPARE(data.NextSpecies, qint16(3));
    QCOMPARE(data.SpeciesType.mid(0, 3), (QVector<qint16>{3, 1, 9}));
    for (int k = 3; k < 11; ++k)
        QCOMPARE(data.SpeciesType[k], qint16(-1));

    QCOMPARE(data.ClassTotals[0].Density, 5.0);
    QCOMPARE(data.ClassTotals[0].MerchVol, 1.0);
    QCOMPARE(data.ClassTotals[1].Density, 10.0);
    QCOMPARE(data.ClassTotals[1].MerchVol, 5.0);
    QCOMPARE(data.ClassTotals[2].Density, 3.0);   // 3 + rounded 0.4
    QCOMPARE(data.ClassTotals[2].MerchVol, 5.0);  // 5 + rounded 0.4

    // Harvested trees in a window of harvested trees.
    data.CalcReport(db.db, {QStringLiteral("R1"), RunKind::Harvested}, 1);
    QCOMPARE(data.NextSpecies, qint16(1));
    QCOMPARE(data.SpeciesType[0], qint16(2));
    QCOMPARE(data.ReportEntry(0, 2).Density, 50.0);
}

void TestStandStockData::roundedTotalsAreSumsOfRoundedCells()
{
    RunDatabase db;
    for (int code : {1, 2, 3})
        db.addTree(QStringLiteral("R"), QStringLiteral("S"), 1, code, 12, 0.4, 1.0);
    db.addTree(QStringLiteral("R"), QStringLiteral("S"), 1, 4, 17, 2.5, 1.0);
    db.addTree(QStringLiteral("R"), QStringLiteral("S"), 1, 5, 17, 1.5, 1.0);
    ClassLayout layout;
    QVERIFY(layout.SetClasses(u"10", u"5", u"3").passed());
    StandStockData data(layout, db.tm.db.NumSpecies);
    data.CalcReport(db.db, {QStringLiteral("R"), RunKind::Standing}, 1);
    QCOMPARE(data.NextSpecies, qint16(5));
    QCOMPARE(data.ClassTotals[0].Density, 0.0);   // three cells of 0.4
    QCOMPARE(data.ClassTotals[0].MerchVol, 0.0);
    QCOMPARE(data.ClassTotals[1].Density, 5.0);   // 2.5 -> 3 and 1.5 -> 2: halves go up
    QCOMPARE(data.ClassTotals[1].MerchVol, 5.0);
}

void TestStandStockData::emptyCycleClearsEverything()
{
    RunDatabase db;
    addStandard(db);
    ClassLayout layout;
    QVERIFY(layout.SetClasses(u"10", u"5", u"3").passed());
    StandStockData data(layout, db.tm.db.NumSpecies);
    data.CalcReport(db.db, {QStringLiteral("R1"), RunKind::Standing}, 1);
    data.CalcReport(db.db, {QStringLiteral("R1"), RunKind::Standing}, 7);
    QCOMPARE(data.NextSpecies, qint16(0));
    for (int k = 0; k < 11; ++k)
        QCOMPARE(data.SpeciesType[k], qint16(-1));
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(data.ClassTotals[i].Density, 0.0);
        QCOMPARE(data.ClassTotals[i].MerchVol, 0.0);
        for (int j = 1; j <= 11; ++j) {
            QCOMPARE(data.ReportEntry(i, j).Species, qint16(-1));
            QCOMPARE(data.ReportEntry(i, j).Density, 0.0);
            QCOMPARE(data.ReportEntry(i, j).MerchVol, 0.0);
        }
    }
}

void TestStandStockData::labelDecimals()
{
    RunDatabase db;
    ClassLayout layout;
    StandStockData data(layout, db.tm.db.NumSpecies);

    // 2.5, 7.5 and the bucket from 10.
    QVERIFY(layout.SetClasses(u"0", u"5", u"3").passed());
    QCOMPARE(StandStockData::LabelDecimals(layout), qint16(1));
    data.CalcReport(db.db, {QStringLiteral("R"), RunKind::Standing}, 1);
    QCOMPARE(data.ReportEntry(0, 1).DBHClass, QStringLiteral(" 2.5"));
    QCOMPARE(data.ReportEntry(1, 1).DBHClass, QStringLiteral(" 7.5"));
    QCOMPARE(data.ReportEntry(2, 1).DBHClass, QStringLiteral(" 10.0"));

    // Whole labels.
    QVERIFY(layout.SetClasses(u"0", u"10", u"3").passed());
    QCOMPARE(StandStockData::LabelDecimals(layout), qint16(0));
    data.CalcReport(db.db, {QStringLiteral("R"), RunKind::Standing}, 1);
    QCOMPARE(data.ReportEntry(0, 1).DBHClass, QStringLiteral(" 5"));
    QCOMPARE(data.ReportEntry(2, 11).DBHClass, QStringLiteral(" 20"));

    // A midpoint of 12.25 among them gives all labels two decimals.
    QVERIFY(layout.SetClasses(u"10", u"5", u"3").passed());
    ClassRuler::MoveEdge(layout, 0, 14.5);
    QCOMPARE(StandStockData::LabelDecimals(layout), qint16(2));
    data.CalcReport(db.db, {QStringLiteral("R"), RunKind::Standing}, 1);
    QCOMPARE(data.ReportEntry(0, 1).DBHClass, QStringLiteral(" 12.25"));
    QCOMPARE(data.ReportEntry(1, 1).DBHClass, QStringLiteral(" 17.25"));
    QCOMPARE(data.ReportEntry(2, 1).DBHClass, QStringLiteral(" 20.00"));
}

void TestStandStockData::editedClassesOfUnlikeWidth()
{
    ClassLayout layout;
    QVERIFY(layout.SetClasses(u"10", u"5", u"3").passed());
    ClassRuler::MoveEdge(layout, 0, 11);
    ClassRuler::MoveEdge(layout, 1, 24.5);
    QCOMPARE(StandStockData::ClassOf(layout, 10.99), 0);
    QCOMPARE(StandStockData::ClassOf(layout, 11), 1);
    QCOMPARE(StandStockData::ClassOf(layout, 24.49), 1);
    QCOMPARE(StandStockData::ClassOf(layout, 24.5), 2);
    QCOMPARE(StandStockData::ClassOf(layout, 500), 2);
    QCOMPARE(StandStockData::ClassOf(layout, 9.99), -1);
    // A start of 0 keeps every tree.
    QVERIFY(layout.SetClasses(u"0", u"5", u"3").passed());
    QCOMPARE(StandStockData::ClassOf(layout, 0), 0);
}

void TestStandStockData::aRunIdWithAQuote()
{
    RunDatabase db;
    db.addTree(QStringLiteral("O'Brien"), QStringLiteral("S"), 3, 8, 12, 7, 1);
    ClassLayout layout;
    QVERIFY(layout.SetClasses(u"10", u"5", u"3").passed());
    StandStockData data(layout, db.tm.db.NumSpecies);
    data.CalcReport(db.db, {QStringLiteral("O'Brien"), RunKind::Standing}, 3);
    QCOMPARE(data.ReportEntry(0, 8).Density, 7.0);
}

void TestStandStockData::speciesCodeOutOfRangeFails()
{
    RunDatabase db;
    db.addTree(QStringLiteral("R"), QStringLiteral("S"), 1, 12, 12, 1, 1);
    ClassLayout layout;
    QVERIFY(layout.SetClasses(u"10", u"5", u"3").passed());
    StandStockData data(layout, db.tm.db.NumSpecies);
    try {
        data.CalcReport(db.db, {QStringLiteral("R"), RunKind::Standing}, 1);
        QFAIL("a species code beyond the species table must fail");
    } catch (const SendrelError &e) {
        QCOMPARE(e.number(), 9L);
    }
    // Code 0 falls in a cell that no result reads.
    RunDatabase db2;
    db2.addTree(QStringLiteral("R"), QStringLiteral("S"), 1, 0, 12, 1, 1);
    StandStockData data2(layout, db2.tm.db.NumSpecies);
    data2.CalcReport(db2.db, {QStringLiteral("R"), RunKind::Standing}, 1);
    QCOMPARE(data2.NextSpecies, qint16(0));
    QCOMPARE(data2.ClassTotals[0].Density, 0.0);
}

void TestStandStockData::letsEventsRunOncePerCall()
{
    RunDatabase db;
    ClassLayout layout;
    QVERIFY(layout.SetClasses(u"10", u"5", u"3").passed());
    StandStockData data(layout, db.tm.db.NumSpecies);
    int calls = 0;
    data.LetEventsRun = [&calls] { ++calls; };
    data.CalcReport(db.db, {QStringLiteral("R"), RunKind::Standing}, 1);
    data.CalcReport(db.db, {QStringLiteral("R"), RunKind::Standing}, 2);
    QCOMPARE(calls, 2);
}

SENDREL_TEST_MAIN(TestStandStockData)
#include "tst_standstockdata.moc"
