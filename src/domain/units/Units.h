#pragma once

#include <QString>

#include <optional>

namespace sendrel {

// The units a user reads numbers in. The run database keeps metric values (cm, m, per hectare);
// every conversion to the units shown happens here, from those values, with exact factors.
enum class UnitSystem { Metric, Imperial };

// What a number measures, as far as its unit goes.
enum class Quantity {
    None,  // a year, a cycle, a count without area, a percentage
    StemsPerArea,  // stems/ha, trees/acre (also SDI, which counts stems of the reference diameter)
    Density,  // the same, under the stand and stock tables' and composition's own name: SPH, TPA
    BasalAreaPerArea,  // sq.m/ha, sq.ft/acre
    VolumePerArea,  // cu.m/ha, cu.ft/acre
    VolumeIncrementPerArea,  // cu.m/ha/yr, cu.ft/acre/yr
    Diameter,  // cm, in
    Length,  // m, ft
};

inline constexpr double kAcresPerHectare = 2.471053814671653;
inline constexpr double kFeetPerMetre = 3.280839895013123;

// "metric", "imperial"; and back, case ignored (nothing for any other name).
QString UnitSystemName(UnitSystem units);
std::optional<UnitSystem> UnitSystemNamed(const QString &name);
// The units a setting's text names: imperial only when it says so, else metric.
UnitSystem UnitSystemOfSetting(const QString &text);

// A stored metric value in the units shown, and a shown value back to metric.
double ToUnits(double metric, Quantity quantity, UnitSystem units);
double FromUnits(double shown, Quantity quantity, UnitSystem units);
// How many shown units one metric unit is: 1 for metric and for Quantity::None.
double UnitFactor(Quantity quantity, UnitSystem units);

// The unit as a heading shows it: "stems/ha", "trees/acre", "sq.ft/acre", "in"; "" for None.
QString UnitLabel(Quantity quantity, UnitSystem units);
// For a definition: how a shown value comes from the stored one ("Converted from the stored stems/ha
// to trees/acre: divided by 2.471053814671653 acres per hectare."); "" for metric and for None.
QString ConversionWords(Quantity quantity, UnitSystem units);
// What a file says of its units: "metric: stems/ha, sq.m/ha, ..." or the imperial list with the factors.
QString UnitsDescription(UnitSystem units);

// Reineke's reference diameter as the units write it: "25.4 cm", "10 in".
QString ReferenceDiameterText(UnitSystem units);

}  // namespace sendrel
