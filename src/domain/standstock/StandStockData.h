#pragma once

#include "domain/standstock/ClassLayout.h"
#include "domain/standstock/ClassTypes.h"
#include "store/Run.h"

#include <QString>
#include <QVector>
#include <QtGlobal>

#include <array>
#include <functional>

namespace sendrel {

class RunStore;

// One entry of the list of years: the text the list shows and its item value.
struct CycleListEntry {
    QString yearText;  // Cycle_Year
    qint32 cycle = 0;  // Cycle, the number that CalcReport takes
};

// The cycles of a run, in the order of the table.
QVector<CycleListEntry> UpdateHeaderList(RunStore &db, const RunKey &run);

// The cells of one cycle of a run by diameter class and species: the stand table (density)
// and the stock table (gross total volume), as every consumer reads them right after its own
// CalcReport. It reads the classes of the layout given at construction, at each call.
class StandStockData {
public:
    StandStockData(const ClassLayout &layout, qint32 numSpecies);

    qint32 NumSpecies() const { return m_numSpecies; }

    // The cell of a class (0 to 32) and a numeric species code (0 to NumSpecies).
    ReportEntryType &ReportEntry(int classIndex, int code);
    const ReportEntryType &ReportEntry(int classIndex, int code) const;

    // Codes of the species found, in order of first appearance from the smallest class up
    // and within a class by rising code; -1 from NextSpecies on. Slots 0 to NumSpecies.
    QVector<qint16> SpeciesType;
    // How many species have a non-zero density in some class.
    qint16 NextSpecies = 0;
    // Per class, the sums of the rounded cells (Density and MerchVol only).
    std::array<ReportEntryType, 31> ClassTotals{};

    // Lets waiting window events run before the work; the window sets it, others leave it empty.
    std::function<void()> LetEventsRun;

    // Sorts the trees of one cycle of a run into the classes and sums them per class and
    // species. One statement per call. A failure (a refused statement, a species code beyond
    // 0 to NumSpecies) passes on unchanged; what was filled by then stays.
    void CalcReport(RunStore &db, const RunKey &run, qint16 cycle);

    // Decimals of the class labels: 0 for whole labels, 1 for labels such as 12.5, 2 for
    // labels such as 12.25; the bucket class is labelled by its MinDia, the others by midpoint.
    static qint16 LabelDecimals(const ClassLayout &layout);
    // The class of a diameter: the first with MinDia <= d < MaxDia, else the bucket when d is
    // at least its MinDia, else -1 (below the first class: not counted).
    static int ClassOf(const ClassLayout &layout, double d);

private:
    void clearCells(int n);
    void addTree(qint16 code, double d, double volume, double treesPerHa);
    void findSpecies(int n);
    void roundTotals(int n);

    const ClassLayout &m_layout;
    qint32 m_numSpecies;
    QVector<ReportEntryType> m_cells;  // 33 x (NumSpecies + 1), class major
};

}  // namespace sendrel
