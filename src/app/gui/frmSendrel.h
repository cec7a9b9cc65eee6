#pragma once

#include <QMainWindow>

class QMdiArea;

namespace sendrel {

struct TreeModel;

// The workspace frame: a maximised main window whose MDI area holds the child windows.
class frmSendrel : public QMainWindow {
    Q_OBJECT
public:
    explicit frmSendrel(TreeModel &tm, QWidget *parent = nullptr);

    // The load step: maximise, then make sure the Data and Work folders exist. On failure the
    // user is told and the program ends through SaveSettingsAndEnd.
    void Form_Load();
    bool Locate_Directories();

    QMdiArea *mdiArea() const { return m_mdi; }

private:
    TreeModel &m_tm;
    QMdiArea *m_mdi;
};

}  // namespace sendrel
