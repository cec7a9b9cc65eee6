#include "graph/ChartKey.h"

#include <QChart>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

namespace sendrel {

namespace {

constexpr qreal kLead = 10;  // between the plot and the key
constexpr qreal kSpace = 6;  // between a sample and its name, and after the name

}  // namespace

ChartKey::ChartKey(QList<Entry> entries, const QFont &font, const QColor &textColour, QSizeF sample, qreal availableHeight)
    : m_entries(std::move(entries)), m_font(font), m_textColour(textColour), m_sample(sample)
{
    // A point size is resolved against the device drawn on: a printer's dots would enlarge the
    // names once more on top of the scaling of the whole chart.
    m_font.setPixelSize(QFontInfo(font).pixelSize());
    const QFontMetricsF metrics(m_font);
    qreal widest = 0;
    for (const Entry &e : m_entries)
        widest = qMax(widest, metrics.horizontalAdvance(e.label));
    const qreal line = std::ceil(qMax(metrics.height(), m_sample.height()));
    // Rows close up, then columns are added, before the key runs past the chart. A chart not yet
    // given its size keeps one column.
    const int n = static_cast<int>(m_entries.size());
    m_rowHeight = line + 6;
    if (n * m_rowHeight > availableHeight)
        m_rowHeight = line + 2;
    m_rows = availableHeight < m_rowHeight ? qMax(1, n) : qBound(1, static_cast<int>(availableHeight / m_rowHeight), qMax(1, n));
    m_columns = (n + m_rows - 1) / m_rows;
    m_columnWidth = kLead + m_sample.width() + kSpace + std::ceil(widest) + kSpace;
    resize(keyWidth(), qMin(n, m_rows) * m_rowHeight);
    setZValue(100);
    setVisible(n > 0);
}

QStringList ChartKey::labels() const
{
    QStringList out;
    for (const Entry &e : m_entries)
        out.append(e.label);
    return out;
}

QRectF ChartKey::sampleRect(int entry) const
{
    const int column = entry / m_rows;
    const int row = entry % m_rows;
    return QRectF(QPointF(column * m_columnWidth + kLead, row * m_rowHeight + std::floor((m_rowHeight - m_sample.height()) / 2)), m_sample);
}

void ChartKey::attachTo(QChart *chart, qreal rightMargin)
{
    setParentItem(chart);
    auto again = [this, chart, rightMargin]() { place(chart, rightMargin); };
    connect(chart, &QChart::plotAreaChanged, this, again);
    connect(chart, &QGraphicsWidget::geometryChanged, this, again);
    place(chart, rightMargin);
}

void ChartKey::place(QChart *chart, qreal rightMargin)
{
    // Whole pixels, so that the samples' outlines and hatching stay sharp.
    const qreal x = chart->size().width() - rightMargin - keyWidth();
    const qreal y = chart->plotArea().center().y() - size().height() / 2;
    setPos(std::round(x), std::round(qMax(0.0, y)));
}

ChartKey *ChartKey::of(const QChart *chart)
{
    for (QGraphicsItem *item : chart->childItems()) {
        if (auto *key = qobject_cast<ChartKey *>(item->toGraphicsObject()))
            return key;
    }
    return nullptr;
}

void ChartKey::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    painter->save();
    painter->setFont(m_font);
    for (int i = 0; i < m_entries.size(); ++i) {
        const Entry &e = m_entries.at(i);
        const QRectF sample = sampleRect(i);
        painter->setPen(e.pen);
        if (e.brush.style() == Qt::NoBrush) {
            const qreal y = sample.center().y();
            painter->drawLine(QPointF(sample.left(), y), QPointF(sample.right(), y));
        } else {
            // The outline's middle half a pixel inside, so that it covers whole pixels.
            painter->setBrush(e.brush);
            const qreal inset = e.pen.widthF() / 2;
            const QRectF box = sample.adjusted(inset, inset, -inset, -inset);
            painter->drawRect(box);
            if (e.hatch.style() != Qt::NoBrush)
                painter->fillRect(box.adjusted(inset, inset, -inset, -inset), e.hatch);
        }
        painter->setPen(m_textColour);
        const QRectF name(sample.right() + kSpace, sample.center().y() - m_rowHeight / 2, m_columnWidth, m_rowHeight);
        painter->drawText(name, Qt::AlignLeft | Qt::AlignVCenter, e.label);
    }
    painter->restore();
}

}  // namespace sendrel
