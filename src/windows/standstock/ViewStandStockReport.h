#pragma once

#include "domain/standstock/StandStockReport.h"

#include <QList>
#include <QString>

#include <functional>

class QListWidget;
class QWidget;

namespace sendrel {

struct TreeModel;
class ClassLayout;
class StandStockData;
class frmReport;

// The selected entries of a list of years, in the list's order: each entry's text is its year,
// its Qt::UserRole value its cycle.
QList<SelectedCycle> SelectedCycles(const QListWidget &lstCycles);

// How the viewer is put on screen: modally by default. Tests look at it or make it fail here.
using ShowReportViewerFn = std::function<void(frmReport &viewer)>;

// "View Reports" of a stand and stock window, the whole of it: the title and description
// dialog, the compile of the selected years over the window's classes behind the busy
// message and the hourglass, and the report viewer, shown modally. This_RunDesc takes the
// run's parameters as the compile reads them. setMousePointer sets the frame's pointer
// (0 default, 11 hourglass); it is back at 0 when this returns. Failures are shown here: a
// failed compile in the box "The following error occured:", a viewer that cannot be shown
// in the box "Report Failed: ". window is the viewer's parent.
void ViewStandStockReport(TreeModel &tm, QWidget *window, const QString &This_RunId, const QString &This_SorH, QString &This_RunDesc,
                          bool density, const QListWidget &lstCycles, const ClassLayout &layout, StandStockData &data,
                          const std::function<void(int pointer)> &setMousePointer = {}, const ShowReportViewerFn &showViewer = {});

}  // namespace sendrel
