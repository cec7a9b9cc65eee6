#include "domain/standstock/StandStockData.h"

#include "base/Numbers.h"
#include "base/SendrelError.h"
#include "base/ToolBox.h"
#include "store/RunStore.h"

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
    return SendrelError(ErrNo::SubscriptOutOfRange, QStringLiteral("Sendrel"), QStringLiteral("Subscript out of range"));
}

}  // namespace

QVector<CycleListEntry> UpdateHeaderList(RunStore &db, const RunKey &run)
{
    QVector<CycleListEntry> entries;
    for (const CycleRow &row : db.cycles(run))
        entries.append({DefaultText(row.year), row.cycle});
    return entries;
}

StandStockData::StandStockData(const ClassLayout &layout, qint32 numSpecies)
    : SpeciesType(numSpecies + 1, qint16(-1)), m_layout(layout), m_numSpecies(numSpecies), m_cells(ClassLayout::kSlots * (numSpecies + 1))
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

void StandStockData::addTree(qint16 code, double d, double volume, double treesPerHa)
{
    const int i = ClassOf(m_layout, d);
    if (i < 0)
        return;  // below the first class: in no table
    if (code < 0 || code > m_numSpecies)
        throw subscriptOutOfRange();
    ReportEntryType &first = m_cells[code];
    if (first.Species == -1)
        first.Species = code;
    ReportEntryType &e = m_cells[i * (m_numSpecies + 1) + code];
    e.Species = code;
    e.Density += treesPerHa;
    e.MerchVol += volume * treesPerHa;
}

void StandStockData::CalcReport(RunStore &db, const RunKey &run, qint16 cycle)
{
    if (LetEventsRun)
        LetEventsRun();

    const int n = m_layout.ClassCount();
    clearCells(n);
    db.forEachTree(run, cycle,
                   [this](const TreeRow &tree) { addTree(ToInt16(tree.speciesCode), tree.diameter, tree.totalVolume, tree.treesPerHa); });
    findSpecies(n);
    roundTotals(n);
}

}  // namespace sendrel
