#include "domain/compare/Comparison.h"

#include "base/SendrelError.h"
#include "domain/summary/StandSummaryTable.h"
#include "store/RunStore.h"

#include <QSet>

#include <algorithm>
#include <utility>

namespace sendrel {

namespace {

const QString kSource = QStringLiteral("Comparison");

SendrelError refused(const QString &text)
{
    return SendrelError(ErrNo::InvalidCall, kSource, text);
}

using Value = std::optional<double>;

// The summary's columns of one part of the stand, by their index among the standing run's
// columns; a measure holds a plain function, so each is a template instance.
template <int Column>
Value summaryCell(const ComparedRun &run, qint32 year)
{
    const auto row = run.byYear.constFind(year);
    if (row == run.byYear.constEnd())
        return std::nullopt;
    static const SummaryColumn column = StandSummaryColumns(RunKind::Standing).at(Column);
    return column.value(*row);
}

template <bool Yield, bool Net>
Value accumulated(const ComparedRun &run, qint32 year)
{
    const auto row = run.byYear.constFind(year);
    if (row == run.byYear.constEnd())
        return std::nullopt;
    const StandSums &taken = run.cumulativeRemovals[year];
    double v = Net ? taken.netMerchVolume : taken.totalVolume;
    if (Yield)
        v += Net ? row->after.netMerchVolume : row->after.totalVolume;
    return v;
}

template <std::size_t... Column>
void addSummaryMeasures(QList<CompareMeasure> &measures, UnitSystem units, std::index_sequence<Column...>)
{
    // The comparison's SDI is Reineke's, as the kept sums give it.
    const QList<SummaryColumn> columns = StandSummaryColumns(RunKind::Standing, units, SdiMethod::Reineke);
    const auto add = [&](std::size_t c, Value (*value)(const ComparedRun &, qint32)) {
        if (c >= static_cast<std::size_t>(columns.size()))
            return;
        const SummaryColumn &s = columns.at(static_cast<qsizetype>(c));
        if (s.group == QLatin1String("Before") || s.group == QLatin1String("Removed") || s.group == QLatin1String("After"))
            measures.append({s.key, SummaryGroupTitle(s.group), s.name, s.unit, s.decimals, value, s.quantity, units, s.definition});
    };
    (add(Column, &summaryCell<static_cast<int>(Column)>), ...);
}

// Enough for every column of a standing run's summary; those beyond it are skipped.
constexpr std::size_t kSummaryColumnsAtMost = 32;

QList<CompareMeasure> makeMeasures(UnitSystem units)
{
    QList<CompareMeasure> measures;
    addSummaryMeasures(measures, units, std::make_index_sequence<kSummaryColumnsAtMost>());
    const Quantity volume = Quantity::VolumePerArea;
    const QString unit = UnitLabel(volume, units);
    const QString conversion = ConversionWords(volume, units);
    const QString gtv = QStringLiteral("gross total volume per hectare (Total_Volume x Trees_per_ha)");
    const QString nmv =
        QStringLiteral("net merchantable volume per hectare (gross merchantable less the deductions for decay, waste and breakage)");
    const QString converted = conversion.isEmpty() ? QString() : QLatin1Char(' ') + conversion;
    const auto cumulative = [&](const QString &what) {
        return QStringLiteral("Cumulative removals of %1: the sum of the removals (the harvested list's trees of the calendar year) of "
                              "every year of the run up to and with this one; 0 for a run without a harvested list.")
                   .arg(what) +
               converted;
    };
    const auto yield = [&](const QString &what) {
        return QStringLiteral(
                   "Total yield of %1: the stand after harvest in the year plus the cumulative removals up to and with the year.")
                   .arg(what) +
               converted;
    };
    const QString removals = QStringLiteral("Cumulative removals");
    const QString total = QStringLiteral("Total yield");
    measures.append({QStringLiteral("cumulative_gtv"), removals, QStringLiteral("GTV"), unit, 1, &accumulated<false, false>, volume, units,
                     cumulative(gtv)});
    measures.append({QStringLiteral("cumulative_nmv"), removals, QStringLiteral("NMV"), unit, 1, &accumulated<false, true>, volume, units,
                     cumulative(nmv)});
    measures.append(
        {QStringLiteral("yield_gtv"), total, QStringLiteral("GTV"), unit, 1, &accumulated<true, false>, volume, units, yield(gtv)});
    measures.append(
        {QStringLiteral("yield_nmv"), total, QStringLiteral("NMV"), unit, 1, &accumulated<true, true>, volume, units, yield(nmv)});
    return measures;
}

StandSums &operator+=(StandSums &a, const StandSums &b)
{
    a.sph += b.sph;
    a.basalArea += b.basalArea;
    a.totalVolume += b.totalVolume;
    a.grossMerchVolume += b.grossMerchVolume;
    a.netMerchVolume += b.netMerchVolume;
    return a;
}

ComparedRun compared(RunStore &db, const RunKey &run, const QString &description)
{
    const StandSummary summary = ReadStandSummary(db, run);
    ComparedRun c{run, description, summary.sources, {}, {}};
    for (StandSummaryRow row : summary.rows) {
        if (c.byYear.contains(row.year))
            continue;  // a second cycle of a year: its removals and after-harvest stand are the year's, already there
        if (!row.removed)
            row.removed = StandSums();
        c.byYear.insert(row.year, row);
    }
    StandSums taken;
    for (auto row = c.byYear.cbegin(); row != c.byYear.cend(); ++row) {
        taken += *row->removed;
        c.cumulativeRemovals.insert(row.key(), taken);
    }
    return c;
}

}  // namespace

QString CompareMeasure::title() const
{
    return group + QLatin1Char(' ') + name;
}

std::optional<double> CompareMeasure::shown(const ComparedRun &run, qint32 year) const
{
    const Value v = value(run, year);
    return v ? Value(ToUnits(*v, quantity, units)) : Value();
}

QStringList Comparison::runIds() const
{
    QStringList ids;
    for (const ComparedRun &r : runs)
        ids.append(r.run.runId);
    return ids;
}

const QList<CompareMeasure> &CompareMeasures(UnitSystem units)
{
    static const QList<CompareMeasure> metric = makeMeasures(UnitSystem::Metric);
    static const QList<CompareMeasure> imperial = makeMeasures(UnitSystem::Imperial);
    return units == UnitSystem::Imperial ? imperial : metric;
}

Comparison ReadComparison(RunStore &db, const QStringList &runIds, const QString &base, UnitSystem units)
{
    if (runIds.size() < kFewestComparedRuns || runIds.size() > kMostComparedRuns)
        throw refused(
            QStringLiteral("A comparison takes %1 to %2 runs, not %3.").arg(kFewestComparedRuns).arg(kMostComparedRuns).arg(runIds.size()));
    int baseIndex = base.isEmpty() ? 0 : -1;
    for (qsizetype i = 0; i < runIds.size(); ++i) {
        for (qsizetype j = 0; j < i; ++j) {
            if (runIds[i].compare(runIds[j], Qt::CaseInsensitive) == 0)
                throw refused(QStringLiteral("Run %1 is named twice; each run is compared once.").arg(runIds[i]));
        }
        if (baseIndex < 0 && runIds[i].compare(base, Qt::CaseInsensitive) == 0)
            baseIndex = static_cast<int>(i);
    }
    if (baseIndex < 0)
        throw refused(QStringLiteral("The base %1 is not one of the runs compared.").arg(base));

    Comparison comparison;
    comparison.units = units;
    for (const QString &id : runIds) {
        const RunKey asGiven{id, RunKind::Standing};
        const QString stored = db.storedRunId(asGiven);
        if (stored.isNull())
            throw refused(QStringLiteral("There is no run %1 in the database.").arg(asGiven.displayName()));
        const QList<RunRow> rows = db.runs(stored);
        QString description;
        for (const RunRow &r : rows) {
            if (r.key.kind == RunKind::Standing)
                description = r.description;
        }
        comparison.runs.append(compared(db, {stored, RunKind::Standing}, description));
    }
    return WithBase(std::move(comparison), baseIndex);
}

Comparison WithBase(Comparison comparison, int base)
{
    comparison.base = base;
    QSet<qint32> all;
    const ComparedRun &b = comparison.runs.at(base);
    for (const ComparedRun &r : std::as_const(comparison.runs)) {
        bool common = false;
        for (auto y = r.byYear.keyBegin(); y != r.byYear.keyEnd(); ++y) {
            all.insert(*y);
            common = common || b.byYear.contains(*y);
        }
        if (!common) {
            throw refused(
                QStringLiteral("Runs %1 and %2 have no year in common; there is nothing to compare.").arg(b.run.runId, r.run.runId));
        }
    }
    comparison.years = QList<qint32>(all.cbegin(), all.cend());
    std::sort(comparison.years.begin(), comparison.years.end());
    return comparison;
}

CompareCell CompareValue(const Comparison &comparison, const CompareMeasure &measure, int run, qint32 year)
{
    CompareCell cell;
    // Worked out from the stored values, then shown in the measure's units: a percentage has none.
    const Value value = measure.value(comparison.runs.at(run), year);
    const Value base = measure.value(comparison.baseRun(), year);
    if (value)
        cell.value = ToUnits(*value, measure.quantity, measure.units);
    if (!value || !base)
        return cell;
    const double difference = *value - *base;
    cell.difference = ToUnits(difference, measure.quantity, measure.units);
    cell.baseIsZero = *base == 0;
    if (!cell.baseIsZero)
        cell.percent = 100.0 * difference / *base;
    return cell;
}

}  // namespace sendrel
