#pragma once

#include "domain/composition/StandLevelsSeries.h"

namespace sendrel {

// The composition's sums read as the plan of the chart filling reads them: one grouped statement
// with its HAVING tail per point and species, passes x cycles x species statements, each grouping
// the whole run. The yardstick of the program's own reading, in tests and in bench_composition.
StandLevelsSums ReadStandLevelsSumsPerPoint(RunStore &db, const QString &This_RunId, const QString &This_SorH);

// How many cells of two readings of one run differ, or -1 when their cycles or species differ.
// The first pass must agree to the last bit: both add each cycle's trees in table order. The
// second pass adds the same trees in another order (the statement interleaves standing and
// harvested trees, the program subtracts one list's sums from the other's), so it must agree
// within rounding: 1e-10 of the stand before the harvest.
int DifferingCells(const StandLevelsSums &a, const StandLevelsSums &b);

}  // namespace sendrel
