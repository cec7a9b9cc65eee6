#include "domain/composition/StandLevelsReport.h"

#include "base/Numbers.h"
#include "base/SendrelError.h"
#include "base/UserQuestions.h"
#include "domain/output/ReportTables.h"
#include "domain/table/TableFile.h"
#include "store/RunStore.h"

#include <QRegularExpression>

#include <optional>

namespace sendrel {

namespace {

const QString kCrLf = QStringLiteral("\r\n");

constexpr int kColumnPairs = 12;  // Sp1/Value1 to Sp12/Value12
constexpr int kSpecies2Pairs = 11;  // Str_Code1/Name1 to Str_Code11/Name11
constexpr int kMostSpeciesAlone = 11;  // from the twelfth species on, "Others: " joins the rest
constexpr int kOwnColumnsWithOthers = 10;
constexpr int kLandscapeFromSpecies = 5;
// The frame's hourglass pointer.
constexpr int kPointerHourglassForReport = 11;

// The description box may give bare line feeds; the report and its table keep CR LF.
QString withCrLf(const QString &text)
{
    static const QRegularExpression bareLineFeed(QStringLiteral("(?<!\\r)\\n"));
    QString result = text;
    result.replace(bareLineFeed, kCrLf);
    return result;
}

// A number as it reaches the table through its default text: fifteen significant digits.
double throughText(double value)
{
    return DefaultText(value).toDouble();
}

double statisticOf(const StandLevelsCell &cell, StandLevelsStatistic statistic)
{
    switch (statistic) {
    case StandLevelsStatistic::Sph:
        return cell.sph;
    case StandLevelsStatistic::BasalArea:
        return cell.basalArea;
    case StandLevelsStatistic::MerchVol:
    case StandLevelsStatistic::TotalVol:
        break;
    }
    // Both volume reports read gross total volume.
    return cell.totalVol;
}

QString insertOf(const QString &head, const QString &pair, int pairs)
{
    QString columns = head;
    QString marks;
    for (int n = 0; n < head.count(QLatin1Char(',')) + 1; ++n)
        marks += n ? QStringLiteral(", ?") : QStringLiteral("?");
    for (int n = 1; n <= pairs; ++n) {
        columns += pair.arg(n);
        marks += QStringLiteral(", ?, ?");
    }
    return QStringLiteral("INSERT INTO ") + columns + QStringLiteral(") VALUES (") + marks + QLatin1Char(')');
}

// The three tables of one composition report, with statements prepared once.
class StandLevelsTableWriter {
public:
    explicit StandLevelsTableWriter(RunStore &db)
        : m_db(db),
          m_species2(db.DBEngine, insertOf(QStringLiteral("Species2 (Report_id"), QStringLiteral(", Str_Code%1, Name%1"), kSpecies2Pairs)),
          m_header(db.DBEngine,
                   QStringLiteral("INSERT INTO Report_Header (Report_id, Run_ID, Report_Type, Num_Species, Report_Title, [Desc]) "
                                  "VALUES (1, ?, ?, ?, ?, ?)")),
          m_row(db.DBEngine,
                insertOf(QStringLiteral("Stand_Levels_Report (Report_id, [Year]"), QStringLiteral(", Sp%1, Value%1"), kColumnPairs))
    {
    }

    // One pair per species up to the tenth; with eleven species the eleventh too; from twelve
    // 'Ot', 'All Other'. A code the species table lacks shows the table's first species.
    void writeSpecies2(const QList<qint64> &species)
    {
        const QList<SpeciesInfo> &table = m_db.speciesList();
        const int count = static_cast<int>(species.size());
        const int own = count > kMostSpeciesAlone ? kOwnColumnsWithOthers : count;
        m_species2.bind(1, 1);
        for (int n = 0; n < kSpecies2Pairs; ++n) {
            const int at = 2 + 2 * n;
            if (n < own && !table.isEmpty()) {
                const SpeciesInfo *s = m_db.species(species.at(n));
                const SpeciesInfo &shown = s ? *s : table.first();
                m_species2.bind(at, shown.strCode).bind(at + 1, shown.name);
            } else if (n == own && count > kMostSpeciesAlone) {
                m_species2.bind(at, QStringLiteral("Ot")).bind(at + 1, QStringLiteral("All Other"));
            } else {
                m_species2.bindNull(at).bindNull(at + 1);
            }
        }
        m_species2.run();
    }

