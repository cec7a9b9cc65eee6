#include "support/TestMain.h"
#include "base/SendrelError.h"
#include "base/ToolBox.h"
#include "graph/Graph.h"

#include <QApplication>
#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QChart>
#include <QClipboard>
#include <QFile>
#include <QImage>
#include <QLegend>
#include <QLineSeries>
#include <QPrinter>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>
#include <QValueAxis>

using namespace sendrel;

namespace {

// Three species over twelve classes, as a stand table.
void fillClassChart(ChartData &g)
{
    g.ChartReset(9);
    g.ChartIndexMode(1);
    g.ChartSeriesCount(3);
    g.ChartPointCount(12);
    const qint16 codes[3] = {3, 1, 9};
    const char *names[3] = {"FD", "PW", "BL"};
    for (qint16 s = 1; s <= 3; ++s) {
        g.ChartSeries(s);
        g.ChartSeriesColour(SpeciesColourIndex(codes[s - 1]));
        g.ChartSeriesLegend(QString::fromLatin1(names[s - 1]));
        for (qint16 p = 1; p <= 12; ++p) {
            g.ChartPoint(p);
            g.ChartValue(10.0 * s + p);
        }
    }
    for (qint16 p = 1; p <= 12; ++p) {
        g.ChartPoint(p);
        g.ChartPointLabel(QString::number(2.5 + 5 * (p - 1)));
    }
    g.ChartTopTitle(QStringLiteral("R1 (2000): Density"));
    g.ChartLeftTitle(QStringLiteral("Density (SPH)"));
    g.ChartBottomTitle(QStringLiteral("DBH Class (cm)"));
    g.ChartYAxisMin(0);
    g.ChartYAxisMax(50);
    g.ChartYAxisTicks(5);
}

QByteArray head(const QString &path, int n)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return f.read(n);
}

bool hasColour(const QImage &image, const QColor &colour)
{
    for (int y = 0; y < image.height(); y += 2) {
        const QRgb *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            if ((line[x] & 0xffffff) == (colour.rgb() & 0xffffff))
                return true;
        }
    }
    return false;
}

bool onlyGreys(const QImage &image)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb c = image.pixel(x, y);
            if (qRed(c) != qGreen(c) || qGreen(c) != qBlue(c))
                return false;
        }
    }
    return true;
}

}  // namespace

class TestGraph : public QObject {
    Q_OBJECT

private slots:
    void paletteHasADistinctColourForEveryIndex();
    void drawBuildsTheChart();
    void chartWithoutLegends();
    void timeChart();
    void pngInColourAndBlackAndWhite();
    void svgAndPdfFiles();
    void unwritableFile();
    void copyToClipboard();
    void printToInjectedPrinter();
    void visibility();
};

void TestGraph::paletteHasADistinctColourForEveryIndex()
{
    QSet<QRgb> seen;
    for (int i = 0; i < Graph::kPaletteSize; ++i) {
        const QColor c = Graph::PaletteColour(i);
        QVERIFY(c.isValid());
        QVERIFY2(!seen.contains(c.rgb()), qPrintable(QStringLiteral("colour of index %1 repeats").arg(i)));
        seen.insert(c.rgb());
        // Bars must stand out on the white chart.
        QVERIFY2(c.lightness() < 235, qPrintable(QStringLiteral("index %1 is too pale").arg(i)));
    }
    // Every index that a species code can give lies in the palette.
    for (int code = -5; code <= 400; ++code) {
        const qint16 index = SpeciesColourIndex(static_cast<qint16>(code));
        if (code >= 0)
            QVERIFY(index >= 0 && index < Graph::kPaletteSize);
    }
    QCOMPARE(Graph::PaletteColour(500), Graph::PaletteColour(0));
}

