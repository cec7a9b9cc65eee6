#include "cli/TableOutput.h"

#include "base/SendrelError.h"
#include "domain/table/TableFile.h"

namespace sendrel {

TableFormat FormatOption(const QCommandLineParser &parser, const QStringList &allowed)
{
    const QString name = allowed.at(ChoiceOption(parser, QStringLiteral("format"), allowed, 0));
    const TableFormat format = *TableFormatNamed(name);
    if (format == TableFormat::Xlsx && parser.value(QStringLiteral("o")) == QLatin1String("-"))
        throw CliUsageFault{QStringLiteral("a workbook cannot go to the standard output; give -o FILE")};
    return format;
}

QCommandLineOption DefinitionsOption()
{
    return QCommandLineOption(QStringLiteral("definitions"),
                              QStringLiteral("csv: the definitions of the columns, the runs, the units and the time made beside "
                                             "the file, as NAME.definitions.csv (xlsx and json hold them inside)."));
}

bool DefinitionsAsked(const QCommandLineParser &parser, TableFormat format)
{
    if (!parser.isSet(QStringLiteral("definitions")) || format != TableFormat::Csv)
        return false;
    if (parser.value(QStringLiteral("o")) == QLatin1String("-"))
        throw CliUsageFault{QStringLiteral("--definitions needs a file to put them beside; give -o FILE")};
    return true;
}

void WriteTableOutput(CliContext &ctx, TableFormat format, const QString &output, const QString &defaultPath, const TableDocument &document,
                      bool definitions)
{
    if (output == QLatin1String("-")) {
        ctx.out << QString::fromUtf8(TableText(document, format));
        ctx.out.flush();
        if (ctx.out.status() != QTextStream::Ok)
            throw SendrelError(ErrNo::DeviceIO, QStringLiteral("sendrel-cli"), QStringLiteral("Cannot write the standard output."));
        return;
    }
    const QString path = output.isEmpty() ? defaultPath : output;
    SaveTableFile(document, format, path);
    if (definitions)
        SaveCsvDefinitions(document, path);
    if (output.isEmpty()) {
        ctx.out << path << '\n';
        if (definitions)
            ctx.out << DefinitionsPath(path) << '\n';
    }
}

}  // namespace sendrel
