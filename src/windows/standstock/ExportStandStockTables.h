#pragma once

#include "store/Run.h"

#include <functional>

class QListWidget;

namespace sendrel {

struct TreeModel;
class ClassLayout;
class StandStockData;

// "Export..." of a stand and stock window: the stand table (density) or stock table of the
// selected years, over the window's classes, to a workbook (a sheet per year) or a CSV file that
// the user names (proposed as RUN_Kind_Stand or _Stock), and the frame's status bar tells where it
// went. No year selected: "No Cycles Are Selected". A failure is shown and leaves an earlier file
// as it was. setMousePointer sets the frame's pointer (0 default, 11 hourglass); it is back at 0 when
// this returns.
void ExportStandStockTables(TreeModel &tm, const RunKey &run, bool density, const QListWidget &lstCycles, const ClassLayout &layout,
                            StandStockData &data, const std::function<void(int pointer)> &setMousePointer = {});

}  // namespace sendrel
