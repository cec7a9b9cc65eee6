#pragma once

class QWidget;

namespace sendrel {

// Closes a form the way the title bar's close box does: the frame's sub-window that holds it
// goes with it, so no empty window stays behind. A form that is a window of its own just closes.
void CloseChildWindow(QWidget *form);

}  // namespace sendrel
