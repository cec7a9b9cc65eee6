#include "graph/PrintOn.h"

#include "domain/output/WholeFile.h"

#include <QBuffer>
#include <QPdfWriter>
#include <QPrinter>

namespace sendrel {

void PrintOn(QPrinter &printer, const std::function<void(QPagedPaintDevice &device)> &draw, const QString &source)
{
    const QString file = printer.outputFileName();
    if (printer.outputFormat() != QPrinter::PdfFormat || file.isEmpty()) {
        draw(printer);
        return;
    }
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter pdf(&buffer);
        pdf.setResolution(printer.resolution());
        pdf.setPageLayout(printer.pageLayout());
        pdf.setTitle(printer.docName());
        pdf.setCreator(printer.creator());
        draw(pdf);
    }
    SaveWholeFile(file, buffer.data(), source);
}

}  // namespace sendrel
