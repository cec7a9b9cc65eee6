#include "support/TestMain.h"
#include "support/Failures.h"
#include "support/GoldenFile.h"
#include "support/RunDatabase.h"

#include "base/ToolBox.h"
#include "domain/output/ReportFile.h"

#include <QDir>
#include <QFile>
#include <QLocale>
#include <QTest>
#include <QTimeZone>

using namespace sendrel;
using namespace sendrel::test;

namespace {

// One species column of a Report_Detail row: heading, density, volume.
struct Group {
    QString heading;
    double density;
    double volume;
};

class ReportTables {
public:
    explicit ReportTables(RunDatabase &db) : m_db(db) {}

    void header(int id, const QString &run, const QString &type, int numSpecies, int cycle, int year, const QString &title)
    {
        m_db.exec(QStringLiteral("INSERT INTO Report_Header (Report_ID,Run_ID,Report_Type,Num_Species,Cycle_Num,Cycle_Year,Report_Title,[Desc]) "
                                 "VALUES (%1,'%2','%3',%4,%5,%6,'%7','')")
                      .arg(id).arg(QuoteSQL(run), type).arg(numSpecies).arg(cycle).arg(year).arg(QuoteSQL(title)));
    }

    void compositionHeader(const QString &run, const QString &type, int numSpecies, const QString &title)
    {
        m_db.exec(QStringLiteral("INSERT INTO Report_Header (Report_id,Run_ID,Report_Type,Num_Species,Report_Title,[Desc]) "
                                 "VALUES (1,'%1','%2',%3,'%4','')")
                      .arg(QuoteSQL(run), type).arg(numSpecies).arg(QuoteSQL(title)));
    }

    void detail(int id, double minDia, double maxDia, double midPoint, const QList<Group> &groups, bool bucket = false)
    {
        QString columns = QStringLiteral("IsBucket,Report_id,DBH_MinDia,DBH_MaxDia,DBH_Midpoint,DBH_Class");
        QString values = QStringLiteral("'%1',%2,%3,%4,%5,'%5'")
                             .arg(bucket ? QStringLiteral("YES") : QStringLiteral("NO")).arg(id).arg(minDia).arg(maxDia).arg(midPoint);
        for (int n = 1; n <= groups.size(); ++n) {
            const Group &g = groups.at(n - 1);
            columns += QStringLiteral(",Sp%1,Sp%1_Density,Sp%1_MerchVol").arg(n);
            values += QStringLiteral(",'%1',%2,%3").arg(QuoteSQL(g.heading)).arg(g.density, 0, 'g', 17).arg(g.volume, 0, 'g', 17);
        }
        m_db.exec(QStringLiteral("INSERT INTO Report_Detail (%1) VALUES (%2)").arg(columns, values));
    }

    void levels(int year, const QStringList &headings, const QList<double> &values)
    {
        QString columns = QStringLiteral("Report_id,[Year]");
        QString list = QStringLiteral("1,%1").arg(year);
        for (int n = 1; n <= headings.size(); ++n) {
            columns += QStringLiteral(",Sp%1,Value%1").arg(n);
            list += QStringLiteral(",'%1',%2").arg(headings.at(n - 1)).arg(values.at(n - 1), 0, 'g', 17);
        }
        m_db.exec(QStringLiteral("INSERT INTO STAND_LEVELS_REPORT (%1) VALUES (%2)").arg(columns, list));
    }

private:
    RunDatabase &m_db;
};

const QStringList kElevenCodes = {QStringLiteral("PW"), QStringLiteral("LW"), QStringLiteral("FD"), QStringLiteral("BG"),
                                  QStringLiteral("HW"), QStringLiteral("CW"), QStringLiteral("PL"), QStringLiteral("SE"),
                                  QStringLiteral("BL"), QStringLiteral("PY"), QStringLiteral("HM")};

// Groups of one class row: species n has density base*n and volume base*n/10, then the closing groups.
QList<Group> speciesRow(const QStringList &codes, double base, const QList<Group> &closing)
{
    QList<Group> groups;
    for (int n = 1; n <= codes.size(); ++n)
        groups.append({codes.at(n - 1), base * n, base * n / 10.0});
    return groups + closing;
}

// A composition report of one species in the year 2000 for the run.
void addOneSpeciesComposition(RunDatabase &db, const QString &run, const QString &type = QStringLiteral("SL_SPH"))
{
    ReportTables t(db);
    t.compositionHeader(run, type, 1, QStringLiteral("T"));
    t.levels(2000, {QStringLiteral("PW"), QStringLiteral("Total:")}, {1, 1});
}

// The report file of the run in the Work folder, as the desktop writes it.
QString writeReport(RunDatabase &db, qint16 kind, const QString &run, const QString &description, qint16 &columns)
{
    return WriteReportFile(db.db, kind, run, ReportFilePath(db.workDir(), run, kind), description, columns, FixedClock);
}

}  // namespace

