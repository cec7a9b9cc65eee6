#include "shell/Main.h"

#include "app/CommandLine.h"
#include "app/FolderLocation.h"
#include "app/GameDB.h"
#include "app/TreeModel.h"
#include "base/SendrelError.h"
#include "base/SettingsStore.h"
#include "base/UserQuestions.h"
#include "shell/frmKD_Splash.h"
#include "shell/frmSendrel.h"
#include "store/Schema.h"
#include "windows/browser/frmMarquel.h"

#include <QCheckBox>
#include <QMdiSubWindow>

namespace sendrel {

namespace {

void showMainFailure(TreeModel &tm, const SendrelError &e)
{
    tm.questions.message(
        {QStringLiteral("Sendrel"), QStringLiteral("Module:TREEMODL|MAIN\n") + e.description(), MsgIcon::None, MsgButtons::OK, Answer::OK});
}

void showBrowser(frmSendrel &frame, frmMarquel &browser)
{
    if (QMdiSubWindow *sub = frame.SubWindowOf(&browser))
        sub->show();
    browser.show();
}

}  // namespace

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
        tm.settings.LoadSettings(tm.settingsStore, tm.ProgramDir);

        if (!tm.RunOnCommandLine) {
            // Main waits here until the splash has closed itself.
            frmKD_Splash splash;
            splash.exec();
        }

        // No folder holds a run database at the root of this platform's file system: an empty
        // DataDir names no folder, so the frame's load sets one up and the path follows it.
        const bool noDataFolder = tm.settings.DataDir.isEmpty();
        if (!noDataFolder)
            tm.settings.DataDir = PathAddBackslash(tm.settings.DataDir);
        tm.GameDBPath = noDataFolder ? QString() : tm.settings.DataDir + kGameDBFileName;

        // Reaching for the frame's file dialog creates the frame; its load step sets up the folders
        // before the database file is looked for.
        const auto makeFrame = [&] {
            if (!frame) {
                frame = new frmSendrel(tm);
                frame->Form_Load();
            }
            if (noDataFolder)
                tm.GameDBPath = PathAddBackslash(tm.settings.DataDir) + kGameDBFileName;
        };
        // A server database chosen before; where it cannot be opened now (the server away, the
        // password refused) the file of the Data folder serves, and the next start tries again.
        bool opened = false;
        if (!tm.settings.ServerDatabase.isEmpty()) {
            makeFrame();
            try {
                opened = OpenServerDatabase(tm, tm.settings.ServerDatabase);
            } catch (const SendrelError &e) {
                tm.questions.ShowErrorMessage(e.description());
            }
        }
        if (!opened)
            OpenGameDB(tm, false, makeFrame);

        if (!tm.RunOnCommandLine) {
            frame->show();
            frmMarquel *browser = frmMarquel::Load(tm, *frame);
            frame->Marquel = browser;
            showBrowser(*frame, *browser);
            return true;
        }
    } catch (const SendrelError &e) {
        showMainFailure(tm, e);
        return false;
    }

    // Started with a run: the browser holds only that run and opens its stand and stock window.
    // A failure from here on is shown, and what is open by then stays.
    try {
        frmMarquel *browser = frmMarquel::Load(tm, *frame);
        frame->Marquel = browser;
        frame->setWindowState(frame->windowState() | Qt::WindowMaximized);
        frame->show();
        showBrowser(*frame, *browser);
        browser->ChooseStandAndStock();
        browser->SelectedItems = 1;
        // The run's own window is to take the left place, not the browser.
        frame->LeftForm() = nullptr;
        browser->OKClickMarq();
    } catch (const SendrelError &e) {
        showMainFailure(tm, e);
    }
    return true;
}

}  // namespace sendrel
