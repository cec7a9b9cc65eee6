#pragma once

#include <QString>
#include <QVector>
#include <QtGlobal>

namespace sendrel {

// What a chart holds, set through the chart operations under their own names: series by
// points, counted from 1, with legends, colours, labels or x positions, axes, titles, grid and
// styles. GUI-free, so that the filling of charts is shared by the windows and the headless
// tool and can be tested without a screen; Graph draws it.
//
// Addressing: ChartValue, ChartPointX, ChartPointLabel and the plain ChartSeriesColour and
// ChartSeriesLegend act on the current series and point (ChartSeries, ChartPoint); the indexed
// forms of colour and legend name their series. Legends and colours can be written whatever
// the point count. An index outside the counts fails (number 5).
class ChartData {
public:
    // How points stand along the x axis: classes as grouped bars labelled by class, or
    // times as lines over their x positions. A design setting of each chart.
    enum class Kind { ClassBars, TimeLines };

    // ChartReset 9 clears all data: series, points, values, labels, legends and colours.
    // Titles, axes, grid and styles stay, as design settings do.
    void ChartReset(qint16 what);
    void ChartAutoAdvance(bool on);
    bool ChartAutoAdvance() const { return m_autoAdvance; }
    void ChartIndexMode(qint16 mode);
    qint16 ChartIndexMode() const { return m_indexMode; }

    // Setting a count keeps the values already written.
    void ChartPointCount(qint16 count);
    qint16 ChartPointCount() const { return m_pointCount; }
    void ChartSeriesCount(qint16 count);
    qint16 ChartSeriesCount() const { return static_cast<qint16>(m_series.size()); }
    void ChartPoint(qint16 index);
    qint16 ChartPoint() const { return m_point; }
    void ChartSeries(qint16 index);
    qint16 ChartSeries() const { return m_currentSeries; }

    void ChartValue(double value);
    double ChartValue() const;
    void ChartPointX(double x);
    void ChartPointLabel(const QString &label);
    void ChartSeriesColour(qint16 paletteIndex);
    void ChartSeriesColour(qint16 series, qint16 paletteIndex);
    void ChartSeriesLegend(const QString &legend);
    void ChartSeriesLegend(qint16 series, const QString &legend);
    // Time charts: a series' own points, as many as it has, whatever the point count; a path may
    // go back on itself (a harvest: two points of one year).
    void ChartSeriesPath(qint16 series, const QVector<double> &xs, const QVector<double> &values);
    // A line's pen width in chart pixels (0: the default), and whether its points are marked.
    void ChartSeriesLine(qint16 series, double width, bool markers);

    void ChartXAxisMin(double v) { m_xMin = v; }
    void ChartXAxisMax(double v) { m_xMax = v; }
    void ChartXAxisTicks(qint32 v) { m_xTicks = v; }
    void ChartYAxisMin(double v) { m_yMin = v; }
    void ChartYAxisMax(double v) { m_yMax = v; }
    void ChartYAxisTicks(qint32 v) { m_yTicks = v; }
    double ChartXAxisMin() const { return m_xMin; }
    double ChartXAxisMax() const { return m_xMax; }
    qint32 ChartXAxisTicks() const { return m_xTicks; }
    double ChartYAxisMin() const { return m_yMin; }
    double ChartYAxisMax() const { return m_yMax; }
    qint32 ChartYAxisTicks() const { return m_yTicks; }

    // 0 none, 1 horizontal lines, 2 vertical lines, 3 both.
    void ChartGrid(qint16 grid);
    qint16 ChartGrid() const { return m_grid; }

    void ChartTopTitle(const QString &t) { m_topTitle = t; }
    void ChartLeftTitle(const QString &t) { m_leftTitle = t; }
    void ChartBottomTitle(const QString &t) { m_bottomTitle = t; }
    const QString &ChartTopTitle() const { return m_topTitle; }
    const QString &ChartLeftTitle() const { return m_leftTitle; }
    const QString &ChartBottomTitle() const { return m_bottomTitle; }

    // 3 colour, 2 black and white, for printing.
    void ChartPrintStyle(qint16 style) { m_printStyle = style; }
    qint16 ChartPrintStyle() const { return m_printStyle; }
    // 1 colour, 0 black and white, on screen and for copying and files.
    void ChartScreenStyle(qint16 style) { m_screenStyle = style; }
    qint16 ChartScreenStyle() const { return m_screenStyle; }

    // Time charts: both axes logarithmic, base 10; their minimum above 0.
    void ChartLogAxes(bool on) { m_logAxes = on; }
    bool ChartLogAxes() const { return m_logAxes; }

    // Design setting.
    void setKind(Kind kind) { m_kind = kind; }
    Kind kind() const { return m_kind; }

    // Read by the drawing.
    struct Series {
        QString legend;
        qint16 colour = 0;  // palette index
        QVector<double> values;  // one per point
        QVector<double> xs;  // x positions, time charts
        double width = 0;  // pen width; 0 the default
        bool markers = true;
    };
    const QVector<Series> &series() const { return m_series; }
    const QVector<QString> &pointLabels() const { return m_labels; }
    double value(int series, int point) const;  // both from 1

private:
    Series &current();
    const Series &current() const;
    void checkSeries(qint16 index) const;
    void checkPoint(qint16 index) const;

    Kind m_kind = Kind::ClassBars;
    bool m_autoAdvance = false;
    qint16 m_indexMode = 0;
    qint16 m_pointCount = 0;
    qint16 m_point = 1;
    qint16 m_currentSeries = 1;
    QVector<Series> m_series;
    QVector<QString> m_labels;
    double m_xMin = 0, m_xMax = 0, m_yMin = 0, m_yMax = 0;
    qint32 m_xTicks = 0, m_yTicks = 0;
    qint16 m_grid = 0;
    bool m_logAxes = false;
    QString m_topTitle, m_leftTitle, m_bottomTitle;
    qint16 m_printStyle = 3;
    qint16 m_screenStyle = 1;
};

}  // namespace sendrel
