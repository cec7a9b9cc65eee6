#include "cli/Cli.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("sendrel-cli"));
    QTextStream out(stdout);
    QTextStream err(stderr);
    return sendrel::RunCli(app.arguments().mid(1), out, err);
}
