#include "import/gui/frmDeleteRuns.h"

#include "app/SendrelError.h"
#include "app/TreeModel.h"
#include "app/UserQuestions.h"
#include "app/gui/frmSendrel.h"
#include "browser/gui/RunListDelegate.h"
#include "browser/gui/frmMarquel.h"
#include "import/gui/ImportCoreBridge.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace sendrel {

namespace {

// The report windows that stand open in the frame, read by their run properties: a run open in
// a stand and stock or a composition window cannot be deleted; chart and report viewer windows
// are no obstacle.
class FrameReportWindows : public importcore::OpenReportWindows {
public:
    explicit FrameReportWindows(const frmSendrel &frame) : m_frame(frame) {}
    bool isRunOpen(const QString &runId, const QString &sorH) const override
    {
        for (const QWidget *form : m_frame.ChildForms()) {
            const bool reportWindow = form->inherits("sendrel::frmParameters") || form->inherits("sendrel::frmStandLevels")
                                      || form->inherits("sendrel::frmReportPlaceholder");
            if (!reportWindow)
                continue;
            if (form->property("This_RunId").toString() == runId && form->property("This_SorH").toString() == sorH)
                return true;
        }
        return false;
    }

private:
    const frmSendrel &m_frame;
};

}  // namespace

frmDeleteRuns::frmDeleteRuns(TreeModel &tm, frmMarquel &browser, frmSendrel &frame, QWidget *parent)
    : QDialog(parent), m_tm(tm), m_browser(browser), m_frame(frame)
{
    setObjectName(QStringLiteral("frmDeleteRuns"));
    setWindowTitle(QStringLiteral("Delete Runs"));
    setModal(true);

    Frame3 = new QGroupBox(QStringLiteral("Select Runs For Deletion"), this);
    Frame3->setObjectName(QStringLiteral("Frame3"));
    lstRuns = new QListWidget(Frame3);
    lstRuns->setObjectName(QStringLiteral("lstRuns"));
    lstRuns->setSelectionMode(QAbstractItemView::MultiSelection);
    lstRuns->setItemDelegate(new RunListDelegate(lstRuns));
    auto *listLayout = new QVBoxLayout(Frame3);
    listLayout->addWidget(lstRuns);

    cmdDelete = new QPushButton(QStringLiteral("&Delete"), this);
    cmdDelete->setObjectName(QStringLiteral("cmdDelete"));
    cmdCancel = new QPushButton(QStringLiteral("&Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    cmdDelete->setAutoDefault(false);
    cmdCancel->setAutoDefault(false);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdDelete);
    buttons->addWidget(cmdCancel);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(Frame3, 1);
    layout->addLayout(buttons);
    resize(560, 320);

    connect(cmdDelete, &QPushButton::clicked, this, &frmDeleteRuns::cmdDelete_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

void frmDeleteRuns::ShowModal()
{
    RefreshRunList();
    move(m_frame.geometry().center() - rect().center());
    exec();
}

void frmDeleteRuns::RefreshRunList()
{
    lstRuns->clear();
    lstRuns->addItems(m_browser.RunEntries());
    static_cast<RunListDelegate *>(lstRuns->itemDelegate())->UpdateTabStop();
}

void frmDeleteRuns::cmdDelete_Click()
{
    QStringList selected;
    for (int i = 0; i < lstRuns->count(); ++i) {
        if (lstRuns->item(i)->isSelected())
            selected.append(lstRuns->item(i)->text());
    }
    const FrameReportWindows open(m_frame);
    try {
        importcore::cmdDelete(
            m_tm, selected,
            [this] {
                m_browser.UpdateRunList();
                RefreshRunList();
                return m_browser.RunEntries();
            },
            open);
    } catch (const SendrelError &e) {
        m_frame.SetMousePointer(0);
        m_tm.questions.ShowErrorMessage(e.description());
    }
}

}  // namespace sendrel
