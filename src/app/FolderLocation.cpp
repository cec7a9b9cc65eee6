#include "app/FolderLocation.h"

#include "app/TreeModel.h"
#include "base/SendrelError.h"
#include "base/Settings.h"
#include "base/SettingsStore.h"
#include "base/UserQuestions.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace sendrel {

namespace {

bool isSeparator(QChar c)
{
    return c == QLatin1Char('/') || c == QDir::separator();
}

qsizetype lastSeparator(const QString &path)
{
    for (qsizetype i = path.size() - 1; i >= 0; --i) {
        if (isSeparator(path.at(i)))
            return i;
    }
    return -1;
}

}  // namespace

bool PathFileExists(const QString &path)
{
    return !path.isEmpty() && QFileInfo::exists(path);
}

bool PathIsDirectory(const QString &path)
{
    return !path.isEmpty() && QFileInfo(path).isDir();
}

QString PathFindFileName(const QString &path)
{
    return path.mid(lastSeparator(path) + 1);
}

QString PathRemoveFileSpec(const QString &path)
{
    const qsizetype at = lastSeparator(path);
    if (at < 0)
        return QString();
    return at == 0 ? path.left(1) : path.left(at);
}

QString PathFindExtension(const QString &path)
{
    const QString name = PathFindFileName(path);
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    return dot < 0 ? QString() : name.mid(dot);
}

QString PathAddBackslash(const QString &path)
{
    if (!path.isEmpty() && isSeparator(path.back()))
        return path;
    return path + QDir::separator();
}

bool LocateFile(UserQuestions &questions, const QString &title, const QString &filter, QString &path, bool forceDialog)
{
    try {
        if (PathFileExists(path) && !forceDialog)
            return true;
        const QString name = PathFindFileName(path);
        FileRequest request;
        request.title = QStringLiteral("Sendrel - ") + title;
        request.filter = filter;
        request.fileName = name;
        request.startFolder = PathRemoveFileSpec(path);
        request.defaultExtension = PathFindExtension(path);
        request.mustExist = true;
        // Asked to choose another file while this one is there: giving up keeps this one, and
        // there is nothing to try again.
        const bool canKeep = forceDialog && PathFileExists(path);
        for (;;) {
            if (PathFileExists(path) && !forceDialog)
                return true;
            forceDialog = false;
            const QString picked = questions.openFile(request);
            if (picked.isEmpty()) {
                if (canKeep)
                    return false;
                const Answer again =
                    questions.message({request.title,
                                       QStringLiteral("The file ") + name +
                                           QStringLiteral(" is required to successfully run Sendrel. Do you want to try again?"),
                                       MsgIcon::Critical, MsgButtons::RetryCancel, Answer::Retry});
                if (again != Answer::Retry)
                    return false;
                continue;
            }
            path = picked;
        }
    } catch (const SendrelError &e) {
        throw e.withDescription(QStringLiteral("TolvUtil.LocateFile(), ") + e.description());
    }
}

namespace {

// The words and keys that tell the Data folder's setup from the Work folder's.
struct FolderKind {
    const char *routine;  // for the error trail
    const char *questionTitle;
    const char *question;
    const char *dialogTitle;
    const char *refusal;
    const char *sourceName;  // folder of the installation
    const char *overwriteTitle;
    const char *key;
    QString (*defaultFolder)(bool create);
};

const FolderKind kDataFolder = {
    "TolvUtil.LocateDataFolder(), ",
    "Sendrel - Data Folder",
    "Your Data folder needs to be set up.  Choose Yes to use the following default location, or No to choose a custom folder.",
    "Sendrel - Choose the Data Folder",
    "The Data folder is required to successfully run Sendrel.  Do you want to try again?",
    "Data",
    "Copy Data Files",
    "DataDir",
    &GetDefaultDataFolder,
};

const FolderKind kWorkFolder = {
    "TolvUtil.LocateWorkFolder(), ",
    "Sendrel - Work Folder",
    "Your Work folder needs to be set up.  Choose Yes to use the following default location, or No to choose a custom folder.",
    "Sendrel - Choose the Work Folder",
    "The Work folder is required to successfully run Sendrel.  Do you want to try again?",
    "Work",
    "Copy Work Files",
    "WorkDir",
    &GetDefaultWorkFolder,
};

bool locateFolder(TreeModel &tm, QString &folder, const FolderKind &kind)
{
    try {
        const QString defaultFolder = kind.defaultFolder(false);
        const Answer answer = tm.questions.message({QString::fromLatin1(kind.questionTitle),
                                                    QString::fromLatin1(kind.question) + QStringLiteral("\n\n") + defaultFolder,
                                                    MsgIcon::Question, MsgButtons::YesNo, Answer::Yes});
        QString path;
        if (answer == Answer::Yes) {
            path = kind.defaultFolder(true);
        } else {
            while (!PathIsDirectory(path)) {
                const QString picked = BrowseForFolder(tm.questions, QString::fromLatin1(kind.dialogTitle), defaultFolder);
                if (picked.isEmpty()) {
                    const Answer again = tm.questions.message({QString::fromLatin1(kind.questionTitle), QString::fromLatin1(kind.refusal),
                                                               MsgIcon::Question, MsgButtons::RetryCancel, Answer::Retry});
                    if (again == Answer::Cancel)
                        return false;
                    continue;
                }
                path = PathAddBackslash(picked);
            }
        }
        folder = path;

        const QString source = PathAddBackslash(tm.InstallationFolder()) + QString::fromLatin1(kind.sourceName) + QDir::separator();
        CopyFolderFiles(tm.questions, source, path, true, QString::fromLatin1(kind.overwriteTitle));

        const QString key = QString::fromLatin1(kind.key);
        tm.settingsStore.SaveSetting(kSectionCommon, key, path);
        try {
            tm.settingsStore.DeleteSetting(kSectionKestrane, key);
        } catch (const SendrelError &e) {
            // The suite's front end may never have stored a folder of its own.
            if (e.number() != ErrNo::InvalidCall)
                throw;
        }
        tm.settingsStore.sync();
        return true;
    } catch (const SendrelError &e) {
        throw e.withDescription(QString::fromLatin1(kind.routine) + e.description());
    }
}

QStandardPaths::StandardLocation locationOf(int folderId)
{
    switch (folderId) {
    case kFolderIdDocuments:
        return QStandardPaths::DocumentsLocation;
    default:
        return QStandardPaths::GenericDataLocation;
    }
}

SendrelError folderFailure(const QString &path)
{
    return SendrelError(ErrNo::PathNotFound, QStringLiteral("Sendrel"), QStringLiteral("Path not found: ") + path);
}

}  // namespace

