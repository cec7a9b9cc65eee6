#include "standstock/StandStockResults.h"

#include "app/SendrelError.h"

namespace sendrel {

StandStockResults::StandStockResults(qint32 numSpecies)
    : SpeciesType(numSpecies + 1, qint16(-1)), m_numSpecies(numSpecies), m_cells(kClassSlots * (numSpecies + 1))
{
}

StandStockResults::Entry &StandStockResults::ReportEntry(int classIndex, int code)
{
    return const_cast<Entry &>(std::as_const(*this).ReportEntry(classIndex, code));
}

const StandStockResults::Entry &StandStockResults::ReportEntry(int classIndex, int code) const
{
    if (classIndex < 0 || classIndex >= kClassSlots || code < 0 || code > m_numSpecies)
        throw SendrelError(9, QStringLiteral("ReportEntry"), QStringLiteral("Subscript out of range (%1, %2)").arg(classIndex).arg(code));
    return m_cells[classIndex * (m_numSpecies + 1) + code];
}

}  // namespace sendrel
