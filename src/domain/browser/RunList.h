#pragma once

#include "store/Run.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace sendrel {

class RunStore;

// One row of a run list: Run Id, ":", "Standing" or "Harvested", a tab, the description.
// A Run Id may hold ":" and tabs, so a row splits at the first tab behind ":Standing" or
// ":Harvested" (else at its first tab) and, ahead of it, at the last ":".
struct RunEntry {
    QString runId;
    QString kindWord;  // "Standing" or "Harvested"
    QString description;

    // Standing when the word begins with "S", else harvested.
    RunKind kind() const;
    RunKey key() const { return {runId, kind()}; }
};

QString MakeRunEntry(const RunKey &run, const QString &description);
RunEntry SplitRunEntry(const QString &entry);
// The position of the first standing run among list entries; 0 when there is none.
int FirstStandingEntry(const QStringList &entries);

// The rows of the run list, sorted as text as the list control sorts them: every run of the
// variant, or with a run named on the command line only the runs of that Run Id.
QStringList RunListEntries(RunStore &db, const std::optional<QString> &onlyRunId = std::nullopt);

}  // namespace sendrel
