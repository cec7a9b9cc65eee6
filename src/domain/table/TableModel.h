#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace sendrel {

// The one shape of every table a user can export: the stand and stock tables, the composition,
// the summary and the comparison are built as a TableDocument and rendered from it to CSV, XLSX,
// JSON, fixed-column text and print. Report files whose layout is fixed keep their own writer.

// One column: what it holds, in which unit, and how it is worked out.
struct TableColumn {
    QString key;          // the JSON name: "before_sph"
    QString heading;      // "Before SPH"
    QString unit;         // "stems/ha"; empty for a label column (Year, Species)
    int decimals = -1;    // places in text and print; -1 for a label column written as it is
    QString definition;   // the formula in words, for the definitions a file carries

    // "Before SPH (stems/ha)", or the heading alone without a unit.
    QString headingWithUnit() const;
};

// A cell is a number (a double), a text (a QString) or blank (a null QVariant).
using TableCell = QVariant;
using TableRow = QList<TableCell>;

struct DataTable {
    QString name;            // a workbook's sheet name, the table's key in JSON
    QString title;           // the line above the table in text and print
    QList<TableColumn> columns;
    QList<TableRow> rows;
    QList<TableRow> totals;  // rows after the body, set apart in text and print
    QStringList notes;       // lines after the table
};

// A run a file's numbers come from.
struct TableSource {
    QString runId;
    QString kind;            // "Standing", "Harvested"
    QString description;
    QString imported;        // the import date as the run database keeps it
};

// What a file holds and says of itself.
struct TableDocument {
    QString title;
    QList<DataTable> tables;
    QList<TableSource> runs;
    QString units = QStringLiteral("metric");   // "metric" or "imperial"
    QDateTime made;                             // SOURCE_DATE_EPOCH's time when it is set
};

}  // namespace sendrel
