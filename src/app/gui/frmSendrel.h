#pragma once

#include <QMainWindow>
#include <QPointer>

class QAction;
class QMdiArea;
class QMdiSubWindow;
class QMenu;

namespace sendrel {

struct TreeModel;
class frmMarquel;
class frmKD_About;

// The workspace frame: a maximised main window whose MDI area holds the child windows. It has
// two places for the main child windows, LeftForm (top left) and RightForm (top, at the middle),
// and shows the menu of the active child window in place of its own short menu.
class frmSendrel : public QMainWindow {
    Q_OBJECT
public:
    explicit frmSendrel(TreeModel &tm, QWidget *parent = nullptr);
    ~frmSendrel() override;

    // The load step: maximise, empty the places, find the Data and Work folders. When they
    // cannot be found the user is told and the program ends through SaveSettingsAndEnd.
    void Form_Load();
    bool Locate_Directories();

    // Puts LeftForm at the top left corner and RightForm at the top, at half the inner width.
    void ArrangeWindows();
    // The frame's arrangement commands.
    enum ArrangeCommand { Cascade = 0, TileHorizontal = 1, TileVertical = 2, ArrangeIcons = 3 };
    void Arrange(int command);

    // Saves the settings with the frame's edges and ends the process. A failure is shown, the
    // program goes on and the result is false.
    bool SaveSettingsAndEnd();

    void ShowBusyMessage(const QString &title, const QString &message);
    void HideBusyMessage();

    // Mouse pointer of the frame: 0 default, 9 west-east arrows, 11 hourglass.
    void SetMousePointer(int pointer);
    int MousePointer() const { return m_pointer; }

    // Takes a form in as a child window of the MDI area (not yet shown); gives its sub-window.
    QMdiSubWindow *AddChildWindow(QWidget *form);
    // The sub-window that holds a form, or nullptr.
    QMdiSubWindow *SubWindowOf(const QWidget *form) const;
    // The forms of all child windows, in the order they were taken in.
    QList<QWidget *> ChildForms() const;

    // Help at a topic of the program's help file (command 4).
    void ShowHelpTopic(int topic);
    // "Tolvane Interface", one shared instance.
    frmKD_About *ShowAbout();

    // Shows the menus of the active child window, or the frame's own when it has none.
    void UpdateMenus();

    QMdiArea *mdiArea() const { return m_mdi; }
    TreeModel &treeModel() const { return m_tm; }

    QPointer<QWidget> LeftForm;
    QPointer<QWidget> RightForm;
    QPointer<frmMarquel> Marquel;   // the run browser, once it is loaded
    int HelpContextID = 29;

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void buildMenus();
    QMenu *addMenu(const QString &name, const QString &caption);
    QAction *addItem(QMenu *menu, const QString &name, const QString &caption);
    void tile(bool horizontally);
    void arrangeIcons();

    TreeModel &m_tm;
    QMdiArea *m_mdi;
    QList<QMenu *> m_ownMenus;
    QList<QMenu *> m_shownMenus;
    QPointer<frmKD_About> m_about;
    int m_pointer = 0;
    bool m_ending = false;
};

}  // namespace sendrel
