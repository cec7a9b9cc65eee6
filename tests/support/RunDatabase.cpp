#include "support/RunDatabase.h"

#include "app/GameDB.h"
#include "base/SendrelError.h"
#include "store/Schema.h"
#include "support/ServerDatabase.h"

#include <QDir>
#include <QFile>

#include <chrono>
#include <stdexcept>

namespace sendrel::test {

void Exec(RunStore &db, const QString &sql)
{
    try {
        Statement(db.DBEngine, sql).run();
    } catch (const SendrelError &e) {
        throw e.tagged(sql);
    }
}

QVariant Scalar(RunStore &db, const QString &sql)
{
    Statement s(db.DBEngine, sql);
    if (!s.next())
        return QVariant();
    const QVariant value = s.value(0);
    s.reset();
    return value;
}

qint64 Count(RunStore &db, const QString &table, const QString &where)
{
    return Scalar(db, QStringLiteral("SELECT COUNT(*) FROM ") + table + (where.isEmpty() ? QString() : QStringLiteral(" WHERE ") + where))
        .toLongLong();
}

QStringList Rows(RunStore &db, const QString &sql)
{
    Statement s(db.DBEngine, sql);
    QStringList out;
    while (s.next()) {
        QStringList cols;
        for (int i = 0; i < s.columnCount(); ++i)
            cols.append(s.isNull(i) ? QStringLiteral("NULL") : s.value(i).toString());
        out.append(cols.join(QLatin1Char('|')));
    }
    return out;
}

void AddRun(RunStore &db, const QString &runId, const QString &sorH, const QString &description)
{
    Statement(db.DBEngine, QStringLiteral("INSERT INTO Model_Run (Run_Id, Run_Date, Run_Time, Not_Used, Standing_Harvested, Variant_ID) "
                                          "VALUES (?1, '2023-11-14', '22:13:20', '', ?2, 2)"))
        .bind(1, runId)
        .bind(2, sorH)
        .run();
    if (!description.isNull())
        Statement(db.DBEngine, QStringLiteral("INSERT OR IGNORE INTO Run (Run_Id, Run_Desc) VALUES (?1, ?2)")).bind(1, runId).bind(2, description).run();
}

void AddHeader(RunStore &db, const QString &runId, const QString &sorH, int cycle, int year)
{
    Statement(db.DBEngine, QStringLiteral("INSERT INTO Model_Header (Run_Id, First_Header_Number, Cycle, Cycle_Year, Standing_Harvested) "
                                          "VALUES (?1, ?2, ?2, ?3, ?4)"))
        .bind(1, runId)
        .bind(2, cycle)
        .bind(3, year)
        .bind(4, sorH)
        .run();
}

void AddTree(RunStore &db, const QString &runId, const QString &sorH, int cycle, int speciesCode, double diameter,
             double treesPerHa, double totalVolume)
{
    Statement(db.DBEngine, QStringLiteral("INSERT INTO Model_Entries (Run_Id, Species_Code, Trees_per_ha, Current_Diameter, Total_Volume, "
                                          "Cycle_Number, Standing_Harvested, MerchVolLessDWB) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8)"))
        .bind(1, runId)
        .bind(2, speciesCode)
        .bind(3, treesPerHa)
        .bind(4, diameter)
        .bind(5, totalVolume)
        .bind(6, cycle)
        .bind(7, sorH)
        .bind(8, totalVolume / 2)
        .run();
}

RunDatabase::RunDatabase(Db kind) : m_kind(kind), tm(store, questions), db(tm.db)
{
    QDir(m_dir.path()).mkpath(QStringLiteral("bin"));
    QDir(m_dir.path()).mkpath(QStringLiteral("Work"));
    tm.ProgramDir = programDir();
    tm.EndProcess = [this](int code) {
        ended.append(code);
        throw ProcessEnded{code};
    };
    // A test that meets a lock fails at once rather than waiting the user's ten seconds.
    tm.DBEngine.setLockWait(std::chrono::milliseconds(200));
    if (OnServer())
        m_server = NewServerDatabase();
    if (kind == Db::None)
        return;
    CreateRunDatabase(path());
    if (kind == Db::Created)
        return;
    tm.settings.WorkDir = workDir();
    tm.settings.DataDir = dir();
    tm.GameDBPath = path();
    db.open(path());
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
    return m_server.isEmpty() ? folder() + kGameDBFileName : m_server;
}

void RunDatabase::openAsProgram()
{
    if (m_server.isEmpty() ? !QFile::exists(path()) : m_kind == Db::None)
        CreateRunDatabase(path());
    tm.GameDBPath = path();
    OpenGameDB(tm, false);
}

QString RunDatabase::writeFile(const QString &name, const QByteArray &content)
{
    const QString p = filePath(name);
    QFile f(p);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate) || f.write(content) != content.size())
        throw std::runtime_error("cannot write test file");
    return p;
}

QStringList RunTableRows(RunStore &db)
{
    QStringList rows;
    for (const char *table : {"Model_Run", "Model_Header", "Model_Entries", "Model_Cycle_Sums", "Run"})
        rows += Rows(db, QStringLiteral("SELECT '%1', * FROM %1 ORDER BY rowid").arg(QLatin1String(table)));
    return rows;
}

QByteArray ReadWholeFile(const QString &path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return QByteArray();
    return f.readAll();
}

}  // namespace sendrel::test
