#pragma once

#include "store/DBEngine.h"

#include <QString>
#include <QtGlobal>

namespace sendrel {

class RunStore;
class ClassLayout;
class StandStockData;

// Writes the blocks of a stand table (density) or stock table into the scratch tables, one cycle
// at a time: one Species2 row, one Report_Detail row per class, then the Report_Header row. The
// statements are prepared once for the whole report; the caller holds the transaction.
class StandStockTableWriter {
public:
    explicit StandStockTableWriter(RunStore &db);

    // data must hold the aggregation of that cycle, just made over the classes in use of layout.
    // Species after the tenth are joined in "Other:" from the twelfth species on; the last column
    // group is "Totals:". A refused statement stops it with the database's failure, the rows
    // written so far remaining.
    void write(const StandStockData &data, const ClassLayout &layout, bool density, qint16 ReportId, const QString &RunId, qint16 Cycle,
               qint16 Year, const QString &title, const QString &description);

private:
    RunStore &m_db;
    Statement m_species2;
    Statement m_detail;
    Statement m_header;
};

}  // namespace sendrel
