// The order of a start: by hand with the splash, with "/R RUNID" straight to the run's report
// window, and the failures that end it.
#include "support/TestMain.h"
#include "support/GuiBench.h"

#include "app/FolderLocation.h"
#include "shell/Main.h"
#include "windows/composition/frmStandLevels.h"
#include "windows/standstock/frmParameters.h"

#include <QCheckBox>
#include <QStandardPaths>

using namespace sendrel;

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

// The settings a start reads: the folders of the bench's database.
void storeFolders(GuiBench &b)
{
    b.store.SaveSetting(kSectionCommon, QStringLiteral("DataDir"), b.folder());
    b.store.SaveSetting(kSectionCommon, QStringLiteral("WorkDir"), b.folder());
}

// The report windows of the frame: stand and stock windows and the composition placeholder.
QList<QWidget *> reportWindows(frmSendrel &frame)
{
    QList<QWidget *> windows;
    for (QWidget *form : frame.ChildForms()) {
        if (qobject_cast<frmStandLevels *>(form) || qobject_cast<frmParameters *>(form))
            windows.append(form);
    }
    return windows;
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
        b.openDatabase();
        b.addRun(QStringLiteral("R1"), QStringLiteral("S"), QStringLiteral("one"));
        b.addRun(QStringLiteral("R2"), QStringLiteral("S"), QStringLiteral("two"));
        b.tm.DBEngine.CloseDB();
        storeFolders(b);

        ShownWindows shown;
        FrameOwner f;
        onNextModal([](QWidget *w) { QTest::keyClick(w, Qt::Key_Escape); });
        QVERIFY(Main(b.tm, {QStringLiteral("sendrel")}, f.frame));
        QCOMPARE(shown.names.first(), QStringLiteral("frmKD_Splash"));
        QVERIFY(b.questions.asked().isEmpty());
        QVERIFY(f.frame->isVisible());
        QVERIFY(!b.tm.RunOnCommandLine);
        QCOMPARE(b.tm.ModelVariant, qint16(2));
        frmMarquel *m = f.frame->Marquel;
        QVERIFY(m && m->isVisible());
        QCOMPARE(m->lstRuns->count(), 2);
        QCOMPARE(f.frame->LeftForm.data(), m);
        QVERIFY(reportWindows(*f.frame).isEmpty());
        QCOMPARE(b.tm.GameDBPath, b.path());
    }

    // Started with a run: no splash, the browser holds that run, its stand and stock window opens.
    void withARunOpensItsReportWindow()
    {
        GuiBench b;
        b.openDatabase();
        b.addRun(QStringLiteral("R1"), QStringLiteral("S"), QStringLiteral("one"));
        // As an import leaves it: with the header row of its first year.
        b.addHeader(QStringLiteral("R1"), QStringLiteral("S"), 1, 2000);
        b.addRun(QStringLiteral("R2"), QStringLiteral("S"), QStringLiteral("two"));
        b.tm.DBEngine.CloseDB();
        storeFolders(b);

        ShownWindows shown;
        FrameOwner f;
        QVERIFY(Main(b.tm, {QStringLiteral("sendrel"), QStringLiteral("/R"), QStringLiteral("R1"), QStringLiteral("/V"), QStringLiteral("TRW")},
                     f.frame));
        QVERIFY(!shown.names.contains(QStringLiteral("frmKD_Splash")));
        QVERIFY(b.tm.RunOnCommandLine);
        QCOMPARE(b.tm.CurrentRunId, QStringLiteral("R1"));
        QCOMPARE(b.tm.ModelVariant, qint16(1));
        QVERIFY(f.frame->isVisible());
        QVERIFY(f.frame->windowState() & Qt::WindowMaximized);
        frmMarquel *m = f.frame->Marquel;
        QCOMPARE(m->RunEntries(), QStringList{QStringLiteral("R1:Standing\tone")});
        QVERIFY(m->chkSS->isChecked());
        QVERIFY(!m->chkStandLevels->isChecked());
        const auto windows = reportWindows(*f.frame);
        QCOMPARE(windows.size(), 1);
        QCOMPARE(windows[0]->windowTitle(), QStringLiteral("Stand & Stock Tables: R1"));
        QCOMPARE(windows[0]->property("This_SorH").toString(), QStringLiteral("S"));
        QCOMPARE(f.frame->LeftForm.data(), windows[0]);
        QVERIFY(!f.frame->RightForm);
        QCOMPARE(f.frame->SubWindowOf(windows[0])->pos(), QPoint(0, 0));
        QVERIFY(b.questions.asked().isEmpty());

        // Its window is the program's life: closing it ends the process without saving settings.
        f.frame->SubWindowOf(windows[0])->close();
        QCOMPARE(b.ended, QList<int>{0});
        QVERIFY(!b.tm.DBEngine.IsOpen());
        QCOMPARE(b.store.GetSetting(kSectionSendrel, QStringLiteral("NumClasses"), QStringLiteral("<none>")), QStringLiteral("<none>"));
    }

    void withARunThatIsGone()
    {
        GuiBench b;
        b.openDatabase();
        b.addRun(QStringLiteral("R1"), QStringLiteral("S"), QStringLiteral("one"));
        b.tm.DBEngine.CloseDB();
        storeFolders(b);

        FrameOwner f;
        QVERIFY(Main(b.tm, {QStringLiteral("sendrel"), QStringLiteral("/R"), QStringLiteral("GONE")}, f.frame));
        QCOMPARE(b.questions.messageTexts(), QStringList{QStringLiteral("The run you selected was deleted by another application.")});
        QVERIFY(reportWindows(*f.frame).isEmpty());
        QVERIFY(f.frame->Marquel->isVisible());
        QCOMPARE(f.frame->Marquel->lstRuns->count(), 0);
        QVERIFY(b.ended.isEmpty());
    }

    // Giving up on the database ends the start with Main's message.
    void refusedDatabaseEndsTheStart()
    {
        GuiBench b;
        QTemporaryDir empty;
        b.store.SaveSetting(kSectionCommon, QStringLiteral("DataDir"), empty.path());
        b.store.SaveSetting(kSectionCommon, QStringLiteral("WorkDir"), empty.path());
        b.questions.answerOpenFile(QString());
        b.questions.answerMessage(Answer::Cancel);
        FrameOwner f;
        QVERIFY(!Main(b.tm, {QStringLiteral("sendrel"), QStringLiteral("/R"), QStringLiteral("R1")}, f.frame));
        const auto &asked = b.questions.asked();
        QCOMPARE(asked.size(), 3);
        QCOMPARE(asked[0].title, QStringLiteral("Sendrel - Locate Tolv Game Database"));
        QCOMPARE(asked[0].text, empty.path() + QStringLiteral("|tolv_game.mdb"));
        QCOMPARE(asked[1].text, QStringLiteral("The file tolv_game.mdb is required to successfully run Sendrel. Do you want to try again?"));
        QCOMPARE(asked[2].text, QStringLiteral("Module:TREEMODL|MAIN\nCanceled by the User"));
        QVERIFY(f.frame && !f.frame->isVisible());
    }

    // The first start of all: the empty Data folder names the root, so the Work folder comes
    // first, then the database file.
    void firstStartOfAll()
    {
        GuiBench b;
        QDir(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) + QStringLiteral("/Tolvane")).removeRecursively();
        b.questions.answerMessage(Answer::Yes);
        b.questions.answerOpenFile(b.path());
        FrameOwner f;
        QVERIFY(Main(b.tm, {QStringLiteral("sendrel"), QStringLiteral("/R"), QStringLiteral("R1")}, f.frame));
        const auto &asked = b.questions.asked();
        QCOMPARE(asked[0].title, QStringLiteral("Sendrel - Work Folder"));
        QCOMPARE(asked[1].kind, QStringLiteral("openFile"));
        QCOMPARE(asked[1].text, QDir::separator() + QStringLiteral("|tolv_game.mdb"));
        const QString work = GetDefaultWorkFolder(false);
        QCOMPARE(b.store.GetSetting(kSectionCommon, QStringLiteral("WorkDir")), work);
        QCOMPARE(b.store.GetSetting(kSectionCommon, QStringLiteral("DataDir")), b.folder());
        QCOMPARE(b.tm.GameDBPath, b.path());
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
        try {
            Main(b.tm, {QStringLiteral("sendrel"), QStringLiteral("/R"), QStringLiteral("R1")}, f.frame);
            QFAIL("the process did not end");
        } catch (const ProcessEnded &e) {
            QCOMPARE(e.code, 0);
        }
        QCOMPARE(b.questions.messageTexts().last(),
                 QStringLiteral("Cannot locate all the required files necessary to successfully run Sendrel.  Exiting the program."));
        QCOMPARE(b.store.GetSetting(kSectionSendrel, QStringLiteral("NumClasses")), QStringLiteral("10"));
    }
};

SENDREL_TEST_MAIN(tst_Main)
#include "tst_Main.moc"
