#pragma once

#include "store/CycleSums.h"
#include "store/Run.h"
#include "store/RunStore.h"

#include <QList>
#include <QString>
#include <QtGlobal>

#include <optional>

namespace sendrel {

class RunStore;

// Reineke's reference diameter (cm) and slope, in the metric form of the index.
inline constexpr double kReinekeReferenceDiameter = 25.4;
inline constexpr double kReinekeSlope = 1.605;

// How the stand density index is worked out. Reineke's: from the quadratic mean diameter,
// SPH * (QMD / 25.4) ^ 1.605, as the index was first given. Summation: over the trees, the sum of
// Trees_per_ha * (d / 25.4) ^ 1.605, which counts an uneven stand's large and small trees each at
// its own size. Both in stems per hectare of the reference diameter (25.4 cm, 10 in).
enum class SdiMethod { Reineke, Summation };

// "reineke", "summation"; and back, case ignored (nothing for any other name).
QString SdiMethodName(SdiMethod method);
std::optional<SdiMethod> SdiMethodNamed(const QString &name);
// The method a setting's text names: summation only when it says so, else Reineke's.
SdiMethod SdiMethodOfSetting(const QString &text);

// The per-hectare sums of a group of tree records: stems, basal area, gross total, gross
// merchantable and net merchantable volume (see TreeSums).
using StandSums = TreeSums;

// Quadratic mean diameter, cm: sqrt(BA / SPH / k), the diameter of the tree of mean basal area.
// None without stems, or with more stems or basal area taken away than there were.
std::optional<double> QuadraticMeanDiameter(double basalArea, double sph);
// Reineke's stand density index, metric: SPH * (QMD / 25.4) ^ 1.605. 0 without stems; none
// where the mean diameter is none.
std::optional<double> StandDensityIndex(double basalArea, double sph);

// One cycle year of a run.
struct StandSummaryRow {
    qint32 cycle = 0;
    qint32 year = 0;
    // Standing run: the standing list of this cycle as imported (before harvest). Harvested run:
    // the harvested list of this cycle, what the harvest took.
    StandSums before;
    // Standing run only: the harvested list's trees of this calendar year; none when the run has
    // no harvested list.
    std::optional<StandSums> removed;
    // Standing run only: what stays, the standing trees of this year less the harvested trees of
    // this year; the same as before when the run has no harvested list.
    StandSums after;
    // Standing run only: the periodic annual increment of gross total and of net merchantable
    // volume from this row's stand after harvest to the next row's stand before harvest, divided
    // by the years between them; none on the last row, or when the next row's year is not later.
    std::optional<double> paiTotalVolume;
    std::optional<double> paiNetMerchVolume;
    // The summation method's index of the same trees as before, removed and after (stems/ha);
    // set only when the summary was read for that method.
    struct {
        std::optional<double> before;
        std::optional<double> removed;
        std::optional<double> after;
    } summedSdi;
};

// The stand summary of a run: one row per cycle of its list, in the list's order (the order of
// the years list and of the composition's points).
//
// Standing runs take the harvested list of the same Run Id as the composition's second pass
// does: a harvested tree counts in the calendar year of its own list's cycle, so the two lists
// meet by year even where their cycle numbers differ. A harvested year without a standing cycle
// has no row; a standing year without a harvested cycle has no removals (0). Where two standing
// cycles share a year, each row's after-harvest sums are those of the whole year, as the
// composition's second pass shows them.
//
// The sums are the composition's: per cycle and species those that the import keeps (the cycle's
// "before" sums); per year and species those of every header of the year, the harvested list's
// negative (after) or alone (removed). A row's total adds its species in the order of their first
// tree record of the kind, as the composition's "Total" adds them.
struct StandSummary {
    RunKey run;
    bool hasHarvest = false;  // standing run: whether the Run Id has a harvested list
    SdiMethod sdiMethod = SdiMethod::Reineke;
    QList<StandSummaryRow> rows;
    QList<RunInfo> sources;  // the run, and a standing run's harvested list when it has one
};

// Reads the summary as of one moment, from the kept sums: the cost grows with cycles and species,
// not with the records. The summation method's index is no kept sum: with that method the run's
// (and its harvested list's) diameters and stems are read from the records as well. Fails
// (SendrelError) naming the run when it is not in the database, also when another program deleted
// it since it was listed.
StandSummary ReadStandSummary(RunStore &db, const RunKey &run, SdiMethod sdiMethod = SdiMethod::Reineke);

}  // namespace sendrel
