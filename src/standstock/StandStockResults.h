#pragma once

#include <QString>
#include <QVector>
#include <QtGlobal>

#include <array>

namespace sendrel {

// What the report writers read of one cycle's aggregation, shaped as the aggregation keeps it:
// the cells of class and species, the species found in order of first appearance, and the
// rounded totals per class. The number of classes comes with the class layout, not from here.
struct StandStockResults {
    // One cell of class and species (the fields of ReportEntryType).
    struct Entry {
        QString DBHClass;
        double MinDia = 0;
        double MaxDia = 0;
        double MidPoint = 0;
        qint16 Species = -1;
        double Density = 0;
        double MerchVol = 0;
    };

    static constexpr int kClassSlots = 33;   // ReportEntry: classes 0 to 32

    // Every slot for numSpecies species: SpeciesType 0 to numSpecies, all -1; ReportEntry
    // (0 to 32, 0 to numSpecies) and ClassTotals cleared.
    explicit StandStockResults(qint32 numSpecies = 0);

    qint32 NumSpecies() const { return m_numSpecies; }

    // The cell of a class (0 to 32) and a numeric species code (0 to NumSpecies).
    Entry &ReportEntry(int classIndex, int code);
    const Entry &ReportEntry(int classIndex, int code) const;

    QVector<qint16> SpeciesType;          // codes found, -1 from NextSpecies on
    qint16 NextSpecies = 0;               // how many species have a non-zero density somewhere
    std::array<Entry, 31> ClassTotals{};  // sums of the rounded cells, Density and MerchVol

private:
    qint32 m_numSpecies;
    QVector<Entry> m_cells;   // class major
};

}  // namespace sendrel
