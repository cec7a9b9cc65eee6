#pragma once

#include "store/Run.h"

#include <QString>
#include <QStringList>

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

// "No run selected": the Delete button with nothing selected.
QString NoRunSelectedMessage();

// The selected entries of the "Delete Runs" window found again in the run list as just re-read
// (another program may have removed some), in their order, and what the user is told of the
// others ("" when every one is there).
struct FoundRuns {
    QStringList found;
    QString vanishedMessage;
};
FoundRuns FindSelectedRuns(const QStringList &selectedEntries, const QStringList &entries);

struct DeleteRunsResult {
    QStringList deleted;  // the entries whose runs were deleted, in order
    QString stoppedMessage;  // "Can't delete this Run: ... while open." when a run stood open; "" otherwise
};

// Asks "Delete?" for each found entry in turn and deletes each run the user confirms, one
// transaction a run, so a run goes whole or stays whole. Stops at the first run that a report
// window shows; the runs deleted before it stay deleted. Before the first delete a damaged file
// is refused untouched.
DeleteRunsResult DeleteConfirmedRuns(RunStore &db, UserQuestions &questions, const QStringList &found,
                                     const OpenReportWindows &openWindows);

// "The run database was compacted from 812.4 MB to 3.1 MB."
QString CompactMessage(const CompactResult &result);

}  // namespace sendrel
