#include "windows/common/TableWindow.h"

#include "windows/common/TablePrinting.h"

namespace sendrel {

namespace {

// Points: the document is laid out on the printer's page in points.
constexpr qreal kPrintFontPoints = 7;
constexpr qreal kChartPrintWidth = 720;

}  // namespace

void PrintTablesAndChart(QPrinter &printer, const QString &html, const QImage &chart)
{
    QString withChart = html;
    withChart.replace(
        QStringLiteral("</body>"),
        QStringLiteral("<p style=\"page-break-before: always\"><img src=\"chart.png\" width=\"%1\"></p></body>").arg(kChartPrintWidth));
    PrintTableHtml(printer, withChart, kPrintFontPoints, {{QStringLiteral("chart.png"), chart}});
}

}  // namespace sendrel
