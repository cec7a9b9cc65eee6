#include "domain/table/TableModel.h"

#include "domain/output/ReportFile.h"

#include <cmath>

namespace sendrel {

namespace {
const QStringList kFormatNames = {QStringLiteral("txt"), QStringLiteral("csv"), QStringLiteral("xlsx"), QStringLiteral("json")};
// A double carries 15 to 17; ten keep every digit a forester measures and drop the noise of the
// last bits of a sum (0.35232375000000005).
constexpr int kSignificantDigits = 10;
}  // namespace

QString TableColumn::headingWithUnit() const
{
    return unit.isEmpty() ? heading : heading + QStringLiteral(" (") + unit + QLatin1Char(')');
}

QString TableColumn::shortHeading() const
{
    return label.isEmpty() ? heading : label;
}

TableColumn MakeTableColumn(const QString &key, const QString &heading, const QString &unit, int decimals, const QString &definition)
{
    TableColumn column;
    column.key = key;
    column.heading = heading;
    column.unit = unit;
    column.decimals = decimals;
    column.definition = definition;
    return column;
}

qsizetype DataTable::columnOf(const QString &key) const
{
    for (qsizetype c = 0; c < columns.size(); ++c) {
        if (columns.at(c).key == key)
            return c;
    }
    return -1;
}

QString TableFormatName(TableFormat format)
{
    return kFormatNames.at(static_cast<int>(format));
}

std::optional<TableFormat> TableFormatNamed(const QString &name)
{
    const qsizetype at = kFormatNames.indexOf(name.toLower());
    if (at < 0)
        return std::nullopt;
    return static_cast<TableFormat>(at);
}

double TableValue(double value)
{
    if (!std::isfinite(value) || value == 0.0)
        return value == 0.0 ? 0.0 : value;
    return QString::number(value, 'g', kSignificantDigits).toDouble();
}

QString TableNumber(double value)
{
    if (!std::isfinite(value))
        return std::isnan(value) ? QStringLiteral("NaN") : value > 0 ? QStringLiteral("Infinity") : QStringLiteral("-Infinity");
    const double rounded = TableValue(value);
    if (rounded == 0.0)
        return QStringLiteral("0");
    return QString::number(rounded, 'f', QLocale::FloatingPointShortest);
}

bool IsNumberCell(const TableCell &cell)
{
    const int type = cell.typeId();
    return type == QMetaType::Double || type == QMetaType::Int || type == QMetaType::LongLong;
}

QString TableCellText(const TableCell &cell, int decimals)
{
    if (cell.isNull())
        return QString();
    if (!IsNumberCell(cell))
        return cell.toString();
    if (decimals < 0)
        return TableNumber(cell.toDouble());
    QString text = QString::number(cell.toDouble(), 'f', decimals);
    // No "-0.0" for a value that rounds to nothing.
    if (text.startsWith(QLatin1Char('-')) && text.toDouble() == 0)
        text.remove(0, 1);
    return text;
}

QDateTime TableMadeNow()
{
    return ReportClockNow();
}

}  // namespace sendrel
