#pragma once

namespace sendrel {

struct TreeModel;

// The orderly end: closes the database, writes every setting (leftPos and topPos are the
// frame's edges) and ends the process through tm.EndProcess(0). A failure other than a missing
// key is passed on, and then the process does not end here.
void SaveSettingsAndEnd(TreeModel &tm, double leftPos, double topPos);

}  // namespace sendrel
