#pragma once

#include "domain/standstock/ClassLayout.h"
#include "domain/standstock/StandStockData.h"

#include <QCommandLineParser>
#include <QList>

namespace sendrel {

struct Settings;

// The entries of the list of years that --cycles or --years (or --cycle, --year) select, in the
// list's order; all of them when none is given. A cycle or year the run lacks is a failure.
QList<CycleListEntry> SelectedEntries(const QCommandLineParser &parser, const QVector<CycleListEntry> &entries, const QString &runName);

// The class layout of --classes START,WIDTH,COUNT, else of the settings, taken as the window
// takes its boxes; a layout the window refuses fails with the window's fault texts.
void LayoutFromFlagsOrSettings(const QCommandLineParser &parser, const Settings &settings, ClassLayout &layout);

}  // namespace sendrel
