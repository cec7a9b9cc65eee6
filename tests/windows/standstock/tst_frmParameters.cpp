// The stand and stock window on its own, with a stub for the frame and the browser: its place
// and count, the years, the sample charts, the class boxes and the ruler as the user works them.
#include "support/TestMain.h"
#include "support/GuiBench.h"
#include "support/SampleRuns.h"
#include "support/WindowHostStub.h"

#include "app/GameDB.h"
#include "base/Numbers.h"
#include "graph/Graph.h"
#include "windows/standstock/ClassRulerView.h"
#include "windows/standstock/frmParameters.h"
#include "windows/standstock/frmRange.h"

#include <QGroupBox>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>

using namespace sendrel;
using namespace sendrel::test;

namespace {

const QString kMoreTrees = QStringLiteral("INSERT INTO Model_Entries (Run_Id, Species_Code, Trees_per_ha, Current_Diameter, "
                                          "Total_Volume, Cycle_Number, Standing_Harvested) VALUES ('R1', 3, 1000, 12, 1, 1, 'S')");

// One stand and stock window over the sample run, opened the way the browser opens it.
struct Opened {
    RunDatabase env{RunDatabase::Db::None};
    WindowHostStub host;
    QPointer<frmParameters> w;
    QList<int> ends;

    Opened()
    {
        env.openAsProgram();
        env.tm.EndProcess = [this](int code) { ends.append(code); };
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
    frmRange *range() const { return w->RangeEditor(); }
    QString rangeText(const QString &name) const { return Control<QLineEdit>(range(), name)->text(); }

    // A point on panel i, x pixels from its left.
    static QPoint at(int x) { return QPoint(x, ClassRulerView::kPanelHeight / 2); }
    // Drags the right edge of panel i by dx pixels.
    void dragRightEdge(int i, int dx)
    {
        const int x0 = panel(i)->width() - 2;
        QTest::mousePress(panel(i), Qt::LeftButton, {}, at(x0));
        QTest::mouseMove(panel(i), at(x0 + dx));
        QTest::mouseRelease(panel(i), Qt::LeftButton, {}, at(x0 + dx));
    }
};

}  // namespace

class tst_frmParameters : public QObject {
    Q_OBJECT

private slots:
    void loadTakesPlaceCountAndSettings()
    {
        Opened o;
        QCOMPARE(o.host.NumOpenWindows, 1);
        QCOMPARE(o.host.LeftForm().data(), o.w.data());
        // A second window takes the right-hand place, and gives it back.
        auto *second = new frmParameters(o.env.tm, o.host);
        QCOMPARE(o.host.NumOpenWindows, 2);
        QCOMPARE(o.host.RightForm().data(), second);
        second->close();
        QCOMPARE(o.host.NumOpenWindows, 1);
        QVERIFY(o.host.RightForm().isNull());

        QCOMPARE(o.box(QStringLiteral("txtClassWidth"))->text(), QStringLiteral("10"));
        QCOMPARE(o.box(QStringLiteral("txtNumofClasses"))->text(), QStringLiteral("10"));
        QCOMPARE(o.panel(9)->text(), QStringLiteral("90+"));
        QVERIFY(o.panel(10)->isHidden());
        QCOMPARE(o.panel(3)->x(), o.w->RulerView()->lneScaleTick(3)->x());
        QVERIFY(o.range()->isHidden());
    }

    // The settings go into the boxes quietly: the classes are built once, so that the ruler's
    // first drawing gives each class its room.
    void firstDrawingGivesEachClassItsRoom()
    {
        RunDatabase env{RunDatabase::Db::None};
        env.openAsProgram();
        env.tm.settings.ClassesStart = 5;
        env.tm.settings.ClassesWidth = 2.5;
        env.tm.settings.NumClasses = 24;
        WindowHostStub host;
        frmParameters w(env.tm, host);
        QCOMPARE(Control<QLineEdit>(&w, QStringLiteral("txtNumofClasses"))->text(), QStringLiteral("24"));
        QCOMPARE(w.Ruler.iDrawWidth, qint16(24 * 600));
        QCOMPARE(w.RulerView()->SSPanel2(23)->text(), QStringLiteral("62.5+"));
        QVERIFY(Control<QScrollBar>(&w, QStringLiteral("hsScrollDBH"))->isEnabled());
    }

    // Closing gives back the place and the count; started with a run it is the process's end.
    void unload_data()
    {
        QTest::addColumn<bool>("withRun");
        QTest::newRow("by hand") << false;
        QTest::newRow("with a run") << true;
    }

