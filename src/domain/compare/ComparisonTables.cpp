#include "domain/compare/ComparisonTables.h"

#include "base/SendrelError.h"
#include "domain/standstock/ClassLayout.h"
#include "domain/standstock/StandStockData.h"
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
    return MakeTableColumn(QStringLiteral("year"), QStringLiteral("Year"), QString(), -1, QStringLiteral("The calendar year of the runs' cycles."));
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
    for (const ComparedRun &r : comparison.runs)
        document.runs.append({r.run.runId, r.run.word(), r.description, QString()});
    return document;
}

// One run's cells of a year: class by species code, unrounded.
struct YearCells {
    bool present = false;
    QMap<qint64, QList<double>> bySpecies;   // a value per class
};

YearCells yearCells(RunStore &db, const ComparedRun &run, const ClassLayout &layout, StandStockData &data, qint32 year, bool density)
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
            values.append(density ? e.Density : e.MerchVol);
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
    for (int r = 0; r < n; ++r) {
        const QString id = comparison.runs[r].run.runId;
        TableColumn column = MakeTableColumn(QStringLiteral("value:") + id, id, measure.unit, measure.decimals,
                                             QStringLiteral("%1 of run %2.").arg(measure.title(), id));
        column.group = QStringLiteral("Values");
        table.columns.append(column);
    }
    for (int r = 0; r < n; ++r) {
        if (r != comparison.base) {
            TableColumn column = MakeTableColumn(QStringLiteral("difference:") + comparison.runs[r].run.runId, differenceHeading(comparison, r),
                                                 measure.unit, measure.decimals,
                                                 QStringLiteral("The run's value less the base's (%1), where both have the year.").arg(base));
            column.group = QStringLiteral("Run - base");
            column.label = comparison.runs[r].run.runId;
            table.columns.append(column);
        }
    }
    for (int r = 0; r < n; ++r) {
        if (r != comparison.base) {
            TableColumn column = MakeTableColumn(QStringLiteral("percent:") + comparison.runs[r].run.runId,
                                                 comparison.runs[r].run.runId + QStringLiteral(" % of ") + base, QStringLiteral("%"), 1,
                                                 QStringLiteral("100 x (run - base) / base; \"n/a\" where the base is 0."));
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
    for (const CompareMeasure &m : CompareMeasures())
        document.tables.append(SummaryComparisonTable(comparison, m));
    document.single = JoinedTable(document);
    return document;
}

TableDocument DifferenceTableDocument(RunStore &db, const Comparison &comparison, const ClassLayout &layout, qint32 year,
                                      bool density)
{
    if (!comparison.years.contains(year)) {
        throw SendrelError(ErrNo::InvalidCall, QStringLiteral("Comparison"),
                           QStringLiteral("None of the runs compared has the year %1.").arg(year));
    }
    StandStockData data(layout, db.NumSpecies);
    QList<YearCells> cells;
    QMap<qint64, bool> union_;
    for (const ComparedRun &r : comparison.runs) {
        cells.append(yearCells(db, r, layout, data, year, density));
        for (auto s = cells.last().bySpecies.keyBegin(); s != cells.last().bySpecies.keyEnd(); ++s)
            union_.insert(*s, true);
    }
    const QList<qint64> species = union_.keys();
    const QString unit = density ? QStringLiteral("stems/ha") : QStringLiteral("cu.m/ha");
    const int decimals = density ? 0 : 1;
    QList<TableColumn> columns{MakeTableColumn(QStringLiteral("dbh_class"), QStringLiteral("DBH class"), QStringLiteral("cm"), -1,
                                               QStringLiteral("The class midpoint; the last class by its lower limit, holding every larger tree."))};
    for (qint64 code : species) {
        const QString str = db.SpeciesStrCode(code);
        columns.append(MakeTableColumn(str.toLower(), str, unit, decimals,
                                       density ? QStringLiteral("Stems per hectare of the species in the class.")
                                               : QStringLiteral("Gross total volume per hectare of the species in the class.")));
    }
    columns.append(MakeTableColumn(QStringLiteral("total"), QStringLiteral("Total"), unit, decimals, QStringLiteral("The sum of the species.")));
    // The labels of the classes as the aggregation just wrote them into every species' cells.
    QStringList labels;
    for (int i = 0; i < layout.ClassCount(); ++i)
        labels.append(db.NumSpecies > 0 ? data.ReportEntry(i, 1).DBHClass.trimmed() : QString::number(layout.aClass[i].MidPoint));

    const QString what = density ? QStringLiteral("Stand table") : QStringLiteral("Stock table");
    TableDocument document = documentOf(comparison, QStringLiteral("%1 comparison %2: ").arg(what).arg(year)
                                                        + comparison.runIds().join(QStringLiteral(", ")));
    const auto valueOf = [&cells](int run, qint64 code, int i) {
        const auto found = cells[run].bySpecies.constFind(code);
        return found == cells[run].bySpecies.constEnd() ? 0.0 : found->at(i);
    };
    const int n = static_cast<int>(comparison.runs.size());
    for (int r = 0; r < n; ++r) {
        const QString id = comparison.runs[r].run.runId;
        DataTable t = classTable(id, QStringLiteral("%1 %2: %3").arg(what).arg(year).arg(id), columns, labels, species,
                                 !cells[r].present, [&](qint64 code, int i) { return valueOf(r, code, i); });
        if (!cells[r].present)
            t.notes.append(QStringLiteral("Run %1 has no cycle in %2.").arg(id).arg(year));
        document.tables.append(t);
    }
    for (int r = 0; r < n; ++r) {
        if (r == comparison.base)
            continue;
        const QString heading = differenceHeading(comparison, r);
        const bool blank = !cells[r].present || !cells[comparison.base].present;
        DataTable t = classTable(heading, QStringLiteral("%1 %2: %3").arg(what).arg(year).arg(heading), columns, labels, species,
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
    joined.columns.append(MakeTableColumn(QStringLiteral("table"), QStringLiteral("Table"), QString(), -1, QStringLiteral("The table the row belongs to.")));
    const bool sameUnits = std::all_of(document.tables.cbegin(), document.tables.cend(), [&](const DataTable &t) {
        for (qsizetype c = 0; c < t.columns.size(); ++c) {
            if (t.columns[c].unit != document.tables.first().columns.value(c).unit)
                return false;
        }
        return true;
    });
    for (TableColumn c : document.tables.first().columns) {
        if (!sameUnits)
            c.unit.clear();
        joined.columns.append(c);
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