class TestReportFile : public QObject {
    Q_OBJECT

private:
    // Writes the report and checks it against its expected file; gives the path.
    QString writeAndCompare(RunDatabase &db, qint16 kind, const QString &description, const QString &golden, qint16 expectedColumns)
    {
        qint16 columns = -1;
        const QString path = writeReport(db, kind, QStringLiteral("R7"), description, columns);
        [&] {
            QVERIFY(!path.isEmpty());
            QCOMPARE(columns, expectedColumns);
            SENDREL_COMPARE_GOLDEN(ReadWholeFile(path), QStringLiteral("reports/") + golden);
        }();
        return path;
    }

private slots:
    void cellsAndNumbers_data();
    void cellsAndNumbers();
    void thousandsSeparatorFollowsLocale();
    void printedOnFollowsSourceDateEpoch();

    void standOneSpecies();
    void standElevenSpecies();
    void standTwelveSpeciesWithOther();
    void stockSeveralBlocks();
    void zeroCellsSeparatorsAndCutTexts();
    void speciesComposition();
    void unitLineOfCompositionTypes_data();
    void unitLineOfCompositionTypes();

    void everyRunIdHasAFileInTheFolder_data();
    void everyRunIdHasAFileInTheFolder();
    void secondReportReplacesFirst();
    void aFailedReportLeavesTheEarlierFile_data();
    void aFailedReportLeavesTheEarlierFile();
};

void TestReportFile::cellsAndNumbers_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("formatted");
    QTest::newRow("zero") << 0.0 << "0";
    QTest::newRow("below a half") << 0.4 << "0";
    QTest::newRow("half up") << 0.5 << "1";
    QTest::newRow("even half up") << 2.5 << "3";
    QTest::newRow("negative half away") << -2.5 << "-3";
    QTest::newRow("negative to zero") << -0.4 << "0";
    QTest::newRow("three digits") << 999.49 << "999";
    QTest::newRow("carry into thousands") << 999.5 << "1,000";
    QTest::newRow("millions") << 1234567.0 << "1,234,567";
    QTest::newRow("negative thousands") << -1234.0 << "-1,234";
    QTest::newRow("eleven digits") << 12345678901.0 << "12,345,678,901";
}

void TestReportFile::cellsAndNumbers()
{
    QFETCH(double, value);
    QFETCH(QString, formatted);
    QCOMPARE(FormatWholeNumber(value), formatted);
    QCOMPARE(RightCell(FormatWholeNumber(value)), formatted.left(10).rightJustified(10, QLatin1Char(' ')));
    QCOMPARE(LeftCell(QStringLiteral("Cycle Year:")), QStringLiteral("Cycle Year"));
    QCOMPARE(LeftCell(QStringLiteral("Cycle #:")), QStringLiteral("Cycle #:  "));
    QCOMPARE(RightCell(QStringLiteral("Totals:")), QStringLiteral("   Totals:"));
}

void TestReportFile::thousandsSeparatorFollowsLocale()
{
    const QLocale saved;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    const QString german = FormatWholeNumber(1234567.5);
    QLocale::setDefault(saved);
    QCOMPARE(german, QStringLiteral("1.234.568"));
    QCOMPARE(FormatWholeNumber(1234567.5), QStringLiteral("1,234,568"));
}

void TestReportFile::printedOnFollowsSourceDateEpoch()
{
    const QByteArray saved = qgetenv("SOURCE_DATE_EPOCH");
    qputenv("SOURCE_DATE_EPOCH", "1700000000");
    const QDateTime fromEpoch = ReportClockNow();
    qunsetenv("SOURCE_DATE_EPOCH");
    const QDateTime now = ReportClockNow();
    qputenv("SOURCE_DATE_EPOCH", saved);
    QCOMPARE(fromEpoch, FixedClock());
    QVERIFY(now.toSecsSinceEpoch() > 1700000000);
    QCOMPARE(DefaultDateTimeText(FixedClock()), QStringLiteral("14 Nov 2023 22:13:20"));
}

