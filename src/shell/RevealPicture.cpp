#include "shell/RevealPicture.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRandomGenerator>

#include <algorithm>

namespace sendrel {

PictureBox::PictureBox(const QImage &picture, QWidget *parent) : QWidget(parent), m_picture(picture)
{
    setObjectName(QStringLiteral("Image1"));
    setAttribute(Qt::WA_TransparentForMouseEvents, false);
}

void PictureBox::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    p.setRenderHint(QPainter::SmoothPixmapTransform);
    p.drawImage(rect(), m_picture);
}

QSizeF RevealPictureSize(QSizeF picture, QSizeF target)
{
    if (picture.isEmpty() || target.width() <= 0 || target.height() <= 0)
        return QSizeF(0, 0);
    double w = picture.width();
    double h = picture.height();
    while (w < target.width() && h < target.height()) {
        w *= 1.1;
        h *= 1.1;
    }
    while (w > target.width() || h > target.height()) {
        w *= 0.98;
        h *= 0.98;
    }
    return QSizeF(w, h);
}

void RevealPicture(QWidget *target, int widthPercent, int heightPercent, PictureBox *picture)
{
    const QRect inner = target->contentsRect();
    const QSizeF area(inner.width() * widthPercent / 100.0, inner.height() * heightPercent / 100.0);
    const QSizeF size = RevealPictureSize(picture->Picture().size(), area);
    const int top = inner.top() + static_cast<int>((inner.height() - size.height()) / 2);
    picture->setGeometry(inner.left(), top, static_cast<int>(size.width()), static_cast<int>(size.height()));
    picture->lower();
    picture->show();
}

namespace {

void drawConifer(QPainter &p, double x, double base, double height, const QColor &colour)
{
    const double width = height * 0.42;
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(92, 64, 40));
    p.drawRect(QRectF(x - width * 0.05, base - height * 0.16, width * 0.1, height * 0.16));
    p.setBrush(colour);
    // Three tiers, each a little narrower, as a spruce or fir stands.
    for (int tier = 0; tier < 3; ++tier) {
        const double bottom = base - height * (0.12 + tier * 0.24);
        const double top = bottom - height * 0.46;
        const double half = width * (0.5 - tier * 0.12);
        QPainterPath path;
        path.moveTo(x, top);
        path.lineTo(x + half, bottom);
        path.lineTo(x - half, bottom);
        path.closeSubpath();
        p.drawPath(path);
    }
}

void drawBroadleaf(QPainter &p, double x, double base, double height, const QColor &colour)
{
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(100, 72, 46));
    p.drawRect(QRectF(x - height * 0.035, base - height * 0.45, height * 0.07, height * 0.45));
    p.setBrush(colour);
    p.drawEllipse(QPointF(x, base - height * 0.62), height * 0.26, height * 0.3);
    p.setBrush(colour.lighter(112));
    p.drawEllipse(QPointF(x - height * 0.08, base - height * 0.7), height * 0.13, height * 0.14);
}

}  // namespace

QImage StandPicture()
{
    const int w = 400;
    const int h = 300;
    QImage image(w, h, QImage::Format_ARGB32_Premultiplied);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);

    QLinearGradient sky(0, 0, 0, h);
    sky.setColorAt(0, QColor(120, 170, 215));
    sky.setColorAt(0.7, QColor(215, 232, 240));
    p.fillRect(image.rect(), sky);

    // Far ridge and near hillside.
    QPainterPath ridge;
    ridge.moveTo(0, 170);
    ridge.cubicTo(90, 120, 180, 150, 260, 125);
    ridge.cubicTo(320, 108, 370, 130, w, 118);
    ridge.lineTo(w, h);
    ridge.lineTo(0, h);
    p.fillPath(ridge, QColor(120, 150, 135));
    QPainterPath hill;
    hill.moveTo(0, 235);
    hill.cubicTo(120, 205, 260, 225, w, 200);
    hill.lineTo(w, h);
    hill.lineTo(0, h);
    p.fillPath(hill, QColor(118, 150, 78));

    // The stand: trees of many heights, as a list of trees would hold them.
    QRandomGenerator rng(29);
    for (int i = 0; i < 22; ++i) {
        const double x = 12 + i * 18.2 + rng.bounded(8.0);
        const double base = 232 - x * 0.07 + rng.bounded(6.0);
        const double height = 55 + rng.bounded(75.0);
        const int shade = 70 + rng.bounded(40);
        drawConifer(p, x, base - 22, height * 0.8, QColor(30, shade, 45));
    }
    for (int i = 0; i < 12; ++i) {
        const double x = 20 + i * 33.0 + rng.bounded(14.0);
        const double base = 268 - x * 0.05 + rng.bounded(10.0);
        if (i % 3 == 1)
            drawBroadleaf(p, x, base, 60 + rng.bounded(30.0), QColor(96, 150, 60));
        else
            drawConifer(p, x, base, 80 + rng.bounded(60.0), QColor(25, 85 + rng.bounded(30), 40));
    }
    p.end();
    return image;
}

QIcon ProgramIcon()
{
    QIcon icon;
    for (int side : {16, 24, 32, 48}) {
        QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter p(&image);
        p.setRenderHint(QPainter::Antialiasing);
        drawConifer(p, side / 2.0, side - 0.5, side * 1.02, QColor(30, 110, 50));
        p.end();
        icon.addPixmap(QPixmap::fromImage(image));
    }
    return icon;
}

}  // namespace sendrel
