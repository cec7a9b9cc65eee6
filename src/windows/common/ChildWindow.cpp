#include "windows/common/ChildWindow.h"

#include "windows/common/ChildFrame.h"

namespace sendrel {

void CloseChildWindow(QWidget *form)
{
    if (QMdiSubWindow *sub = HoldingSubWindow(form))
        sub->close();
    else
        form->close();
}

}  // namespace sendrel
