#include "windows/common/ShowHelp.h"

#include "windows/common/frmHelp.h"

#include <QApplication>
#include <QFileInfo>
#include <QPointer>

namespace sendrel {

namespace {

QPointer<frmHelp> &helpWindowRef()
{
    static QPointer<frmHelp> window;
    return window;
}

}  // namespace

QString HelpFolderOf(const QString &helpFile)
{
    const QFileInfo info(helpFile);
    if (info.isDir())
        return info.absoluteFilePath();
    // The suite names a compiled help file; its pages lie in the folder that holds it.
    return info.absolutePath();
}

frmHelp *HelpWindow()
{
    return helpWindowRef().data();
}

namespace {

// The help window on the folder of a help file, with the modality that the moment asks for;
// nullptr when the folder holds no contents page.
frmHelp *preparedHelpWindow(const QString &helpFile)
{
    const QString folder = HelpFolderOf(helpFile);
    if (!QFileInfo::exists(folder + QStringLiteral("/index.html")))
        return nullptr;
    QPointer<frmHelp> &window = helpWindowRef();
    if (!window) {
        window = new frmHelp;
        window->setAttribute(Qt::WA_DeleteOnClose);
    }
    // Help asked for while a window waits modally (the import dialogs, the report description)
    // would be blocked by that window until it is answered: it comes up modal itself, above it.
    QWidget *modal = QApplication::activeModalWidget();
    const Qt::WindowModality modality = modal == window ? window->windowModality() : modal ? Qt::ApplicationModal : Qt::NonModal;
    if (window->windowModality() != modality) {
        window->hide();  // a window takes a new modality when it is shown again
        window->setWindowModality(modality);
    }
    window->SetHelpFolder(folder);
    return window;
}

void bringUp(frmHelp *window)
{
    window->show();
    window->raise();
    window->activateWindow();
}

}  // namespace

bool ShowHelp(int command, const QString &helpFile, int topic)
{
    if (command < HelpDefault || command > HelpContentsAndTopic)
        return false;
    frmHelp *window = preparedHelpWindow(helpFile);
    if (!window)
        return false;
    switch (command) {
    case HelpDefault:
    case HelpContents:
    case HelpIndex:
        window->ShowContents();
        break;
    case HelpSearch:
        window->ShowSearch();
        break;
    case HelpContentsAndTopic:
        window->ShowContents();
        if (topic != 0)
            window->ShowTopic(topic);
        break;
    }
    bringUp(window);
    return true;
}

bool ShowHelpPage(const QString &helpFile, const QString &page)
{
    frmHelp *window = preparedHelpWindow(helpFile);
    if (!window)
        return false;
    window->ShowContents();
    window->ShowPage(page);
    bringUp(window);
    return true;
}

}  // namespace sendrel
