#include "windows/output/ChartPrinting.h"

#include "base/SafeFileName.h"
#include "base/UserQuestions.h"
#include "graph/Graph.h"

#include <QDir>
#include <QPrinter>

namespace sendrel {

bool PrintChartThroughDialog(UserQuestions &questions, QPrinter &printer, Graph &chart, qint16 printStyle, const QString &outputFile)
{
    PrintRequest request;
    request.title = QStringLiteral("Print Chart");
    request.outputFile = outputFile;
    request.landscape = true;
    request.printer = &printer;
    if (!questions.askPrint(request))
        return false;
    if (!request.outputFile.isEmpty())
        printer.setOutputFileName(request.outputFile);
    chart.ChartPrintStyle(printStyle);
    chart.setPrinter(&printer);
    chart.ChartDraw(5);
    chart.ChartDraw(2);
    return true;
}

QString ChartPrintFile(const QString &workFolder, const QString &runId, const QString &kindWord, const QString &subject)
{
    return QDir(workFolder)
        .filePath(SafeFileStem(runId) + QLatin1Char('_') + kindWord + QLatin1Char('_') + subject + QStringLiteral(".pdf"));
}

}  // namespace sendrel
