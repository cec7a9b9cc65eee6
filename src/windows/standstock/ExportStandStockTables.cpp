#include "windows/standstock/ExportStandStockTables.h"

#include "app/TreeModel.h"
#include "base/SendrelError.h"
#include "base/UserQuestions.h"
#include "domain/standstock/StandStockDocument.h"
#include "domain/table/TableFile.h"
#include "windows/common/ExportStatus.h"
#include "windows/common/ReportWindowHost.h"
#include "windows/standstock/ViewStandStockReport.h"

#include <QListWidget>

namespace sendrel {

void ExportStandStockTables(TreeModel &tm, const RunKey &run, bool density, const QListWidget &lstCycles, const ClassLayout &layout,
                            StandStockData &data, const std::function<void(int pointer)> &setMousePointer)
{
    const auto pointer = [&](int p) {
        if (setMousePointer)
            setMousePointer(p);
    };
    try {
        const QList<SelectedCycle> cycles = SelectedCycles(lstCycles);
        if (cycles.isEmpty()) {
            tm.questions.ShowInfoMessage(QStringLiteral("No Cycles Are Selected"));
            return;
        }
        const QString what = density ? QStringLiteral("Stand") : QStringLiteral("Stock");
        const QString path = tm.questions.saveFile(
            ExportFileRequest(QStringLiteral("Export %1 Table").arg(what), tm.ReportFolder(), ExportFileStem(run, what)));
        if (path.isEmpty())
            return;
        pointer(kPointerHourglass);
        ExportFormatOf(path);  // a name the export cannot take fails before any work
        SaveExport(CompileStandStockDocument(tm.db, {run, density, cycles, UnitSystemOfSetting(tm.settings.Units)}, layout, data), path,
                   tm.settings.CsvDefinitions);
        ShowExportedPath(&lstCycles, path);
    } catch (const SendrelError &e) {
        pointer(kPointerDefault);
        tm.questions.ShowErrorMessage(e.description());
    }
    pointer(kPointerDefault);
}

}  // namespace sendrel
