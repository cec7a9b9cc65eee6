#include "windows/common/ReportWindowHost.h"

#include <QApplication>
#include <QCursor>

namespace sendrel {

int ApplyMousePointer(int current, int pointer)
{
    if (pointer == current)
        return current;
    // One override cursor at a time, so that a change of pointer replaces the last one.
    if (current != kPointerDefault)
        QApplication::restoreOverrideCursor();
    if (pointer == kPointerHourglass) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        return pointer;
    }
    if (pointer == kPointerWestEast) {
        QApplication::setOverrideCursor(Qt::SizeHorCursor);
        return pointer;
    }
    return kPointerDefault;
}

}  // namespace sendrel
