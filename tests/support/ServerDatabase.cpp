#include "support/ServerDatabase.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <cerrno>
#include <csignal>
#include <libpq-fe.h>
#include <unistd.h>

#include <memory>
#include <stdexcept>

namespace sendrel::test {

namespace {

const QString kServerBin = QStringLiteral("/usr/lib/postgresql/15/bin");

// initdb refuses to run as root: the superuser runs the server as the postgres system user.
QStringList asServerUser(const QString &program, const QStringList &arguments)
{
    if (geteuid() != 0)
        return QStringList{program} + arguments;
    return QStringList{QStringLiteral("runuser"), QStringLiteral("-u"), QStringLiteral("postgres"), QStringLiteral("--"), program} +
           arguments;
}

void runOrThrow(const QStringList &command)
{
    QProcess p;
    p.setProcessChannelMode(QProcess::MergedChannels);
    p.start(command.first(), command.mid(1));
    if (!p.waitForFinished(60000) || p.exitStatus() != QProcess::NormalExit || p.exitCode() != 0)
        throw std::runtime_error(
            (command.join(QLatin1Char(' ')) + QStringLiteral(": ") + QString::fromLocal8Bit(p.readAll())).toStdString());
}

void stopCluster(const QString &dir)
{
    runOrThrow(
        asServerUser(kServerBin + QStringLiteral("/pg_ctl"), {QStringLiteral("-D"), dir + QStringLiteral("/data"), QStringLiteral("-m"),
                                                              QStringLiteral("immediate"), QStringLiteral("-w"), QStringLiteral("stop")}));
}

// The clusters of test programs that died before they could stop theirs (a crash, a kill).
void removeOrphans()
{
    const QDir tmp(QStringLiteral("/tmp"));
    for (const QString &name : tmp.entryList({QStringLiteral("sendrel-pg-*")}, QDir::Dirs)) {
        QFile owner(tmp.filePath(name + QStringLiteral("/owner")));
        if (!owner.open(QIODevice::ReadOnly))
            continue;
        const pid_t pid = owner.readAll().toInt();
        if (pid <= 0 || kill(pid, 0) == 0 || errno != ESRCH)
            continue;
        try {
            stopCluster(tmp.filePath(name));
        } catch (const std::exception &) {
            // Not running any more.
        }
        QDir(tmp.filePath(name)).removeRecursively();
    }
}

class Cluster {
public:
    Cluster()
    {
        removeOrphans();
        if (!m_dir.isValid())
            throw std::runtime_error("no temporary folder for the cluster");
        QFile::setPermissions(m_dir.path(), QFileDevice::Permissions(0x7777));
        QFile owner(m_dir.filePath(QStringLiteral("owner")));
        if (owner.open(QIODevice::WriteOnly))
            owner.write(QByteArray::number(getpid()));
        const QString data = m_dir.filePath(QStringLiteral("data"));
        runOrThrow(asServerUser(kServerBin + QStringLiteral("/initdb"),
                                {QStringLiteral("-D"), data, QStringLiteral("-A"), QStringLiteral("trust"), QStringLiteral("-U"),
                                 QStringLiteral("sendrel"), QStringLiteral("-E"), QStringLiteral("UTF8"), QStringLiteral("--locale=C"),
                                 QStringLiteral("--no-sync")}));
        // Durability is the server's business, not what these tests look at.
        runOrThrow(
            asServerUser(kServerBin + QStringLiteral("/pg_ctl"),
                         {QStringLiteral("-D"), data, QStringLiteral("-l"), m_dir.filePath(QStringLiteral("log")), QStringLiteral("-w"),
                          QStringLiteral("-o"),
                          QStringLiteral("-c listen_addresses='' -k %1 -c fsync=off -c full_page_writes=off -c synchronous_commit=off")
                              .arg(m_dir.path()),
                          QStringLiteral("start")}));
        m_started = true;
        m_admin = PQconnectdb(connection(QStringLiteral("postgres")).toUtf8().constData());
        if (PQstatus(m_admin) != CONNECTION_OK)
            throw std::runtime_error(PQerrorMessage(m_admin));
        exec("CREATE DATABASE runs");
        PQfinish(m_admin);
        m_admin = PQconnectdb(connection(QStringLiteral("runs")).toUtf8().constData());
        if (PQstatus(m_admin) != CONNECTION_OK)
            throw std::runtime_error(PQerrorMessage(m_admin));
    }
    ~Cluster()
    {
        if (m_admin)
            PQfinish(m_admin);
        try {
            if (m_started)
                stopCluster(m_dir.path());
        } catch (const std::exception &e) {
            qWarning("%s", e.what());
        }
    }

