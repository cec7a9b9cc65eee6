#pragma once

#include <QString>
#include <QTest>

namespace sendrel::test {

// Whether this run of a test program is its PostgreSQL half: CTest runs the programs that hold for
// both engines twice, the second time with SENDREL_TEST_ENGINE=postgresql.
bool OnServer();
// Why the server half cannot run on this machine; empty when it can.
QString ServerUnavailable();
// A new, empty database on the program's own throwaway cluster (a Unix socket in a temporary
// folder, no TCP port, removed when the program ends): its connection text.
QString NewServerDatabase();
// A role of the cluster that must give its password to reach the database of the connection text,
// with every right on its tables: the connection text as that role.
QString PasswordRole(const QString &database, const QString &role, const QString &password);
// Stops and removes the cluster, if one was started.
void StopServer();

// The server half of a program where its server binaries are missing: one skipped test that says so.
class ServerHalfSkipped : public QObject {
    Q_OBJECT
private slots:
    void serverHalf() { QSKIP(qPrintable(ServerUnavailable())); }
};

}  // namespace sendrel::test

// For a test of what only a database file has (its locks, journal, pages, folder).
#define SKIP_ON_SERVER()                                                                                                                   \
    do {                                                                                                                                   \
        if (sendrel::test::OnServer())                                                                                                     \
            QSKIP("a behaviour of the database file, which a server does not have");                                                       \
    } while (0)
