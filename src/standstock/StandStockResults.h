#pragma once

#include <QString>
#include <QVector>
#include <QtGlobal>

namespace sendrel {

// What the report writers read of one cycle's aggregation: the cells of class and species,
// the species found in order of first appearance, and the rounded totals per class.
// The names are those of the aggregation; the writers only read.
struct StandStockResults {
    // One cell of class and species, as the aggregation fills it.
    struct Entry {
        QString DBHClass;
        double MinDia = 0;
        double MaxDia = 0;
        double MidPoint = 0;
        qint16 Species = -1;
        double Density = 0;
        double MerchVol = 0;
    };

    static constexpr int kClassSlots = 33;   // aClass and ReportEntry: 0 to 32
    static constexpr int kTotalSlots = 31;   // ClassTotals: 0 to 30

    qint16 iNumofClasses = 0;
    qint16 NextSpecies = 0;

    // Makes every slot for numSpecies species: SpeciesType 0 to numSpecies, all -1;
    // ReportEntry (0 to 32, 0 to numSpecies) and ClassTotals (0 to 30) cleared.
    void Reset(int numSpecies);
    int NumSpecies() const { return m_numSpecies; }

    Entry &ReportEntry(int classIndex, int code) { return m_entries[slot(classIndex, code)]; }
    const Entry &ReportEntry(int classIndex, int code) const { return m_entries[slot(classIndex, code)]; }
    qint16 &SpeciesType(int k) { return m_speciesType[checked(k, m_speciesType.size())]; }
    qint16 SpeciesType(int k) const { return m_speciesType[checked(k, m_speciesType.size())]; }
    Entry &ClassTotals(int classIndex) { return m_classTotals[checked(classIndex, kTotalSlots)]; }
    const Entry &ClassTotals(int classIndex) const { return m_classTotals[checked(classIndex, kTotalSlots)]; }

private:
    int slot(int classIndex, int code) const;
    static int checked(int index, qsizetype size);

    int m_numSpecies = 0;
    QVector<Entry> m_entries;
    QVector<qint16> m_speciesType;
    QVector<Entry> m_classTotals = QVector<Entry>(kTotalSlots);
};

}  // namespace sendrel
