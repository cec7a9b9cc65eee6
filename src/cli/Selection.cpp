#include "cli/Selection.h"

#include "base/Numbers.h"
#include "base/SendrelError.h"
#include "base/Settings.h"
#include "cli/Command.h"

namespace sendrel {

QList<CycleListEntry> SelectedEntries(const QCommandLineParser &parser, const QVector<CycleListEntry> &entries, const QString &runName)
{
    QString given;
    for (const QString &name : {QStringLiteral("cycles"), QStringLiteral("years"), QStringLiteral("cycle"), QStringLiteral("year")}) {
        if (!parser.optionNames().contains(name))
            continue;
        if (!given.isEmpty())
            throw CliUsageFault{QStringLiteral("give one of --cycle, --year, --cycles and --years")};
        given = name;
    }
    if (given.isEmpty())
        return QList<CycleListEntry>(entries.begin(), entries.end());

    const bool byCycle = given.startsWith(QLatin1String("cycle"));
    const QList<qint64> wanted = NumberListOption(parser, given);
    if (!given.endsWith(QLatin1Char('s')) && wanted.size() != 1)
        throw RefusedValue(given, QStringLiteral("one whole number"), parser.value(given));
    auto keyOf = [byCycle](const CycleListEntry &e) {
        return byCycle ? static_cast<qint64>(e.cycle) : static_cast<qint64>(ReadNumber(e.yearText));
    };
    for (const qint64 w : wanted) {
        bool found = false;
        for (const CycleListEntry &e : entries)
            found = found || keyOf(e) == w;
        if (!found) {
            throw SendrelError(
                ErrNo::InvalidCall, QStringLiteral("sendrel-cli"),
                QStringLiteral("Run %1 has no %2 %3.").arg(runName, byCycle ? QStringLiteral("cycle") : QStringLiteral("year")).arg(w));
        }
    }
    QList<CycleListEntry> selected;
    for (const CycleListEntry &e : entries) {
        if (wanted.contains(keyOf(e)))
            selected.append(e);
    }
    return selected;
}

void LayoutFromFlagsOrSettings(const QCommandLineParser &parser, const Settings &settings, ClassLayout &layout)
{
    ClassEntryCheck check;
    if (parser.isSet(QStringLiteral("classes"))) {
        const QString classes = parser.value(QStringLiteral("classes"));
        const QStringList parts = classes.split(QLatin1Char(','));
        if (parts.size() != 3)
            throw RefusedValue(QStringLiteral("classes"), QStringLiteral("START,WIDTH,COUNT"), classes);
        check = layout.SetClasses(parts.at(0), parts.at(1), parts.at(2));
    } else {
        check = layout.SetClasses(DefaultText(settings.ClassesStart), DefaultText(settings.ClassesWidth), DefaultText(settings.NumClasses));
    }
    if (!check.passed())
        throw SendrelError(ErrNo::InvalidCall, QStringLiteral("sendrel-cli"), check.describe());
}

}  // namespace sendrel
