#pragma once

#include "domain/table/TableModel.h"

#include <QByteArray>
#include <QString>

namespace sendrel {

// The renderings of a table document. Numbers are written as TableNumber writes them wherever the
// form keeps them as numbers (CSV, JSON); text and print round them to their column's decimals.

// RFC 4180: UTF-8, CR LF line ends, one header row of "heading (unit)", then the rows and the
// totals. A field is quoted when it holds a comma, a quote, a CR or a LF; blanks at either end are
// kept as they are.
QByteArray CsvText(const DataTable &table);
// The document's one CSV table: its single table when it has one, else its only table.
const DataTable &CsvTable(const TableDocument &document);

// One object: title, program, made, units (the name and in words), methods, runs, the tables
// (columns with their definitions, rows as objects keyed by the columns' keys, totals, notes) and
// the definitions by key (name, unit, definition). Blank cells are null.
QByteArray JsonText(const TableDocument &document);

// Fixed columns, LF line ends: per table its title, a line of group titles where columns have a
// group, the headings, the units, the rows, and after a rule the totals, then the notes. Tables
// are parted by an empty line.
QString FixedText(const TableDocument &document);

// The tables as an HTML document for QTextDocument to print: the same rows as the text, a table
// element each, headings that break only after a slash.
QString HtmlText(const TableDocument &document);

// The columns of the tables that have a definition, each told once (by heading, unit and definition).
QList<TableColumn> DefinedColumns(const QList<DataTable> &tables);

// What a file says of itself, as a table of Section, Name, Unit and Definition: a row per defined
// column of the tables ("Column") and per statistic of tables of runs ("Statistic"), then the
// file's title, program and version, units, methods and the time it was made ("File"), then each
// run its numbers come from with its import date and description ("Run"). The Definitions sheet of a workbook and the CSV sidecar hold it.
DataTable DefinitionsTable(const TableDocument &document, const QList<DataTable> &tables);

// "Sendrel Version 3.03.0004".
QString ProgramText();

}  // namespace sendrel
