#pragma once

#include "domain/summary/StandSummary.h"
#include "domain/units/Units.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>

namespace sendrel {

class RunStore;

inline constexpr int kFewestComparedRuns = 2;
inline constexpr int kMostComparedRuns = 8;

// One run of a comparison: the standing list of a Run Id with the harvested list of the same Run
// Id, as the stand summary joins them, by calendar year.
struct ComparedRun {
    RunKey run;
    QString description;
    QList<RunInfo> sources;  // the lists read (standing, and harvested when there is one), with their import dates
    // The summary's first row of each calendar year. A run without a harvested list removed
    // nothing: its removals are 0, not blank, so that it compares with a thinned run.
    QMap<qint32, StandSummaryRow> byYear;
    // What the harvests took up to and with each year.
    QMap<qint32, StandSums> cumulativeRemovals;
};

// Runs side by side against a base, by calendar year.
struct Comparison {
    QList<ComparedRun> runs;
    int base = 0;  // index into runs
    QList<qint32> years;  // the union of the runs' years, rising
    UnitSystem units = UnitSystem::Metric;  // of its tables and charts; the runs keep the stored metric values

    const ComparedRun &baseRun() const { return runs.at(base); }
    // The runs' Run Ids in their order.
    QStringList runIds() const;
};

// Reads the summaries of the runs (Run Ids of standing lists, 2 to 8, each once) from the kept
// sums and aligns them by year. base: the Run Id of the base, empty for the first. Fails
// (SendrelError) on a count outside 2 to 8, a Run Id named twice, a base that is not one of the
// runs, a run not in the database, and runs that share no year with the base. units: those its
// tables and charts show.
Comparison ReadComparison(RunStore &db, const QStringList &runIds, const QString &base = QString(), UnitSystem units = UnitSystem::Metric);

// The same comparison with another base (an index into its runs).
Comparison WithBase(Comparison comparison, int base);

// One compared number: a statistic of a part of the stand ("Before" "GTV"), or cumulative
// removals and total yield of gross total and net merchantable volume.
struct CompareMeasure {
    QString key;  // "before_gtv", "cumulative_nmv", "yield_gtv"
    QString group;  // "Before", "Removed", "After", "Cumulative removals", "Total yield"
    QString name;  // "SPH", "BA", ...
    QString unit;  // in the measure's units: "cu.m/ha", "cu.ft/acre"
    int decimals = 0;
    std::optional<double> (*value)(const ComparedRun &run, qint32 year) = nullptr;  // metric, as stored
    Quantity quantity = Quantity::None;
    UnitSystem units = UnitSystem::Metric;
    QString definition;  // the formula in words, in the measure's units

    // "Before harvest GTV".
    QString title() const;
    // The value in the measure's units.
    std::optional<double> shown(const ComparedRun &run, qint32 year) const;
};

// Before harvest, removals and after harvest as the summary's columns have them, then cumulative
// removals and total yield (after-harvest standing plus cumulative removals) of GTV and NMV, in
// the units given.
const QList<CompareMeasure> &CompareMeasures(UnitSystem units = UnitSystem::Metric);

// A run's number and its difference from the base in one year, in the measure's units: none where
// either lacks the year or the number; the percentage none also where the base is 0 (baseIsZero
// then tells "n/a").
struct CompareCell {
    std::optional<double> value;
    std::optional<double> difference;  // run - base
    std::optional<double> percent;  // 100 * difference / base, of the stored values: the same in any units
    bool baseIsZero = false;
};
CompareCell CompareValue(const Comparison &comparison, const CompareMeasure &measure, int run, qint32 year);

}  // namespace sendrel
