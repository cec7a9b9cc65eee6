#pragma once

class QMenu;

namespace sendrel {

class FrameHost;

// Lists the frame's open child windows at the foot of a Window menu, read afresh each time the
// menu opens: each entry shows a window's caption, the active one checked, and a click brings
// that window to the front (restored if it was minimised). Hidden windows (the chart pages not
// shown, a stand and stock window behind its charts) are not listed.
void ListOpenWindows(QMenu *windowMenu, FrameHost &frame);

}  // namespace sendrel
