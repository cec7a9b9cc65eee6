#include "support/RunDatabaseFixture.h"

#include "store/GameDB.h"
#include "store/Schema.h"

#include <QFile>

#include <stdexcept>

namespace sendrel::test {

RunDatabaseFixture::RunDatabaseFixture()
    : tm(store, questions)
{
    tm.EndProcess = [](int code) { throw ProcessEnded{code}; };
    dbPath = dir.filePath(kGameDBFileName);
    CreateRunDatabase(dbPath);
    tm.GameDBPath = dbPath;
    tm.DBEngine.PathToDB = dbPath;
    tm.DBEngine.OpenDB();
    reopenModelRunRS();
}

RunDatabaseFixture::~RunDatabaseFixture()
{
    CloseGameDB(tm);
}

void RunDatabaseFixture::reopenModelRunRS()
{
    tm.DBEngine.SQLString = QStringLiteral("Select * from Model_Run  WHERE 0=0");
    tm.ModelRunRS = tm.DBEngine.RetreiveRecords();
}

void RunDatabaseFixture::exec(const QString &sql)
{
    tm.DBEngine.SQLString = sql;
    tm.DBEngine.Execute();
}

QVariant RunDatabaseFixture::scalar(const QString &sql)
{
    tm.DBEngine.SQLString = sql;
    Recordset rs = tm.DBEngine.RetreiveRecords();
    return rs.Eof() ? QVariant() : rs.Fields(0);
}

qint64 RunDatabaseFixture::count(const QString &table, const QString &where)
{
    return scalar(QStringLiteral("SELECT COUNT(*) FROM ") + table + (where.isEmpty() ? QString() : QStringLiteral(" WHERE ") + where))
        .toLongLong();
}

QStringList RunDatabaseFixture::rows(const QString &sql)
{
    tm.DBEngine.SQLString = sql;
    Recordset rs = tm.DBEngine.RetreiveRecords();
    QStringList out;
    for (; !rs.Eof(); rs.MoveNext()) {
        QStringList cols;
        for (int i = 0; i < rs.FieldCount(); ++i)
            cols.append(rs.Fields(i).isNull() ? QStringLiteral("NULL") : rs.Fields(i).toString());
        out.append(cols.join(QLatin1Char('|')));
    }
    return out;
}

QString RunDatabaseFixture::writeFile(const QString &name, const QByteArray &content)
{
    const QString path = dir.filePath(name);
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate) || f.write(content) != content.size())
        throw std::runtime_error("cannot write test file");
    return path;
}

void RunDatabaseFixture::addRun(const QString &runId, const QString &kind)
{
    tm.DBEngine.AddRecord(QStringLiteral("Model_Run"), {runId, QStringLiteral("2020-01-01"), QStringLiteral("00:00:00"),
                                                         QStringLiteral("Not Used"), kind},
                          false);
}

}  // namespace sendrel::test