void TestGraph::drawBuildsTheChart()
{
    Graph g;
    fillClassChart(g);
    g.ChartGrid(1);
    g.ChartDraw(2);
    QChart *chart = g.shownChart();
    QVERIFY(chart);
    QCOMPARE(chart->title(), QStringLiteral("R1 (2000): Density"));
    QCOMPARE(chart->series().size(), 1);
    auto *bars = qobject_cast<QBarSeries *>(chart->series().first());
    QVERIFY(bars);
    QCOMPARE(bars->count(), 3);
    QCOMPARE(bars->barSets().at(0)->label(), QStringLiteral("FD"));
    QCOMPARE(bars->barSets().at(2)->at(11), 42.0);
    QCOMPARE(bars->barSets().at(0)->brush().color(), Graph::PaletteColour(3));

    auto *classes = qobject_cast<QBarCategoryAxis *>(chart->axes(Qt::Horizontal).first());
    QVERIFY(classes);
    QCOMPARE(classes->categories().first(), QStringLiteral("2.5"));
    QCOMPARE(classes->count(), 12);
    QCOMPARE(classes->titleText(), QStringLiteral("DBH Class (cm)"));
    QVERIFY(!classes->isGridLineVisible());
    auto *values = qobject_cast<QValueAxis *>(chart->axes(Qt::Vertical).first());
    QVERIFY(values);
    QCOMPARE(values->min(), 0.0);
    QCOMPARE(values->max(), 50.0);
    QCOMPARE(values->tickCount(), 6);
    QCOMPARE(values->titleText(), QStringLiteral("Density (SPH)"));
    QVERIFY(values->isGridLineVisible());
    QVERIFY(chart->legend()->isVisible());
    QCOMPARE(chart->legend()->alignment(), Qt::AlignRight);

    // Changed data shows only at the next draw.
    g.ChartTopTitle(QStringLiteral("other"));
    QCOMPARE(g.shownChart()->title(), QStringLiteral("R1 (2000): Density"));
    // A new size lays out the chart as drawn, not the changed data.
    g.resize(900, 600);
    QCOMPARE(g.shownChart()->title(), QStringLiteral("R1 (2000): Density"));
    g.ChartGrid(2);
    g.ChartDraw(2);
    QCOMPARE(g.shownChart()->title(), QStringLiteral("other"));
    QVERIFY(g.shownChart()->axes(Qt::Horizontal).first()->isGridLineVisible());
    QVERIFY(!g.shownChart()->axes(Qt::Vertical).first()->isGridLineVisible());
}

void TestGraph::chartWithoutLegends()
{
    // A cycle without trees: one series of zeros, no legend, an axis from 0 to 0.
    Graph g;
    g.ChartSeriesCount(1);
    g.ChartPointCount(3);
    g.ChartSeries(1);
    for (qint16 p = 1; p <= 3; ++p) {
        g.ChartPoint(p);
        g.ChartValue(0);
        g.ChartPointLabel(QString::number(p * 10));
    }
    g.ChartDraw(2);
    QVERIFY(!g.shownChart()->legend()->isVisible());
    auto *values = qobject_cast<QValueAxis *>(g.shownChart()->axes(Qt::Vertical).first());
    QVERIFY(values->max() > values->min());
}

void TestGraph::timeChart()
{
    Graph g;
    g.setKind(ChartData::Kind::TimeLines);
    g.ChartSeriesCount(2);
    g.ChartPointCount(3);
    for (qint16 s = 1; s <= 2; ++s) {
        g.ChartSeries(s);
        g.ChartSeriesLegend(s == 1 ? QStringLiteral("FD") : QStringLiteral("PW"));
        g.ChartSeriesColour(s);
        for (qint16 p = 1; p <= 3; ++p) {
            g.ChartPoint(p);
            g.ChartPointX(1990 + 10 * p);
            g.ChartValue(100.0 * s - p);
        }
    }
    g.ChartXAxisMin(2000);
    g.ChartXAxisMax(2030);
    g.ChartXAxisTicks(3);
    g.ChartYAxisMax(200);
    g.ChartYAxisTicks(4);
    g.ChartDraw(2);
    QChart *chart = g.shownChart();
    QCOMPARE(chart->series().size(), 2);
    auto *line = qobject_cast<QLineSeries *>(chart->series().at(1));
    QVERIFY(line);
    QCOMPARE(line->name(), QStringLiteral("PW"));
    QCOMPARE(line->at(2), QPointF(2020, 197));
    auto *years = qobject_cast<QValueAxis *>(chart->axes(Qt::Horizontal).first());
    QCOMPARE(years->min(), 2000.0);
    QCOMPARE(years->max(), 2030.0);

    QTemporaryDir dir;
    const QString png = dir.filePath(QStringLiteral("time.png"));
    g.saveAs(png, QSize(600, 400));
    QCOMPARE(QImage(png).size(), QSize(600, 400));
}

