#pragma once

// What a window test needs on top of the run database: the frame with the browser, as a start by
// hand leaves them, and the user's clicks. Header-only: only window tests include it, and they
// link the windows.

#include "support/RunDatabase.h"

#include "shell/frmSendrel.h"
#include "windows/browser/frmMarquel.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiSubWindow>
#include <QSettings>
#include <QThread>
#include <QTest>
#include <QTimer>

#include <functional>
#include <memory>

// The run database is made but not opened: start() opens it as a start by hand does. EndProcess
// is only recorded, since the windows carry on after it.
struct GuiBench : sendrel::test::RunDatabase {
    std::unique_ptr<sendrel::frmSendrel> frame;

    GuiBench() : RunDatabase(Db::Created)
    {
        // A start by hand reads what the last test left; each bench starts from an empty store.
        QSettings settings(store.fileName(), QSettings::IniFormat);
        settings.clear();
        settings.sync();
        tm.EndProcess = [this](int code) { ended.append(code); };
    }

    // Opens the database with the settings' folders on its folder.
    void openDatabase()
    {
        tm.settings.DataDir = folder();
        tm.settings.WorkDir = folder();
        openAsProgram();
    }

    // Opens the database, then the frame and the browser as a start by hand does.
    sendrel::frmMarquel *start()
    {
        openDatabase();
        frame = std::make_unique<sendrel::frmSendrel>(tm);
        frame->resize(1200, 800);
        frame->show();
        sendrel::frmMarquel *browser = sendrel::frmMarquel::Load(tm, *frame);
        frame->Marquel = browser;
        frame->SubWindowOf(browser)->show();
        QApplication::processEvents();
        return browser;
    }

    // A run as an import leaves it: its Model_Run and Run rows and the header of its first year.
    void addListedRun(const QString &runId, const QString &sorH, const QString &description)
    {
        addRun(runId, sorH, description);
        addHeader(runId, sorH, 1, 2000);
    }
};

// The report windows in the frame (stand and stock, composition), in the order they opened.
inline QList<QWidget *> reportWindows(const sendrel::frmSendrel &frame)
{
    QList<QWidget *> windows;
    for (QWidget *form : frame.ChildForms()) {
        if (form->property("This_RunId").isValid())
            windows.append(form);
    }
    return windows;
}

// The texts of a list's rows, in order.
inline QStringList rowTexts(const QListWidget *list)
{
    QStringList texts;
    for (int i = 0; i < list->count(); ++i)
        texts << list->item(i)->text();
    return texts;
}

// The row of a run list whose text begins with head ("A:Standing"), or -1.
inline int rowOf(const QListWidget *list, const QString &head)
{
    const QList<QListWidgetItem *> found = list->findItems(head + QLatin1Char('\t'), Qt::MatchStartsWith);
    return found.isEmpty() ? -1 : list->row(found.first());
}

// Clicks a row of a list as the user does.
inline void clickRow(QListWidget *list, int row)
{
    QListWidgetItem *item = list->item(row);
    list->scrollToItem(item);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, list->visualItemRect(item).center());
}

// Clicks a check box or an option on its box, as the user does (the widget may be wider than its text).
inline void clickBox(QAbstractButton *button)
{
    QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, QPoint(6, button->height() / 2));
}

// The rows of a list that are highlighted.
inline QList<int> highlightedRows(const QListWidget *list)
{
    QList<int> rows;
    for (int i = 0; i < list->count(); ++i) {
        if (list->item(i)->isSelected())
            rows.append(i);
    }
    return rows;
}

// Replaces the text of a box by typing, key by key, as a person would.
inline void Retype(QLineEdit *box, const QString &text)
{
    box->setFocus();
    box->selectAll();
    QTest::keyClick(box, Qt::Key_Delete);
    QTest::keyClicks(box, text);
}

// Leaves a dialog as the user does: "Return", "Escape", "close" (its close box), or a click on
// the button of that name.
inline void leaveDialog(QWidget *dialog, const QString &how)
{
    if (how == QLatin1String("Return") || how == QLatin1String("Escape"))
        QTest::keyClick(dialog, how == QLatin1String("Return") ? Qt::Key_Return : Qt::Key_Escape);
    else if (how == QLatin1String("close"))
        dialog->close();
    else
        QTest::mouseClick(dialog->findChild<QAbstractButton *>(how), Qt::LeftButton);
}

// Runs action on the next modal window as soon as it is up, so that a test can answer a window
// that its code shows with exec(). Up means its own event loop runs: a window that handles events
// while it is being shown (the splash) would otherwise be closed before exec() waits, and wait for ever.
inline void onNextModal(std::function<void(QWidget *)> action)
{
    auto *timer = new QTimer;
    timer->setInterval(5);
    const int outerLoops = QThread::currentThread()->loopLevel();
    QObject::connect(timer, &QTimer::timeout, [timer, action, outerLoops] {
        QWidget *w = QApplication::activeModalWidget();
        if (!w || !w->isVisible() || QThread::currentThread()->loopLevel() <= outerLoops)
            return;
        timer->stop();
        timer->deleteLater();
        action(w);
    });
    timer->start();
}

// The control of that name that belongs to the window itself, not to a window it owns (the
// range editor has a cmdOK and a lblDbhError too).
namespace sendrel::test {
template <typename T> T *Control(QWidget *form, const QString &name)
{
    for (T *c : form->findChildren<T *>(name)) {
        if (c->window() == form->window())
            return c;
    }
    return nullptr;
}
template <typename T> T *Control(QWidget *form, const char *name) { return Control<T>(form, QString::fromLatin1(name)); }
// The browser's list of runs and a command of its menus, by objectName.
inline QListWidget *RunList(QWidget *browser) { return Control<QListWidget>(browser, "lstRuns"); }
inline QAction *MenuCommand(QWidget *browser, const char *name) { return browser->findChild<QAction *>(QString::fromLatin1(name)); }
}  // namespace sendrel::test
