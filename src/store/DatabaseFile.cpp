#include "store/DatabaseFile.h"

#include "base/SendrelError.h"
#include "store/DBEngine.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>
#include <QThread>
#include <QUrl>

#include <sqlite3.h>
#include <sys/vfs.h>

#include <chrono>

namespace sendrel {

namespace {

const QString kSource = QStringLiteral("Sendrel");

// A connection of its own to the copy, closed on every way out.
struct CopyConnection {
    sqlite3 *db = nullptr;
    sqlite3_backup *backup = nullptr;
    ~CopyConnection()
    {
        if (backup)
            sqlite3_backup_finish(backup);
        if (db)
            sqlite3_close(db);
    }
};

// Copies every page in one step, waiting for a lock that another program holds as a statement
// waits. One step is one read transaction of the source: a copy of one moment.
int copyAllPages(sqlite3_backup *backup, std::chrono::milliseconds wait)
{
    const auto deadline = std::chrono::steady_clock::now() + wait;
    for (;;) {
        const int rc = sqlite3_backup_step(backup, -1);
        if (rc == SQLITE_DONE)
            return SQLITE_OK;
        const int primary = rc & 0xff;
        if ((primary != SQLITE_BUSY && primary != SQLITE_LOCKED) || std::chrono::steady_clock::now() >= deadline)
            return rc;
        QThread::msleep(20);
    }
}

// "ok", or what the quick check of the connection's database found instead.
QString quickCheck(sqlite3 *db)
{
    sqlite3_stmt *check = nullptr;
    QString verdict;
    if (sqlite3_prepare_v2(db, "PRAGMA quick_check", -1, &check, nullptr) == SQLITE_OK && sqlite3_step(check) == SQLITE_ROW)
        verdict = QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(check, 0)));
    sqlite3_finalize(check);
    return verdict.isEmpty() ? QString::fromUtf8(sqlite3_errmsg(db)) : verdict;
}

}  // namespace

QString NetworkFileSystemName(qint64 fileSystemType)
{
    // The magic numbers of linux/magic.h and of the file systems that keep theirs to themselves.
    switch (static_cast<quint32>(fileSystemType)) {
    case 0x6969:
        return QStringLiteral("NFS");
    case 0x517B:
        return QStringLiteral("SMB");
    case 0xFF534D42:
        return QStringLiteral("SMB/CIFS");
    case 0xFE534D42:
        return QStringLiteral("SMB2");
    case 0x5346414F:
    case 0x6B414653:
        return QStringLiteral("AFS");
    case 0x73757245:
        return QStringLiteral("Coda");
    case 0x01021997:
        return QStringLiteral("9P");
    case 0x65735546:
        return QStringLiteral("FUSE (sshfs and the like)");
    case 0x564C:
        return QStringLiteral("NCP");
    case 0x00C36400:
        return QStringLiteral("Ceph");
    case 0x01161970:
        return QStringLiteral("GFS2");
    case 0x7461636F:
        return QStringLiteral("OCFS2");
    case 0x0BD00BD0:
        return QStringLiteral("Lustre");
    default:
        return QString();
    }
}

qint64 FileSystemTypeOf(const QString &path)
{
    const QFileInfo info(path);
    struct statfs fs {};
    if (statfs(QFile::encodeName(info.absoluteFilePath()).constData(), &fs) == 0)
        return static_cast<qint64>(fs.f_type);
    if (statfs(QFile::encodeName(info.absolutePath()).constData(), &fs) == 0)
        return static_cast<qint64>(fs.f_type);
    return 0;
}

