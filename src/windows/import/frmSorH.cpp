#include "windows/import/frmSorH.h"

#include "base/UserQuestions.h"
#include "windows/common/ShowHelp.h"

#include <QButtonGroup>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QVBoxLayout>

namespace sendrel {

frmSorH::frmSorH(UserQuestions &questions, QWidget *parent)
    : QDialog(parent), Label1(new QLabel(this)), optStanding(new QRadioButton(this)), optHarvested(new QRadioButton(this)),
      cmdOK(new QPushButton(this)), cmdCancel(new QPushButton(this)), m_questions(questions)
{
    setObjectName(QStringLiteral("frmSorH"));
    setWindowTitle(QStringLiteral("Standing or Harvested"));
    setModal(true);
    Label1->setObjectName(QStringLiteral("Label1"));
    optStanding->setObjectName(QStringLiteral("optStanding"));
    optHarvested->setObjectName(QStringLiteral("optHarvested"));
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));

    Label1->setText(QStringLiteral("Specify whether the tree file is standing or harvested:"));
    optStanding->setText(QStringLiteral("Standing"));
    optHarvested->setText(QStringLiteral("Harvested"));
    cmdOK->setText(QStringLiteral("OK"));
    cmdOK->setDefault(true);
    cmdCancel->setText(QStringLiteral("Cancel"));

    auto *options = new QVBoxLayout;
    options->setContentsMargins(24, 4, 0, 4);
    options->addWidget(optStanding);
    options->addWidget(optHarvested);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(Label1);
    layout->addLayout(options);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    connect(cmdOK, &QPushButton::clicked, this, &frmSorH::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmSorH::reject);
    auto *help = new QShortcut(QKeySequence::HelpContents, this);
    connect(help, &QShortcut::activated, this, [this] { ShowHelp(HelpContentsAndTopic, HelpFile, HelpContextID); });
    ClearOptions();
}

void frmSorH::ClearOptions()
{
    // Options of one group cannot both be off unless the group lets go for a moment.
    optStanding->setAutoExclusive(false);
    optHarvested->setAutoExclusive(false);
    optStanding->setChecked(false);
    optHarvested->setChecked(false);
    optStanding->setAutoExclusive(true);
    optHarvested->setAutoExclusive(true);
}

void frmSorH::cmdOK_Click()
{
    if (!optStanding->isChecked() && !optHarvested->isChecked()) {
        m_questions.ShowInfoMessage(QStringLiteral("You must specify Harvested or Standing."));
        return;
    }
    bImportCancelled = false;
    accept();
}

bool frmSorH::HarvestedChosen() const
{
    return optHarvested->isChecked();
}

void frmSorH::reject()
{
    bImportCancelled = true;
    QDialog::reject();
}

}  // namespace sendrel
