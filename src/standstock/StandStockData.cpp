#include "standstock/StandStockData.h"

#include "app/Numbers.h"
#include "app/SendrelError.h"
#include "app/ToolBox.h"
#include "app/TreeModel.h"
#include "store/DBEngine.h"

#include <QSqlError>
#include <QSqlQuery>

namespace sendrel {

namespace {

double fractionOf(double value)
{
    return value - IntegerPart(value);
}

// The value that labels class i of n.
double labelValue(const ClassLayout &layout, int i, int n)
{
    const ClassType &c = layout.aClass[i];
    return i == n - 1 ? c.MinDia : c.MidPoint;
}

SendrelError subscriptOutOfRange()
{
    return SendrelError(9, QStringLiteral("Sendrel"), QStringLiteral("Subscript out of range"));
}

}  // namespace

QVector<CycleListEntry> UpdateHeaderList(TreeModel &tm, const QString &runId, const QString &sorH)
{
    // Only the blanks at both ends go: a Run Id may hold other white space.
    QString id = QuoteSQL(runId);
    qsizetype first = 0;
    while (first < id.size() && id.at(first) == QLatin1Char(' '))
        ++first;
    qsizetype last = id.size();
    while (last > first && id.at(last - 1) == QLatin1Char(' '))
        --last;
    id = id.mid(first, last - first);

    tm.DBEngine.SQLString = QStringLiteral("Select * from Model_Header where Run_Id = '") + id + QStringLiteral("'")
                            + QStringLiteral(" and Standing_Harvested = '") + QuoteSQL(sorH) + QStringLiteral("'");
    Recordset rs = tm.DBEngine.RetreiveRecords();
    QVector<CycleListEntry> entries;
    for (; !rs.Eof(); rs.MoveNext()) {
        CycleListEntry e;
        e.yearText = DefaultText(rs.Fields(QStringLiteral("Cycle_Year")).toDouble());
        e.cycle = ToInt32(rs.Fields(QStringLiteral("Cycle")).toDouble());
        entries.append(e);
    }
    return entries;
}

StandStockData::StandStockData(const ClassLayout &layout, qint32 numSpecies)
    : SpeciesType(numSpecies + 1, qint16(-1)),
      m_layout(layout),
      m_numSpecies(numSpecies),
      m_cells(ClassLayout::kSlots * (numSpecies + 1))
{
}

ReportEntryType &StandStockData::ReportEntry(int classIndex, int code)
{
    if (classIndex < 0 || classIndex >= ClassLayout::kSlots || code < 0 || code > m_numSpecies)
        throw subscriptOutOfRange();
    return m_cells[classIndex * (m_numSpecies + 1) + code];
}

const ReportEntryType &StandStockData::ReportEntry(int classIndex, int code) const
{
    return const_cast<StandStockData *>(this)->ReportEntry(classIndex, code);
}

QString StandStockData::CalcReportSQL(const QString &runId, const QString &sorH, qint16 cycle)
{
    return QStringLiteral("Select Species_Code, Current_Diameter, Total_Volume, Trees_per_ha, ")
           + QStringLiteral("MerchVolLessDWB from Model_Entries where Run_id = '") + QuoteSQL(runId)
           + QStringLiteral("' and Standing_Harvested = '") + QuoteSQL(sorH) + QStringLiteral("' ")
           + QStringLiteral(" and Cycle_Number = ") + QString::number(cycle)
           + QStringLiteral(" Order by Species_Code, Current_Diameter");
}

qint16 StandStockData::LabelDecimals(const ClassLayout &layout)
{
    const int n = layout.ClassCount();
    qint16 d = 0;
    for (int i = 0; i < n; ++i) {
        if (d >= 2)
            break;
        const double x = labelValue(layout, i, n);
        if (fractionOf(x * 10) != 0.0)
            d = 2;
        if (d < 1 && fractionOf(x) != 0.0)
            d = 1;
    }
    return d;
}

int StandStockData::ClassOf(const ClassLayout &layout, double d)
{
    const int n = layout.ClassCount();
    for (int i = 0; i <= n - 2; ++i) {
        if (d >= layout.aClass[i].MinDia && d < layout.aClass[i].MaxDia)
            return i;
    }
    if (n >= 1 && d >= layout.aClass[n - 1].MinDia)
        return n - 1;
    return -1;
}

void StandStockData::clearCells(int n)
{
    const qint16 decimals = LabelDecimals(m_layout);
    for (int i = 0; i < n; ++i) {
        const ClassType &c = m_layout.aClass[i];
        const QString label = FormatNumber2(labelValue(m_layout, i, n), decimals);
        for (int j = 1; j <= m_numSpecies; ++j) {
            ReportEntryType &e = ReportEntry(i, j);
            e.DBHClass = label;
            e.MinDia = c.MinDia;
            e.MaxDia = c.MaxDia;
            e.MidPoint = c.MidPoint;
            e.Species = -1;
            e.Density = 0;
            e.MerchVol = 0;
        }
        ClassTotals[i].Density = 0;
        ClassTotals[i].MerchVol = 0;
    }
}

void StandStockData::findSpecies(int n)
{
    for (int k = 0; k < m_numSpecies; ++k)
        SpeciesType[k] = -1;
    NextSpecies = 0;
    for (int i = 0; i < n; ++i) {
        for (int j = 1; j <= m_numSpecies; ++j) {
            const ReportEntryType &e = ReportEntry(i, j);
            if (e.Density == 0)
                continue;
            bool known = false;
            for (int k = 0; k < NextSpecies && !known; ++k)
                known = SpeciesType[k] == e.Species;
            if (!known)
                SpeciesType[NextSpecies++] = e.Species;
        }
    }
}

void StandStockData::roundTotals(int n)
{
    // The sum of the rounded cells, so that the totals agree with the cells as printed.
    for (int i = 0; i < n; ++i) {
        for (int j = 1; j <= m_numSpecies; ++j) {
            const ReportEntryType &e = ReportEntry(i, j);
            ClassTotals[i].Density += IntegerPart(e.Density + 0.5);
            ClassTotals[i].MerchVol += IntegerPart(e.MerchVol + 0.5);
        }
    }
}

void StandStockData::CalcReport(TreeModel &tm, const QString &runId, const QString &sorH, qint16 cycle)
{
    if (LetEventsRun)
        LetEventsRun();

    const int n = m_layout.ClassCount();
    clearCells(n);

    tm.DBEngine.SQLString = CalcReportSQL(runId, sorH, cycle);
    // Read forward only, by column position: a cycle can hold tens of thousands of trees.
    QSqlQuery query(tm.DBEngine.database());
    query.setForwardOnly(true);
    if (!query.exec(tm.DBEngine.SQLString))
        throw clsDBEngine::errorFrom(query.lastError());

    // The class edges in plain arrays, for the search that runs once per tree.
    double minDia[ClassLayout::kSlots];
    double maxDia[ClassLayout::kSlots];
    for (int i = 0; i < n; ++i) {
        minDia[i] = m_layout.aClass[i].MinDia;
        maxDia[i] = m_layout.aClass[i].MaxDia;
    }
    const int stride = m_numSpecies + 1;
    ReportEntryType *cells = m_cells.data();

    while (query.next()) {
        const qint16 code = ToInt16(query.value(0).toDouble());
        const double d = query.value(1).toDouble();
        int i = -1;
        for (int k = 0; k <= n - 2; ++k) {
            if (d >= minDia[k] && d < maxDia[k]) {
                i = k;
                break;
            }
        }
        if (i < 0) {
            if (n < 1 || !(d >= minDia[n - 1]))
                continue;   // below the first class: in no table
            i = n - 1;
        }
        if (code < 0 || code > m_numSpecies)
            throw subscriptOutOfRange();
        const double volume = query.value(2).toDouble();
        const double trees = query.value(3).toDouble();
        ReportEntryType &first = cells[code];
        if (first.Species == -1)
            first.Species = code;
        ReportEntryType &e = cells[i * stride + code];
        e.Species = code;
        e.Density += trees;
        e.MerchVol += volume * trees;
    }
    if (query.lastError().isValid())
        throw clsDBEngine::errorFrom(query.lastError());

    findSpecies(n);
    roundTotals(n);
}

}  // namespace sendrel
