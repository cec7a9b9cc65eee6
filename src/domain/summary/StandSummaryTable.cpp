#include "domain/summary/StandSummaryTable.h"

#include "base/ToolBox.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace sendrel {

namespace {

using Value = std::optional<double>;

// The statistics of one group of sums, as columns.
Value sph(const StandSums &s) { return s.sph; }
Value basalArea(const StandSums &s) { return s.basalArea; }
Value qmd(const StandSums &s) { return QuadraticMeanDiameter(s.basalArea, s.sph); }
Value sdi(const StandSums &s) { return StandDensityIndex(s.basalArea, s.sph); }
Value totalVolume(const StandSums &s) { return s.totalVolume; }
Value grossMerch(const StandSums &s) { return s.grossMerchVolume; }
Value netMerch(const StandSums &s) { return s.netMerchVolume; }

struct Statistic {
    const char *key;
    const char *name;
    const char *unit;
    int decimals;
    Value (*of)(const StandSums &);
    bool removals;   // shown for the removed trees too
};

const Statistic kStatistics[] = {
    {"sph", "SPH", "stems/ha", 0, sph, true},
    {"basal_area", "BA", "sq.m/ha", 2, basalArea, true},
    {"qmd", "QMD", "cm", 1, qmd, true},
    {"sdi", "SDI", "stems/ha", 0, sdi, false},
    {"gtv", "GTV", "cu.m/ha", 1, totalVolume, true},
    {"gmv", "GMV", "cu.m/ha", 1, grossMerch, true},
    {"nmv", "NMV", "cu.m/ha", 1, netMerch, true},
};

// Which sums of a row a group reads. Captureless, so that a column holds a plain function.
template <int Group, std::size_t Stat> Value cell(const StandSummaryRow &row)
{
    const Statistic &statistic = kStatistics[Stat];
    switch (Group) {
    case 0:
        return statistic.of(row.before);
    case 1:
        return row.removed ? statistic.of(*row.removed) : Value();
    default:
        return statistic.of(row.after);
    }
}

template <int Group, std::size_t... Stat>
void addGroup(QList<SummaryColumn> &columns, const QString &label, bool removals, std::index_sequence<Stat...>)
{
    const auto add = [&](const Statistic &s, Value (*value)(const StandSummaryRow &)) {
        if (!removals || s.removals)
            columns.append({label.toLower() + QLatin1Char('_') + QLatin1String(s.key), label, QLatin1String(s.name),
                            QLatin1String(s.unit), s.decimals, value});
    };
    (add(kStatistics[Stat], &cell<Group, Stat>), ...);
}

const QString kPaiUnit = QStringLiteral("cu.m/ha/yr");
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

QList<SummaryColumn> StandSummaryColumns(RunKind kind)
{
    QList<SummaryColumn> columns;
    columns.append({QStringLiteral("year"), QString(), QStringLiteral("Year"), QString(), 0,
                    [](const StandSummaryRow &r) { return Value(r.year); }});
    columns.append({QStringLiteral("cycle"), QString(), QStringLiteral("Cycle"), QString(), 0,
                    [](const StandSummaryRow &r) { return Value(r.cycle); }});
    constexpr auto all = std::make_index_sequence<std::size(kStatistics)>();
    if (kind == RunKind::Harvested) {
        addGroup<0>(columns, QStringLiteral("Harvested"), false, all);
        return columns;
    }
    addGroup<0>(columns, QStringLiteral("Before"), false, all);
    addGroup<1>(columns, QStringLiteral("Removed"), true, all);
    addGroup<2>(columns, QStringLiteral("After"), false, all);
    columns.append({QStringLiteral("pai_gtv"), QStringLiteral("PAI"), QStringLiteral("GTV"), kPaiUnit, 2,
                    [](const StandSummaryRow &r) { return r.paiTotalVolume; }});
    columns.append({QStringLiteral("pai_nmv"), QStringLiteral("PAI"), QStringLiteral("NMV"), kPaiUnit, 2,
                    [](const StandSummaryRow &r) { return r.paiNetMerchVolume; }});
    return columns;
}

QString StandSummaryTitle(const RunKey &run)
{
    return QStringLiteral("Stand summary: ") + run.displayName();
}

TableDocument StandSummaryDocument(const StandSummary &summary)
{
    DataTable table;
    table.name = QStringLiteral("Stand summary");
    table.title = StandSummaryTitle(summary.run);
    const QList<SummaryColumn> columns = StandSummaryColumns(summary.run.kind);
    for (const SummaryColumn &c : columns) {
        TableColumn column;
        column.key = c.key;
        column.heading = c.group.isEmpty() ? c.name : c.group + QLatin1Char(' ') + c.name;
        column.unit = c.unit;
        column.decimals = c.group.isEmpty() ? -1 : c.decimals;
        column.group = SummaryGroupTitle(c.group);
        column.label = c.name;
        table.columns.append(column);
    }
    for (const StandSummaryRow &row : summary.rows) {
        TableRow cells;
        for (const SummaryColumn &c : columns) {
            const Value v = c.value(row);
            cells.append(v ? QVariant(*v) : QVariant());
        }
        table.rows.append(cells);
    }
    TableDocument document;
    document.title = table.title;
    document.tables.append(table);
    document.runs.append({summary.run.runId, summary.run.word(), QString(), QString()});
    document.made = TableMadeNow();
    return document;
}

ChartData StandSummaryChart(const StandSummary &summary, qsizetype column)
{
    const SummaryColumn c = StandSummaryColumns(summary.run.kind).at(column);
    QList<std::pair<double, double>> points;   // year, value
    for (const StandSummaryRow &row : summary.rows) {
        if (const Value v = c.value(row))
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
