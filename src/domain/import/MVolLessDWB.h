#pragma once

#include <QStringView>

namespace sendrel {

// The gross merchantable volume of one tree net of decay, waste and breakage: the volume less
// the percentage that the fixed deduction table gives for the tree's species letter code
// (compared exactly: upper case, untrimmed) and its diameter class. A code or a diameter outside
// the table gives 0, as does a volume of exactly 0.
double MVol_less_DWB(QStringView species, double diameter, double volume);

// The deduction table itself, for those who show or check it.
namespace DWBTable {
constexpr int kSpecies = 11;
constexpr int kClasses = 33;
// Species letter codes in column order.
extern const char *const kSpeciesCodes[kSpecies];
// Lower bound (included) and upper bound (excluded) of each diameter class, cm.
extern const double kClassFrom[kClasses];
extern const double kClassToBelow[kClasses];
// Percent of gross merchantable volume to deduct, by class and species.
extern const double kPercent[kClasses][kSpecies];
}  // namespace DWBTable

}  // namespace sendrel
