#pragma once

// Where the windows reach the import core: ImportTreeList, NextFreeRunId, OpenReportWindows and
// the Delete button's routine, all as importcore::... . For now these are the interim versions;
// once the import core is merged, include its headers here instead and alias importcore to
// ::sendrel (with cmdDelete under the core's name).
#include "import/gui/InterimImportCore.h"

namespace sendrel {
namespace importcore = ::sendrel::interim;
}  // namespace sendrel
