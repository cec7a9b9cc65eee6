#pragma once

#include <QString>

class QPrinter;

namespace sendrel {

class Graph;
class UserQuestions;

// "Print" of a chart window: the print dialog of the questions, with Print to File (PDF) offered
// as outputFile (the Work folder), then the chart on the printer chosen in the print style given
// (3 colour, 2 black and white). False when the user cancelled the dialog. A printer that cannot
// be started fails (482, "Printer error").
bool PrintChartThroughDialog(UserQuestions &questions, QPrinter &printer, Graph &chart, qint16 printStyle, const QString &outputFile);

// The PDF file a chart is offered to print into: the Work folder, the Run Id as a safe file
// name, the kind and what the chart shows ("SAMPLE_Standing_Stand_2020.pdf").
QString ChartPrintFile(const QString &workFolder, const QString &runId, const QString &kindWord, const QString &subject);

}  // namespace sendrel