void TestReportFile::standOneSpecies()
{
    RunDatabase db;
    ReportTables t(db);
    t.header(1, QStringLiteral("R7"), QStringLiteral("DENSITY"), 1, 1, 2000, QStringLiteral("R7: Stand Table"));
    t.detail(1, 10, 15, 12.5, {{QStringLiteral("PW"), 120.5, 33.25}, {QStringLiteral("Totals:"), 121, 33}});
    t.detail(1, 15, 20, 17.5, {{QStringLiteral("PW"), 80.4, 20}, {QStringLiteral("Totals:"), 80, 20}});
    t.detail(1, 20, 25, 22.5, {{QStringLiteral("PW"), 10.5, 5}, {QStringLiteral("Totals:"), 11, 5}}, true);
    writeAndCompare(db, ReportKind::Stand, QStringLiteral("Printed by: ") + kCrLf + kCrLf + QStringLiteral("Run 7 with thinning"),
                    QStringLiteral("stand_one_species.txt"), 2);
}

void TestReportFile::standElevenSpecies()
{
    RunDatabase db;
    ReportTables t(db);
    t.header(1, QStringLiteral("R7"), QStringLiteral("DENSITY"), 11, 3, 2020, QStringLiteral("R7: Stand Table"));
    t.detail(1, 0, 10, 5, speciesRow(kElevenCodes, 10, {{QStringLiteral("Totals:"), 660, 66}}));
    t.detail(1, 10, 20, 15, speciesRow(kElevenCodes, 1.25, {{QStringLiteral("Totals:"), 84, 8}}), true);
    writeAndCompare(db, ReportKind::Stand, QStringLiteral("Eleven species"), QStringLiteral("stand_eleven_species.txt"), 12);
}

void TestReportFile::standTwelveSpeciesWithOther()
{
    RunDatabase db;
    ReportTables t(db);
    // Num_Species counts all twelve species: the rule line is wider than the twelve columns.
    t.header(1, QStringLiteral("R7"), QStringLiteral("DENSITY"), 12, 3, 2020, QStringLiteral("R7: Stand Table"));
    const QStringList ten = kElevenCodes.mid(0, 10);
    t.detail(1, 0, 10, 5, speciesRow(ten, 10, {{QStringLiteral("Other:"), 230, 23}, {QStringLiteral("Totals:"), 780, 78}}));
    t.detail(1, 10, 20, 15, speciesRow(ten, 100, {{QStringLiteral("Other:"), 2300, 230}, {QStringLiteral("Totals:"), 7800, 780}}), true);
    writeAndCompare(db, ReportKind::Stand, QStringLiteral("Twelve species"), QStringLiteral("stand_twelve_species.txt"), 12);
}

void TestReportFile::stockSeveralBlocks()
{
    RunDatabase db;
    ReportTables t(db);
    t.header(1, QStringLiteral("R7"), QStringLiteral("MERCH_VOL"), 2, 1, 2000, QStringLiteral("R7: Stock Table"));
    t.header(2, QStringLiteral("R7"), QStringLiteral("MERCH_VOL"), 1, 2, 2010, QStringLiteral("R7: Stock Table"));
    t.header(3, QStringLiteral("R7"), QStringLiteral("MERCH_VOL"), 3, 3, 2020, QStringLiteral("R7: Stock Table"));
    t.detail(1, 10, 15, 12.5, {{QStringLiteral("PW"), 120.5, 33.25}, {QStringLiteral("SB"), 40, 2.5}, {QStringLiteral("Totals:"), 161, 36}});
    t.detail(1, 15, 20, 17.5, {{QStringLiteral("PW"), 10, 4.5}, {QStringLiteral("SB"), 0, 0}, {QStringLiteral("Totals:"), 10, 5}}, true);
    t.detail(2, 10, 15, 12.5, {{QStringLiteral("PW"), 100, 30.4}, {QStringLiteral("Totals:"), 100, 30}});
    t.detail(2, 15, 20, 17.5, {{QStringLiteral("xx"), 0, 0}, {QStringLiteral("Totals:"), 0, 0}}, true);
    t.detail(3, 10, 15, 12.5, {{QStringLiteral("PW"), 90, 28.5}, {QStringLiteral("SB"), 35, 3}, {QStringLiteral("FD"), 5, 1.5},
                               {QStringLiteral("Totals:"), 130, 34}});
    t.detail(3, 15, 20, 17.5, {{QStringLiteral("xx"), 0, 0}, {QStringLiteral("SB"), 20, 6.5}, {QStringLiteral("xx"), 0, 0},
                               {QStringLiteral("Totals:"), 20, 7}}, true);
    // The last block has three species columns and "Totals:".
    writeAndCompare(db, ReportKind::Stock, QStringLiteral("Printed by: ") + kCrLf + kCrLf, QStringLiteral("stock_three_blocks.txt"), 4);
}

