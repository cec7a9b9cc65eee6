#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace sendrel {

struct TreeModel;

// Removes one run (Run Id and kind "S"/"H") from Model_Entries, Model_Header and Model_Run, in
// that order and in no transaction: a failure part way leaves the rest, which a later delete finds.
void DeleteRun(TreeModel &tm, const QString &runId, const QString &sorH);

// The report windows open now: a run that one of them shows cannot be deleted.
class OpenReportWindows {
public:
    virtual ~OpenReportWindows() = default;
    virtual bool isRunOpen(const QString &runId, const QString &sorH) const = 0;
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
DeleteRunsResult DeleteSelectedRuns(TreeModel &tm, const QStringList &selectedEntries,
                                    const std::function<QStringList()> &refresh, const OpenReportWindows &openWindows);

}  // namespace sendrel
