#pragma once

#include <QString>
#include <QtGlobal>

namespace sendrel {

class UserQuestions;
struct TreeModel;

// Path helpers on native paths.
bool PathFileExists(const QString &path);
bool PathIsDirectory(const QString &path);
QString PathFindFileName(const QString &path);
QString PathRemoveFileSpec(const QString &path);
QString PathFindExtension(const QString &path);
QString PathAddBackslash(const QString &path);  // adds the closing separator if missing

// True when path names an existing file, asking with a file dialog until it does or the user
// gives up (false). path takes what the user picked. With forceDialog over a file that exists,
// giving up at the dialog keeps that file without a question.
bool LocateFile(UserQuestions &questions, const QString &title, const QString &filter, QString &path, bool forceDialog);

// The first start: the Data and Work folders. Each gives true when the folder exists or was set
// up (chosen, filled from the installation, saved under "Common"); false when the user refused.
bool LocateDataFolder(TreeModel &tm, QString &dataDir);
bool LocateWorkFolder(TreeModel &tm, QString &workDir);
// Both folders of the settings, asking only for what is missing. True when both exist now.
bool LocateDirectories(TreeModel &tm);

// Copies every file of source (not of its subfolders) into target, both with a closing separator.
// With askOverwrite an existing target file is replaced only when the user says so (default No).
// Every target file is made writable. Gives the number of files handled.
qint16 CopyFolderFiles(UserQuestions &questions, const QString &source, const QString &target, bool askOverwrite, const QString &title);

// The folder the user picked, or "" when the dialog was cancelled.
QString BrowseForFolder(UserQuestions &questions, const QString &title, const QString &startFolder);

// Special folder ids understood by GetCompanyProductFolderPath.
constexpr int kFolderIdDocuments = 5;
// Status of the folder helpers: 0 success, else the database layer's general failure number.
constexpr long kFolderStatusOK = 0;

// D (the special folder), company and product, each with a closing separator, empty parts
// skipped; with create each missing level is made. Without create a missing special folder gives
// the failure status (the path is filled all the same).
long GetCompanyProductFolderPath(int folderId, const QString &company, const QString &product, bool create, QString &path);
long GetMyDocumentsFolderPath(const QString &company, const QString &product, bool create, QString &path);
// Documents + "Tolvane", and its "Data" and "Work" folders, each with a closing separator.
QString GetProductFolder(bool create);
QString GetDefaultDataFolder(bool create);
QString GetDefaultWorkFolder(bool create);

}  // namespace sendrel