bool LocateDataFolder(TreeModel &tm, QString &dataDir)
{
    return locateFolder(tm, dataDir, kDataFolder);
}

bool LocateWorkFolder(TreeModel &tm, QString &workDir)
{
    return locateFolder(tm, workDir, kWorkFolder);
}

bool LocateDirectories(TreeModel &tm)
{
    try {
        bool result = true;
        if (!PathIsDirectory(tm.settings.DataDir))
            result = LocateDataFolder(tm, tm.settings.DataDir);
        if (!PathIsDirectory(tm.settings.WorkDir)) {
            const bool work = LocateWorkFolder(tm, tm.settings.WorkDir);
            result = result && work;
        }
        return result;
    } catch (const SendrelError &e) {
        throw e.withDescription(e.source() + QStringLiteral(".Locate_Directories(), ") + e.description());
    }
}

qint16 CopyFolderFiles(UserQuestions &questions, const QString &source, const QString &target, bool askOverwrite, const QString &title)
{
    const QDir sourceDir(source);
    if (!PathIsDirectory(source))
        throw folderFailure(source);
    const QStringList names = sourceDir.entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
    qint16 count = 0;
    for (const QString &name : names) {
        const QString from = sourceDir.filePath(name);
        const QString to = PathAddBackslash(target) + name;
        bool copy = true;
        if (QFileInfo::exists(to) && askOverwrite) {
            const Answer a =
                questions.message({QStringLiteral("Sendrel - ") + title,
                                   QStringLiteral("The following file already exists.  Overwrite with the original installation file?") +
                                       QStringLiteral("\n\n") + to,
                                   MsgIcon::Question, MsgButtons::YesNo, Answer::No});
            copy = a == Answer::Yes;
        }
        if (copy) {
            if (QFileInfo::exists(to)) {
                QFile::setPermissions(to, QFile::permissions(to) | QFile::WriteOwner | QFile::WriteUser);
                if (!QFile::remove(to))
                    throw SendrelError(ErrNo::PermissionDenied, QStringLiteral("Sendrel"), QStringLiteral("Permission denied: ") + to);
            }
            if (!QFile::copy(from, to))
                throw SendrelError(ErrNo::PathNotFound, QStringLiteral("Sendrel"),
                                   QStringLiteral("Cannot copy ") + from + QStringLiteral(" to ") + to);
        }
        // An installation file may be read-only; the user's copy must not be.
        QFile::setPermissions(to, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser | QFile::ReadGroup |
                                      QFile::ReadOther);
        ++count;
    }
    return count;
}

QString BrowseForFolder(UserQuestions &questions, const QString &title, const QString &startFolder)
{
    QString picked = questions.chooseFolder(title, startFolder);
    const qsizetype nul = picked.indexOf(QChar(u'\0'));
    if (nul >= 0)
        picked.truncate(nul);
    return picked;
}

long GetCompanyProductFolderPath(int folderId, const QString &company, const QString &product, bool create, QString &path)
{
    try {
        const QString special = QStandardPaths::writableLocation(locationOf(folderId));
        long status = kFolderStatusOK;
        if (special.isEmpty() || (!PathIsDirectory(special) && !create))
            status = ErrNo::DatabaseFailure;
        QString p = PathAddBackslash(QDir::toNativeSeparators(special));
        for (const QString &part : {company, product}) {
            if (part.isEmpty())
                continue;
            p += part + QDir::separator();
        }
        if (create && !QDir().mkpath(p))
            throw folderFailure(p);
        path = p;
        return status;
    } catch (const SendrelError &e) {
        throw e.withDescription(QStringLiteral("EUtil.GetCompanyProductFolderPath(),") + e.description());
    }
}

long GetMyDocumentsFolderPath(const QString &company, const QString &product, bool create, QString &path)
{
    try {
        return GetCompanyProductFolderPath(kFolderIdDocuments, company, product, create, path);
    } catch (const SendrelError &e) {
        throw e.withDescription(QStringLiteral("EUtil.GetMyDocumentsFolderPath(),") + e.description());
    }
}

QString GetProductFolder(bool create)
{
    QString path;
    GetMyDocumentsFolderPath(QString(), QStringLiteral("Tolvane"), create, path);
    return path;
}

namespace {

QString productSubFolder(const QString &name, bool create)
{
    const QString path = GetProductFolder(create) + name + QDir::separator();
    if (create && !QDir().mkpath(path))
        throw folderFailure(path);
    return path;
}

}  // namespace

QString GetDefaultDataFolder(bool create)
{
    return productSubFolder(QStringLiteral("Data"), create);
}

QString GetDefaultWorkFolder(bool create)
{
    return productSubFolder(QStringLiteral("Work"), create);
}

}  // namespace sendrel
