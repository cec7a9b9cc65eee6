#pragma once

#include <QStringList>

namespace sendrel {

struct TreeModel;
class frmSendrel;

// The order of a start, from the command line to the first window: settings, the splash on a
// start by hand, the database (which brings up the frame and its folder check), then the frame
// with the run browser, or with "/R RUNID" the stand and stock window of that run. Gives false
// when the start failed: the user has been told "Module:TREEMODL|MAIN" and the cause, and the
// process is to end. frame receives the frame as soon as it exists.
bool Main(TreeModel &tm, const QStringList &arguments, frmSendrel *&frame);

}  // namespace sendrel
