#include "domain/output/ReportFile.h"

#include "base/Numbers.h"
#include "base/SafeFileName.h"
#include "base/SendrelError.h"
#include "domain/output/WholeFile.h"
#include "store/RunStore.h"

#include <QDir>
#include <QLocale>
#include <QRegularExpression>
#include <QTimeZone>

#include <cmath>

namespace sendrel {

namespace {

const QString kSource = QStringLiteral("WriteReportFile");
const QString kCrLf = QStringLiteral("\r\n");

// The text of the file as it is made.
class ReportText {
public:
    void left(const QString &text) { m_text += LeftCell(text); }
    void right(const QString &text) { m_text += RightCell(text); }
    void line(const QString &text = QString()) { m_text += text + kCrLf; }
    const QString &text() const { return m_text; }

private:
    QString m_text;
};

QString ruleLine(qint64 numSpecies)
{
    const qint64 width = (numSpecies + 2) * kReportCellWidth;
    return width > 0 ? QString(width, QLatin1Char('_')) : QString();
}

// A number written behind a label: a blank for the sign unless negative, and one behind.
QString printedValue(const QVariant &value)
{
    if (value.isNull())
        return QString();
    bool ok = false;
    const double number = value.toDouble(&ok);
    if (!ok || value.typeId() == QMetaType::QString)
        return value.toString();
    return PrintForm(number) + QLatin1Char(' ');
}

// A number of the report tables. The writers write a number in every cell they fill, so a cell
// without one is a fault of the program, told as such rather than as a bare "Invalid use of Null".
double numberOf(const QVariant &value, const QString &column, const QString &idText)
{
    bool ok = false;
    const double number = value.toDouble(&ok);
    if (value.isNull() || !ok) {
        throw SendrelError(ErrNo::ReportTableFault, kSource,
                           QStringLiteral("Block %1 of the report tables holds no number in %2 (%3): the report cannot be made. "
                                          "This is a fault of the program.")
                               .arg(idText, column, value.isNull() ? QStringLiteral("empty") : value.toString()));
    }
    return number;
}

QString unitOf(qint16 kind, const QString &reportType)
{
    if (kind == ReportKind::Stand)
        return QStringLiteral("(SPH)");
    if (kind == ReportKind::Stock)
        return QStringLiteral("(cu.m/ha)");
    if (reportType == QLatin1String("SL_SPH"))
        return QStringLiteral("(SPH)");
    if (reportType == QLatin1String("SL_BASAL_AREA"))
        return QStringLiteral("(sq.m/ha)");
    if (reportType == QLatin1String("SL_MERCH_VOL") || reportType == QLatin1String("SL_TOTAL_VOL"))
        return QStringLiteral("(cu.m/ha)");
    return QString();
}

void writeBlock(clsDBEngine &engine, qint16 kind, Recordset &header, ReportText &out, qint16 &columns, QString &rule)
{
    const QVariant reportId = header.Fields(QStringLiteral("Report_Id"));
    const QString idText = QString::number(reportId.toLongLong());
    rule = ruleLine(header.Fields(QStringLiteral("Num_Species")).toLongLong());

    if (reportId.toLongLong() == 1) {
        out.line(QStringLiteral("   ") + header.Fields(QStringLiteral("Report_Title")).toString());
    } else {
        out.line();
        out.line();
    }
    out.line(rule);
    out.left(QStringLiteral("Run Name:"));
    out.line(header.Fields(QStringLiteral("Run_ID")).toString());
    if (kind != ReportKind::Species) {
        out.left(QStringLiteral("Cycle #:"));
        out.line(printedValue(header.Fields(QStringLiteral("Cycle_Num"))));
        out.left(QStringLiteral("Cycle Year:"));
        out.line(printedValue(header.Fields(QStringLiteral("Cycle_Year"))));
    }
    out.line(rule);

    QString firstColumn;
    QString valuePattern;
    QString sql;
    if (kind == ReportKind::Species) {
        sql = QStringLiteral("SELECT * FROM Stand_Levels_Report WHERE Report_id = ?1 ORDER BY Year");
        firstColumn = QStringLiteral("Year");
        valuePattern = QStringLiteral("Value%1");
    } else {
        sql = QStringLiteral("SELECT * FROM Report_Detail WHERE Report_id = ?1 ORDER BY DBH_MinDia");
        firstColumn = QStringLiteral("DBH_Midpoint");
        valuePattern = kind == ReportKind::Stand ? QStringLiteral("Sp%1_Density") : QStringLiteral("Sp%1_MerchVol");
    }
    Statement details(engine, sql);
    Recordset detail = details.bind(1, reportId.toLongLong()).fetchAll();

    out.left(kind == ReportKind::Species ? QStringLiteral("Year:") : QStringLiteral("DBH_Class"));
    columns = 0;
    for (int n = 1; n <= 12; ++n) {
        const QVariant heading = detail.Fields(QStringLiteral("Sp") + QString::number(n));
        if (heading.isNull() || heading.toString().isEmpty())
            break;
        out.right(heading.toString());
        ++columns;
    }
    out.line();
    if (columns < 1)
        throw SendrelError(ErrNo::SubscriptOutOfRange, kSource,
                           QStringLiteral("Subscript out of range (no column heading in report block ") + idText + QLatin1Char(')'));
    QList<double> totals(columns, 0.0);

    out.right(kind == ReportKind::Species ? QStringLiteral(" ") : QStringLiteral("(cm)"));
    out.right(unitOf(kind, header.Fields(QStringLiteral("Report_Type")).toString()));
    out.line();
    out.line(rule);

    for (; !detail.Eof(); detail.MoveNext()) {
        out.right(DefaultText(numberOf(detail.Fields(firstColumn), firstColumn, idText)));
        for (int n = 1; n <= columns; ++n) {
            const QString column = valuePattern.arg(n);
            const double value = numberOf(detail.Fields(column), column, idText);
            out.right(FormatWholeNumber(value));
            totals[n - 1] += value;
        }
        out.line();
    }

    if (kind != ReportKind::Species) {
        out.line(rule);
        out.right(QStringLiteral("Totals:"));
        for (double total : totals)
            out.right(FormatWholeNumber(total));
        // No line end: the first empty line that follows ends this line.
    }
}

}  // namespace

QDateTime ReportClockNow()
{
    const QByteArray epoch = qgetenv("SOURCE_DATE_EPOCH");
    if (!epoch.isEmpty()) {
        bool ok = false;
        const qint64 seconds = epoch.trimmed().toLongLong(&ok);
        if (ok)
            return QDateTime::fromSecsSinceEpoch(seconds, QTimeZone::utc());
    }
    return QDateTime::currentDateTime();
}

QString LeftCell(const QString &text)
{
    return text.left(kReportCellWidth).leftJustified(kReportCellWidth, QLatin1Char(' '));
}

QString RightCell(const QString &text)
{
    return text.left(kReportCellWidth).rightJustified(kReportCellWidth, QLatin1Char(' '));
}

QString FormatWholeNumber(double value)
{
    // std::round takes halves away from zero; a value that rounds to zero prints as "0".
    double rounded = std::round(value);
    if (rounded == 0.0)
        rounded = 0.0;
    const bool negative = rounded < 0.0;
    const QString digits = QString::number(std::fabs(rounded), 'f', 0);
    const QString separator = QLocale().groupSeparator();

    QString grouped;
    grouped.reserve(digits.size() + digits.size() / 3 * separator.size() + 1);
    for (qsizetype i = 0; i < digits.size(); ++i) {
        if (i > 0 && (digits.size() - i) % 3 == 0)
            grouped += separator;
        grouped += digits.at(i);
    }
    return negative ? QLatin1Char('-') + grouped : grouped;
}

QString DefaultDateTimeText(const QDateTime &when)
{
    const QLocale locale;
    // The long time form with its seconds, less the time zone that Qt adds to it.
    QString timeFormat = locale.timeFormat(QLocale::LongFormat);
    static const QRegularExpression zone(QStringLiteral("\\s*\\bt+\\b"));
    timeFormat.remove(zone);
    return locale.toString(when.date(), QLocale::ShortFormat) + QLatin1Char(' ') + locale.toString(when.time(), timeFormat.trimmed());
}

QString ReportKindName(qint16 kind)
{
    switch (kind) {
    case ReportKind::Stand:
        return QStringLiteral("Stand");
    case ReportKind::Stock:
        return QStringLiteral("Stock");
    case ReportKind::Species:
        return QStringLiteral("Species");
    default:
        return QString();
    }
}

QString ReportFilePath(const QString &folder, const QString &runId, qint16 kind)
{
    return QDir(folder).filePath(SafeFileStem(runId) + QLatin1Char('_') + ReportKindName(kind) + QStringLiteral(".txt"));
}

QString MakeReportText(RunStore &db, qint16 kind, const QString &runId, const QString &description, qint16 &columns,
                       const ReportClock &clock)
{
    if (ReportKindName(kind).isEmpty())
        throw SendrelError(ErrNo::InvalidCall, kSource, QStringLiteral("Invalid procedure call or argument (report kind %1)").arg(kind));

    clsDBEngine &engine = db.DBEngine;
    Statement headers(engine, QStringLiteral("SELECT * FROM Report_Header WHERE Run_Id = ?1"));
    Recordset header = headers.bind(1, runId).fetchAll();
    if (header.Eof())
        throw SendrelError(ErrNo::ReportDataUnavailable, kSource, QStringLiteral("The report data is unavailable."));

    ReportText out;
    QString rule;
    for (; !header.Eof(); header.MoveNext())
        writeBlock(engine, kind, header, out, columns, rule);

    out.line();
    out.line();
    out.line();
    out.line(description);
    out.line();
    out.line(rule);
    out.line(QStringLiteral("Printed on: ") + DefaultDateTimeText(clock ? clock() : ReportClockNow()));
    out.line(rule);
    return out.text();
}

void SaveReportText(const QString &path, const QString &text)
{
    SaveWholeFile(path, text.toUtf8(), kSource);
}

GeneratedReport GenerateReport(RunStore &db, qint16 kind, const QString &runId, const QString &path, const QString &description,
                               const ReportClock &clock)
{
    GeneratedReport report;
    try {
        report.text = MakeReportText(db, kind, runId, description, report.columns, clock);
        if (!path.isEmpty()) {
            SaveReportText(path, report.text);
            report.path = path;
        }
    } catch (const SendrelError &e) {
        // Told as the generator's failure, whatever failed in it. The file at path stays as it
        // was: it may be the report of the run's other kind, or one the user keeps.
        if (e.number() == ErrNo::ReportDataUnavailable || e.source() == kSource)
            throw;
        throw SendrelError(e.number(), kSource, e.description());
    }
    return report;
}

QString WriteReportFile(RunStore &db, qint16 kind, const QString &runId, const QString &path, const QString &description, qint16 &columns,
                        const ReportClock &clock)
{
    const GeneratedReport report = GenerateReport(db, kind, runId, path, description, clock);
    columns = report.columns;
    return report.path;
}

bool IsGeneratorFailure(const SendrelError &e)
{
    return e.source() == kSource && e.number() != ErrNo::ReportDataUnavailable;
}

MessageRequest ReportFailureMessage(const SendrelError &e)
{
    const QString title = QStringLiteral("Sendrel");
    if (e.number() == ErrNo::NothingToReport || e.number() == ErrNo::RunMissing)
        return {title, e.description(), MsgIcon::Information, MsgButtons::OK, Answer::OK};
    if (e.number() == ErrNo::ReportDataUnavailable)
        return {title, e.description(), MsgIcon::Critical, MsgButtons::OK, Answer::OK};
    if (IsGeneratorFailure(e)) {
        return {title,
                QStringLiteral("Error printing report") + kCrLf + e.description() + QStringLiteral(" (") + QString::number(e.number()) +
                    QLatin1Char(')'),
                MsgIcon::Exclamation, MsgButtons::OK, Answer::OK};
    }
    return {title,
            QStringLiteral("The following error occured:") + kCrLf + kCrLf + QLatin1Char('(') + QString::number(e.number()) +
                QStringLiteral(") ") + e.description(),
            MsgIcon::Exclamation, MsgButtons::OK, Answer::OK};
}

}  // namespace sendrel
