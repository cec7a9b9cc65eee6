#pragma once

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScrollArea>
#include <QWidget>

namespace sendrel {

// The frame puts each form in a scroll area of this name inside its sub-window, so that a
// window smaller than its form scrolls inside itself.
inline constexpr char kChildScrollName[] = "childScroll";

// The frame's sub-window that holds a form, or nullptr for a form that is a window of its own.
inline QMdiSubWindow *HoldingSubWindow(const QWidget *form)
{
    QWidget *parent = form->parentWidget();
    if (parent && parent->parentWidget() && parent->parentWidget()->objectName() == QLatin1String(kChildScrollName))
        parent = parent->parentWidget()->parentWidget();
    return qobject_cast<QMdiSubWindow *>(parent);
}

// The form that a sub-window holds, inside its scroll area.
inline QWidget *FormOf(const QMdiSubWindow *sub)
{
    QWidget *w = sub ? sub->widget() : nullptr;
    if (auto *scroll = qobject_cast<QScrollArea *>(w); scroll && scroll->objectName() == QLatin1String(kChildScrollName))
        return scroll->widget();
    return w;
}

// A form inside the frame lives in a sub-window, which is what the user sees, moves and hides;
// without a frame (tests) the form is a window of its own.
inline QWidget *ChildFrame(const QWidget *form)
{
    if (QMdiSubWindow *sub = HoldingSubWindow(form))
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
