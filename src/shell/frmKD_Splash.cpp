#include "shell/frmKD_Splash.h"

#include "base/Version.h"
#include "shell/RevealPicture.h"

#include <QApplication>
#include <QLabel>
#include <QMouseEvent>
#include <QTimer>
#include <QVBoxLayout>

namespace sendrel {

frmKD_Splash::frmKD_Splash(QWidget *parent)
    : QDialog(parent, Qt::SplashScreen | Qt::FramelessWindowHint), Image1(new PictureBox(StandPicture(), this)), Label2(new QLabel(this)),
      Label3(new QLabel(this)), lblVersion(new QLabel(this)), Timer1(new QTimer(this))
{
    setObjectName(QStringLiteral("frmKD_Splash"));
    setModal(true);
    setAutoFillBackground(true);
    QPalette pal = palette();
    pal.setColor(QPalette::Window, QColor(246, 244, 236));
    setPalette(pal);
    setContentsMargins(0, 0, 0, 0);

    Image1->setObjectName(QStringLiteral("Image1"));
    Label2->setObjectName(QStringLiteral("Label2"));
    Label3->setObjectName(QStringLiteral("Label3"));
    lblVersion->setObjectName(QStringLiteral("lblVersion"));
    QFont big = Label2->font();
    big.setPointSizeF(big.pointSizeF() * 2.4);
    big.setBold(true);
    Label2->setFont(big);
    Label3->setText(kProductDescription);
    Label3->setWordWrap(true);
    QFont mid = Label3->font();
    mid.setPointSizeF(mid.pointSizeF() * 1.15);
    Label3->setFont(mid);

    // The texts take the right part; the picture is drawn in the left part on resize.
    auto *texts = new QVBoxLayout;
    texts->addStretch(1);
    texts->addWidget(Label2);
    texts->addSpacing(8);
    texts->addWidget(Label3);
    texts->addSpacing(18);
    texts->addWidget(lblVersion);
    texts->addStretch(1);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 14, 0);
    layout->addStretch(70);
    layout->addLayout(texts, 30);
    setFixedSize(640, 320);

    Timer1->setObjectName(QStringLiteral("Timer1"));
    Timer1->setSingleShot(true);
    Timer1->setInterval(kShowMilliseconds);
    connect(Timer1, &QTimer::timeout, this, &QDialog::accept);
}

void frmKD_Splash::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    Label2->setText(kProgramName);
    lblVersion->setText(VersionText());
    Timer1->start();
}

void frmKD_Splash::resizeEvent(QResizeEvent *event)
{
    QDialog::resizeEvent(event);
    RevealPicture(this, 70, 100, Image1);
}

void frmKD_Splash::mousePressEvent(QMouseEvent *event)
{
    event->accept();
    accept();
}

void frmKD_Splash::keyPressEvent(QKeyEvent *event)
{
    event->accept();
    accept();
}

}  // namespace sendrel
