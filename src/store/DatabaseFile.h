#pragma once

#include <QString>
#include <QtGlobal>

namespace sendrel {

class clsDBEngine;

// The name of a file system that reaches the file over a network ("NFS", "SMB/CIFS", "SMB2",
// "AFS", "Coda", "9P", "FUSE" as sshfs mounts, and cluster file systems), by its statfs f_type;
// empty for a file system of this machine. The write-ahead log keeps an index in memory shared by
// the programs of one machine, which such a file system cannot share, so a run database there
// keeps the rollback journal.
QString NetworkFileSystemName(qint64 fileSystemType);

// The statfs f_type of the file system holding path (its folder while the file is not there);
// 0 when it cannot be told.
qint64 FileSystemTypeOf(const QString &path);

// Copies the run database open in engine to target through SQLite's online backup: the copy is
// the database as of one moment, while other programs go on reading and writing (in one read
// transaction; a writer of a file kept with the rollback journal waits for it). Written under a
// name of its own beside target, checked, and moved into place whole; an existing target is
// refused and a failed copy leaves nothing behind. Fails with the file and the cause.
void BackupDatabase(clsDBEngine &engine, const QString &target);

// Puts the content of the backup file source in place of the run database open in engine, in
// one write transaction through the database's own journal or log: other programs see the old
// database or the restored one, never a mix, and no log left beside the file can be played onto
// it. The backup is read whole first; a damaged one, or a file that is no database, is refused
// and nothing is touched. Fails with the file and the cause.
void RestoreDatabase(clsDBEngine &engine, const QString &source);

}  // namespace sendrel