    void unload()
    {
        QFETCH(bool, withRun);
        Opened o;
        o.env.tm.RunOnCommandLine = withRun;
        QPointer<frmRange> range = o.range();
        o.click(QStringLiteral("cmdOK"));
        QTRY_VERIFY(o.w.isNull());
        QTRY_VERIFY(range.isNull());
        QCOMPARE(o.host.NumOpenWindows, 0);
        QVERIFY(o.host.LeftForm().isNull());
        QCOMPARE(o.ends, withRun ? QList<int>{0} : QList<int>{});
        QCOMPARE(o.env.tm.DBEngine.IsOpen(), !withRun);
        if (withRun)
            OpenGameDB(o.env.tm, false);   // for the test's own end, which closes it once more
    }

    void yearsAndTheSample()
    {
        Opened o;
        QCOMPARE(o.years()->count(), 2);
        QCOMPARE(o.years()->item(1)->text(), QStringLiteral("2010"));
        QCOMPARE(o.years()->item(1)->data(Qt::UserRole).toInt(), 2);
        QCOMPARE(highlightedRows(o.years()), QList<int>{0});
        auto *sample = o.ctl<QGroupBox>(QStringLiteral("fraCycle"));
        QCOMPARE(sample->title(), QStringLiteral("Sample for year: 2000"));
        QCOMPARE(o.density()->ChartSeriesCount(), qint16(3));
        QVERIFY(o.density()->shownChart() != nullptr);

        // Two years selected: the sample is the upper one, whichever was clicked last.
        clickRow(o.years(), 1);
        o.click(QStringLiteral("cmdPlot"));
        QCOMPARE(sample->title(), QStringLiteral("Sample for year: 2000"));
        clickRow(o.years(), 0);
        o.click(QStringLiteral("cmdPlot"));
        QCOMPARE(sample->title(), QStringLiteral("Sample for year: 2010"));
        QCOMPARE(o.density()->ChartSeriesCount(), qint16(1));
        QVERIFY(o.env.questions.messageTexts().isEmpty());

        // No year: the user is told, the charts keep their data and the axis goes back to 0.
        clickRow(o.years(), 1);
        o.click(QStringLiteral("cmdPlot"));
        QCOMPARE(o.env.questions.messageTexts(), QStringList{QStringLiteral("No cycles selected.")});
        QCOMPARE(o.density()->ChartSeriesCount(), qint16(1));
        QCOMPARE(o.density()->ChartYAxisMax(), 0.0);
    }

    // The other table shows at once from the same query; Refresh queries again.
    void switchingTablesNeedsNoQuery()
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
        QCOMPARE(o.density()->value(2, 2), 100.0);
        o.click(QStringLiteral("cmdPlot"));
        QCOMPARE(o.density()->value(2, 2), 1100.0);
        QCOMPARE(volume->value(2, 2), 1010.0);
    }

