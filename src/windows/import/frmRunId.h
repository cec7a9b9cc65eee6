#pragma once

#include "base/UserQuestions.h"

#include <QDialog>

class QLabel;
class QLineEdit;
class QPushButton;

namespace sendrel {

// "Enter Run ID": the Run Id of an import, at most 25 characters as typed. OK ends with Check,
// Cancel or the close box with Cancel (in DialogResult).
class frmRunId : public QDialog {
    Q_OBJECT
    Q_PROPERTY(int HelpContextID MEMBER HelpContextID)
public:
    explicit frmRunId(QWidget *parent = nullptr);

    // Puts the name in, clears the problem line, waits for the user; the edited name comes back
    // in name, the ending as the result.
    DialogEnd AskRunId(QString &name);

    DialogEnd DialogResult = DialogEnd::Cancel;
    int HelpContextID = 2070;
    QString HelpFile;
    static constexpr int kMaxLength = 25;

    void accept() override;
    void reject() override;

private:
    void limitLength();

    QLabel *lblEnterName;
    QLineEdit *txtRunId;
    QLabel *lblNameProblem;
    QPushButton *cmdOK;
    QPushButton *cmdCancel;
    QString m_lastText;
};

}  // namespace sendrel
