#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <optional>

namespace sendrel {

// The one shape of every table a user can export: the stand and stock tables, the composition,
// the summary and the comparison are built as a TableDocument and rendered from it to CSV, XLSX,
// JSON, fixed-column text and print. Report files whose layout is fixed keep their own writer.

// One column: what it holds, in which unit, and how it is worked out.
struct TableColumn {
    QString key;  // the JSON name: "before_sph"
    QString heading;  // "Before SPH"
    QString unit;  // "stems/ha"; empty for a label column (Year, Species)
    int decimals = -1;  // places in text and print; -1 for a label column written as it is
    QString definition;  // the formula in words, for the definitions a file carries
    QString group;  // text and print: the title over this column and its neighbours of the same group
    QString label;  // text and print: the heading under a group's title ("SPH"); the heading when empty

    // "Before SPH (stems/ha)", or the heading alone without a unit.
    QString headingWithUnit() const;
    // What text and print show in the heading row: the label, else the heading.
    QString shortHeading() const;
};

// A column by its parts; the group and label stay empty.
TableColumn MakeTableColumn(const QString &key, const QString &heading, const QString &unit = QString(), int decimals = -1,
                            const QString &definition = QString());

// A cell is a number (a double), a text (a QString) or blank (a null QVariant).
using TableCell = QVariant;
using TableRow = QList<TableCell>;

struct DataTable {
    QString name;  // a workbook's sheet name, the table's key in JSON
    QString title;  // the line above the table in text and print
    QList<TableColumn> columns;
    QList<TableRow> rows;
    QList<TableRow> totals;  // rows after the body, set apart in text and print
    QStringList notes;  // lines after the table

    // The column of a key; -1 when there is none.
    qsizetype columnOf(const QString &key) const;
};

// A run a file's numbers come from.
struct TableSource {
    QString runId;
    QString kind;  // "Standing", "Harvested"
    QString description;
    QString imported;  // the import date and time as the run database keeps them
};

// Something the file says of how its numbers were made: {"SDI method", "Reineke's ..."}.
struct TableFact {
    QString name;
    QString text;
};

// What a file holds and says of itself.
struct TableDocument {
    QString title;
    QList<DataTable> tables;
    QList<TableSource> runs;
    QString units = QStringLiteral("metric");  // "metric" or "imperial" (UnitSystemName)
    QList<TableFact> facts;  // methods the definitions name, in order
    // What each table measures where its columns are runs side by side (the comparison's): the
    // table's title as heading, its unit and formula, defined beside the columns.
    QList<TableColumn> statistics;
    QDateTime made;  // SOURCE_DATE_EPOCH's time when it is set
    // The one table of a CSV file when it is not the document's only table (stand and stock: the
    // years joined with Year and Cycle columns); without columns, the only table is written.
    DataTable single;
};

// The forms a document is written in: fixed-column text, CSV, a workbook, JSON.
enum class TableFormat { Txt, Csv, Xlsx, Json };

// "txt", "csv", "xlsx", "json"; and back (nullopt for any other name, case ignored).
QString TableFormatName(TableFormat format);
std::optional<TableFormat> TableFormatNamed(const QString &name);

// A number as every table file writes it: at most 10 significant digits, a dot whatever the
// locale, no exponent and no thousands separators ("0.35232375", "1234567.5", "-3", "0").
QString TableNumber(double value);
// The number such a text reads back as: what a workbook and JSON store.
double TableValue(double value);
// A cell as text and print show it: a number with the column's decimals (no "-0.0"), a text as it is.
QString TableCellText(const TableCell &cell, int decimals);
bool IsNumberCell(const TableCell &cell);

// The time a file says it was made: SOURCE_DATE_EPOCH's when it is set, else now.
QDateTime TableMadeNow();

}  // namespace sendrel
