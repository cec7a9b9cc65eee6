// The stand and stock window: on its own, with a stub for the frame and the browser (its place
// and count, the years and the sample, the class boxes, the ruler and its range editor, View
// Reports), and as the browser opens it inside the frame. The arithmetic of classes, ruler and
// range, and the compile of the report, are the domain's tests.
#include "support/TestMain.h"
#include "support/GuiBench.h"
#include "support/SampleRuns.h"
#include "support/WindowHostStub.h"

#include "base/Numbers.h"
#include "graph/Graph.h"
#include "windows/output/frmReport.h"
#include "windows/standstock/ClassRulerView.h"
#include "windows/standstock/frmParameters.h"
#include "windows/standstock/frmRange.h"

#include <QCheckBox>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QMdiArea>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>

using namespace sendrel;
using namespace sendrel::test;

namespace {

const QString kMoreTrees = QStringLiteral("INSERT INTO Model_Entries (Run_Id, Species_Code, Trees_per_ha, Current_Diameter, "
                                          "Total_Volume, Cycle_Number, Standing_Harvested) VALUES ('R1', 3, 1000, 12, 1, 1, 'S')");

// One stand and stock window over the sample run, opened the way the browser opens it, with the
// classes of the settings (start 0, width 10, 10 classes unless given).
struct Opened {
    RunDatabase env{RunDatabase::Db::None};
    WindowHostStub host;
    QPointer<frmParameters> w;

    explicit Opened(double start = 0, double width = 10, qint16 count = 10)
    {
        env.tm.settings.WorkDir = env.workDir();
        env.openAsProgram();
        env.tm.settings.ClassesStart = start;
        env.tm.settings.ClassesWidth = width;
        env.tm.settings.NumClasses = count;
        AddSampleRun(env);
        w = new frmParameters(env.tm, host);
        w->This_RunId = QStringLiteral("R1");
        w->This_SorH = QStringLiteral("S");
        w->UpdateHeaderList();
        w->ChooseDensity(true);
        w->PlotClick();
        w->show();
        QVERIFY(QTest::qWaitForWindowExposed(w));
    }
    ~Opened() { delete w; }

    template <typename T> T *ctl(const QString &name) const { return Control<T>(w, name); }
    QLineEdit *box(const QString &name) const { return ctl<QLineEdit>(name); }
    QString label(const QString &name) const { return ctl<QLabel>(name)->text(); }
    Graph *density() const { return ctl<Graph>(QStringLiteral("gphDensity")); }
    QListWidget *years() const { return ctl<QListWidget>(QStringLiteral("lstCycles")); }
    void click(const QString &button) const { QTest::mouseClick(ctl<QPushButton>(button), Qt::LeftButton); }
    ClassPanel *panel(int i) const { return w->RulerView()->SSPanel2(i); }
    static QPoint at(int x) { return QPoint(x, ClassRulerView::kPanelHeight / 2); }

    // The range editor, opened by a press in the middle of a class's panel.
    frmRange *range() const { return w->RangeEditor(); }
    void open(int i) const { QTest::mouseClick(panel(i), Qt::LeftButton, {}, at(panel(i)->width() / 2)); }
    QLineEdit *rangeBox(const QString &name) const { return Control<QLineEdit>(range(), name); }
    QString rangeError() const { return Control<QLabel>(range(), QStringLiteral("lblDbhError"))->text(); }
    // The edges and midpoints of the first three classes.
    QString edges() const
    {
        QStringList all;
        for (int i = 0; i < 3; ++i) {
            const ClassType &c = w->Layout.aClass[i];
            all << QStringLiteral("%1-%2/%3").arg(c.MinDia).arg(c.MaxDia).arg(c.MidPoint);
        }
        return all.join(QLatin1Char(' '));
    }
};

// Run "A" standing with two years and trees in the first, opened from the browser in the frame.
frmParameters *openInFrame(GuiBench &b)
{
    b.openDatabase();
    b.addListedRun(QStringLiteral("A"), QStringLiteral("S"), QStringLiteral("Thinned"));
    b.addHeader(QStringLiteral("A"), QStringLiteral("S"), 2, 2010);
    b.addTree(QStringLiteral("A"), QStringLiteral("S"), 1, 3, 12.0, 100, 0.5);
    frmMarquel *m = b.start();
    clickBox(Control<QCheckBox>(m, "chkSS"));
    QTest::mouseClick(Control<QPushButton>(m, "cmdOK"), Qt::LeftButton);
    return qobject_cast<frmParameters *>(reportWindows(*b.frame).value(0));
}

}  // namespace

