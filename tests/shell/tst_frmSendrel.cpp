// The workspace frame: its menu commands and the browser's, the two places and the arrangement,
// the child windows' menus, a failing load, the busy window, the orderly end, the about window,
// and the help, also when a modal dialog asks for it.
#include "support/TestMain.h"
#include "support/GuiBench.h"

#include "shell/GuiQuestions.h"
#include "shell/RevealPicture.h"
#include "shell/frmKD_About.h"
#include "windows/common/ChildFrame.h"
#include "windows/common/ChildMenus.h"
#include "windows/common/ShowHelp.h"
#include "windows/common/frmBusyMessage.h"
#include "windows/common/frmHelp.h"

#include <QLabel>
#include <QMdiArea>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTextBrowser>

using namespace sendrel;
using namespace sendrel::test;

namespace {

// A child window with a menu of its own.
class MenuChild : public QWidget, public ChildMenus {
public:
    MenuChild() : m_menu(new QMenu(QStringLiteral("&Chart"), this)) { m_menu->menuAction()->setObjectName(QStringLiteral("mnuChart")); }
    QList<QMenu *> ChildMenuList() const override { return {m_menu}; }

private:
    QMenu *m_menu;
};

QStringList barNames(frmSendrel &frame)
{
    QStringList names;
    for (QAction *a : frame.menuBar()->actions())
        names << a->objectName();
    return names;
}

QMdiSubWindow *addPlain(frmSendrel &frame, const QPoint &at)
{
    auto *w = new QWidget;
    w->resize(300, 200);
    QMdiSubWindow *sub = frame.AddChildWindow(w);
    sub->show();
    sub->move(at);
    return sub;
}

// A frame that notes the commands it is given instead of carrying them out.
struct RecordingFrame : frmSendrel {
    using frmSendrel::frmSendrel;
    QStringList calls;
    void Arrange(int command) override { calls << QStringLiteral("Arrange %1").arg(command); }
    void ArrangeWindows() override { calls << QStringLiteral("ArrangeWindows"); }
    void ShowHelpTopic(int topic) override { calls << QStringLiteral("Help %1").arg(topic); }
    void ShowAbout() override { calls << QStringLiteral("About"); }
    bool SaveSettingsAndEnd() override
    {
        calls << QStringLiteral("End");
        return false;
    }
};

const QString kHelpFolder = QStringLiteral(SENDREL_SOURCE_DIR "/install/Help");
const QString kHelpFile = QDir::toNativeSeparators(kHelpFolder + QStringLiteral("/Tolvane.chm"));

// The page the help window shows, as its file name.
QString shownPage()
{
    frmHelp *help = HelpWindow();
    return help ? QFileInfo(Control<QTextBrowser>(help, "txtTopic")->source().toLocalFile()).fileName() : QString();
}

// Whether the help window is blocked by a modal window now, as the window system told it.
class HelpBlocked : public QObject {
public:
    HelpBlocked() { qApp->installEventFilter(this); }
    ~HelpBlocked() override { qApp->removeEventFilter(this); }
    bool blocked = false;

protected:
    bool eventFilter(QObject *o, QEvent *e) override
    {
        if (o->isWidgetType() && o->objectName() == QLatin1String("frmHelp")
            && (e->type() == QEvent::WindowBlocked || e->type() == QEvent::WindowUnblocked))
            blocked = e->type() == QEvent::WindowBlocked;
        return false;
    }
};

}  // namespace

class tst_frmSendrel : public QObject {
    Q_OBJECT

private slots:
    void cleanup()
    {
        if (frmHelp *help = HelpWindow())
            help->close();
        QApplication::processEvents();
    }

