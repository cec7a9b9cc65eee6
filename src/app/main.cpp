#include "app/SettingsStore.h"
#include "app/TreeModel.h"
#include "app/gui/GuiQuestions.h"
#include "app/gui/Main.h"
#include "app/gui/frmSendrel.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Sendrel"));

    sendrel::SettingsStore store;
    sendrel::GuiQuestions questions;
    sendrel::TreeModel tm(store, questions);
    tm.ProgramDir = QApplication::applicationDirPath();

    sendrel::frmSendrel *frame = nullptr;
    if (!sendrel::Main(tm, app.arguments(), frame))
        return 1;
    questions.setParent(frame);
    const int code = app.exec();
    delete frame;
    return code;
}
