// The workspace frame: its menus, the two places, the child windows' menus, the load step with
// its folder check, the busy window and the orderly end.
#include "support/TestMain.h"
#include "support/GuiBench.h"

#include "windows/common/ChildMenus.h"
#include "shell/GuiQuestions.h"
#include "windows/common/frmBusyMessage.h"
#include "shell/frmSendrel.h"

#include <QLabel>
#include <QMenu>
#include <QMenuBar>

using namespace sendrel;

namespace {

// A child window with a menu of its own.
class MenuChild : public QWidget, public ChildMenus {
public:
    MenuChild()
    {
        m_menu = new QMenu(QStringLiteral("&Chart"), this);
        m_menu->menuAction()->setObjectName(QStringLiteral("mnuChart"));
        resize(300, 200);
    }
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
    void ownMenus()
    {
        GuiBench b;
        frmSendrel frame(b.tm);
        QCOMPARE(frame.windowTitle(), QStringLiteral("Sendrel"));
        QCOMPARE(barNames(frame), (QStringList{QStringLiteral("mnu_File"), QStringLiteral("mnu_Window"), QStringLiteral("mnuHelp")}));
        QList<QPair<QString, QString>> items;
        for (QAction *top : frame.menuBar()->actions()) {
            items.append({top->objectName(), top->text()});
            for (QAction *a : top->menu()->actions())
                items.append({a->objectName(), a->isSeparator() ? QString() : a->text()});
        }
        const QList<QPair<QString, QString>> expected = {
            {QStringLiteral("mnu_File"), QStringLiteral("&File")},
            {QStringLiteral("mnu_Exit"), QStringLiteral("E&xit")},
            {QStringLiteral("mnu_Window"), QStringLiteral("&Window")},
            {QStringLiteral("mnu_Window_Cascade"), QStringLiteral("&Cascade")},
            {QStringLiteral("mnu_Window_TileHorizontally"), QStringLiteral("Tile &Horizontally")},
            {QStringLiteral("mnu_Window_TileVertically"), QStringLiteral("Tile &Vertically")},
            {QStringLiteral("mnuArrangeWindows"), QStringLiteral("&Arrange Windows")},
            {QStringLiteral("mnu_Window_ArrangeIcons"), QStringLiteral("&Arrange Icons")},
            {QStringLiteral("mnuHelp"), QStringLiteral("&Help")},
            {QStringLiteral("mnuHelpContents"), QStringLiteral("&Contents")},
            {QStringLiteral("mnuHelpSearch"), QStringLiteral("&Search for help on...")},
            {QStringLiteral("mnuHelpTechnicalSupport"), QStringLiteral("&Obtaining Technical Support")},
            {QStringLiteral("mnuHelpAcknowledgements"), QStringLiteral("Acknowledgements")},
            {QStringLiteral("mnuHelpSep1"), QString()},
            {QStringLiteral("mnuHelpAbout"), QStringLiteral("&About...")},
        };
        QCOMPARE(items, expected);
    }

    // The active child's menus replace the frame's, and the frame's come back when it is gone.
    void childMenusReplaceTheFramesMenu()
    {
        GuiBench b;
        frmSendrel frame(b.tm);
        frame.show();
        auto *child = new MenuChild;
        QMdiSubWindow *sub = frame.AddChildWindow(child);
        sub->show();
        frame.mdiArea()->setActiveSubWindow(sub);
        QCOMPARE(barNames(frame), QStringList{QStringLiteral("mnuChart")});
        // A child without a menu shows the frame's.
        QMdiSubWindow *plain = addPlain(frame, QPoint(10, 10));
        frame.mdiArea()->setActiveSubWindow(plain);
        QCOMPARE(barNames(frame).first(), QStringLiteral("mnu_File"));
        frame.mdiArea()->setActiveSubWindow(sub);
        sub->close();
        plain->close();
        QApplication::processEvents();
        QCOMPARE(barNames(frame), (QStringList{QStringLiteral("mnu_File"), QStringLiteral("mnu_Window"), QStringLiteral("mnuHelp")}));
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

        frame.LeftForm = left->widget();
        frame.RightForm = right->widget();
        const QSize size = right->size();
        frame.ArrangeWindows();
        QCOMPARE(left->pos(), QPoint(0, 0));
        QCOMPARE(right->pos(), QPoint(frame.mdiArea()->viewport()->width() / 2, 0));
        QCOMPARE(right->size(), size);

        // The Window menu's command does the same.
        left->move(5, 5);
        frame.findChild<QAction *>(QStringLiteral("mnuArrangeWindows"))->trigger();
        QCOMPARE(left->pos(), QPoint(0, 0));
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

        frame.findChild<QAction *>(QStringLiteral("mnu_Window_TileVertically"))->trigger();
        QCOMPARE(QSet<int>({one->x(), two->x()}), QSet<int>({0, area.width() / 2}));
        QCOMPARE(one->height(), area.height());

        frame.findChild<QAction *>(QStringLiteral("mnu_Window_TileHorizontally"))->trigger();
        QCOMPARE(QSet<int>({one->y(), two->y()}), QSet<int>({0, area.height() / 2}));
        QCOMPARE(one->width(), area.width());

        two->showMinimized();
        frame.findChild<QAction *>(QStringLiteral("mnu_Window_ArrangeIcons"))->trigger();
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
        QVERIFY(!frame.LeftForm && !frame.RightForm);
    }

