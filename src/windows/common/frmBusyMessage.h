#pragma once

#include <QDialog>

class QLabel;

namespace sendrel {

// The small please-wait window shown during long work. Showing it again changes its texts.
class frmBusyMessage : public QDialog {
    Q_OBJECT
public:
    explicit frmBusyMessage(QWidget *parent = nullptr);

    void ShowBusyMessage(const QString &title, const QString &message);
    void HideBusyMessage();

    int HelpContextID = 14;

private:
    QLabel *lblBusyMessage;
};

}  // namespace sendrel
