#include "windows/common/ExportStatus.h"

#include <QDir>
#include <QMainWindow>
#include <QStatusBar>

namespace sendrel {

void ShowExportedPath(const QWidget *window, const QString &path)
{
    if (auto *frame = qobject_cast<QMainWindow *>(window ? window->window() : nullptr))
        frame->statusBar()->showMessage(QStringLiteral("Exported to %1").arg(QDir::toNativeSeparators(path)));
}

}  // namespace sendrel
