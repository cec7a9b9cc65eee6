#include "windows/common/TablePrinting.h"

#include <QPrinter>
#include <QTextDocument>
#include <QUrl>

namespace sendrel {

namespace {
// Below this a printed table is no longer read comfortably; a wider one runs off the page instead.
constexpr qreal kSmallestPoints = 4.5;
constexpr qreal kStepPoints = 0.5;
}  // namespace

void PrintTableHtml(QPrinter &printer, const QString &html, qreal fontPoints, const QList<QPair<QString, QImage>> &images)
{
    // Laid out in points on the printer's page.
    const QSizeF page = printer.pageLayout().paintRect(QPageLayout::Point).size();
    QTextDocument document;
    for (const auto &[name, image] : images)
        document.addResource(QTextDocument::ImageResource, QUrl(name), image);
    for (qreal points = fontPoints;; points -= kStepPoints) {
        QFont font = document.defaultFont();
        font.setPointSizeF(points);
        document.setDefaultFont(font);
        document.setPageSize(page);
        document.setHtml(html);
        if (document.idealWidth() <= page.width() || points - kStepPoints < kSmallestPoints)
            break;
    }
    document.print(&printer);
}

}  // namespace sendrel
