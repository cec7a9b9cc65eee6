#include "shell/frmKD_About.h"

#include "base/Version.h"
#include "shell/RevealPicture.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace sendrel {

frmKD_About::frmKD_About(QWidget *parent)
    : QDialog(parent), Image1(new PictureBox(StandPicture(), this)), Label2(new QLabel(this)), Label1(new QLabel(this)),
      lblVersion(new QLabel(this)), cmdOK(new QPushButton(this))
{
    setObjectName(QStringLiteral("frmKD_About"));
    setWindowTitle(QStringLiteral("Tolvane Interface"));
    setModal(false);

    Image1->setObjectName(QStringLiteral("Image1"));
    Label2->setObjectName(QStringLiteral("Label2"));
    Label1->setObjectName(QStringLiteral("Label1"));
    lblVersion->setObjectName(QStringLiteral("lblVersion"));
    cmdOK->setObjectName(QStringLiteral("cmdOK"));

    Label2->setText(QStringLiteral("/ Sendrel"));
    QFont big = Label2->font();
    big.setPointSizeF(big.pointSizeF() * 1.8);
    big.setBold(true);
    Label2->setFont(big);
    Label1->setText(QStringLiteral("Sendrel is the graphical reporting component of Tolvane, the growth model output processing system. "
                                   "It is used to compare the responses of different stand structures to treatments over time."));
    Label1->setWordWrap(true);
    lblVersion->setText(VersionText());
    cmdOK->setText(QStringLiteral("OK"));
    cmdOK->setDefault(true);

    // The picture fills the left half, drawn on resize; the texts stand to its right.
    auto *texts = new QVBoxLayout;
    texts->addWidget(Label2);
    texts->addSpacing(10);
    texts->addWidget(Label1);
    texts->addSpacing(10);
    texts->addWidget(lblVersion);
    texts->addStretch(1);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOK);
    texts->addLayout(buttons);
    auto *layout = new QHBoxLayout(this);
    setContentsMargins(12, 12, 12, 12);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addStretch(50);
    layout->addLayout(texts, 50);
    setFixedSize(600, 300);

    connect(cmdOK, &QPushButton::clicked, this, &QDialog::close);
}

void frmKD_About::resizeEvent(QResizeEvent *event)
{
    QDialog::resizeEvent(event);
    RevealPicture(this, 50, 70, Image1);
}

}  // namespace sendrel