    // Each command of the frame's own menu, and of the browser's, reaches what it says.
    void menuCommands_data()
    {
        QTest::addColumn<QString>("frameItem");
        QTest::addColumn<QString>("browserItem");
        QTest::addColumn<QString>("call");
        QTest::newRow("exit") << "mnu_Exit" << "mnu_File_Exit" << "End";
        QTest::newRow("cascade") << "mnu_Window_Cascade" << "mnu_Window_Cascade" << "Arrange 0";
        QTest::newRow("tile horizontally") << "mnu_Window_TileHorizontally" << "mnu_Window_TileHorizontally" << "Arrange 1";
        QTest::newRow("tile vertically") << "mnu_Window_TileVertically" << "mnu_Window_TileVertically" << "Arrange 2";
        QTest::newRow("arrange icons") << "mnu_Window_ArrangeIcons" << "mnu_Window_ArrangeIcons" << "Arrange 3";
        QTest::newRow("arrange windows") << "mnuArrangeWindows" << "mnuArrangeWindows" << "ArrangeWindows";
        QTest::newRow("contents") << "mnuHelpContents" << "mnu_Help_Contents" << "Help 0";
        QTest::newRow("search") << "mnuHelpSearch" << "mnuHelpSearch" << "Help 0";
        QTest::newRow("support") << "mnuHelpTechnicalSupport" << "mnuHelpTechnicalSupport" << "Help 14";
        QTest::newRow("acknowledgements") << "mnuHelpAcknowledgements" << "mnuHelpAcknowledgements" << "Help 15";
        QTest::newRow("about") << "mnuHelpAbout" << "mnu_Help_About" << "About";
    }

    void menuCommands()
    {
        QFETCH(QString, frameItem);
        QFETCH(QString, browserItem);
        QFETCH(QString, call);
        GuiBench b;
        RecordingFrame frame(b.tm);
        frmMarquel browser(b.tm, frame);
        frame.findChild<QAction *>(frameItem)->trigger();
        browser.findChild<QAction *>(browserItem)->trigger();
        QCOMPARE(frame.calls, (QStringList{call, call}));
    }

    // The active child's menus replace the frame's, and the frame's come back when it is gone.
    void childWindows()
    {
        GuiBench b;
        frmSendrel frame(b.tm);
        frame.resize(1000, 700);
        frame.show();
        const QStringList own = barNames(frame);
        QCOMPARE(own.size(), 3);
        QMdiSubWindow *sub = frame.AddChildWindow(new MenuChild);
        sub->show();
        frame.mdiArea()->setActiveSubWindow(sub);
        QCOMPARE(barNames(frame), QStringList{QStringLiteral("mnuChart")});
        QMdiSubWindow *plain = addPlain(frame, QPoint(10, 10));
        frame.mdiArea()->setActiveSubWindow(plain);
        QCOMPARE(barNames(frame), own);
        frame.mdiArea()->setActiveSubWindow(sub);
        sub->close();
        plain->close();
        QApplication::processEvents();
        QCOMPARE(barNames(frame), own);

        // The two places (nothing moves while both are empty, and no size changes), the tiles and the icons.
        QMdiSubWindow *left = addPlain(frame, QPoint(50, 60));
        QMdiSubWindow *right = addPlain(frame, QPoint(70, 80));
        const QRect area = frame.mdiArea()->viewport()->rect();
        frame.ArrangeWindows();
        QCOMPARE(left->pos(), QPoint(50, 60));
        frame.LeftForm() = left->widget();
        frame.RightForm() = right->widget();
        const QSize size = right->size();
        frame.ArrangeWindows();
        QCOMPARE(left->pos(), QPoint(0, 0));
        QCOMPARE(right->pos(), QPoint(area.width() / 2, 0));
        QCOMPARE(right->size(), size);

        frame.Arrange(kArrangeTileVertical);
        QCOMPARE(QSet<int>({left->x(), right->x()}), QSet<int>({0, area.width() / 2}));
        QCOMPARE(left->height(), area.height());
        frame.Arrange(kArrangeTileHorizontal);
        QCOMPARE(QSet<int>({left->y(), right->y()}), QSet<int>({0, area.height() / 2}));
        QCOMPARE(left->width(), area.width());
        right->showMinimized();
        frame.Arrange(kArrangeIcons);
        QCOMPARE(right->pos(), QPoint(0, area.bottom() - right->height() + 1));
    }

