#pragma once

#include "store/DBEngine.h"

#include <optional>

namespace sendrel {

class RunStore;

// Empties the scratch tables of the report tables before a report fills them: Species2,
// Report_Header and Report_Detail, and Stand_Levels_Report too for a composition report.
void ClearReportTables(RunStore &db, bool standLevels);

// After a failure part way through a report: commits the scratch rows written so far, as they
// would stand had each statement stood alone; when even that fails, or the failure found the
// file damaged, nothing is kept.
void KeepWhatWasWritten(std::optional<WriteTransaction> &transaction) noexcept;

}  // namespace sendrel
