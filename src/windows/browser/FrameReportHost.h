#pragma once

#include "windows/common/ReportWindowHost.h"

#include <QPointer>

namespace sendrel {

class FrameHost;
class frmMarquel;

// A report window's host on the desktop: the frame's places, pointer, help and MDI area, and
// the run browser's count of report windows. It holds both weakly, so that a window that goes
// after them (the frame closing) finds nothing to call instead of something gone.
class FrameReportHost : public ReportWindowHost {
public:
    FrameReportHost(FrameHost &frame, frmMarquel &browser);

    void AddOpenWindow() override;
    void RemoveOpenWindow() override;
    QPointer<QWidget> &LeftForm() override;
    QPointer<QWidget> &RightForm() override;
    void ArrangeWindows() override;
    void SetMousePointer(int pointer) override;
    int MousePointer() const override;
    void ShowHelpTopic(int topic) override;
    void AddChildWindow(QWidget *form) override;

private:
    FrameHost *frame() const;

    FrameHost &m_frameHost;
    QPointer<QWidget> m_frame;  // the frame's window, gone when the frame is
    QPointer<frmMarquel> m_browser;
    QPointer<QWidget> m_noPlace;  // stands for a place when the frame has gone
};

}  // namespace sendrel
