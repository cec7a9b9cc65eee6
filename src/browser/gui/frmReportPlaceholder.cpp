#include "browser/gui/frmReportPlaceholder.h"

#include "app/TreeModel.h"
#include "app/gui/frmSendrel.h"
#include "browser/gui/frmMarquel.h"
#include "store/GameDB.h"

#include <QCloseEvent>
#include <QLabel>
#include <QVBoxLayout>

namespace sendrel {

frmReportPlaceholder::frmReportPlaceholder(TreeModel &tm, frmSendrel &frame, frmMarquel &browser, Kind kind, QWidget *parent)
    : QWidget(parent), HelpContextID(kind == Kind::StandStock ? 76 : 75), lblRun(new QLabel(this)), m_tm(tm), m_frame(frame),
      m_browser(browser), m_kind(kind)
{
    setObjectName(QStringLiteral("frmReportPlaceholder"));
    lblRun->setObjectName(QStringLiteral("lblRun"));
    lblRun->setWordWrap(true);
    lblRun->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(lblRun, 1);
    resize(470, 340);
}

void frmReportPlaceholder::Form_Load()
{
    m_browser.AddOpenWindow();
    if (!m_frame.LeftForm)
        m_frame.LeftForm = this;
    else if (!m_frame.RightForm && !m_tm.RunOnCommandLine)
        m_frame.RightForm = this;
}

void frmReportPlaceholder::ShowRun()
{
    const QString kind = This_SorH == QLatin1String("S") ? QStringLiteral("standing") : QStringLiteral("harvested");
    const QString report = m_kind == Kind::StandStock ? QStringLiteral("Stand and stock tables") : QStringLiteral("Species composition through time");
    lblRun->setText(QStringLiteral("<p><b>%1</b></p><p>Run %2, %3 trees</p><p>%4</p><p><i>%5 will be shown here.</i></p>")
                        .arg(report.toHtmlEscaped(), This_RunId.toHtmlEscaped(), kind, This_RunDesc.toHtmlEscaped(), report));
}

void frmReportPlaceholder::closeEvent(QCloseEvent *event)
{
    if (!m_unloaded) {
        m_unloaded = true;
        if (m_frame.LeftForm == this)
            m_frame.LeftForm = nullptr;
        else if (m_frame.RightForm == this)
            m_frame.RightForm = nullptr;
        m_browser.RemoveOpenWindow();
        // Started with a run, the stand and stock window is the program's whole life.
        if (m_kind == Kind::StandStock && m_tm.RunOnCommandLine) {
            CloseGameDB(m_tm);
            m_tm.EndProcess(0);
        }
    }
    event->accept();
}

}  // namespace sendrel
