#pragma once

#include "base/RunKind.h"

#include <QString>
#include <QStringList>

#include <optional>

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
    QString filter;  // "Name (*.ext)|*.ext|All Files (*.*)|*.*"
    QString fileName;  // proposed file name, may be empty
    QString startFolder;
    QString defaultExtension;
    bool mustExist = true;
};

// How the import's Run Id dialogs ended (DialogResult): "Enter Run ID" with Check (OK) or Cancel,
// "Duplicate Run Id" with Overwrite, Rename or Cancel; OK once the Run Id is settled.
enum class DialogEnd { Check, Rename, Overwrite, OK, Cancel };

struct ReportTextRequest {
    QString title;
    QString description;
};

// The choices of Options, as the settings keep them.
struct OptionsRequest {
    QString units;  // "metric" or "imperial"
    QString sdiMethod;  // "reineke" or "summation"
    bool csvDefinitions = false;
};

// The print dialog of a chart: Print to File (PDF) is offered with outputFile, in the Work folder.
struct PrintRequest {
    QString title;
    QString outputFile;  // in: the PDF file offered; out: the file chosen, "" for a printer
    bool landscape = false;
    QPrinter *printer = nullptr;  // the caller's printer, which a real dialog sets up
};

class UserQuestions {
public:
    virtual ~UserQuestions() = default;

    // A message box. Boxes with only an OK button simply inform.
    virtual Answer message(const MessageRequest &request) = 0;
    // "Enter Run ID": the name shown and edited; Check or Cancel.
    virtual DialogEnd askRunId(QString &name) = 0;
    // "Duplicate Run Id": Overwrite, Rename or Cancel.
    virtual DialogEnd askDuplicateId(const QString &name) = 0;
    // Title and description of a report; false when cancelled.
    virtual bool askReportText(ReportTextRequest &request) = 0;

    // The dialogs below are cancelled by a caller that has none (the headless tool, whose flags
    // choose instead).
    // An open-file dialog; "" when the user cancelled.
    virtual QString openFile(const FileRequest &request);
    // A save-file dialog (mustExist is not read): the file to write, which the user has agreed to
    // replace if it exists; "" when the user cancelled.
    virtual QString saveFile(const FileRequest &request);
    // A folder dialog; "" when the user cancelled.
    virtual QString chooseFolder(const QString &title, const QString &startFolder);
    // "Standing or Harvested": the kind, or nothing when cancelled.
    virtual std::optional<RunKind> askStandingOrHarvested();
    // "Options": the units, the SDI method and the CSV definitions; false when cancelled.
    virtual bool askOptions(OptionsRequest &request);
    // "Server Database": the connection text of a PostgreSQL database, shown and edited; false when
    // cancelled.
    virtual bool askServerDatabase(QString &connection);
    // The password of the server database that the connection text (shown) names, for this session
    // only; false when cancelled.
    virtual bool askPassword(const QString &connection, QString &password);
    // The print dialog; false when cancelled. After true the caller prints on request.printer,
    // into request.outputFile when that is not "".
    virtual bool askPrint(PrintRequest &request);

    // The please-wait window; a headless caller may ignore it.
    virtual void showBusyMessage(const QString &title, const QString &message)
    {
        Q_UNUSED(title)
        Q_UNUSED(message)
    }
    virtual void hideBusyMessage() {}

    // An information box titled "Sendrel".
    void ShowInfoMessage(const QString &text);
    // The exclamation box at the top of an event: "The following error occured:" and the description.
    void ShowErrorMessage(const QString &description);
};

}  // namespace sendrel
