#pragma once

#include "store/Run.h"
#include "store/RunStore.h"

#include <QList>
#include <QStringList>

namespace sendrel {

// Copies runs from one run database to another, of either engine: each run's Model_Run row, its
// cycles, its tree records in table order, its Run row where the target has none, and its kept
// sums, all in one transaction of the target. runIds names Run Ids (both kinds of each; lookups
// ignore case); none copies every run. A Run Id missing in the source, or a run the target holds
// already (duplicates are refused as the import refuses them), fails before anything is written.
// Returns the runs copied, in the source's order.
QList<RunKey> CopyRuns(RunStore &from, RunStore &to, const QStringList &runIds);

}  // namespace sendrel