void TestGraph::pngInColourAndBlackAndWhite()
{
    QTemporaryDir dir;
    Graph g;
    fillClassChart(g);
    const QString colour = dir.filePath(QStringLiteral("colour.png"));
    g.saveAs(colour, QSize(800, 500));
    QImage image(colour);
    QCOMPARE(image.size(), QSize(800, 500));
    QVERIFY(hasColour(image, Graph::PaletteColour(3)));
    QVERIFY(hasColour(image, Graph::PaletteColour(9)));
    QVERIFY(!onlyGreys(image));

    const QString bw = dir.filePath(QStringLiteral("bw.png"));
    g.ChartScreenStyle(0);
    g.saveAs(bw, QSize(800, 500));
    image = QImage(bw);
    QCOMPARE(image.size(), QSize(800, 500));
    QVERIFY(onlyGreys(image));
    QVERIFY(hasColour(image, Qt::black));

    // The default file size.
    const QString big = dir.filePath(QStringLiteral("default.PNG"));
    g.saveAs(big);
    QCOMPARE(QImage(big).size(), Graph::kFileSize);
}

void TestGraph::svgAndPdfFiles()
{
    QTemporaryDir dir;
    Graph g;
    fillClassChart(g);
    const QString svg = dir.filePath(QStringLiteral("chart.svg"));
    g.saveAs(svg);
    QFile f(svg);
    QVERIFY(f.open(QIODevice::ReadOnly));
    const QByteArray text = f.readAll();
    QVERIFY(text.startsWith("<?xml"));
    QVERIFY(text.contains("<svg"));
    QVERIFY(text.contains("<title>R1 (2000): Density</title>"));
    QVERIFY(text.size() > 10000);

    const QString pdf = dir.filePath(QStringLiteral("chart.pdf"));
    g.saveAs(pdf);
    QCOMPARE(head(pdf, 5), QByteArray("%PDF-"));
    QVERIFY(QFileInfo(pdf).size() > 5000);
}

void TestGraph::unwritableFile()
{
    QTemporaryDir dir;
    Graph g;
    fillClassChart(g);
    for (const QString &path : {dir.filePath(QStringLiteral("chart.jpg")), dir.filePath(QStringLiteral("no/such/folder/chart.png"))}) {
        try {
            g.saveAs(path);
            QFAIL("the file must be refused");
        } catch (const SendrelError &e) {
            QCOMPARE(e.number(), 75L);
            QVERIFY(e.description().endsWith(path));
        }
    }
}

void TestGraph::copyToClipboard()
{
    Graph g;
    g.resize(700, 450);
    fillClassChart(g);
    // The clipboard sequence of the chart window: black and white on request, then colour again.
    g.ChartScreenStyle(0);
    g.ChartDraw(2);
    g.ChartDraw(4);
    g.ChartScreenStyle(1);
    g.ChartDraw(2);
    const QImage copied = QGuiApplication::clipboard()->image();
    QCOMPARE(copied.size(), QSize(700, 450));
    QVERIFY(onlyGreys(copied.convertToFormat(QImage::Format_RGB32)));
    QCOMPARE(qobject_cast<QBarSeries *>(g.shownChart()->series().first())->barSets().at(0)->brush().color(),
             Graph::PaletteColour(3));
}

void TestGraph::printToInjectedPrinter()
{
    QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("printed.pdf"));
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(pdf);
    printer.setPageOrientation(QPageLayout::Landscape);
    Graph g;
    fillClassChart(g);
    g.setPrinter(&printer);
    g.ChartPrintStyle(2);
    g.ChartDraw(5);
    QCOMPARE(head(pdf, 5), QByteArray("%PDF-"));
    QVERIFY(QFileInfo(pdf).size() > 5000);
}

void TestGraph::visibility()
{
    QWidget window;
    auto *g = new Graph(&window);
    window.show();
    QVERIFY(g->Visible());
    g->Visible(false);
    QVERIFY(!g->Visible());
    QVERIFY(g->isHidden());
    g->Visible(true);
    QVERIFY(g->isVisible());
}

SENDREL_TEST_MAIN(TestGraph)
#include "tst_graph.moc"
