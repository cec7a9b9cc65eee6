#pragma once

#include "cli/Command.h"
#include "domain/table/TableModel.h"

#include <QCommandLineParser>
#include <QString>
#include <QStringList>

namespace sendrel {

// --format, one of allowed ("txt", "csv", "xlsx", "json"), txt when not given. A workbook cannot go
// to the standard output: a usage error.
TableFormat FormatOption(const QCommandLineParser &parser, const QStringList &allowed);

// A command's table where -o asks for it: "-" the standard output, a file (written whole, an
// earlier file kept on failure), or without -o the default path, which is then printed.
void WriteTableOutput(CliContext &ctx, TableFormat format, const QString &output, const QString &defaultPath,
                      const TableDocument &document);

}  // namespace sendrel
