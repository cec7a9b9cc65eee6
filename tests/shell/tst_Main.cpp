// The order of a start: by hand with the splash, with "/R RUNID" straight to the run's report
// window, and the failures that end it; and the splash itself.
#include "support/TestMain.h"
#include "support/GuiBench.h"
#include "support/ServerDatabase.h"

#include "shell/Main.h"
#include "shell/RevealPicture.h"
#include "shell/frmKD_Splash.h"
#include "store/Schema.h"

#include <QCheckBox>
#include <QLabel>
#include <QStandardPaths>
#include <QTimer>

using namespace sendrel;
using namespace sendrel::test;

namespace {

// Notes every window that is shown, by its object name.
class ShownWindows : public QObject {
public:
    ShownWindows() { qApp->installEventFilter(this); }
    ~ShownWindows() override { qApp->removeEventFilter(this); }
    QStringList names;

protected:
    bool eventFilter(QObject *o, QEvent *e) override
    {
        if (e->type() == QEvent::Show && o->isWidgetType() && static_cast<QWidget *>(o)->isWindow())
            names << o->objectName();
        return false;
    }
};

// A database with the runs R1 (with the header of its first year) and R2, closed again, and
// its folder in the settings that a start reads.
void prepare(GuiBench &b)
{
    b.openDatabase();
    b.addListedRun(QStringLiteral("R1"), QStringLiteral("S"), QStringLiteral("one"));
    // Listed first, as the list sorts: a start with R1 must still open the standing run.
    b.addListedRun(QStringLiteral("R1"), QStringLiteral("H"), QStringLiteral("one"));
    b.addRun(QStringLiteral("R2"), QStringLiteral("S"), QStringLiteral("two"));
    b.tm.DBEngine.CloseDB();
    b.store.SaveSetting(kSectionCommon, QStringLiteral("DataDir"), b.folder());
    b.store.SaveSetting(kSectionCommon, QStringLiteral("WorkDir"), b.folder());
}

QStringList withRun(const QString &runId)
{
    return {QStringLiteral("sendrel"), QStringLiteral("/R"), runId};
}

struct FrameOwner {
    frmSendrel *frame = nullptr;
    ~FrameOwner() { delete frame; }
};

}  // namespace

class tst_Main : public QObject {
    Q_OBJECT

private slots:
    void byHandShowsTheSplashThenTheBrowser()
    {
        GuiBench b;
        prepare(b);
        ShownWindows shown;
        FrameOwner f;
        onNextModal([](QWidget *w) { QTest::keyClick(w, Qt::Key_Escape); });
        QVERIFY(Main(b.tm, {QStringLiteral("sendrel")}, f.frame));
        QCOMPARE(shown.names.first(), QStringLiteral("frmKD_Splash"));
        QVERIFY(b.questions.asked().isEmpty());
        QVERIFY(f.frame->isVisible());
        QVERIFY(!b.tm.RunOnCommandLine);
        frmMarquel *m = f.frame->Marquel;
        QVERIFY(m && m->isVisible());
        QCOMPARE(RunList(m)->count(), 3);
        QVERIFY(reportWindows(*f.frame).isEmpty());
    }

    // The server database of the last session opens again; where it cannot be reached, the file of
    // the Data folder serves after one message, and the server stays chosen for the next start.
    void serverDatabaseOfTheLastSession_data()
    {
        QTest::addColumn<bool>("reached");
        QTest::newRow("reached") << true;
        QTest::newRow("away") << false;
    }

