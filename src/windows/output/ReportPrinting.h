#pragma once

#include <QFont>
#include <QString>

class QPrinter;

namespace sendrel {

// Prints report text on the printer's pages line by line in a fixed-pitch font, as the text
// file lays it out: no line is wrapped, and when the widest line would not fit between the
// margins the font is made smaller until it does, so that the columns stay in line.
// Fails (482, "Printer error") when the printer cannot be started. A print to a file writes the
// file whole (PrintOn): a failure names the file and the cause and leaves the earlier file as it was.
void PrintReportText(QPrinter &printer, const QString &text, const QFont &font);

// The point size at which the widest line of text fits the printer's page width.
double ReportPrintPointSize(QPrinter &printer, const QString &text, const QFont &font);

}  // namespace sendrel
