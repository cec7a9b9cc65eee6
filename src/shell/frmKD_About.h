#pragma once

#include <QDialog>

class QLabel;
class QPushButton;

namespace sendrel {

class PictureBox;

// "Tolvane Interface": what the program is, with its version. Shown modeless.
class frmKD_About : public QDialog {
    Q_OBJECT
public:
    explicit frmKD_About(QWidget *parent = nullptr);

    int HelpContextID = 14;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    PictureBox *Image1;
    QLabel *Label2;
    QLabel *Label1;
    QLabel *lblVersion;
    QPushButton *cmdOK;
};

}  // namespace sendrel
