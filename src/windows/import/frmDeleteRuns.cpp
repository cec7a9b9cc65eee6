#include "windows/import/frmDeleteRuns.h"

#include "app/TreeModel.h"
#include "base/SendrelError.h"
#include "base/UserQuestions.h"
#include "windows/common/RunListDelegate.h"
#include "windows/common/ShowHelp.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

namespace sendrel {

frmDeleteRuns::frmDeleteRuns(TreeModel &tm, QWidget *parent) : QDialog(parent), m_tm(tm)
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
    cmdHelp = new QPushButton(QStringLiteral("&Help"), this);
    cmdHelp->setObjectName(QStringLiteral("cmdHelp"));
    for (QPushButton *b : {cmdDelete, cmdCancel, cmdHelp})
        b->setAutoDefault(false);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdDelete);
    buttons->addWidget(cmdCancel);
    buttons->addWidget(cmdHelp);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(Frame3, 1);
    layout->addLayout(buttons);
    resize(560, 320);

    connect(cmdDelete, &QPushButton::clicked, this, &frmDeleteRuns::cmdDelete_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    // Its page has no topic number: the help opens it by name, above this modal window.
    auto showHelp = [this] { ShowHelpPage(m_tm.settings.HelpFile, QStringLiteral("delete.html")); };
    connect(cmdHelp, &QPushButton::clicked, this, showHelp);
    connect(new QShortcut(QKeySequence::HelpContents, this), &QShortcut::activated, this, showHelp);
}

void frmDeleteRuns::ShowModal()
{
    RefreshRunList();
    if (parentWidget())
        move(parentWidget()->geometry().center() - rect().center());
    exec();
}

void frmDeleteRuns::RefreshRunList()
{
    lstRuns->clear();
    if (BrowserEntries)
        lstRuns->addItems(BrowserEntries());
    static_cast<RunListDelegate *>(lstRuns->itemDelegate())->UpdateTabStop();
}

void frmDeleteRuns::cmdDelete_Click()
{
    QStringList selected;
    for (int i = 0; i < lstRuns->count(); ++i) {
        if (lstRuns->item(i)->isSelected())
            selected.append(lstRuns->item(i)->text());
    }
    try {
        if (Delete)
            Delete(selected);
    } catch (const SendrelError &e) {
        if (SetMousePointer)
            SetMousePointer(0);
        m_tm.questions.ShowErrorMessage(e.description());
    }
}

}  // namespace sendrel
