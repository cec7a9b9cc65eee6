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

// --definitions: a CSV file gets its definitions beside it (NAME.definitions.csv). Refused with a
// CSV table on the standard output, which has no name to put them beside; the other forms carry
// theirs inside.
QCommandLineOption DefinitionsOption();
bool DefinitionsAsked(const QCommandLineParser &parser, TableFormat format);

// A command's table where -o asks for it: "-" the standard output, a file (written whole, an
// earlier file kept on failure), or without -o the default path, which is then printed; with
// definitions a CSV file's definitions beside it, whose path is printed too when the file's is.
void WriteTableOutput(CliContext &ctx, TableFormat format, const QString &output, const QString &defaultPath, const TableDocument &document,
                      bool definitions = false);

}  // namespace sendrel
