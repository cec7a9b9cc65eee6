#include "domain/output/WholeFile.h"

#include "base/SendrelError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sendrel {

namespace {

// The permissions a new file gets from the process's umask.
mode_t newFileMode()
{
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

}  // namespace

void SaveWholeFile(const QString &path, const QByteArray &bytes, const QString &source)
{
    // Written with the system's own calls, each result checked: a buffered write whose flush fails
    // at the close is not reported by every version of QSaveFile, and a cut file would take the
    // place of a good one.
    const QFileInfo info(path);
    const QString target = info.isSymLink() ? info.symLinkTarget() : path;
    const auto cannotWrite = [&](long number, int cause) {
        return SendrelError(
            number, source,
            QStringLiteral("Cannot write %1: %2").arg(QDir::toNativeSeparators(path), QString::fromLocal8Bit(std::strerror(cause))));
    };
    // A file that may not be written is not replaced behind its back by the move.
    if (::access(QFile::encodeName(target).constData(), F_OK) == 0 && ::access(QFile::encodeName(target).constData(), W_OK) != 0) {
        throw SendrelError(ErrNo::PathFileAccess, source,
                           QStringLiteral("Cannot write %1: Existing file %1 is not writable").arg(QDir::toNativeSeparators(path)));
    }
    QByteArray scratch = QFile::encodeName(target) + ".XXXXXX";
    const int fd = ::mkstemp(scratch.data());
    if (fd < 0)
        throw cannotWrite(ErrNo::PathFileAccess, errno);
    const auto fail = [&](int cause) {
        ::unlink(scratch.constData());
        return cannotWrite(ErrNo::DeviceIO, cause);
    };

    struct stat earlier {};
    const mode_t mode = ::stat(QFile::encodeName(target).constData(), &earlier) == 0 ? (earlier.st_mode & 07777) : newFileMode();
    if (::fchmod(fd, mode) != 0) {
        const int cause = errno;
        ::close(fd);
        throw fail(cause);
    }
    for (qsizetype done = 0; done < bytes.size();) {
        const ssize_t n = ::write(fd, bytes.constData() + done, static_cast<size_t>(bytes.size() - done));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            const int cause = n < 0 ? errno : EIO;
            ::close(fd);
            throw fail(cause);
        }
        done += n;
    }
    // On the disk before it takes the old file's place.
    if (::fsync(fd) != 0) {
        const int cause = errno;
        ::close(fd);
        throw fail(cause);
    }
    if (::close(fd) != 0)
        throw fail(errno);
    if (::rename(scratch.constData(), QFile::encodeName(target).constData()) != 0)
        throw fail(errno);
}

}  // namespace sendrel
