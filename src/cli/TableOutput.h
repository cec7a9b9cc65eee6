#pragma once

#include "cli/Command.h"
#include "domain/export/TableExport.h"

#include <QByteArray>
#include <QCommandLineParser>
#include <QList>
#include <QString>
#include <QStringList>

namespace sendrel {

// The forms a command can write a table in: the fixed-column text, CSV, a workbook, JSON.
enum class TableFormat { Txt, Csv, Xlsx, Json };

// --format, one of allowed ("txt", "csv", "xlsx", "json"), txt when not given. A workbook cannot go
// to the standard output: a usage error.
TableFormat FormatOption(const QCommandLineParser &parser, const QStringList &allowed);
// ".txt", ".csv", ".xlsx", ".json".
QString FormatSuffix(TableFormat format);

// A command's table where -o asks for it: "-" the standard output, a file (written whole), or
// without -o the default path, which is then printed. text is the txt or JSON form; sheets
// and csv the export's.
void WriteTableOutput(CliContext &ctx, TableFormat format, const QString &output, const QString &defaultPath,
                      const QByteArray &text, const QList<ExportTable> &sheets, const ExportTable &csv);

}  // namespace sendrel
