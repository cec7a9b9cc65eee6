#include "app/CommandLine.h"

namespace sendrel {

QString CommandLineText(const QStringList &arguments)
{
    return arguments.mid(1).join(QLatin1Char(' '));
}

QString GetCommandOption(const QString &commandLine, const QString &option)
{
    const qsizetype at = commandLine.indexOf(option, 0, Qt::CaseInsensitive);
    if (at < 0)
        return QString();
    qsizetype i = at + 2;
    qsizetype blanks = 0;
    while (i < commandLine.size() && commandLine.at(i) == QLatin1Char(' ')) {
        ++i;
        ++blanks;
    }
    if (blanks == 0)
        return QString();
    const qsizetype end = commandLine.indexOf(QLatin1Char(' '), i);
    return end < 0 ? commandLine.mid(i) : commandLine.mid(i, end - i);
}

CommandLineValues ReadCommandLine(const QString &commandLine)
{
    CommandLineValues values;
    values.CurrentRunId = GetCommandOption(commandLine, QStringLiteral("/R"));
    QString v = GetCommandOption(commandLine, QStringLiteral("/V"));
    if (v.isEmpty())
        v = QStringLiteral("2");
    v = v.toUpper();
    if (v == QLatin1String("TRW") || v == QLatin1String("1"))
        values.ModelVariant = 1;
    else if (v == QLatin1String("KD") || v == QLatin1String("2"))
        values.ModelVariant = 2;
    return values;
}

}  // namespace sendrel