    // New and arranged windows stay inside the work area of a frame of 1024x720: no larger than
    // the room from their place to its edges, a form larger than its window scrolling inside it;
    // a maximised window stays maximised where it is.
    void windowsFitTheWorkArea()
    {
        GuiBench b;
        frmSendrel frame(b.tm);
        frame.resize(1024, 720);
        frame.show();
        QVERIFY(QTest::qWaitForWindowExposed(&frame));
        const QRect area = frame.mdiArea()->viewport()->rect();
        auto *big = new QWidget;
        big->setMinimumSize(1400, 900);
        big->resize(1400, 900);
        QMdiSubWindow *bigSub = frame.AddChildWindow(big);
        bigSub->show();
        QApplication::processEvents();
        QVERIFY(area.contains(bigSub->geometry()));
        auto *scroll = bigSub->findChild<QScrollArea *>(QStringLiteral("childScroll"));
        QVERIFY(scroll && scroll->horizontalScrollBar()->maximum() > 0 && scroll->verticalScrollBar()->maximum() > 0);
        QCOMPARE(FormOf(bigSub), big);
        QCOMPARE(frame.SubWindowOf(big), bigSub);

        QMdiSubWindow *left = addPlain(frame, QPoint(0, 0));
        QMdiSubWindow *right = addPlain(frame, QPoint(0, 0));
        left->resize(700, 500);
        right->resize(700, 500);
        frame.LeftForm() = FormOf(left);
        frame.RightForm() = FormOf(right);
        frame.ArrangeWindows();
        QCOMPARE(right->pos(), QPoint(area.width() / 2, 0));
        QCOMPARE(left->pos(), QPoint(0, 0));
        QVERIFY(area.contains(left->geometry()) && area.contains(right->geometry()));
        QCOMPARE(left->size(), QSize(area.width() / 2, 500));
        QVERIFY(!left->geometry().intersects(right->geometry()));

        right->showMaximized();
        frame.ArrangeWindows();
        QVERIFY(right->isMaximized());
        QCOMPARE(right->pos(), QPoint(0, 0));
    }

    // A form that closes by itself takes its sub-window along: no empty window stays.
    void aFormClosedByItselfTakesItsWindow()
    {
        GuiBench b;
        frmSendrel frame(b.tm);
        frame.show();
        auto *form = new QWidget;
        form->setAttribute(Qt::WA_DeleteOnClose);
        frame.AddChildWindow(form)->show();
        form->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(frame.mdiArea()->subWindowList().isEmpty());
    }

    // The Window menu ends in the windows shown, by their captions, the active one checked; a
    // pick brings that window to the front.
    void windowMenuListsTheOpenWindows()
    {
        GuiBench b;
        frmSendrel frame(b.tm);
        frame.show();
        QMdiSubWindow *alpha = addPlain(frame, QPoint(0, 0));
        QMdiSubWindow *gamma = addPlain(frame, QPoint(20, 20));
        addPlain(frame, QPoint(40, 40))->hide();
        FormOf(alpha)->setWindowTitle(QStringLiteral("Alpha"));
        FormOf(gamma)->setWindowTitle(QStringLiteral("Gamma & co"));
        QCOMPARE(gamma->windowTitle(), QStringLiteral("Gamma & co"));
        frame.mdiArea()->setActiveSubWindow(gamma);
        auto *menu = frame.findChild<QMenu *>(QStringLiteral("mnu_Window"));
        auto entries = [menu] {
            emit menu->aboutToShow();
            QStringList texts;
            for (QAction *a : menu->actions()) {
                if (a->objectName().startsWith(QLatin1String("mnuWindowEntry")))
                    texts << a->text() + (a->isChecked() ? QStringLiteral(" *") : QString());
            }
            return texts;
        };
        entries();
        QCOMPARE(entries(), (QStringList{QStringLiteral("&1 Alpha"), QStringLiteral("&2 Gamma && co *")}));
        QAction *first = nullptr;
        for (QAction *a : menu->actions())
            first = first ? first : (a->objectName() == QLatin1String("mnuWindowEntry1") ? a : nullptr);
        first->trigger();
        QCOMPARE(frame.mdiArea()->activeSubWindow(), alpha);
    }

