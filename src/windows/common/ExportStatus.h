#pragma once

#include <QString>

class QWidget;

namespace sendrel {

// Tells in the frame's status bar where an export of a window went: "Exported to PATH".
void ShowExportedPath(const QWidget *window, const QString &path);

}  // namespace sendrel