    // Refusing a folder: the critical message, then the orderly end with the settings saved.
    void refusedFolderEndsTheProgram()
    {
        GuiBench b;
        b.tm.settings.DataDir = b.folder();
        b.questions.answerMessage(Answer::No);
        b.questions.answerFolder(QString());
        b.questions.answerMessage(Answer::Cancel);
        frmSendrel frame(b.tm);
        frame.Form_Load();
        const auto &asked = b.questions.asked();
        QCOMPARE(asked.size(), 4);
        QCOMPARE(asked[3].title, QStringLiteral("Sendrel"));
        QCOMPARE(asked[3].text,
                 QStringLiteral("Cannot locate all the required files necessary to successfully run Sendrel.  Exiting the program."));
        QCOMPARE(b.ended, QList<int>{0});
        QCOMPARE(b.store.GetSetting(kSectionSendrel, QStringLiteral("ClassesWidth")), QStringLiteral("10"));
        QVERIFY(!b.store.GetSetting(kSectionSendrel, QStringLiteral("LeftPos")).isEmpty());
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
        QVERIFY2(text.startsWith(QStringLiteral("frmSendrel|MDIForm_Load\nSendrel.Locate_Directories(), TolvUtil.LocateWorkFolder(), ")),
                 qPrintable(text));
        QCOMPARE(b.ended, QList<int>{0});
    }

    void busyMessageWindow()
    {
        GuiBench b;
        frmSendrel frame(b.tm);
        GuiQuestions gui(&frame);
        frame.show();
        gui.showBusyMessage(QStringLiteral("Please wait..."), QStringLiteral("Importing cycle number: 3"));
        frmBusyMessage *busy = gui.busyWindow();
        QVERIFY(busy);
        QCOMPARE(busy->objectName(), QStringLiteral("frmBusyMessage"));
        QVERIFY(busy->isVisible());
        QVERIFY(!busy->isModal());
        QCOMPARE(busy->windowTitle(), QStringLiteral("Please wait..."));
        QCOMPARE(busy->lblBusyMessage->text(), QStringLiteral("Importing cycle number: 3"));
        gui.showBusyMessage(QStringLiteral("Please wait..."), QStringLiteral("Importing cycle number: 4"));
        QCOMPARE(gui.busyWindow(), busy);
        QCOMPARE(busy->lblBusyMessage->text(), QStringLiteral("Importing cycle number: 4"));
        gui.hideBusyMessage();
        QVERIFY(!busy->isVisible());
        QCOMPARE(gui.busyWindow(), busy);   // still loaded

        frmBusyMessage fresh;
        QCOMPARE(fresh.windowTitle(), QString());
        QCOMPARE(fresh.lblBusyMessage->text(), QString());

        // The frame's own calls go through the model's questions.
        frame.ShowBusyMessage(QStringLiteral("t"), QStringLiteral("m"));
        QVERIFY(b.questions.busyVisible());
        frame.HideBusyMessage();
        QVERIFY(!b.questions.busyVisible());
    }

    void exitAndCloseEndTheProgram()
    {
        {
            GuiBench b;
            frmSendrel frame(b.tm);
            frame.findChild<QAction *>(QStringLiteral("mnu_Exit"))->trigger();
            QCOMPARE(b.ended, QList<int>{0});
        }
        {
            GuiBench b;
            frmSendrel frame(b.tm);
            frame.show();
            frame.close();
            QCOMPARE(b.ended, QList<int>{0});
            QCOMPARE(b.store.GetSetting(kSectionSendrel, QStringLiteral("NumClasses")), QStringLiteral("10"));
        }
    }

    void mousePointer()
    {
        GuiBench b;
        frmSendrel frame(b.tm);
        frame.SetMousePointer(11);
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
        frame.SetMousePointer(0);
        QVERIFY(!QApplication::overrideCursor());
    }
};

SENDREL_TEST_MAIN(tst_frmSendrel)
#include "tst_frmSendrel.moc"
