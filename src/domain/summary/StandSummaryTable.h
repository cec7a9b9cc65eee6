#pragma once

#include "domain/output/ChartData.h"
#include "domain/summary/StandSummary.h"
#include "domain/table/TableModel.h"
#include "domain/units/Units.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace sendrel {

// One column of a summary table. Standing runs: Year, Cycle, the stand before harvest (SPH, BA,
// QMD, SDI, GTV, GMV, NMV), the removals (SPH, BA, QMD, GTV, GMV, NMV), the stand after harvest (as
// before) and the periodic annual increments (GTV, NMV). Harvested runs: Year, Cycle and the
// harvested trees of each cycle (as before). A run without a harvested list keeps the columns of
// the removals, empty.
struct SummaryColumn {
    QString key;  // "before_sph": the JSON name
    QString group;  // "Before", "Removed", "After", "PAI", "Harvested"; "" for Year and Cycle
    QString name;  // "SPH", "BA", ...
    QString unit;  // "stems/ha", "trees/acre", ...; "" for Year and Cycle
    int decimals = 0;  // in the text table and on screen
    std::optional<double> (*value)(const StandSummaryRow &row) = nullptr;  // metric, as stored
    Quantity quantity = Quantity::None;
    QString definition;  // the formula in words, in the units of the column
    // The value in the units of the column.
    std::optional<double> shown(const StandSummaryRow &row, UnitSystem units) const;

    // "Before SPH (stems/ha)": a header with its unit, as exports write it.
    QString header() const;
};

QList<SummaryColumn> StandSummaryColumns(RunKind kind, UnitSystem units = UnitSystem::Metric, SdiMethod method = SdiMethod::Reineke);
// The summary as a table document in the units given: one table, its columns grouped under
// "Before harvest", "Removals", "After harvest", "Periodic annual increment" (standing) or
// "Harvested trees", each with its definition; the runs with their import dates, the units and
// the SDI method.
TableDocument StandSummaryDocument(const StandSummary &summary, UnitSystem units = UnitSystem::Metric);
// The long name of a column group, over its columns in text and print: "Before harvest" for
// "Before"; empty for Year and Cycle's.
QString SummaryGroupTitle(const QString &group);
// The method of the index in words, with its exponent and reference diameter in those units.
QString SdiMethodDescription(SdiMethod method, UnitSystem units);
// "Stand summary: R1:Standing".
QString StandSummaryTitle(const RunKey &run);

// One column over the years as a time chart: one series in the colour of the composition's
// "Total", a point for each row with a number, the years on a rounded axis, the values from 0
// (or below, for a negative increment).
ChartData StandSummaryChart(const StandSummary &summary, qsizetype column, UnitSystem units = UnitSystem::Metric);

}  // namespace sendrel