class tst_frmParameters : public QObject {
    Q_OBJECT

private slots:
    // Its life: a place and a count at load, the classes of the settings on the ruler, the range
    // editor hidden; help of the window and of its editor
    // goes to the host; closing gives back place and count, and the editor goes with it.
    void lifeOfTheWindow()
    {
        Opened o;
        QCOMPARE(o.host.NumOpenWindows, 1);
        QCOMPARE(o.host.LeftForm().data(), o.w.data());
        QCOMPARE(o.box(QStringLiteral("txtClassWidth"))->text(), QStringLiteral("10"));
        QCOMPARE(o.panel(9)->text(), QStringLiteral("90+"));
        QVERIFY(o.panel(10)->isHidden());
        QCOMPARE(o.panel(3)->x(), o.w->RulerView()->lneScaleTick(3)->x());
        QVERIFY(o.range()->isHidden());

        o.click(QStringLiteral("cmdHelp"));
        QTest::mouseClick(Control<QPushButton>(o.range(), QStringLiteral("cmdHelp")), Qt::LeftButton);
        QCOMPARE(o.host.HelpTopics, (QList<int>{76, 2100}));

        QPointer<frmRange> range = o.range();
        o.click(QStringLiteral("cmdOK"));
        QTRY_VERIFY(o.w.isNull() && range.isNull());
        QCOMPARE(o.host.NumOpenWindows, 0);
        QVERIFY(o.host.LeftForm().isNull());
        QVERIFY(o.env.ended.isEmpty());
    }

    // The settings go into the boxes quietly: the classes are built once, so that the ruler's
    // first drawing gives each class its room.
    void firstDrawingGivesEachClassItsRoom()
    {
        Opened o(5, 2.5, 24);
        QCOMPARE(o.box(QStringLiteral("txtNumofClasses"))->text(), QStringLiteral("24"));
        QCOMPARE(o.w->Ruler.iDrawWidth, qint16(24 * 600));
        QVERIFY(o.ctl<QScrollBar>(QStringLiteral("hsScrollDBH"))->isEnabled());
    }

    void yearsAndTheSample()
    {
        Opened o;
        QCOMPARE(o.years()->item(1)->text(), QStringLiteral("2010"));
        QCOMPARE(o.years()->item(1)->data(Qt::UserRole).toInt(), 2);
        QCOMPARE(highlightedRows(o.years()), QList<int>{0});
        auto *sample = o.ctl<QGroupBox>(QStringLiteral("fraCycle"));
        QCOMPARE(sample->title(), QStringLiteral("Sample for year: 2000"));
        QCOMPARE(o.density()->ChartSeriesCount(), qint16(3));
        QVERIFY(o.density()->shownChart() != nullptr);

        // Two years selected: the sample is the upper one, whichever was clicked last. The query
        // shows the hourglass while it runs.
        clickRow(o.years(), 1);
        o.host.Pointers.clear();
        o.click(QStringLiteral("cmdPlot"));
        QCOMPARE(o.host.Pointers, (QList<int>{11, 0}));
        QCOMPARE(sample->title(), QStringLiteral("Sample for year: 2000"));
        clickRow(o.years(), 0);
        o.click(QStringLiteral("cmdPlot"));
        QCOMPARE(sample->title(), QStringLiteral("Sample for year: 2010"));
        QCOMPARE(o.density()->ChartSeriesCount(), qint16(1));

        // No year: the user is told, the charts keep their data and the axis goes back to 0.
        clickRow(o.years(), 1);
        o.click(QStringLiteral("cmdPlot"));
        QCOMPARE(o.env.questions.messageTexts(), QStringList{QStringLiteral("No cycles selected.")});
        QCOMPARE(o.density()->ChartSeriesCount(), qint16(1));
        QCOMPARE(o.density()->ChartYAxisMax(), 0.0);
    }

