#include "cli/TableOutput.h"

#include "domain/output/ReportFile.h"


namespace sendrel {

namespace {
const QStringList kFormats = {QStringLiteral("txt"), QStringLiteral("csv"), QStringLiteral("xlsx"), QStringLiteral("json")};
}

TableFormat FormatOption(const QCommandLineParser &parser, const QStringList &allowed)
{
    const QString name = allowed.at(ChoiceOption(parser, QStringLiteral("format"), allowed, 0));
    const auto format = static_cast<TableFormat>(kFormats.indexOf(name));
    if (format == TableFormat::Xlsx && parser.value(QStringLiteral("o")) == QLatin1String("-"))
        throw CliUsageFault{QStringLiteral("a workbook cannot go to the standard output; give -o FILE")};
    return format;
}

QString FormatSuffix(TableFormat format)
{
    return QLatin1Char('.') + kFormats.at(static_cast<int>(format));
}

void WriteTableOutput(CliContext &ctx, TableFormat format, const QString &output, const QString &defaultPath,
                      const QByteArray &text, const QList<ExportTable> &sheets, const ExportTable &csv)
{
    if (output == QLatin1String("-")) {
        ctx.out << QString::fromUtf8(format == TableFormat::Csv ? CsvText(csv) : text);
        return;
    }
    const QString path = output.isEmpty() ? defaultPath : output;
    switch (format) {
    case TableFormat::Csv:
        SaveCsv(csv, path);
        break;
    case TableFormat::Xlsx:
        SaveXlsx(sheets, path);
        break;
    default:
        SaveReportText(path, QString::fromUtf8(text));
    }
    if (output.isEmpty())
        ctx.out << path << '\n';
}

}  // namespace sendrel
