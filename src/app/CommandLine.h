#pragma once

#include <QString>
#include <QStringList>
#include <QtGlobal>

namespace sendrel {

// The process's command line as one text: the arguments behind the program, joined by blanks.
QString CommandLineText(const QStringList &arguments);

// The value behind a two-character option ("/R", "/V"), found without regard to case, or "".
// The value runs from the first non-blank behind the option up to the next blank.
QString GetCommandOption(const QString &commandLine, const QString &option);

struct CommandLineValues {
    QString CurrentRunId;
    qint16 ModelVariant = 0;
};

// "/R" gives the run, "/V" the variant: "TRW" or "1" give 1, "KD", "2" or nothing give 2,
// anything else leaves 0.
CommandLineValues ReadCommandLine(const QString &commandLine);

}  // namespace sendrel
