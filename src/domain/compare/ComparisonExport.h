#pragma once

#include "domain/export/TableExport.h"
#include "domain/table/TableModel.h"

#include <QByteArray>
#include <QList>
#include <QString>

namespace sendrel {

// The comparison's documents in the forms of the exports that exist: each table as an export
// table (headings with their units, the totals after the rows), and the text, JSON and HTML a
// command or a print shows.

ExportTable ExportTableOf(const DataTable &table);
// A workbook's sheets: one per table.
QList<ExportTable> ExportSheetsOf(const TableDocument &document);
// Every table as CSV: one table, or the tables joined (see JoinedTable).
ExportTable CsvTableOf(const TableDocument &document);

// Fixed columns: the document's title, then each table with its title, headings, units, rows,
// totals and notes, a blank line between them. LF ends.
QString DocumentText(const TableDocument &document);
// {"title", "units", "made", "runs": [...], "tables": [{"name", "title", "columns": [{key, heading,
// unit}], "rows": [{key: value}], "totals": [...], "notes": [...]}]}; null for a blank cell.
QByteArray DocumentJson(const TableDocument &document);
// Every table as HTML, for printing.
QString DocumentHtml(const TableDocument &document);

// A cell as text and print show it: a number with its column's decimals, a text as it is.
QString CellText(const TableCell &cell, int decimals);

}  // namespace sendrel
