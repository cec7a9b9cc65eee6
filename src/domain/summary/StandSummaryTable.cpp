#include "domain/summary/StandSummaryTable.h"

#include "base/ToolBox.h"
#include "domain/table/TableFile.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace sendrel {

namespace {

using Value = std::optional<double>;

// The statistics of one group of sums, as columns.
Value sph(const StandSums &s)
{
    return s.sph;
}
Value basalArea(const StandSums &s)
{
    return s.basalArea;
}
Value qmd(const StandSums &s)
{
    return QuadraticMeanDiameter(s.basalArea, s.sph);
}
Value sdi(const StandSums &s)
{
    return StandDensityIndex(s.basalArea, s.sph);
}
Value totalVolume(const StandSums &s)
{
    return s.totalVolume;
}
Value grossMerch(const StandSums &s)
{
    return s.grossMerchVolume;
}
Value netMerch(const StandSums &s)
{
    return s.netMerchVolume;
}

struct Statistic {
    const char *key;
    const char *name;
    Quantity quantity;
    int decimals;
    Value (*of)(const StandSums &);
    bool removals;  // shown for the removed trees too
    const char *definition;  // "" for SDI, whose words depend on its method
};

const Statistic kStatistics[] = {
    {"sph", "SPH", Quantity::StemsPerArea, 0, sph, true, "Stems per hectare: the sum of Trees_per_ha over the tree records."},
    {"basal_area", "BA", Quantity::BasalAreaPerArea, 2, basalArea, true,
     "Basal area per hectare: the sum over the tree records of Trees_per_ha x d x d x 0.00007853981633974 (the square metres "
     "of a circle of 1 cm), d the diameter at breast height in cm."},
    {"qmd", "QMD", Quantity::Diameter, 1, qmd, true,
     "Quadratic mean diameter, from basal area and stems: sqrt(BA / SPH / 0.00007853981633974) cm, the diameter of the tree of "
     "mean basal area; blank without stems."},
    {"sdi", "SDI", Quantity::StemsPerArea, 0, sdi, false, ""},
    {"gtv", "GTV", Quantity::VolumePerArea, 1, totalVolume, true,
     "Gross total volume per hectare: the sum of Total_Volume x Trees_per_ha over the tree records."},
    {"gmv", "GMV", Quantity::VolumePerArea, 1, grossMerch, true,
     "Gross merchantable volume per hectare: the sum of Gross_Merch_Volume x Trees_per_ha over the tree records."},
    {"nmv", "NMV", Quantity::VolumePerArea, 1, netMerch, true,
     "Net merchantable volume per hectare: gross merchantable volume less the deductions for decay, waste and breakage, "
     "a percentage by species and 5 cm diameter class that the import takes off each tree (MerchVolLessDWB x Trees_per_ha); "
     "a tree below 7.5 cm, or of a species the deduction table lacks, keeps none."},
};
constexpr std::size_t kSdiStatistic = 3;

// Which sums of a row a group reads. Captureless, so that a column holds a plain function. The
// index of the summation method is the row's own where it was read.
template <int Group, std::size_t Stat>
Value cell(const StandSummaryRow &row)
{
    const Statistic &statistic = kStatistics[Stat];
    if constexpr (Stat == kSdiStatistic) {
        const std::optional<double> &summed = Group == 0 ? row.summedSdi.before : Group == 1 ? row.summedSdi.removed : row.summedSdi.after;
        if (summed)
            return summed;
    }
    switch (Group) {
    case 0:
        return statistic.of(row.before);
    case 1:
        return row.removed ? statistic.of(*row.removed) : Value();
    default:
        return statistic.of(row.after);
    }
}

// The words of a group's trees, ahead of the statistic's.
QString groupWords(const QString &group)
{
    if (group == QLatin1String("Before"))
        return QStringLiteral("Before harvest, the standing list of the cycle as imported. ");
    if (group == QLatin1String("Removed"))
        return QStringLiteral("Removals, the harvested list's trees of the calendar year. ");
    if (group == QLatin1String("After"))
        return QStringLiteral("After harvest, the standing trees of the year less the harvested trees of the year. ");
    if (group == QLatin1String("Harvested"))
        return QStringLiteral("Harvested trees, the harvested list of the cycle. ");
    return QString();
}

QString sdiWords(SdiMethod method, UnitSystem units)
{
    const QString reference =
        QStringLiteral(" with exponent 1.605 and reference diameter %1: stems per %2 of the reference diameter.")
            .arg(ReferenceDiameterText(units), units == UnitSystem::Imperial ? QStringLiteral("acre") : QStringLiteral("hectare"));
    if (method == SdiMethod::Summation)
        return QStringLiteral(
                   "Stand density index by the summation method, the sum over the tree records of Trees_per_ha x (d / 25.4 cm) ^ 1.605,") +
               reference;
    return QStringLiteral("Stand density index by Reineke's formula from the quadratic mean diameter, SPH x (QMD / 25.4 cm) ^ 1.605,") +
           reference + QStringLiteral(" 0 without stems.");
}

QString definitionOf(const Statistic &statistic, const QString &group, SdiMethod method, UnitSystem units)
{
    const QString words = &statistic == &kStatistics[kSdiStatistic] ? sdiWords(method, units) : QString::fromLatin1(statistic.definition);
    const QString conversion = ConversionWords(statistic.quantity, units);
    return groupWords(group) + words + (conversion.isEmpty() ? QString() : QLatin1Char(' ') + conversion);
}

template <int Group, std::size_t... Stat>
void addGroup(QList<SummaryColumn> &columns, const QString &label, bool removals, SdiMethod method, UnitSystem units,
              std::index_sequence<Stat...>)
{
    const auto add = [&](const Statistic &s, Value (*value)(const StandSummaryRow &)) {
        if (!removals || s.removals)
            columns.append({label.toLower() + QLatin1Char('_') + QLatin1String(s.key), label, QLatin1String(s.name),
                            UnitLabel(s.quantity, units), s.decimals, value, s.quantity, definitionOf(s, label, method, units)});
    };
    (add(kStatistics[Stat], &cell<Group, Stat>), ...);
}

QString paiWords(const char *name, const char *statistic, UnitSystem units)
{
    const QString conversion = ConversionWords(Quantity::VolumeIncrementPerArea, units);
    return QStringLiteral("Periodic annual increment of %1 per hectare: (%2 before harvest at the next cycle - %2 after harvest at this "
                          "cycle) / the years between them; blank on the last row.")
               .arg(QLatin1String(name), QLatin1String(statistic)) +
           (conversion.isEmpty() ? QString() : QLatin1Char(' ') + conversion);
}
constexpr qint16 kTotalSeriesColour = 13;
constexpr qint32 kChartDivisions = 8;

}  // namespace

