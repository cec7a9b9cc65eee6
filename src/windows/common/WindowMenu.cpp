#include "windows/common/WindowMenu.h"

#include "windows/common/ChildFrame.h"
#include "windows/common/FrameHost.h"

#include <QAction>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPointer>

namespace sendrel {

namespace {

const char *const kEntryProperty = "sendrelWindowEntry";

}  // namespace

void ListOpenWindows(QMenu *windowMenu, FrameHost &frame)
{
    QObject::connect(windowMenu, &QMenu::aboutToShow, windowMenu, [windowMenu, &frame] {
        for (QAction *a : windowMenu->actions()) {
            if (a->property(kEntryProperty).toBool()) {
                windowMenu->removeAction(a);
                a->deleteLater();
            }
        }
        int number = 0;
        for (QWidget *form : frame.ChildForms()) {
            QMdiSubWindow *sub = frame.SubWindowOf(form);
            if (!sub || !sub->isVisible())
                continue;
            if (number == 0) {
                QAction *separator = windowMenu->addSeparator();
                separator->setProperty(kEntryProperty, true);
            }
            ++number;
            const QString caption = form->windowTitle();
            QAction *entry = windowMenu->addAction((number < 10 ? QStringLiteral("&%1 ").arg(number) : QStringLiteral("%1 ").arg(number)) +
                                                   QString(caption).replace(QLatin1Char('&'), QStringLiteral("&&")));
            entry->setObjectName(QStringLiteral("mnuWindowEntry%1").arg(number));
            entry->setProperty(kEntryProperty, true);
            entry->setCheckable(true);
            entry->setChecked(sub->mdiArea() && sub->mdiArea()->activeSubWindow() == sub);
            QPointer<QWidget> target(form);
            QObject::connect(entry, &QAction::triggered, windowMenu, [target, &frame] {
                if (!target)
                    return;
                if (QMdiSubWindow *s = frame.SubWindowOf(target); s && s->isMinimized())
                    s->showNormal();
                ShowChild(target);
            });
        }
    });
}

}  // namespace sendrel
