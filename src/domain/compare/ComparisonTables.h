#pragma once

#include "domain/compare/Comparison.h"
#include "domain/table/TableModel.h"

namespace sendrel {

class ClassLayout;
class RunStore;

// The text of a percent difference whose base is 0.
inline const QString kNotApplicable = QStringLiteral("n/a");

// The summary comparison of one measure: a row per year of the union; Year, each run's value,
// then for each run but the base its difference from the base ("R2 - R1") and its percent
// difference ("R2 % of R1", "n/a" where the base is 0). Blank where a run lacks the year.
DataTable SummaryComparisonTable(const Comparison &comparison, const CompareMeasure &measure);
// Every measure, a table each, in the order of CompareMeasures(); for CSV the tables joined.
TableDocument SummaryComparisonDocument(const Comparison &comparison);

// The difference stand (density) or stock (gross total volume) tables of one year over one class
// layout, as the stand and stock aggregation sums them (unrounded): for each run a table of
// diameter classes by species, then for each run but the base the table of run - base. Species
// columns: the union of the runs' species in the year, by species code; a "Total" column and a
// totals row. A run without the year has a table of blanks, and so has its difference. For CSV
// the tables joined.
TableDocument DifferenceTableDocument(RunStore &db, const Comparison &comparison, const ClassLayout &layout, qint32 year, bool density);

// Tables of one shape as one table, for a single CSV file: a "Table" column naming each row's
// table, then the first table's columns. Totals follow each table's rows. Where a column's unit
// differs by table (the summary comparison's runs) the "Table" column names it, and its heading has
// none; a percentage keeps its "%".
DataTable JoinedTable(const TableDocument &document);

}  // namespace sendrel
