#include "standstock/StandStockData.h"

#include "app/Numbers.h"
#include "app/SendrelError.h"
#include "app/ToolBox.h"
#include "app/TreeModel.h"
#include "store/DBEngine.h"

#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>

#include <sqlite3.h>

#include <memory>

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

void StandStockData::addTree(qint16 code, double d, double volume, double treesPerHa)
{
    const int i = ClassOf(m_layout, d);
    if (i < 0)
        return;   // below the first class: in no table
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

void StandStockData::readTrees(clsDBEngine &engine)
{
    QSqlDatabase db = engine.database();
    // A cycle can hold tens of thousands of trees. Through the SQLite handle the rows are read
    // as plain numbers; the per-value QVariant of the generic path costs as much again as the
    // query itself. Any other driver takes the generic path.
    const QVariant handle = db.driver()->handle();
    if (handle.isValid() && qstrcmp(handle.typeName(), "sqlite3*") == 0) {
        sqlite3 *h = *static_cast<sqlite3 *const *>(handle.constData());
        if (h) {
            sqlite3_stmt *stmt = nullptr;
            const QByteArray sql = engine.SQLString.toUtf8();
            if (sqlite3_prepare_v2(h, sql.constData(), static_cast<int>(sql.size()), &stmt, nullptr) != SQLITE_OK)
                throw SendrelError(ErrNo::CommandFailure, QStringLiteral("SQLite"), QString::fromUtf8(sqlite3_errmsg(h)));
            // Finalized on every way out, also when a row fails.
            std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt *)> guard(stmt, sqlite3_finalize);
            int rc;
            while ((rc = sqlite3_step(stmt)) == SQLITE_ROW) {
                addTree(ToInt16(sqlite3_column_double(stmt, 0)), sqlite3_column_double(stmt, 1),
                        sqlite3_column_double(stmt, 2), sqlite3_column_double(stmt, 3));
            }
            if (rc != SQLITE_DONE)
                throw SendrelError(ErrNo::CommandFailure, QStringLiteral("SQLite"), QString::fromUtf8(sqlite3_errmsg(h)));
            return;
        }
    }
    QSqlQuery query(db);
    query.setForwardOnly(true);
    if (!query.exec(engine.SQLString))
        throw clsDBEngine::errorFrom(query.lastError());
    while (query.next()) {
        addTree(ToInt16(query.value(0).toDouble()), query.value(1).toDouble(), query.value(2).toDouble(),
                query.value(3).toDouble());
    }
    if (query.lastError().isValid())
        throw clsDBEngine::errorFrom(query.lastError());
}

void StandStockData::CalcReport(TreeModel &tm, const QString &runId, const QString &sorH, qint16 cycle)
{
    if (LetEventsRun)
        LetEventsRun();

    const int n = m_layout.ClassCount();
    clearCells(n);

    tm.DBEngine.SQLString = CalcReportSQL(runId, sorH, cycle);
    readTrees(tm.DBEngine);
    findSpecies(n);
    roundTotals(n);
}

}  // namespace sendrel
