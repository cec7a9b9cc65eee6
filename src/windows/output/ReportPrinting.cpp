#include "windows/output/ReportPrinting.h"

#include "base/SendrelError.h"
#include "graph/PrintOn.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPrinter>
#include <QStringList>

#include <algorithm>
#include <cmath>

namespace sendrel {

namespace {

constexpr double kSmallestPointSize = 5.0;
const QString kSource = QStringLiteral("frmReport");

QStringList linesOf(const QString &text)
{
    QString plain = text;
    plain.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    plain.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
    plain.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    QStringList lines = plain.split(QLatin1Char('\n'));
    // The file's closing line end makes no line of its own.
    if (lines.size() > 1 && lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

double widestLine(const QStringList &lines, const QFont &font, QPaintDevice *device)
{
    const QFontMetricsF metrics(font, device);
    double widest = 0;
    for (const QString &line : lines)
        widest = std::max(widest, metrics.horizontalAdvance(line));
    return widest;
}

QRectF pageRectOf(QPagedPaintDevice &device)
{
    return device.pageLayout().paintRectPixels(device.logicalDpiX());
}

double pointSizeFor(QPagedPaintDevice &device, const QString &text, const QFont &font)
{
    const double pageWidth = pageRectOf(device).width();
    double size = font.pointSizeF();
    const double widest = widestLine(linesOf(text), font, &device);
    if (widest > pageWidth && widest > 0) {
        // A tenth of a point at a time, downward, so that the widest line surely fits.
        size = std::floor(size * pageWidth / widest * 10.0) / 10.0;
        size = std::max(size, kSmallestPointSize);
    }
    return size;
}

void printText(QPagedPaintDevice &device, const QString &text, const QFont &font)
{
    QFont printFont = font;
    printFont.setPointSizeF(pointSizeFor(device, text, font));

    QPainter painter;
    if (!painter.begin(&device))
        throw SendrelError(ErrNo::PrinterError, kSource, QStringLiteral("Printer error"));
    painter.setFont(printFont);
    const QFontMetricsF metrics(printFont, &device);
    const QRectF page(QPointF(0, 0), pageRectOf(device).size());
    const double lineHeight = metrics.lineSpacing();
    const int linesPerPage = std::max(1, static_cast<int>(page.height() / lineHeight));

    const QStringList lines = linesOf(text);
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const int onPage = static_cast<int>(i % linesPerPage);
        if (i > 0 && onPage == 0 && !device.newPage()) {
            painter.end();
            throw SendrelError(ErrNo::PrinterError, kSource, QStringLiteral("Printer error: no new page"));
        }
        painter.drawText(QPointF(page.left(), page.top() + onPage * lineHeight + metrics.ascent()), lines.at(i));
    }
    painter.end();
}

}  // namespace

double ReportPrintPointSize(QPrinter &printer, const QString &text, const QFont &font)
{
    return pointSizeFor(printer, text, font);
}

void PrintReportText(QPrinter &printer, const QString &text, const QFont &font)
{
    PrintOn(
        printer, [&](QPagedPaintDevice &device) { printText(device, text, font); }, kSource);
}

}  // namespace sendrel
