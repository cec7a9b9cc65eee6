#include "windows/common/ChildWindow.h"

#include <QMdiSubWindow>

namespace sendrel {

void CloseChildWindow(QWidget *form)
{
    if (auto *sub = qobject_cast<QMdiSubWindow *>(form->parentWidget()))
        sub->close();
    else
        form->close();
}

}  // namespace sendrel
