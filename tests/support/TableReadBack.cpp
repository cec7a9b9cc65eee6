#include "support/TableReadBack.h"

#include <QProcess>
#include <QXmlStreamReader>

namespace sendrel::test {

QByteArray WorkbookPart(const QString &path, const QString &part)
{
    QProcess unzip;
    unzip.start(QStringLiteral("unzip"), {QStringLiteral("-p"), path, part});
    unzip.waitForFinished();
    return unzip.readAllStandardOutput();
}

QStringList WorkbookSheets(const QString &path)
{
    QStringList names;
    QXmlStreamReader xml(WorkbookPart(path, QStringLiteral("xl/workbook.xml")));
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == QLatin1String("sheet"))
            names.append(xml.attributes().value(QStringLiteral("name")).toString());
    }
    return names;
}

ReadBack ReadCsv(const QByteArray &bytes)
{
    const QString text = QString::fromUtf8(bytes);
    QList<QList<QVariant>> records;
    QList<QVariant> record;
    QString field;
    bool quoted = false;
    bool inQuotes = false;
    const auto endField = [&] {
        bool number = false;
        const double value = field.toDouble(&number);
        record.append(quoted ? QVariant(field) : field.isEmpty() ? QVariant() : number ? QVariant(value) : QVariant(field));
        field.clear();
        quoted = false;
    };
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (inQuotes) {
            if (c == QLatin1Char('"') && i + 1 < text.size() && text.at(i + 1) == QLatin1Char('"'))
                field += text.at(++i);
            else if (c == QLatin1Char('"'))
                inQuotes = false;
            else
                field += c;
        } else if (c == QLatin1Char('"')) {
            inQuotes = quoted = true;
        } else if (c == QLatin1Char(',')) {
            endField();
        } else if (c == QLatin1Char('\r') && i + 1 < text.size() && text.at(i + 1) == QLatin1Char('\n')) {
            endField();
            records.append(record);
            record.clear();
            ++i;
        } else {
            field += c;   // a bare CR or LF outside quotes stays in the field, and fails a comparison
        }
    }
    ReadBack back;
    if (records.isEmpty())
        return back;
    for (const QVariant &h : records.takeFirst())
        back.headers.append(h.toString());
    back.rows = records;
    return back;
}

ReadBack ReadXlsx(const QString &path, int sheetNumber)
{
    QStringList shared;
    QXmlStreamReader strings(WorkbookPart(path, QStringLiteral("xl/sharedStrings.xml")));
    while (!strings.atEnd()) {
        if (strings.readNext() == QXmlStreamReader::StartElement && strings.name() == QLatin1String("t"))
            shared.append(strings.readElementText());
    }
    ReadBack back;
    QXmlStreamReader sheet(WorkbookPart(path, QStringLiteral("xl/worksheets/sheet%1.xml").arg(sheetNumber)));
    int row = -1;
    int column = 0;
    bool text = false;
    while (!sheet.atEnd()) {
        if (sheet.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (sheet.name() == QLatin1String("c")) {
            const QString ref = sheet.attributes().value(QStringLiteral("r")).toString();   // "AB12"
            qsizetype i = 0;
            for (column = 0; i < ref.size() && ref.at(i).isLetter(); ++i)
                column = column * 26 + (ref.at(i).unicode() - 'A' + 1);
            --column;
            row = ref.mid(i).toInt() - 1;
            text = sheet.attributes().value(QStringLiteral("t")) == QLatin1String("s");
        } else if (sheet.name() == QLatin1String("v")) {
            const QString value = sheet.readElementText();
            const QVariant cell = text ? QVariant(shared.value(value.toInt())) : QVariant(value.toDouble());
            if (row == 0) {
                back.headers.resize(column + 1);
                back.headers[column] = cell.toString();
                continue;
            }
            if (back.rows.size() < row)
                back.rows.resize(row);
            back.rows[row - 1].resize(column + 1);
            back.rows[row - 1][column] = cell;
        }
    }
    return back;
}

QString Differs(const ReadBack &back, const DataTable &table)
{
    QStringList headings;
    for (const TableColumn &c : table.columns)
        headings.append(c.headingWithUnit());
    if (back.headers != headings)
        return QStringLiteral("headers %1, not %2").arg(back.headers.join(QLatin1Char('|')), headings.join(QLatin1Char('|')));
    const QList<TableRow> rows = table.rows + table.totals;
    if (back.rows.size() != rows.size())
        return QStringLiteral("%1 rows, not %2").arg(back.rows.size()).arg(rows.size());
    for (qsizetype r = 0; r < rows.size(); ++r) {
        for (qsizetype c = 0; c < table.columns.size(); ++c) {
            const TableCell want = rows[r].value(c);
            const QVariant got = back.rows[r].value(c);
            const bool same = want.isNull() ? got.isNull()
                              : IsNumberCell(want) ? got.typeId() == QMetaType::Double && got.toDouble() == TableValue(want.toDouble())
                                                   : got.typeId() == QMetaType::QString && got.toString() == want.toString();
            if (!same)
                return QStringLiteral("row %1, %2: %3, not %4").arg(r + 1).arg(headings[c], got.toString(), want.toString());
        }
    }
    return QString();
}

}  // namespace sendrel::test
