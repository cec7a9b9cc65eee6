#include "app/GameDB.h"

#include "app/FolderLocation.h"
#include "app/TreeModel.h"
#include "base/SendrelError.h"
#include "base/SettingsStore.h"
#include "base/UserQuestions.h"

#include <QDir>
#include <QRegularExpression>
#include <QUrl>

namespace sendrel {

namespace {

std::chrono::milliseconds lockWaitOf(const TreeModel &tm)
{
    return std::chrono::milliseconds(static_cast<qint64>(tm.settings.LockWaitSeconds * 1000));
}

SendrelError cannotOpen(const SendrelError &e)
{
    return e.withDescription(QStringLiteral("Cannot open the database.\n") + e.description());
}

}  // namespace

bool OpenGameDB(TreeModel &tm, bool forceDialog, const std::function<void()> &beforeLocate)
{
    try {
        QString path = tm.GameDBPath;
        if (beforeLocate)
            beforeLocate();
        // Without a path before, the folders set up meanwhile name the file.
        if (path.isEmpty())
            path = tm.GameDBPath;
        if (!LocateFile(tm.questions, QStringLiteral("Locate Tolv Game Database"), kGameDBFilter, path, forceDialog))
            throw SendrelError(ErrNo::DialogCancelled, QStringLiteral("Sendrel"), QStringLiteral("Cancel was selected."));
        tm.GameDBPath = path;

        const QString folder = PathAddBackslash(QDir::toNativeSeparators(PathRemoveFileSpec(path)));
        tm.settingsStore.SaveSetting(kSectionCommon, QStringLiteral("DataDir"), folder);
        tm.settingsStore.sync();

        tm.DBEngine.setLockWait(lockWaitOf(tm));
        tm.DBEngine.Password.clear();
        tm.db.open(tm.GameDBPath);
        TellOpeningNote(tm);
        tm.settings.DataDir = QDir::toNativeSeparators(PathRemoveFileSpec(path));
        ReadSpecies(tm);
        if (forceDialog && !tm.settings.ServerDatabase.isEmpty()) {
            tm.settings.ServerDatabase.clear();
            tm.settings.SaveServerDatabase(tm.settingsStore);
        }
        return true;
    } catch (const SendrelError &e) {
        if (e.number() == ErrNo::DialogCancelled)
            throw e.withDescription(QStringLiteral("Canceled by the User"));
        throw cannotOpen(e);
    }
}

QString WithoutPassword(const QString &connection, QString &password)
{
    QString text = connection;
    // user:password@ in the authority, before the path or the parameters.
    const qsizetype authority = text.indexOf(QLatin1String("://")) + 3;
    qsizetype end = text.indexOf(QRegularExpression(QStringLiteral("[/?]")), authority);
    if (end < 0)
        end = text.size();
    const qsizetype at = text.lastIndexOf(QLatin1Char('@'), end - 1);
    if (authority >= 3 && at >= authority) {
        const qsizetype colon = text.indexOf(QLatin1Char(':'), authority);
        if (colon >= 0 && colon < at) {
            password = QUrl::fromPercentEncoding(text.mid(colon + 1, at - colon - 1).toUtf8());
            text.remove(colon, at - colon);
        }
    }
    // password=... among the parameters.
    static const QRegularExpression parameter(QStringLiteral("([?&])password=([^&]*)&?"));
    if (const QRegularExpressionMatch m = parameter.match(text); m.hasMatch()) {
        password = QUrl::fromPercentEncoding(m.captured(2).toUtf8());
        text.replace(m.capturedStart(), m.capturedLength(), m.captured(1));
        if (text.endsWith(QLatin1Char('?')) || text.endsWith(QLatin1Char('&')))
            text.chop(1);
    }
    return text;
}

bool OpenServerDatabase(TreeModel &tm, const QString &connection)
{
    QString password = tm.DBEngine.IsServer() && tm.DBEngine.PathToDB == connection.trimmed() ? tm.DBEngine.Password : QString();
    const QString text = WithoutPassword(connection.trimmed(), password);
    try {
        if (!clsDBEngine::IsServerDatabase(text)) {
            throw SendrelError(ErrNo::InvalidCall, QStringLiteral("Sendrel"),
                               QStringLiteral("\"%1\" is no connection text: postgresql://[user@]host[:port]/dbname.").arg(text));
        }
        {
            // Opened beside the database that is open, which stays while the user is asked and
            // when this one fails.
            RunStore probe;
            probe.DBEngine.setLockWait(lockWaitOf(tm));
            for (;;) {
                probe.DBEngine.Password = password;
                try {
                    probe.open(text);
                    break;
                } catch (const SendrelError &) {
                    if (!probe.DBEngine.PasswordNeeded())
                        throw;
                }
                if (!tm.questions.askPassword(text, password))
                    return false;
            }
            if (probe.NumSpecies == 0) {
                throw SendrelError(ErrNo::DatabaseFailure, QStringLiteral("Sendrel"),
                                   QStringLiteral("Species codes for the current variant are missing from the database."));
            }
        }
        tm.DBEngine.setLockWait(lockWaitOf(tm));
        tm.DBEngine.Password = password;
        tm.db.open(text);
        tm.settings.ServerDatabase = text;
        tm.settings.SaveServerDatabase(tm.settingsStore);
        return true;
    } catch (const SendrelError &e) {
        throw cannotOpen(e);
    }
}

void ReadSpecies(TreeModel &tm)
{
    try {
        tm.db.readSpecies();
        if (tm.db.NumSpecies == 0) {
            tm.questions.message({QStringLiteral("Missing Data"),
                                  QStringLiteral("Species codes for the current variant are missing from the database."),
                                  MsgIcon::Information, MsgButtons::OK, Answer::OK});
            CloseGameDB(tm);
            tm.EndProcess(1);
        }
    } catch (const SendrelError &e) {
        throw e.tagged(kTreeModelTag + QStringLiteral("|ReadSpecies"));
    }
}

void TellOpeningNote(TreeModel &tm)
{
    if (!tm.DBEngine.openingNote().isEmpty())
        tm.questions.ShowInfoMessage(tm.DBEngine.openingNote());
}

void CloseGameDB(TreeModel &tm)
{
    tm.db.close();
}

}  // namespace sendrel
