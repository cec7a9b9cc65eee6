#include "support/RunDatabase.h"

#include "app/SendrelError.h"
#include "app/ToolBox.h"
#include "store/GameDB.h"
#include "store/Schema.h"

#include <QDir>
#include <QFile>
#include <QSqlError>
#include <QSqlQuery>
#include <QTest>

#include <stdexcept>

namespace sendrel::test {

RunDatabase::RunDatabase(Db db)
    : tm(store, questions)
{
    QDir(m_dir.path()).mkpath(QStringLiteral("bin"));
    QDir(m_dir.path()).mkpath(QStringLiteral("Work"));
    tm.ProgramDir = programDir();
    tm.EndProcess = [this](int code) {
        ended.append(code);
        throw ProcessEnded{code};
    };
    if (db == Db::None)
        return;
    CreateRunDatabase(path());
    if (db == Db::Created)
        return;
    tm.settings.WorkDir = workDir();
    tm.settings.DataDir = dir();
    tm.GameDBPath = path();
    tm.DBEngine.PathToDB = path();
    tm.DBEngine.OpenDB();
    ReadSpecies(tm);
    reopenModelRunRS();
}

RunDatabase::~RunDatabase()
{
    CloseGameDB(tm);
}

QString RunDatabase::folder() const
{
    return QDir::toNativeSeparators(m_dir.path() + QLatin1Char('/'));
}

QString RunDatabase::path() const
{
    return folder() + kGameDBFileName;
}

void RunDatabase::openAsProgram()
{
    if (!QFile::exists(path()))
        CreateRunDatabase(path());
    tm.GameDBPath = path();
    OpenGameDB(tm, false);
}

void RunDatabase::reopenModelRunRS()
{
    tm.DBEngine.SQLString = QStringLiteral("Select * from Model_Run  WHERE 0=0");
    tm.ModelRunRS = tm.DBEngine.RetreiveRecords();
}

void RunDatabase::exec(const QString &sql)
{
    tm.DBEngine.SQLString = sql;
    try {
        tm.DBEngine.Execute();
    } catch (const SendrelError &e) {
        throw e.tagged(sql);
    }
}

QVariant RunDatabase::scalar(const QString &sql)
{
    tm.DBEngine.SQLString = sql;
    Recordset rs = tm.DBEngine.RetreiveRecords();
    return rs.Eof() ? QVariant() : rs.Fields(0);
}

qint64 RunDatabase::count(const QString &table, const QString &where)
{
    return scalar(QStringLiteral("SELECT COUNT(*) FROM ") + table + (where.isEmpty() ? QString() : QStringLiteral(" WHERE ") + where))
        .toLongLong();
}

QStringList RunDatabase::rows(const QString &sql)
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

QString RunDatabase::writeFile(const QString &name, const QByteArray &content)
{
    const QString p = filePath(name);
    QFile f(p);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate) || f.write(content) != content.size())
        throw std::runtime_error("cannot write test file");
    return p;
}

void RunDatabase::addRun(const QString &runId, const QString &sorH, const QString &description)
{
    exec(QStringLiteral("INSERT INTO Model_Run (Run_Id, Run_Date, Run_Time, Not_Used, Standing_Harvested, Variant_ID) "
                        "VALUES ('%1', '2023-11-14', '22:13:20', '', '%2', 2)")
             .arg(QuoteSQL(runId), QuoteSQL(sorH)));
    if (!description.isNull() && count(QStringLiteral("Run"), QStringLiteral("Run_Id = '%1'").arg(QuoteSQL(runId))) == 0)
        exec(QStringLiteral("INSERT INTO Run (Run_Id, Run_Desc) VALUES ('%1', '%2')").arg(QuoteSQL(runId), QuoteSQL(description)));
}

// Bound through QSqlQuery so that numbers keep their type.
static void execBound(TreeModel &tm, const QString &sql, const QVariantList &values)
{
    QSqlQuery q(tm.DBEngine.database());
    q.prepare(sql);
    for (const QVariant &v : values)
        q.addBindValue(v);
    if (!q.exec())
        QTest::qFail(qPrintable(QStringLiteral("%1: %2").arg(sql, q.lastError().text())), __FILE__, __LINE__);
}

void RunDatabase::addHeader(const QString &runId, const QString &sorH, int cycle, int year)
{
    execBound(tm, QStringLiteral("INSERT INTO Model_Header (Run_Id, First_Header_Number, Cycle, Cycle_Year, Standing_Harvested) VALUES (?, ?, ?, ?, ?)"),
              {runId, cycle, cycle, year, sorH});
}

void RunDatabase::addTree(const QString &runId, const QString &sorH, int cycle, int speciesCode, double diameter,
                          double treesPerHa, double totalVolume)
{
    // The net volume differs from the gross one, so that a table reading the wrong column shows.
    execBound(tm, QStringLiteral("INSERT INTO Model_Entries (Run_Id, Species_Code, Trees_per_ha, Current_Diameter, Total_Volume, "
                                 "Cycle_Number, Standing_Harvested, MerchVolLessDWB) VALUES (?, ?, ?, ?, ?, ?, ?, ?)"),
              {runId, speciesCode, treesPerHa, diameter, totalVolume, cycle, sorH, totalVolume / 2});
}

QByteArray ReadWholeFile(const QString &path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return QByteArray();
    return f.readAll();
}

}  // namespace sendrel::test
