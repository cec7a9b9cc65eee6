// The chart component: what a drawn class chart shows, and the same chart on files, the
// clipboard and paper.
#include "support/TestMain.h"
#include "base/SendrelError.h"
#include "base/ToolBox.h"
#include "graph/Graph.h"

#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QChart>
#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QLegend>
#include <QPrinter>
#include <QSet>
#include <QTemporaryDir>
#include <QValueAxis>

#include <algorithm>

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
            g.ChartPointLabel(QString::number(2.5 + 5 * (p - 1)));
        }
    }
    g.ChartTopTitle(QStringLiteral("R1 (2000): Density"));
    g.ChartLeftTitle(QStringLiteral("Density (SPH)"));
    g.ChartBottomTitle(QStringLiteral("DBH Class (cm)"));
    g.ChartYAxisMin(0);
    g.ChartYAxisMax(50);
    g.ChartYAxisTicks(5);
}

// The colours of an image, without alpha.
QSet<QRgb> coloursOf(const QImage &image)
{
    QSet<QRgb> colours;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            colours.insert(image.pixel(x, y) & 0xffffff);
    }
    return colours;
}

bool allGrey(const QSet<QRgb> &colours)
{
    return std::all_of(colours.begin(), colours.end(), [](QRgb c) { return qRed(c) == qGreen(c) && qGreen(c) == qBlue(c); });
}

QByteArray fileHead(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.read(5) : QByteArray();
}

}  // namespace

class TestGraph : public QObject {
    Q_OBJECT

private slots:
    // Species colours must tell species apart and stand out on white.
    void paletteHasADistinctColourForEveryIndex()
    {
        QSet<QRgb> seen;
        for (int i = 0; i < Graph::kPaletteSize; ++i) {
            const QColor c = Graph::PaletteColour(i);
            QVERIFY2(!seen.contains(c.rgb()) && c.lightness() < 235, qPrintable(QString::number(i)));
            seen.insert(c.rgb());
        }
    }

    void drawBuildsTheChart()
    {
        Graph g;
        fillClassChart(g);
        g.ChartGrid(1);
        g.ChartDraw(2);
        QChart *chart = g.shownChart();
        QCOMPARE(chart->title(), QStringLiteral("R1 (2000): Density"));
        auto *bars = qobject_cast<QBarSeries *>(chart->series().first());
        QCOMPARE(bars->barSets().at(0)->label(), QStringLiteral("FD"));
        QCOMPARE(bars->barSets().at(2)->at(11), 42.0);
        QCOMPARE(bars->barSets().at(0)->brush().color(), Graph::PaletteColour(3));
        auto *classes = qobject_cast<QBarCategoryAxis *>(chart->axes(Qt::Horizontal).first());
        QCOMPARE(classes->categories().first(), QStringLiteral("2.5"));
        QCOMPARE(classes->titleText(), QStringLiteral("DBH Class (cm)"));
        QVERIFY(!classes->isGridLineVisible());
        auto *values = qobject_cast<QValueAxis *>(chart->axes(Qt::Vertical).first());
        QCOMPARE(values->max(), 50.0);
        QCOMPARE(values->titleText(), QStringLiteral("Density (SPH)"));
        QVERIFY(values->isGridLineVisible());
        QVERIFY(chart->legend()->isVisible());

        // Changed data shows only at the next draw, even when a new size lays the chart out again.
        g.ChartTopTitle(QStringLiteral("other"));
        g.resize(900, 600);
        QCOMPARE(g.shownChart()->title(), QStringLiteral("R1 (2000): Density"));
        g.ChartGrid(2);
        g.ChartDraw(2);
        QCOMPARE(g.shownChart()->title(), QStringLiteral("other"));
        QVERIFY(g.shownChart()->axes(Qt::Horizontal).first()->isGridLineVisible());
        QVERIFY(!g.shownChart()->axes(Qt::Vertical).first()->isGridLineVisible());

        // A cycle without trees: one series of zeros, no legend, and still an axis to draw on.
        g.ChartReset(9);
        g.ChartSeriesCount(1);
        g.ChartPointCount(3);
        g.ChartYAxisMax(0);
        g.ChartDraw(2);
        QVERIFY(!g.shownChart()->legend()->isVisible());
        auto *empty = qobject_cast<QValueAxis *>(g.shownChart()->axes(Qt::Vertical).first());
        QVERIFY(empty->max() > empty->min());
    }

