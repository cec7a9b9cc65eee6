#include "domain/export/TableExport.h"

#include "base/SendrelError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTemporaryFile>

#include <xlsxwriter.h>

#include <cerrno>
#include <cmath>
#include <cstring>
#include <cstdio>

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
    // The workbook is written beside the target under a name of its own, then moved into place.
    const QFileInfo target(path);
    if (!target.dir().exists())
        throw cannotWrite(path, QStringLiteral("the folder does not exist"));
    QString temporary;
    {
        QTemporaryFile reserve(target.dir().filePath(QStringLiteral(".%1.XXXXXX").arg(target.fileName())));
        reserve.setAutoRemove(false);
        if (!reserve.open())
            throw cannotWrite(path, reserve.errorString());
        temporary = reserve.fileName();
    }
    const QByteArray nativeTemporary = QFile::encodeName(temporary);
    lxw_workbook *workbook = workbook_new(nativeTemporary.constData());
    if (!workbook) {
        QFile::remove(temporary);
        throw cannotWrite(path, QStringLiteral("the workbook cannot be made"));
    }
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
    if (error != LXW_NO_ERROR) {
        QFile::remove(temporary);
        throw cannotWrite(path, QString::fromUtf8(lxw_strerror(error)));
    }
    if (std::rename(nativeTemporary.constData(), QFile::encodeName(path).constData()) != 0) {
        QFile::remove(temporary);
        throw cannotWrite(path, QString::fromLocal8Bit(std::strerror(errno)));
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

}  // namespace sendrel
