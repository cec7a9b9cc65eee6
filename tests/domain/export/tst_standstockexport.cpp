#include "support/TestMain.h"

#include "base/SendrelError.h"
#include "domain/export/StandStockExport.h"
#include "domain/standstock/ClassLayout.h"
#include "domain/standstock/StandStockData.h"
#include "support/RunDatabase.h"
#include "support/SampleRuns.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <map>
#include <tuple>

using namespace sendrel;
using namespace sendrel::test;

namespace {

// The report tables as the report reads them: block by block, the headings of its first row, for
// each class row the midpoint and the value under each heading, by year and heading.
using ReportCell = std::tuple<qint64, double, QString>;   // year, class midpoint, heading

std::map<ReportCell, double> reportTables(RunStore &db, bool density, QList<QList<double>> *blocks)
{
    std::map<ReportCell, double> cells;
    Statement s(db.DBEngine, QStringLiteral("SELECT h.Cycle_Year, d.* FROM Report_Detail d JOIN Report_Header h ON h.Report_Id = d.Report_id "
                                            "ORDER BY h.Report_Id, d.DBH_MinDia"));
    qint64 year = -1;
    QStringList headings;
    while (s.next()) {
        if (s.integer(0) != year) {
            blocks->append(QList<double>());
            headings.clear();
            for (int n = 0; n < 12 && !s.isNull(7 + 3 * n); ++n)
                headings.append(s.text(7 + 3 * n) == QLatin1String("Totals:") ? QStringLiteral("Total") : s.text(7 + 3 * n).remove(QLatin1Char(':')));
        }
        year = s.integer(0);
        const double midpoint = s.real(5);   // DBH_Midpoint, behind the year and five columns
        blocks->last().append(midpoint);
        for (qsizetype n = 0; n < headings.size(); ++n)
            blocks->last().append(cells[{year, midpoint, headings[n]}] = s.real(8 + 3 * static_cast<int>(n) + (density ? 0 : 1)));
    }
    return cells;
}

QByteArray workbookPart(const QString &path, const QString &part)
{
    QProcess unzip;
    unzip.start(QStringLiteral("unzip"), {QStringLiteral("-p"), path, part});
    unzip.waitForFinished();
    return unzip.readAllStandardOutput();
}

}  // namespace

class tst_standstockexport : public QObject {
    Q_OBJECT

    std::unique_ptr<RunDatabase> m_db;
    ClassLayout m_layout;
    QTemporaryDir m_dir;

    StandStockExport compile(bool density)
    {
        StandStockData data(m_layout, m_db->db.NumSpecies);
        return CompileStandStockExport(m_db->db, {{kReportTestRunId, RunKind::Standing}, density, {{1, "2000"}, {2, "2010"}, {3, "2020"}}},
                                       m_layout, data);
    }

private slots:
    void init()
    {
        m_db = std::make_unique<RunDatabase>();
        AddReportTestRun(*m_db);
        QVERIFY(m_layout.SetClasses(u"10", u"5", u"4").passed());
    }
    void cleanup() { m_db.reset(); }

    // The files read back hold the numbers of the report tables, every one of them: the CSV with
    // one header row for all years, the workbook a sheet per year.
    void filesHoldTheReportTables_data()
    {
        QTest::addColumn<bool>("density");
        QTest::newRow("stand table") << true;
        QTest::newRow("stock table") << false;
    }
    void filesHoldTheReportTables()
    {
        QFETCH(bool, density);
        const StandStockExport tables = compile(density);
        QList<QList<double>> blocks;
        const std::map<ReportCell, double> report = reportTables(m_db->db, density, &blocks);
        const QString unit = density ? QStringLiteral(" (SPH)") : QStringLiteral(" (cu.m/ha)");

        const QString csvPath = m_dir.filePath(QStringLiteral("t.csv"));
        SaveStandStockExport(tables, csvPath);
        QStringList lines = QString::fromUtf8(ReadWholeFile(csvPath)).split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
        const QStringList header = lines.takeFirst().split(QLatin1Char(','));
        // Species in order of first appearance through the years, the total last.
        QCOMPARE(header, (QStringList{"Year", "Cycle", "DBH class (cm)", "FD" + unit, "PW" + unit, "BL" + unit, "HW" + unit, "LW" + unit,
                                      "Total" + unit}));
        std::size_t found = 0;
        for (const QString &line : std::as_const(lines)) {
            const QStringList cells = line.split(QLatin1Char(','));
            QCOMPARE(cells.size(), header.size());
            for (qsizetype c = 3; c < cells.size(); ++c) {
                const auto at = report.find({cells[0].toLongLong(), cells[2].toDouble(), header[c].chopped(unit.size())});
                QCOMPARE(cells[c].isEmpty(), at == report.end());   // empty where that year has no such column
                if (at != report.end()) {
                    QCOMPARE(cells[c].toDouble(), at->second);
                    ++found;
                }
            }
        }
        QCOMPARE(found, report.size());

        const QString xlsxPath = m_dir.filePath(QStringLiteral("t.xlsx"));
        SaveStandStockExport(tables, xlsxPath);
        QVERIFY(workbookPart(xlsxPath, QStringLiteral("xl/workbook.xml")).contains("name=\"2020 cycle 3\""));
        static const QRegularExpression number(QStringLiteral("<c r=\"[A-Z]+[0-9]+\"><v>([^<]*)</v>"));
        for (qsizetype b = 0; b < blocks.size(); ++b) {
            QList<double> numbers;
            const QString sheet = QString::fromUtf8(workbookPart(xlsxPath, QStringLiteral("xl/worksheets/sheet%1.xml").arg(b + 1)));
            for (const QRegularExpressionMatch &m : number.globalMatch(sheet))
                numbers.append(m.captured(1).toDouble());
            QCOMPARE(numbers, blocks[b]);
        }
    }

    // Nothing is compiled for a run another program has deleted, and nothing touched.
    void failuresTouchNothing_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("said");
        QTest::newRow("run deleted meanwhile") << "DELETE FROM Model_Run WHERE Standing_Harvested = 'S'" << "There is no run CLIRPT:Standing in ";
        QTest::newRow("no year") << "" << "No Cycles Are Selected";
    }
    void failuresTouchNothing()
    {
        QFETCH(QString, sql);
        QFETCH(QString, said);
        compile(true);
        const QStringList before = m_db->rows(QStringLiteral("SELECT * FROM Report_Detail"));
        if (!sql.isEmpty())
            m_db->exec(sql);
        StandStockData data(m_layout, m_db->db.NumSpecies);
        try {
            CompileStandStockExport(m_db->db, {{kReportTestRunId, RunKind::Standing}, true, sql.isEmpty() ? QList<SelectedCycle>{} : QList<SelectedCycle>{{1, "2000"}}},
                                    m_layout, data);
            QFAIL("compiled");
        } catch (const SendrelError &e) {
            QVERIFY2(e.description().contains(said), qPrintable(e.description()));
        }
        QCOMPARE(m_db->rows(QStringLiteral("SELECT * FROM Report_Detail")), before);
    }
};

SENDREL_TEST_MAIN(tst_standstockexport)
#include "tst_standstockexport.moc"
