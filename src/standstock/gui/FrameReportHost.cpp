#include "standstock/gui/FrameReportHost.h"

#include "app/gui/frmSendrel.h"
#include "browser/gui/frmMarquel.h"

namespace sendrel {

FrameReportHost::FrameReportHost(frmSendrel &frame, frmMarquel &browser)
    : m_frame(&frame), m_browser(&browser)
{
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
    if (m_frame)
        return m_frame->LeftForm;
    m_noPlace = nullptr;
    return m_noPlace;
}

QPointer<QWidget> &FrameReportHost::RightForm()
{
    if (m_frame)
        return m_frame->RightForm;
    m_noPlace = nullptr;
    return m_noPlace;
}

void FrameReportHost::SetMousePointer(int pointer)
{
    if (m_frame)
        m_frame->SetMousePointer(pointer);
}

int FrameReportHost::MousePointer() const
{
    return m_frame ? m_frame->MousePointer() : kPointerDefault;
}

void FrameReportHost::ShowHelpTopic(int topic)
{
    if (m_frame)
        m_frame->ShowHelpTopic(topic);
}

void FrameReportHost::AddChildWindow(QWidget *form)
{
    if (m_frame)
        m_frame->AddChildWindow(form);
}

}  // namespace sendrel
