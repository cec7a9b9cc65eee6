// The splash, the about window, the picture's size, and help opened at the right topic from
// every help button and menu.
#include "support/TestMain.h"
#include "support/GuiBench.h"

#include "shell/RevealPicture.h"
#include "windows/common/ShowHelp.h"
#include "windows/common/frmHelp.h"
#include "shell/frmKD_About.h"
#include "shell/frmKD_Splash.h"
#include "windows/browser/frmMarquel.h"
#include "windows/import/frmDuplicateId.h"
#include "windows/import/frmSorH.h"

#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTextBrowser>
#include <QTimer>

using namespace sendrel;

namespace {

QString helpFolder()
{
    return QDir::cleanPath(QStringLiteral(SENDREL_TEST_DATA) + QStringLiteral("/../../install/Help"));
}

QString helpFile()
{
    return QDir::toNativeSeparators(helpFolder() + QStringLiteral("/Tolvane.chm"));
}

// The page the help window shows, as its file name.
QString shownPage()
{
    frmHelp *help = HelpWindow();
    return help ? QFileInfo(help->txtTopic->source().toLocalFile()).fileName() : QString();
}

}  // namespace

class tst_SplashAboutHelp : public QObject {
    Q_OBJECT

private slots:
    void cleanup()
    {
        if (frmHelp *help = HelpWindow())
            help->txtTopic->clear();
    }

    void splashTextsAndTimer()
    {
        frmKD_Splash splash;
        splash.show();
        QCOMPARE(splash.Label2->text(), QStringLiteral("Sendrel"));
        QCOMPARE(splash.Label3->text(), QStringLiteral("Growth Model Output Processing System"));
        QCOMPARE(splash.lblVersion->text(), QStringLiteral("Version 3.03.0004"));
        QCOMPARE(splash.Timer1->interval(), 2000);
        QVERIFY(splash.Timer1->isSingleShot());
        QVERIFY(splash.Timer1->isActive());
        QVERIFY(splash.isModal());
    }

    // A click on the picture or a label, or a key, closes it at once.
    void splashClosesOnClickOrKey()
    {
        {
            frmKD_Splash splash;
            onNextModal([&](QWidget *) { QTest::mouseClick(splash.lblVersion, Qt::LeftButton); });
            QCOMPARE(splash.exec(), int(QDialog::Accepted));
            QVERIFY(splash.Timer1->isActive());   // closed before its time ran out
        }
        {
            frmKD_Splash splash;
            onNextModal([&](QWidget *) { QTest::mouseClick(splash.Image1, Qt::LeftButton); });
            QCOMPARE(splash.exec(), int(QDialog::Accepted));
        }
        {
            frmKD_Splash splash;
            onNextModal([&](QWidget *w) { QTest::keyClick(w, Qt::Key_Space); });
            QCOMPARE(splash.exec(), int(QDialog::Accepted));
            QVERIFY(!splash.isVisible());
        }
    }

    // Grown by tenths while both sides are below, then shrunk by fiftieths while one is above.
    void pictureSize()
    {
        const QSizeF s = RevealPictureSize(QSizeF(100, 50), QSizeF(200, 200));
        // 100 * 1.1^8 = 214.358881, then * 0.98^4 = 197.717807
        QCOMPARE(qRound(s.width() * 1000), 197718);
        QCOMPARE(qRound(s.height() * 1000), 98859);
        const QSizeF big = RevealPictureSize(QSizeF(400, 300), QSizeF(280, 320));
        QVERIFY(big.width() <= 280 && big.height() <= 320);
        QCOMPARE(qRound(big.width() / big.height() * 1000), 1333);
        QCOMPARE(RevealPictureSize(QSizeF(400, 300), QSizeF(0, 100)), QSizeF(0, 0));

        // On the windows: the splash at 70 % of its width, the about window at 50 % and 70 %.
        frmKD_Splash splash;
        splash.show();
        QVERIFY(splash.Image1->width() <= splash.width() * 70 / 100);
        QVERIFY(splash.Image1->width() >= splash.width() * 70 / 100 * 0.98 - 1 || splash.Image1->height() >= splash.height() * 0.98 - 1);
        frmKD_About about;
        about.show();
        QVERIFY(about.Image1->width() <= about.width() / 2);
        QVERIFY(about.Image1->height() <= about.height() * 70 / 100);
    }

