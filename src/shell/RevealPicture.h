#pragma once

#include <QIcon>
#include <QImage>
#include <QSizeF>
#include <QWidget>

namespace sendrel {

// A picture control: draws its picture scaled to its own size. Clicks pass on to the window.
class PictureBox : public QWidget {
    Q_OBJECT
public:
    explicit PictureBox(const QImage &picture, QWidget *parent = nullptr);
    const QImage &Picture() const { return m_picture; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QImage m_picture;
};

// The picture's size grown by tenths while both sides are below the target, then shrunk by
// fiftieths while one side is above it: the shape is kept and the picture fits.
QSizeF RevealPictureSize(QSizeF picture, QSizeF target);

// Draws the picture on the window at widthPercent of its inner width and heightPercent of its
// inner height (as fitted by RevealPictureSize), at the window's left, centred from top to
// bottom. Runs from the window's resize step.
void RevealPicture(QWidget *target, int widthPercent, int heightPercent, PictureBox *picture);

// The suite's picture: a stand of trees on a hillside, drawn rather than shipped.
QImage StandPicture();
// The program's icon: one conifer.
QIcon ProgramIcon();

}  // namespace sendrel
