#pragma once

#include <QDialog>
#include <QStringList>

#include <functional>

class QGroupBox;
class QListWidget;
class QPushButton;

namespace sendrel {

struct TreeModel;

// "Delete Runs": the browser's runs, of which the user deletes some. The window stays open after
// each Delete; Cancel closes it.
class frmDeleteRuns : public QDialog {
    Q_OBJECT
public:
    // parent: the frame, on which the window is centred.
    frmDeleteRuns(TreeModel &tm, QWidget *parent);

    // The load step and the modal wait, centred on the frame.
    void ShowModal();
    // Copies the browser's entries, in their order.
    void RefreshRunList();
    void cmdDelete_Click();

    // The run browser's entries, in their order.
    std::function<QStringList()> BrowserEntries;
    // Deletes the selected entries, asking as the Delete button asks.
    std::function<void(const QStringList &selected)> Delete;
    // The frame's mouse pointer.
    std::function<void(int pointer)> SetMousePointer;

private:
    TreeModel &m_tm;
    QGroupBox *Frame3;
    QListWidget *lstRuns;
    QPushButton *cmdDelete;
    QPushButton *cmdCancel;
    QPushButton *cmdHelp;
};

}  // namespace sendrel
