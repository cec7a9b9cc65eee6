#include "domain/standstock/StandStockDocument.h"

#include "base/SendrelError.h"
#include "domain/output/ReportTables.h"
#include "domain/standstock/ClassLayout.h"
#include "domain/standstock/StandStockData.h"
#include "domain/table/TableFile.h"
#include "store/RunStore.h"

#include <QHash>

namespace sendrel {

namespace {

const QString kSource = QStringLiteral("Export");

// One year as aggregated: per class its midpoint and per species code its number.
struct YearCells {
    qint16 cycle = 0;
    QString year;
    QList<double> midpoints;
    QList<QHash<qint16, double>> classes;
};

DataTable tableOf(const QList<TableColumn> &columns, const QList<qint16> &species, const YearCells &year, Quantity quantity,
                  UnitSystem units)
{
    DataTable table;
    table.name = QStringLiteral("%1 cycle %2").arg(year.year).arg(year.cycle);
    table.columns = columns;
    QList<double> speciesTotals(species.size(), 0.0);
    for (qsizetype i = 0; i < year.midpoints.size(); ++i) {
        TableRow row{year.midpoints.at(i)};
        double total = 0;
        for (qsizetype s = 0; s < species.size(); ++s) {
            const double v = ToUnits(year.classes.at(i).value(species.at(s), 0.0), quantity, units);
            row.append(v);
            total += v;
            speciesTotals[s] += v;
        }
        row.append(total);
        table.rows.append(row);
    }
    TableRow totals{QStringLiteral("Total")};
    double total = 0;
    for (double v : std::as_const(speciesTotals)) {
        totals.append(v);
        total += v;
    }
    totals.append(total);
    table.totals.append(totals);
    return table;
}

}  // namespace

TableDocument CompileStandStockDocument(RunStore &db, const StandStockExportRequest &request, const ClassLayout &layout,
                                        StandStockData &data)
{
    if (request.cycles.isEmpty())
        throw SendrelError(ErrNo::InvalidCall, kSource, QStringLiteral("No Cycles Are Selected"));
    // One moment of the run: another program's delete cannot leave half of it.
    ReadSnapshot snapshot(db.DBEngine);
    RequireRun(db, request.run);
    QList<YearCells> years;
    QList<qint16> species;  // of all years, as they first appear
    for (const SelectedCycle &selected : request.cycles) {
        data.CalcReport(db, request.run, selected.cycle);
        YearCells year{selected.cycle, selected.yearText, {}, {}};
        for (int j = 0; j < data.NextSpecies; ++j) {
            if (!species.contains(data.SpeciesType[j]))
                species.append(data.SpeciesType[j]);
        }
        for (int i = 0; i < layout.ClassCount(); ++i) {
            year.midpoints.append(layout.aClass[i].MidPoint);
            QHash<qint16, double> cells;
            for (int j = 0; j < data.NextSpecies; ++j) {
                const ReportEntryType &cell = data.ReportEntry(i, data.SpeciesType[j]);
                cells.insert(data.SpeciesType[j], request.density ? cell.Density : cell.MerchVol);
            }
            year.classes.append(cells);
        }
        years.append(year);
    }
    TableDocument document;
    document.runs = ReadTableSources(db, {request.run});
    snapshot.end();

    const Quantity quantity = request.density ? Quantity::Density : Quantity::VolumePerArea;
    const QString unit = UnitLabel(quantity, request.units);
    const QString conversion = ConversionWords(quantity, request.units);
    const QString what = request.density ? QStringLiteral("Stems per hectare (the sum of Trees_per_ha)")
                                         : QStringLiteral("Gross total volume per hectare (the sum of Total_Volume x Trees_per_ha)");
    const QString inClass =
        QStringLiteral(" of the tree records with a diameter in the class, from its lower bound up to below its upper bound; "
                       "the last class holds every larger tree.") +
        (conversion.isEmpty() ? QString() : QLatin1Char(' ') + conversion);
    QList<TableColumn> columns{
        MakeTableColumn(QStringLiteral("dbh_class"), QStringLiteral("DBH class"), QStringLiteral("cm"), -1,
                        QStringLiteral("The midpoint of the diameter class, in the units the class layout was given in; "
                                       "the Total row sums the classes."))};
    for (qint16 code : std::as_const(species)) {
        const QString name = db.SpeciesStrCode(code);
        columns.append(MakeTableColumn(name.toLower(), name, unit, 0, what + QStringLiteral(" of species ") + name + inClass));
    }
    columns.append(
        MakeTableColumn(QStringLiteral("total"), QStringLiteral("Total"), unit, 0, what + QStringLiteral(" of every species") + inClass));

    document.title = StandStockReportTitle(request.run.runId, request.density);
    document.units = UnitSystemName(request.units);
    document.made = TableMadeNow();
    DataTable &joined = document.single;
    joined.name = request.density ? QStringLiteral("Stand table") : QStringLiteral("Stock table");
    joined.title = document.title;
    joined.columns = QList<TableColumn>{MakeTableColumn(QStringLiteral("year"), QStringLiteral("Year"), QString(), -1,
                                                        QStringLiteral("The calendar year of the cycle.")),
                                        MakeTableColumn(QStringLiteral("cycle"), QStringLiteral("Cycle"), QString(), -1,
                                                        QStringLiteral("The cycle number of the run's list."))} +
                     columns;
    for (const YearCells &year : std::as_const(years)) {
        DataTable table = tableOf(columns, species, year, quantity, request.units);
        table.title = QStringLiteral("%1, year %2, cycle %3").arg(document.title, year.year).arg(year.cycle);
        const TableRow yearAndCycle{QVariant(year.year.toDouble()), QVariant(static_cast<double>(year.cycle))};
        for (const QList<TableRow> *rows : {&table.rows, &table.totals}) {
            for (const TableRow &row : *rows)
                joined.rows.append(yearAndCycle + row);
        }
        document.tables.append(table);
    }
    return document;
}

}  // namespace sendrel
