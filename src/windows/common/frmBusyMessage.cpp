#include "windows/common/frmBusyMessage.h"

#include <QApplication>
#include <QLabel>
#include <QVBoxLayout>

namespace sendrel {

frmBusyMessage::frmBusyMessage(QWidget *parent)
    : QDialog(parent, Qt::Dialog | Qt::WindowTitleHint | Qt::CustomizeWindowHint), lblBusyMessage(new QLabel(this))
{
    setObjectName(QStringLiteral("frmBusyMessage"));
    setModal(false);
    lblBusyMessage->setObjectName(QStringLiteral("lblBusyMessage"));
    lblBusyMessage->setAlignment(Qt::AlignCenter);
    lblBusyMessage->setMinimumWidth(280);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 18, 24, 18);
    layout->addWidget(lblBusyMessage);
    // The load step leaves both texts empty.
    setWindowTitle(QString());
    lblBusyMessage->clear();
}

void frmBusyMessage::ShowBusyMessage(const QString &title, const QString &message)
{
    setWindowTitle(title);
    lblBusyMessage->setText(message);
    if (!isVisible())
        show();
    raise();
    // Long work runs in the same event; give the window its chance to paint.
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void frmBusyMessage::HideBusyMessage()
{
    hide();
}

}  // namespace sendrel
