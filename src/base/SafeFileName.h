#pragma once

#include <QString>

namespace sendrel {

// A Run Id made fit to stand in a file name, so that every run can be reported and no file lands
// outside its folder. The mapping is stable, and one to one for names of up to 150 characters:
// every character that a file system refuses or that would change the path, and "%" itself, is
// written as "%" and its code in two hex digits:
//   - "/", "\", ":", "*", "?", "\"", "<", ">", "|" and "%";
//   - control characters (below 32, and 127);
//   - "." at the start and a "." behind another ".", so that neither ".." nor a hidden name come of it;
//   - a blank at the end.
// Other characters, letters of any script and inner blanks among them, stay as they are. A result
// longer than 150 characters keeps its first 140, "~" and 8 hex digits of a hash of the whole Run
// Id, so names stay within what file systems take.
// Examples: "A/B" -> "A%2FB", "../up" -> "%2E%2E%2Fup", "R 7:a" -> "R 7%3Aa".
QString SafeFileStem(const QString &runId);

}  // namespace sendrel
