#include "app/gui/Main.h"

#include "app/CommandLine.h"
#include "app/FolderLocation.h"
#include "app/SendrelError.h"
#include "app/SettingsStore.h"
#include "app/TreeModel.h"
#include "app/UserQuestions.h"
#include "app/gui/frmSendrel.h"
#include "store/GameDB.h"
#include "store/Schema.h"

#include <QDir>

namespace sendrel {

bool Main(TreeModel &tm, const QStringList &arguments, frmSendrel *&frame)
{
    try {
        tm.ModelVariant = 0;
        try {
            const CommandLineValues values = ReadCommandLine(CommandLineText(arguments));
            tm.CurrentRunId = values.CurrentRunId;
            tm.ModelVariant = values.ModelVariant;
        } catch (const SendrelError &e) {
            throw e.tagged(kTreeModelTag + QStringLiteral("|ReadCommandLine"));
        }
        tm.RunOnCommandLine = !tm.CurrentRunId.isEmpty();
        tm.settings.LoadSettings(tm.store, tm.ProgramDir);

        tm.settings.DataDir = PathAddBackslash(tm.settings.DataDir);
        tm.GameDBPath = tm.settings.DataDir + kGameDBFileName;

        OpenGameDB(tm, false, [&] {
            if (!frame) {
                frame = new frmSendrel(tm);
                frame->Form_Load();
            }
        });

        frame->show();
        return true;
    } catch (const SendrelError &e) {
        tm.questions.message({QStringLiteral("Sendrel"), QStringLiteral("Module:TREEMODL|MAIN\n") + e.description(),
                              MsgIcon::None, MsgButtons::OK, Answer::OK});
        return false;
    }
}

}  // namespace sendrel
