#include "windows/browser/frmReportPlaceholder.h"

#include "app/GameDB.h"
#include "app/TreeModel.h"

#include <QCloseEvent>
#include <QLabel>
#include <QVBoxLayout>

namespace sendrel {

frmReportPlaceholder::frmReportPlaceholder(TreeModel &tm, std::unique_ptr<ReportWindowHost> host, Kind kind, QWidget *parent)
    : QWidget(parent), HelpContextID(kind == Kind::StandStock ? 76 : 75), lblRun(new QLabel(this)), m_tm(tm),
      m_host(std::move(host)), m_kind(kind)
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
    m_host->AddChildWindow(this);
    m_host->AddOpenWindow();
    if (!m_host->LeftForm())
        m_host->LeftForm() = this;
    else if (!m_host->RightForm() && !m_tm.RunOnCommandLine)
        m_host->RightForm() = this;
}

void frmReportPlaceholder::ShowRun()
{
    const QString kind = This_SorH.startsWith(QLatin1Char('S')) ? QStringLiteral("standing") : QStringLiteral("harvested");
    const QString report = m_kind == Kind::StandStock ? QStringLiteral("Stand and stock tables") : QStringLiteral("Species composition through time");
    lblRun->setText(QStringLiteral("<p><b>%1</b></p><p>Run %2, %3 trees</p><p>%4</p><p><i>%5 will be shown here.</i></p>")
                        .arg(report.toHtmlEscaped(), This_RunId.toHtmlEscaped(), kind, This_RunDesc.toHtmlEscaped(), report));
}

void frmReportPlaceholder::closeEvent(QCloseEvent *event)
{
    if (!m_unloaded) {
        m_unloaded = true;
        if (m_host->LeftForm() == this)
            m_host->LeftForm() = nullptr;
        else if (m_host->RightForm() == this)
            m_host->RightForm() = nullptr;
        m_host->RemoveOpenWindow();
        // Started with a run, the stand and stock window is the program's whole life.
        if (m_kind == Kind::StandStock && m_tm.RunOnCommandLine) {
            CloseGameDB(m_tm);
            m_tm.EndProcess(0);
        }
    }
    event->accept();
}

}  // namespace sendrel
