#pragma once

#include <QBrush>
#include <QColor>
#include <QFont>
#include <QGraphicsWidget>
#include <QList>
#include <QPen>
#include <QSizeF>
#include <QString>
#include <QStringList>

class QChart;

namespace sendrel {

// The key beside a chart: a sample of each named series with its name. It stands in the
// chart's right margin, which the chart leaves free for it, and draws its samples at a size
// of its own: the chart library's legend sizes its markers by the font, too small for black
// and white patterns and dash patterns to be told apart.
class ChartKey : public QGraphicsWidget {
    Q_OBJECT

public:
    struct Entry {
        QString label;
        QBrush brush;  // a bar's colour or grey; NoBrush: a line sample drawn with the pen
        QBrush hatch;  // a pattern over the grey
        QPen pen;
    };

    // Lays the entries out in as many columns as the height available needs.
    ChartKey(QList<Entry> entries, const QFont &font, const QColor &textColour, QSizeF sample, qreal availableHeight);

    // The width the chart must leave free at its right.
    qreal keyWidth() const { return m_columns * m_columnWidth; }
    QStringList labels() const;
    // Where the sample of an entry is drawn, in the key's coordinates.
    QRectF sampleRect(int entry) const;

    // Places the key in the chart's right margin, centred on the plot area, and keeps it there.
    void attachTo(QChart *chart, qreal rightMargin);
    // The key of a chart, if it has one.
    static ChartKey *of(const QChart *chart);

    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

private:
    void place(QChart *chart, qreal rightMargin);

    QList<Entry> m_entries;
    QFont m_font;  // in pixels, so that it keeps its size on a printer's painter
    QColor m_textColour;
    QSizeF m_sample;
    qreal m_rowHeight = 0;
    int m_rows = 1;
    int m_columns = 1;
    qreal m_columnWidth = 0;
};

}  // namespace sendrel
