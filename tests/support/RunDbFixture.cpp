#include "support/RunDbFixture.h"

#include "store/GameDB.h"
#include "store/Schema.h"

#include <QDir>
#include <QFile>

namespace sendrel::test {

RunDbFixture::RunDbFixture()
    : tm(store, questions)
{
    QDir(m_dir.path()).mkpath(QStringLiteral("bin"));
    QDir(m_dir.path()).mkpath(QStringLiteral("Work"));
    tm.ProgramDir = programDir();
    tm.settings.WorkDir = workDir();
    tm.settings.DataDir = m_dir.path();
    tm.GameDBPath = m_dir.filePath(kGameDBFileName);
    tm.EndProcess = [](int code) { throw ProcessEnded{code}; };
    CreateRunDatabase(tm.GameDBPath);
    tm.DBEngine.PathToDB = tm.GameDBPath;
    tm.DBEngine.OpenDB();
    ReadSpecies(tm);
}

RunDbFixture::~RunDbFixture()
{
    CloseGameDB(tm);
}

QString RunDbFixture::programDir() const
{
    return m_dir.filePath(QStringLiteral("bin"));
}

QString RunDbFixture::workDir() const
{
    return m_dir.filePath(QStringLiteral("Work"));
}

void RunDbFixture::exec(const QString &sql)
{
    tm.DBEngine.SQLString = sql;
    try {
        tm.DBEngine.Execute();
    } catch (const SendrelError &e) {
        // The statement in the message makes a broken fixture easy to find.
        throw e.tagged(sql);
    }
}

QVariant RunDbFixture::scalar(const QString &sql)
{
    tm.DBEngine.SQLString = sql;
    Recordset rs = tm.DBEngine.RetreiveRecords();
    return rs.Eof() ? QVariant() : rs.Fields(0);
}

QByteArray ReadWholeFile(const QString &path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return QByteArray();
    return f.readAll();
}

}  // namespace sendrel::test
