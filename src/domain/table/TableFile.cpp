#include "domain/table/TableFile.h"

#include "base/SafeFileName.h"
#include "base/SendrelError.h"
#include "domain/output/WholeFile.h"
#include "domain/table/TableRender.h"
#include "store/RunStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <xlsxwriter.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace sendrel {

namespace {

const QString kSource = QStringLiteral("Export");

SendrelError cannotWrite(const QString &path, const QString &why)
{
    return SendrelError(ErrNo::DeviceIO, kSource, QStringLiteral("Cannot write %1: %2").arg(QDir::toNativeSeparators(path), why));
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

void writeCell(lxw_worksheet *sheet, lxw_row_t row, lxw_col_t column, const TableCell &cell, lxw_format *format)
{
    if (cell.isNull())
        return;
    if (IsNumberCell(cell))
        worksheet_write_number(sheet, row, column, TableValue(cell.toDouble()), format);
    else
        worksheet_write_string(sheet, row, column, cell.toString().toUtf8().constData(), format);
}

void writeTable(lxw_workbook *workbook, const DataTable &table, QStringList &taken, lxw_format *bold)
{
    const QByteArray name = sheetName(table.name, taken).toUtf8();
    lxw_worksheet *sheet = workbook_add_worksheet(workbook, name.constData());
    for (qsizetype c = 0; c < table.columns.size(); ++c) {
        const QString heading = table.columns.at(c).headingWithUnit();
        worksheet_write_string(sheet, 0, static_cast<lxw_col_t>(c), heading.toUtf8().constData(), bold);
        worksheet_set_column(sheet, static_cast<lxw_col_t>(c), static_cast<lxw_col_t>(c), std::max(10.0, heading.size() * 1.1), nullptr);
    }
    worksheet_freeze_panes(sheet, 1, 0);
    lxw_row_t r = 1;
    for (const TableRow &row : table.rows) {
        for (qsizetype c = 0; c < row.size(); ++c)
            writeCell(sheet, r, static_cast<lxw_col_t>(c), row.at(c), nullptr);
        ++r;
    }
    for (const TableRow &row : table.totals) {
        for (qsizetype c = 0; c < row.size(); ++c)
            writeCell(sheet, r, static_cast<lxw_col_t>(c), row.at(c), bold);
        ++r;
    }
    for (const QString &note : table.notes)
        worksheet_write_string(sheet, ++r, 0, note.toUtf8().constData(), nullptr);
}

// What the file is, what each column means and where its numbers come from.
void writeDefinitions(lxw_workbook *workbook, const TableDocument &document, QStringList &taken, lxw_format *bold)
{
    writeTable(workbook, DefinitionsTable(document, document.tables), taken, bold);
}

// libxlsxwriter writes only to a named file: the workbook is made in a scratch file of its own and
// read back whole (a workbook is compressed: a few megabytes at most).
QByteArray workbookBytes(const TableDocument &document, const QString &path)
{
    QString scratch;
    {
        QTemporaryFile reserve(QDir::temp().filePath(QStringLiteral("sendrel-export-XXXXXX.xlsx")));
        reserve.setAutoRemove(false);
        if (!reserve.open())
            throw cannotWrite(path, reserve.errorString());
        scratch = reserve.fileName();
    }
    struct Scratch {
        QString name;
        ~Scratch() { QFile::remove(name); }
    } removed{scratch};

    lxw_workbook *workbook = workbook_new(QFile::encodeName(scratch).constData());
    if (!workbook)
        throw cannotWrite(path, QStringLiteral("the workbook cannot be made"));
    // The date inside the file is the document's, so that a file made twice under
    // SOURCE_DATE_EPOCH is the same.
    lxw_doc_properties properties{};
    QByteArray title = document.title.toUtf8();
    properties.title = title.data();
    if (document.made.isValid())
        properties.created = static_cast<time_t>(document.made.toSecsSinceEpoch());
    workbook_set_properties(workbook, &properties);
    lxw_format *bold = workbook_add_format(workbook);
    format_set_bold(bold);
    QStringList taken;
    for (const DataTable &table : document.tables)
        writeTable(workbook, table, taken, bold);
    writeDefinitions(workbook, document, taken, bold);
    errno = 0;
    const lxw_error error = workbook_close(workbook);
    if (error != LXW_NO_ERROR) {
        // The library's words name its step; the system's the cause.
        const int cause = errno;
        QString why = QString::fromUtf8(lxw_strerror(error));
        if (cause != 0)
            why += QStringLiteral(" (%1)").arg(QString::fromLocal8Bit(std::strerror(cause)));
        throw cannotWrite(path, why);
    }

    QFile made(scratch);
    if (!made.open(QIODevice::ReadOnly))
        throw cannotWrite(path, made.errorString());
    const QByteArray bytes = made.readAll();
    if (made.error() != QFileDevice::NoError)
        throw cannotWrite(path, made.errorString());
    return bytes;
}

}  // namespace

QString TableFileSuffix(TableFormat format)
{
    return QLatin1Char('.') + TableFormatName(format);
}

QByteArray TableText(const TableDocument &document, TableFormat format)
{
    switch (format) {
    case TableFormat::Txt:
        return FixedText(document).toUtf8();
    case TableFormat::Csv:
        return CsvText(CsvTable(document));
    case TableFormat::Json:
        return JsonText(document);
    case TableFormat::Xlsx:
        break;
    }
    throw SendrelError(ErrNo::InvalidCall, kSource, QStringLiteral("A workbook has no text form."));
}

void SaveTableFile(const TableDocument &document, TableFormat format, const QString &path)
{
    SaveWholeFile(path, format == TableFormat::Xlsx ? workbookBytes(document, path) : TableText(document, format), kSource);
}

TableFormat ExportFormatOf(const QString &path)
{
    const std::optional<TableFormat> format = TableFormatNamed(QFileInfo(path).suffix());
    if (format == TableFormat::Csv || format == TableFormat::Xlsx)
        return *format;
    throw SendrelError(ErrNo::InvalidCall, kSource,
                       QStringLiteral("%1: an export is a .csv or .xlsx file.").arg(QDir::toNativeSeparators(path)));
}

QString DefinitionsPath(const QString &csvPath)
{
    const QFileInfo file(csvPath);
    const QString stem = file.suffix().compare(QStringLiteral("csv"), Qt::CaseInsensitive) == 0 ? file.completeBaseName() : file.fileName();
    return file.dir().filePath(stem + QStringLiteral(".definitions.csv"));
}

void SaveCsvDefinitions(const TableDocument &document, const QString &csvPath)
{
    SaveWholeFile(DefinitionsPath(csvPath), CsvText(DefinitionsTable(document, {CsvTable(document)})), kSource);
}

void SaveExport(const TableDocument &document, const QString &path, bool csvDefinitions)
{
    const TableFormat format = ExportFormatOf(path);
    SaveTableFile(document, format, path);
    if (csvDefinitions && format == TableFormat::Csv)
        SaveCsvDefinitions(document, path);
}

TableSource TableSourceOf(const RunInfo &info)
{
    return {info.key.runId, info.key.word(), info.description, (info.importDate + QLatin1Char(' ') + info.importTime).trimmed()};
}

QList<TableSource> ReadTableSources(RunStore &db, const QList<RunKey> &runs)
{
    QList<TableSource> sources;
    for (const RunKey &run : runs) {
        if (const std::optional<RunInfo> info = db.runInfo(run))
            sources.append(TableSourceOf(*info));
    }
    return sources;
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

QString ExportFileStem(const RunKey &run, const QString &what)
{
    return SafeFileStem(run.runId) + QLatin1Char('_') + run.word() + QLatin1Char('_') + what;
}

}  // namespace sendrel
