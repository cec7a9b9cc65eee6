#include "domain/standstock/StandStockTables.h"

#include "base/Numbers.h"
#include "domain/standstock/ClassLayout.h"
#include "domain/standstock/StandStockData.h"
#include "store/RunStore.h"

#include <QVector>

namespace sendrel {

namespace {

constexpr int kReportRows = 31;  // ReportRows: 0 to 30
constexpr int kSpecies2Pairs = 11;  // Species2 holds Str_Code1/Name1 to Str_Code11/Name11
constexpr int kMostSpeciesAlone = 11;  // from the twelfth species on, "Other:" joins the rest
constexpr int kOwnColumnsWithOther = 10;
constexpr int kColumnGroups = 12;  // Sp1 to Sp12

// The species of one column position of a row; the cells themselves are read from the aggregation.
struct RowEntry {
    qint16 Species = -1;
};

// One class row of the report: its class and the species of each column position.
struct ReportRowType {
    QString DBHClass;
    double MinDia = 0;
    double MaxDia = 0;
    double MidPoint = 0;  // 0: a row without a class
    QVector<RowEntry> Entries;
};

// A column group of Report_Detail: heading, density, volume.
struct ColumnGroup {
    QString heading;
    double density;
    double volume;
};

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

// The column groups of class i: the species of their own, "Other:" from the twelfth species on,
// and "Totals:".
QVector<ColumnGroup> columnGroups(const RunStore &db, const StandStockData &data, const ReportRowType &row, int i)
{
    const int found = data.NextSpecies;
    const bool withOther = found > kMostSpeciesAlone;
    const int own = withOther ? kOwnColumnsWithOther : found;

    QVector<ColumnGroup> groups;
    double roundedDensity = 0;
    double roundedVolume = 0;
    for (int j = 0; j < own; ++j) {
        const ReportEntryType &cell = data.ReportEntry(i, row.Entries[j].Species);
        groups.append({db.SpeciesStrCode(cell.Species), cell.Density, cell.MerchVol});
        roundedDensity += IntegerPart(cell.Density + 0.5);
        roundedVolume += IntegerPart(cell.MerchVol + 0.5);
    }
    const ReportEntryType &totals = data.ClassTotals[i];
    if (withOther)
        groups.append({QStringLiteral("Other:"), totals.Density - roundedDensity, totals.MerchVol - roundedVolume});
    groups.append({QStringLiteral("Totals:"), totals.Density, totals.MerchVol});
    return groups;
}

QString detailInsert()
{
    QString columns = QStringLiteral("INSERT INTO Report_Detail (IsBucket, Report_id, DBH_MinDia, DBH_MaxDia, DBH_Midpoint, DBH_Class");
    QString marks = QStringLiteral("?, ?, ?, ?, ?, ?");
    for (int n = 1; n <= kColumnGroups; ++n) {
        columns += QStringLiteral(", Sp%1, Sp%1_Density, Sp%1_MerchVol").arg(n);
        marks += QStringLiteral(", ?, ?, ?");
    }
    return columns + QStringLiteral(") VALUES (") + marks + QLatin1Char(')');
}

QString species2Insert()
{
    QString columns = QStringLiteral("INSERT INTO Species2 (Report_id");
    QString marks = QStringLiteral("?");
    for (int n = 1; n <= kSpecies2Pairs; ++n) {
        columns += QStringLiteral(", Str_Code%1, Name%1").arg(n);
        marks += QStringLiteral(", ?, ?");
    }
    return columns + QStringLiteral(") VALUES (") + marks + QLatin1Char(')');
}

}  // namespace

StandStockTableWriter::StandStockTableWriter(RunStore &db)
    : m_db(db), m_species2(db.DBEngine, species2Insert()), m_detail(db.DBEngine, detailInsert()),
      m_header(db.DBEngine, QStringLiteral("INSERT INTO Report_Header (Report_ID, Run_ID, Report_Type, Num_Species, Cycle_Num, "
                                           "Cycle_Year, Report_Title, [Desc]) VALUES (?, ?, ?, ?, ?, ?, ?, ?)"))
{
}

void StandStockTableWriter::write(const StandStockData &data, const ClassLayout &layout, bool density, qint16 ReportId,
                                  const QString &RunId, qint16 Cycle, qint16 Year, const QString &title, const QString &description)
{
    // NumSpecies as the aggregation was made with it.
    const int numSpecies = data.NumSpecies();
    // The classes that the aggregation walked: those of the last entry that passed.
    const int classCount = layout.ClassCount();
    const QVector<ReportRowType> rows = fillRows(data, classCount, numSpecies);

    // Species2: the species of the first row's positions; a code the species table lacks, as -1
    // for a position without species, takes the table's first row.
    m_species2.bind(1, static_cast<qint64>(ReportId));
    const QList<SpeciesInfo> &table = m_db.speciesList();
    for (int j = 0; j < kSpecies2Pairs; ++j) {
        if (j <= numSpecies - 1 && !table.isEmpty()) {
            const SpeciesInfo *s = m_db.species(rows[0].Entries[j].Species);
            const SpeciesInfo &shown = s ? *s : table.first();
            m_species2.bind(2 + 2 * j, shown.strCode).bind(3 + 2 * j, shown.name);
        } else {
            m_species2.bindNull(2 + 2 * j).bindNull(3 + 2 * j);
        }
    }
    m_species2.run();

    for (int i = 0; i < kReportRows; ++i) {
        const ReportRowType &row = rows[i];
        if (row.MidPoint == 0)
            continue;
        m_detail.bind(1, i == classCount - 1 ? QStringLiteral("YES") : QStringLiteral("NO"))
            .bind(2, static_cast<qint64>(ReportId))
            .bind(3, row.MinDia)
            .bind(4, row.MaxDia)
            .bind(5, row.MidPoint)
            .bind(6, row.DBHClass);
        const QVector<ColumnGroup> groups = columnGroups(m_db, data, row, i);
        for (int g = 0; g < kColumnGroups; ++g) {
            const int first = 7 + 3 * g;
            if (g < groups.size())
                m_detail.bind(first, groups[g].heading).bind(first + 1, groups[g].density).bind(first + 2, groups[g].volume);
            else
                m_detail.bindNull(first).bindNull(first + 1).bindNull(first + 2);
        }
        m_detail.run();
    }

    m_header.bind(1, static_cast<qint64>(ReportId))
        .bind(2, RunId)
        .bind(3, density ? QStringLiteral("DENSITY") : QStringLiteral("MERCH_VOL"))
        .bind(4, static_cast<qint64>(data.NextSpecies))
        .bind(5, static_cast<qint64>(Cycle))
        .bind(6, static_cast<qint64>(Year))
        .bind(7, title)
        .bind(8, description)
        .run();
}

}  // namespace sendrel
