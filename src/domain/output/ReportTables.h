#pragma once

#include "base/SendrelError.h"
#include "store/Run.h"

#include <QString>

namespace sendrel {

class RunStore;
class UserQuestions;

// Empties the scratch tables of the report tables before a report fills them: Species2,
// Report_Header and Report_Detail, and Stand_Levels_Report too for a composition report. They
// are the connection's own (MakeScratchReportTables): nothing is written into the file.
void ClearReportTables(RunStore &db, bool standLevels);

// "There is no run NAME in FILE.": a run that is not, or no longer, in the database.
SendrelError MissingRun(const RunKey &run, const QString &databasePath);
// Fails with MissingRun unless the run is in the database as of now (inside a snapshot: as of it).
void RequireRun(RunStore &db, const RunKey &run);

// The please-wait window of a report, up from construction to destruction, however the report ends.
class BusyMessage {
public:
    BusyMessage(UserQuestions &questions, const QString &message);
    ~BusyMessage();
    BusyMessage(const BusyMessage &) = delete;
    BusyMessage &operator=(const BusyMessage &) = delete;

    void show(const QString &message);

private:
    UserQuestions &m_questions;
};

}  // namespace sendrel
