#pragma once

#include <QString>
#include <QStringList>

namespace sendrel {

struct TreeModel;

// One row of a run list: Run Id, ":", "Standing" or "Harvested", a tab, the description.
// A Run Id may hold ":", so a row splits at the first tab and, ahead of it, at the last ":".
struct RunEntry {
    QString runId;
    QString kindWord;      // "Standing" or "Harvested"
    QString description;

    // "S" when the word begins with "S", else "H".
    QString sorH() const;
};

QString MakeRunEntry(const QString &runId, const QString &standingHarvested, const QString &description);
RunEntry SplitRunEntry(const QString &entry);

// The statement of the run list: every run of the variant, or with a run on the command line
// only that run.
QString RunListSQL(const TreeModel &tm);

// The rows of the run list, sorted as text as the list control sorts them.
QStringList RunListEntries(TreeModel &tm);

}  // namespace sendrel
