#include "support/TestMain.h"
#include "support/Failures.h"
#include "support/GoldenFile.h"
#include "support/RunDatabase.h"

#include "base/Numbers.h"
#include "domain/standstock/ClassLayout.h"
#include "domain/standstock/StandStockData.h"
#include "domain/standstock/StandStockReport.h"
#include "domain/standstock/StandStockTables.h"
#include "app/GameDB.h"
#include "domain/output/ReportFile.h"

#include <QDir>

#include <QTest>
#include <QTimeZone>

using namespace sendrel;
using namespace sendrel::test;

namespace {

// One cell of class and species.
struct Cell {
    int classIndex;
    qint16 code;
    double density;
    double volume;
};

// A tree-free stand-in for one cycle's aggregation: classes of equal width entered in layout,
// every cell cleared, then the cells given, with species and totals found as the aggregation does.
void fillData(StandStockData &r, ClassLayout &layout, double start, double width, int classes, const QList<Cell> &cells)
{
    QVERIFY(layout.SetClasses(DefaultText(start), DefaultText(width), QString::number(classes)).passed());
    QCOMPARE(layout.ClassCount(), qint16(classes));
    for (int i = 0; i < ClassLayout::kSlots; ++i) {
        for (int code = 0; code <= r.NumSpecies(); ++code)
            r.ReportEntry(i, code) = ReportEntryType();
    }
    r.SpeciesType.fill(-1);
    r.NextSpecies = 0;
    r.ClassTotals.fill(ReportEntryType());

    const int numSpecies = r.NumSpecies();
    for (int i = 0; i < classes; ++i) {
        const double minDia = start + i * width;
        for (int code = 1; code <= numSpecies; ++code) {
            auto &e = r.ReportEntry(i, code);
            e.MinDia = minDia;
            e.MaxDia = minDia + width;
            e.MidPoint = minDia + width / 2;
            e.DBHClass = QLatin1Char(' ') + DefaultText(i == classes - 1 ? minDia : e.MidPoint);
        }
    }
    for (const Cell &c : cells) {
        if (r.ReportEntry(0, c.code).Species == -1)
            r.ReportEntry(0, c.code).Species = c.code;
        auto &e = r.ReportEntry(c.classIndex, c.code);
        e.Species = c.code;
        e.Density += c.density;
        e.MerchVol += c.volume;
    }
    for (int i = 0; i < classes; ++i) {
        for (int code = 1; code <= numSpecies; ++code) {
            const auto &e = r.ReportEntry(i, code);
            if (e.Density != 0) {
                bool known = false;
                for (int k = 0; k < r.NextSpecies; ++k)
                    known = known || r.SpeciesType[k] == e.Species;
                if (!known)
                    r.SpeciesType[r.NextSpecies++] = e.Species;
            }
            r.ClassTotals[i].Density += IntegerPart(e.Density + 0.5);
            r.ClassTotals[i].MerchVol += IntegerPart(e.MerchVol + 0.5);
        }
    }
}

// Adds Species rows 12 and up, so that twelve or more species can be found.
void addSpecies(RunDatabase &db, int upTo)
{
    for (int code = 12; code <= upTo; ++code)
        db.exec(QStringLiteral("INSERT INTO Species (Num_Code, Str_Code, Name, Variant_ID) VALUES (%1, 'S%1', 'species %1', 2)").arg(code));
    ReadSpecies(db.tm);
}

}  // namespace

class TestStandStockTables : public QObject {
    Q_OBJECT

private slots:
    void exampleRowOfTwoSpecies();
    void oneSpeciesAndSpecies2Fill();
    void elevenSpeciesStandAlone();
    void twelveSpeciesJoinInOther();
    void headerRowAndQuotes();
    void noSpeciesWritesNoDetailRows();

    void compileThreeCyclesAndFile();
    void compileOrientationByColumns_data();
    void compileOrientationByColumns();
    void compileWithoutCycles();
    void compileCancelledTouchesNothing();
    void compileFailureStopsAndTells();
    void compileRefusesWhatCannotBeReported_data();
    void compileRefusesWhatCannotBeReported();
};

