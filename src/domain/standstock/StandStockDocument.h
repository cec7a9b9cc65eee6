#pragma once

#include "domain/standstock/StandStockReport.h"
#include "domain/table/TableModel.h"
#include "domain/units/Units.h"
#include "store/Run.h"

#include <QList>

namespace sendrel {

class RunStore;
class ClassLayout;
class StandStockData;

// What an export of a stand and stock window works on.
struct StandStockExportRequest {
    RunKey run;
    bool density = true;
    QList<SelectedCycle> cycles;  // the selected years, in the list's order
    // The units of the cells; the diameter classes stay in the units of the layout (cm).
    UnitSystem units = UnitSystem::Metric;
};

// The stand table (stems per hectare) or stock table (gross total volume per hectare) of the
// selected years, aggregated as "View Reports" aggregates them, as one run stands at one moment.
//
// A table per year (a workbook's sheet each, named by year and cycle): "DBH class (cm)" (the class
// midpoint), a column per species, "Total", one row per class, and a totals row ("Total") of each
// species. The species columns are the same in every table: the species of all the selected years,
// in order of first appearance through the years as the report orders them; a species without
// trees in a year has 0 there. Every cell is the aggregation's unrounded number, and the totals are
// sums of those numbers (the text report's are sums of rounded cells).
//
// The single table (the CSV form): "Year", "Cycle", then the same columns, every year's rows and
// totals row one after another.
//
// Asks nothing. Fails (SendrelError) when no year is selected, or naming the run when it is not in
// the database.
TableDocument CompileStandStockDocument(RunStore &db, const StandStockExportRequest &request, const ClassLayout &layout,
                                        StandStockData &data);

}  // namespace sendrel