    void serverDatabaseOfTheLastSession()
    {
        QFETCH(bool, reached);
        if (reached && !ServerUnavailable().isEmpty())
            QSKIP(qPrintable(ServerUnavailable()));
        GuiBench b;
        prepare(b);
        QString server = QStringLiteral("postgresql:///none?host=/nonexistent");
        if (reached) {
            server = NewServerDatabase();
            CreateRunDatabase(server);
            RunStore other;
            other.open(server);
            AddRun(other, QStringLiteral("R1"), QStringLiteral("S"), QStringLiteral("served"));
            AddHeader(other, QStringLiteral("R1"), QStringLiteral("S"), 1, 2000);
        }
        b.store.SaveSetting(kSectionSendrel, QStringLiteral("ServerDatabase"), server);
        FrameOwner f;
        QVERIFY(Main(b.tm, withRun(QStringLiteral("R1")), f.frame));
        QCOMPARE(b.tm.DBEngine.PathToDB, reached ? server : b.path());
        QCOMPARE(f.frame->Marquel->RunEntries().last(), reached ? QStringLiteral("R1:Standing\tserved") : QStringLiteral("R1:Standing\tone"));
        QCOMPARE(b.questions.messageTexts().size(), reached ? 0 : 1);
        QCOMPARE(b.store.GetSetting(kSectionSendrel, QStringLiteral("ServerDatabase")), server);
    }

    // Started with a run: no splash, the browser holds that run, its stand and stock window opens
    // in the left place, and closing it ends the process without saving the settings.
    void withARunOpensItsReportWindow()
    {
        GuiBench b;
        prepare(b);
        ShownWindows shown;
        FrameOwner f;
        QVERIFY(Main(b.tm, withRun(QStringLiteral("R1")) << QStringLiteral("/V") << QStringLiteral("TRW"), f.frame));
        QVERIFY(!shown.names.contains(QStringLiteral("frmKD_Splash")));
        QVERIFY(b.tm.RunOnCommandLine);
        QCOMPARE(b.tm.ModelVariant, qint16(1));
        QVERIFY(f.frame->isVisible());
        QVERIFY(f.frame->windowState() & Qt::WindowMaximized);
        frmMarquel *m = f.frame->Marquel;
        QCOMPARE(m->RunEntries(), (QStringList{QStringLiteral("R1:Harvested\tone"), QStringLiteral("R1:Standing\tone")}));
        QVERIFY(Control<QCheckBox>(m, "chkSS")->isChecked() && !Control<QCheckBox>(m, "chkStandLevels")->isChecked());
        const QList<QWidget *> windows = reportWindows(*f.frame);
        QCOMPARE(windows.size(), 1);
        QCOMPARE(windows[0]->windowTitle(), QStringLiteral("Stand & Stock Tables: R1 (Standing)"));
        QCOMPARE(f.frame->LeftForm().data(), windows[0]);
        QVERIFY(!f.frame->RightForm());
        QCOMPARE(f.frame->SubWindowOf(windows[0])->pos(), QPoint(0, 0));
        QVERIFY(b.questions.asked().isEmpty());

        f.frame->SubWindowOf(windows[0])->close();
        QCOMPARE(b.ended, QList<int>{0});
        QVERIFY(!b.tm.DBEngine.IsOpen());
        QCOMPARE(b.store.GetSetting(kSectionSendrel, QStringLiteral("NumClasses"), QStringLiteral("<none>")), QStringLiteral("<none>"));
    }

    void withARunThatIsGone()
    {
        GuiBench b;
        prepare(b);
        FrameOwner f;
        QVERIFY(Main(b.tm, withRun(QStringLiteral("GONE")), f.frame));
        QCOMPARE(b.questions.messageTexts(), QStringList{QStringLiteral("The run you selected was deleted by another application.")});
        QVERIFY(reportWindows(*f.frame).isEmpty());
        QVERIFY(f.frame->Marquel->isVisible());
        QVERIFY(b.ended.isEmpty());
    }

    // Giving up on the database ends the start with Main's message; the frame never shows.
    void refusedDatabaseEndsTheStart()
    {
        GuiBench b;
        QTemporaryDir empty;
        b.store.SaveSetting(kSectionCommon, QStringLiteral("DataDir"), empty.path());
        b.store.SaveSetting(kSectionCommon, QStringLiteral("WorkDir"), empty.path());
        b.questions.answerOpenFile(QString());
        b.questions.answerMessage(Answer::Cancel);
        FrameOwner f;
        QVERIFY(!Main(b.tm, withRun(QStringLiteral("R1")), f.frame));
        const auto &asked = b.questions.asked();
        QCOMPARE(asked.size(), 3);
        QCOMPARE(asked[0].text, empty.path() + QStringLiteral("|tolv_game.mdb"));
        QCOMPARE(asked[2].text, QStringLiteral("Module:TREEMODL|MAIN\nCanceled by the User"));
        QVERIFY(f.frame && !f.frame->isVisible());
    }

