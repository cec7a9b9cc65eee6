// The splash, the about window, the picture's size, and the help: its commands, F1 in the
// frame, and help asked for from the modal dialogs, which must be usable while they wait.
#include "support/TestMain.h"
#include "support/GuiBench.h"

#include "shell/GuiQuestions.h"
#include "shell/RevealPicture.h"
#include "shell/frmKD_About.h"
#include "shell/frmKD_Splash.h"
#include "windows/common/ShowHelp.h"
#include "windows/common/frmHelp.h"
#include "windows/output/frmReportText.h"

#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QPushButton>
#include <QTextBrowser>
#include <QTimer>

using namespace sendrel;

namespace {

QString helpFolder()
{
    return QStringLiteral(SENDREL_SOURCE_DIR) + QStringLiteral("/install/Help");
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

// Whether the help window is blocked by a modal window now, as the window system told it.
class HelpBlocked : public QObject {
public:
    HelpBlocked() { qApp->installEventFilter(this); }
    ~HelpBlocked() override { qApp->removeEventFilter(this); }
    bool blocked = false;

protected:
    bool eventFilter(QObject *o, QEvent *e) override
    {
        if (o->objectName() == QLatin1String("frmHelp") && o->isWidgetType()) {
            if (e->type() == QEvent::WindowBlocked)
                blocked = true;
            else if (e->type() == QEvent::WindowUnblocked)
                blocked = false;
        }
        return false;
    }
};

}  // namespace

class tst_SplashAboutHelp : public QObject {
    Q_OBJECT

private slots:
    void cleanup()
    {
        if (frmHelp *help = HelpWindow())
            help->close();
        QApplication::processEvents();
    }

    void splash()
    {
        frmKD_Splash splash;
        splash.show();
        QCOMPARE(splash.Label2->text(), QStringLiteral("Sendrel"));
        QCOMPARE(splash.lblVersion->text(), QStringLiteral("Version 3.03.0004"));
        QCOMPARE(splash.Timer1->interval(), 2000);
        QVERIFY(splash.Timer1->isSingleShot() && splash.Timer1->isActive());
        QVERIFY(splash.isModal());
    }

    // A click on the picture or a label, or a key, closes it at once.
    void splashClosesOnClickOrKey_data()
    {
        QTest::addColumn<QString>("target");
        QTest::newRow("version") << "lblVersion";
        QTest::newRow("picture") << "Image1";
        QTest::newRow("key") << "";
    }

    void splashClosesOnClickOrKey()
    {
        QFETCH(QString, target);
        frmKD_Splash splash;
        QWidget *on = target == QLatin1String("Image1") ? static_cast<QWidget *>(splash.Image1) : splash.lblVersion;
        onNextModal([&](QWidget *w) {
            if (target.isEmpty())
                QTest::keyClick(w, Qt::Key_Space);
            else
                QTest::mouseClick(on, Qt::LeftButton);
        });
        QCOMPARE(splash.exec(), int(QDialog::Accepted));
        QVERIFY(splash.Timer1->isActive());   // closed before its time ran out
    }

    // Grown by tenths while both sides are below, then shrunk by fiftieths while one is above.
    void pictureSize()
    {
        const QSizeF s = RevealPictureSize(QSizeF(100, 50), QSizeF(200, 200));
        // 100 * 1.1^8 = 214.358881, then * 0.98^4 = 197.717807
        QCOMPARE(qRound(s.width() * 1000), 197718);
        QCOMPARE(qRound(s.height() * 1000), 98859);
        QCOMPARE(RevealPictureSize(QSizeF(400, 300), QSizeF(0, 100)), QSizeF(0, 0));
        frmKD_About about;
        about.show();
        QVERIFY(about.Image1->width() <= about.width() / 2);
        QVERIFY(about.Image1->height() <= about.height() * 70 / 100);
    }

    // One shared about window, modeless; OK hides it.
    void aboutWindow()
    {
        GuiBench b;
        frmSendrel frame(b.tm);
        frame.show();
        frame.ShowAbout();
        frmKD_About *about = frame.About();
        QCOMPARE(about->windowTitle(), QStringLiteral("Tolvane Interface"));
        QCOMPARE(about->lblVersion->text(), QStringLiteral("Version 3.03.0004"));
        QVERIFY(!about->isModal());
        QVERIFY(about->isVisible());
        QTest::mouseClick(about->cmdOK, Qt::LeftButton);
        QVERIFY(!about->isVisible());
        frame.ShowAbout();
        QCOMPARE(frame.About(), about);
        QVERIFY(about->isVisible());
    }

    void showHelpCommands()
    {
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
        QVERIFY(HelpWindow()->txtTopic->toPlainText().contains(QStringLiteral("Duplicate Run Id")));
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

    // F1 in the frame opens the topic of the active child window, or the frame's own.
    void f1InTheFrame()
    {
        GuiBench b;
        frmMarquel *m = b.start();
        b.tm.settings.HelpFile = helpFile();
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
        q.setHelpFile(helpFile());
        HelpBlocked help;
        if (openBefore)
            QVERIFY(ShowHelp(HelpContentsAndTopic, helpFile(), 29));
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

SENDREL_TEST_MAIN(tst_SplashAboutHelp)
#include "tst_SplashAboutHelp.moc"
