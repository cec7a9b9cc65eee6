#pragma once

#include "store/Run.h"

#include <QString>
#include <QStringList>

#include <functional>

namespace sendrel {

class RunStore;
class UserQuestions;

// The report windows open now: a run that one of them shows cannot be deleted.
class OpenReportWindows {
public:
    virtual ~OpenReportWindows() = default;
    virtual bool isRunOpen(const RunKey &run) const = 0;
};

struct DeleteRunsResult {
    QStringList entries;        // the run list as last refreshed (empty when never refreshed)
    bool refreshed = false;     // false only when nothing was selected
    QStringList deleted;        // the entries whose rows were deleted, in order
    bool stoppedAtOpenRun = false;
};

// Delete of the "Delete Runs" window, given the texts of the selected run-list entries in list
// order. refresh re-reads the database and returns the run list's new entries. Asks "Delete?" for
// each run still there, tells of vanished ones, and refuses a run that a report window shows.
DeleteRunsResult DeleteSelectedRuns(RunStore &db, UserQuestions &questions, const QStringList &selectedEntries,
                                    const std::function<QStringList()> &refresh, const OpenReportWindows &openWindows);

}  // namespace sendrel
