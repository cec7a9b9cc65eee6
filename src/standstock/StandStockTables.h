#pragma once

#include <QString>
#include <QtGlobal>

namespace sendrel {

struct TreeModel;
class ClassLayout;
class StandStockData;

// Writes one cycle's block of a stand table (density true) or stock table into the scratch
// tables: one Species2 row, one Report_Detail row per class, then the Report_Header row.
// data must hold the aggregation of that cycle, just made over the classes in use of layout.
// Species after the tenth are joined in "Other:" from the twelfth species on; the last column
// group is "Totals:". A refused statement stops it with the database's failure, the rows
// written so far remaining.
void WriteStandStockTables(TreeModel &tm, const StandStockData &data, const ClassLayout &layout, bool density,
                           qint16 ReportId, const QString &RunId, qint16 Cycle, qint16 Year, const QString &title,
                           const QString &description);

}  // namespace sendrel
