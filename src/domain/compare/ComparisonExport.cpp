#include "domain/compare/ComparisonExport.h"

#include "domain/compare/ComparisonTables.h"
#include "domain/summary/StandSummaryTable.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace sendrel {

namespace {

QString headingOf(const TableColumn &c)
{
    return c.unit.isEmpty() ? c.heading : c.heading + QStringLiteral(" (") + c.unit + QLatin1Char(')');
}

QJsonValue jsonCell(const TableCell &cell)
{
    if (cell.isNull())
        return QJsonValue::Null;
    if (cell.typeId() == QMetaType::QString)
        return cell.toString();
    return cell.toDouble();
}

QJsonArray jsonRows(const DataTable &t, const QList<TableRow> &rows)
{
    QJsonArray array;
    for (const TableRow &row : rows) {
        QJsonObject object;
        for (qsizetype c = 0; c < t.columns.size() && c < row.size(); ++c)
            object.insert(t.columns[c].key, jsonCell(row[c]));
        array.append(object);
    }
    return array;
}

}  // namespace

QString CellText(const TableCell &cell, int decimals)
{
    if (cell.isNull())
        return QString();
    if (cell.typeId() == QMetaType::QString)
        return cell.toString();
    return SummaryCellText(cell.toDouble(), std::max(decimals, 0));
}

ExportTable ExportTableOf(const DataTable &table)
{
    ExportTable e;
    e.name = table.name;
    for (const TableColumn &c : table.columns)
        e.headers.append(headingOf(c));
    e.rows = table.rows + table.totals;
    return e;
}

QList<ExportTable> ExportSheetsOf(const TableDocument &document)
{
    QList<ExportTable> sheets;
    for (const DataTable &t : document.tables)
        sheets.append(ExportTableOf(t));
    return sheets;
}

ExportTable CsvTableOf(const TableDocument &document)
{
    return ExportTableOf(document.tables.size() == 1 ? document.tables.first() : JoinedTable(document));
}

QString DocumentText(const TableDocument &document)
{
    QString text = document.title + QLatin1Char('\n');
    for (const DataTable &t : document.tables) {
        QList<int> widths;
        for (qsizetype c = 0; c < t.columns.size(); ++c) {
            qsizetype w = std::max({t.columns[c].heading.size(), t.columns[c].unit.size(), qsizetype(5)});
            for (const QList<TableRow> *part : {&t.rows, &t.totals}) {
                for (const TableRow &row : *part)
                    w = std::max(w, CellText(row.value(c), t.columns[c].decimals).size());
            }
            widths.append(static_cast<int>(w) + 2);
        }
        QString headings, units;
        for (qsizetype c = 0; c < t.columns.size(); ++c) {
            headings += t.columns[c].heading.rightJustified(widths[c]);
            units += t.columns[c].unit.rightJustified(widths[c]);
        }
        text += QLatin1Char('\n') + t.title + QLatin1Char('\n') + headings + QLatin1Char('\n') + units + QLatin1Char('\n');
        for (const QList<TableRow> *part : {&t.rows, &t.totals}) {
            for (const TableRow &row : *part) {
                QString line;
                for (qsizetype c = 0; c < t.columns.size(); ++c)
                    line += CellText(row.value(c), t.columns[c].decimals).rightJustified(widths[c]);
                text += line + QLatin1Char('\n');
            }
        }
        for (const QString &note : t.notes)
            text += note + QLatin1Char('\n');
    }
    return text;
}

QByteArray DocumentJson(const TableDocument &document)
{
    QJsonArray runs;
    for (const TableSource &r : document.runs)
        runs.append(QJsonObject{{QStringLiteral("run_id"), r.runId}, {QStringLiteral("kind"), r.kind}, {QStringLiteral("description"), r.description}});
    QJsonArray tables;
    for (const DataTable &t : document.tables) {
        QJsonArray columns;
        for (const TableColumn &c : t.columns)
            columns.append(QJsonObject{{QStringLiteral("key"), c.key}, {QStringLiteral("heading"), c.heading}, {QStringLiteral("unit"), c.unit},
                                       {QStringLiteral("definition"), c.definition}});
        tables.append(QJsonObject{{QStringLiteral("name"), t.name},
                                  {QStringLiteral("title"), t.title},
                                  {QStringLiteral("columns"), columns},
                                  {QStringLiteral("rows"), jsonRows(t, t.rows)},
                                  {QStringLiteral("totals"), jsonRows(t, t.totals)},
                                  {QStringLiteral("notes"), QJsonArray::fromStringList(t.notes)}});
    }
    const QJsonObject root{{QStringLiteral("title"), document.title},
                           {QStringLiteral("units"), document.units},
                           {QStringLiteral("made"), document.made.toString(Qt::ISODate)},
                           {QStringLiteral("runs"), runs},
                           {QStringLiteral("tables"), tables}};
    return QJsonDocument(root).toJson(QJsonDocument::Indented);
}

QString DocumentHtml(const TableDocument &document)
{
    QString html = QStringLiteral("<html><body><h3>%1</h3>").arg(document.title.toHtmlEscaped());
    for (const DataTable &t : document.tables) {
        html += QStringLiteral("<h4>%1</h4><table border=\"1\" cellspacing=\"0\" cellpadding=\"2\"><tr>").arg(t.title.toHtmlEscaped());
        for (const TableColumn &c : t.columns)
            html += QStringLiteral("<th>%1<br>%2</th>").arg(c.heading.toHtmlEscaped(), c.unit.toHtmlEscaped());
        html += QStringLiteral("</tr>");
        for (const QList<TableRow> *part : {&t.rows, &t.totals}) {
            for (const TableRow &row : *part) {
                html += QStringLiteral("<tr>");
                for (qsizetype c = 0; c < t.columns.size(); ++c)
                    html += QStringLiteral("<td align=\"right\">%1</td>").arg(CellText(row.value(c), t.columns[c].decimals).toHtmlEscaped());
                html += QStringLiteral("</tr>");
            }
        }
        html += QStringLiteral("</table>");
        for (const QString &note : t.notes)
            html += QStringLiteral("<p>%1</p>").arg(note.toHtmlEscaped());
    }
    return html + QStringLiteral("</body></html>");
}

}  // namespace sendrel