    // A failure inside the folder check is shown with the frame's tag and ends the program.
    void failingFolderSetupEndsTheProgram()
    {
        GuiBench b;
        QTemporaryDir bare;
        b.tm.ProgramDir = bare.path() + QStringLiteral("/bin");
        b.tm.settings.DataDir = b.folder();
        b.questions.answerMessage(Answer::Yes);
        frmSendrel frame(b.tm);
        frame.Form_Load();
        QVERIFY(b.questions.messageTexts().last().startsWith(QStringLiteral("frmSendrel|MDIForm_Load\n")));
        QCOMPARE(b.ended, QList<int>{0});
    }

    // What the frame shows besides its children: the pointer, the busy window (not modal, one
    // window shown again and again), one shared about window (modeless, OK hides it); and
    // closing it is the orderly end, with the settings saved.
    void frameServices()
    {
        GuiBench b;
        frmSendrel frame(b.tm);
        frame.show();
        frame.SetMousePointer(11);
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
        frame.SetMousePointer(9);
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::SizeHorCursor);
        frame.SetMousePointer(0);
        QVERIFY(!QApplication::overrideCursor());

        GuiQuestions gui(&frame);
        gui.showBusyMessage(QStringLiteral("Please wait..."), QStringLiteral("Importing cycle number: 3"));
        frmBusyMessage *busy = gui.busyWindow();
        QVERIFY(busy->isVisible() && !busy->isModal());
        QCOMPARE(busy->windowTitle(), QStringLiteral("Please wait..."));
        gui.showBusyMessage(QStringLiteral("Please wait..."), QStringLiteral("Importing cycle number: 4"));
        QCOMPARE(gui.busyWindow(), busy);
        QCOMPARE(Control<QLabel>(busy, "lblBusyMessage")->text(), QStringLiteral("Importing cycle number: 4"));
        gui.hideBusyMessage();
        QVERIFY(!busy->isVisible());

        frame.ShowAbout();
        frmKD_About *about = frame.About();
        QCOMPARE(Control<QLabel>(about, "lblVersion")->text(), QStringLiteral("Version 3.03.0004"));
        QVERIFY(about->isVisible() && !about->isModal());
        const QWidget *picture = Control<QWidget>(about, "Image1");
        QVERIFY(picture->width() <= about->width() / 2 && picture->height() <= about->height() * 70 / 100);
        QTest::mouseClick(Control<QPushButton>(about, "cmdOK"), Qt::LeftButton);
        QVERIFY(!about->isVisible());
        frame.ShowAbout();
        QCOMPARE(frame.About(), about);
        QVERIFY(about->isVisible());

