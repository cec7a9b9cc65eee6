#include "output/ReportFile.h"

#include "app/FolderLocation.h"
#include "app/Numbers.h"
#include "app/SendrelError.h"
#include "app/ToolBox.h"
#include "app/TreeModel.h"
#include "app/UserQuestions.h"
#include "store/Recordset.h"

#include <QFile>
#include <QFileInfo>
#include <QLocale>
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

void writeBlock(TreeModel &tm, qint16 kind, Recordset &header, ReportText &out, qint16 &columns, QString &rule)
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
    if (kind == ReportKind::Species) {
        tm.DBEngine.SQLString = QStringLiteral("SELECT * FROM Stand_Levels_Report WHERE Report_id =") + idText
                                + QStringLiteral(" ORDER BY Year");
        firstColumn = QStringLiteral("Year");
        valuePattern = QStringLiteral("Value%1");
    } else {
        tm.DBEngine.SQLString = QStringLiteral("SELECT * FROM Report_Detail WHERE Report_id =") + idText
                                + QStringLiteral(" ORDER BY DBH_MinDia");
        firstColumn = QStringLiteral("DBH_Midpoint");
        valuePattern = kind == ReportKind::Stand ? QStringLiteral("Sp%1_Density") : QStringLiteral("Sp%1_MerchVol");
    }
    Recordset detail = tm.DBEngine.RetreiveRecords();

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

// Writes the text made so far and closes the file.
void saveText(QFile &file, const ReportText &out)
{
    const QByteArray bytes = out.text().toUtf8();
    const bool written = file.write(bytes) == bytes.size() && file.flush();
    const QString why = file.errorString();
    file.close();
    if (!written)
        throw SendrelError(57, kSource, QStringLiteral("Device I/O error writing ") + file.fileName() + QStringLiteral(": ") + why);
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

QString ReportFilePath(const TreeModel &tm, qint16 kind)
{
    // An installed program's folder is often not ours to write: then the Work folder takes the file.
    QString folder = tm.ProgramDir;
    const QFileInfo programDir(folder);
    if (folder.isEmpty() || !programDir.isDir() || !programDir.isWritable())
        folder = tm.settings.WorkDir;
    return PathAddBackslash(folder) + tm.CurrentRunId + QLatin1Char('_') + ReportKindName(kind) + QStringLiteral(".txt");
}

QString WriteReportFile(TreeModel &tm, qint16 kind, const QString &description, qint16 &columns, const ReportClock &clock)
{
    QFile file;
    ReportText out;
    try {
        if (ReportKindName(kind).isEmpty())
            throw SendrelError(ErrNo::InvalidCall, kSource, QStringLiteral("Invalid procedure call or argument (report kind %1)").arg(kind));

        tm.DBEngine.SQLString = QStringLiteral("SELECT * from Report_Header WHERE Run_Id = '") + QuoteSQL(tm.CurrentRunId) + QLatin1Char('\'');
        Recordset header = tm.DBEngine.RetreiveRecords();
        if (header.Eof()) {
            tm.questions.message({QStringLiteral("Sendrel"), QStringLiteral("The report data is unavailable."),
                                  MsgIcon::Critical, MsgButtons::OK, Answer::OK});
            return QString();
        }

        const QString path = ReportFilePath(tm, kind);
        QFile::remove(path);
        file.setFileName(path);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            throw SendrelError(75, kSource, QStringLiteral("Path/File access error: ") + path + QStringLiteral(": ") + file.errorString());

        QString rule;
        for (; !header.Eof(); header.MoveNext())
            writeBlock(tm, kind, header, out, columns, rule);

        out.line();
        out.line();
        out.line();
        out.line(description);
        out.line();
        out.line(rule);
        out.line(QStringLiteral("Printed on: ") + DefaultDateTimeText(clock ? clock() : ReportClockNow()));
        out.line(rule);

        saveText(file, out);
        return path;
    } catch (const SendrelError &e) {
        // What was made before the failure stays in the file.
        if (file.isOpen()) {
            try {
                saveText(file, out);
            } catch (const SendrelError &) {
                // The first failure is the one to tell.
            }
        }
        tm.questions.message({QStringLiteral("Sendrel"),
                              QStringLiteral("Error printing report") + kCrLf + e.description() + QStringLiteral(" (")
                                  + QString::number(e.number()) + QLatin1Char(')'),
                              MsgIcon::Exclamation, MsgButtons::OK, Answer::OK});
        return QString();
    }
}

}  // namespace sendrel
