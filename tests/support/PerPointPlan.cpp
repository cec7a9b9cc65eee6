#include "PerPointPlan.h"

#include "base/Numbers.h"
#include "base/ToolBox.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace sendrel {

namespace {

// Blanks at both ends, and only blanks, as the cycle list trims them.
QString trimBlanks(QString text)
{
    while (text.startsWith(QLatin1Char(' ')))
        text.remove(0, 1);
    while (text.endsWith(QLatin1Char(' ')))
        text.chop(1);
    return text;
}

}  // namespace

StandLevelsSums ReadStandLevelsSumsPerPoint(RunStore &db, const QString &This_RunId, const QString &This_SorH)
{
    StandLevelsSums sums;
    sums.kind = KindOfText(This_SorH);
    sums.passes = sums.kind == RunKind::Standing ? 2 : 1;
    const QString kind = KindLetter(sums.kind);
    clsDBEngine &engine = db.DBEngine;
    const QString run = QuoteSQL(This_RunId);
    const QString constant = DefaultText(kBasalAreaFactor);

    // Without ORDER BY the table's order would be the planner's choice: both lists say theirs.
    engine.SQLString = QStringLiteral("Select * from Model_Header where Run_Id = '") + trimBlanks(run) + QStringLiteral("'")
                       + QStringLiteral(" and Standing_Harvested = '") + kind + QStringLiteral("'") + QStringLiteral(" ORDER BY rowid");
    for (Recordset cycleRS = engine.RetreiveRecords(); !cycleRS.Eof(); cycleRS.MoveNext())
        sums.cycles.append({cycleRS.Fields(QStringLiteral("Cycle")).toInt(), cycleRS.Fields(QStringLiteral("Cycle_Year")).toInt()});
    if (sums.cycles.isEmpty())
        return sums;
    engine.SQLString = QStringLiteral("SELECT species_code FROM Model_Entries WHERE ") + QStringLiteral("run_id = '") + run
                       + QStringLiteral("' AND Standing_Harvested = '") + kind + QStringLiteral("' GROUP BY species_code ORDER BY MIN(rowid)");
    for (Recordset speciesRS = engine.RetreiveRecords(); !speciesRS.Eof(); speciesRS.MoveNext())
        sums.species.append(speciesRS.Fields(0).toLongLong());
    if (sums.species.isEmpty())
        return sums;

    const QString oneKind = QStringLiteral("SELECT cycle_number, model_entries.Species_Code, ") + QStringLiteral("Sum([Trees_per_ha]) AS SPH, ")
                            + QStringLiteral("Sum([current_diameter]*[current_diameter]*") + constant + QStringLiteral("*[trees_per_ha]) AS BasalArea, ")
                            + QStringLiteral("Sum(([MerchVolLessDWB]*[trees_per_ha])) AS MerchVol, ")
                            + QStringLiteral("Sum(([total_volume]*[trees_per_ha])) AS TotalVol  ") + QStringLiteral("FROM model_entries  ")
                            + QStringLiteral("WHERE [Model_Entries].[run_id] = '") + run + QStringLiteral("' ")
                            + QStringLiteral(" AND [Model_Entries].[Standing_Harvested] = '") + kind + QStringLiteral("' ")
                            + QStringLiteral("GROUP BY cycle_number, model_entries.Species_Code");
    const QString sign = QStringLiteral("(CASE WHEN [Model_Entries].[Standing_Harvested]='S' THEN 1 ELSE -1 END)");
    const QString lessHarvest =
        QStringLiteral("SELECT Model_Header.Cycle_Year, model_entries.Species_Code, ") + QStringLiteral("Sum(") + sign + QStringLiteral("*[Trees_per_ha]) AS SPH, ")
        + QStringLiteral("Sum(") + sign + QStringLiteral("*[current_diameter]*[current_diameter]* ") + constant + QStringLiteral("*[trees_per_ha]) AS BasalArea,  ")
        + QStringLiteral("Sum(") + sign + QStringLiteral("*([MerchVolLessDWB]*[trees_per_ha])) AS MerchVol, ")
        + QStringLiteral("Sum(") + sign + QStringLiteral("*([total_volume]*[trees_per_ha])) AS TotalVol  ")
        + QStringLiteral("FROM model_entries INNER JOIN Model_Header ON (model_entries.Standing_Harvested = Model_Header.Standing_Harvested) "
                         "AND (model_entries.Cycle_Number = Model_Header.Cycle) AND (model_entries.Run_Id = Model_Header.Run_Id) ")
        + QStringLiteral("WHERE [Model_Entries].[run_id] = '") + run + QStringLiteral("' ")
        + QStringLiteral("GROUP BY Model_Header.Cycle_Year, model_entries.Species_Code");

    for (const CycleRow &c : std::as_const(sums.cycles)) {
        for (int pass = 1; pass <= sums.passes; ++pass) {
            const QString tail = pass == 2 ? QStringLiteral(" HAVING Model_Header.Cycle_Year = ") + QString::number(c.year)
                                           : QStringLiteral(" HAVING Cycle_number = ") + QString::number(c.cycle);
            for (qint64 code : std::as_const(sums.species)) {
                engine.SQLString = (pass == 2 ? lessHarvest : oneKind) + tail + QStringLiteral(" and species_code = ") + QString::number(code);
                const Recordset entriesRS = engine.RetreiveRecords();
                StandLevelsCell cell;
                if (!entriesRS.Eof()) {
                    cell.found = true;
                    cell.sph = entriesRS.Fields(QStringLiteral("Sph")).toDouble();
                    cell.basalArea = entriesRS.Fields(QStringLiteral("BasalArea")).toDouble();
                    cell.totalVol = entriesRS.Fields(QStringLiteral("TotalVol")).toDouble();
                }
                sums.cells.append(cell);
            }
        }
    }
    return sums;
}

int DifferingCells(const StandLevelsSums &a, const StandLevelsSums &b)
{
    if (a.kind != b.kind || a.passes != b.passes || a.species != b.species || a.cells.size() != b.cells.size() || a.cycles.size() != b.cycles.size())
        return -1;
    for (qsizetype c = 0; c < a.cycles.size(); ++c) {
        if (a.cycles[c].cycle != b.cycles[c].cycle || a.cycles[c].year != b.cycles[c].year)
            return -1;
    }
    const int species = static_cast<int>(a.species.size());
    int differing = 0;
    for (int point = 0; point < a.passes * a.cycles.size(); ++point) {
        const bool secondPass = point % a.passes == 1;
        for (int s = 0; s < species; ++s) {
            const StandLevelsCell &x = a.cell(point, s);
            const StandLevelsCell &y = b.cell(point, s);
            const StandLevelsCell &before = a.cell(secondPass ? point - 1 : point, s);
            auto same = [&](double u, double v, double scale) {
                if (!secondPass)
                    return std::memcmp(&u, &v, sizeof(double)) == 0;
                return std::abs(u - v) <= 1e-10 * std::max({1.0, std::abs(scale), std::abs(u), std::abs(v)});
            };
            if (x.found != y.found || !same(x.sph, y.sph, before.sph) || !same(x.basalArea, y.basalArea, before.basalArea)
                || !same(x.totalVol, y.totalVol, before.totalVol))
                ++differing;
        }
    }
    return differing;
}

}  // namespace sendrel
