#include "windows/common/TablePrinting.h"

#include <QPrinter>
#include <QTextDocument>
#include <QUrl>

#include <algorithm>

namespace sendrel {

namespace {
// Below this a printed table is no longer read comfortably; a wider one is broken inside its cells.
constexpr qreal kSmallestPoints = 4.5;
// Wide enough for any table to be laid out without a break.
constexpr qreal kUnboundedWidth = 100000;
}  // namespace

void PrintTableHtml(QPrinter &printer, const QString &html, qreal fontPoints, const QList<QPair<QString, QImage>> &images)
{
    // Laid out in points on the printer's page.
    const QSizeF page = printer.pageLayout().paintRect(QPageLayout::Point).size();
    QTextDocument document;
    for (const auto &[name, image] : images)
        document.addResource(QTextDocument::ImageResource, QUrl(name), image);
    const auto layOut = [&](qreal points, qreal width) {
        QFont font = document.defaultFont();
        font.setPointSizeF(points);
        document.setDefaultFont(font);
        document.setPageSize(QSizeF(width, page.height()));
        document.setHtml(html);
    };
    // A table narrower than the page keeps the font; a wider one gets the font that makes its
    // unbroken width fit, since the layout would otherwise break its headings inside words.
    layOut(fontPoints, kUnboundedWidth);
    const qreal natural = document.idealWidth();
    const qreal points = natural > page.width() ? std::max(kSmallestPoints, fontPoints * page.width() / natural) : fontPoints;
    layOut(points, page.width());
    document.print(&printer);
}

}  // namespace sendrel
