#pragma once

// What a window test needs: a model with scripted questions, settings of its own, a run database,
// and the frame with the browser, as a start by hand leaves them. Header-only: only window tests
// include it, and they link the windows.

#include "support/RunDatabaseFixture.h"

#include "app/ScriptedQuestions.h"
#include "app/SettingsStore.h"
#include "app/TreeModel.h"
#include "app/gui/frmSendrel.h"
#include "browser/gui/frmMarquel.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QSettings>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTest>
#include <QTimer>

#include <functional>
#include <memory>

struct GuiBench {
    sendrel::SettingsStore store;
    sendrel::ScriptedQuestions questions;
    sendrel::TreeModel tm{store, questions};
    RunDatabaseFixture db;
    QList<int> ended;   // codes of EndProcess calls
    std::unique_ptr<sendrel::frmSendrel> frame;

    GuiBench()
    {
        // A start by hand reads what the last test left; each bench starts from an empty store.
        QSettings settings(store.fileName(), QSettings::IniFormat);
        settings.clear();
        settings.sync();
        tm.EndProcess = [this](int code) { ended.append(code); };
        tm.ProgramDir = QStringLiteral(SENDREL_BIN_DIR);
    }

    // Opens the database, then the frame and the browser as a start by hand does.
    sendrel::frmMarquel *start()
    {
        db.open(tm);
        frame = std::make_unique<sendrel::frmSendrel>(tm);
        frame->resize(1200, 800);
        frame->show();
        sendrel::frmMarquel *browser = sendrel::frmMarquel::Load(tm, *frame);
        frame->SubWindowOf(browser)->show();
        QApplication::processEvents();
        return browser;
    }

    void addRun(const QString &runId, const QString &sorH, const QString &description)
    {
        RunDatabaseFixture::addRun(tm, runId, sorH, description);
    }
    void execute(const QString &sql) { RunDatabaseFixture::execute(tm, sql); }
    int count(const QString &sql) { return RunDatabaseFixture::count(tm, sql); }
};

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

// Runs action on the next modal window as soon as it is up, so that a test can answer a window
// that its code shows with exec().
inline void onNextModal(std::function<void(QWidget *)> action)
{
    auto *timer = new QTimer;
    timer->setInterval(5);
    QObject::connect(timer, &QTimer::timeout, [timer, action] {
        QWidget *w = QApplication::activeModalWidget();
        if (!w || !w->isVisible())
            return;
        timer->stop();
        timer->deleteLater();
        action(w);
    });
    timer->start();
}

template <typename T>
T *child(QWidget *w, const char *name)
{
    return w->findChild<T *>(QString::fromLatin1(name));
}
