#include "standstock/StandStockTables.h"

#include "app/Numbers.h"
#include "app/ToolBox.h"
#include "app/TreeModel.h"
#include "standstock/ClassLayout.h"
#include "standstock/StandStockData.h"
#include "store/GameDB.h"

#include <QVector>

namespace sendrel {

namespace {

constexpr int kReportRows = 31;        // ReportRows: 0 to 30
constexpr int kSpecies2Pairs = 11;     // Species2 holds Str_Code1/Name1 to Str_Code11/Name11
constexpr int kMostSpeciesAlone = 11;     // from the twelfth species on, "Other:" joins the rest
constexpr int kOwnColumnsWithOther = 10;

// The species of one column position of a row; the cells themselves are read from the aggregation.
struct RowEntry {
    qint16 Species = -1;
};

// One class row of the report: its class and the species of each column position.
struct ReportRowType {
    QString DBHClass;
    double MinDia = 0;
    double MaxDia = 0;
    double MidPoint = 0;   // 0: a row without a class
    QVector<RowEntry> Entries;
};

// A column group of Report_Detail: heading, density, volume.
struct ColumnGroup {
    QString heading;
    double density;
    double volume;
};

void execute(TreeModel &tm, const QString &sql)
{
    tm.DBEngine.SQLString = sql;
    tm.DBEngine.Execute();
}

QVector<ReportRowType> fillRows(const StandStockData &data, int classCount, int numSpecies)
{
    QVector<ReportRowType> rows(kReportRows);
    for (ReportRowType &row : rows)
        row.Entries = QVector<RowEntry>(numSpecies + 1);
    for (int i = 0; i < classCount && i < kReportRows; ++i) {
        for (int j = 0; j < data.NextSpecies; ++j) {
            const qint16 c = data.SpeciesType[j];
            rows[i].Entries[j].Species = c;
            if (j == 0) {
                const ReportEntryType &cell = data.ReportEntry(i, c);
                rows[i].DBHClass = cell.DBHClass;
                rows[i].MinDia = cell.MinDia;
                rows[i].MaxDia = cell.MaxDia;
                rows[i].MidPoint = cell.MidPoint;
            }
        }
    }
    return rows;
}

void writeSpecies2(TreeModel &tm, const ReportRowType &firstRow, int numSpecies, qint16 ReportId)
{
    QString columns = QStringLiteral("INSERT INTO Species2 (Report_id");
    QString values = QStringLiteral(" VALUES (") + QString::number(ReportId);
    for (int j = 0; j <= numSpecies - 1 && j <= kSpecies2Pairs - 1; ++j) {
        const QString n = QString::number(j + 1);
        columns += QStringLiteral(",Str_Code") + n + QStringLiteral(", Name") + n;
        Recordset &species = tm.SpeciesRS;
        species.MoveFirst();
        species.Find(QStringLiteral("Num_Code = ") + QString::number(firstRow.Entries[j].Species));
        // A code the species table lacks, as -1 for a position without species, takes its first row.
        if (species.Eof())
            species.MoveFirst();
        values += QStringLiteral(",'") + QuoteSQL(species.Fields(QStringLiteral("Str_Code")).toString()) + QStringLiteral("', '")
                  + QuoteSQL(species.Fields(QStringLiteral("Name")).toString()) + QLatin1Char('\'');
    }
    values += QLatin1Char(')');
    execute(tm, columns + QStringLiteral(") ") + values);
}

// The column groups of class i: the species of their own, "Other:" from the twelfth species on,
// and "Totals:".
QVector<ColumnGroup> columnGroups(TreeModel &tm, const StandStockData &data, const ReportRowType &row, int i)
{
    const int found = data.NextSpecies;
    const bool withOther = found > kMostSpeciesAlone;
    const int own = withOther ? kOwnColumnsWithOther : found;

    QVector<ColumnGroup> groups;
    double roundedDensity = 0;
    double roundedVolume = 0;
    for (int j = 0; j < own; ++j) {
        const ReportEntryType &cell = data.ReportEntry(i, row.Entries[j].Species);
        groups.append({SpeciesStrCode(tm, cell.Species), cell.Density, cell.MerchVol});
        roundedDensity += IntegerPart(cell.Density + 0.5);
        roundedVolume += IntegerPart(cell.MerchVol + 0.5);
    }
    const ReportEntryType &totals = data.ClassTotals[i];
    if (withOther)
        groups.append({QStringLiteral("Other:"), totals.Density - roundedDensity, totals.MerchVol - roundedVolume});
    groups.append({QStringLiteral("Totals:"), totals.Density, totals.MerchVol});
    return groups;
}

void writeDetailRow(TreeModel &tm, const StandStockData &data, int classCount, const ReportRowType &row, int i,
                    qint16 ReportId)
{
    QString columns = QStringLiteral("Insert into Report_Detail(IsBucket,Report_id, DBH_MinDia, DBH_MaxDia, DBH_Midpoint, DBH_Class");
    QString values = QStringLiteral(" Values (")
                     + (i == classCount - 1 ? QStringLiteral("'YES',") : QStringLiteral("'NO',"))
                     + QString::number(ReportId) + QLatin1Char(',') + DefaultText(row.MinDia) + QLatin1Char(',')
                     + DefaultText(row.MaxDia) + QLatin1Char(',') + DefaultText(row.MidPoint) + QStringLiteral(",'")
                     + QuoteSQL(row.DBHClass) + QLatin1Char('\'');
    const QVector<ColumnGroup> groups = columnGroups(tm, data, row, i);
    for (qsizetype g = 0; g < groups.size(); ++g) {
        const QString sp = QStringLiteral("Sp") + QString::number(g + 1);
        columns += QLatin1Char(',') + sp + QLatin1Char(',') + sp + QStringLiteral("_Density,") + sp + QStringLiteral("_MerchVol");
        values += QStringLiteral(",'") + QuoteSQL(groups[g].heading) + QStringLiteral("',") + PrintForm(groups[g].density)
                  + QLatin1Char(',') + PrintForm(groups[g].volume);
    }
    values += QLatin1Char(')');
    execute(tm, columns + QStringLiteral(") ") + values);
}

}  // namespace

void WriteStandStockTables(TreeModel &tm, const StandStockData &data, const ClassLayout &layout, bool density,
                           qint16 ReportId, const QString &RunId, qint16 Cycle, qint16 Year, const QString &title,
                           const QString &description)
{
    // NumSpecies as the aggregation was made with it.
    const int numSpecies = data.NumSpecies();
    // The classes that the aggregation walked: those of the last entry that passed.
    const int classCount = layout.ClassCount();
    const QVector<ReportRowType> rows = fillRows(data, classCount, numSpecies);

    writeSpecies2(tm, rows[0], numSpecies, ReportId);

    const QString reportType = density ? QStringLiteral("DENSITY") : QStringLiteral("MERCH_VOL");
    for (int i = 0; i < kReportRows; ++i) {
        if (rows[i].MidPoint != 0)
            writeDetailRow(tm, data, classCount, rows[i], i, ReportId);
    }

    execute(tm, QStringLiteral("INSERT INTO Report_Header (Report_ID,Run_ID,Report_Type,Num_Species,Cycle_Num ,Cycle_Year,Report_Title,[Desc]) VALUES (")
                    + QString::number(ReportId) + QStringLiteral(",'") + QuoteSQL(RunId) + QStringLiteral("','") + reportType
                    + QStringLiteral("',") + QString::number(data.NextSpecies) + QLatin1Char(',') + QString::number(Cycle)
                    + QLatin1Char(',') + QString::number(Year) + QStringLiteral(",'") + QuoteSQL(title) + QStringLiteral("','")
                    + QuoteSQL(description) + QStringLiteral("')"));
}

}  // namespace sendrel
