#pragma once

#include <QString>

#include <functional>

class QPagedPaintDevice;
class QPrinter;

namespace sendrel {

// Prints what draw paints on the printer. A printer that prints to a PDF file (the print
// dialog's "Print to file") gets the file whole: painted in memory with the printer's page
// layout and resolution, then written under a name of its own and moved into place with every
// write checked (SaveWholeFile), so that a failure names the file and the cause and leaves the
// file that was there as it was. draw begins and ends its own painter.
void PrintOn(QPrinter &printer, const std::function<void(QPagedPaintDevice &device)> &draw, const QString &source);

}  // namespace sendrel
