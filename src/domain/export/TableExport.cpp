#include "domain/export/TableExport.h"

#include "base/SendrelError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTemporaryFile>

#include <xlsxwriter.h>

#include <cmath>

namespace sendrel {

namespace {

const QString kSource = QStringLiteral("Export");

SendrelError cannotWrite(const QString &path, const QString &why)
{
    return SendrelError(75, kSource, QStringLiteral("Cannot write %1: %2").arg(QDir::toNativeSeparators(path), why));
}

QByteArray csvField(const QVariant &cell)
{
    if (cell.isNull())
        return QByteArray();
    if (cell.typeId() == QMetaType::Double || cell.typeId() == QMetaType::Int || cell.typeId() == QMetaType::LongLong)
        return ExportNumber(cell.toDouble()).toUtf8();
    QByteArray text = cell.toString().toUtf8();
    if (text.contains(',') || text.contains('"') || text.contains('\n') || text.contains('\r')) {
        text.replace('"', "\"\"");
        text = '"' + text + '"';
    }
    return text;
}

// A sheet's name: at most 31 characters, none of []:*?/\ , and unique in its workbook.
QString sheetName(const QString &wanted, QStringList &taken)
{
    QString name = wanted;
    for (const QChar c : QStringLiteral("[]:*?/\\"))
        name.replace(c, QLatin1Char('_'));
    name = name.left(31);
    if (name.isEmpty())
        name = QStringLiteral("Sheet");
    const QString base = name;
    for (int n = 2; taken.contains(name, Qt::CaseInsensitive); ++n)
        name = base.left(31 - QString::number(n).size() - 1) + QLatin1Char(' ') + QString::number(n);
    taken.append(name);
    return name;
}

}  // namespace

QString ExportNumber(double value)
{
    if (!std::isfinite(value))
        return std::isnan(value) ? QStringLiteral("NaN") : value > 0 ? QStringLiteral("Infinity") : QStringLiteral("-Infinity");
    if (value == 0.0)
        return QStringLiteral("0");
    return QString::number(value, 'f', QLocale::FloatingPointShortest);
}

QByteArray CsvText(const ExportTable &table)
{
    QByteArray text;
    QList<QByteArray> fields;
    for (const QString &header : table.headers)
        fields.append(csvField(header));
    text += fields.join(',') + "\r\n";
    for (const QList<QVariant> &row : table.rows) {
        fields.clear();
        for (const QVariant &cell : row)
            fields.append(csvField(cell));
        text += fields.join(',') + "\r\n";
    }
    return text;
}

void SaveCsv(const ExportTable &table, const QString &path)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        throw cannotWrite(path, file.errorString());
    const QByteArray text = CsvText(table);
    if (file.write(text) != text.size() || !file.commit()) {
        const QString why = file.errorString();
        file.cancelWriting();
        throw cannotWrite(path, why);
    }
}

void SaveXlsx(const QList<ExportTable> &tables, const QString &path)
{
    // The target is opened as the CSV's is, before any work: an existing file that may not be
    // written is refused, and the workbook replaces it whole on commit, keeping its permissions (a
    // new file gets those of any new file).
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        throw cannotWrite(path, file.errorString());
    // libxlsxwriter writes only to a named file: the workbook is made in a scratch file of its own,
    // then copied into place.
    QString scratch;
    {
        QTemporaryFile reserve(QDir::temp().filePath(QStringLiteral("sendrel-export-XXXXXX.xlsx")));
        reserve.setAutoRemove(false);
        if (!reserve.open())
            throw cannotWrite(path, reserve.errorString());
        scratch = reserve.fileName();
    }
    const auto fail = [&](const QString &why) {
        QFile::remove(scratch);
        file.cancelWriting();
        return cannotWrite(path, why);
    };
    lxw_workbook *workbook = workbook_new(QFile::encodeName(scratch).constData());
    if (!workbook)
        throw fail(QStringLiteral("the workbook cannot be made"));
    lxw_format *bold = workbook_add_format(workbook);
    format_set_bold(bold);
    QStringList taken;
    for (const ExportTable &table : tables) {
        const QByteArray name = sheetName(table.name, taken).toUtf8();
        lxw_worksheet *sheet = workbook_add_worksheet(workbook, name.constData());
        for (qsizetype c = 0; c < table.headers.size(); ++c) {
            worksheet_write_string(sheet, 0, static_cast<lxw_col_t>(c), table.headers.at(c).toUtf8().constData(), bold);
            worksheet_set_column(sheet, static_cast<lxw_col_t>(c), static_cast<lxw_col_t>(c),
                                 std::max(10.0, table.headers.at(c).size() * 1.1), nullptr);
        }
        worksheet_freeze_panes(sheet, 1, 0);
        for (qsizetype r = 0; r < table.rows.size(); ++r) {
            const QList<QVariant> &row = table.rows.at(r);
            for (qsizetype c = 0; c < row.size(); ++c) {
                const QVariant &cell = row.at(c);
                const auto rowIndex = static_cast<lxw_row_t>(r + 1);
                const auto column = static_cast<lxw_col_t>(c);
                if (cell.isNull())
                    continue;
                if (cell.typeId() == QMetaType::Double || cell.typeId() == QMetaType::Int || cell.typeId() == QMetaType::LongLong)
                    worksheet_write_number(sheet, rowIndex, column, cell.toDouble(), nullptr);
                else
                    worksheet_write_string(sheet, rowIndex, column, cell.toString().toUtf8().constData(), nullptr);
            }
        }
    }
    const lxw_error error = workbook_close(workbook);
    if (error != LXW_NO_ERROR)
        throw fail(QString::fromUtf8(lxw_strerror(error)));
    // A workbook is compressed: a few megabytes at most, read whole.
    QFile made(scratch);
    const bool opened = made.open(QIODevice::ReadOnly);
    const QByteArray bytes = opened ? made.readAll() : QByteArray();
    if (!opened || made.error() != QFileDevice::NoError) {
        const QString why = made.errorString();
        made.close();
        throw fail(why);
    }
    made.close();
    QFile::remove(scratch);
    if (file.write(bytes) != bytes.size() || !file.commit()) {
        const QString why = file.errorString();
        file.cancelWriting();
        throw cannotWrite(path, why);
    }
}

ExportFormat ExportFormatOf(const QString &path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix == QLatin1String("csv"))
        return ExportFormat::Csv;
    if (suffix == QLatin1String("xlsx"))
        return ExportFormat::Xlsx;
    throw SendrelError(ErrNo::InvalidCall, kSource,
                       QStringLiteral("%1: an export is a .csv or .xlsx file.").arg(QDir::toNativeSeparators(path)));
}

FileRequest ExportFileRequest(const QString &title, const QString &folder, const QString &fileStem)
{
    FileRequest request;
    request.title = title;
    request.filter = QStringLiteral("Excel Workbook (*.xlsx)|*.xlsx|CSV (Comma delimited) (*.csv)|*.csv");
    request.fileName = fileStem + QStringLiteral(".xlsx");
    request.startFolder = folder;
    request.defaultExtension = QStringLiteral(".xlsx");
    request.mustExist = false;
    return request;
}

void SaveExport(const QString &path, const QList<ExportTable> &sheets, const ExportTable &csv)
{
    if (ExportFormatOf(path) == ExportFormat::Xlsx)
        SaveXlsx(sheets, path);
    else
        SaveCsv(csv, path);
}

}  // namespace sendrel
