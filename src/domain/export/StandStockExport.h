#pragma once

#include "domain/export/TableExport.h"
#include "domain/standstock/StandStockReport.h"
#include "store/Run.h"

#include <QList>
#include <QString>

namespace sendrel {

class RunStore;
class ClassLayout;
class StandStockData;

// The stand or stock table of some years, as the report tables hold them.
//
// years: one table per block of the report (a workbook's sheet each, named by year and cycle):
// "DBH class (cm)" (the class midpoint, the report's first column), then the report's columns in
// its order, each with its unit: the species ("PW (SPH)"), "Other" from the twelfth species on,
// and "Total". One row per class.
//
// joined: every year in one table with one header row (the CSV form): "Year", "Cycle",
// "DBH class (cm)", then the union of the years' columns, species in order of first appearance
// through the years, "Other" and "Total" last. A species without a column of its own in a year
// (not found that year, or joined in its "Other") has an empty cell there.
struct StandStockExport {
    QList<ExportTable> years;
    ExportTable joined;
};

// Reads the blocks of the report tables written for the run, in block order. density: the stand
// table's numbers (stems per hectare), else the stock table's (gross total volume per hectare).
StandStockExport StandStockExportTables(RunStore &db, const QString &runId, bool density);

// What an export of a stand and stock window works on.
struct StandStockExportRequest {
    RunKey run;
    bool density = true;
    QList<SelectedCycle> cycles;   // the selected years, in the list's order
};

// Fills the report tables of the selected years as "View Reports" does, over the classes of
// layout, and reads them back, in one transaction: the numbers of the export are the numbers of
// the report. Asks nothing. Fails (SendrelError) when no year is selected, or naming the run when
// it is no longer in the database (then no table is touched).
StandStockExport CompileStandStockExport(RunStore &db, const StandStockExportRequest &request, const ClassLayout &layout,
                                         StandStockData &data);

// A workbook of the years (.xlsx) or the joined table (.csv), by the file's suffix.
void SaveStandStockExport(const StandStockExport &tables, const QString &path);

}  // namespace sendrel
