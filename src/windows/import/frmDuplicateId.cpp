#include "windows/import/frmDuplicateId.h"

#include "base/UserQuestions.h"
#include "windows/common/ShowHelp.h"

#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QVBoxLayout>

namespace sendrel {

frmDuplicateId::frmDuplicateId(QWidget *parent)
    : QDialog(parent), lblDuplicateId(new QLabel(this)), Label1(new QLabel(this)), lblRunId(new QLabel(this)),
      cmdOverWrite(new QPushButton(this)), cmdRename(new QPushButton(this)), cmdCancel(new QPushButton(this)),
      cmdHelp(new QPushButton(this))
{
    setObjectName(QStringLiteral("frmDuplicateId"));
    setWindowTitle(QStringLiteral("Duplicate Run Id"));
    setModal(true);
    lblDuplicateId->setObjectName(QStringLiteral("lblDuplicateId"));
    Label1->setObjectName(QStringLiteral("Label1"));
    lblRunId->setObjectName(QStringLiteral("lblRunId"));
    cmdOverWrite->setObjectName(QStringLiteral("cmdOverWrite"));
    cmdRename->setObjectName(QStringLiteral("cmdRename"));
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    cmdHelp->setObjectName(QStringLiteral("cmdHelp"));

    lblDuplicateId->setText(QStringLiteral("A Run with this ID has already been imported."));
    Label1->setText(QStringLiteral("Duplicate Run ID:"));
    QFont bold = lblRunId->font();
    bold.setBold(true);
    lblRunId->setFont(bold);
    lblRunId->setTextInteractionFlags(Qt::TextSelectableByMouse);
    cmdOverWrite->setText(QStringLiteral("Overwrite"));
    cmdRename->setText(QStringLiteral("Rename"));
    cmdRename->setDefault(true);
    cmdCancel->setText(QStringLiteral("Cancel"));
    cmdHelp->setText(QStringLiteral("&Help"));
    cmdOverWrite->setAutoDefault(false);
    cmdCancel->setAutoDefault(false);
    cmdHelp->setAutoDefault(false);

    auto *name = new QHBoxLayout;
    name->addWidget(Label1);
    name->addWidget(lblRunId, 1);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdOverWrite);
    buttons->addWidget(cmdRename);
    buttons->addWidget(cmdCancel);
    buttons->addWidget(cmdHelp);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(lblDuplicateId);
    layout->addSpacing(6);
    layout->addLayout(name);
    layout->addSpacing(10);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    connect(cmdOverWrite, &QPushButton::clicked, this, [this] {
        DialogResult = DialogEnd::Overwrite;
        hide();
        done(Accepted);
    });
    connect(cmdRename, &QPushButton::clicked, this, &frmDuplicateId::cmdRename_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmDuplicateId::reject);
    connect(cmdHelp, &QPushButton::clicked, this, [this] { ShowHelp(HelpContentsAndTopic, HelpFile, 0); });
    auto *help = new QShortcut(QKeySequence::HelpContents, this);
    connect(help, &QShortcut::activated, cmdHelp, &QPushButton::click);
}

DialogEnd frmDuplicateId::AskDuplicateId(const QString &name)
{
    lblRunId->setText(name);
    DialogResult = DialogEnd::Cancel;
    adjustSize();
    if (const QScreen *screen = QGuiApplication::primaryScreen())
        move(screen->availableGeometry().center() - rect().center());
    m_failure.reset();
    exec();
    if (m_failure) {
        const SendrelError e = *m_failure;
        m_failure.reset();
        throw e;
    }
    return DialogResult;
}

void frmDuplicateId::cmdRename_Click()
{
    hide();
    try {
        if (NextFreeRunId)
            lblRunId->setText(NextFreeRunId(lblRunId->text()));
        DialogResult = DialogEnd::Rename;
    } catch (const SendrelError &e) {
        m_failure = e;
        DialogResult = DialogEnd::Cancel;
    }
    done(Accepted);
}

void frmDuplicateId::reject()
{
    DialogResult = DialogEnd::Cancel;
    QDialog::reject();
}

}  // namespace sendrel
