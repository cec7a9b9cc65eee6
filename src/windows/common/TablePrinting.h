#pragma once

#include <QImage>
#include <QList>
#include <QPair>
#include <QString>

class QPrinter;

namespace sendrel {

// Prints the HTML of a table document (HtmlText) on the printer's pages. The font starts at
// fontPoints and is made smaller, down to a floor, until the widest table fits the page's width,
// so that no heading is broken inside a word. images: resources the HTML names ("chart.png").
void PrintTableHtml(QPrinter &printer, const QString &html, qreal fontPoints, const QList<QPair<QString, QImage>> &images = {});

}  // namespace sendrel
