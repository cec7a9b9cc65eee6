#include "windows/standstock/ViewStandStockReport.h"

#include "app/TreeModel.h"
#include "base/SendrelError.h"
#include "base/UserQuestions.h"
#include "domain/standstock/StandStockData.h"
#include "windows/output/frmReport.h"

#include <QApplication>
#include <QListWidget>

#include <exception>

namespace sendrel {

namespace {

const QString kCrLf = QStringLiteral("\r\n");

void reportFailed(UserQuestions &questions, long number, const QString &description)
{
    questions.message({QStringLiteral("Sendrel"), QStringLiteral("Report Failed: ") + QString::number(number) + kCrLf + description,
                       MsgIcon::None, MsgButtons::OK, Answer::OK});
}

}  // namespace

QList<SelectedCycle> SelectedCycles(const QListWidget &lstCycles)
{
    QList<SelectedCycle> cycles;
    for (int row = 0; row < lstCycles.count(); ++row) {
        const QListWidgetItem *item = lstCycles.item(row);
        if (item->isSelected())
            cycles.append({static_cast<qint16>(item->data(Qt::UserRole).toInt()), item->text()});
    }
    return cycles;
}

void ViewStandStockReport(TreeModel &tm, QWidget *window, const QString &This_RunId, const QString &This_SorH, QString &This_RunDesc,
                          bool density, const QListWidget &lstCycles, const ClassLayout &layout, StandStockData &data,
                          const std::function<void(int pointer)> &setMousePointer, const ShowReportViewerFn &showViewer)
{
    StandStockReportRequest request;
    request.This_RunId = This_RunId;
    request.This_SorH = This_SorH;
    request.This_RunDesc = This_RunDesc;
    request.density = density;
    request.cycles = SelectedCycles(lstCycles);
    request.SetMousePointer = setMousePointer;
    // The screen stays alive between two cycles of a long report.
    if (!data.LetEventsRun)
        data.LetEventsRun = [] { QApplication::processEvents(QEventLoop::ExcludeUserInputEvents); };

    tm.CurrentRunId = This_RunId;
    request.reportPath = ReportFilePath(tm.ReportFolder(), This_RunId, density ? ReportKind::Stand : ReportKind::Stock);
    CompiledStandStockReport report;
    try {
        report = CompileStandStockReport(tm.db, tm.questions, request, layout, data);
    } catch (const SendrelError &e) {
        tm.questions.message(ReportFailureMessage(e));
    }
    This_RunDesc = request.This_RunDesc;

    if (report.compiled) {
        try {
            frmReport viewer(tm.questions, window);
            viewer.ReportFile = report.ReportFile;
            viewer.ReportType = report.ReportType;
            viewer.ReportOrientation = report.ReportOrientation;
            if (showViewer)
                showViewer(viewer);
            else
                viewer.exec();
        } catch (const SendrelError &e) {
            reportFailed(tm.questions, e.number(), e.description());
        } catch (const std::exception &e) {
            reportFailed(tm.questions, ErrNo::InvalidCall, QString::fromLocal8Bit(e.what()));
        }
    }
    if (setMousePointer)
        setMousePointer(kReportPointerDefault);
}

}  // namespace sendrel
