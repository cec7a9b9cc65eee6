#pragma once

class QWidget;

namespace sendrel {

// Closes a form the way the title bar's close box and Ctrl+F4 do: the one way a child window
// closes. The frame's sub-window that holds it goes with it, so no empty window stays behind;
// a form that refuses the close (a chart page, which hides) keeps its sub-window. A form that is
// a window of its own just closes.
void CloseChildWindow(QWidget *form);

}  // namespace sendrel
