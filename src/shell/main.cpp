#include "shell/Main.h"
#include "app/TreeModel.h"
#include "base/SettingsStore.h"
#include "domain/import/ImportTreeList.h"
#include "shell/GuiQuestions.h"
#include "shell/RevealPicture.h"
#include "shell/frmSendrel.h"

#include <QApplication>

#include <cstdio>
#include <cstdlib>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Sendrel"));
    QApplication::setWindowIcon(sendrel::ProgramIcon());

    sendrel::SettingsStore store;
    sendrel::GuiQuestions questions;
    sendrel::TreeModel tm(store, questions);
    tm.ProgramDir = QApplication::applicationDirPath();
    // The end is at once: settings are saved and the database closed before this is called, and no
    // window may do further work.
    tm.EndProcess = [](int code) {
        std::fflush(nullptr);
        std::_Exit(code);
    };
    questions.setNextFreeRunId([&tm](const QString &name) { return sendrel::NextFreeRunId(tm.db, name); });

    sendrel::frmSendrel *frame = nullptr;
    if (!sendrel::Main(tm, app.arguments(), frame))
        return 1;
    questions.setParent(frame);
    questions.setHelpFile(tm.settings.HelpFile);
    const int code = app.exec();
    delete frame;
    return code;
}