    // The first start of all: no Data folder is named, so both folder questions come; their
    // defaults are made under the documents folder and filled from the installation, and the
    // installation's database opens from there without a file dialog.
    void firstStartOfAll()
    {
        GuiBench b;
        QDir(b.dir()).mkdir(QStringLiteral("Data"));
        QVERIFY(QFile::copy(b.path(), b.filePath(QStringLiteral("Data/tolv_game.mdb"))));
        const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) + QStringLiteral("/Tolvane");
        QDir(documents).removeRecursively();
        b.questions.answerMessage(Answer::Yes);
        b.questions.answerMessage(Answer::Yes);
        FrameOwner f;
        QVERIFY(Main(b.tm, withRun(QStringLiteral("R1")), f.frame));
        const auto &asked = b.questions.asked();
        QCOMPARE(asked[0].title, QStringLiteral("Sendrel - Data Folder"));
        QCOMPARE(asked[1].title, QStringLiteral("Sendrel - Work Folder"));
        for (const auto &a : asked)
            QVERIFY(a.kind != QLatin1String("openFile"));
        QCOMPARE(QDir::cleanPath(b.tm.GameDBPath), documents + QStringLiteral("/Data/tolv_game.mdb"));
        QVERIFY(b.tm.DBEngine.IsOpen());
    }

    // Refusing the Work folder: the frame's message, the settings saved, the process ended.
    void refusedFolderEndsTheProcess()
    {
        GuiBench b;
        b.tm.EndProcess = [](int code) { throw ProcessEnded{code}; };
        b.store.SaveSetting(kSectionCommon, QStringLiteral("DataDir"), b.folder());
        b.questions.answerMessage(Answer::No);
        b.questions.answerFolder(QString());
        b.questions.answerMessage(Answer::Cancel);
        FrameOwner f;
        QVERIFY_THROWS_EXCEPTION(ProcessEnded, Main(b.tm, withRun(QStringLiteral("R1")), f.frame));
        QCOMPARE(b.questions.messageTexts().last(),
                 QStringLiteral("Cannot locate all the required files necessary to successfully run Sendrel.  Exiting the program."));
        QCOMPARE(b.store.GetSetting(kSectionSendrel, QStringLiteral("NumClasses")), QStringLiteral("10"));
    }

    // The splash closes itself after two seconds, or at once on a click on the picture or a
    // label, or on a key.
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
        QWidget *on = Control<QWidget>(&splash, target.isEmpty() ? QStringLiteral("lblVersion") : target);
        const QTimer *timer = splash.findChild<QTimer *>(QStringLiteral("Timer1"));
        onNextModal([&](QWidget *w) {
            QCOMPARE(Control<QLabel>(&splash, "lblVersion")->text(), QStringLiteral("Version 3.03.0004"));
            QVERIFY(timer->isActive() && timer->interval() == 2000);
            if (target.isEmpty())
                QTest::keyClick(w, Qt::Key_Space);
            else
                QTest::mouseClick(on, Qt::LeftButton);
        });
        QCOMPARE(splash.exec(), int(QDialog::Accepted));
        QVERIFY(timer->isActive());   // closed before its time ran out
    }

    // The picture grows by tenths while both sides are below the target, then shrinks by
    // fiftieths while one is above.
    void pictureSize()
    {
        const QSizeF s = RevealPictureSize(QSizeF(100, 50), QSizeF(200, 200));
        // 100 * 1.1^8 = 214.358881, then * 0.98^4 = 197.717807
        QCOMPARE(qRound(s.width() * 1000), 197718);
        QCOMPARE(qRound(s.height() * 1000), 98859);
        QCOMPARE(RevealPictureSize(QSizeF(400, 300), QSizeF(0, 100)), QSizeF(0, 0));
    }
};

SENDREL_TEST_MAIN(tst_Main)
#include "tst_Main.moc"