        frame.close();
        QCOMPARE(b.ended, QList<int>{0});
        QCOMPARE(b.store.GetSetting(kSectionSendrel, QStringLiteral("NumClasses")), QStringLiteral("10"));
    }

    // The help commands, and a page for every window's help id that leads back to the contents.
    void showHelpCommands()
    {
        QVERIFY(ShowHelp(HelpContentsAndTopic, kHelpFile, 29));
        QCOMPARE(shownPage(), QStringLiteral("29.html"));
        QVERIFY(HelpWindow()->isVisible());
        QVERIFY(ShowHelp(HelpContentsAndTopic, kHelpFile, 0));
        QCOMPARE(shownPage(), QStringLiteral("index.html"));
        QVERIFY(ShowHelp(HelpContents, kHelpFile, 29));
        QCOMPARE(shownPage(), QStringLiteral("index.html"));
        QVERIFY(ShowHelp(HelpSearch, kHelpFile, 0));
        QCOMPARE(Control<QLineEdit>(HelpWindow(), "txtSearch")->text(), QString());
        QVERIFY(!ShowHelp(5, kHelpFile, 29));
        QVERIFY(!ShowHelp(HelpContentsAndTopic, QStringLiteral("/nowhere/Help/Tolvane.chm"), 29));
        // Searching lists the pages that hold every word.
        HelpWindow()->ShowSearch(QStringLiteral("Overwrite harvested"));
        QVERIFY(Control<QTextBrowser>(HelpWindow(), "txtTopic")->toPlainText().contains(QStringLiteral("Duplicate Run Id")));
        for (int id : {29, 76, 75, 73, 14, 2070, 2010, 2100, 15}) {
            const QString html = QString::fromUtf8(sendrel::test::ReadWholeFile(kHelpFolder + QStringLiteral("/%1.html").arg(id)));
            QVERIFY2(html.contains(QStringLiteral("<title>")) && html.contains(QStringLiteral("href=\"index.html\"")), qPrintable(QString::number(id)));
        }
    }

    // F1 in the frame opens the topic of the active child window.
    void f1InTheFrame()
    {
        GuiBench b;
        frmMarquel *m = b.start();
        b.tm.settings.HelpFile = kHelpFile;
        b.frame->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(b.frame.get()));
        b.frame->mdiArea()->setActiveSubWindow(b.frame->SubWindowOf(m));
        m->HelpContextID = 76;   // a child's own topic, to tell it from the frame's 29
        QTest::keyClick(b.frame.get(), Qt::Key_F1);
        QCOMPARE(shownPage(), QStringLiteral("76.html"));
    }

    // Help asked for in a dialog that waits modally comes up at its topic, usable at once,
    // also when the help window was open before the dialog.
    void helpFromModalDialogs_data()
    {
        QTest::addColumn<QString>("dialog");
        QTest::addColumn<bool>("openBefore");
        QTest::addColumn<QString>("page");
        QTest::newRow("Standing or Harvested, F1") << "frmSorH" << false << "2010.html";
        QTest::newRow("Enter Run ID, F1") << "frmRunId" << false << "2070.html";
        QTest::newRow("Duplicate Run Id, Help") << "frmDuplicateId" << false << "index.html";
        QTest::newRow("Report Description, Help") << "frmReportText" << false << "73.html";
        QTest::newRow("help open before") << "frmSorH" << true << "2010.html";
    }

    void helpFromModalDialogs()
    {
        QFETCH(QString, dialog);
        QFETCH(bool, openBefore);
        QFETCH(QString, page);
        GuiQuestions q;
        q.setHelpFile(kHelpFile);
        HelpBlocked help;
        if (openBefore)
            QVERIFY(ShowHelp(HelpContentsAndTopic, kHelpFile, 29));
        QString shown;
        bool blocked = true;
        onNextModal([&](QWidget *w) {
            w->activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(w));
            if (auto *button = w->findChild<QPushButton *>(QStringLiteral("cmdHelp")))
                QTest::mouseClick(button, Qt::LeftButton);
            else
                QTest::keyClick(w, Qt::Key_F1);
            shown = shownPage();
            blocked = help.blocked || !HelpWindow()->isVisible();
            // The user reads, closes the help and leaves the dialog.
            HelpWindow()->close();
            QTimer::singleShot(0, w, [w] { QTest::keyClick(w, Qt::Key_Escape); });
        });
        QString name = QStringLiteral("X");
        ReportTextRequest text;
        if (dialog == QLatin1String("frmSorH"))
            q.askStandingOrHarvested();
        else if (dialog == QLatin1String("frmRunId"))
            q.askRunId(name);
        else if (dialog == QLatin1String("frmDuplicateId"))
            q.askDuplicateId(name);
        else
            q.askReportText(text);
        QCOMPARE(shown, page);
        QVERIFY(!blocked);
    }
};

SENDREL_TEST_MAIN(tst_frmSendrel)
#include "tst_frmSendrel.moc"
