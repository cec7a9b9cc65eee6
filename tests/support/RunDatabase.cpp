#include "RunDatabase.h"

#include "app/SendrelError.h"
#include "store/GameDB.h"
#include "store/Schema.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QTest>

namespace sendrel::test {

RunDatabase::RunDatabase()
    : m_tm(std::make_unique<TreeModel>(m_store, questions))
{
    CreateRunDatabase(path());
    m_tm->GameDBPath = path();
    m_tm->DBEngine.PathToDB = path();
    m_tm->DBEngine.OpenDB();
    ReadSpecies(*m_tm);
}

RunDatabase::~RunDatabase()
{
    CloseGameDB(*m_tm);
}

QString RunDatabase::path() const
{
    return m_dir.filePath(kGameDBFileName);
}

void RunDatabase::exec(const QString &sql)
{
    QSqlQuery q(m_tm->DBEngine.database());
    if (!q.exec(sql))
        QTest::qFail(qPrintable(QStringLiteral("%1: %2").arg(sql, q.lastError().text())), __FILE__, __LINE__);
}

void RunDatabase::addRun(const QString &runId, const QString &sorH)
{
    QSqlQuery q(m_tm->DBEngine.database());
    q.prepare(QStringLiteral("INSERT INTO Model_Run (Run_Id, Run_Date, Run_Time, Not_Used, Standing_Harvested) VALUES (?, '', '', '', ?)"));
    q.addBindValue(runId);
    q.addBindValue(sorH);
    if (!q.exec())
        QTest::qFail(qPrintable(q.lastError().text()), __FILE__, __LINE__);
}

void RunDatabase::addHeader(const QString &runId, const QString &sorH, int cycle, int year)
{
    QSqlQuery q(m_tm->DBEngine.database());
    q.prepare(QStringLiteral("INSERT INTO Model_Header (Run_Id, First_Header_Number, Cycle, Cycle_Year, Standing_Harvested) VALUES (?, ?, ?, ?, ?)"));
    q.addBindValue(runId);
    q.addBindValue(cycle);
    q.addBindValue(cycle);
    q.addBindValue(year);
    q.addBindValue(sorH);
    if (!q.exec())
        QTest::qFail(qPrintable(q.lastError().text()), __FILE__, __LINE__);
}

void RunDatabase::addTree(const QString &runId, const QString &sorH, int cycle, int speciesCode, double diameter,
                          double treesPerHa, double totalVolume)
{
    QSqlQuery q(m_tm->DBEngine.database());
    q.prepare(QStringLiteral("INSERT INTO Model_Entries (Run_Id, Species_Code, Trees_per_ha, Current_Diameter, Total_Volume, "
                             "Cycle_Number, Standing_Harvested, MerchVolLessDWB) VALUES (?, ?, ?, ?, ?, ?, ?, ?)"));
    q.addBindValue(runId);
    q.addBindValue(speciesCode);
    q.addBindValue(treesPerHa);
    q.addBindValue(diameter);
    q.addBindValue(totalVolume);
    q.addBindValue(cycle);
    q.addBindValue(sorH);
    // The net volume differs from the gross one, so that a table reading the wrong column shows.
    q.addBindValue(totalVolume / 2);
    if (!q.exec())
        QTest::qFail(qPrintable(q.lastError().text()), __FILE__, __LINE__);
}

}  // namespace sendrel::test