    void aboutWindow()
    {
        GuiBench b;
        frmSendrel frame(b.tm);
        frame.show();
        frmKD_About *about = frame.ShowAbout();
        QCOMPARE(about->windowTitle(), QStringLiteral("Tolvane Interface"));
        QCOMPARE(about->Label2->text(), QStringLiteral("/ Sendrel"));
        QCOMPARE(about->lblVersion->text(), QStringLiteral("Version 3.03.0004"));
        QVERIFY(about->Label1->text().contains(QStringLiteral("graphical reporting component")));
        QVERIFY(about->Label1->text().contains(QStringLiteral("treatments over time")));
        QVERIFY(!about->isModal());
        QVERIFY(about->isVisible());
        QCOMPARE(about->HelpContextID, 14);
        QTest::mouseClick(about->cmdOK, Qt::LeftButton);
        QVERIFY(!about->isVisible());
        // One shared window, from either menu.
        frame.findChild<QAction *>(QStringLiteral("mnuHelpAbout"))->trigger();
        QCOMPARE(frame.ShowAbout(), about);
        QVERIFY(about->isVisible());
    }

    void showHelpCommands()
    {
        QCOMPARE(QDir(HelpFolderOf(helpFile())).absolutePath(), QDir(helpFolder()).absolutePath());
        QVERIFY(ShowHelp(HelpContentsAndTopic, helpFile(), 29));
        QCOMPARE(shownPage(), QStringLiteral("29.html"));
        QVERIFY(HelpWindow()->isVisible());
        QVERIFY(ShowHelp(HelpContentsAndTopic, helpFile(), 0));
        QCOMPARE(shownPage(), QStringLiteral("index.html"));
        QVERIFY(ShowHelp(HelpContents, helpFile(), 29));
        QCOMPARE(shownPage(), QStringLiteral("index.html"));
        QVERIFY(ShowHelp(HelpSearch, helpFile(), 0));
        QCOMPARE(HelpWindow()->txtSearch->text(), QString());
        QVERIFY(!ShowHelp(5, helpFile(), 29));
        QVERIFY(!ShowHelp(HelpContentsAndTopic, QStringLiteral("/nowhere/Help/Tolvane.chm"), 29));

        // Searching lists the pages that hold every word.
        HelpWindow()->ShowSearch(QStringLiteral("Overwrite harvested"));
        const QString found = HelpWindow()->txtTopic->toPlainText();
        QVERIFY2(found.contains(QStringLiteral("Duplicate Run Id")), qPrintable(found));
    }

    // Every window's help id has its page, and every page leads back to the contents.
    void everyTopicHasAPage()
    {
        for (int id : {29, 76, 75, 73, 14, 2070, 2010, 2100, 15}) {
            const QString page = helpFolder() + QStringLiteral("/%1.html").arg(id);
            const QString html = QString::fromUtf8(sendrel::test::ReadWholeFile(page));
            QVERIFY2(html.contains(QStringLiteral("<title>")), qPrintable(page));
            QVERIFY2(html.contains(QStringLiteral("href=\"index.html\"")), qPrintable(page));
        }
    }

    // The help menus and buttons reach their topics.
    void helpFromMenusAndButtons()
    {
        GuiBench b;
        frmMarquel *m = b.start();
        b.tm.settings.HelpFile = helpFile();

        b.frame->findChild<QAction *>(QStringLiteral("mnuHelpTechnicalSupport"))->trigger();
        QCOMPARE(shownPage(), QStringLiteral("14.html"));
        m->findChild<QAction *>(QStringLiteral("mnuHelpAcknowledgements"))->trigger();
        QCOMPARE(shownPage(), QStringLiteral("15.html"));
        m->findChild<QAction *>(QStringLiteral("mnu_Help_Contents"))->trigger();
        QCOMPARE(shownPage(), QStringLiteral("index.html"));
        m->findChild<QAction *>(QStringLiteral("mnuHelpSearch"))->trigger();
        QCOMPARE(shownPage(), QStringLiteral("index.html"));

        // F1 in the frame opens the active window's topic.
        b.frame->activateWindow();
        b.frame->mdiArea()->setActiveSubWindow(b.frame->SubWindowOf(m));
        QTest::keyClick(b.frame.get(), Qt::Key_F1);
        QCOMPARE(shownPage(), QStringLiteral("29.html"));

        ScriptedQuestions q;
        frmSorH sorH(q);
        sorH.HelpFile = helpFile();
        sorH.show();
        QApplication::setActiveWindow(&sorH);
        QTest::keyClick(&sorH, Qt::Key_F1);
        QCOMPARE(shownPage(), QStringLiteral("2010.html"));

        frmDuplicateId duplicate;
        duplicate.HelpFile = helpFile();
        duplicate.show();
        QTest::mouseClick(duplicate.cmdHelp, Qt::LeftButton);
        QCOMPARE(shownPage(), QStringLiteral("index.html"));
    }
};

SENDREL_TEST_MAIN(tst_SplashAboutHelp)
#include "tst_SplashAboutHelp.moc"
