// The workspace frame: its menu commands and the browser's, the two places and the arrangement, the child
// windows' menus, the load step with its folder check, the busy window and the orderly end.
#include "support/TestMain.h"
#include "support/GuiBench.h"

#include "shell/GuiQuestions.h"
#include "windows/common/ChildMenus.h"
#include "windows/common/frmBusyMessage.h"

#include <QLabel>
#include <QMdiArea>
#include <QMenu>
#include <QMenuBar>

using namespace sendrel;

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

}  // namespace

class tst_frmSendrel : public QObject {
    Q_OBJECT

private slots:
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
    void childMenusReplaceTheFramesMenu()
    {
        GuiBench b;
        frmSendrel frame(b.tm);
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
    }

    void arrangeWindowsPutsThePlaces()
    {
        GuiBench b;
        frmSendrel frame(b.tm);
        frame.resize(1000, 700);
        frame.show();
        QMdiSubWindow *left = addPlain(frame, QPoint(50, 60));
        QMdiSubWindow *right = addPlain(frame, QPoint(70, 80));
        // Both places empty: nothing moves.
        frame.ArrangeWindows();
        QCOMPARE(left->pos(), QPoint(50, 60));
        QCOMPARE(right->pos(), QPoint(70, 80));

        frame.LeftForm() = left->widget();
        frame.RightForm() = right->widget();
        const QSize size = right->size();
        frame.ArrangeWindows();
        QCOMPARE(left->pos(), QPoint(0, 0));
        QCOMPARE(right->pos(), QPoint(frame.mdiArea()->viewport()->width() / 2, 0));
        QCOMPARE(right->size(), size);
    }

    void tilingCommands()
    {
        GuiBench b;
        frmSendrel frame(b.tm);
        frame.resize(1000, 700);
        frame.show();
        QMdiSubWindow *one = addPlain(frame, QPoint(50, 60));
        QMdiSubWindow *two = addPlain(frame, QPoint(70, 80));
        const QRect area = frame.mdiArea()->viewport()->rect();
        frame.Arrange(kArrangeTileVertical);
        QCOMPARE(QSet<int>({one->x(), two->x()}), QSet<int>({0, area.width() / 2}));
        QCOMPARE(one->height(), area.height());
        frame.Arrange(kArrangeTileHorizontal);
        QCOMPARE(QSet<int>({one->y(), two->y()}), QSet<int>({0, area.height() / 2}));
        QCOMPARE(one->width(), area.width());
        two->showMinimized();
        frame.Arrange(kArrangeIcons);
        QCOMPARE(two->pos(), QPoint(0, area.bottom() - two->height() + 1));
    }

    void loadWithFoldersInPlaceAsksNothing()
    {
        GuiBench b;
        b.tm.settings.DataDir = b.folder();
        b.tm.settings.WorkDir = b.folder();
        frmSendrel frame(b.tm);
        frame.Form_Load();
        QVERIFY(b.questions.asked().isEmpty());
        QVERIFY(b.ended.isEmpty());
        QVERIFY(frame.windowState() & Qt::WindowMaximized);
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
        const QString text = b.questions.messageTexts().last();
        QVERIFY2(text.startsWith(QStringLiteral("frmSendrel|MDIForm_Load\n")), qPrintable(text));
        QCOMPARE(b.ended, QList<int>{0});
    }

    // The busy window: its texts, not modal, one window shown again and again.
    void busyMessageWindow()
    {
        GuiBench b;
        frmSendrel frame(b.tm);
        GuiQuestions gui(&frame);
        frame.show();
        gui.showBusyMessage(QStringLiteral("Please wait..."), QStringLiteral("Importing cycle number: 3"));
        frmBusyMessage *busy = gui.busyWindow();
        QVERIFY(busy->isVisible());
        QVERIFY(!busy->isModal());
        QCOMPARE(busy->windowTitle(), QStringLiteral("Please wait..."));
        QCOMPARE(busy->lblBusyMessage->text(), QStringLiteral("Importing cycle number: 3"));
        gui.showBusyMessage(QStringLiteral("Please wait..."), QStringLiteral("Importing cycle number: 4"));
        QCOMPARE(gui.busyWindow(), busy);
        QCOMPARE(busy->lblBusyMessage->text(), QStringLiteral("Importing cycle number: 4"));
        gui.hideBusyMessage();
        QVERIFY(!busy->isVisible());

        // The frame's own calls go through the program's questions.
        frame.ShowBusyMessage(QStringLiteral("t"), QStringLiteral("m"));
        QVERIFY(b.questions.busyVisible());
        frame.HideBusyMessage();
        QVERIFY(!b.questions.busyVisible());
    }

    // Closing the frame is the orderly end, with the settings saved.
    void closingEndsTheProgram()
    {
        GuiBench b;
        frmSendrel frame(b.tm);
        frame.show();
        frame.close();
        QCOMPARE(b.ended, QList<int>{0});
        QCOMPARE(b.store.GetSetting(kSectionSendrel, QStringLiteral("NumClasses")), QStringLiteral("10"));
    }

    void mousePointer()
    {
        GuiBench b;
        frmSendrel frame(b.tm);
        frame.SetMousePointer(11);
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
        frame.SetMousePointer(9);
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::SizeHorCursor);
        frame.SetMousePointer(0);
        QVERIFY(!QApplication::overrideCursor());
    }
};

SENDREL_TEST_MAIN(tst_frmSendrel)
#include "tst_frmSendrel.moc"
