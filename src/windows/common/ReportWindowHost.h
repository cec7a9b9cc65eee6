#pragma once

#include <QPointer>
#include <QWidget>

namespace sendrel {

// What a report window needs of the frame and the run browser around it: the browser's count
// of report windows, the frame's two places, its mouse pointer, its help and its MDI area.
// The desktop gives the frame and browser; tests give a stub that records the calls, so that a
// window can be driven on its own.
class ReportWindowHost {
public:
    virtual ~ReportWindowHost() = default;

    // The run browser's count of report windows.
    virtual void AddOpenWindow() = 0;
    virtual void RemoveOpenWindow() = 0;

    // The frame's places: top left corner, and top at the middle.
    virtual QPointer<QWidget> &LeftForm() = 0;
    virtual QPointer<QWidget> &RightForm() = 0;
    // Puts the windows of the two places there. A host without a frame has nothing to arrange.
    virtual void ArrangeWindows() {}

    // Mouse pointer of the frame: 0 default, 9 west-east arrows, 11 hourglass.
    virtual void SetMousePointer(int pointer) = 0;
    virtual int MousePointer() const = 0;

    // Opens the help at a topic.
    virtual void ShowHelpTopic(int topic) = 0;

    // Takes a window in as a child window of the frame. A host without a frame leaves it as a
    // window of its own.
    virtual void AddChildWindow(QWidget *form) = 0;
};

// The pointer numbers of the frame.
inline constexpr int kPointerDefault = 0;
inline constexpr int kPointerWestEast = 9;
inline constexpr int kPointerHourglass = 11;

// Shows a pointer number as the application's cursor: 9 the west-east arrows, 11 the hourglass,
// anything else the default. current is the number shown now; gives the number shown after.
int ApplyMousePointer(int current, int pointer);

}  // namespace sendrel
