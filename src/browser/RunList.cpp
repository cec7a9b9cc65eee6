#include "browser/RunList.h"

#include "app/Numbers.h"
#include "app/ToolBox.h"
#include "app/TreeModel.h"

#include <algorithm>

namespace sendrel {

QString RunEntry::sorH() const
{
    return kindWord.startsWith(QLatin1Char('S')) ? QStringLiteral("S") : QStringLiteral("H");
}

QString MakeRunEntry(const QString &runId, const QString &standingHarvested, const QString &description)
{
    const QString word = standingHarvested == QLatin1String("S") ? QStringLiteral("Standing") : QStringLiteral("Harvested");
    return runId + QLatin1Char(':') + word + QLatin1Char('\t') + description;
}

RunEntry SplitRunEntry(const QString &entry)
{
    RunEntry e;
    const qsizetype tab = entry.indexOf(QLatin1Char('\t'));
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

QString RunListSQL(const TreeModel &tm)
{
    const QString select = QStringLiteral("SELECT ") + QStringLiteral("  Model_Run.Run_Id, Model_Run.Standing_Harvested, Run.Run_Desc ")
                           + QStringLiteral("FROM ") + QStringLiteral("  Model_Run LEFT JOIN Run ON Model_Run.Run_Id = Run.Run_Id");
    if (tm.RunOnCommandLine)
        return select + QStringLiteral(" ") + QStringLiteral(" Where Run.Run_ID='") + QuoteSQL(tm.CurrentRunId) + QStringLiteral("'");
    return select + QStringLiteral(" WHERE Variant_ID = ") + PrintForm(2);
}

QStringList RunListEntries(TreeModel &tm)
{
    tm.DBEngine.SQLString = RunListSQL(tm);
    Recordset rs = tm.DBEngine.RetreiveRecords();
    QStringList entries;
    entries.reserve(rs.RecordCount());
    for (; !rs.Eof(); rs.MoveNext()) {
        entries.append(MakeRunEntry(rs.Fields(QStringLiteral("Run_ID")).toString(),
                                    rs.Fields(QStringLiteral("Standing_Harvested")).toString(),
                                    rs.Fields(QStringLiteral("Run_Desc")).toString()));
    }
    rs.Close();
    // The list control sorts its rows as text, without regard to case.
    std::stable_sort(entries.begin(), entries.end(), [](const QString &a, const QString &b) {
        return a.compare(b, Qt::CaseInsensitive) < 0;
    });
    return entries;
}

}  // namespace sendrel