QString SummaryGroupTitle(const QString &group)
{
    if (group == QLatin1String("Before"))
        return QStringLiteral("Before harvest");
    if (group == QLatin1String("Removed"))
        return QStringLiteral("Removals");
    if (group == QLatin1String("After"))
        return QStringLiteral("After harvest");
    if (group == QLatin1String("PAI"))
        return QStringLiteral("Periodic annual increment");
    if (group == QLatin1String("Harvested"))
        return QStringLiteral("Harvested trees");
    return QString();
}

QString SummaryColumn::header() const
{
    if (group.isEmpty())
        return name;
    return group + QLatin1Char(' ') + name + QStringLiteral(" (") + unit + QLatin1Char(')');
}

QList<SummaryColumn> StandSummaryColumns(RunKind kind, UnitSystem units, SdiMethod method)
{
    QList<SummaryColumn> columns;
    columns.append({QStringLiteral("year"), QString(), QStringLiteral("Year"), QString(), 0,
                    [](const StandSummaryRow &r) { return Value(r.year); }, Quantity::None,
                    QStringLiteral("The calendar year of the cycle (Cycle_Year of its header).")});
    columns.append({QStringLiteral("cycle"), QString(), QStringLiteral("Cycle"), QString(), 0,
                    [](const StandSummaryRow &r) { return Value(r.cycle); }, Quantity::None,
                    QStringLiteral("The cycle number of the run's list.")});
    constexpr auto all = std::make_index_sequence<std::size(kStatistics)>();
    if (kind == RunKind::Harvested) {
        addGroup<0>(columns, QStringLiteral("Harvested"), false, method, units, all);
        return columns;
    }
    addGroup<0>(columns, QStringLiteral("Before"), false, method, units, all);
    addGroup<1>(columns, QStringLiteral("Removed"), true, method, units, all);
    addGroup<2>(columns, QStringLiteral("After"), false, method, units, all);
    const QString paiUnit = UnitLabel(Quantity::VolumeIncrementPerArea, units);
    columns.append({QStringLiteral("pai_gtv"), QStringLiteral("PAI"), QStringLiteral("GTV"), paiUnit, 2,
                    [](const StandSummaryRow &r) { return r.paiTotalVolume; }, Quantity::VolumeIncrementPerArea,
                    paiWords("gross total volume", "GTV", units)});
    columns.append({QStringLiteral("pai_nmv"), QStringLiteral("PAI"), QStringLiteral("NMV"), paiUnit, 2,
                    [](const StandSummaryRow &r) { return r.paiNetMerchVolume; }, Quantity::VolumeIncrementPerArea,
                    paiWords("net merchantable volume", "NMV", units)});
    return columns;
}

