#pragma once

#include <QDialog>

class QLabel;
class QTimer;

namespace sendrel {

class PictureBox;

// The splash of a start by hand: closes itself after two seconds, or at once on a click or a key.
class frmKD_Splash : public QDialog {
    Q_OBJECT
public:
    explicit frmKD_Splash(QWidget *parent = nullptr);

    static constexpr int kShowMilliseconds = 2000;

protected:
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    PictureBox *Image1;
    QLabel *Label2;  // the program's name
    QLabel *Label3;  // what the program is
    QLabel *lblVersion;
    QTimer *Timer1;
};

}  // namespace sendrel