    // The same chart on files; a type it cannot write, or a folder that is not there, is refused.
    void files_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<bool>("colour");
        QTest::addColumn<QByteArray>("head");   // empty: a picture to look at; "refused": number 75
        QTest::newRow("png in colour") << "c.png" << QSize(800, 500) << true << QByteArray();
        QTest::newRow("png black and white") << "bw.png" << QSize(800, 500) << false << QByteArray();
        QTest::newRow("png of the default size") << "d.PNG" << Graph::kFileSize << true << QByteArray();
        QTest::newRow("svg") << "c.svg" << Graph::kFileSize << true << QByteArray("<?xml");
        QTest::newRow("pdf") << "c.pdf" << Graph::kFileSize << true << QByteArray("%PDF-");
        QTest::newRow("jpg") << "c.jpg" << Graph::kFileSize << true << QByteArray("refused");
        QTest::newRow("no folder") << "no/such/c.png" << Graph::kFileSize << true << QByteArray("refused");
    }

    void files()
    {
        QFETCH(QString, name);
        QFETCH(QSize, size);
        QFETCH(bool, colour);
        QFETCH(QByteArray, head);
        QTemporaryDir dir;
        const QString path = dir.filePath(name);
        Graph g;
        fillClassChart(g);
        g.ChartScreenStyle(colour ? 1 : 0);
        try {
            g.saveAs(path, size);
            QVERIFY(head != "refused");
        } catch (const SendrelError &e) {
            QCOMPARE(head, QByteArray("refused"));
            QCOMPARE(e.number(), 75L);
            QVERIFY(e.description().endsWith(path));
            return;
        }
        if (!head.isEmpty()) {
            QCOMPARE(fileHead(path), head);
            QVERIFY(QFileInfo(path).size() > 5000);
            return;
        }
        const QImage image(path);
        QCOMPARE(image.size(), size);
        const QSet<QRgb> colours = coloursOf(image);
        QCOMPARE(allGrey(colours), !colour);
        QVERIFY(colours.contains((colour ? Graph::PaletteColour(9) : QColor(Qt::black)).rgb() & 0xffffff));
    }

    // The chart window's copy: black and white on request, then colour again on screen.
    void copyToClipboard()
    {
        Graph g;
        g.resize(700, 450);
        fillClassChart(g);
        g.ChartScreenStyle(0);
        g.ChartDraw(2);
        g.ChartDraw(4);
        g.ChartScreenStyle(1);
        g.ChartDraw(2);
        const QImage copied = QGuiApplication::clipboard()->image();
        QCOMPARE(copied.size(), QSize(700, 450));
        QVERIFY(allGrey(coloursOf(copied.convertToFormat(QImage::Format_RGB32))));
        QCOMPARE(qobject_cast<QBarSeries *>(g.shownChart()->series().first())->barSets().at(0)->brush().color(),
                 Graph::PaletteColour(3));
    }

    void printToInjectedPrinter()
    {
        QTemporaryDir dir;
        const QString pdf = dir.filePath(QStringLiteral("printed.pdf"));
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(pdf);
        Graph g;
        fillClassChart(g);
        g.setPrinter(&printer);
        g.ChartPrintStyle(2);
        g.ChartDraw(5);
        QCOMPARE(fileHead(pdf), QByteArray("%PDF-"));
        QVERIFY(QFileInfo(pdf).size() > 5000);
    }
};

SENDREL_TEST_MAIN(TestGraph)
#include "tst_graph.moc"
