#pragma once

#include <QString>
#include <QStringList>

class QPrinter;

namespace sendrel {

// Every question to the user passes through this one interface: the desktop answers with
// real dialogs, tests with a script, the headless tool from its flags.

enum class MsgIcon { None, Information, Question, Exclamation, Critical };
enum class MsgButtons { OK, OKCancel, YesNo, RetryCancel, YesNoCancel };
enum class Answer { OK, Cancel, Yes, No, Retry };

struct MessageRequest {
    QString title;
    QString text;
    MsgIcon icon = MsgIcon::None;
    MsgButtons buttons = MsgButtons::OK;
    Answer defaultAnswer = Answer::OK;
};

struct FileRequest {
    QString title;
    QString filter;        // "Name (*.ext)|*.ext|All Files (*.*)|*.*"
    QString fileName;      // proposed file name, may be empty
    QString startFolder;
    QString defaultExtension;
    bool mustExist = true;
};

// How the import dialogs ended, in the program's own words.
inline const QString kDialogRename = QStringLiteral("RENAME");
inline const QString kDialogCheck = QStringLiteral("CHECK");
inline const QString kDialogOK = QStringLiteral("OK");
inline const QString kDialogOverwrite = QStringLiteral("OVERWRITE");
inline const QString kDialogCancel = QStringLiteral("CANCEL");

struct ReportTextRequest {
    QString title;
    QString description;
};

// The print dialog of a chart: Print to File (PDF) is offered with outputFile, in the Work folder.
struct PrintRequest {
    QString title;
    QString outputFile;            // in: the PDF file offered; out: the file chosen, "" for a printer
    bool landscape = false;
    QPrinter *printer = nullptr;   // the caller's printer, which a real dialog sets up
};

class UserQuestions {
public:
    virtual ~UserQuestions() = default;

    // A message box. Boxes with only an OK button simply inform.
    virtual Answer message(const MessageRequest &request) = 0;
    // An open-file dialog; "" when the user cancelled.
    virtual QString openFile(const FileRequest &request) = 0;
    // A save-file dialog (mustExist is not read): the file to write, which the user has agreed to
    // replace if it exists; "" when the user cancelled.
    virtual QString saveFile(const FileRequest &request) = 0;
    // A folder dialog; "" when the user cancelled.
    virtual QString chooseFolder(const QString &title, const QString &startFolder) = 0;

    // "Enter Run ID": the name shown and edited; the result is "CHECK" or "CANCEL".
    virtual QString askRunId(QString &name) = 0;
    // "Duplicate Run Id": "OVERWRITE", "RENAME" or "CANCEL".
    virtual QString askDuplicateId(const QString &name) = 0;
    // "Standing or Harvested": "S", "H", or "" when cancelled.
    virtual QString askStandingOrHarvested() = 0;
    // Title and description of a report; false when cancelled.
    virtual bool askReportText(ReportTextRequest &request) = 0;
    // The print dialog; false when cancelled. After true the caller prints on request.printer,
    // into request.outputFile when that is not "".
    virtual bool askPrint(PrintRequest &request) = 0;

    // The please-wait window; a headless caller may ignore it.
    virtual void showBusyMessage(const QString &title, const QString &message) { Q_UNUSED(title) Q_UNUSED(message) }
    virtual void hideBusyMessage() {}

    // An information box titled "Sendrel".
    void ShowInfoMessage(const QString &text);
    // The exclamation box at the top of an event: "The following error occured:" and the description.
    void ShowErrorMessage(const QString &description);
};

}  // namespace sendrel