void TestReportFile::zeroCellsSeparatorsAndCutTexts()
{
    RunDatabase db;
    ReportTables t(db);
    // Title and run name stand outside the cells and are never cut.
    t.header(1, QStringLiteral("R7"), QStringLiteral("DENSITY"), 2, 12, 2150, QStringLiteral("A title longer than any cell of the table"));
    // Rows stored out of order: the report sorts them by the class's lower edge.
    t.detail(1, 20, 30, 25, {{QStringLiteral("Lodgepole pine"), 12345678901.0, 0}, {QStringLiteral("PW"), 999.5, 0},
                             {QStringLiteral("Totals:"), 12345679901.0, 0}}, true);
    t.detail(1, 0, 10, 5, {{QStringLiteral("Lodgepole pine"), 0, 0}, {QStringLiteral("PW"), 0.4, 0}, {QStringLiteral("Totals:"), 0, 0}});
    t.detail(1, 10, 20, 15, {{QStringLiteral("Lodgepole pine"), 1234.5, 0}, {QStringLiteral("PW"), 2.5, 0},
                             {QStringLiteral("Totals:"), 1238, 0}});
    writeAndCompare(db, ReportKind::Stand, QStringLiteral("Line one") + kCrLf + QStringLiteral("Line two"),
                    QStringLiteral("stand_zero_separators_cut.txt"), 3);
}

void TestReportFile::speciesComposition()
{
    RunDatabase db;
    ReportTables t(db);
    t.compositionHeader(QStringLiteral("R7"), QStringLiteral("SL_SPH"), 2, QStringLiteral("R7: Density by Species"));
    t.levels(2010, {QStringLiteral("PW"), QStringLiteral("SB"), QStringLiteral("Total:")}, {401, 98, 499});
    t.levels(2000, {QStringLiteral("PW"), QStringLiteral("SB"), QStringLiteral("Total:")}, {425, 110, 535});
    writeAndCompare(db, ReportKind::Species, QStringLiteral("Printed By:") + kCrLf + kCrLf + QStringLiteral("Run 7 with thinning"),
                    QStringLiteral("species_sph.txt"), 3);
}

void TestReportFile::unitLineOfCompositionTypes_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("unitLine");
    QTest::newRow("SL_SPH") << "SL_SPH" << "               (SPH)";
    QTest::newRow("SL_BASAL_AREA") << "SL_BASAL_AREA" << "           (sq.m/ha)";
    QTest::newRow("SL_MERCH_VOL") << "SL_MERCH_VOL" << "           (cu.m/ha)";
    QTest::newRow("SL_TOTAL_VOL") << "SL_TOTAL_VOL" << "           (cu.m/ha)";
}

void TestReportFile::unitLineOfCompositionTypes()
{
    QFETCH(QString, type);
    QFETCH(QString, unitLine);
    RunDatabase db;
    addOneSpeciesComposition(db, QStringLiteral("R7"), type);
    qint16 columns = 0;
    const QString path = writeReport(db, ReportKind::Species, QStringLiteral("R7"), QString(), columns);
    QVERIFY(!path.isEmpty());
    const QList<QByteArray> lines = ReadWholeFile(path).split('\n');
    QCOMPARE(QString::fromUtf8(lines.at(5)), unitLine + QLatin1Char('\r'));
}

void TestReportFile::everyRunIdHasAFileInTheFolder_data()
{
    QTest::addColumn<QString>("runId");
    QTest::addColumn<QString>("fileName");
    QTest::newRow("plain") << "R 7" << "R 7_Species.txt";
    QTest::newRow("a renamed run") << "R 7:a" << "R 7%3Aa_Species.txt";
    QTest::newRow("a slash") << "A/B" << "A%2FB_Species.txt";
    QTest::newRow("a way up") << "../up" << "%2E%2E%2Fup_Species.txt";
    QTest::newRow("a backslash and quotes") << "a\\b\"c'" << "a%5Cb%22c'_Species.txt";
    QTest::newRow("a per cent") << "50%" << "50%25_Species.txt";
    QTest::newRow("control characters") << "t\tn\n" << "t%09n%0A_Species.txt";
    QTest::newRow("a blank at the end") << "R " << "R%20_Species.txt";
    QTest::newRow("letters of any script") << QString::fromUtf8("Sk\u00f6g \u6797") << QString::fromUtf8("Sk\u00f6g \u6797_Species.txt");
}

