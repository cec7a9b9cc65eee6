#pragma once

#include <QList>
#include <QPointer>
#include <QString>
#include <QWidget>

class QMdiSubWindow;

namespace sendrel {

// What the windows need of the workspace frame around them: its two places, its arrangement,
// its mouse pointer, its help and about, its child windows, and the orderly end. The desktop's
// frame is the one implementation; windows never see more of it than this.
class FrameHost {
public:
    virtual ~FrameHost() = default;

    // The frame as a window: the owner of dialogs and the centre they are put on.
    virtual QWidget *FrameWidget() = 0;

    // The two places: top left corner, and top at the middle.
    virtual QPointer<QWidget> &LeftForm() = 0;
    virtual QPointer<QWidget> &RightForm() = 0;
    // Puts the windows of the two places there.
    virtual void ArrangeWindows() = 0;
    // The frame's arrangement commands: 0 cascade, 1 tile horizontally, 2 tile vertically, 3 arrange icons.
    virtual void Arrange(int command) = 0;

    // Mouse pointer of the frame: 0 default, 9 west-east arrows, 11 hourglass.
    virtual void SetMousePointer(int pointer) = 0;
    virtual int MousePointer() const = 0;

    // Help at a topic of the program's help file; the about window.
    virtual void ShowHelpTopic(int topic) = 0;
    virtual void ShowAbout() = 0;

    // Takes a form in as a child window (not yet shown); gives its sub-window.
    virtual QMdiSubWindow *AddChildWindow(QWidget *form) = 0;
    // The sub-window that holds a form, or nullptr.
    virtual QMdiSubWindow *SubWindowOf(const QWidget *form) const = 0;
    // The forms of all child windows, in the order they were taken in.
    virtual QList<QWidget *> ChildForms() const = 0;

    virtual void SetCaption(const QString &caption) = 0;
    // Saves the settings and ends the process; false (after telling the user) when saving failed.
    virtual bool SaveSettingsAndEnd() = 0;
};

// The frame's arrangement commands.
enum FrameArrangeCommand { kArrangeCascade = 0, kArrangeTileHorizontal = 1, kArrangeTileVertical = 2, kArrangeIcons = 3 };

}  // namespace sendrel