void TestStandStockTables::exampleRowOfTwoSpecies()
{
    RunDatabase db;
    ClassLayout layout;
    StandStockData r(layout, db.tm.db.NumSpecies);
    // Class 10 to 15: PW 120.5 stems, 33.25 m3; the second species (code 3, FD) 40 stems, 2.5 m3.
    fillData(r, layout, 10, 5, 2, {{0, 1, 120.5, 33.25}, {0, 3, 40, 2.5}, {1, 1, 7, 1}});
    StandStockTableWriter(db.db).write(r, layout, true, 1, QStringLiteral("R7"), 1, 2000, QStringLiteral("T"), QStringLiteral("D"));
    QCOMPARE(db.rows(QStringLiteral("SELECT * FROM Report_Header")), QStringList{QStringLiteral("1|R7|DENSITY|2|1|2000|T|D")});
    QCOMPARE(db.rows(QStringLiteral("SELECT IsBucket, Report_id, DBH_MinDia, DBH_MaxDia, DBH_Midpoint, DBH_Class, "
                                       "Sp1, Sp1_Density, Sp1_MerchVol, Sp2, Sp2_Density, Sp2_MerchVol, Sp3, Sp3_Density, Sp3_MerchVol, Sp4 "
                                       "FROM Report_Detail ORDER BY DBH_MinDia")),
             (QStringList{QStringLiteral("NO|1|10|15|12.5| 12.5|PW|120.5|33.25|FD|40|2.5|Totals:|161|36|NULL"),
                          QStringLiteral("YES|1|15|20|17.5| 15|PW|7|1|xx|0|0|Totals:|7|1|NULL")}));
}

void TestStandStockTables::oneSpeciesAndSpecies2Fill()
{
    RunDatabase db;
    ClassLayout layout;
    StandStockData r(layout, db.tm.db.NumSpecies);
    fillData(r, layout, 0, 10, 3, {{1, 3, 50, 5}, {2, 3, 20.5, 9.5}});
    StandStockTableWriter(db.db).write(r, layout, false, 2, QStringLiteral("R7"), 4, 2040, QStringLiteral("T"), QStringLiteral("D"));
    // Classes in which the species has no tree still get their row, under the heading "xx".
    QCOMPARE(db.rows(QStringLiteral("SELECT IsBucket, Report_id, DBH_Class, Sp1, Sp1_Density, Sp2, Sp2_Density, Sp2_MerchVol, Sp3 "
                                       "FROM Report_Detail ORDER BY DBH_MinDia")),
             (QStringList{QStringLiteral("NO|2| 5|FD|0|Totals:|0|0|NULL"), QStringLiteral("NO|2| 15|FD|50|Totals:|50|5|NULL"),
                          QStringLiteral("YES|2| 20|FD|20.5|Totals:|21|10|NULL")}));
    // Species2: eleven pairs, the first the report's species, the rest the first species of the table.
    QStringList pairs = db.rows(QStringLiteral("SELECT * FROM Species2"));
    QCOMPARE(pairs.size(), 1);
    QCOMPARE(pairs.first(), QStringLiteral("2|FD|Douglas-fir") + QStringLiteral("|PW|western white pine").repeated(10));
    QCOMPARE(db.rows(QStringLiteral("SELECT Report_Type, Num_Species, Cycle_Num, Cycle_Year FROM Report_Header")),
             QStringList{QStringLiteral("MERCH_VOL|1|4|2040")});
}

void TestStandStockTables::elevenSpeciesStandAlone()
{
    RunDatabase db;
    ClassLayout layout;
    StandStockData r(layout, db.tm.db.NumSpecies);
    QList<Cell> cells;
    // First appearance decides the order: codes 11 down to 1 in class 0 come out by rising code,
    // code 5 only in the bucket class comes last.
    for (qint16 code = 1; code <= 11; ++code) {
        if (code != 5)
            cells.append({0, code, 10.0 * code, 1.0 * code});
    }
    cells.append({1, 5, 3.5, 0.25});
    fillData(r, layout, 0, 10, 2, cells);
    StandStockTableWriter(db.db).write(r, layout, true, 1, QStringLiteral("R7"), 1, 2000, QStringLiteral("T"), QStringLiteral("D"));
    const QStringList rows = db.rows(QStringLiteral("SELECT Sp1, Sp2, Sp3, Sp4, Sp5, Sp6, Sp7, Sp8, Sp9, Sp10, Sp11, Sp12, Sp12_Density "
                                                       "FROM Report_Detail ORDER BY DBH_MinDia"));
    QCOMPARE(rows, (QStringList{QStringLiteral("PW|LW|FD|BG|CW|PL|SE|BL|PY|HM|HW|Totals:|610"),
                                QStringLiteral("xx|xx|xx|xx|xx|xx|xx|xx|xx|xx|HW|Totals:|4")}));
    QCOMPARE(db.rows(QStringLiteral("SELECT Str_Code10, Str_Code11 FROM Species2")), QStringList{QStringLiteral("HM|HW")});
}