    // The other table shows at once from the same query; Refresh queries again.
    void switchingTables()
    {
        Opened o;
        auto *volume = o.ctl<Graph>(QStringLiteral("gphMerchVol"));
        o.env.exec(kMoreTrees);
        QTest::mouseClick(o.ctl<QRadioButton>(QStringLiteral("optMerchVol")), Qt::LeftButton);
        QVERIFY(volume->isVisible() && !o.density()->isVisible());
        QVERIFY(volume->shownChart() != nullptr);
        QCOMPARE(volume->value(2, 2), 10.0);
        QTest::mouseClick(o.ctl<QRadioButton>(QStringLiteral("optDensity")), Qt::LeftButton);
        QVERIFY(o.density()->isVisible() && !volume->isVisible());
        o.click(QStringLiteral("cmdPlot"));
        QCOMPARE(o.density()->value(2, 2), 1100.0);
        QCOMPARE(volume->value(2, 2), 1010.0);
    }

    // Each fault goes to its own label; a refused entry leaves the classes and the ruler, a good
    // one redraws the ruler, and the sample keeps its classes until Refresh.
    void classBoxes()
    {
        Opened o;
        Retype(o.box(QStringLiteral("txtClassWidth")), QStringLiteral("0"));
        Retype(o.box(QStringLiteral("txtNumofClasses")), QStringLiteral("x"));
        Retype(o.box(QStringLiteral("txtClassStart")), QStringLiteral("-1"));
        QCOMPARE(o.label(QStringLiteral("lblDbhError")), QStringLiteral("Invalid.       Valid range is:"));
        QCOMPARE(o.label(QStringLiteral("lblClassStartError")), QStringLiteral("0 - 1000"));
        QCOMPARE(o.label(QStringLiteral("lblClassWidthError")), QStringLiteral("0.25 - 1000"));
        QCOMPARE(o.label(QStringLiteral("lblNumClassesError")), QStringLiteral("2 - 30"));
        QCOMPARE(o.panel(9)->text(), QStringLiteral("90+"));
        QVERIFY(o.panel(10)->isHidden());
        Retype(o.box(QStringLiteral("txtClassStart")), QStringLiteral("0"));
        Retype(o.box(QStringLiteral("txtClassWidth")), QStringLiteral("2.5"));
        Retype(o.box(QStringLiteral("txtNumofClasses")), QStringLiteral("30"));
        QCOMPARE(o.label(QStringLiteral("lblNumClassesError")), QString());
        QCOMPARE(o.panel(29)->text(), QStringLiteral("72.5+"));
        for (int i = 1; i < 30; ++i)
            QCOMPARE(o.panel(i)->x(), o.panel(i - 1)->x() + o.panel(i - 1)->width());
        QVERIFY(o.env.questions.asked().isEmpty());
        QCOMPARE(o.density()->ChartPointCount(), qint16(10));
        o.click(QStringLiteral("cmdPlot"));
        QCOMPARE(o.density()->ChartPointCount(), qint16(30));

        // The long ruler scrolls; back to ten classes it fits, and stands at its start again.
        auto *scroll = o.ctl<QScrollBar>(QStringLiteral("hsScrollDBH"));
        QVERIFY(scroll->isEnabled());
        scroll->setValue(1500);
        QCOMPARE(o.w->RulerView()->DrawArea()->x(), -100);
        Retype(o.box(QStringLiteral("txtNumofClasses")), QStringLiteral("10"));
        QVERIFY(!scroll->isEnabled());
        QCOMPARE(o.w->RulerView()->DrawArea()->x(), 0);
    }

