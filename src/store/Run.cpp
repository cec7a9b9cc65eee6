#include "store/Run.h"

namespace sendrel {

QString KindLetter(RunKind kind)
{
    return kind == RunKind::Harvested ? QStringLiteral("H") : QStringLiteral("S");
}

QString KindWord(RunKind kind)
{
    return kind == RunKind::Harvested ? QStringLiteral("Harvested") : QStringLiteral("Standing");
}

RunKind KindOfText(QStringView text)
{
    return text.startsWith(QLatin1Char('H'), Qt::CaseInsensitive) ? RunKind::Harvested : RunKind::Standing;
}

std::optional<RunKind> ParseKind(QStringView text)
{
    for (RunKind kind : {RunKind::Standing, RunKind::Harvested}) {
        if (text.compare(KindLetter(kind), Qt::CaseInsensitive) == 0 || text.compare(KindWord(kind), Qt::CaseInsensitive) == 0)
            return kind;
    }
    return std::nullopt;
}

namespace {
bool isBlank(QChar c)
{
    return c == QLatin1Char('\t') || c.category() == QChar::Separator_Space;
}
}  // namespace

QString TakenRunId(const QString &text)
{
    qsizetype first = 0;
    qsizetype last = text.size();
    while (first < last && isBlank(text.at(first)))
        ++first;
    while (last > first && isBlank(text.at(last - 1)))
        --last;
    return text.mid(first, last - first);
}

std::optional<QChar> ControlCharacterIn(QStringView runId)
{
    for (const QChar c : runId) {
        if (c.category() == QChar::Other_Control)
            return c;
    }
    return std::nullopt;
}

}  // namespace sendrel
