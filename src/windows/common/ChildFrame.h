#pragma once

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QWidget>

namespace sendrel {

// A form inside the frame lives in a sub-window, which is what the user sees, moves and hides;
// without a frame (tests) the form is a window of its own.
inline QWidget *ChildFrame(const QWidget *form)
{
    if (auto *sub = qobject_cast<QMdiSubWindow *>(form->parentWidget()))
        return sub;
    return const_cast<QWidget *>(form);
}

inline void HideChild(QWidget *form)
{
    ChildFrame(form)->hide();
}

// Shows a form again and makes it the active window.
inline void ShowChild(QWidget *form)
{
    QWidget *frame = ChildFrame(form);
    frame->show();
    form->show();
    if (auto *sub = qobject_cast<QMdiSubWindow *>(frame); sub && sub->mdiArea())
        sub->mdiArea()->setActiveSubWindow(sub);
    else
        frame->activateWindow();
}

}  // namespace sendrel
