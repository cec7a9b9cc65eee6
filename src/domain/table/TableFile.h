#pragma once

#include "base/UserQuestions.h"
#include "domain/table/TableModel.h"
#include "store/Run.h"

#include <QByteArray>
#include <QList>
#include <QString>

namespace sendrel {

class RunStore;
struct RunInfo;

// The one way a table document reaches a file. The file is made under a name of its own beside the
// target and moved into place whole: every write, the flush, the close and the workbook's own close
// are checked, and a failure (a full disk, a file size limit, a folder that is not there) fails with
// the file's name and the cause and leaves an earlier file at path as it was. A file replaced keeps
// its permissions, a new one gets those of any new file.
//
// Txt, Csv and Json as TableText gives them; Xlsx a workbook of a sheet per table (numbers stored as
// numbers, at most 10 significant digits, the header row of "heading (unit)" frozen), a
// "Definitions" sheet (DefinitionsTable of every table), and
// docProps/core.xml dated by the document's made time.
void SaveTableFile(const TableDocument &document, TableFormat format, const QString &path);

// The bytes of a text form: Txt (FixedText), Csv (CsvText of CsvTable), Json (JsonText). A workbook
// has no text form: InvalidCall.
QByteArray TableText(const TableDocument &document, TableFormat format);

// ".txt", ".csv", ".xlsx", ".json".
QString TableFileSuffix(TableFormat format);

// The format of an export file by its suffix (".csv", ".xlsx"); fails naming the file on any other.
TableFormat ExportFormatOf(const QString &path);

// An Export... of a window: the format by the file's suffix; a CSV file with csvDefinitions gets
// its definitions beside it (SaveCsvDefinitions).
void SaveExport(const TableDocument &document, const QString &path, bool csvDefinitions = false);

// The definitions of a CSV file's table and of the file (DefinitionsTable) as a CSV file of their
// own beside it, NAME.definitions.csv for NAME.csv, written as whole as the table file.
void SaveCsvDefinitions(const TableDocument &document, const QString &csvPath);
QString DefinitionsPath(const QString &csvPath);

// The runs a document's numbers come from, with their descriptions and import dates; a run that is
// not in the database is left out.
QList<TableSource> ReadTableSources(RunStore &db, const QList<RunKey> &runs);
TableSource TableSourceOf(const RunInfo &info);

// The save-file question of an "Export..." button: a workbook or CSV file, proposed as the stem
// with ".xlsx" in the folder.
FileRequest ExportFileRequest(const QString &title, const QString &folder, const QString &fileStem);

// The default name of a table file, without suffix, naming the run's kind so that the files of
// the two lists of one Run Id do not meet: "SAMPLE_Harvested_Stock", "A%2FB_Standing_Summary".
QString ExportFileStem(const RunKey &run, const QString &what);

}  // namespace sendrel
