#include "standstock/StandStockResults.h"

#include "app/SendrelError.h"

namespace sendrel {

void StandStockResults::Reset(int numSpecies)
{
    m_numSpecies = numSpecies;
    m_entries = QVector<Entry>(kClassSlots * (numSpecies + 1));
    m_speciesType = QVector<qint16>(numSpecies + 1, qint16(-1));
    m_classTotals = QVector<Entry>(kTotalSlots);
    NextSpecies = 0;
}

int StandStockResults::checked(int index, qsizetype size)
{
    if (index < 0 || index >= size)
        throw SendrelError(9, QStringLiteral("StandStockResults"), QStringLiteral("Subscript out of range (%1)").arg(index));
    return index;
}

int StandStockResults::slot(int classIndex, int code) const
{
    checked(classIndex, kClassSlots);
    checked(code, m_numSpecies + 1);
    return classIndex * (m_numSpecies + 1) + code;
}

}  // namespace sendrel
