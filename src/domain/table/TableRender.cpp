#include "domain/table/TableRender.h"

#include "base/SendrelError.h"
#include "base/Version.h"
#include "domain/units/Units.h"

#include <QSet>

#include <algorithm>
#include <cmath>

namespace sendrel {

namespace {

QByteArray csvField(const QString &text)
{
    QByteArray bytes = text.toUtf8();
    if (bytes.contains(',') || bytes.contains('"') || bytes.contains('\r') || bytes.contains('\n')) {
        bytes.replace('"', "\"\"");
        bytes = '"' + bytes + '"';
    }
    return bytes;
}

QByteArray csvCell(const TableCell &cell)
{
    if (cell.isNull())
        return QByteArray();
    if (IsNumberCell(cell))
        return TableNumber(cell.toDouble()).toUtf8();
    return csvField(cell.toString());
}

QByteArray csvLine(const TableRow &row)
{
    QList<QByteArray> fields;
    for (const TableCell &cell : row)
        fields.append(csvCell(cell));
    return fields.join(',') + "\r\n";
}

QString jsonString(const QString &text)
{
    QString out = QStringLiteral("\"");
    for (const QChar c : text) {
        switch (c.unicode()) {
        case '"':
            out += QStringLiteral("\\\"");
            break;
        case '\\':
            out += QStringLiteral("\\\\");
            break;
        case '\n':
            out += QStringLiteral("\\n");
            break;
        case '\r':
            out += QStringLiteral("\\r");
            break;
        case '\t':
            out += QStringLiteral("\\t");
            break;
        default:
            if (c.unicode() < 0x20)
                out += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
            else
                out += c;
        }
    }
    return out + QLatin1Char('"');
}

QString jsonCell(const TableCell &cell)
{
    if (cell.isNull())
        return QStringLiteral("null");
    if (IsNumberCell(cell)) {
        // JSON has no NaN or infinity.
        const double v = cell.toDouble();
        return std::isfinite(v) ? TableNumber(v) : QStringLiteral("null");
    }
    return jsonString(cell.toString());
}

QString jsonRows(const QList<TableColumn> &columns, const QList<TableRow> &rows, const QString &indent)
{
    QStringList objects;
    for (const TableRow &row : rows) {
        QStringList members;
        for (qsizetype c = 0; c < columns.size(); ++c)
            members.append(jsonString(columns.at(c).key) + QStringLiteral(": ") + jsonCell(row.value(c)));
        objects.append(indent + QStringLiteral("  {") + members.join(QStringLiteral(", ")) + QLatin1Char('}'));
    }
    if (objects.isEmpty())
        return QStringLiteral("[]");
    return QStringLiteral("[\n") + objects.join(QStringLiteral(",\n")) + QLatin1Char('\n') + indent + QLatin1Char(']');
}

QString jsonList(const QStringList &texts)
{
    QStringList items;
    for (const QString &t : texts)
        items.append(jsonString(t));
    return QLatin1Char('[') + items.join(QStringLiteral(", ")) + QLatin1Char(']');
}

// The columns of one group: [first, end).
struct GroupSpan {
    qsizetype first;
    qsizetype end;
};

QList<GroupSpan> groupSpans(const QList<TableColumn> &columns)
{
    QList<GroupSpan> spans;
    for (qsizetype i = 0; i < columns.size();) {
        qsizetype end = i;
        while (end < columns.size() && columns.at(end).group == columns.at(i).group)
            ++end;
        spans.append({i, end});
        i = end;
    }
    return spans;
}

bool anyGroup(const QList<TableColumn> &columns)
{
    return std::any_of(columns.begin(), columns.end(), [](const TableColumn &c) { return !c.group.isEmpty(); });
}

bool anyUnit(const QList<TableColumn> &columns)
{
    return std::any_of(columns.begin(), columns.end(), [](const TableColumn &c) { return !c.unit.isEmpty(); });
}

// A cell on one line of fixed columns: a line end inside a text becomes a blank.
QString fixedCell(const TableCell &cell, int decimals)
{
    QString text = TableCellText(cell, decimals);
    if (!IsNumberCell(cell)) {
        text.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
        text.replace(QLatin1Char('\r'), QLatin1Char(' ')).replace(QLatin1Char('\n'), QLatin1Char(' '));
    }
    return text;
}

QString fixedTable(const DataTable &table, const QString &fallbackTitle)
{
    const QList<TableColumn> &columns = table.columns;
    // Each column as wide as its widest text, and two blanks before it.
    QList<qsizetype> widths;
    for (const TableColumn &c : columns)
        widths.append(std::max({c.shortHeading().size(), c.unit.size(), qsizetype(c.unit.isEmpty() ? 4 : 6)}));
    for (const QList<TableRow> *rows : {&table.rows, &table.totals}) {
        for (const TableRow &row : *rows) {
            for (qsizetype c = 0; c < columns.size(); ++c)
                widths[c] = std::max(widths[c], fixedCell(row.value(c), columns.at(c).decimals).size());
        }
    }
    for (qsizetype &w : widths)
        w += 2;
    const bool grouped = anyGroup(columns);
    QString groups;
    if (grouped) {
        for (const GroupSpan &g : groupSpans(columns)) {
            const QString title = columns.at(g.first).group;
            qsizetype span = 0;
            for (qsizetype c = g.first; c < g.end; ++c)
                span += widths[c];
            // A group's title stands centred over its columns in a rule of dashes; the columns
            // widen alike where the title needs more room.
            const QString label = title.isEmpty() ? QString() : QLatin1Char(' ') + title + QLatin1Char(' ');
            if (label.size() + 4 > span && !title.isEmpty()) {
                const qsizetype extra = label.size() + 4 - span;
                const qsizetype count = g.end - g.first;
                for (qsizetype c = g.first; c < g.end; ++c)
                    widths[c] += extra / count + (c - g.first < extra % count ? 1 : 0);
                span = label.size() + 4;
            }
            if (title.isEmpty()) {
                groups += QString(span, QLatin1Char(' '));
                continue;
            }
            const qsizetype left = (span - 2 - label.size()) / 2;
            groups +=
                QStringLiteral("  ") + QString(left, QLatin1Char('-')) + label + QString(span - 2 - left - label.size(), QLatin1Char('-'));
        }
    }
    QString headings, units;
    qsizetype total = 0;
    for (qsizetype c = 0; c < columns.size(); ++c) {
        headings += columns.at(c).shortHeading().rightJustified(widths[c]);
        units += columns.at(c).unit.rightJustified(widths[c]);
        total += widths[c];
    }
    const QString title = table.title.isEmpty() ? fallbackTitle : table.title;
    QString text;
    if (!title.isEmpty())
        text += title + QLatin1Char('\n');
    if (grouped)
        text += groups + QLatin1Char('\n');
    text += headings + QLatin1Char('\n');
    if (anyUnit(columns))
        text += units + QLatin1Char('\n');
    const auto line = [&](const TableRow &row) {
        QString l;
        for (qsizetype c = 0; c < columns.size(); ++c)
            l += fixedCell(row.value(c), columns.at(c).decimals).rightJustified(widths[c]);
        return l + QLatin1Char('\n');
    };
    for (const TableRow &row : table.rows)
        text += line(row);
    if (!table.totals.isEmpty()) {
        text += QString(total, QLatin1Char('-')) + QLatin1Char('\n');
        for (const TableRow &row : table.totals)
            text += line(row);
    }
    for (const QString &note : table.notes)
        text += note + QLatin1Char('\n');
    return text;
}

// A heading that breaks only after a slash: blanks that do not break, a zero-width space after
// each slash.
QString htmlHeading(const QString &text)
{
    return text.toHtmlEscaped().replace(QLatin1Char(' '), QStringLiteral("&nbsp;")).replace(QLatin1Char('/'), QStringLiteral("/&#8203;"));
}

QString htmlRows(const DataTable &table, const QList<TableRow> &rows, bool bold)
{
    QString html;
    for (const TableRow &row : rows) {
        html += QStringLiteral("<tr>");
        for (qsizetype c = 0; c < table.columns.size(); ++c) {
            const TableCell cell = row.value(c);
            const QString text = TableCellText(cell, table.columns.at(c).decimals).toHtmlEscaped();
            html += QStringLiteral("<td align=\"%1\">%2</td>")
                        .arg(IsNumberCell(cell) ? QStringLiteral("right") : QStringLiteral("left"),
                             bold ? QStringLiteral("<b>") + text + QStringLiteral("</b>") : text);
        }
        html += QStringLiteral("</tr>");
    }
    return html;
}

}  // namespace

QByteArray CsvText(const DataTable &table)
{
    TableRow header;
    for (const TableColumn &c : table.columns)
        header.append(c.headingWithUnit());
    QByteArray text = csvLine(header);
    for (const TableRow &row : table.rows)
        text += csvLine(row);
    for (const TableRow &row : table.totals)
        text += csvLine(row);
    return text;
}

const DataTable &CsvTable(const TableDocument &document)
{
    if (!document.single.columns.isEmpty())
        return document.single;
    if (document.tables.size() != 1)
        throw SendrelError(
            ErrNo::InvalidCall, QStringLiteral("Export"),
            QStringLiteral("%1 holds %2 tables, which a CSV file cannot hold.").arg(document.title).arg(document.tables.size()));
    return document.tables.first();
}

QList<TableColumn> DefinedColumns(const QList<DataTable> &tables)
{
    // A column is told once, however many tables (years, statistics) hold it alike.
    QList<TableColumn> defined;
    QSet<QString> told;
    for (const DataTable &table : tables) {
        for (const TableColumn &c : table.columns) {
            const QString which = c.heading + QLatin1Char('\n') + c.unit + QLatin1Char('\n') + c.definition;
            if (!c.definition.isEmpty() && !told.contains(which)) {
                told.insert(which);
                defined.append(c);
            }
        }
    }
    return defined;
}

QString ProgramText()
{
    return kProgramName + QLatin1Char(' ') + VersionText();
}

QString UnitsText(const TableDocument &document)
{
    const std::optional<UnitSystem> units = UnitSystemNamed(document.units);
    return units ? UnitsDescription(*units) : document.units;
}

QString MadeText(const TableDocument &document)
{
    return document.made.isValid() ? document.made.toUTC().toString(Qt::ISODate) : QString();
}

DataTable DefinitionsTable(const TableDocument &document, const QList<DataTable> &tables)
{
    DataTable sheet;
    sheet.name = QStringLiteral("Definitions");
    sheet.title = QStringLiteral("Definitions: ") + document.title;
    sheet.columns = {MakeTableColumn(QStringLiteral("section"), QStringLiteral("Section")),
                     MakeTableColumn(QStringLiteral("name"), QStringLiteral("Name")),
                     MakeTableColumn(QStringLiteral("unit"), QStringLiteral("Unit")),
                     MakeTableColumn(QStringLiteral("definition"), QStringLiteral("Definition"))};
    // A cell without text is blank, as a file reads it back.
    const auto cell = [](const QString &text) { return text.isEmpty() ? QVariant() : QVariant(text); };
    const QString column = QStringLiteral("Column");
    const QString file = QStringLiteral("File");
    for (const TableColumn &c : DefinedColumns(tables))
        sheet.rows.append({column, c.heading, cell(c.unit), c.definition});
    for (const TableColumn &c : document.statistics)
        sheet.rows.append({QStringLiteral("Statistic"), c.heading, cell(c.unit), c.definition});
    sheet.rows.append({file, QStringLiteral("Title"), QVariant(), cell(document.title)});
    sheet.rows.append({file, QStringLiteral("Program"), QVariant(), ProgramText()});
    sheet.rows.append({file, QStringLiteral("Units"), QVariant(), cell(UnitsText(document))});
    for (const TableFact &fact : document.facts)
        sheet.rows.append({file, fact.name, QVariant(), cell(fact.text)});
    sheet.rows.append({file, QStringLiteral("Made"), QVariant(), cell(MadeText(document))});
    for (const TableSource &run : document.runs) {
        QString about = QStringLiteral("Imported ") + run.imported;
        if (!run.description.isEmpty())
            about += QStringLiteral(". ") + run.description;
        sheet.rows.append({QStringLiteral("Run"), run.runId + QLatin1Char(':') + run.kind, QVariant(), about});
    }
    return sheet;
}

QByteArray JsonText(const TableDocument &document)
{
    // Written by hand so that the members keep their order, the rows' keys the columns'.
    QStringList runs;
    for (const TableSource &run : document.runs) {
        runs.append(QStringLiteral("    {\"run_id\": %1, \"kind\": %2, \"description\": %3, \"imported\": %4}")
                        .arg(jsonString(run.runId), jsonString(run.kind), jsonString(run.description), jsonString(run.imported)));
    }
    QStringList tables;
    for (const DataTable &table : document.tables) {
        QStringList columns;
        for (const TableColumn &c : table.columns) {
            columns.append(QStringLiteral("        {\"key\": %1, \"heading\": %2, \"unit\": %3, \"definition\": %4}")
                               .arg(jsonString(c.key), jsonString(c.heading), jsonString(c.unit), jsonString(c.definition)));
        }
        tables.append(QStringLiteral("    {\n      \"name\": %1,\n      \"title\": %2,\n      \"columns\": [\n%3\n      ],\n"
                                     "      \"rows\": %4,\n      \"totals\": %5,\n      \"notes\": %6\n    }")
                          .arg(jsonString(table.name), jsonString(table.title), columns.join(QStringLiteral(",\n")),
                               jsonRows(table.columns, table.rows, QStringLiteral("      ")),
                               jsonRows(table.columns, table.totals, QStringLiteral("      ")), jsonList(table.notes)));
    }
    QStringList facts;
    for (const TableFact &fact : document.facts)
        facts.append(QStringLiteral("    %1: %2").arg(jsonString(fact.name), jsonString(fact.text)));
    QString json =
        QStringLiteral("{\n  \"title\": %1,\n  \"program\": %2,\n  \"made\": %3,\n  \"units\": %4,\n  \"units_described\": %5,\n")
            .arg(jsonString(document.title), jsonString(ProgramText()),
                 document.made.isValid() ? jsonString(MadeText(document)) : QStringLiteral("null"), jsonString(document.units),
                 jsonString(UnitsText(document)));
    json +=
        QStringLiteral("  \"methods\": %1,\n  \"runs\": %2,\n  \"tables\": %3")
            .arg(facts.isEmpty() ? QStringLiteral("{}")
                                 : QStringLiteral("{\n") + facts.join(QStringLiteral(",\n")) + QStringLiteral("\n  }"),
                 runs.isEmpty() ? QStringLiteral("[]") : QStringLiteral("[\n") + runs.join(QStringLiteral(",\n")) + QStringLiteral("\n  ]"),
                 tables.isEmpty() ? QStringLiteral("[]")
                                  : QStringLiteral("[\n") + tables.join(QStringLiteral(",\n")) + QStringLiteral("\n  ]"));
    // By key, for a reader that looks a column up: its name, unit and formula in words. Where two
    // tables give one key different meanings, each table's columns carry their own.
    QStringList members;
    QSet<QString> keys;
    DataTable statistics;
    statistics.columns = document.statistics;
    for (const TableColumn &c : DefinedColumns(document.tables + QList<DataTable>{statistics})) {
        if (keys.contains(c.key))
            continue;
        keys.insert(c.key);
        members.append(QStringLiteral("    %1: {\"name\": %2, \"unit\": %3, \"definition\": %4}")
                           .arg(jsonString(c.key), jsonString(c.heading), jsonString(c.unit), jsonString(c.definition)));
    }
    json +=
        QStringLiteral(",\n  \"definitions\": ") +
        (members.isEmpty() ? QStringLiteral("{}") : QStringLiteral("{\n") + members.join(QStringLiteral(",\n")) + QStringLiteral("\n  }"));
    return (json + QStringLiteral("\n}\n")).toUtf8();
}

QString FixedText(const TableDocument &document)
{
    QStringList parts;
    for (const DataTable &table : document.tables)
        parts.append(fixedTable(table, document.tables.size() == 1 ? document.title : QString()));
    return parts.join(QLatin1Char('\n'));
}

QString HtmlText(const TableDocument &document)
{
    QString body;
    for (const DataTable &table : document.tables) {
        const QString title = table.title.isEmpty() && document.tables.size() == 1 ? document.title : table.title;
        if (!title.isEmpty())
            body += QStringLiteral("<h3>%1</h3>").arg(title.toHtmlEscaped());
        body += QStringLiteral("<table border=\"1\" cellspacing=\"0\" cellpadding=\"2\">");
        if (anyGroup(table.columns)) {
            body += QStringLiteral("<tr>");
            for (const GroupSpan &g : groupSpans(table.columns))
                body +=
                    QStringLiteral("<th colspan=\"%1\">%2</th>").arg(g.end - g.first).arg(table.columns.at(g.first).group.toHtmlEscaped());
            body += QStringLiteral("</tr>");
        }
        body += QStringLiteral("<tr>");
        for (const TableColumn &c : table.columns)
            body += QStringLiteral("<th>%1<br>%2</th>").arg(htmlHeading(c.shortHeading()), htmlHeading(c.unit));
        body +=
            QStringLiteral("</tr>") + htmlRows(table, table.rows, false) + htmlRows(table, table.totals, true) + QStringLiteral("</table>");
        for (const QString &note : table.notes)
            body += QStringLiteral("<p>%1</p>").arg(note.toHtmlEscaped());
    }
    return QStringLiteral("<html><body>") + body + QStringLiteral("</body></html>");
}

}  // namespace sendrel
