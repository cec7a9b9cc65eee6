#pragma once

#include "store/Run.h"

#include <QHash>
#include <QList>
#include <QtGlobal>

#include <utility>

namespace sendrel {

class clsDBEngine;

// Square metres of a circle of 1 cm diameter, to 13 digits of pi: the constant of every basal
// area sum of the program.
inline constexpr double kBasalAreaFactor = 7.853981633974E-05;

// The per-hectare sums of a group of tree records, each as a SUM of a statement adds it: stems
// (Trees_per_ha), basal area (d * d * k * tph, d in cm), gross total volume (Total_Volume * tph),
// gross merchantable volume (Gross_Merch_Volume * tph) and merchantable volume less decay, waste
// and breakage (MerchVolLessDWB * tph). A product that is NULL or not a number adds nothing.
struct TreeSums {
    double sph = 0;
    double basalArea = 0;
    double totalVolume = 0;
    double grossMerchVolume = 0;
    double netMerchVolume = 0;
};

// The tree records of one cycle and species of a run: their sums, and the rowids of the first
// and the last of them. The first gives the species their order (that of their first record in
// the table); the last tells whether the records changed since the sums were taken.
struct CycleSpeciesSums {
    qint64 cycle = 0;
    qint64 species = 0;
    qint64 firstRecord = 0;
    qint64 lastRecord = 0;
    TreeSums sums;
};

// Sums tree records by cycle and species as they come, in table order: the order in which a
// grouped SUM of the run's records by cycle and species adds them, so that each sum is that
// statement's to the last bit. (SQLite 3.40, the library the program is built with, adds plainly;
// from 3.43 on it compensates the rounding of its sums.)
class CycleSumsBuilder {
public:
    void add(qint64 record, qint64 cycle, qint64 species, double treesPerHa, double diameter, double totalVolume, double grossMerchVolume,
             double netMerchVolume);
    // In the order of their first record.
    const QList<CycleSpeciesSums> &groups() const { return m_groups; }

private:
    QList<CycleSpeciesSums> m_groups;
    QHash<std::pair<qint64, qint64>, qsizetype> m_index;
};

// Keeps sums as those of the run, in place of any it had. Inside the caller's write transaction.
void WriteCycleSums(clsDBEngine &engine, const RunKey &run, const QList<CycleSpeciesSums> &groups);

// The table that keeps the sums, made where a database from before it lacks it. Writers only.
void MakeCycleSumsTable(clsDBEngine &engine);

// Removes the kept sums of a run. Writers only.
void DeleteCycleSums(clsDBEngine &engine, const RunKey &run);

// The sums of a run's tree records by cycle and species, in the order of their first record: as
// kept beside the records, or summed from the records where none are kept (a run imported before
// they were) or the records changed since (another program). The Run Id is taken as stored, blanks
// and all. Reads as of one moment.
QList<CycleSpeciesSums> ReadCycleSums(clsDBEngine &engine, const RunKey &run);

// A calendar year's sums by species code.
using SpeciesSums = QHash<qint64, TreeSums>;

// Per calendar year, by species: the sums of the cycles of every header of the run with that year,
// those of the harvested list times harvestedSign, as a statement joining the records to their
// headers by run, kind and cycle adds them up (a cycle with two headers counts under both). The
// standing headers come first, each kind in table order; a sum that came to no number counts 0,
// as a NULL sum reads. A species is there when some header's cycle has trees of it.
QHash<qint64, SpeciesSums> YearSums(clsDBEngine &engine, const QString &runId, const QList<CycleSpeciesSums> &standing,
                                    const QList<CycleSpeciesSums> &harvested, double harvestedSign);

// The same summed from the records alone, whatever is kept.
QList<CycleSpeciesSums> SumCycleRecords(clsDBEngine &engine, const RunKey &run);

}  // namespace sendrel