    void writeHeader(const QString &runId, StandLevelsStatistic statistic, qint64 numSpecies, const QString &title, const QString &desc)
    {
        m_header.bind(1, runId).bind(2, StandLevelsReportType(statistic)).bind(3, numSpecies).bind(4, title).bind(5, desc).run();
    }

    void writeRows(const QList<StandLevelsReportRow> &rows)
    {
        for (const StandLevelsReportRow &row : rows) {
            m_row.bind(1, 1).bind(2, static_cast<qint64>(row.year));
            int n = 0;
            for (; n < row.headings.size(); ++n)
                m_row.bind(3 + 2 * n, row.headings.at(n)).bind(4 + 2 * n, throughText(row.values.at(n)));
            for (; n < kColumnPairs; ++n)
                m_row.bindNull(3 + 2 * n).bindNull(4 + 2 * n);
            m_row.run();
        }
    }

private:
    RunStore &m_db;
    Statement m_species2;
    Statement m_header;
    Statement m_row;
};

}  // namespace

QList<StandLevelsReportRow> StandLevelsReportRows(const RunStore &db, const QList<CycleRow> &cycles, const QList<qint64> &species,
                                                  const StandLevelsCycleSums &sums, StandLevelsStatistic statistic)
{
    const int count = static_cast<int>(species.size());
    const bool withOthers = count > kMostSpeciesAlone;
    const int own = withOthers ? kOwnColumnsWithOthers : count;
    QStringList headings;
    for (int s = 0; s < own; ++s)
        headings.append(db.SpeciesStrCode(ToInt16(static_cast<double>(species.at(s)))));
    if (withOthers)
        headings.append(QStringLiteral("Others: "));
    headings.append(QStringLiteral("Total:"));
    QList<StandLevelsReportRow> rows;
    for (const CycleRow &c : cycles) {
        StandLevelsReportRow row{c.year, headings, {}};
        double others = 0;
        double total = 0;
        for (int s = 0; s < count; ++s) {
            const StandLevelsCell cell = sums.cell(c.cycle, species.at(s));
            const double value = cell.found ? statisticOf(cell, statistic) : 0.0;
            if (cell.found)
                total += value;
            if (s < own)
                row.values.append(value);
            else if (cell.found)
                others += value;
        }
        if (withOthers)
            row.values.append(others);
        row.values.append(total);
        rows.append(row);
    }
    return rows;
}

DataTable StandLevelsTable(const RunStore &db, const StandLevelsCycleSums &sums, StandLevelsStatistic statistic, UnitSystem units)
{
    static const char *const kNames[] = {"SPH", "Basal area", "GTV", "Total volume"};
    static const Quantity kQuantities[] = {Quantity::Density, Quantity::BasalAreaPerArea, Quantity::VolumePerArea, Quantity::VolumePerArea};
    static const char *const kWords[] = {"Stems per hectare (the sum of Trees_per_ha)",
                                         "Basal area per hectare (the sum of Trees_per_ha x d x d x 0.00007853981633974, d in cm)",
                                         "Gross total volume per hectare (the sum of Total_Volume x Trees_per_ha)",
                                         "Gross total volume per hectare (the sum of Total_Volume x Trees_per_ha)"};
    static const int kDecimals[] = {0, 2, 1, 1};
    const int i = static_cast<int>(statistic);
    const Quantity quantity = kQuantities[i];
    const QString conversion = ConversionWords(quantity, units);
    const QString after = QStringLiteral(" in the cycle's standing list as imported (a harvested run: its own list).") +
                          (conversion.isEmpty() ? QString() : QLatin1Char(' ') + conversion);
    DataTable table;
    table.name = QString::fromLatin1(kNames[i]);
    table.title = QStringLiteral("Species composition: ") + table.name;
    const QList<StandLevelsReportRow> rows = StandLevelsReportRows(db, sums.cycles, sums.species, sums, statistic);
    table.columns.append(
        MakeTableColumn(QStringLiteral("year"), QStringLiteral("Year"), QString(), -1, QStringLiteral("The calendar year of the cycle.")));
    const QStringList headings = rows.isEmpty() ? QStringList() : rows.first().headings;
    for (QString heading : headings) {
        heading = heading.remove(QLatin1Char(':')).trimmed();
        const QString which = heading == QLatin1String("Total")    ? QStringLiteral(" of every species")
                              : heading == QLatin1String("Others") ? QStringLiteral(" of the species from the twelfth on")
                                                                   : QStringLiteral(" of species ") + heading;
        table.columns.append(MakeTableColumn(heading.toLower(), heading, UnitLabel(quantity, units), kDecimals[i],
                                             QLatin1String(kWords[i]) + which + after));
    }
    for (const StandLevelsReportRow &row : rows) {
        TableRow cells{QVariant(static_cast<double>(row.year))};
        for (double v : row.values)
            cells.append(ToUnits(v, quantity, units));
        table.rows.append(cells);
    }
    return table;
}

TableDocument StandLevelsDocument(RunStore &db, const StandLevelsCycleSums &sums, StandLevelsStatistic shown, const RunKey &run,
                                  UnitSystem units)
{
    TableDocument document;
    document.title = QStringLiteral("Species composition: ") + run.displayName();
    for (StandLevelsStatistic s : {StandLevelsStatistic::Sph, StandLevelsStatistic::BasalArea, StandLevelsStatistic::MerchVol})
        document.tables.append(StandLevelsTable(db, sums, s, units));
    document.single = document.tables.at(shown == StandLevelsStatistic::TotalVol ? 2 : static_cast<int>(shown));
    document.runs = ReadTableSources(db, {run});
    document.units = UnitSystemName(units);
    document.made = TableMadeNow();
    return document;
}

QString StandLevelsReportType(StandLevelsStatistic statistic)
{
    switch (statistic) {
    case StandLevelsStatistic::Sph:
        return QStringLiteral("SL_SPH");
    case StandLevelsStatistic::BasalArea:
        return QStringLiteral("SL_BASAL_AREA");
    case StandLevelsStatistic::MerchVol:
        return QStringLiteral("SL_MERCH_VOL");
    case StandLevelsStatistic::TotalVol:
        break;
    }
    return QStringLiteral("SL_TOTAL_VOL");
}

QString StandLevelsReportDescription(const QString &runDesc)
{
    return QStringLiteral("Printed By:  ") + kCrLf + kCrLf + runDesc;
}

CompiledStandLevelsReport CompileStandLevelsReport(RunStore &db, UserQuestions &questions, StandLevelsReportRequest &request,
                                                   const ReportClock &clock)
{
    CompiledStandLevelsReport report;
    const RunKey run{request.This_RunId, KindOfText(request.This_SorH)};
    request.This_SorH = run.letter();
    if (request.CycleRS.isEmpty() || request.SpeciesListRS.isEmpty()) {
        throw SendrelError(ErrNo::NothingToReport, QStringLiteral("Sendrel"),
                           QStringLiteral("Run %1 has no %2: there is nothing to report.")
                               .arg(run.displayName(), request.CycleRS.isEmpty() ? QStringLiteral("cycles") : QStringLiteral("trees")));
    }
    RequireRun(db, run);
    if (const std::optional<QVariant> parameters = db.runParameters(request.This_RunId); parameters && !parameters->isNull())
        request.This_RunDesc += kCrLf + parameters->toString();

    ReportTextRequest text;
    text.title = request.title;
    text.description = StandLevelsReportDescription(request.This_RunDesc);
    if (!questions.askReportText(text))
        return report;
    text.description = withCrLf(text.description);
    request.This_RunDesc = text.description;

    if (request.SetMousePointer)
        request.SetMousePointer(kPointerHourglassForReport);
    const BusyMessage busy(questions, QStringLiteral("Compiling report data..."));

    // The run as of one moment, from the check that it is there (it may have gone while the
    // dialog was up) to the last line of the text. The scratch tables are this connection's own.
    ReadSnapshot snapshot(db.DBEngine);
    RequireRun(db, run);
    ClearReportTables(db, true);
    StandLevelsTableWriter writer(db);
    writer.writeSpecies2(request.SpeciesListRS);
    writer.writeHeader(request.This_RunId, request.statistic, request.SpeciesListRS.size(), text.title, request.This_RunDesc);
    writer.writeRows(StandLevelsReportRows(
        db, request.CycleRS, request.SpeciesListRS,
        request.sums ? *request.sums : ReadStandLevelsCycleSums(db, request.This_RunId, request.This_SorH), request.statistic));
    const GeneratedReport generated =
        GenerateReport(db, ReportKind::Species, request.This_RunId, request.reportPath, request.This_RunDesc, clock);
    snapshot.end();
    report.ReportFile = generated.path;
    report.text = generated.text;
    report.columns = generated.columns;
    report.ReportOrientation = request.SpeciesListRS.size() < kLandscapeFromSpecies ? 1 : 2;
    report.compiled = true;
    return report;
}

}  // namespace sendrel
