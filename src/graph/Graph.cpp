#include "graph/Graph.h"

#include "base/SendrelError.h"
#include "domain/output/WholeFile.h"
#include "graph/ChartKey.h"
#include "graph/PrintOn.h"

#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QBuffer>
#include <QChart>
#include <QChartView>
#include <QClipboard>
#include <QDir>
#include <QFileInfo>
#include <QFontMetricsF>
#include <QGraphicsLayout>
#include <QGraphicsRectItem>
#include <QGraphicsScene>
#include <QGuiApplication>
#include <QImage>
#include <QLegend>
#include <QLineSeries>
#include <QLogValueAxis>
#include <QPageSize>
#include <QPaintEngine>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QScreen>
#include <QSet>
#include <QSvgGenerator>
#include <QVBoxLayout>
#include <QValueAxis>

#include <cmath>
#include <memory>

namespace sendrel {

namespace {

// The first sixteen colours are chosen by hand: the species of the installed list (codes 1 to
// 11 are palette 1 to 11) must stand apart at a glance, also side by side in a bar group.
const QRgb kFirstColours[16] = {
    qRgb(64, 64, 64),  // 0: species without a colour of their own
    qRgb(31, 119, 180),  // blue
    qRgb(255, 127, 14),  // orange
    qRgb(44, 160, 44),  // green
    qRgb(214, 39, 40),  // red
    qRgb(148, 103, 189),  // purple
    qRgb(140, 86, 75),  // brown
    qRgb(227, 119, 194),  // pink
    qRgb(188, 189, 34),  // olive
    qRgb(23, 190, 207),  // cyan
    qRgb(0, 0, 139),  // navy
    qRgb(128, 0, 0),  // maroon
    qRgb(255, 215, 0),  // gold
    qRgb(0, 128, 128),  // teal
    qRgb(154, 205, 50),  // yellow green
    qRgb(255, 99, 71),  // tomato
};

QVector<QColor> makePalette()
{
    QVector<QColor> palette;
    QSet<QRgb> used;
    for (QRgb c : kFirstColours) {
        palette.append(QColor(c));
        used.insert(c);
    }
    // The rest spread round the colour wheel by the golden angle, with three levels of
    // brightness and two of saturation, so that neighbours in the list differ clearly.
    double hue = 0.11;
    for (int i = 16; palette.size() < Graph::kPaletteSize; ++i) {
        hue = std::fmod(hue + 0.618033988749895, 1.0);
        const double saturation = (i % 2) ? 0.85 : 0.55;
        const double value = 0.55 + 0.2 * (i % 3);
        QColor c = QColor::fromHsvF(static_cast<float>(hue), static_cast<float>(saturation), static_cast<float>(value));
        if (used.contains(c.rgb()))
            continue;
        used.insert(c.rgb());
        palette.append(c);
    }
    return palette;
}

// Black and white bars: a grey and a hatch of their own for each of twelve series (eleven species
// and their total). Neighbours differ in grey, which still shows in bars too narrow for a hatch;
// the hatch tells apart the series of like grey in the key and in wide bars.
struct Fill {
    int grey;
    Qt::BrushStyle hatch;
};
const Fill kFills[] = {{0, Qt::NoBrush},        {255, Qt::NoBrush},    {150, Qt::NoBrush},         {255, Qt::BDiagPattern},
                       {85, Qt::NoBrush},       {210, Qt::NoBrush},    {0, Qt::HorPattern},        {255, Qt::CrossPattern},
                       {150, Qt::FDiagPattern}, {255, Qt::VerPattern}, {85, Qt::DiagCrossPattern}, {210, Qt::HorPattern}};
// The text key of a fill's tile that names its place in kFills.
const QString kFillKey = QStringLiteral("sendrel-fill");

QBrush groundOf(int fill)
{
    const int grey = kFills[fill].grey;
    return QColor(grey, grey, grey);
}

// A hatch is drawn in white on the dark greys.
QBrush hatchOf(int fill)
{
    return QBrush(kFills[fill].grey < 128 ? Qt::white : Qt::black, kFills[fill].hatch);
}

// A bar has one brush: a hatched bar's is a tile of its grey with its hatch over it. The tile has
// the output's resolution (scale: device pixels per chart pixel), so that the hatch stays sharp and
// its lines as far apart on paper as on screen.
QBrush fillBrush(int fill, qreal scale)
{
    if (kFills[fill].hatch == Qt::NoBrush)
        return groundOf(fill);
    constexpr int kCell = 8;  // the hatches' own size
    const int k = qMax(1, qRound(scale));
    QImage tile(kCell * k, kCell * k, QImage::Format_RGB32);
    tile.fill(groundOf(fill).color());
    tile.setText(kFillKey, QString::number(fill));
    QPainter painter(&tile);
    painter.setRenderHint(QPainter::NonCosmeticBrushPatterns);
    painter.scale(k, k);
    painter.fillRect(QRect(0, 0, kCell, kCell), hatchOf(fill));
    painter.end();
    QBrush brush(tile);
    brush.setTransform(QTransform::fromScale(1.0 / k, 1.0 / k));
    return brush;
}

// The SVG writer knows no image fills: there a hatched bar gets its grey, and its hatch is laid
// over it as a pattern, which the writer knows.
void splitFills(QGraphicsScene &scene)
{
    for (QGraphicsItem *item : scene.items()) {
        auto *bar = qgraphicsitem_cast<QGraphicsRectItem *>(item);
        if (!bar || bar->brush().style() != Qt::TexturePattern)
            continue;
        bool ok = false;
        const int fill = bar->brush().textureImage().text(kFillKey).toInt(&ok);
        if (!ok || fill < 0 || fill >= static_cast<int>(std::size(kFills)))
            continue;
        bar->setBrush(groundOf(fill));
        const qreal inset = bar->pen().widthF() / 2;
        auto *hatch = new QGraphicsRectItem(bar->rect().adjusted(inset, inset, -inset, -inset), bar);
        hatch->setPen(Qt::NoPen);
        hatch->setBrush(hatchOf(fill));
    }
}

// Lines in black and white: a dash pattern of their own for each of twelve series, in units of the
// pen's width, each short enough to repeat in the key's sample; an empty pattern is a solid line.
// Dots, short, middle and long dashes and their mixtures, so that no two differ only a little in
// the length of a dash.
const QList<QList<qreal>> kDashPatterns = {
    {},     {4, 2},       {1, 1.5},     {4, 1.5, 1, 1.5}, {8, 2},  {1, 3.5}, {4, 1.5, 1, 1.5, 1, 1.5},
    {2, 2}, {8, 2, 1, 2}, {1, 1, 1, 4}, {8, 2, 2, 2},     {2, 4.5}};

// Category labels must differ for the axis to keep them apart; a repeated label gets
// invisible characters behind it.
QStringList distinctLabels(const QVector<QString> &labels)
{
    QStringList out;
    QSet<QString> seen;
    for (QString l : labels) {
        while (seen.contains(l))
            l += QChar(0x200B);
        seen.insert(l);
        out.append(l);
    }
    return out;
}

QString tickFormat(double low, double high, int ticks)
{
    const double step = ticks > 0 ? (high - low) / ticks : high - low;
    return step == std::floor(step) && low == std::floor(low) ? QStringLiteral("%.0f") : QStringLiteral("%.1f");
}

// A logarithmic axis, base 10, its labels as plain numbers.
QLogValueAxis *logAxis(double low, double high)
{
    auto *axis = new QLogValueAxis;
    axis->setBase(10);
    axis->setRange(low > 0 ? low : 1, high > low && low > 0 ? high : 10);
    axis->setLabelFormat(QStringLiteral("%g"));
    // The minor lines at 2 to 9 times each power let a reader place a point between the labels.
    axis->setMinorTickCount(8);
    axis->setMinorGridLineVisible(true);
    axis->setMinorGridLineColor(QColor(225, 225, 225));
    return axis;
}

QFont withSize(QFont font, double points, bool bold = false)
{
    font.setPointSizeF(points);
    font.setBold(bold);
    return font;
}

}  // namespace

Graph::Graph(QWidget *parent) : QWidget(parent), m_view(new QChartView(this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_view);
    m_view->setRenderHint(QPainter::Antialiasing);
}

Graph::~Graph() = default;

QColor Graph::PaletteColour(int index)
{
    static const QVector<QColor> palette = makePalette();
    if (index < 0 || index >= palette.size())
        return palette.at(0);
    return palette.at(index);
}

namespace {

// The chart's title, set smaller rather than cut off when it is long, down to a size still read
// with ease.
void setTitle(QChart *chart, const QString &title, qreal width)
{
    chart->setTitle(title);
    QFont titleFont = withSize(chart->titleFont(), 13, true);
    const double titleRoom = width - 2 * 12;
    while (titleFont.pointSizeF() > 8 && QFontMetricsF(titleFont).horizontalAdvance(title) > titleRoom)
        titleFont.setPointSizeF(titleFont.pointSizeF() - 0.5);
    chart->setTitleFont(titleFont);
}

// The value axis of the data's range, ticks and scale.
QAbstractAxis *valueAxis(const ChartData &data)
{
    double low = data.ChartYAxisMin();
    double high = data.ChartYAxisMax();
    // An axis from 0 to 0 (no data) still needs a span to be drawn.
    if (!(high > low))
        high = low + 1;
    const int ticks = data.ChartYAxisTicks() > 0 ? data.ChartYAxisTicks() : 1;
    if (data.ChartLogAxes())
        return logAxis(low, high);
    auto *values = new QValueAxis;
    values->setRange(low, high);
    values->setTickCount(ticks + 1);
    values->setLabelFormat(tickFormat(low, high, ticks));
    values->setMinorGridLineVisible(false);
    return values;
}

// The series as bars by class, added to the chart and to drawn, with a key entry for each named
// one; gives the axis of the classes.
QAbstractAxis *addBars(QChart *chart, const ChartData &data, bool colour, qreal scale, QList<ChartKey::Entry> &keyEntries,
                       QList<QAbstractSeries *> &drawn)
{
    const QVector<ChartData::Series> &all = data.series();
    auto *barSeries = new QBarSeries;
    barSeries->setBarWidth(0.85);
    for (int s = 0; s < all.size(); ++s) {
        auto *set = new QBarSet(all[s].legend);
        for (double v : all[s].values)
            set->append(v);
        QBrush ground;
        QBrush hatch;
        if (colour) {
            const QColor c = Graph::PaletteColour(all[s].colour);
            ground = c;
            set->setBrush(c);
            set->setPen(QPen(c.darker(140), 1));
        } else {
            const int fill = s % static_cast<int>(std::size(kFills));
            ground = groundOf(fill);
            hatch = hatchOf(fill);
            set->setBrush(fillBrush(fill, scale));
            set->setPen(QPen(Qt::black, 1));
        }
        barSeries->append(set);
        if (!all[s].legend.isEmpty())
            keyEntries.append({all[s].legend, ground, hatch, set->pen()});
    }
    chart->addSeries(barSeries);
    drawn.append(barSeries);
    auto *classes = new QBarCategoryAxis;
    classes->append(distinctLabels(data.pointLabels()));
    // Every class keeps its whole label: the chart library would cut one to dots wherever a
    // class is narrower than its own generous padding, though the label fits.
    classes->setTruncateLabels(false);
    return classes;
}

// The series as lines over x, added to the chart and to drawn, with a key entry for each named
// one; gives the x axis.
QAbstractAxis *addLines(QChart *chart, const ChartData &data, bool colour, QList<ChartKey::Entry> &keyEntries,
                        QList<QAbstractSeries *> &drawn)
{
    const QVector<ChartData::Series> &all = data.series();
    QAbstractAxis *xAxis = nullptr;
    double xLow = data.ChartXAxisMin();
    double xHigh = data.ChartXAxisMax();
    if (!(xHigh > xLow)) {
        // No axis set: the span of the x positions written.
        bool any = false;
        for (const ChartData::Series &s : all) {
            for (double x : s.xs) {
                xLow = any ? qMin(xLow, x) : x;
                xHigh = any ? qMax(xHigh, x) : x;
                any = true;
            }
        }
        if (!(xHigh > xLow))
            xHigh = xLow + 1;
    }
    const int xTicks = data.ChartXAxisTicks() > 0 ? data.ChartXAxisTicks() : 1;
    if (data.ChartLogAxes()) {
        xAxis = logAxis(xLow, xHigh);
    } else {
        auto *years = new QValueAxis;
        years->setRange(xLow, xHigh);
        years->setTickCount(xTicks + 1);
        years->setLabelFormat(tickFormat(xLow, xHigh, xTicks));
        xAxis = years;
    }
    for (int s = 0; s < all.size(); ++s) {
        auto *line = new QLineSeries;
        line->setName(all[s].legend);
        for (int p = 0; p < all[s].values.size(); ++p)
            line->append(all[s].xs.value(p), all[s].values[p]);
        QPen pen(colour ? Graph::PaletteColour(all[s].colour) : QColor(Qt::black));
        pen.setWidthF(all[s].width > 0 ? all[s].width : 2.0);
        if (!colour && !kDashPatterns[s % kDashPatterns.size()].isEmpty()) {
            pen.setDashPattern(kDashPatterns[s % kDashPatterns.size()]);
            // Square ends would lengthen every dash by the pen's width and close the short gaps.
            pen.setCapStyle(Qt::FlatCap);
        }
        line->setPen(pen);
        line->setPointsVisible(all[s].markers);
        chart->addSeries(line);
        drawn.append(line);
        if (!all[s].legend.isEmpty())
            keyEntries.append({all[s].legend, Qt::NoBrush, Qt::NoBrush, pen});
    }
    return xAxis;
}

// Class labels stand upright while the widest fits its class, in a smaller type if need be; else
// they turn sideways. The room is known once the chart is laid out, and is looked at again
// whenever the plot changes size; firstGuess stands for it until then.
void fitClassLabels(QChart *chart, QBarCategoryAxis *classes, const QFont &axisFont, qreal firstGuess)
{
    const QStringList labels = classes->categories();
    const QFont small = withSize(axisFont, 8);
    auto fit = [classes, labels, axisFont, small](qreal plotWidth) {
        const qreal room = labels.isEmpty() ? plotWidth : plotWidth / labels.size();
        auto fits = [&labels, room](const QFont &font) {
            const QFontMetricsF metrics(font);
            qreal widest = 0;
            for (const QString &l : labels)
                widest = qMax(widest, metrics.horizontalAdvance(l));
            return widest + 4 <= room;
        };
        const bool upright = fits(axisFont) || fits(small);
        const QFont font = fits(axisFont) ? axisFont : small;
        if (classes->labelsFont() != font)
            classes->setLabelsFont(font);
        if (classes->labelsAngle() != (upright ? 0 : -90))
            classes->setLabelsAngle(upright ? 0 : -90);
    };
    fit(firstGuess);
    QObject::connect(chart, &QChart::plotAreaChanged, classes, [fit](const QRectF &plot) { fit(plot.width()); });
}

// Black and white means no tint anywhere: the theme's bluish greys become true greys.
void inBlackAndWhite(QChart *chart, std::initializer_list<QAbstractAxis *> axes)
{
    chart->setBackgroundBrush(Qt::white);
    chart->setTitleBrush(Qt::black);
    for (QAbstractAxis *axis : axes) {
        axis->setLabelsColor(Qt::black);
        axis->setTitleBrush(Qt::black);
        axis->setLinePenColor(Qt::black);
        axis->setGridLineColor(QColor(190, 190, 190));
        axis->setShadesVisible(false);
    }
}

}  // namespace

QChart *Graph::buildChart(const ChartData &data, bool colour, QSizeF layoutSize, qreal scale)
{
    auto *chart = new QChart;
    chart->setTheme(QChart::ChartThemeLight);
    chart->setAnimationOptions(QChart::NoAnimation);
    chart->setBackgroundRoundness(0);
    setTitle(chart, data.ChartTopTitle(), layoutSize.width());

    const int points = data.ChartPointCount();
    const QFont axisFont = withSize(chart->font(), points > 20 ? 8 : 9);
    const QFont axisTitleFont = withSize(chart->font(), 10, true);

    QAbstractAxis *yAxis = valueAxis(data);
    yAxis->setTitleText(data.ChartLeftTitle());
    yAxis->setTitleFont(axisTitleFont);
    yAxis->setLabelsFont(axisFont);
    yAxis->setGridLineVisible(data.ChartGrid() & 1);
    chart->addAxis(yAxis, Qt::AlignLeft);

    // The key lists the named series; series without a legend have no sample, and a chart
    // without legends has no key.
    QList<ChartKey::Entry> keyEntries;
    QList<QAbstractSeries *> drawn;
    const bool bars = data.kind() == Kind::ClassBars;
    QAbstractAxis *xAxis = bars ? addBars(chart, data, colour, scale, keyEntries, drawn) : addLines(chart, data, colour, keyEntries, drawn);
    xAxis->setTitleText(data.ChartBottomTitle());
    xAxis->setTitleFont(axisTitleFont);
    xAxis->setLabelsFont(axisFont);
    xAxis->setGridLineVisible(data.ChartGrid() & 2);
    chart->addAxis(xAxis, Qt::AlignBottom);
    for (QAbstractSeries *s : drawn) {
        s->attachAxis(xAxis);
        s->attachAxis(yAxis);
    }

    // The key stands beside the plot, never over the bars, in the chart's right margin.
    chart->legend()->setVisible(false);
    constexpr int kMargin = 6;
    // In black and white a bar's sample holds two cells of its hatch, and a line's sample
    // shows its dashes several times.
    const QSizeF sample = colour ? QSizeF(bars ? 14 : 28, 14) : bars ? QSizeF(18, 18) : QSizeF(48, 14);
    // It may use the height less the title's and the margins'.
    auto *key = new ChartKey(keyEntries, withSize(chart->font(), colour ? 9 : 11),
                             colour ? chart->legend()->labelColor() : QColor(Qt::black), sample, layoutSize.height() - 60);
    chart->setMargins(QMargins(kMargin, kMargin, kMargin + qCeil(key->keyWidth()), kMargin));
    key->attachTo(chart, kMargin);

    // A first guess of the plot's width before the layout: the chart less its margins and key,
    // and the value axis.
    if (bars)
        fitClassLabels(chart, static_cast<QBarCategoryAxis *>(xAxis), axisFont, layoutSize.width() - 2 * kMargin - key->keyWidth() - 70);
    if (!colour)
        inBlackAndWhite(chart, {yAxis, xAxis});
    return chart;
}

void Graph::showChart()
{
    if (!m_shown)
        return;
    QChart *old = m_view->chart();
    m_view->setChart(buildChart(*m_shown, m_shown->ChartScreenStyle() == 1, m_view->size(), m_view->devicePixelRatioF()));
    delete old;
}

void Graph::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    // The key's columns and the title's size follow the room there is: the chart as last drawn
    // is built again for the new size.
    showChart();
}

