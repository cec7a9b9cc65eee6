#include "support/TestMain.h"

#include "base/SendrelError.h"
#include "domain/standstock/ClassLayout.h"
#include "domain/standstock/StandStockData.h"
#include "domain/standstock/StandStockDocument.h"
#include "domain/table/TableFile.h"
#include "domain/table/TableRender.h"
#include "support/RunDatabase.h"
#include "support/SampleRuns.h"
#include "support/TableReadBack.h"

#include <QTemporaryDir>

using namespace sendrel;
using namespace sendrel::test;

class tst_standstockdocument : public QObject {
    Q_OBJECT

    std::unique_ptr<RunDatabase> m_db;
    ClassLayout m_layout;
    QTemporaryDir m_dir;

    TableDocument compile(bool density, QList<SelectedCycle> cycles = {{1, "2000"}, {2, "2010"}, {3, "2020"}})
    {
        StandStockData data(m_layout, m_db->db.NumSpecies);
        return CompileStandStockDocument(m_db->db, {{kReportTestRunId, RunKind::Standing}, density, cycles}, m_layout, data);
    }

private slots:
    void init()
    {
        m_db = std::make_unique<RunDatabase>();
        AddReportTestRun(*m_db);
        // PW beside FD in class 17.5 with a fraction: rounded cells add to 31, the stems to 30.9.
        m_db->addTree(kReportTestRunId, QStringLiteral("S"), 1, 1, 16, 0.4, 1.0);
        QVERIFY(m_layout.SetClasses(u"10", u"5", u"4").passed());
    }
    void cleanup() { m_db.reset(); }

    // Worked out by hand from the trees: the species of all years in every table, in order of
    // first appearance; 0 for a species without trees that year; totals of the unrounded cells.
    void numbersByHand_data()
    {
        QTest::addColumn<bool>("density");
        QTest::addColumn<QByteArray>("csv");
        QTest::newRow("stand table") << true
                                     << QByteArray("Year,Cycle,DBH class (cm),FD (SPH),PW (SPH),BL (SPH),HW (SPH),LW (SPH),Total (SPH)\r\n"
                                                   "2000,1,12.5,40,0,0,0,0,40\r\n"
                                                   "2000,1,17.5,20.5,10.4,0,0,0,30.9\r\n"
                                                   "2000,1,22.5,0,0,0,0,0,0\r\n"
                                                   "2000,1,27.5,0,0,5,0,0,5\r\n"
                                                   "2000,1,Total,60.5,10.4,5,0,0,75.9\r\n"
                                                   "2010,2,12.5,35,0,0,0,0,35\r\n"
                                                   "2010,2,17.5,0,8,0,0,0,8\r\n"
                                                   "2010,2,22.5,0,0,0,12,0,12\r\n"
                                                   "2010,2,27.5,0,0,3,0,0,3\r\n"
                                                   "2010,2,Total,35,8,3,12,0,58\r\n"
                                                   "2020,3,12.5,0,0,0,0,250.25,250.25\r\n"
                                                   "2020,3,17.5,0,0,0,0,0,0\r\n"
                                                   "2020,3,22.5,0,0,0,0,0,0\r\n"
                                                   "2020,3,27.5,0,1500,0,0,0,1500\r\n"
                                                   "2020,3,Total,0,1500,0,0,250.25,1750.25\r\n");
        QTest::newRow("stock table, year 2000") << false
                                                << QByteArray("Year,Cycle,DBH class (cm),FD (cu.m/ha),PW (cu.m/ha),BL (cu.m/ha),Total (cu.m/ha)\r\n"
                                                              "2000,1,12.5,10,0,0,10\r\n"
                                                              "2000,1,17.5,10.25,20.4,0,30.65\r\n"
                                                              "2000,1,22.5,0,0,0,0\r\n"
                                                              "2000,1,27.5,0,0,7.5,7.5\r\n"
                                                              "2000,1,Total,20.25,20.4,7.5,48.15\r\n");
    }
    void numbersByHand()
    {
        QFETCH(bool, density);
        QFETCH(QByteArray, csv);
        const TableDocument document = compile(density, density ? QList<SelectedCycle>{{1, "2000"}, {2, "2010"}, {3, "2020"}}
                                                                : QList<SelectedCycle>{{1, "2000"}});
        const QString path = m_dir.filePath(QStringLiteral("t.csv"));
        SaveExport(document, path);
        QCOMPARE(ReadWholeFile(path), csv);
    }

    // The workbook: a sheet per year with the same columns, each read back number for number.
    void workbookSheets()
    {
        const TableDocument document = compile(true);
        const QString path = m_dir.filePath(QStringLiteral("t.xlsx"));
        SaveExport(document, path);
        QCOMPARE(WorkbookSheets(path), (QStringList{"2000 cycle 1", "2010 cycle 2", "2020 cycle 3", "Definitions"}));
        for (int s = 1; s <= 3; ++s) {
            const DataTable &table = document.tables.at(s - 1);
            QCOMPARE(table.columns.size(), 7);   // DBH class, five species, Total
            const QString differs = Differs(ReadXlsx(path, s), table);
            QVERIFY2(differs.isEmpty(), qPrintable(QStringLiteral("sheet %1: %2").arg(s).arg(differs)));
        }
    }

    // Nothing is compiled for a run another program has deleted, nor without a year.
    void refusals_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("said");
        QTest::newRow("run deleted meanwhile") << "DELETE FROM Model_Run WHERE Standing_Harvested = 'S'" << "There is no run CLIRPT:Standing in ";
        QTest::newRow("no year") << "" << "No Cycles Are Selected";
    }
    void refusals()
    {
        QFETCH(QString, sql);
        QFETCH(QString, said);
        if (!sql.isEmpty())
            m_db->exec(sql);
        try {
            compile(true, sql.isEmpty() ? QList<SelectedCycle>{} : QList<SelectedCycle>{{1, "2000"}});
            QFAIL("compiled");
        } catch (const SendrelError &e) {
            QVERIFY2(e.description().contains(said), qPrintable(e.description()));
        }
    }
};

SENDREL_TEST_MAIN(tst_standstockdocument)
#include "tst_standstockdocument.moc"