    // Coming back from another window draws the sample again; its first activation does not.
    void comingBackDrawsTheSampleAgain()
    {
        Opened o;
        o.w->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(o.w));
        o.env.exec(kMoreTrees);
        QCOMPARE(o.density()->value(2, 2), 100.0);
        QWidget other;
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        o.w->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(o.w));
        QCOMPARE(o.density()->value(2, 2), 1100.0);
    }

    // Each fault goes to its own label; a refused entry leaves the classes and the ruler.
    void classBoxFaults()
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
        Retype(o.box(QStringLiteral("txtNumofClasses")), QStringLiteral("20"));
        QCOMPARE(o.label(QStringLiteral("lblDbhError")), QString());
        QCOMPARE(o.label(QStringLiteral("lblNumClassesError")), QString());
        QCOMPARE(o.panel(19)->text(), QStringLiteral("47.5+"));
        for (int i = 1; i < 20; ++i)
            QCOMPARE(o.panel(i)->x(), o.panel(i - 1)->x() + o.panel(i - 1)->width());
        QVERIFY(o.env.questions.asked().isEmpty());
        // The sample keeps its classes until Refresh.
        QCOMPARE(o.density()->ChartPointCount(), qint16(10));
        o.click(QStringLiteral("cmdPlot"));
        QCOMPARE(o.density()->ChartPointCount(), qint16(20));
    }

    // A drag moves the edge and the arrows show; the editor open on the class follows, and its
    // change events (raised by the program) take nothing back.
    void dragMovesEdgeAndEditorFollows()
    {
        Opened o;
        QTest::mouseClick(o.panel(2), Qt::LeftButton, {}, o.at(o.panel(2)->width() / 2));
        QVERIFY(o.range()->isVisible());
        QCOMPARE(o.rangeText(QStringLiteral("txtMin")), QStringLiteral("20"));
        QCOMPARE(o.panel(2)->TextColour(), QColor(30, 50, 150));

        const int x0 = o.panel(2)->width() - 2;
        QTest::mousePress(o.panel(2), Qt::LeftButton, {}, o.at(x0));
        QCOMPARE(o.host.MousePointer(), 9);
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::SizeHorCursor);
        QTest::mouseMove(o.panel(2), o.at(x0 + 20));
        const double edge = o.w->Layout.aClass[2].MaxDia;
        QVERIFY(edge > 30.0);
        QCOMPARE(o.w->Layout.aClass[3].MinDia, edge);
        QCOMPARE(o.rangeText(QStringLiteral("txtMax")), DefaultText(edge));
        QCOMPARE(o.rangeText(QStringLiteral("txtCentre")), DefaultText((20 + edge) / 2));
        QCOMPARE(Control<QLabel>(o.range(), QStringLiteral("lblDbhError"))->text(), QString());
        QCOMPARE(o.panel(2)->text(), DefaultText((20 + edge) / 2));
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
        QTest::addColumn<QString>("last");
        QTest::newRow("Cancel") << int(Answer::Cancel) << "" << "90+";
        QTest::newRow("OK") << int(Answer::OK) << "2" << "110+";
    }

    void resetQuestion()
    {
        QFETCH(int, answer);
        QFETCH(QString, typed);
        QFETCH(QString, last);
        Opened o;
        o.dragRightEdge(2, 20);
        const double edge = o.w->Layout.aClass[2].MaxDia;
        o.env.questions.answerMessage(static_cast<Answer>(answer));
        QLineEdit *box = o.box(QStringLiteral("txtNumofClasses"));
        box->setFocus();
        box->end(false);
        QTest::keyClick(box, Qt::Key_Backspace);
        QTest::keyClicks(box, typed);
        QCOMPARE(o.env.questions.asked().size(), 1);
        QCOMPARE(o.env.questions.asked().first().text, QStringLiteral("Reset all DBH classes?"));
        QCOMPARE(box->text(), answer == int(Answer::OK) ? QStringLiteral("12") : QStringLiteral("10"));
        QVERIFY(!o.w->bInChange);
        QCOMPARE(o.panel(o.w->Layout.ClassCount() - 1)->text(), last);
        QCOMPARE(o.w->Layout.aClass[2].MaxDia, answer == int(Answer::OK) ? 30.0 : edge);
    }

    void longRulerScrolls()
    {
        Opened o;
        auto *scroll = o.ctl<QScrollBar>(QStringLiteral("hsScrollDBH"));
        QVERIFY(!scroll->isEnabled());
        Retype(o.box(QStringLiteral("txtNumofClasses")), QStringLiteral("30"));
        QVERIFY(scroll->isEnabled());
        scroll->setValue(1500);
        QCOMPARE(o.w->RulerView()->DrawArea()->x(), -100);
        Retype(o.box(QStringLiteral("txtNumofClasses")), QStringLiteral("10"));
        QVERIFY(!scroll->isEnabled());
        QCOMPARE(o.w->RulerView()->DrawArea()->x(), 0);
    }

    // The pointer shows what a press would do, off the panels it goes back; the query shows the hourglass.
    void pointer()
    {
        Opened o;
        auto hover = [](QWidget *target, int x) {
            QMouseEvent move(QEvent::MouseMove, QPointF(x, 5), target->mapToGlobal(QPointF(x, 5)), Qt::NoButton, Qt::NoButton,
                             Qt::NoModifier);
            QApplication::sendEvent(target, &move);
        };
        hover(o.panel(3), 2);
        QCOMPARE(o.host.MousePointer(), 9);
        hover(o.ctl<QGroupBox>(QStringLiteral("SSPanel3")), 5);
        QCOMPARE(o.host.MousePointer(), 0);
        o.host.Pointers.clear();
        o.click(QStringLiteral("cmdPlot"));
        QCOMPARE(o.host.Pointers, (QList<int>{11, 0}));
    }

    // "View Charts" is for a later version; "View Reports" asks for the report's title first;
    // help of the window and of its range editor goes to the host.
    void buttons()
    {
        Opened o;
        o.click(QStringLiteral("cmdPrintCharts"));
        QCOMPARE(o.env.questions.messageTexts().size(), 1);
        QVERIFY(o.env.questions.messageTexts().first().contains(QStringLiteral("later version")));
        o.env.questions.answerReportText(false);
        o.click(QStringLiteral("cmdPrintReport"));
        QCOMPARE(o.env.questions.asked().last().title, QStringLiteral("R1: Stand Table"));
        o.click(QStringLiteral("cmdHelp"));
        QTest::mouseClick(Control<QPushButton>(o.range(), QStringLiteral("cmdHelp")), Qt::LeftButton);
        QCOMPARE(o.host.HelpTopics, (QList<int>{76, 2100}));
    }
};

SENDREL_TEST_MAIN(tst_frmParameters)
#include "tst_frmParameters.moc"
