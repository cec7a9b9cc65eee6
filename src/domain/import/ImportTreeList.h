#pragma once

#include "base/UserQuestions.h"
#include "store/Run.h"

#include <QString>
#include <QStringList>
#include <QtGlobal>

namespace sendrel {

class RunStore;
class UserQuestions;

enum class ImportEnding {
    Completed,  // the whole list stands in the tables
    Cancelled,  // a dialog was cancelled: nothing touched
    InvalidFile,  // no "-999" header, or the only header is the last line: nothing touched
    Refused,  // the file cannot be opened or read up to its first header, the first header is out of
              // range, the Run Id holds a control character, or the database is damaged: nothing touched
    Failed,  // a failure while the list was stored: "Import Error"; rolled back, the database as it was
};

inline constexpr qsizetype kShownWarnings = 10;

struct ImportResult {
    ImportEnding ending = ImportEnding::Cancelled;
    QString runId;  // as settled
    DialogEnd dialogResult = DialogEnd::Cancel;  // how the Run Id dialogs ended: OK, Overwrite or Cancel
    int cyclesRead = 0;  // header lines stored
    qint64 treeRecordsRead = 0;
    QString detail;  // Refused and Failed: the file, the line and what went wrong
    QString cause;  // Failed: a message of its own told ahead of "Import Error" (an invalid species number)
    // Fields the reading had to cut or could not read, and lines that may not have been read as
    // meant: "FILE, line N, column C: what"; the first kShownWarnings kept, told once at the end.
    QStringList warnings;
    qint64 moreWarnings = 0;  // such places beyond the first kShownWarnings, counted only

    bool completed() const { return ending == ImportEnding::Completed; }
};

// Imports one tree list as the run (Run Id, kind): asks for the Run Id through questions (the
// only thing it asks), then, as one unit in one transaction, removes the rows that it replaces and
// adds the Model_Run row and every header and tree record. proposedRunId, when given, takes the
// place of the suggestion from the file. It tells nothing itself: the caller shows ImportMessages.
ImportResult ImportTreeList(RunStore &db, UserQuestions &questions, const QString &fileName, RunKind kind,
                            const QString &proposedRunId = QString());

// What the user is told of an import, in order: the refusal, "Invalid File Format...", an
// invalid species number and "Import Error", or the lines that may not have been read as meant.
QList<MessageRequest> ImportMessages(const QString &fileName, const ImportResult &result);

// The name for Rename: name + ":" + n for the first n = 1, 2, ... that no Model_Run row holds, of
// either kind.
QString NextFreeRunId(RunStore &db, const QString &name);

}  // namespace sendrel
