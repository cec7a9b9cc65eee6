#include "domain/output/ChartData.h"

#include "base/SendrelError.h"

namespace sendrel {

namespace {

SendrelError invalid(const QString &what, qint16 index)
{
    return SendrelError(ErrNo::InvalidCall, QStringLiteral("Graph"), QStringLiteral("Invalid %1 index: %2").arg(what).arg(index));
}

}  // namespace

void ChartData::ChartReset(qint16 what)
{
    if (what != 9)
        return;
    m_series.clear();
    m_labels.clear();
    m_pointCount = 0;
    m_point = 1;
    m_currentSeries = 1;
}

void ChartData::ChartAutoAdvance(bool on)
{
    m_autoAdvance = on;
}

void ChartData::ChartIndexMode(qint16 mode)
{
    m_indexMode = mode;
}

void ChartData::ChartPointCount(qint16 count)
{
    m_pointCount = count < 0 ? qint16(0) : count;
    m_labels.resize(m_pointCount);
    for (Series &s : m_series) {
        s.values.resize(m_pointCount);
        s.xs.resize(m_pointCount);
    }
}

void ChartData::ChartSeriesCount(qint16 count)
{
    const qsizetype old = m_series.size();
    m_series.resize(count < 0 ? 0 : count);
    for (qsizetype i = old; i < m_series.size(); ++i) {
        m_series[i].values.resize(m_pointCount);
        m_series[i].xs.resize(m_pointCount);
    }
}

void ChartData::ChartPoint(qint16 index)
{
    m_point = index;
}

void ChartData::ChartSeries(qint16 index)
{
    m_currentSeries = index;
}

void ChartData::checkSeries(qint16 index) const
{
    if (index < 1 || index > m_series.size())
        throw invalid(QStringLiteral("series"), index);
}

void ChartData::checkPoint(qint16 index) const
{
    if (index < 1 || index > m_pointCount)
        throw invalid(QStringLiteral("point"), index);
}

ChartData::Series &ChartData::current()
{
    checkSeries(m_currentSeries);
    return m_series[m_currentSeries - 1];
}

const ChartData::Series &ChartData::current() const
{
    checkSeries(m_currentSeries);
    return m_series[m_currentSeries - 1];
}

void ChartData::ChartValue(double value)
{
    checkPoint(m_point);
    current().values[m_point - 1] = value;
    if (m_autoAdvance) {
        // The next point, and after the last the first point of the next series.
        if (m_point < m_pointCount) {
            ++m_point;
        } else {
            m_point = 1;
            if (m_currentSeries < m_series.size())
                ++m_currentSeries;
        }
    }
}

double ChartData::ChartValue() const
{
    checkPoint(m_point);
    return current().values[m_point - 1];
}

void ChartData::ChartPointX(double x)
{
    checkPoint(m_point);
    current().xs[m_point - 1] = x;
}

void ChartData::ChartPointLabel(const QString &label)
{
    checkPoint(m_point);
    m_labels[m_point - 1] = label;
}

void ChartData::ChartSeriesColour(qint16 paletteIndex)
{
    current().colour = paletteIndex;
}

void ChartData::ChartSeriesColour(qint16 series, qint16 paletteIndex)
{
    checkSeries(series);
    m_series[series - 1].colour = paletteIndex;
}

void ChartData::ChartSeriesPath(qint16 series, const QVector<double> &xs, const QVector<double> &values)
{
    checkSeries(series);
    m_series[series - 1].xs = xs;
    m_series[series - 1].values = values;
}

void ChartData::ChartSeriesLine(qint16 series, double width, bool markers)
{
    checkSeries(series);
    m_series[series - 1].width = width;
    m_series[series - 1].markers = markers;
}

void ChartData::ChartSeriesLegend(const QString &legend)
{
    current().legend = legend;
}

void ChartData::ChartSeriesLegend(qint16 series, const QString &legend)
{
    checkSeries(series);
    m_series[series - 1].legend = legend;
}

void ChartData::ChartGrid(qint16 grid)
{
    m_grid = static_cast<qint16>(qBound(0, static_cast<int>(grid), 3));
}

double ChartData::value(int series, int point) const
{
    if (series < 1 || series > m_series.size() || point < 1 || point > m_pointCount)
        return 0;
    return m_series[series - 1].values[point - 1];
}

}  // namespace sendrel