QChart *Graph::shownChart() const
{
    return m_view->chart();
}

QSize Graph::outputSize() const
{
    const QSize s = size();
    return s.width() >= 200 && s.height() >= 150 ? s : kFileSize;
}

void Graph::renderTo(QPainter &painter, const QRectF &target, bool colour) const
{
    // The chart is laid out at a screen-like size and scaled into the target, so that a
    // printer's thousands of dots give the same picture as the screen, not tiny print.
    QSizeF logical = target.size();
    if (logical.width() > 1600)
        logical *= kFileSize.width() / logical.width();
    render(painter, target, logical, colour);
}

void Graph::render(QPainter &painter, const QRectF &target, QSizeF logical, bool colour) const
{
    QGraphicsScene scene;
    QChart *chart = buildChart(*this, colour, logical, target.width() / logical.width());
    scene.addItem(chart);
    chart->setGeometry(QRectF(QPointF(0, 0), logical));
    // The class labels may have turned at the first layout; without an event loop here, the
    // layout they ask for is done at once.
    chart->layout()->activate();
    if (painter.paintEngine() && painter.paintEngine()->type() == QPaintEngine::SVG)
        splitFills(scene);
    scene.setSceneRect(QRectF(QPointF(0, 0), logical));
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    // The hatches grow with the chart: at a printer's resolution they would otherwise shrink to
    // even greys, and the species could not be told apart on paper.
    painter.setRenderHint(QPainter::NonCosmeticBrushPatterns);
    painter.fillRect(target, Qt::white);
    scene.render(&painter, target, scene.sceneRect(), Qt::IgnoreAspectRatio);
    painter.restore();
}

