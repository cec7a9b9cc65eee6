#pragma once

#include <QString>

namespace sendrel {

class UserQuestions;

// Path helpers on native paths.
bool PathFileExists(const QString &path);
bool PathIsDirectory(const QString &path);
QString PathFindFileName(const QString &path);
QString PathRemoveFileSpec(const QString &path);
QString PathFindExtension(const QString &path);
QString PathAddBackslash(const QString &path);   // adds the closing separator if missing

// True when path names an existing file, asking with a file dialog until it does or the user
// gives up (false). path takes what the user picked.
bool LocateFile(UserQuestions &questions, const QString &title, const QString &filter, QString &path, bool forceDialog);

}  // namespace sendrel