    QString connection(const QString &database) const
    {
        return QStringLiteral("postgresql://sendrel@/%1?host=%2").arg(database, m_dir.path());
    }

    // A schema of its own in the one database, which the connection text makes its only one: as
    // empty as a new database, made in a thousandth of the time.
    QString newDatabase()
    {
        const QString name = QStringLiteral("run%1").arg(++m_databases);
        exec("CREATE SCHEMA " + name.toUtf8());
        return connection(QStringLiteral("runs")) + QStringLiteral("&options=-csearch_path%3D") + name;
    }

    QString passwordRole(const QString &database, const QString &role, const QString &password)
    {
        const QByteArray schema = database.section(QStringLiteral("search_path%3D"), 1).toUtf8();
        const QByteArray name = role.toUtf8();
        exec("CREATE ROLE " + name + " LOGIN PASSWORD '" + password.toUtf8() + "'");
        exec("GRANT USAGE ON SCHEMA " + schema + " TO " + name);
        exec("GRANT ALL ON ALL TABLES IN SCHEMA " + schema + " TO " + name);
        exec("GRANT ALL ON ALL SEQUENCES IN SCHEMA " + schema + " TO " + name);
        PGresult *r = PQexec(m_admin, "SHOW hba_file");
        const QByteArray hba = PQgetvalue(r, 0, 0);
        PQclear(r);
        exec("COPY (VALUES ('local all " + name + " scram-sha-256'), ('local all all trust')) TO '" + hba + "'");
        exec("SELECT pg_reload_conf()");
        // The server reads the file again a moment after the signal.
        const QString text = QString(database).replace(QStringLiteral("sendrel@"), role + QLatin1Char('@'));
        for (int tries = 0; tries < 500; ++tries) {
            PGconn *c = PQconnectdb(text.toUtf8().constData());
            const bool asks = PQconnectionNeedsPassword(c);
            PQfinish(c);
            if (asks)
                return text;
            QThread::msleep(10);
        }
        throw std::runtime_error("the server does not ask for the password");
    }

    void exec(const QByteArray &sql)
    {
        PGresult *r = PQexec(m_admin, sql.constData());
        const bool ok = PQresultStatus(r) == PGRES_COMMAND_OK || PQresultStatus(r) == PGRES_TUPLES_OK;
        PQclear(r);
        if (!ok)
            throw std::runtime_error(PQerrorMessage(m_admin));
    }

private:
    // Not in the program's own temporary folder, which the server's user may not enter.
    QTemporaryDir m_dir{QStringLiteral("/tmp/sendrel-pg-XXXXXX")};
    bool m_started = false;
    PGconn *m_admin = nullptr;
    int m_databases = 0;
};

std::unique_ptr<Cluster> g_cluster;

}  // namespace

bool OnServer()
{
    return qgetenv("SENDREL_TEST_ENGINE") == "postgresql";
}

QString ServerUnavailable()
{
    for (const char *program : {"initdb", "pg_ctl"}) {
        if (!QFile::exists(kServerBin + QLatin1Char('/') + QLatin1String(program))) {
            return QStringLiteral("The PostgreSQL half is skipped: %1/%2 is not installed (scripts/setup installs postgresql-15).")
                .arg(kServerBin, QLatin1String(program));
        }
    }
    return QString();
}

QString NewServerDatabase()
{
    if (!g_cluster)
        g_cluster = std::make_unique<Cluster>();
    return g_cluster->newDatabase();
}

QString PasswordRole(const QString &database, const QString &role, const QString &password)
{
    return g_cluster->passwordRole(database, role, password);
}

void StopServer()
{
    g_cluster.reset();
}

}  // namespace sendrel::test
