#pragma once

#include <QString>
#include <QtGlobal>

namespace sendrel {

struct TreeModel;

enum class ImportEnding {
    Completed,      // the whole list stands in the tables
    Cancelled,      // a dialog was cancelled: nothing touched
    InvalidFile,    // no "-999" header, or the only header is the last line: nothing touched
    Refused,        // the file cannot be opened, or the first header is out of range: nothing touched
    Failed,         // a failure in the guarded stretch: "Import Error", rolled back
};

struct ImportResult {
    ImportEnding ending = ImportEnding::Cancelled;
    QString runId;          // as settled
    QString kind;           // "S" or "H"
    int cyclesRead = 0;     // header lines stored
    qint64 treeRecordsRead = 0;
    QString detail;         // Refused and Failed: the file, the line and what went wrong

    bool completed() const { return ending == ImportEnding::Completed; }
};

// Imports one tree list as the run (Run Id, kind): asks for the Run Id through tm.questions,
// removes the rows that it replaces, adds the Model_Run row and then every header and tree
// record in one transaction. kind: whatever does not begin with "H"/"h" is standing.
// proposedRunId, when given, takes the place of the suggestion from the file.
ImportResult ImportTreeList(TreeModel &tm, const QString &fileName, const QString &kind,
                            const QString &proposedRunId = QString());

// The name for Rename: name + ":" + n for the first n = 1, 2, ... that no Model_Run row of the
// long-lived recordset tm.ModelRunRS holds, of either kind.
QString NextFreeRunId(TreeModel &tm, const QString &name);

// Settles the Run Id with the user; leaves tm.DialogResult at "OK", "OVERWRITE" or "CANCEL".
void SettleRunId(TreeModel &tm, QString &runId, const QString &kind);

}  // namespace sendrel
