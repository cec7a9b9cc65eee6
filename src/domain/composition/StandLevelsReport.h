#pragma once

#include "domain/composition/StandLevelsSeries.h"
#include "domain/output/ReportFile.h"
#include "domain/table/TableModel.h"
#include "domain/units/Units.h"

#include <QList>
#include <QString>
#include <QtGlobal>

#include <functional>
#include <optional>

namespace sendrel {

class RunStore;
class UserQuestions;

// What "View Report" of a composition window works on.
struct StandLevelsReportRequest {
    QString This_RunId;
    QString This_SorH;
    // In: the window's description of the run. Out: with the run's parameters appended (on every
    // call, also a cancelled one), then, once the dialog is answered, its description.
    QString This_RunDesc;
    StandLevelsStatistic statistic = StandLevelsStatistic::Sph;  // the option that is on
    QString title;  // the title box of that option: what the dialog proposes
    // The cycles and species that CalcStandLevelsReport found for the window.
    QList<CycleRow> CycleRS;
    QList<qint64> SpeciesListRS;
    // The numbers, when the caller has just read them (the headless tool); else the report reads
    // them in its transaction, as the run stands then.
    std::optional<StandLevelsCycleSums> sums;
    QString reportPath;  // where the report file goes; "" for the text alone
    // The frame's mouse pointer (0 default, 11 hourglass), up once the dialog is answered.
    std::function<void(int pointer)> SetMousePointer;
};

// What the viewer is to show of a compiled report.
struct CompiledStandLevelsReport {
    bool compiled = false;  // false: the user cancelled the dialog, nothing was done
    QString ReportFile;  // "" when no path was given
    QString text;  // the report's text
    qint16 ReportType = ReportKind::Species;
    qint16 ReportOrientation = 1;  // 1 portrait below 5 species, 2 landscape from 5
    qint16 columns = 0;
};

// The composition report of one statistic, everything but the windows: the run's parameters
// appended to the description, title and description asked through questions, then, reading the
// run as of one moment, Species2, Report_Header and one Stand_Levels_Report row per cycle (the
// stand as imported: up to 12 column pairs, "Others: " from the twelfth species, "Total:"),
// Report_Detail emptied, and the report text and file made from them. Fails (SendrelError, told
// with ReportFailureMessage) with ErrNo::NothingToReport for a run without cycles or species,
// ErrNo::RunMissing for a run that is not (or no longer) in the database, before any table is
// touched; as the generator fails; or as the database does.
CompiledStandLevelsReport CompileStandLevelsReport(RunStore &db, UserQuestions &questions, StandLevelsReportRequest &request,
                                                   const ReportClock &clock = ReportClockNow);

// One row of Stand_Levels_Report as the report writes it: the year, then a column per species of
// its own (its code), "Others: " from the twelfth species, "Total:". A species without trees in
// the cycle has 0.
struct StandLevelsReportRow {
    qint32 year = 0;
    QStringList headings;
    QList<double> values;
};
QList<StandLevelsReportRow> StandLevelsReportRows(const RunStore &db, const QList<CycleRow> &cycles, const QList<qint64> &species,
                                                  const StandLevelsCycleSums &sums, StandLevelsStatistic statistic);

// The report's table of one statistic for an export: "Year", then the report's columns with the
// statistic's unit ("FD (SPH)", "Total (sq.m/ha)"), the numbers unrounded.
// In imperial units the numbers are per acre (TPA, sq.ft/acre, cu.ft/acre); each column has its definition.
DataTable StandLevelsTable(const RunStore &db, const StandLevelsCycleSums &sums, StandLevelsStatistic statistic,
                           UnitSystem units = UnitSystem::Metric);
// The export of a composition: a table of each statistic (SPH, basal area, GTV), and as the one
// table of a CSV file that of shown (gross total volume for the unused total volume); the run with
// its import date, the units.
TableDocument StandLevelsDocument(RunStore &db, const StandLevelsCycleSums &sums, StandLevelsStatistic shown, const RunKey &run,
                                  UnitSystem units = UnitSystem::Metric);

// "SL_SPH", "SL_BASAL_AREA", "SL_MERCH_VOL" (gross total volume) or "SL_TOTAL_VOL".
QString StandLevelsReportType(StandLevelsStatistic statistic);
// What the dialog proposes as description: "Printed By:  ", two line ends, the run's text.
QString StandLevelsReportDescription(const QString &runDesc);

}  // namespace sendrel