    // The arrows show over an edge that can be dragged, and go off the panels. A drag moves the
    // edge; the editor open on the class follows, and its change events (raised by the program)
    // take nothing back.
    void dragMovesEdgeAndEditorFollows()
    {
        Opened o;
        QMouseEvent hover(QEvent::MouseMove, QPointF(2, 5), QPointF(), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(o.panel(3), &hover);
        QCOMPARE(o.host.MousePointer(), 9);
        QApplication::sendEvent(o.ctl<QGroupBox>(QStringLiteral("SSPanel3")), &hover);
        QCOMPARE(o.host.MousePointer(), 0);
        o.open(2);
        QCOMPARE(o.rangeBox(QStringLiteral("txtMin"))->text(), QStringLiteral("20"));
        const int x0 = o.panel(2)->width() - 2;
        QTest::mousePress(o.panel(2), Qt::LeftButton, {}, o.at(x0));
        QCOMPARE(o.host.MousePointer(), 9);
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::SizeHorCursor);
        QTest::mouseMove(o.panel(2), o.at(x0 + 20));
        const double edge = o.w->Layout.aClass[2].MaxDia;
        QVERIFY(edge > 30.0);
        QCOMPARE(o.w->Layout.aClass[3].MinDia, edge);
        QCOMPARE(o.rangeBox(QStringLiteral("txtMax"))->text(), DefaultText(edge));
        QCOMPARE(o.rangeBox(QStringLiteral("txtCentre"))->text(), DefaultText((20 + edge) / 2));
        QCOMPARE(o.rangeError(), QString());
        QCOMPARE(o.panel(3)->x(), o.panel(2)->x() + o.panel(2)->width());
        QTest::mouseRelease(o.panel(2), Qt::LeftButton, {}, o.at(x0 + 20));
        QCOMPARE(o.host.MousePointer(), 0);
        QVERIFY(!QApplication::overrideCursor());
    }

    // After a drag a box change asks first. Cancel writes the box back without a second
    // question; OK rebuilds from the boxes and asks no more while the user types on.
    void resetQuestion_data()
    {
        QTest::addColumn<int>("answer");
        QTest::addColumn<QString>("typed");   // after Backspace at the end of "10"
        QTest::addColumn<QString>("box");
        QTest::addColumn<QString>("last");
        QTest::newRow("Cancel") << int(Answer::Cancel) << "" << "10" << "90+";
        QTest::newRow("OK") << int(Answer::OK) << "2" << "12" << "110+";
    }

    void resetQuestion()
    {
        QFETCH(int, answer);
        QFETCH(QString, typed);
        QFETCH(QString, box);
        QFETCH(QString, last);
        Opened o;
        const int x0 = o.panel(2)->width() - 2;
        QTest::mousePress(o.panel(2), Qt::LeftButton, {}, o.at(x0));
        QTest::mouseMove(o.panel(2), o.at(x0 + 20));
        QTest::mouseRelease(o.panel(2), Qt::LeftButton, {}, o.at(x0 + 20));
        const double edge = o.w->Layout.aClass[2].MaxDia;
        o.env.questions.answerMessage(static_cast<Answer>(answer));
        QLineEdit *count = o.box(QStringLiteral("txtNumofClasses"));
        count->setFocus();
        count->end(false);
        QTest::keyClick(count, Qt::Key_Backspace);
        QTest::keyClicks(count, typed);
        QCOMPARE(o.env.questions.asked().size(), 1);
        QCOMPARE(count->text(), box);
        QVERIFY(!o.w->bInChange);
        QCOMPARE(o.panel(o.w->Layout.ClassCount() - 1)->text(), last);
        QCOMPARE(o.w->Layout.aClass[2].MaxDia, answer == int(Answer::OK) ? 30.0 : edge);
    }

    // "View Reports" over the selected years: the report file in the Work folder, shown modally
    // until Cancel deletes it; the pointer is the default again however it ends.
    void viewReports_data()
    {
        QTest::addColumn<bool>("answered");
        QTest::addColumn<bool>("tablesGone");
        QTest::addColumn<QString>("said");
        QTest::newRow("viewed") << true << false << "";
        QTest::newRow("cancelled") << false << false << "";
        QTest::newRow("compile fails") << true << true << "The following error occured:";
    }

