#include "domain/output/ReportFile.h"

#include "base/Numbers.h"
#include "base/SafeFileName.h"
#include "base/SendrelError.h"
#include "base/UserQuestions.h"
#include "store/RunStore.h"

#include <QDir>
#include <QFile>
#include <QLocale>
#include <QSaveFile>
#include <QRegularExpression>
#include <QTimeZone>

#include <cmath>

namespace sendrel {

namespace {

const QString kSource = QStringLiteral("WriteReportFile");
const QString kCrLf = QStringLiteral("\r\n");

// The text of the file as far as it has been made; whatever stands here reaches the disk,
// also when a later step fails.
class ReportText {
public:
    void left(const QString &text) { m_text += LeftCell(text); }
    void right(const QString &text) { m_text += RightCell(text); }
    void raw(const QString &text) { m_text += text; }
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

double numberOf(const QVariant &value, const QString &column)
{
    if (value.isNull())
        throw SendrelError(94, kSource, QStringLiteral("Invalid use of Null (") + column + QLatin1Char(')'));
    bool ok = false;
    const double number = value.toDouble(&ok);
    if (!ok)
        throw SendrelError(13, kSource, QStringLiteral("Type mismatch (") + column + QStringLiteral(": ") + value.toString() + QLatin1Char(')'));
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
        throw SendrelError(9, kSource, QStringLiteral("Subscript out of range (no column heading in report block ") + idText + QLatin1Char(')'));
    QList<double> totals(columns, 0.0);

    out.right(kind == ReportKind::Species ? QStringLiteral(" ") : QStringLiteral("(cm)"));
    out.right(unitOf(kind, header.Fields(QStringLiteral("Report_Type")).toString()));
    out.line();
    out.line(rule);

    for (; !detail.Eof(); detail.MoveNext()) {
        out.right(DefaultText(numberOf(detail.Fields(firstColumn), firstColumn)));
        for (int n = 1; n <= columns; ++n) {
            const QString column = valuePattern.arg(n);
            const double value = numberOf(detail.Fields(column), column);
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
        throw ReportDataUnavailable();

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
    // Written under a name of its own and moved into place whole: a reader never sees half a
    // report, and a failure leaves no partial file.
    QSaveFile file(path);
    const QByteArray bytes = text.toUtf8();
    if (!file.open(QIODevice::WriteOnly))
        throw SendrelError(75, kSource, QStringLiteral("Path/File access error: %1: %2").arg(QDir::toNativeSeparators(path), file.errorString()));
    if (file.write(bytes) != bytes.size() || !file.commit()) {
        const QString why = file.errorString();
        file.cancelWriting();
        throw SendrelError(57, kSource, QStringLiteral("Device I/O error writing %1: %2").arg(QDir::toNativeSeparators(path), why));
    }
}

GeneratedReport GenerateReport(RunStore &db, UserQuestions &questions, qint16 kind, const QString &runId, const QString &path,
                               const QString &description, const ReportClock &clock)
{
    GeneratedReport report;
    try {
        QString text = MakeReportText(db, kind, runId, description, report.columns, clock);
        if (!path.isEmpty()) {
            SaveReportText(path, text);
            report.path = path;
        }
        report.text = std::move(text);
    } catch (const ReportDataUnavailable &) {
        questions.message({QStringLiteral("Sendrel"), QStringLiteral("The report data is unavailable."), MsgIcon::Critical,
                           MsgButtons::OK, Answer::OK});
    } catch (const SendrelError &e) {
        // An earlier report of this run and kind is not to pass for this one.
        if (!path.isEmpty())
            QFile::remove(path);
        questions.message({QStringLiteral("Sendrel"),
                           QStringLiteral("Error printing report") + kCrLf + e.description() + QStringLiteral(" (")
                               + QString::number(e.number()) + QLatin1Char(')'),
                           MsgIcon::Exclamation, MsgButtons::OK, Answer::OK});
    }
    return report;
}

QString WriteReportFile(RunStore &db, UserQuestions &questions, qint16 kind, const QString &runId, const QString &path,
                        const QString &description, qint16 &columns, const ReportClock &clock)
{
    const GeneratedReport report = GenerateReport(db, questions, kind, runId, path, description, clock);
    columns = report.columns;
    return report.path;
}

}  // namespace sendrel