void TestReportFile::everyRunIdHasAFileInTheFolder()
{
    QFETCH(QString, runId);
    QFETCH(QString, fileName);
    RunDatabase db;
    addOneSpeciesComposition(db, runId);
    qint16 columns = 0;
    const QString path = writeReport(db, ReportKind::Species, runId, QString(), columns);
    QCOMPARE(path, QDir(db.workDir()).filePath(fileName));
    QCOMPARE(QDir(db.workDir()).entryList(QDir::Files), QStringList{fileName});
}

void TestReportFile::secondReportReplacesFirst()
{
    RunDatabase db;
    addOneSpeciesComposition(db, QStringLiteral("R7"));
    const QString path = db.workDir() + QStringLiteral("/R7_Species.txt");
    {
        QFile old(path);
        QVERIFY(old.open(QIODevice::WriteOnly));
        old.write(QByteArray(5000, 'x'));
    }
    qint16 columns = 0;
    QCOMPARE(writeReport(db, ReportKind::Species, QStringLiteral("R7"), QStringLiteral("D"), columns), path);
    const QByteArray text = ReadWholeFile(path);
    QVERIFY(text.startsWith("   T\r\n"));
    QVERIFY(!text.contains('x'));
}

// A report that fails is told once, in the generator's words, and the file at its path (the
// report of the run's other kind, say) stays as it was.
void TestReportFile::aFailedReportLeavesTheEarlierFile_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QString>("message");
    QTest::newRow("no header row of the run") << "header" << "The report data is unavailable.";
    QTest::newRow("a block without detail rows")
        << "rows" << "Error printing report\r\nEither BOF or EOF is True, or the current record has been deleted. (3021)";
    QTest::newRow("a block without a heading") << "heading" << "Error printing report\r\nSubscript out of range";
    QTest::newRow("a cell without a number") << "null" << "Error printing report\r\nBlock 1 of the report tables holds no number in Sp1_Density (empty)";
    QTest::newRow("a file that cannot be written") << "file" << "Error printing report\r\nCannot write ";
}

void TestReportFile::aFailedReportLeavesTheEarlierFile()
{
    QFETCH(QString, fault);
    QFETCH(QString, message);
    RunDatabase db;
    ReportTables t(db);
    t.header(1, fault == QLatin1String("header") ? QStringLiteral("Other run") : QStringLiteral("R7"), QStringLiteral("DENSITY"), 1, 1,
             2000, QStringLiteral("R7: Stand Table"));
    const QString path = db.workDir() + QStringLiteral("/R7_Stand.txt");
    const QList<Group> groups{{QStringLiteral("PW"), 1, 1}, {QStringLiteral("Totals:"), 1, 1}};
    if (fault == QLatin1String("rows")) {
        t.header(2, QStringLiteral("R7"), QStringLiteral("DENSITY"), 0, 2, 2010, QStringLiteral("R7: Stand Table"));
        t.detail(1, 10, 15, 12.5, groups);
    } else if (fault == QLatin1String("heading")) {
        t.detail(1, 10, 15, 12.5, {});
    } else {
        t.detail(1, 10, 15, 12.5, groups);
        if (fault == QLatin1String("null"))
            db.exec(QStringLiteral("UPDATE Report_Detail SET Sp1_Density = NULL"));
    }
    if (fault == QLatin1String("file")) {
        QVERIFY(QDir(db.workDir()).mkdir(QStringLiteral("R7_Stand.txt")));   // a folder where the file should be
    } else {
        QFile old(path);
        QVERIFY(old.open(QIODevice::WriteOnly) && old.write("earlier report") == 14);
    }
    qint16 columns = 0;
    const std::optional<SendrelError> failure = FailureOf([&] { writeReport(db, ReportKind::Stand, QStringLiteral("R7"), QStringLiteral("D"), columns); });
    QVERIFY(failure);
    const MessageRequest told = ReportFailureMessage(*failure);
    QVERIFY2(told.text.startsWith(message), qPrintable(told.text));
    QVERIFY(!told.text.contains(QLatin1String("Invalid use of Null")));
    QCOMPARE(told.icon, fault == QLatin1String("header") ? MsgIcon::Critical : MsgIcon::Exclamation);
    if (fault != QLatin1String("file"))
        QCOMPARE(ReadWholeFile(path), QByteArray("earlier report"));
    QCOMPARE(QDir(db.workDir()).entryList(QDir::Files), fault == QLatin1String("file") ? QStringList() : QStringList{"R7_Stand.txt"});
}

SENDREL_TEST_MAIN(TestReportFile)
#include "tst_reportfile.moc"