void Graph::renderTo(QPaintDevice *device, bool colour) const
{
    QPainter painter;
    if (!painter.begin(device))
        throw SendrelError(ErrNo::PrinterError, QStringLiteral("Graph"), QStringLiteral("Printer error"));
    renderTo(painter, QRectF(0, 0, device->width(), device->height()), colour);
    painter.end();
}

QImage Graph::toImage(QSize size, bool colour) const
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    renderTo(painter, QRectF(QPointF(0, 0), QSizeF(size)), colour);
    painter.end();
    return image;
}

QImage Graph::copyImage() const
{
    // Laid out as the chart shows, with twice its pixels each way: pasted into a document and
    // printed, the hatching and the dashes keep their detail. The resolution is set to match,
    // so that the copy keeps the chart's size on the page.
    const QSize shown = outputSize();
    QImage image(shown * 2, QImage::Format_ARGB32_Premultiplied);
    image.setDotsPerMeterX(image.dotsPerMeterX() * 2);
    image.setDotsPerMeterY(image.dotsPerMeterY() * 2);
    image.fill(Qt::white);
    QPainter painter(&image);
    render(painter, QRectF(QPointF(0, 0), QSizeF(image.size())), QSizeF(shown), ChartScreenStyle() == 1);
    painter.end();
    return image;
}

