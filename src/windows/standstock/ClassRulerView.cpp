#include "windows/standstock/ClassRulerView.h"

#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QVBoxLayout>

#include <cmath>

namespace sendrel {

int TwipsToPixels(double twips)
{
    return static_cast<int>(std::lround(twips / kTwipsPerPixel));
}

namespace {

// Buttons as the ruler counts them: 1 left, 2 right, 4 middle.
int buttonNumber(Qt::MouseButtons buttons)
{
    int n = 0;
    if (buttons & Qt::LeftButton)
        n |= 1;
    if (buttons & Qt::RightButton)
        n |= 2;
    if (buttons & Qt::MiddleButton)
        n |= 4;
    return n;
}

}  // namespace

ClassPanel::ClassPanel(int index, QWidget *parent) : QLabel(parent), m_index(index)
{
    setObjectName(QStringLiteral("SSPanel2_%1").arg(index));
    setAlignment(Qt::AlignCenter);
    setFrameStyle(QFrame::Panel | QFrame::Raised);
    setLineWidth(1);
    setAutoFillBackground(true);
    setMouseTracking(true);
    QFont f = font();
    f.setPointSizeF(8);
    setFont(f);
    QPalette pal = palette();
    pal.setColor(QPalette::Window, QColor(232, 232, 226));
    setPalette(pal);
    SetTextColour(Qt::black);
    hide();
}

void ClassPanel::Place(double left, double width, const QString &caption)
{
    m_left = left;
    m_width = width;
    // Both edges are rounded, not the width, so that neighbours meet without a gap.
    const int x = TwipsToPixels(left);
    const int right = TwipsToPixels(left + width);
    setGeometry(x, ClassRulerView::kPanelTop, qMax(1, right - x), ClassRulerView::kPanelHeight);
    setText(caption);
    // A caption wider than its panel still tells the class when the mouse rests on it.
    setToolTip(caption);
}

void ClassPanel::SetTextColour(QColor colour)
{
    m_colour = colour;
    QPalette pal = palette();
    pal.setColor(QPalette::WindowText, colour);
    setPalette(pal);
    // The class being edited stands out also for eyes that miss a shade of blue.
    QFont f = font();
    f.setBold(colour != QColor(Qt::black));
    setFont(f);
}

void ClassPanel::paintEvent(QPaintEvent *event)
{
    Q_UNUSED(event)
    QPainter painter(this);
    drawFrame(&painter);
    const QRect room = contentsRect().adjusted(1, 0, -1, 0);
    QFont f = font();
    QString shown = text();
    for (double points = 8; points >= 6; points -= 0.5) {
        f.setPointSizeF(points);
        if (QFontMetrics(f).horizontalAdvance(shown) <= room.width())
            break;
    }
    const QFontMetrics metrics(f);
    if (metrics.horizontalAdvance(shown) > room.width())
        shown = metrics.elidedText(shown, Qt::ElideRight, room.width());
    painter.setFont(f);
    painter.setPen(m_colour);
    painter.drawText(room, Qt::AlignCenter, shown);
}

double ClassPanel::twipsX(const QMouseEvent *event) const
{
    return event->position().x() * kTwipsPerPixel;
}

void ClassPanel::mousePressEvent(QMouseEvent *event)
{
    emit Pressed(m_index, twipsX(event), buttonNumber(event->button()));
    event->accept();
}

void ClassPanel::mouseMoveEvent(QMouseEvent *event)
{
    emit Moved(m_index, twipsX(event), buttonNumber(event->buttons()));
    event->accept();
}

void ClassPanel::mouseReleaseEvent(QMouseEvent *event)
{
    emit Released(m_index, twipsX(event), buttonNumber(event->button()));
    event->accept();
}

ClassRulerView::ClassRulerView(const ClassRuler &ruler, QWidget *parent)
    : QGroupBox(QStringLiteral("DBH Classes"), parent), m_viewArea(new QWidget(this)), m_drawArea(new QWidget(m_viewArea)),
      m_scroll(new QScrollBar(Qt::Horizontal, this)), m_scaleLine(new QFrame(m_drawArea)), m_ruler(ruler)
{
    setObjectName(QStringLiteral("SSPanel1"));
    setMouseTracking(true);
    m_viewArea->setObjectName(QStringLiteral("ViewArea"));
    m_drawArea->setObjectName(QStringLiteral("DrawArea"));
    m_scroll->setObjectName(QStringLiteral("hsScrollDBH"));
    m_scaleLine->setObjectName(QStringLiteral("lneScale"));
    m_viewArea->setMouseTracking(true);
    m_drawArea->setMouseTracking(true);
    m_viewArea->setFixedHeight(kDrawHeight + 2);
    m_viewArea->setMinimumWidth(200);

    m_scaleLine->setFrameStyle(QFrame::NoFrame);
    m_scaleLine->setAutoFillBackground(true);
    m_scaleLine->setStyleSheet(QStringLiteral("background: black"));

    for (int i = 0; i < kPanels; ++i)
        m_panels[i] = new ClassPanel(i, m_drawArea);
    QFont small = font();
    small.setPointSizeF(8);
    for (int i = 0; i < kTicks; ++i) {
        m_ticks[i] = new QFrame(m_drawArea);
        m_ticks[i]->setObjectName(QStringLiteral("lneScaleTick_%1").arg(i));
        m_ticks[i]->setStyleSheet(QStringLiteral("background: black"));
        m_scaleLabels[i] = new QLabel(m_drawArea);
        m_scaleLabels[i]->setObjectName(QStringLiteral("lblDBHScale_%1").arg(i));
        m_scaleLabels[i]->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
        m_scaleLabels[i]->setFont(small);
    }

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 4, 6, 4);
    layout->setSpacing(2);
    layout->addWidget(m_viewArea);
    layout->addWidget(m_scroll);

