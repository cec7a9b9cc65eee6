#pragma once

#include "windows/common/FrameHost.h"

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
class frmSendrel : public QMainWindow, public FrameHost {
    Q_OBJECT
public:
    explicit frmSendrel(TreeModel &tm, QWidget *parent = nullptr);
    ~frmSendrel() override;

    // The load step: maximise, empty the places, find the Data and Work folders. When they
    // cannot be found the user is told and the program ends through SaveSettingsAndEnd.
    void Form_Load();
    bool Locate_Directories();

    QWidget *FrameWidget() override { return this; }
    QPointer<QWidget> &LeftForm() override { return m_leftForm; }
    QPointer<QWidget> &RightForm() override { return m_rightForm; }

    // Puts LeftForm at the top left corner and RightForm at the top, at half the inner width,
    // each sized to fit the work area from there; maximised windows stay as they are.
    void ArrangeWindows() override;
    void Arrange(int command) override;

    // Saves the settings with the frame's edges and ends the process. A failure is shown, the
    // program goes on and the result is false.
    bool SaveSettingsAndEnd() override;
    void SetCaption(const QString &caption) override { setWindowTitle(caption); }

    void ShowBusyMessage(const QString &title, const QString &message);
    void HideBusyMessage();

    // Mouse pointer of the frame: 0 default, 9 west-east arrows, 11 hourglass.
    void SetMousePointer(int pointer) override;
    int MousePointer() const override { return m_pointer; }

    // Takes a form in as a child window of the MDI area (not yet shown); gives its sub-window.
    QMdiSubWindow *AddChildWindow(QWidget *form) override;
    // The sub-window that holds a form, or nullptr.
    QMdiSubWindow *SubWindowOf(const QWidget *form) const override;
    // The forms of all child windows, in the order they were taken in.
    QList<QWidget *> ChildForms() const override;

    // Help at a topic of the program's help file (command 4).
    void ShowHelpTopic(int topic) override;
    // "Tolvane Interface", one shared instance.
    void ShowAbout() override;
    frmKD_About *About() const;

    // Shows the menus of the active child window, or the frame's own when it has none.
    void UpdateMenus();

    QMdiArea *mdiArea() const { return m_mdi; }
    TreeModel &treeModel() const { return m_tm; }

    QPointer<frmMarquel> Marquel;  // the run browser, once it is loaded
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
    QPointer<QWidget> m_leftForm;
    QPointer<QWidget> m_rightForm;
    int m_pointer = 0;
    bool m_ending = false;
};

// Makes a window fit a room of the work area: no larger than the room (a form in a smaller
// window scrolls inside it), and moved inside it; toCorner puts it at the room's top left.
void FitIntoWorkArea(QWidget *window, const QRect &room, bool toCorner = false);

}  // namespace sendrel
