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
template <int Column> Value summaryCell(const ComparedRun &run, qint32 year)
{
    const auto row = run.byYear.constFind(year);
    if (row == run.byYear.constEnd())
        return std::nullopt;
    static const SummaryColumn column = StandSummaryColumns(RunKind::Standing).at(Column);
    return column.value(*row);
}

template <bool Yield, bool Net> Value accumulated(const ComparedRun &run, qint32 year)
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

template <std::size_t... Column> void addSummaryMeasures(QList<CompareMeasure> &measures, std::index_sequence<Column...>)
{
    const QList<SummaryColumn> columns = StandSummaryColumns(RunKind::Standing);
    const auto add = [&](std::size_t c, Value (*value)(const ComparedRun &, qint32)) {
        if (c >= static_cast<std::size_t>(columns.size()))
            return;
        const SummaryColumn &s = columns.at(static_cast<qsizetype>(c));
        if (s.group == QLatin1String("Before") || s.group == QLatin1String("Removed") || s.group == QLatin1String("After"))
            measures.append({s.key, SummaryGroupTitle(s.group), s.name, s.unit, s.decimals, value});
    };
    (add(Column, &summaryCell<static_cast<int>(Column)>), ...);
}

// Enough for every column of a standing run's summary; those beyond it are skipped.
constexpr std::size_t kSummaryColumnsAtMost = 32;

QList<CompareMeasure> makeMeasures()
{
    QList<CompareMeasure> measures;
    addSummaryMeasures(measures, std::make_index_sequence<kSummaryColumnsAtMost>());
    const QString volume = QStringLiteral("cu.m/ha");
    measures.append({QStringLiteral("cumulative_gtv"), QStringLiteral("Cumulative removals"), QStringLiteral("GTV"), volume, 1,
                     &accumulated<false, false>});
    measures.append({QStringLiteral("cumulative_nmv"), QStringLiteral("Cumulative removals"), QStringLiteral("NMV"), volume, 1,
                     &accumulated<false, true>});
    measures.append({QStringLiteral("yield_gtv"), QStringLiteral("Total yield"), QStringLiteral("GTV"), volume, 1, &accumulated<true, false>});
    measures.append({QStringLiteral("yield_nmv"), QStringLiteral("Total yield"), QStringLiteral("NMV"), volume, 1, &accumulated<true, true>});
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
    ComparedRun c{run, description, {}, {}};
    for (StandSummaryRow row : summary.rows) {
        if (c.byYear.contains(row.year))
            continue;   // a second cycle of a year: its removals and after-harvest stand are the year's, already there
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

QStringList Comparison::runIds() const
{
    QStringList ids;
    for (const ComparedRun &r : runs)
        ids.append(r.run.runId);
    return ids;
}

const QList<CompareMeasure> &CompareMeasures()
{
    static const QList<CompareMeasure> measures = makeMeasures();
    return measures;
}

Comparison ReadComparison(RunStore &db, const QStringList &runIds, const QString &base)
{
    if (runIds.size() < kFewestComparedRuns || runIds.size() > kMostComparedRuns)
        throw refused(QStringLiteral("A comparison takes %1 to %2 runs, not %3.").arg(kFewestComparedRuns).arg(kMostComparedRuns).arg(runIds.size()));
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
            throw refused(QStringLiteral("Runs %1 and %2 have no year in common; there is nothing to compare.")
                              .arg(b.run.runId, r.run.runId));
        }
    }
    comparison.years = QList<qint32>(all.cbegin(), all.cend());
    std::sort(comparison.years.begin(), comparison.years.end());
    return comparison;
}

CompareCell CompareValue(const Comparison &comparison, const CompareMeasure &measure, int run, qint32 year)
{
    CompareCell cell;
    cell.value = measure.value(comparison.runs.at(run), year);
    const Value base = measure.value(comparison.baseRun(), year);
    if (!cell.value || !base)
        return cell;
    cell.difference = *cell.value - *base;
    cell.baseIsZero = *base == 0;
    if (!cell.baseIsZero)
        cell.percent = 100.0 * *cell.difference / *base;
    return cell;
}

}  // namespace sendrel