    m_scroll->setEnabled(false);
    m_viewArea->installEventFilter(this);
    connect(m_scroll, &QScrollBar::valueChanged, this, [this](int value) { m_drawArea->move(-TwipsToPixels(value), 0); });
}

double ClassRulerView::ViewAreaWidth() const
{
    return m_viewArea->width() * kTwipsPerPixel;
}

void ClassRulerView::UpdateDrawArea()
{
    // Room behind the ruler's width for the last scale label, which stands centred on its tick.
    m_drawArea->setGeometry(m_drawArea->x(), 0, TwipsToPixels(m_ruler.DrawAreaWidth()) + 20, kDrawHeight);
    updateScrollBar();
}

void ClassRulerView::updateScrollBar()
{
    const double max = m_ruler.ScrollMax(ViewAreaWidth());
    if (max > 0) {
        m_scroll->setRange(0, static_cast<int>(max));
        m_scroll->setSingleStep(150);
        m_scroll->setPageStep(static_cast<int>(ViewAreaWidth()));
        m_scroll->setEnabled(true);
    } else {
        // A ruler that fits needs no shift: it stands at its start again.
        m_scroll->setValue(0);
        m_scroll->setRange(0, 0);
        m_scroll->setEnabled(false);
    }
}

void ClassRulerView::PlaceScale(double left, const std::array<ClassRuler::Tick, 11> &ticks)
{
    const int baseLeft = TwipsToPixels(left);
    int baseRight = baseLeft;
    for (int i = 0; i < kTicks; ++i) {
        const int x = TwipsToPixels(left + ticks[i].x);
        m_ticks[i]->setGeometry(x, kScaleTop, 1, kTickHeight);
        m_ticks[i]->show();
        QLabel *label = m_scaleLabels[i];
        label->setText(ticks[i].Caption);
        label->adjustSize();
        // The label stands centred under its tick (its stated left lies 75 twips before it).
        const int centre = TwipsToPixels(ticks[i].LabelLeft + 75);
        label->move(centre - label->width() / 2, kLabelTop);
        label->show();
        baseRight = x;
    }
    m_scaleLine->setGeometry(baseLeft, kScaleTop, baseRight - baseLeft + 1, 1);
    m_scaleLine->show();
}

void ClassRulerView::HideAllPanels()
{
    for (ClassPanel *p : m_panels)
        p->hide();
}

bool ClassRulerView::eventFilter(QObject *watched, QEvent *event)
{
    // The scroll range depends on how much of the ruler the view shows.
    if (watched == m_viewArea && event->type() == QEvent::Resize)
        updateScrollBar();
    return QGroupBox::eventFilter(watched, event);
}

}  // namespace sendrel