void BackupDatabase(clsDBEngine &engine, const QString &target)
{
    const QString shownTarget = QDir::toNativeSeparators(target);
    const auto failed = [&](const QString &cause) {
        return SendrelError(ErrNo::DatabaseFailure, kSource,
                            QStringLiteral("Cannot back up the run database %1 to %2: %3")
                                .arg(QDir::toNativeSeparators(engine.PathToDB), shownTarget, cause));
    };
    if (QFileInfo::exists(target) || QFileInfo(target).isSymLink())
        throw SendrelError(ErrNo::FileAlreadyExists, kSource,
                           QStringLiteral("%1 exists already; a backup is written to a new file only.").arg(shownTarget));

    // A name of its own beside the target, so the move into place stays on one file system.
    QTemporaryFile part(target + QStringLiteral(".part-XXXXXX"));
    if (!part.open())
        throw failed(part.errorString());
    part.close();
    const QString partName = part.fileName();
    part.setPermissions(QFileInfo(engine.PathToDB).permissions());
    const auto removeJournals = [&] {
        for (const char *suffix : {"-journal", "-wal", "-shm"})
            QFile::remove(partName + QLatin1String(suffix));
    };
    {
        CopyConnection copy;
        const QByteArray name = QFile::encodeName(partName);
        int rc = sqlite3_open_v2(name.constData(), &copy.db, SQLITE_OPEN_READWRITE, nullptr);
        const auto sqliteFailure = [&](int code) {
            removeJournals();
            // A lock held past the wait in the one wording of locks; any other cause as SQLite says it.
            const int primary = code & 0xff;
            if (primary == SQLITE_BUSY || primary == SQLITE_LOCKED)
                return failed(engine.errorFrom(code).description());
            const bool told = copy.db && sqlite3_errcode(copy.db) != SQLITE_OK;
            return failed(QString::fromUtf8(told ? sqlite3_errmsg(copy.db) : sqlite3_errstr(code)));
        };
        if (rc != SQLITE_OK)
            throw sqliteFailure(rc);
        copy.backup = sqlite3_backup_init(copy.db, "main", engine.handle(), "main");
        if (!copy.backup)
            throw sqliteFailure(sqlite3_errcode(copy.db));
        rc = copyAllPages(copy.backup, engine.lockWait());
        if (rc != SQLITE_OK)
            throw sqliteFailure(rc);
        rc = sqlite3_backup_finish(copy.backup);
        copy.backup = nullptr;
        if (rc != SQLITE_OK)
            throw sqliteFailure(rc);

        // One file with no log beside it, whatever the journal of the original: it can be copied,
        // mailed and restored alone.
        rc = sqlite3_exec(copy.db, "PRAGMA journal_mode = DELETE", nullptr, nullptr, nullptr);
        if (rc != SQLITE_OK)
            throw sqliteFailure(rc);
        // The copy is read back whole before it takes the target's name.
        const QString verdict = quickCheck(copy.db);
        if (verdict != QLatin1String("ok"))
            throw failed(QStringLiteral("the copy does not read back whole (%1)").arg(verdict));
        rc = sqlite3_close(copy.db);
        copy.db = nullptr;
        if (rc != SQLITE_OK)
            throw sqliteFailure(rc);
    }
    removeJournals();
    // Never over a file that came meanwhile: rename refuses an existing name.
    if (!QFile::rename(partName, target))
        throw failed(QFileInfo::exists(target) ? QStringLiteral("%1 came into being meanwhile").arg(shownTarget)
                                               : QStringLiteral("it cannot be moved into place"));
    part.setAutoRemove(false);
}

void RestoreDatabase(clsDBEngine &engine, const QString &source)
{
    const auto failed = [&](const QString &cause) {
        return SendrelError(ErrNo::DatabaseFailure, kSource,
                            QStringLiteral("Cannot restore the run database %1 from %2: %3")
                                .arg(QDir::toNativeSeparators(engine.PathToDB), QDir::toNativeSeparators(source), cause));
    };
    if (!QFileInfo(source).isFile())
        throw failed(QStringLiteral("there is no such file"));
    CopyConnection backup;
    // Read only, and never made when missing.
    QUrl url = QUrl::fromLocalFile(QFileInfo(source).absoluteFilePath());
    url.setQuery(QStringLiteral("mode=ro"));
    int rc =
        sqlite3_open_v2(url.toString(QUrl::FullyEncoded).toUtf8().constData(), &backup.db, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, nullptr);
    if (rc != SQLITE_OK)
        throw failed(backup.db ? QString::fromUtf8(sqlite3_errmsg(backup.db)) : QString::fromUtf8(sqlite3_errstr(rc)));
    const QString verdict = quickCheck(backup.db);
    if (verdict != QLatin1String("ok"))
        throw failed(QStringLiteral("the backup does not read whole (%1)").arg(verdict));
    backup.backup = sqlite3_backup_init(engine.handle(), "main", backup.db, "main");
    if (!backup.backup)
        throw engine.errorFrom(sqlite3_errcode(engine.handle()));
    rc = copyAllPages(backup.backup, engine.lockWait());
    const int finished = sqlite3_backup_finish(backup.backup);
    backup.backup = nullptr;
    if (rc != SQLITE_OK)
        throw failed(QString::fromUtf8(sqlite3_errstr(rc)));
    if (finished != SQLITE_OK)
        throw engine.errorFrom(finished);
}

}  // namespace sendrel
