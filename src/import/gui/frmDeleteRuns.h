#pragma once

#include <QDialog>

class QGroupBox;
class QListWidget;
class QPushButton;

namespace sendrel {

struct TreeModel;
class frmSendrel;
class frmMarquel;

// "Delete Runs": the browser's runs, of which the user deletes some. The window stays open after
// each Delete; Cancel closes it.
class frmDeleteRuns : public QDialog {
    Q_OBJECT
public:
    frmDeleteRuns(TreeModel &tm, frmMarquel &browser, frmSendrel &frame, QWidget *parent = nullptr);

    // The load step and the modal wait, centred on the frame.
    void ShowModal();
    // Copies the browser's entries, in their order.
    void RefreshRunList();
    void cmdDelete_Click();

    QGroupBox *Frame3;
    QListWidget *lstRuns;
    QPushButton *cmdDelete;
    QPushButton *cmdCancel;

private:
    TreeModel &m_tm;
    frmMarquel &m_browser;
    frmSendrel &m_frame;
};

}  // namespace sendrel