    void viewReports()
    {
        QFETCH(bool, answered);
        QFETCH(bool, tablesGone);
        QFETCH(QString, said);
        Opened o;
        if (tablesGone) {
            o.env.exec(QStringLiteral("DROP TABLE temp.Report_Header"));
            o.env.exec(QStringLiteral("CREATE TEMP TABLE Report_Header (Report_Id INTEGER)"));
        }
        clickRow(o.years(), 1);
        o.env.questions.answerReportText(answered);
        QString file;
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, [&] {
            if (auto *viewer = qobject_cast<frmReport *>(QApplication::activeModalWidget())) {
                file = viewer->ReportFile;
                QVERIFY(QFile::exists(file));
                QTest::mouseClick(viewer->findChild<QPushButton *>(QStringLiteral("cmdCancel")), Qt::LeftButton);
            }
        });
        poll.start(10);
        o.host.Pointers.clear();
        o.click(QStringLiteral("cmdPrintReport"));
        QCOMPARE(o.env.questions.asked().first().title, QStringLiteral("R1: Stand Table"));
        QCOMPARE(file.isEmpty(), !answered || tablesGone);
        if (!file.isEmpty()) {
            QCOMPARE(QDir::cleanPath(file), QDir::cleanPath(o.env.workDir() + QStringLiteral("/R1_Stand.txt")));
            QVERIFY(!QFile::exists(file));
            // Both years, by the cycle numbers of the list.
            QCOMPARE(o.env.questions.lastBusyMessage(), QStringLiteral("Compiling report data for cycle: 2"));
        }
        const QStringList texts = o.env.questions.messageTexts();
        QCOMPARE(texts.size(), said.isEmpty() ? 0 : 1);
        QVERIFY(said.isEmpty() || texts.first().startsWith(said));
        QCOMPARE(o.host.MousePointer(), 0);
        QCOMPARE(o.host.Pointers.contains(11), answered);
    }

    // The range editor: each opening fills its boxes one by one, and the change events between
    // them damage no edge.
    void rangeOpensOnThePressedClass()
    {
        Opened o(10, 5, 3);
        const QString before = o.edges();
        for (int i : {1, 2, 0, 2, 1}) {
            o.open(i);
            QCOMPARE(o.range()->ClassNumber(), QString::number(i));
            QCOMPARE(o.rangeError(), QString());
        }
        QVERIFY(o.range()->isVisible());
        QCOMPARE(o.edges(), before);
        QCOMPARE(o.rangeBox(QStringLiteral("txtMax"))->text(), QStringLiteral("20"));
        QCOMPARE(o.rangeBox(QStringLiteral("txtCentre"))->text(), QStringLiteral("17.5"));
        QCOMPARE(o.panel(1)->TextColour(), QColor(30, 50, 150));
        QCOMPARE(o.panel(2)->TextColour(), QColor(Qt::black));
        QVERIFY(!o.w->Reset.bClassesEdited);

        // Close hides the editor and clears the highlight; the same editor comes back.
        QPointer<frmRange> first = o.range();
        QTest::mouseClick(Control<QPushButton>(o.range(), QStringLiteral("cmdOK")), Qt::LeftButton);
        QVERIFY(o.range()->isHidden());
        QCOMPARE(o.range()->ClassNumber(), QStringLiteral("-1"));
        QCOMPARE(o.panel(1)->TextColour(), QColor(Qt::black));
        o.open(0);
        QCOMPARE(o.range(), first.data());
    }

    // An accepted edge moves the class and its neighbour, on the ruler too, and sets the centre.
    // It is no drag: a new entry in the class boxes replaces it without a question. A refused
    // edge shows its fault and changes nothing.
    void rangeEdits()
    {
        Opened o(10, 5, 3);
        o.open(1);
        Retype(o.rangeBox(QStringLiteral("txtMin")), QStringLiteral("10"));
        QCOMPARE(o.rangeError(), QStringLiteral("Minimum must be  10.5 or larger."));
        QCOMPARE(o.edges(), QStringLiteral("10-15/12.5 15-20/17.5 20-25/22.5"));
        QCOMPARE(o.panel(1)->text(), QStringLiteral("17.5"));
        Retype(o.rangeBox(QStringLiteral("txtMin")), QStringLiteral("15.5"));
        QCOMPARE(o.rangeError(), QString());
        QCOMPARE(o.edges(), QStringLiteral("10-15.5/12.75 15.5-20/17.75 20-25/22.5"));
        QCOMPARE(o.rangeBox(QStringLiteral("txtCentre"))->text(), QStringLiteral("17.75"));
        QCOMPARE(o.panel(0)->text(), QStringLiteral("12.75"));
        QCOMPARE(o.panel(1)->x(), o.panel(0)->x() + o.panel(0)->width());
        Retype(o.box(QStringLiteral("txtClassWidth")), QStringLiteral("4"));
        QVERIFY(o.env.questions.asked().isEmpty());
        QCOMPARE(o.edges(), QStringLiteral("10-14/12 14-18/16 18-22/20"));
        // The editor follows the new classes, whole.
        QCOMPARE(o.rangeBox(QStringLiteral("txtMin"))->text(), QStringLiteral("14"));
        QCOMPARE(o.rangeBox(QStringLiteral("txtMax"))->text(), QStringLiteral("18"));
        QCOMPARE(o.rangeError(), QString());
    }

    // In the frame: the browser's window beside it, drawn for the first year; the frame's
    // arrows while a drag goes on; the editor a hidden child window whose close box only hides
    // it; the sample drawn again when the window comes back to the front.
    void inTheFrame()
    {
        GuiBench b;
        frmParameters *w = openInFrame(b);
        QVERIFY(w && b.frame->SubWindowOf(w)->isVisible());
        QVERIFY(w->findChild<QRadioButton *>(QStringLiteral("optDensity"))->isChecked());
        QCOMPARE(w->findChild<QGroupBox *>(QStringLiteral("fraCycle"))->title(), QStringLiteral("Sample for year: 2000"));
        QCOMPARE(w->findChild<Graph *>(QStringLiteral("gphDensity"))->value(1, 2), 100.0);
        QMdiSubWindow *editor = b.frame->SubWindowOf(w->RangeEditor());
        QVERIFY(!editor->isVisible());

        ClassPanel *p = w->RulerView()->SSPanel2(1);
        const QPoint edge(p->width() - 2, 5);
        QTest::mousePress(p, Qt::LeftButton, {}, edge);
        QCOMPARE(b.frame->MousePointer(), 9);
        QTest::mouseRelease(p, Qt::LeftButton, {}, edge);
        QCOMPARE(b.frame->MousePointer(), 0);
        QTest::mouseClick(p, Qt::LeftButton, {}, QPoint(p->width() / 2, 5));
        QVERIFY(editor->isVisible());
        editor->close();
        QApplication::processEvents();
        QVERIFY(w->RangeEditor() && !editor->isVisible());

        // Coming back to the window from another draws the sample again.
        b.addTree(QStringLiteral("A"), QStringLiteral("S"), 1, 3, 15.0, 50, 0.5);
        b.frame->mdiArea()->setActiveSubWindow(b.frame->SubWindowOf(b.frame->Marquel));
        QCOMPARE(w->findChild<Graph *>(QStringLiteral("gphDensity"))->value(1, 2), 100.0);
        b.frame->mdiArea()->setActiveSubWindow(b.frame->SubWindowOf(w));
        QCOMPARE(w->findChild<Graph *>(QStringLiteral("gphDensity"))->value(1, 2), 150.0);

        b.frame->SubWindowOf(w)->close();
        QApplication::processEvents();
        QCOMPARE(b.frame->Marquel->NumOpenWindows, qint16(0));
        QVERIFY(b.frame->RightForm().isNull() && b.ended.isEmpty());
    }
};

SENDREL_TEST_MAIN(tst_frmParameters)
#include "tst_frmParameters.moc"
