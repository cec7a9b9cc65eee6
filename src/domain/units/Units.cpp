#include "domain/units/Units.h"

#include <QStringList>

namespace sendrel {

namespace {

constexpr double kSquareFeetPerSquareMetre = kFeetPerMetre * kFeetPerMetre;
constexpr double kCubicFeetPerCubicMetre = kSquareFeetPerSquareMetre * kFeetPerMetre;
// 12 inches to the foot, 100 cm to the metre.
constexpr double kInchesPerCentimetre = kFeetPerMetre * 12 / 100;

struct QuantityUnits {
    Quantity quantity;
    const char *metric;
    const char *imperial;
    double factor;  // imperial units per metric unit
    const char *conversion;  // how the factor comes about, for a definition
};

const QuantityUnits kQuantities[] = {
    {Quantity::None, "", "", 1.0, ""},
    {Quantity::StemsPerArea, "stems/ha", "trees/acre", 1 / kAcresPerHectare, "divided by 2.471053814671653 acres per hectare"},
    {Quantity::Density, "SPH", "TPA", 1 / kAcresPerHectare, "divided by 2.471053814671653 acres per hectare"},
    {Quantity::BasalAreaPerArea, "sq.m/ha", "sq.ft/acre", kSquareFeetPerSquareMetre / kAcresPerHectare,
     "times 3.280839895013123 squared square feet per square metre, divided by 2.471053814671653 acres per hectare"},
    {Quantity::VolumePerArea, "cu.m/ha", "cu.ft/acre", kCubicFeetPerCubicMetre / kAcresPerHectare,
     "times 3.280839895013123 cubed cubic feet per cubic metre, divided by 2.471053814671653 acres per hectare"},
    {Quantity::VolumeIncrementPerArea, "cu.m/ha/yr", "cu.ft/acre/yr", kCubicFeetPerCubicMetre / kAcresPerHectare,
     "times 3.280839895013123 cubed cubic feet per cubic metre, divided by 2.471053814671653 acres per hectare"},
    {Quantity::Diameter, "cm", "in", kInchesPerCentimetre, "times 0.03280839895013123 feet per centimetre and 12 inches per foot"},
    {Quantity::Length, "m", "ft", kFeetPerMetre, "times 3.280839895013123 feet per metre"},
};

const QuantityUnits &unitsOf(Quantity quantity)
{
    for (const QuantityUnits &q : kQuantities) {
        if (q.quantity == quantity)
            return q;
    }
    return kQuantities[0];
}

}  // namespace

QString UnitSystemName(UnitSystem units)
{
    return units == UnitSystem::Imperial ? QStringLiteral("imperial") : QStringLiteral("metric");
}

std::optional<UnitSystem> UnitSystemNamed(const QString &name)
{
    for (UnitSystem units : {UnitSystem::Metric, UnitSystem::Imperial}) {
        if (name.compare(UnitSystemName(units), Qt::CaseInsensitive) == 0)
            return units;
    }
    return std::nullopt;
}

UnitSystem UnitSystemOfSetting(const QString &text)
{
    return UnitSystemNamed(text.trimmed()).value_or(UnitSystem::Metric);
}

double UnitFactor(Quantity quantity, UnitSystem units)
{
    return units == UnitSystem::Metric ? 1.0 : unitsOf(quantity).factor;
}

double ToUnits(double metric, Quantity quantity, UnitSystem units)
{
    return units == UnitSystem::Metric ? metric : metric * unitsOf(quantity).factor;
}

double FromUnits(double shown, Quantity quantity, UnitSystem units)
{
    return units == UnitSystem::Metric ? shown : shown / unitsOf(quantity).factor;
}

QString UnitLabel(Quantity quantity, UnitSystem units)
{
    const QuantityUnits &q = unitsOf(quantity);
    return QString::fromLatin1(units == UnitSystem::Imperial ? q.imperial : q.metric);
}

QString ConversionWords(Quantity quantity, UnitSystem units)
{
    const QuantityUnits &q = unitsOf(quantity);
    if (units == UnitSystem::Metric || quantity == Quantity::None)
        return QString();
    return QStringLiteral("Converted from the stored %1 to %2: %3.")
        .arg(QLatin1String(q.metric), QLatin1String(q.imperial), QLatin1String(q.conversion));
}

QString UnitsDescription(UnitSystem units)
{
    QStringList labels;
    for (Quantity q : {Quantity::StemsPerArea, Quantity::BasalAreaPerArea, Quantity::VolumePerArea, Quantity::Diameter, Quantity::Length})
        labels.append(UnitLabel(q, units));
    QString text = UnitSystemName(units) + QStringLiteral(": ") + labels.join(QStringLiteral(", "));
    if (units == UnitSystem::Imperial)
        text += QStringLiteral("; converted from the stored metric values with 1 ha = 2.471053814671653 acres and "
                               "1 m = 3.280839895013123 ft; diameter classes stay in the units they were given");
    return text;
}

QString ReferenceDiameterText(UnitSystem units)
{
    return units == UnitSystem::Imperial ? QStringLiteral("10 in") : QStringLiteral("25.4 cm");
}

}  // namespace sendrel
