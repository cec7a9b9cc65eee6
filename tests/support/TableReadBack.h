#pragma once

#include "domain/table/TableModel.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace sendrel::test {

// A part of a workbook, as unzip gives it ("xl/workbook.xml").
QByteArray WorkbookPart(const QString &path, const QString &part);
// The names of a workbook's sheets, in order.
QStringList WorkbookSheets(const QString &path);

// A table file read back as another program reads it: the header row, then each row's cells, a
// number (double), a text (QString) or blank (null).
struct ReadBack {
    QStringList headers;
    QList<QList<QVariant>> rows;
};
// RFC 4180, as a spreadsheet reads it: a quoted field is a text, an unquoted one that reads as a
// number a number.
ReadBack ReadCsv(const QByteArray &text);
// Sheet n (from 1) of a workbook: texts through the shared strings, numbers from their <v>.
ReadBack ReadXlsx(const QString &path, int sheet);

// "" when the file holds the table, headings with units and then its rows and totals, number
// for number as written (at most 10 significant digits); else the first difference.
QString Differs(const ReadBack &back, const DataTable &table);

}  // namespace sendrel::test
