#pragma once

#include "domain/output/ChartData.h"

#include <QColor>
#include <QSize>
#include <QSizeF>
#include <QString>
#include <QWidget>

#include <memory>

class QChart;
class QChartView;
class QImage;
class QPaintDevice;
class QPainter;
class QPrinter;
class QRectF;

namespace sendrel {

// The program's one chart component. Its data is set through the chart operations of
// ChartData (ChartReset, ChartSeries, ChartValue, ChartTopTitle, ChartGrid, ...); nothing
// shows until ChartDraw 2. Class charts draw as bars grouped by class, labelled by class;
// time charts as lines over their x positions.
//
// One drawing path: the screen, the clipboard, the printer and the files (PNG, SVG, PDF)
// all get the chart from the same builder, so what prints is what the forester saw. Files
// need no shown window; a QApplication must exist, since the chart library draws on a
// graphics scene.
class Graph : public QWidget, public ChartData {
    Q_OBJECT

public:
    explicit Graph(QWidget *parent = nullptr);
    ~Graph() override;

    // 2 draws on screen (ChartScreenStyle), 4 copies the chart to the clipboard as an image laid
    // out as on screen, with twice its pixels each way (ChartScreenStyle), 5 prints it
    // (ChartPrintStyle) on the printer set by setPrinter, or on the default printer; a printer
    // that prints to a file writes it whole (PrintOn). A failure to print is number 482,
    // "Printer error".
    void ChartDraw(qint16 action);

    // Whether the chart shows in its window.
    void Visible(bool visible) { setVisible(visible); }
    bool Visible() const { return !isHidden(); }

    // Takes all data and settings of a chart filled elsewhere (the headless tool's charts).
    void setChartData(const ChartData &data) { static_cast<ChartData &>(*this) = data; }

    // Where ChartDraw 5 prints; not owned. Tests give a PDF printer here.
    void setPrinter(QPrinter *printer) { m_printer = printer; }

    // Draws the chart into the rectangle of an open painter, in colour or black and white.
    void renderTo(QPainter &painter, const QRectF &target, bool colour) const;
    // Draws the chart filling a paint device (an image, an SVG generator, a printer).
    void renderTo(QPaintDevice *device, bool colour) const;
    // The chart as an image of that size.
    QImage toImage(QSize size, bool colour) const;
    // Writes the chart to a .png, .svg or .pdf file in the screen style (ChartScreenStyle).
    // PNG and SVG have the size given; a PDF is one landscape A4 page. The file is drawn in
    // memory and written whole (SaveWholeFile): a failure (ErrNo::PathFileAccess for a type it does
    // not know, ErrNo::DeviceIO for a failed write) names the file and the cause and leaves the
    // file that was there as it was.
    void saveAs(const QString &path, QSize size = kFileSize) const;
    // Writes several charts to one file, as saveAs: a PDF gets one landscape A4 page per chart,
    // in order; PNG and SVG take one chart only. Each chart in its own screen style.
    static void SaveCharts(const QList<ChartData> &charts, const QString &path, QSize size = kFileSize);

    static constexpr QSize kFileSize{1100, 700};

    // The series palette by index, as SpeciesColourIndex gives it: 0 to 126, each distinct.
    static QColor PaletteColour(int index);
    static constexpr int kPaletteSize = 127;

    // The chart built from the data as drawn last (for tests: titles, axes, series).
    QChart *shownChart() const;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    // scale: device pixels per chart pixel of the output, for the resolution of hatching.
    static QChart *buildChart(const ChartData &data, bool colour, QSizeF layoutSize, qreal scale);
    // Draws the chart laid out at the logical size, scaled into the target.
    void render(QPainter &painter, const QRectF &target, QSizeF logical, bool colour) const;
    QImage copyImage() const;
    void showChart();
    QSize outputSize() const;

    QChartView *m_view = nullptr;
    std::unique_ptr<ChartData> m_shown;  // the data as of the last ChartDraw 2
    QPrinter *m_printer = nullptr;
};

}  // namespace sendrel
