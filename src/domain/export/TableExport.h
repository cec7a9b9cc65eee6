#pragma once

#include "base/UserQuestions.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace sendrel {

// A table as the exports write it: one header row, whose texts carry their units ("DBH class
// (cm)", "FD (SPH)"), and rows whose cells are numbers (a double) or texts.
struct ExportTable {
    QString name;                   // the sheet's name in a workbook
    QStringList headers;
    QList<QList<QVariant>> rows;
};

// The file formats a table can be exported to.
enum class ExportFormat { Csv, Xlsx };

// RFC 4180 text: UTF-8, CR LF line ends, fields quoted where they hold a comma, a quote or a line
// end. Numbers with a dot as the decimal separator whatever the locale, no thousands separators
// and every digit that tells the double apart from its neighbours.
QByteArray CsvText(const ExportTable &table);
// A number as the exports write it: "1234567.5", "0.0001", "-3".
QString ExportNumber(double value);

// Writes one table as CSV, or the tables as one workbook with a sheet each (numbers stored as
// numbers, the header row frozen). The file is made under a name of its own beside the target and
// moved into place whole, so a failure leaves nothing half written; it keeps the permissions of the
// file it replaces, a new one those of any new file. Fails (SendrelError 75) naming the file when it
// cannot be written, also when it exists and may not be written.
void SaveCsv(const ExportTable &table, const QString &path);
void SaveXlsx(const QList<ExportTable> &tables, const QString &path);

// The format of a file by its suffix (".csv", ".xlsx"); fails on any other.
ExportFormat ExportFormatOf(const QString &path);

// An export by the file's suffix: a workbook with a sheet for each of sheets, or one CSV table
// (the same numbers in the one-header-row form of the caller's choice).
void SaveExport(const QString &path, const QList<ExportTable> &sheets, const ExportTable &csv);

// The save-file question of an "Export..." button: a workbook or CSV file, proposed as the stem
// with ".xlsx" in the folder.
FileRequest ExportFileRequest(const QString &title, const QString &folder, const QString &fileStem);

}  // namespace sendrel
