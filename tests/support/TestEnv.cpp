#include "support/TestEnv.h"

#include "app/SendrelError.h"
#include "store/GameDB.h"
#include "store/Schema.h"

#include <QTest>

namespace sendrel::test {

TestEnv::TestEnv() : tm(std::make_unique<TreeModel>(store, questions))
{
    tm->EndProcess = [this](int code) {
        endCode = code;
        throw ProcessEnded{code};
    };
    tm->ProgramDir = m_dir.path() + QStringLiteral("/bin");
}

TestEnv::~TestEnv()
{
    CloseGameDB(*tm);
}

QString TestEnv::dbPath() const
{
    return m_dir.path() + QLatin1Char('/') + kGameDBFileName;
}

void TestEnv::openNewDatabase()
{
    CreateRunDatabase(dbPath());
    tm->GameDBPath = dbPath();
    OpenGameDB(*tm, false);
}

void TestEnv::exec(const QString &sql)
{
    tm->DBEngine.SQLString = sql;
    try {
        tm->DBEngine.Execute();
    } catch (const SendrelError &e) {
        QTest::qFail(qPrintable(QStringLiteral("SQL failed: %1: %2").arg(sql, e.description())), __FILE__, __LINE__);
        throw;
    }
}

int TestEnv::count(const QString &sql)
{
    tm->DBEngine.SQLString = sql;
    Recordset rs = tm->DBEngine.RetreiveRecords();
    return rs.Eof() ? 0 : rs.Fields(0).toInt();
}

}  // namespace sendrel::test
