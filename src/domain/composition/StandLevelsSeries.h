#pragma once

#include "domain/output/ChartData.h"
#include "store/CycleSums.h"
#include "store/RunStore.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringView>
#include <QVector>
#include <QtGlobal>

#include <array>
#include <utility>

namespace sendrel {

class UserQuestions;
struct Settings;

// Species composition through time: density, basal area and gross total volume of each species
// over the calendar years of a run, as four time charts (the fourth, total volume, only ever
// holds zeros) and as the state that the composition report reads.

// The statistics, in the order of the window's options and charts.
enum class StandLevelsStatistic { Sph = 0, BasalArea = 1, MerchVol = 2, TotalVol = 3 };
inline constexpr int kStandLevelsCharts = 4;

// The sums of one species at one point, as that point's grouped statement gives them.
struct StandLevelsCell {
    double sph = 0;
    double basalArea = 0;
    double totalVol = 0;  // the statements' MerchVol column is read by no chart or report
    bool found = false;  // the statement gave a row
};

// A run as the charts take it, before anything is drawn: its cycles, its species, and the sums
// of every species at every point. A run of standing trees has two points per cycle at the same
// year: the stand as imported, then the stand less the trees harvested in that year (found
// through the harvested list's cycle of the same year). Harvested trees have one point per cycle.
//
// Orders: cycles as the rows of Model_Header stand in the table (rowid); species in the order of
// their first tree record of the run and kind in the table (rowid). Points: cycle by cycle, each
// cycle's passes in turn.
struct StandLevelsSums {
    RunKind kind = RunKind::Standing;
    int passes = 1;  // 2 for "S", 1 for "H"
    QList<CycleRow> cycles;
    QList<qint64> species;
    QVector<StandLevelsCell> cells;  // point-major, species within
    const StandLevelsCell &cell(int point, int speciesIndex) const { return cells.at(point * species.size() + speciesIndex); }
};

// Reads the sums of a run from the sums of its tree records by cycle and species that the import
// keeps (ReadCycleSums): the first pass those of each cycle of the kind, the second pass, per
// year, those of every header of the run with that year, the harvested negative. The cost grows
// with cycles and species, not with the records. Species are in the order of their first tree
// record of the run and kind in the table (rowid).
StandLevelsSums ReadStandLevelsSums(RunStore &db, const QString &This_RunId, const QString &This_SorH);

// The first pass alone, by cycle number and species code, with the run's cycles and species:
// the report's numbers, read the same way.
struct StandLevelsCycleSums {
    QList<CycleRow> cycles;
    QList<qint64> species;
    QHash<std::pair<qint64, qint64>, StandLevelsCell> cells;
    StandLevelsCell cell(qint64 cycle, qint64 species) const { return cells.value({cycle, species}); }
};
StandLevelsCycleSums ReadStandLevelsCycleSums(RunStore &db, const QString &This_RunId, const QString &This_SorH);

// What the window keeps after the charts are filled: the report and the Apply button read it.
struct StandLevelsState {
    RunKind kind = RunKind::Standing;
    QList<CycleRow> CycleRS;
    QList<qint64> SpeciesListRS;
    double MaxSph = 0;
    double MaxBasalArea = 0;
    double MaxMerchVol = 0;
    double MaxTotalVol = 0;
    // False when the run has no cycles or no trees of its kind: the charts stay reset.
    bool filled = false;

    double maximum(StandLevelsStatistic statistic) const;
};

// The four charts in the order of the statistics: Sph, BasalArea, MerchVol (gross total volume),
// TotalVol.
using StandLevelsCharts = std::array<ChartData *, kStandLevelsCharts>;

// Fills the charts from the sums: one series per species and a last one "Total"; x values the
// calendar years; in the second pass a species below 0 shows 0 while the "Total" keeps the
// unclamped sum; legends by SpeciesStrCode ("xx" for a code the species table lacks), colours by
// SpeciesColourIndex, "Total" in palette 13; the x axis over the years, each y axis from 0 over
// the largest "Total", both widened by NiceAxisScale to 8 divisions. Titles, grid and styles of
// the charts stay. Without cycles or species the charts are only reset.
StandLevelsState FillStandLevelsCharts(const RunStore &db, const StandLevelsSums &sums, const StandLevelsCharts &charts);

// The whole filling of the composition charts of a run behind the busy message: reset, read,
// fill. Nothing is drawn. A database failure is passed on, the busy message down.
StandLevelsState CalcStandLevelsReport(RunStore &db, UserQuestions &questions, const QString &This_RunId, const QString &This_SorH,
                                       const StandLevelsCharts &charts);

// The titles that the run browser gives each chart: the run's name and ": Density by Species"
// (and the others) on top, the left and bottom titles of the settings. Charts name the run with
// its kind (RunKey::captionName); a report's default title names the Run Id alone.
struct StandLevelsTitles {
    QString top;
    QString left;
    QString bottom;
};
StandLevelsTitles StandLevelsChartTitles(const Settings &settings, StandLevelsStatistic statistic, const QString &runName);
// The statistic that the settings choose first: SPH, basal area, GTV, else total volume.
StandLevelsStatistic DefaultStandLevelsStatistic(const Settings &settings);

}  // namespace sendrel
