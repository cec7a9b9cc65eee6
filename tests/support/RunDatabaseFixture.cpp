#include "RunDatabaseFixture.h"

#include "app/ToolBox.h"
#include "app/TreeModel.h"
#include "store/GameDB.h"
#include "store/Schema.h"

#include <QDir>

using namespace sendrel;

RunDatabaseFixture::RunDatabaseFixture()
{
    if (!m_dir.isValid())
        return;
    CreateRunDatabase(path());
    m_valid = true;
}

QString RunDatabaseFixture::folder() const
{
    return QDir::toNativeSeparators(m_dir.path() + QLatin1Char('/'));
}

QString RunDatabaseFixture::path() const
{
    return folder() + kGameDBFileName;
}

void RunDatabaseFixture::open(TreeModel &tm) const
{
    tm.settings.DataDir = folder();
    tm.settings.WorkDir = folder();
    tm.GameDBPath = path();
    OpenGameDB(tm, false);
}

void RunDatabaseFixture::addRun(TreeModel &tm, const QString &runId, const QString &sorH, const QString &description)
{
    execute(tm, QStringLiteral("INSERT INTO Model_Run (Run_Id, Run_Date, Run_Time, Not_Used, Standing_Harvested, Variant_ID) "
                               "VALUES ('%1', '2023-11-14', '22:13:20', '', '%2', 2)")
                    .arg(QuoteSQL(runId), sorH));
    if (count(tm, QStringLiteral("SELECT COUNT(*) FROM Run WHERE Run_Id = '%1'").arg(QuoteSQL(runId))) == 0)
        execute(tm, QStringLiteral("INSERT INTO Run (Run_Id, Run_Desc) VALUES ('%1', '%2')").arg(QuoteSQL(runId), QuoteSQL(description)));
}

void RunDatabaseFixture::execute(TreeModel &tm, const QString &sql)
{
    tm.DBEngine.SQLString = sql;
    tm.DBEngine.Execute();
}

int RunDatabaseFixture::count(TreeModel &tm, const QString &sql)
{
    tm.DBEngine.SQLString = sql;
    Recordset rs = tm.DBEngine.RetreiveRecords();
    return rs.Eof() ? 0 : rs.Fields(0).toInt();
}
