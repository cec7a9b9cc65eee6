#pragma once

#include "store/Run.h"

#include <QString>
#include <QStringList>
#include <QtGlobal>

namespace sendrel {

class RunStore;
class UserQuestions;

enum class ImportEnding {
    Completed,      // the whole list stands in the tables
    Cancelled,      // a dialog was cancelled: nothing touched
    InvalidFile,    // no "-999" header, or the only header is the last line: nothing touched
    Refused,        // the file cannot be opened or read up to its first header, the first header is out of
                    // range, or the database is damaged: nothing touched
    Failed,         // a failure in the guarded stretch: "Import Error", rolled back
};

inline constexpr qsizetype kShownWarnings = 10;

struct ImportResult {
    ImportEnding ending = ImportEnding::Cancelled;
    QString runId;          // as settled
    QString dialogResult;   // how the Run Id dialogs ended: "OK", "OVERWRITE" or "CANCEL"
    int cyclesRead = 0;     // header lines stored
    qint64 treeRecordsRead = 0;
    QString detail;         // Refused and Failed: the file, the line and what went wrong
    // Fields the reading had to cut or could not read, and lines that may not have been read as
    // meant: "FILE, line N, column C: what"; the first kShownWarnings kept, told once at the end.
    QStringList warnings;
    qint64 moreWarnings = 0;  // such places beyond the first kShownWarnings, counted only

    bool completed() const { return ending == ImportEnding::Completed; }
};

// Imports one tree list as the run (Run Id, kind): asks for the Run Id through questions,
// removes the rows that it replaces, adds the Model_Run row and then every header and tree
// record in one transaction. proposedRunId, when given, takes the place of the suggestion from
// the file.
ImportResult ImportTreeList(RunStore &db, UserQuestions &questions, const QString &fileName, RunKind kind,
                            const QString &proposedRunId = QString());

// The name for Rename: name + ":" + n for the first n = 1, 2, ... that no Model_Run row of the
// long-lived recordset ModelRunRS holds, of either kind.
QString NextFreeRunId(RunStore &db, const QString &name);

// Settles the Run Id with the user; gives how it ended: "OK", "OVERWRITE" or "CANCEL".
QString SettleRunId(RunStore &db, UserQuestions &questions, QString &runId, RunKind kind);

}  // namespace sendrel
