#include "app/GameDB.h"

#include "app/FolderLocation.h"
#include "base/SendrelError.h"
#include "base/SettingsStore.h"
#include "app/TreeModel.h"
#include "base/UserQuestions.h"

#include <QDir>

namespace sendrel {

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

        tm.DBEngine.setLockWait(std::chrono::milliseconds(static_cast<qint64>(tm.settings.LockWaitSeconds * 1000)));
        tm.db.open(tm.GameDBPath);
        TellOpeningNote(tm);
        tm.settings.DataDir = QDir::toNativeSeparators(PathRemoveFileSpec(path));
        ReadSpecies(tm);
        return true;
    } catch (const SendrelError &e) {
        if (e.number() == ErrNo::DialogCancelled)
            throw e.withDescription(QStringLiteral("Canceled by the User"));
        throw e.withDescription(QStringLiteral("Cannot open the database.\n") + e.description());
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
