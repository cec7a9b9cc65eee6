#pragma once

#include "cli/Command.h"

#include <QString>
#include <QStringList>
#include <QTextStream>

namespace sendrel::test {

// One command line of sendrel-cli run in process, with what it wrote.
struct CliRun {
    int code = -1;
    QString out;
    QString err;
};

inline CliRun RunTool(const QStringList &arguments)
{
    CliRun r;
    QTextStream out(&r.out);
    QTextStream err(&r.err);
    r.code = RunCli(arguments, out, err);
    out.flush();
    err.flush();
    return r;
}

}  // namespace sendrel::test
