#pragma once

#include <QString>

namespace sendrel {

class frmHelp;

// Help commands of ShowHelp.
enum HelpCommand { HelpDefault = 0, HelpContents = 1, HelpIndex = 2, HelpSearch = 3, HelpContentsAndTopic = 4 };

// Opens the help viewer: 0 the default topic, 1 the contents, 2 the index, 3 the search with an
// empty query, 4 the contents and then, unless topic is 0, that topic. helpFile is the program's
// help file ("...\Help\Tolvane.chm"): its pages lie in the folder beside it. False when the
// command is unknown or the help cannot be shown; callers may ignore it.
bool ShowHelp(int command, const QString &helpFile, int topic);

// The contents, then a page of the help by its file name ("delete.html"): for windows whose
// page has no topic number. False when the help cannot be shown.
bool ShowHelpPage(const QString &helpFile, const QString &page);

// The folder of the topic pages for a help file path.
QString HelpFolderOf(const QString &helpFile);

// The one help window, made at its first use; nullptr before.
frmHelp *HelpWindow();

}  // namespace sendrel
