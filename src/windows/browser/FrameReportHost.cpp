#include "windows/browser/FrameReportHost.h"

#include "windows/browser/frmMarquel.h"
#include "windows/common/FrameHost.h"

namespace sendrel {

FrameReportHost::FrameReportHost(FrameHost &frame, frmMarquel &browser)
    : m_frameHost(frame), m_frame(frame.FrameWidget()), m_browser(&browser)
{
}

FrameHost *FrameReportHost::frame() const
{
    return m_frame ? &m_frameHost : nullptr;
}

void FrameReportHost::AddOpenWindow()
{
    if (m_browser)
        m_browser->AddOpenWindow();
}

void FrameReportHost::RemoveOpenWindow()
{
    if (m_browser)
        m_browser->RemoveOpenWindow();
}

QPointer<QWidget> &FrameReportHost::LeftForm()
{
    if (FrameHost *f = frame())
        return f->LeftForm();
    m_noPlace = nullptr;
    return m_noPlace;
}

QPointer<QWidget> &FrameReportHost::RightForm()
{
    if (FrameHost *f = frame())
        return f->RightForm();
    m_noPlace = nullptr;
    return m_noPlace;
}

void FrameReportHost::ArrangeWindows()
{
    if (FrameHost *f = frame())
        f->ArrangeWindows();
}

void FrameReportHost::SetMousePointer(int pointer)
{
    if (FrameHost *f = frame())
        f->SetMousePointer(pointer);
}

int FrameReportHost::MousePointer() const
{
    FrameHost *f = frame();
    return f ? f->MousePointer() : kPointerDefault;
}

void FrameReportHost::ShowHelpTopic(int topic)
{
    if (FrameHost *f = frame())
        f->ShowHelpTopic(topic);
}

void FrameReportHost::AddChildWindow(QWidget *form)
{
    if (FrameHost *f = frame())
        f->AddChildWindow(form);
}

}  // namespace sendrel