void Graph::SaveCharts(const QList<ChartData> &charts, const QString &path, QSize size)
{
    const QString type = QFileInfo(path).suffix().toLower();
    const auto cannotWrite = [&path](const QString &why) {
        return SendrelError(ErrNo::PathFileAccess, QStringLiteral("Graph"),
                            QStringLiteral("Cannot write %1: %2").arg(QDir::toNativeSeparators(path), why));
    };
    if (type != QLatin1String("png") && type != QLatin1String("svg") && type != QLatin1String("pdf"))
        throw cannotWrite(QStringLiteral("a chart file is a .png, .svg or .pdf file"));
    if (charts.isEmpty() || (charts.size() > 1 && type != QLatin1String("pdf")))
        throw SendrelError(ErrNo::InvalidCall, QStringLiteral("Graph"), QStringLiteral("One chart per PNG or SVG file: ") + path);

    // Drawn in memory first, then written whole: a failure leaves the file that was there as it was.
    Graph graph;
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    graph.setChartData(charts.first());
    const bool colour = graph.ChartScreenStyle() == 1;
    if (type == QLatin1String("png")) {
        if (!graph.toImage(size, colour).save(&buffer, "PNG"))
            throw cannotWrite(QStringLiteral("the image cannot be encoded"));
    } else if (type == QLatin1String("svg")) {
        QSvgGenerator svg;
        svg.setOutputDevice(&buffer);
        svg.setSize(size);
        svg.setViewBox(QRect(QPoint(0, 0), size));
        // Sizes in points are written for the screen's resolution, so that the text has the size
        // it has on screen and in a PNG file.
        if (const QScreen *screen = QGuiApplication::primaryScreen())
            svg.setResolution(qRound(screen->logicalDotsPerInchY()));
        svg.setTitle(graph.ChartTopTitle());
        svg.setDescription(QStringLiteral("Sendrel chart"));
        QPainter painter;
        if (!painter.begin(&svg))
            throw cannotWrite(QStringLiteral("the drawing cannot be started"));
        graph.renderTo(painter, QRectF(QPointF(0, 0), QSizeF(size)), colour);
        painter.end();
    } else {
        QPdfWriter pdf(&buffer);
        pdf.setPageSize(QPageSize(QPageSize::A4));
        pdf.setPageOrientation(QPageLayout::Landscape);
        pdf.setResolution(300);
        pdf.setTitle(charts.first().ChartTopTitle());
        pdf.setCreator(QStringLiteral("Sendrel"));
        QPainter painter;
        if (!painter.begin(&pdf))
            throw cannotWrite(QStringLiteral("the drawing cannot be started"));
        for (qsizetype i = 0; i < charts.size(); ++i) {
            if (i > 0) {
                pdf.newPage();
                graph.setChartData(charts.at(i));
            }
            graph.renderTo(painter, QRectF(0, 0, pdf.width(), pdf.height()), graph.ChartScreenStyle() == 1);
        }
        painter.end();
    }
    SaveWholeFile(path, buffer.data(), QStringLiteral("Graph"));
}

void Graph::saveAs(const QString &path, QSize size) const
{
    SaveCharts({static_cast<const ChartData &>(*this)}, path, size);
}

void Graph::ChartDraw(qint16 action)
{
    switch (action) {
    case 2:
        m_shown = std::make_unique<ChartData>(static_cast<const ChartData &>(*this));
        showChart();
        break;
    case 4:
        QGuiApplication::clipboard()->setImage(copyImage());
        break;
    case 5: {
        std::unique_ptr<QPrinter> own;
        QPrinter *printer = m_printer;
        if (!printer) {
            own = std::make_unique<QPrinter>(QPrinter::HighResolution);
            own->setPageOrientation(QPageLayout::Landscape);
            printer = own.get();
        }
        PrintOn(
            *printer, [this](QPagedPaintDevice &device) { renderTo(&device, ChartPrintStyle() == 3); }, QStringLiteral("Graph"));
        break;
    }
    default:
        break;
    }
}

}  // namespace sendrel
