#pragma once

#include <QDialog>

class QLabel;
class QPushButton;
class QRadioButton;

namespace sendrel {

class UserQuestions;

// "Standing or Harvested": the kind of the tree list being imported. A new instance for each
// import; leaving it without a choice sets bImportCancelled.
class frmSorH : public QDialog {
    Q_OBJECT
    Q_PROPERTY(int HelpContextID MEMBER HelpContextID)
public:
    explicit frmSorH(UserQuestions &questions, QWidget *parent = nullptr);

    // Both options cleared, as the window is shown.
    void ClearOptions();

    // The harvested list was chosen.
    bool HarvestedChosen() const;

    bool bImportCancelled = true;
    int HelpContextID = 2010;
    QString HelpFile;

    void reject() override;

private:
    void cmdOK_Click();

    QLabel *Label1;
    QRadioButton *optStanding;
    QRadioButton *optHarvested;
    QPushButton *cmdOK;
    QPushButton *cmdCancel;
    UserQuestions &m_questions;
};

}  // namespace sendrel
