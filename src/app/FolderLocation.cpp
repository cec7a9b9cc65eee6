#include "app/FolderLocation.h"

#include "app/SendrelError.h"
#include "app/UserQuestions.h"

#include <QDir>
#include <QFileInfo>

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
        for (;;) {
            if (PathFileExists(path) && !forceDialog)
                return true;
            forceDialog = false;
            const QString picked = questions.openFile(request);
            if (picked.isEmpty()) {
                const Answer again = questions.message(
                    {request.title,
                     QStringLiteral("The file ") + name + QStringLiteral(" is required to successfully run Sendrel. Do you want to try again?"),
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

}  // namespace sendrel
