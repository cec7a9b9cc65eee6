#pragma once

#include <QStringList>

namespace sendrel {

struct TreeModel;
class frmSendrel;

// The order of a start, from the command line to the first window. Gives false when the start
// failed: the user has been told "Module:TREEMODL|MAIN" and the cause, and the process ends.
bool Main(TreeModel &tm, const QStringList &arguments, frmSendrel *&frame);

}  // namespace sendrel
