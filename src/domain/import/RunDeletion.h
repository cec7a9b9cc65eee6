#pragma once

#include "store/Run.h"

#include <QString>
#include <QStringList>

#include <functional>

namespace sendrel {

class RunStore;
class UserQuestions;
struct CompactResult;

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
// Before the first delete the file is read whole: a damaged one is refused untouched.
DeleteRunsResult DeleteSelectedRuns(RunStore &db, UserQuestions &questions, const QStringList &selectedEntries,
                                    const std::function<QStringList()> &refresh, const OpenReportWindows &openWindows);

// "Compact" of the run browser: gives the space of deleted runs back to the file system behind the
// busy message, then tells how large the file was and is. A failure passes on to the caller.
void CompactRunDatabase(RunStore &db, UserQuestions &questions);
// "The run database was compacted from 812.4 MB to 3.1 MB."
QString CompactMessage(const CompactResult &result);

}  // namespace sendrel
