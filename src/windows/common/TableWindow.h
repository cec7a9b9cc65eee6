#pragma once

#include "windows/common/FrameHost.h"
#include "windows/common/ReportWindowHost.h"

#include <QImage>
#include <QMdiSubWindow>
#include <QString>

class QPrinter;

namespace sendrel {

// What the windows of tables and a chart (the stand summary, the comparison) share.

// Prints an HTML document of tables on the printer, then the chart on a page of its own, as the
// window shows it.
void PrintTablesAndChart(QPrinter &printer, const QString &html, const QImage &chart);

// Takes a new window into the frame as a child with the hourglass while fill(window) reads what
// it shows: a failure deletes the window and passes on. Its help goes to the frame's.
template <typename Window, typename Fill>
Window *OpenInFrame(FrameHost &frame, Window *window, Fill &&fill)
{
    frame.SetMousePointer(kPointerHourglass);
    try {
        fill(window);
    } catch (...) {
        delete window;
        frame.SetMousePointer(kPointerDefault);
        throw;
    }
    window->ShowHelpTopic = [&frame](int topic) { frame.ShowHelpTopic(topic); };
    if (QMdiSubWindow *sub = frame.AddChildWindow(window))
        sub->show();
    frame.SetMousePointer(kPointerDefault);
    return window;
}

}  // namespace sendrel