void TestStandStockTables::twelveSpeciesJoinInOther()
{
    RunDatabase db;
    addSpecies(db, 13);
    QCOMPARE(db.tm.db.NumSpecies, 13);
    ClassLayout layout;
    StandStockData r(layout, db.tm.db.NumSpecies);
    QList<Cell> cells;
    // Twelve species; cells of x.4 and x.5 show that "Other:" is made of rounded cells.
    for (qint16 code = 1; code <= 12; ++code)
        cells.append({0, code, 10.0 * code + (code % 2 ? 0.4 : 0.5), 0.5 * code});
    fillData(r, layout, 0, 10, 2, cells);
    QCOMPARE(r.NextSpecies, qint16(12));
    StandStockTableWriter(db.db).write(r, layout, true, 1, QStringLiteral("R7"), 1, 2000, QStringLiteral("T"), QStringLiteral("D"));
    const QStringList rows = db.rows(QStringLiteral("SELECT Sp1, Sp10, Sp10_Density, Sp11, Sp11_Density, Sp11_MerchVol, "
                                                       "Sp12, Sp12_Density, Sp12_MerchVol FROM Report_Detail ORDER BY DBH_MinDia"));
    // Rounded cells 10, 21, 30, 41, ..., 101 | 110, 121: "Other:" = 231 of a total of 786.
    // Volumes 0.5 * code rounded: 1, 1, 2, 2, 3, 3, 4, 4, 5, 5 | 6, 6: "Other:" = 12 of 42.
    QCOMPARE(rows, (QStringList{QStringLiteral("PW|PY|100.5|Other:|231|12|Totals:|786|42"),
                                QStringLiteral("xx|xx|0|Other:|0|0|Totals:|0|0")}));
    QCOMPARE(db.rows(QStringLiteral("SELECT Num_Species FROM Report_Header")), QStringList{QStringLiteral("12")});
    QCOMPARE(db.rows(QStringLiteral("SELECT Str_Code11, Name11 FROM Species2")), QStringList{QStringLiteral("HM|mountain hemlock")});
}

void TestStandStockTables::headerRowAndQuotes()
{
    RunDatabase db;
    ClassLayout layout;
    StandStockData r(layout, db.tm.db.NumSpecies);
    fillData(r, layout, 0, 10, 2, {{0, 1, 1, 1}});
    const QString title = QStringLiteral("O'Brien's stand");
    const QString description = QStringLiteral("Printed by: ") + kCrLf + kCrLf + QStringLiteral("it's thinned");
    StandStockTableWriter(db.db).write(r, layout, false, 3, QStringLiteral("R'7"), 5, 2050, title, description);
    QCOMPARE(db.rows(QStringLiteral("SELECT Report_Id, Run_ID, Report_Type, Num_Species, Cycle_Num, Cycle_Year, Report_Title, [Desc] "
                                       "FROM Report_Header")),
             QStringList{QStringLiteral("3|R'7|MERCH_VOL|1|5|2050|") + title + QLatin1Char('|') + description});
}

void TestStandStockTables::noSpeciesWritesNoDetailRows()
{
    RunDatabase db;
    ClassLayout layout;
    StandStockData r(layout, db.tm.db.NumSpecies);
    fillData(r, layout, 0, 10, 5, {});
    StandStockTableWriter(db.db).write(r, layout, true, 1, QStringLiteral("R7"), 1, 2000, QStringLiteral("T"), QStringLiteral("D"));
    QCOMPARE(db.scalar(QStringLiteral("SELECT COUNT(*) FROM Report_Detail")).toInt(), 0);
    QCOMPARE(db.rows(QStringLiteral("SELECT Num_Species FROM Report_Header")), QStringList{QStringLiteral("0")});
    QCOMPARE(db.rows(QStringLiteral("SELECT Str_Code1, Str_Code11 FROM Species2")), QStringList{QStringLiteral("PW|PW")});
}

