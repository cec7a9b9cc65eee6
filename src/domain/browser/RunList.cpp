#include "domain/browser/RunList.h"

#include "store/RunStore.h"

#include <algorithm>

namespace sendrel {

RunKind RunEntry::kind() const
{
    return kindWord.startsWith(QLatin1Char('S')) ? RunKind::Standing : RunKind::Harvested;
}

QString MakeRunEntry(const RunKey &run, const QString &description)
{
    return run.runId + QLatin1Char(':') + run.word() + QLatin1Char('\t') + description;
}

RunEntry SplitRunEntry(const QString &entry)
{
    // The tab that ends the head is the one behind the kind word: a Run Id may hold tabs too.
    qsizetype tab = -1;
    for (qsizetype at = entry.indexOf(QLatin1Char('\t')); at >= 0 && tab < 0; at = entry.indexOf(QLatin1Char('\t'), at + 1)) {
        const QStringView head = QStringView(entry).left(at);
        if (head.endsWith(QLatin1String(":Standing")) || head.endsWith(QLatin1String(":Harvested")))
            tab = at;
    }
    if (tab < 0)
        tab = entry.indexOf(QLatin1Char('\t'));
    RunEntry e;
    const QString head = tab < 0 ? entry : entry.left(tab);
    e.description = tab < 0 ? QString() : entry.mid(tab + 1);
    const qsizetype colon = head.lastIndexOf(QLatin1Char(':'));
    if (colon < 0) {
        e.runId = head;
    } else {
        e.runId = head.left(colon);
        e.kindWord = head.mid(colon + 1);
    }
    return e;
}

QStringList RunListEntries(RunStore &db, const std::optional<QString> &onlyRunId)
{
    QStringList entries;
    for (const RunRow &row : db.runs(onlyRunId))
        entries.append(MakeRunEntry(row.key, row.description));
    // The list control sorts its rows as text, without regard to case.
    std::stable_sort(entries.begin(), entries.end(),
                     [](const QString &a, const QString &b) { return a.compare(b, Qt::CaseInsensitive) < 0; });
    return entries;
}

int FirstStandingEntry(const QStringList &entries)
{
    for (int i = 0; i < entries.size(); ++i) {
        if (SplitRunEntry(entries[i]).kind() == RunKind::Standing)
            return i;
    }
    return 0;
}

}  // namespace sendrel
