// The chart component: what a drawn class chart shows, and the same chart on files, the
// clipboard and paper.
#include "support/TestMain.h"
#include "base/SendrelError.h"
#include "base/ToolBox.h"
#include "graph/ChartKey.h"
#include "graph/Graph.h"

#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QChart>
#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPrinter>
#include <QSet>
#include <QTemporaryDir>
#include <QValueAxis>

#include <algorithm>

using namespace sendrel;

namespace {

// Species over classes, as a stand table: by default three species over twelve classes with
// labels from 2.5 to 57.5.
void fillClassChart(ChartData &g, qint16 species = 3, const QStringList &labels = {})
{
    const qint16 classes = labels.isEmpty() ? 12 : static_cast<qint16>(labels.size());
    g.ChartReset(9);
    g.ChartIndexMode(1);
    g.ChartSeriesCount(species);
    g.ChartPointCount(classes);
    const qint16 codes[3] = {3, 1, 9};
    const char *names[3] = {"FD", "PW", "BL"};
    for (qint16 s = 1; s <= species; ++s) {
        g.ChartSeries(s);
        g.ChartSeriesColour(SpeciesColourIndex(s <= 3 ? codes[s - 1] : s));
        g.ChartSeriesLegend(s <= 3 ? QString::fromLatin1(names[s - 1]) : QStringLiteral("S%1").arg(s));
        for (qint16 p = 1; p <= classes; ++p) {
            g.ChartPoint(p);
            g.ChartValue(10.0 * s + p);
            g.ChartPointLabel(labels.isEmpty() ? QString::number(2.5 + 5 * (p - 1)) : labels.at(p - 1));
        }
    }
    g.ChartTopTitle(QStringLiteral("R1 (2000): Density"));
    g.ChartLeftTitle(QStringLiteral("Density (SPH)"));
    g.ChartBottomTitle(QStringLiteral("DBH Class (cm)"));
    g.ChartYAxisMin(0);
    g.ChartYAxisMax(species > 3 ? 200 : 50);
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
        QCOMPARE(ChartKey::of(chart)->labels(), (QStringList{"FD", "PW", "BL"}));
        QVERIFY(ChartKey::of(chart)->isVisible());

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
        QVERIFY(!ChartKey::of(g.shownChart())->isVisible());
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
            QVERIFY2(e.description().contains(path), qPrintable(e.description()));
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

    // The chart window's copy: black and white on request, then colour again on screen; laid out
    // as shown, with twice its pixels each way.
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
        QCOMPARE(copied.size(), QSize(1400, 900));
        QVERIFY(allGrey(coloursOf(copied.convertToFormat(QImage::Format_RGB32))));
        QCOMPARE(qobject_cast<QBarSeries *>(g.shownChart()->series().first())->barSets().at(0)->brush().color(),
                 Graph::PaletteColour(3));
    }

    // Twelve species in black and white, in a file of the default size: each sample in the key
    // looks unlike every other, and neighbours differ in grey, which is all a narrow bar shows.
    void blackAndWhiteSamplesDiffer()
    {
        Graph g;
        g.resize(Graph::kFileSize);
        g.show();
        QVERIFY(QTest::qWaitForWindowExposed(&g));
        fillClassChart(g, 12);
        g.ChartScreenStyle(0);
        g.ChartDraw(2);
        const ChartKey *key = ChartKey::of(g.shownChart());
        const QImage image = g.toImage(Graph::kFileSize, false).convertToFormat(QImage::Format_Grayscale8);
        QSet<QByteArray> looks;
        double previousGrey = -1;
        for (int s = 0; s < 12; ++s) {
            const QRect sample = key->mapRectToParent(key->sampleRect(s)).toAlignedRect();
            QVERIFY(sample.width() >= 12 && sample.height() >= 12);
            QByteArray pixels;
            double grey = 0;
            for (int y = sample.top() + 1; y < sample.bottom(); ++y) {
                for (int x = sample.left() + 1; x < sample.right(); ++x) {
                    pixels.append(static_cast<char>(qGray(image.pixel(x, y))));
                    grey += qGray(image.pixel(x, y));
                }
            }
            grey /= pixels.size();
            QVERIFY2(!looks.contains(pixels), qPrintable(QStringLiteral("sample %1 looks like another").arg(s + 1)));
            looks.insert(pixels);
            QVERIFY2(previousGrey < 0 || qAbs(grey - previousGrey) > 40, qPrintable(QString::number(s + 1)));
            previousGrey = grey;
        }

        // The SVG writer knows no image fills: the hatched bars carry their hatch as a pattern,
        // beyond the key's samples.
        QTemporaryDir dir;
        g.saveAs(dir.filePath(QStringLiteral("bw.svg")));
        QFile svg(dir.filePath(QStringLiteral("bw.svg")));
        QVERIFY(svg.open(QIODevice::ReadOnly));
        QVERIFY(svg.readAll().count("fill=\"url(#fillpattern") > 12);
    }

    // Class labels stand upright where the widest fits its class, else they turn sideways.
    void classLabels_data()
    {
        QTest::addColumn<QStringList>("labels");
        QTest::addColumn<int>("width");
        QTest::addColumn<qreal>("angle");
        QStringList midpoints;
        QStringList ranges;
        for (int c = 0; c < 24; ++c) {
            midpoints.append(QString::number(2 * c + 1));
            ranges.append(QStringLiteral("%1-%2").arg(100 + 5 * c).arg(105 + 5 * c));
        }
        QTest::newRow("24 midpoints in the chart window") << midpoints << 640 << 0.0;
        QTest::newRow("24 ranges in the chart window") << ranges << 640 << -90.0;
        QTest::newRow("24 ranges in a wide window") << ranges << 2200 << 0.0;
    }

    void classLabels()
    {
        QFETCH(QStringList, labels);
        QFETCH(int, width);
        QFETCH(qreal, angle);
        Graph g;
        g.resize(width, 420);
        g.show();
        QVERIFY(QTest::qWaitForWindowExposed(&g));
        fillClassChart(g, 9, labels);
        g.ChartDraw(2);
        QCoreApplication::processEvents();
        QCOMPARE(g.shownChart()->axes(Qt::Horizontal).first()->labelsAngle(), angle);
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
