#pragma once

#include "base/RunKind.h"

#include <QString>
#include <QStringView>

#include <optional>

namespace sendrel {

// "S" or "H".
QString KindLetter(RunKind kind);
// "Standing" or "Harvested", as run lists show it.
QString KindWord(RunKind kind);
// The kind a window or a report takes from its text: "H" or "h" first means harvested, any
// other text standing ("Standing", "s", "" all count as standing).
RunKind KindOfText(QStringView text);
// A kind given by name: "S", "H", "standing" or "harvested", in any case; nothing otherwise.
std::optional<RunKind> ParseKind(QStringView text);

// A Run Id as it is taken from a header, a file name, a dialog or an option: without the blanks
// (spaces, tabs, other spacing characters) at either end. One rule everywhere, so that a run is
// found by the Id it was stored under.
QString TakenRunId(const QString &text);
// The first control character in a Run Id (a line end, an escape, NUL, ...), or nothing. Such an
// Id would break every line it is shown on: an import refuses it.
std::optional<QChar> ControlCharacterIn(QStringView runId);

// One run of the database: a Run Id of one kind. The same Run Id with both kinds is two runs.
struct RunKey {
    QString runId;
    RunKind kind = RunKind::Standing;

    QString letter() const { return KindLetter(kind); }
    QString word() const { return KindWord(kind); }
    // "Run Id:Standing", as messages name a run.
    QString displayName() const { return runId + QLatin1Char(':') + word(); }
    // "Run Id (Standing)", as window captions and chart titles name a run: the two kinds of one
    // Run Id must be told apart wherever a run is shown.
    QString captionName() const { return runId + QStringLiteral(" (") + word() + QLatin1Char(')'); }

    friend bool operator==(const RunKey &a, const RunKey &b)
    {
        return a.kind == b.kind && a.runId.compare(b.runId, Qt::CaseInsensitive) == 0;
    }
};

}  // namespace sendrel
