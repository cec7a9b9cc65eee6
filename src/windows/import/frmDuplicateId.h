#pragma once

#include <QDialog>

#include <functional>
#include <optional>

#include "base/SendrelError.h"
#include "base/UserQuestions.h"

class QLabel;
class QPushButton;

namespace sendrel {

// "Duplicate Run Id": the Run Id is taken. Overwrite, Rename (the next free name goes into
// lblRunId) or Cancel, as DialogResult tells.
class frmDuplicateId : public QDialog {
    Q_OBJECT
public:
    explicit frmDuplicateId(QWidget *parent = nullptr);

    // Puts the name in lblRunId and waits for the user; gives DialogResult.
    DialogEnd AskDuplicateId(const QString &name);

    DialogEnd DialogResult = DialogEnd::Cancel;
    QString HelpFile;
    // The next free name for Rename (the name, ":", n).
    std::function<QString(const QString &)> NextFreeRunId;

    void reject() override;

private:
    void cmdRename_Click();

    QLabel *lblDuplicateId;
    QLabel *Label1;
    QLabel *lblRunId;
    QPushButton *cmdOverWrite;
    QPushButton *cmdRename;
    QPushButton *cmdCancel;
    QPushButton *cmdHelp;
    // A failure of the name lookup, passed on once the window has closed.
    std::optional<SendrelError> m_failure;
};

}  // namespace sendrel