void TestStandStockTables::compileThreeCyclesAndFile()
{
    RunDatabase db;
    db.exec(QStringLiteral("INSERT INTO Run (Run_Id, Run_Desc, run_parameters) VALUES ('R7', 'desc', 'Thin to 400 at 2010')"));
    db.addRun(QStringLiteral("R7"), QStringLiteral("S"));
    // Rows of an earlier report are gone afterwards.
    db.exec(QStringLiteral("INSERT INTO Report_Header (Report_Id, Run_ID) VALUES (9, 'OLD')"));
    db.exec(QStringLiteral("INSERT INTO Report_Detail (Report_id) VALUES (9)"));
    db.exec(QStringLiteral("INSERT INTO Species2 (Report_id) VALUES (9)"));

    ClassLayout layout;
    StandStockData r(layout, db.tm.db.NumSpecies);
    QList<qint16> calculated;
    const CalcReportFn calc = [&](qint16 cycle) {
        calculated.append(cycle);
        if (cycle == 1)
            fillData(r, layout, 10, 5, 3, {{0, 1, 120.5, 33.25}, {0, 3, 40, 2.5}, {2, 1, 12.25, 8}});
        else if (cycle == 2)
            fillData(r, layout, 10, 5, 3, {{1, 3, 1500.5, 80}, {2, 3, 250, 60.5}});
        else
            fillData(r, layout, 10, 5, 3, {{0, 7, 0.4, 0.1}, {1, 1, 99.5, 20}, {1, 7, 10, 1}});
    };
    StandStockReportRequest request{QStringLiteral("R7"), QStringLiteral("S"), QStringLiteral("browser text"), true,
                                    {{1, QStringLiteral("2000")}, {2, QStringLiteral("2010")}, {4, QStringLiteral("2030")}}, {}, {}};
    request.reportPath = ReportFilePath(db.workDir(), QStringLiteral("R7"), ReportKind::Stand);
    db.questions.answerReportText(true);
    const CompiledStandStockReport report = CompileStandStockReport(db.db, db.questions, request, layout, r, FixedClock, calc);

    QVERIFY(report.compiled);
    QCOMPARE(calculated, (QList<qint16>{1, 2, 4}));
    QCOMPARE(request.This_RunDesc, QStringLiteral("Thin to 400 at 2010"));
    QCOMPARE(db.questions.asked().first().title, QStringLiteral("R7: Stand Table"));
    QCOMPARE(db.questions.asked().first().text, QStringLiteral("Printed by: \r\n\r\nThin to 400 at 2010"));
    QCOMPARE(db.questions.lastBusyMessage(), QStringLiteral("Compiling report data for cycle: 4"));
    QCOMPARE(db.questions.busyCalls(), 4);
    QVERIFY(!db.questions.busyVisible());
    QCOMPARE(db.rows(QStringLiteral("SELECT Report_Id, Cycle_Num, Cycle_Year, Num_Species FROM Report_Header")),
             (QStringList{QStringLiteral("1|1|2000|2"), QStringLiteral("2|2|2010|1"), QStringLiteral("3|4|2030|2")}));
    QCOMPARE(db.rows(QStringLiteral("SELECT Report_id, COUNT(*) FROM Report_Detail GROUP BY Report_id ORDER BY Report_id")),
             (QStringList{QStringLiteral("1|3"), QStringLiteral("2|3"), QStringLiteral("3|3")}));
    QCOMPARE(db.rows(QStringLiteral("SELECT Report_id FROM Species2")), (QStringList{QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3")}));

    QCOMPARE(report.ReportType, qint16(0));
    QCOMPARE(report.columns, qint16(3));
    QCOMPARE(report.ReportOrientation, qint16(1));
    QCOMPARE(report.ReportFile, db.workDir() + QStringLiteral("/R7_Stand.txt"));
    SENDREL_COMPARE_GOLDEN(ReadWholeFile(report.ReportFile), QStringLiteral("reports/compiled_stand_three_cycles.txt"));
}

void TestStandStockTables::compileOrientationByColumns_data()
{
    QTest::addColumn<int>("species");
    QTest::addColumn<int>("orientation");
    QTest::newRow("6 species, 7 columns") << 6 << 1;
    QTest::newRow("7 species, 8 columns") << 7 << 2;
}

void TestStandStockTables::compileOrientationByColumns()
{
    QFETCH(int, species);
    QFETCH(int, orientation);
    RunDatabase db;
    ClassLayout layout;
    StandStockData r(layout, db.tm.db.NumSpecies);
    const CalcReportFn calc = [&](qint16) {
        QList<Cell> cells;
        for (qint16 code = 1; code <= species; ++code)
            cells.append({0, code, 1, 1});
        fillData(r, layout, 0, 10, 2, cells);
    };
    db.addRun(QStringLiteral("R7"), QStringLiteral("S"));
    StandStockReportRequest request{QStringLiteral("R7"), QStringLiteral("S"), QString(), false, {{1, QStringLiteral("2000")}}, {}, {}};
    request.reportPath = ReportFilePath(db.workDir(), QStringLiteral("R7"), ReportKind::Stock);
    db.questions.answerReportText(true, QStringLiteral("My title"), QStringLiteral("line 1\nline 2"));
    const CompiledStandStockReport report = CompileStandStockReport(db.db, db.questions, request, layout, r, FixedClock, calc);
    QVERIFY(report.compiled);
    // The description box's line feeds are stored as CR LF.
    QCOMPARE(db.rows(QStringLiteral("SELECT Report_Title, [Desc] FROM Report_Header")), QStringList{QStringLiteral("My title|line 1\r\nline 2")});
    QCOMPARE(report.ReportType, qint16(1));
    QCOMPARE(report.columns, qint16(species + 1));
    QCOMPARE(report.ReportOrientation, qint16(orientation));
    QVERIFY(report.ReportFile.endsWith(QStringLiteral("/R7_Stock.txt")));
    // Without a Run row the description keeps its text; the dialog proposes the stock title.
    QCOMPARE(db.questions.asked().first().title, QStringLiteral("R7: Stock Table"));
}

void TestStandStockTables::compileWithoutCycles()
{
    RunDatabase db;
    ClassLayout layout;
    StandStockData r(layout, db.tm.db.NumSpecies);
    StandStockReportRequest request{QStringLiteral("R7"), QStringLiteral("S"), QStringLiteral("keep"), true, {}, {}, {}};
    const std::optional<SendrelError> failure = FailureOf(
        [&] { CompileStandStockReport(db.db, db.questions, request, layout, r, ReportClockNow, [](qint16) { QFAIL("no cycle to aggregate"); }); });
    QVERIFY(failure);
    QCOMPARE(ReportFailureMessage(*failure).text, QStringLiteral("No Cycles Are Selected"));
    QCOMPARE(ReportFailureMessage(*failure).icon, MsgIcon::Information);
    QCOMPARE(db.questions.asked().size(), 0);
    QCOMPARE(request.This_RunDesc, QStringLiteral("keep"));
}

void TestStandStockTables::compileCancelledTouchesNothing()
{
    RunDatabase db;
    db.exec(QStringLiteral("INSERT INTO Run (Run_Id, Run_Desc, run_parameters) VALUES ('R7', 'desc', NULL)"));
    db.exec(QStringLiteral("INSERT INTO Report_Header (Report_Id, Run_ID) VALUES (9, 'OLD')"));
    ClassLayout layout;
    StandStockData r(layout, db.tm.db.NumSpecies);
    StandStockReportRequest request{QStringLiteral("R7"), QStringLiteral("S"), QStringLiteral("browser text"), true, {{1, QStringLiteral("2000")}}, {}, {}};
    db.questions.answerReportText(false);
    const CompiledStandStockReport report = CompileStandStockReport(db.db, db.questions, request, layout, r, ReportClockNow, [](qint16) { QFAIL("cancelled"); });
    QVERIFY(!report.compiled);
    // A null run_parameters empties the description, also when the dialog is cancelled.
    QCOMPARE(request.This_RunDesc, QString());
    QCOMPARE(db.questions.asked().first().text, QStringLiteral("Printed by: \r\n\r\n"));
    QCOMPARE(db.rows(QStringLiteral("SELECT Report_Id FROM Report_Header")), QStringList{QStringLiteral("9")});
    QCOMPARE(db.questions.busyCalls(), 0);
}

void TestStandStockTables::compileFailureStopsAndTells()
{
    RunDatabase db;
    db.addRun(QStringLiteral("R7"), QStringLiteral("S"));
    // A Report_Detail that refuses rows of classes: the report stops before any cycle is aggregated.
    db.exec(QStringLiteral("DROP TABLE temp.Report_Detail"));
    db.exec(QStringLiteral("CREATE TEMP TABLE Report_Detail (Report_id INTEGER)"));
    ClassLayout layout;
    StandStockData r(layout, db.tm.db.NumSpecies);
    int calls = 0;
    const CalcReportFn calc = [&](qint16) {
        ++calls;
        fillData(r, layout, 0, 10, 2, {{0, 1, 1, 1}});
    };
    StandStockReportRequest request{QStringLiteral("R7"), QStringLiteral("S"), QString(), true, {{1, QStringLiteral("2000")}, {2, QStringLiteral("2010")}}, {}, {}};
    db.questions.answerReportText(true);
    const std::optional<SendrelError> failure =
        FailureOf([&] { CompileStandStockReport(db.db, db.questions, request, layout, r, FixedClock, calc); });
    QVERIFY(failure);
    QCOMPARE(calls, 0);
    const QString message = ReportFailureMessage(*failure).text;
    QVERIFY2(message.startsWith(QStringLiteral("The following error occured:\r\n\r\n(")), qPrintable(message));
    QVERIFY2(message.contains(QStringLiteral(") ")) && message.contains(QStringLiteral("IsBucket")), qPrintable(message));
    QVERIFY(!db.questions.busyVisible());
    QCOMPARE(db.scalar(QStringLiteral("SELECT COUNT(*) FROM Report_Header")).toInt(), 0);
    QVERIFY(QDir(db.workDir()).isEmpty());
}

// A selected cycle whose block would have no species is refused by name, before the generator
// could fail on it, and the file at the report's path stays as it was; a run that has gone is
// refused as missing.
void TestStandStockTables::compileRefusesWhatCannotBeReported_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QString>("message");
    QTest::newRow("a cycle without trees") << "none" << "Cycle 2 (2010) of R7, Harvested, has no trees.";
    QTest::newRow("trees below the classes") << "below" << "Cycle 2 (2010) of R7, Harvested, has no trees in the diameter classes.";
    QTest::newRow("a run that has gone") << "gone" << "There is no run R7:Harvested in ";
}

void TestStandStockTables::compileRefusesWhatCannotBeReported()
{
    QFETCH(QString, fault);
    QFETCH(QString, message);
    RunDatabase db;
    if (fault != QLatin1String("gone"))
        db.addRun(QStringLiteral("R7"), QStringLiteral("H"));
    if (fault == QLatin1String("below"))
        db.addTree(QStringLiteral("R7"), QStringLiteral("H"), 2, 1, 5, 10, 1);
    ClassLayout layout;
    StandStockData r(layout, db.tm.db.NumSpecies);
    const CalcReportFn calc = [&](qint16 cycle) {
        fillData(r, layout, 10, 10, 2, cycle == 1 ? QList<Cell>{{0, 1, 1, 1}} : QList<Cell>{});
    };
    StandStockReportRequest request{QStringLiteral("R7"), QStringLiteral("H"), QString(), true, {{1, QStringLiteral("2000")}, {2, QStringLiteral("2010")}}, {}, {}};
    request.reportPath = db.writeFile(QStringLiteral("Work/R7_Stand.txt"), "the standing run's report");
    db.questions.answerReportText(true);
    const std::optional<SendrelError> failure =
        FailureOf([&] { CompileStandStockReport(db.db, db.questions, request, layout, r, FixedClock, calc); });
    QVERIFY(failure);
    QVERIFY2(ReportFailureMessage(*failure).text.startsWith(message), qPrintable(failure->description()));
    QCOMPARE(ReadWholeFile(request.reportPath), QByteArray("the standing run's report"));
    QVERIFY(!db.questions.busyVisible());
}

SENDREL_TEST_MAIN(TestStandStockTables)
#include "tst_standstocktables.moc"