std::optional<double> SummaryColumn::shown(const StandSummaryRow &row, UnitSystem units) const
{
    const Value v = value(row);
    return v ? Value(ToUnits(*v, quantity, units)) : Value();
}

QString SdiMethodDescription(SdiMethod method, UnitSystem units)
{
    return sdiWords(method, units);
}

QString StandSummaryTitle(const RunKey &run)
{
    return QStringLiteral("Stand summary: ") + run.displayName();
}

TableDocument StandSummaryDocument(const StandSummary &summary, UnitSystem units)
{
    DataTable table;
    table.name = QStringLiteral("Stand summary");
    table.title = StandSummaryTitle(summary.run);
    const QList<SummaryColumn> columns = StandSummaryColumns(summary.run.kind, units, summary.sdiMethod);
    for (const SummaryColumn &c : columns) {
        TableColumn column;
        column.key = c.key;
        column.heading = c.group.isEmpty() ? c.name : c.group + QLatin1Char(' ') + c.name;
        column.unit = c.unit;
        column.decimals = c.group.isEmpty() ? -1 : c.decimals;
        column.group = SummaryGroupTitle(c.group);
        column.label = c.name;
        column.definition = c.definition;
        table.columns.append(column);
    }
    for (const StandSummaryRow &row : summary.rows) {
        TableRow cells;
        for (const SummaryColumn &c : columns) {
            const Value v = c.shown(row, units);
            cells.append(v ? QVariant(*v) : QVariant());
        }
        table.rows.append(cells);
    }
    TableDocument document;
    document.title = table.title;
    document.tables.append(table);
    for (const RunInfo &source : summary.sources)
        document.runs.append(TableSourceOf(source));
    document.units = UnitSystemName(units);
    document.facts.append({QStringLiteral("SDI method"), SdiMethodDescription(summary.sdiMethod, units)});
    document.made = TableMadeNow();
    return document;
}

ChartData StandSummaryChart(const StandSummary &summary, qsizetype column, UnitSystem units)
{
    const SummaryColumn c = StandSummaryColumns(summary.run.kind, units, summary.sdiMethod).at(column);
    QList<std::pair<double, double>> points;  // year, value
    for (const StandSummaryRow &row : summary.rows) {
        if (const Value v = c.shown(row, units))
            points.append({static_cast<double>(row.year), *v});
    }
    ChartData chart;
    chart.setKind(ChartData::Kind::TimeLines);
    chart.ChartReset(9);
    chart.ChartSeriesCount(1);
    chart.ChartPointCount(static_cast<qint16>(points.size()));
    chart.ChartSeries(1);
    double lowest = 0;
    double highest = 0;
    for (qsizetype p = 0; p < points.size(); ++p) {
        chart.ChartPoint(static_cast<qint16>(p + 1));
        chart.ChartValue(points[p].second);
        chart.ChartPointX(points[p].first);
        lowest = std::min(lowest, points[p].second);
        highest = std::max(highest, points[p].second);
    }
    chart.ChartSeriesLegend(1, c.header());
    // The colour of the composition's "Total" series: the summary is the stand as a whole.
    chart.ChartSeriesColour(1, SpeciesColourIndex(kTotalSeriesColour));

    double first = points.isEmpty() ? 0 : points.first().first;
    double last = first;
    for (const auto &p : std::as_const(points)) {
        first = std::min(first, p.first);
        last = std::max(last, p.first);
    }
    qint32 ticks = kChartDivisions;
    NiceAxisScale(first, last, ticks);
    chart.ChartXAxisMin(first);
    chart.ChartXAxisMax(last);
    chart.ChartXAxisTicks(ticks);

    // The axis starts at 0, or below it for a negative increment.
    if (lowest < 0) {
        double zero = 0;
        qint32 below = kChartDivisions;
        lowest = -lowest;
        NiceAxisScale(zero, lowest, below);
        lowest = -lowest;
    }
    double zero = 0;
    ticks = kChartDivisions;
    NiceAxisScale(zero, highest, ticks);
    chart.ChartYAxisMin(lowest);
    chart.ChartYAxisMax(highest);
    chart.ChartYAxisTicks(ticks);

    chart.ChartTopTitle(summary.run.runId + QStringLiteral(": ") + SummaryGroupTitle(c.group) + QLatin1Char(' ') + c.name);
    chart.ChartLeftTitle(c.name + QStringLiteral(" (") + c.unit + QLatin1Char(')'));
    chart.ChartBottomTitle(QStringLiteral("Year"));
    chart.ChartGrid(1);
    return chart;
}

}  // namespace sendrel
