#include "cli/CliDatabaseSession.h"

#include "app/SendrelError.h"
#include "store/GameDB.h"

#include <QDir>
#include <QFileInfo>

namespace sendrel {

CliDatabaseSession::CliDatabaseSession(CliContext &c)
    : ctx(c), questions(c.err), tm(store, questions)
{
    // A command's failure ends the command, not the process behind the caller's back.
    tm.EndProcess = [](int code) { throw SendrelError(code, QStringLiteral("sendrel-cli"), QStringLiteral("Stopped.")); };
}

CliDatabaseSession::~CliDatabaseSession()
{
    CloseGameDB(tm);
}

void CliDatabaseSession::open()
{
    if (!QFileInfo(ctx.dbPath).isFile()) {
        throw SendrelError(ErrNo::FileNotFound, QStringLiteral("sendrel-cli"),
                           QStringLiteral("Cannot open the database.\nThere is no run database at ") + QDir::toNativeSeparators(ctx.dbPath));
    }
    tm.GameDBPath = ctx.dbPath;
    tm.settings.DataDir = QDir::toNativeSeparators(QFileInfo(ctx.dbPath).absolutePath());
    try {
        tm.DBEngine.PathToDB = ctx.dbPath;
        tm.DBEngine.OpenDB();
        tm.DBEngine.SQLString = QStringLiteral("Select * from Model_Run  WHERE 0=0");
        tm.ModelRunRS = tm.DBEngine.RetreiveRecords();
    } catch (const SendrelError &e) {
        throw e.withDescription(QStringLiteral("Cannot open the database.\n") + e.description());
    }
}

QString CliKind(const QString &text)
{
    const QString t = text.toLower();
    if (t == QLatin1String("standing") || t == QLatin1String("s"))
        return QStringLiteral("S");
    if (t == QLatin1String("harvested") || t == QLatin1String("h"))
        return QStringLiteral("H");
    return QString();
}

}  // namespace sendrel
