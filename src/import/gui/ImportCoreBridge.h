#pragma once

// Where the windows reach the import core: ImportTreeList, NextFreeRunId, OpenReportWindows and
// the Delete button's routine.
#include "import/ImportTreeList.h"
#include "import/RunDeletion.h"

namespace sendrel {
namespace importcore {
using ::sendrel::ImportResult;
using ::sendrel::ImportTreeList;
using ::sendrel::NextFreeRunId;
using ::sendrel::OpenReportWindows;

inline void cmdDelete(TreeModel &tm, const QStringList &selected, const std::function<QStringList()> &refresh,
                      const OpenReportWindows &openWindows)
{
    DeleteSelectedRuns(tm, selected, refresh, openWindows);
}
}  // namespace importcore
}  // namespace sendrel
