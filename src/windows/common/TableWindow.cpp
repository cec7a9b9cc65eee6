#include "windows/common/TableWindow.h"

#include <QPrinter>
#include <QTextDocument>
#include <QUrl>

namespace sendrel {

namespace {

// Points: the document is laid out on the printer's page in points.
constexpr qreal kPrintFontPoints = 7;
constexpr qreal kChartPrintWidth = 720;

}  // namespace

void PrintTablesAndChart(QPrinter &printer, const QString &html, const QImage &chart)
{
    QTextDocument document;
    QFont font = document.defaultFont();
    font.setPointSizeF(kPrintFontPoints);
    document.setDefaultFont(font);
    document.setPageSize(printer.pageLayout().paintRect(QPageLayout::Point).size());
    document.addResource(QTextDocument::ImageResource, QUrl(QStringLiteral("chart.png")), chart);
    QString withChart = html;
    withChart.replace(QStringLiteral("</body>"),
                      QStringLiteral("<p style=\"page-break-before: always\"><img src=\"chart.png\" width=\"%1\"></p></body>").arg(kChartPrintWidth));
    document.setHtml(withChart);
    document.print(&printer);
}

}  // namespace sendrel
