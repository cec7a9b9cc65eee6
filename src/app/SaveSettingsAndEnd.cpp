#include "app/SaveSettingsAndEnd.h"

#include "app/GameDB.h"
#include "app/TreeModel.h"

namespace sendrel {

void SaveSettingsAndEnd(TreeModel &tm, double leftPos, double topPos)
{
    CloseGameDB(tm);
    tm.settings.SaveSettings(tm.settingsStore, leftPos, topPos);
    tm.EndProcess(0);
}

}  // namespace sendrel
