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

}  // namespace sendrel
