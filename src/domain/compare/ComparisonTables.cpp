#include "domain/compare/ComparisonTables.h"

#include "base/SendrelError.h"
#include "domain/standstock/ClassLayout.h"
#include "domain/standstock/StandStockData.h"
#include "domain/summary/StandSummaryTable.h"
#include "domain/table/TableFile.h"
#include "store/RunStore.h"

#include <QMap>

#include <algorithm>

namespace sendrel {

namespace {

QVariant number(const std::optional<double> &v)
{
    return v ? QVariant(*v) : QVariant();
}

TableColumn yearColumn()
{
    return MakeTableColumn(QStringLiteral("year"), QStringLiteral("Year"), QString(), -1,
                           QStringLiteral("The calendar year of the runs' cycles."));
}

QString differenceHeading(const Comparison &c, int run)
{
    return c.runs.at(run).run.runId + QStringLiteral(" - ") + c.baseRun().run.runId;
}

TableDocument documentOf(const Comparison &comparison, const QString &title)
{
    TableDocument document;
    document.title = title;
    document.made = TableMadeNow();
    document.units = UnitSystemName(comparison.units);
    for (const ComparedRun &r : comparison.runs) {
        for (const RunInfo &source : r.sources)
            document.runs.append(TableSourceOf(source));
    }
    return document;
}

// One run's cells of a year: class by species code, unrounded.
struct YearCells {
    bool present = false;
    QMap<qint64, QList<double>> bySpecies;  // a value per class
};

YearCells yearCells(RunStore &db, const ComparedRun &run, const ClassLayout &layout, StandStockData &data, qint32 year, bool density,
                    UnitSystem units)
{
    YearCells cells;
    const auto row = run.byYear.constFind(year);
    if (row == run.byYear.constEnd())
        return cells;
    cells.present = true;
    data.CalcReport(db, run.run, static_cast<qint16>(row->cycle));
    for (int s = 0; s < data.NextSpecies; ++s) {
        const qint16 code = data.SpeciesType[s];
        QList<double> &values = cells.bySpecies[code];
        for (int i = 0; i < layout.ClassCount(); ++i) {
            const ReportEntryType &e = data.ReportEntry(i, code);
            values.append(density ? ToUnits(e.Density, Quantity::StemsPerArea, units)
                                  : ToUnits(e.MerchVol, Quantity::VolumePerArea, units));
        }
    }
    return cells;
}

// A class by species table with a Total column and a totals row; all blank for a run without
// the year.
template <typename Value>
DataTable classTable(const QString &name, const QString &title, const QList<TableColumn> &columns, const QStringList &labels,
                     const QList<qint64> &species, bool blank, Value value)
{
    const auto cell = [blank](double v) { return blank ? QVariant() : QVariant(v); };
    DataTable table;
    table.name = name;
    table.title = title;
    table.columns = columns;
    QList<double> speciesTotals(species.size(), 0.0);
    double grand = 0;
    for (qsizetype i = 0; i < labels.size(); ++i) {
        TableRow row{labels.at(i).toDouble()};
        double classTotal = 0;
        for (qsizetype s = 0; s < species.size(); ++s) {
            const double v = blank ? 0.0 : value(species.at(s), static_cast<int>(i));
            row.append(cell(v));
            classTotal += v;
            speciesTotals[s] += v;
            grand += v;
        }
        row.append(cell(classTotal));
        table.rows.append(row);
    }
    TableRow totals{QStringLiteral("Total")};
    for (double t : std::as_const(speciesTotals))
        totals.append(cell(t));
    totals.append(cell(grand));
    table.totals.append(totals);
    return table;
}

}  // namespace

DataTable SummaryComparisonTable(const Comparison &comparison, const CompareMeasure &measure)
{
    DataTable table;
    table.name = measure.group + QLatin1Char(' ') + measure.name;
    table.title = measure.title() + QStringLiteral(" (") + measure.unit + QLatin1Char(')');
    table.columns.append(yearColumn());
    const int n = static_cast<int>(comparison.runs.size());
    const QString base = comparison.baseRun().run.runId;
    // The columns are runs; what they measure is the table's statistic, defined once by its name.
    for (int r = 0; r < n; ++r) {
        const QString id = comparison.runs[r].run.runId;
        TableColumn column = MakeTableColumn(QStringLiteral("value:") + id, id, measure.unit, measure.decimals,
                                             QStringLiteral("Run %1's value of the table's statistic, in its unit; blank where the run "
                                                            "has no cycle in the year.")
                                                 .arg(id));
        column.group = QStringLiteral("Values");
        table.columns.append(column);
    }
    for (int r = 0; r < n; ++r) {
        if (r != comparison.base) {
            TableColumn column = MakeTableColumn(QStringLiteral("difference:") + comparison.runs[r].run.runId,
                                                 differenceHeading(comparison, r), measure.unit, measure.decimals,
                                                 QStringLiteral("Run %1's value of the table's statistic less the base %2's, in its unit, "
                                                                "where both have the year; blank otherwise.")
                                                     .arg(comparison.runs[r].run.runId, base));
            column.group = QStringLiteral("Run - base");
            column.label = comparison.runs[r].run.runId;
            table.columns.append(column);
        }
    }
    for (int r = 0; r < n; ++r) {
        if (r != comparison.base) {
            TableColumn column = MakeTableColumn(QStringLiteral("percent:") + comparison.runs[r].run.runId,
                                                 comparison.runs[r].run.runId + QStringLiteral(" % of ") + base, QStringLiteral("%"), 1,
                                                 QStringLiteral("Percent difference: 100 x (run - base) / base of the table's statistic, "
                                                                "worked out from the stored metric values, so the same in metric and "
                                                                "imperial units; \"n/a\" where the base is 0, blank where either run "
                                                                "lacks the year."));
            column.group = QStringLiteral("Percent difference");
            column.label = comparison.runs[r].run.runId;
            table.columns.append(column);
        }
    }
    for (const qint32 year : comparison.years) {
        TableRow values{year}, differences, percents;
        for (int r = 0; r < n; ++r) {
            const CompareCell cell = CompareValue(comparison, measure, r, year);
            values.append(number(cell.value));
            if (r == comparison.base)
                continue;
            differences.append(number(cell.difference));
            percents.append(cell.baseIsZero ? QVariant(kNotApplicable) : number(cell.percent));
        }
        table.rows.append(values + differences + percents);
    }
    return table;
}

TableDocument SummaryComparisonDocument(const Comparison &comparison)
{
    TableDocument document = documentOf(comparison, QStringLiteral("Comparison: ") + comparison.runIds().join(QStringLiteral(", ")));
    for (const CompareMeasure &m : CompareMeasures(comparison.units)) {
        document.tables.append(SummaryComparisonTable(comparison, m));
        document.statistics.append(MakeTableColumn(m.key, m.title(), m.unit, m.decimals, m.definition));
    }
    document.facts.append({QStringLiteral("SDI method"), SdiMethodDescription(SdiMethod::Reineke, comparison.units)});
    document.single = JoinedTable(document);
    return document;
}

TableDocument DifferenceTableDocument(RunStore &db, const Comparison &comparison, const ClassLayout &layout, qint32 year, bool density)
{
    if (!comparison.years.contains(year)) {
        throw SendrelError(ErrNo::InvalidCall, QStringLiteral("Comparison"),
                           QStringLiteral("None of the runs compared has the year %1.").arg(year));
    }
    StandStockData data(layout, db.NumSpecies);
    QList<YearCells> cells;
    QMap<qint64, bool> union_;
    for (const ComparedRun &r : comparison.runs) {
        cells.append(yearCells(db, r, layout, data, year, density, comparison.units));
        for (auto s = cells.last().bySpecies.keyBegin(); s != cells.last().bySpecies.keyEnd(); ++s)
            union_.insert(*s, true);
    }
    const QList<qint64> species = union_.keys();
    const Quantity quantity = density ? Quantity::StemsPerArea : Quantity::VolumePerArea;
    const QString unit = UnitLabel(quantity, comparison.units);
    const QString conversion = ConversionWords(quantity, comparison.units);
    const int decimals = density ? 0 : 1;
    // The same columns for the runs' tables and, defined as run less base, for the differences.
    const auto columnsOf = [&](const QString &ofRuns) {
        const QString suffix = ofRuns + (conversion.isEmpty() ? QString() : QLatin1Char(' ') + conversion);
        QList<TableColumn> columns{
            MakeTableColumn(QStringLiteral("dbh_class"), QStringLiteral("DBH class"), QStringLiteral("cm"), -1,
                            QStringLiteral("The class midpoint, in the units the class layout was given in; the last class by "
                                           "its lower limit, holding every larger tree."))};
        for (qint64 code : species) {
            const QString str = db.SpeciesStrCode(code);
            columns.append(MakeTableColumn(str.toLower(), str, unit, decimals,
                                           (density ? QStringLiteral("Stems per hectare of the species in the class")
                                                    : QStringLiteral("Gross total volume per hectare of the species in the class")) +
                                               suffix));
        }
        columns.append(MakeTableColumn(QStringLiteral("total"), QStringLiteral("Total"), unit, decimals,
                                       QStringLiteral("The sum of the species") + suffix));
        return columns;
    };
    const QList<TableColumn> columns = columnsOf(QStringLiteral("."));
    const QList<TableColumn> differenceColumns =
        columnsOf(QStringLiteral(", the run's less the base %1's.").arg(comparison.baseRun().run.runId));
    // The labels of the classes as the aggregation just wrote them into every species' cells.
    QStringList labels;
    for (int i = 0; i < layout.ClassCount(); ++i)
        labels.append(db.NumSpecies > 0 ? data.ReportEntry(i, 1).DBHClass.trimmed() : QString::number(layout.aClass[i].MidPoint));

    const QString what = density ? QStringLiteral("Stand table") : QStringLiteral("Stock table");
    TableDocument document =
        documentOf(comparison, QStringLiteral("%1 comparison %2: ").arg(what).arg(year) + comparison.runIds().join(QStringLiteral(", ")));
    const auto valueOf = [&cells](int run, qint64 code, int i) {
        const auto found = cells[run].bySpecies.constFind(code);
        return found == cells[run].bySpecies.constEnd() ? 0.0 : found->at(i);
    };
    const int n = static_cast<int>(comparison.runs.size());
    for (int r = 0; r < n; ++r) {
        const QString id = comparison.runs[r].run.runId;
        DataTable t = classTable(id, QStringLiteral("%1 %2: %3").arg(what).arg(year).arg(id), columns, labels, species, !cells[r].present,
                                 [&](qint64 code, int i) { return valueOf(r, code, i); });
        if (!cells[r].present)
            t.notes.append(QStringLiteral("Run %1 has no cycle in %2.").arg(id).arg(year));
        document.tables.append(t);
    }
    for (int r = 0; r < n; ++r) {
        if (r == comparison.base)
            continue;
        const QString heading = differenceHeading(comparison, r);
        const bool blank = !cells[r].present || !cells[comparison.base].present;
        DataTable t = classTable(heading, QStringLiteral("%1 %2: %3").arg(what).arg(year).arg(heading), differenceColumns, labels, species,
                                 blank, [&](qint64 code, int i) { return valueOf(r, code, i) - valueOf(comparison.base, code, i); });
        document.tables.append(t);
    }
    document.single = JoinedTable(document);
    return document;
}

DataTable JoinedTable(const TableDocument &document)
{
    DataTable joined;
    joined.name = document.title;
    joined.title = document.title;
    if (document.tables.isEmpty())
        return joined;
    joined.columns.append(
        MakeTableColumn(QStringLiteral("table"), QStringLiteral("Table"), QString(), -1, QStringLiteral("The table the row belongs to.")));
    for (qsizetype c = 0; c < document.tables.first().columns.size(); ++c) {
        TableColumn column = document.tables.first().columns.at(c);
        const bool sameUnit = std::all_of(document.tables.cbegin(), document.tables.cend(),
                                          [&](const DataTable &t) { return t.columns.value(c).unit == column.unit; });
        if (!sameUnit)
            column.unit.clear();
        joined.columns.append(column);
    }
    for (const DataTable &t : document.tables) {
        for (const QList<TableRow> *part : {&t.rows, &t.totals}) {
            for (const TableRow &row : *part)
                joined.rows.append(TableRow{t.title} + row);
        }
    }
    return joined;
}

}  // namespace sendrel
