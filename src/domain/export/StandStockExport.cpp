#include "domain/export/StandStockExport.h"

#include "base/Numbers.h"
#include "base/SendrelError.h"
#include "domain/output/ReportTables.h"
#include "domain/standstock/StandStockData.h"
#include "domain/standstock/StandStockTables.h"
#include "store/RunStore.h"

namespace sendrel {

namespace {

const QString kSource = QStringLiteral("Export");
constexpr int kColumnGroups = 12;   // Sp1 to Sp12

// A report heading as an export's column: "Other:" and "Totals:" lose their colon.
QString columnName(const QString &heading)
{
    if (heading == QLatin1String("Totals:"))
        return QStringLiteral("Total");
    if (heading == QLatin1String("Other:"))
        return QStringLiteral("Other");
    return heading;
}

bool isSpecies(const QString &column)
{
    return column != QLatin1String("Other") && column != QLatin1String("Total");
}

QString withUnit(const QString &column, bool density)
{
    return column + (density ? QStringLiteral(" (SPH)") : QStringLiteral(" (cu.m/ha)"));
}

// One block as read: its columns and rows of numbers.
struct Block {
    qint64 id = 0;
    qint64 year = 0;
    qint64 cycle = 0;
    QStringList columns;          // without units
    QList<QList<double>> rows;    // midpoint, then one value per column
};

}  // namespace

StandStockExport StandStockExportTables(RunStore &db, const QString &runId, bool density)
{
    Statement headers(db.DBEngine,
                      QStringLiteral("SELECT Report_Id, Cycle_Year, Cycle_Num FROM Report_Header WHERE Run_Id = ?1 ORDER BY Report_Id"));
    headers.bind(1, runId);
    QList<Block> blocks;
    while (headers.next())
        blocks.append({headers.integer(0), headers.integer(1), headers.integer(2), {}, {}});

    Statement details(db.DBEngine, QStringLiteral("SELECT * FROM Report_Detail WHERE Report_id = ?1 ORDER BY DBH_MinDia"));
    const QString valuePattern = density ? QStringLiteral("Sp%1_Density") : QStringLiteral("Sp%1_MerchVol");
    for (Block &block : blocks) {
        Recordset rows = details.bind(1, block.id).fetchAll();
        // The headings stand in the first row, as the report reads them.
        for (int n = 1; !rows.Eof() && n <= kColumnGroups; ++n) {
            const QVariant heading = rows.Fields(QStringLiteral("Sp%1").arg(n));
            if (heading.isNull() || heading.toString().isEmpty())
                break;
            block.columns.append(columnName(heading.toString()));
        }
        for (; !rows.Eof(); rows.MoveNext()) {
            QList<double> row{rows.Fields(QStringLiteral("DBH_Midpoint")).toDouble()};
            for (qsizetype n = 1; n <= block.columns.size(); ++n)
                row.append(rows.Fields(valuePattern.arg(n)).toDouble());
            block.rows.append(row);
        }
    }

    StandStockExport tables;
    // The union of the columns: species as they first appear, then "Other" and "Total".
    QStringList species;
    bool anyOther = false;
    bool anyTotal = false;
    for (const Block &block : std::as_const(blocks)) {
        for (const QString &c : block.columns) {
            if (isSpecies(c) && !species.contains(c))
                species.append(c);
            anyOther = anyOther || c == QLatin1String("Other");
            anyTotal = anyTotal || c == QLatin1String("Total");
        }
    }
    QStringList joinedColumns = species;
    if (anyOther)
        joinedColumns.append(QStringLiteral("Other"));
    if (anyTotal)
        joinedColumns.append(QStringLiteral("Total"));

    const QString dbhClass = QStringLiteral("DBH class (cm)");
    tables.joined.name = density ? QStringLiteral("Stand table") : QStringLiteral("Stock table");
    tables.joined.headers = {QStringLiteral("Year"), QStringLiteral("Cycle"), dbhClass};
    for (const QString &c : std::as_const(joinedColumns))
        tables.joined.headers.append(withUnit(c, density));

    for (const Block &block : std::as_const(blocks)) {
        ExportTable year;
        year.name = QStringLiteral("%1 cycle %2").arg(block.year).arg(block.cycle);
        year.headers = {dbhClass};
        for (const QString &c : block.columns)
            year.headers.append(withUnit(c, density));
        for (const QList<double> &row : block.rows) {
            QList<QVariant> cells;
            for (double v : row)
                cells.append(v);
            year.rows.append(cells);

            QList<QVariant> joined{QVariant(static_cast<double>(block.year)), QVariant(static_cast<double>(block.cycle)), row.first()};
            for (const QString &c : std::as_const(joinedColumns)) {
                const qsizetype at = block.columns.indexOf(c);
                joined.append(at >= 0 ? QVariant(row.at(at + 1)) : QVariant());
            }
            tables.joined.rows.append(joined);
        }
        tables.years.append(year);
    }
    return tables;
}

StandStockExport CompileStandStockExport(RunStore &db, const StandStockExportRequest &request, const ClassLayout &layout,
                                         StandStockData &data)
{
    if (request.cycles.isEmpty())
        throw SendrelError(ErrNo::InvalidCall, kSource, QStringLiteral("No Cycles Are Selected"));
    // The run as of one moment, from the check that it is there to the last row read back:
    // another program's delete comes wholly before (the run is missing) or after. The scratch
    // tables are this connection's own.
    ReadSnapshot snapshot(db.DBEngine);
    RequireRun(db, request.run);
    ClearReportTables(db, false);
    StandStockTableWriter writer(db);
    const QString title = StandStockReportTitle(request.run.runId, request.density);
    qint16 reportId = 0;
    for (const SelectedCycle &selected : request.cycles) {
        data.CalcReport(db, request.run, selected.cycle);
        writer.write(data, layout, request.density, ++reportId, request.run.runId, selected.cycle,
                     ToInt16(ReadNumber(selected.yearText)), title, QString());
    }
    StandStockExport tables = StandStockExportTables(db, request.run.runId, request.density);
    snapshot.end();
    return tables;
}

void SaveStandStockExport(const StandStockExport &tables, const QString &path)
{
    SaveExport(path, tables.years, tables.joined);
}

}  // namespace sendrel
