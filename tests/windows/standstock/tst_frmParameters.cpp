#include "support/TestMain.h"
#include "support/GuiBench.h"
#include "support/SampleRuns.h"

#include "base/Numbers.h"
#include "graph/Graph.h"
#include "windows/standstock/ClassRulerView.h"
#include "windows/standstock/frmParameters.h"
#include "windows/standstock/frmRange.h"
#include "app/GameDB.h"
#include "support/WindowHostStub.h"

#include <QApplication>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QTest>

using namespace sendrel;
using namespace sendrel::test;

namespace {

// One stand and stock window over the sample run, opened the way the browser opens it.
struct Opened {
    RunDatabase env{RunDatabase::Db::None};
    WindowHostStub host;
    QPointer<frmParameters> w;
    QList<int> ends;

    explicit Opened(bool show = true)
    {
        env.openAsProgram();
        env.tm.EndProcess = [this](int code) { ends.append(code); };
        AddSampleRun(env);
        w = new frmParameters(env.tm, host);
        w->This_RunId = QStringLiteral("R1");
        w->This_RunDesc = QStringLiteral("Spacing trial");
        w->This_SorH = QStringLiteral("S");
        w->UpdateHeaderList();
        w->ChooseDensity(true);
        w->setWindowTitle(QStringLiteral("Stand & Stock Tables: R1"));
        w->PlotClick();
        if (show) {
            w->show();
            QVERIFY(QTest::qWaitForWindowExposed(w));
        }
    }
    ~Opened()
    {
        delete w;
    }

    template <typename T> T *ctl(const QString &name) const { return Control<T>(w, name); }
    QLineEdit *box(const QString &name) const { return ctl<QLineEdit>(name); }
    QString label(const QString &name) const { return ctl<QLabel>(name)->text(); }
    ClassPanel *panel(int i) const { return w->RulerView()->SSPanel2(i); }
    frmRange *range() const { return w->RangeEditor(); }
    QString rangeText(const QString &name) const { return Control<QLineEdit>(range(), name)->text(); }
    QString rangeError() const { return Control<QLabel>(range(), QStringLiteral("lblDbhError"))->text(); }

    // A point inside panel i, x pixels from its left.
    static QPoint at(int, int x) { return QPoint(x, ClassRulerView::kPanelHeight / 2); }
    // The pixel x of a panel's right edge zone.
    int rightEdge(int i) const { return panel(i)->width() - 2; }
};

}  // namespace

class tst_frmParameters : public QObject {
    Q_OBJECT

private slots:
    void loadTakesPlaceCountAndSettings();
    void unloadGivesBackPlaceAndCount();
    void unloadStartedWithRunEndsProcess();
    void yearsOfTheRun();
    void sampleChartsOfFirstSelectedYear();
    void noCycleSelected();
    void switchingTablesNeedsNoQuery();
    void classBoxLabels_data();
    void classBoxLabels();
    void goodEntryRebuildsRuler();
    void rulerDragMovesEdgeAndEditorFollows();
    void dragIsHeldAtNeighbour();
    void resetQuestionCancelAsksOnce();
    void resetQuestionOKRebuilds();
    void pressOnNarrowPanelEdgeOpensEditor();
    void longRulerScrolls();
    void buttonsReportsAndHelp();
    void comingBackDrawsTheSampleAgain();
    void firstDrawingGivesEachClassItsRoom();
    void pointerTellsWhatAPressWouldDo();
};

void tst_frmParameters::loadTakesPlaceCountAndSettings()
{
    Opened o(false);
    QCOMPARE(o.host.NumOpenWindows, 1);
    QCOMPARE(o.host.LeftForm().data(), o.w.data());
    QVERIFY(o.host.RightForm().isNull());
    // A second window takes the right-hand place.
    auto *second = new frmParameters(o.env.tm, o.host);
    QCOMPARE(o.host.NumOpenWindows, 2);
    QCOMPARE(o.host.RightForm().data(), second);
    second->close();
    QCOMPARE(o.host.NumOpenWindows, 1);
    QVERIFY(o.host.RightForm().isNull());

    QCOMPARE(o.box(QStringLiteral("txtClassStart"))->text(), QStringLiteral("0"));
    QCOMPARE(o.box(QStringLiteral("txtClassWidth"))->text(), QStringLiteral("10"));
    QCOMPARE(o.box(QStringLiteral("txtNumofClasses"))->text(), QStringLiteral("10"));
    QCOMPARE(o.w->iNumofClasses, qint16(10));
    QCOMPARE(o.w->Layout.aClass[9].MinDia, 90.0);
    // Ten panels, the last one the bucket; the range editor is made and hidden.
    QCOMPARE(o.panel(0)->text(), QStringLiteral("5"));
    QCOMPARE(o.panel(9)->text(), QStringLiteral("90+"));
    QVERIFY(!o.panel(9)->isHidden());
    QVERIFY(o.panel(10)->isHidden());
    QVERIFY(o.range() != nullptr);
    QVERIFY(o.range()->isHidden());
    QCOMPARE(o.range()->ClassNumber(), QStringLiteral("-1"));
    // Scale: 0 to 100 over 8000 twips, ticks every 10 cm, the last one 40 twips short.
    QCOMPARE(o.w->Ruler.iTwipsPerCm, qint16(80));
    QCOMPARE(o.w->RulerView()->lblDBHScale(10)->text(), QStringLiteral("100"));
    QCOMPARE(o.w->RulerView()->lblDBHScale(3)->text(), QStringLiteral("30"));
    QCOMPARE(o.w->RulerView()->lneScaleTick(10)->x(), TwipsToPixels(135 + 8000 - 40));
    // Each panel's edges stand where the scale puts their diameters.
    QCOMPARE(o.panel(3)->x(), TwipsToPixels(135 + 30 * 80));
    QCOMPARE(o.panel(3)->x(), o.w->RulerView()->lneScaleTick(3)->x());
}

void tst_frmParameters::unloadGivesBackPlaceAndCount()
{
    Opened o;
    QPointer<frmRange> range = o.range();
    QTest::mouseClick(o.ctl<QPushButton>(QStringLiteral("cmdOK")), Qt::LeftButton);
    QTRY_VERIFY(o.w.isNull());
    QTRY_VERIFY(range.isNull());
    QCOMPARE(o.host.NumOpenWindows, 0);
    QVERIFY(o.host.LeftForm().isNull());
    QVERIFY(o.ends.isEmpty());
    QVERIFY(o.env.tm.DBEngine.IsOpen());
}

void tst_frmParameters::unloadStartedWithRunEndsProcess()
{
    Opened o;
    o.env.tm.RunOnCommandLine = true;
    o.w->close();
    QCOMPARE(o.ends, QList<int>{0});
    QVERIFY(!o.env.tm.DBEngine.IsOpen());
    OpenGameDB(o.env.tm, false);   // for the test's own end, which closes it once more
}

void tst_frmParameters::yearsOfTheRun()
{
    Opened o;
    auto *list = o.ctl<QListWidget>(QStringLiteral("lstCycles"));
    QCOMPARE(list->count(), 2);
    QCOMPARE(list->item(0)->text(), QStringLiteral("2000"));
    QCOMPARE(list->item(0)->data(Qt::UserRole).toInt(), 1);
    QCOMPARE(list->item(1)->text(), QStringLiteral("2010"));
    QCOMPARE(list->item(1)->data(Qt::UserRole).toInt(), 2);
    QVERIFY(list->item(0)->isSelected());
    QVERIFY(!list->item(1)->isSelected());
    QCOMPARE(list->selectionMode(), QAbstractItemView::MultiSelection);

    // Harvested trees of the same run: no cycles.
    o.w->This_SorH = QStringLiteral("H");
    o.w->UpdateHeaderList();
    QCOMPARE(list->count(), 0);
}

void tst_frmParameters::sampleChartsOfFirstSelectedYear()
{
    Opened o;
    auto *density = o.ctl<Graph>(QStringLiteral("gphDensity"));
    auto *volume = o.ctl<Graph>(QStringLiteral("gphMerchVol"));
    QCOMPARE(o.ctl<QGroupBox>(QStringLiteral("fraCycle"))->title(), QStringLiteral("Sample for year: 2000"));
    QCOMPARE(o.w->NextSpecies, qint16(3));
    // Species by first appearance from the smallest class: PL (8 cm), FD (12 cm), PW (25 cm).
    QCOMPARE(density->ChartSeriesCount(), qint16(3));
    QCOMPARE(density->ChartPointCount(), qint16(10));
    QCOMPARE(density->series()[0].legend, QStringLiteral("PL"));
    QCOMPARE(density->series()[1].legend, QStringLiteral("FD"));
    QCOMPARE(density->series()[2].legend, QStringLiteral("PW"));
    QCOMPARE(density->series()[1].colour, qint16(3));
    QCOMPARE(density->value(1, 1), 200.0);
    QCOMPARE(density->value(2, 2), 100.0);
    QCOMPARE(density->value(2, 3), 50.0);    // 20 cm is the lower edge of 20-30
    QCOMPARE(density->value(3, 3), 30.0);
    QCOMPARE(density->value(2, 10), 2.0);    // 95 cm in the bucket
    QCOMPARE(volume->value(2, 10), 12.0);
    QCOMPARE(volume->value(3, 3), 16.5);
    QCOMPARE(density->pointLabels().first(), QStringLiteral("5"));
    QCOMPARE(density->pointLabels().last(), QStringLiteral("95"));
    QCOMPARE(density->ChartTopTitle(), QStringLiteral("Stand Table"));
    QCOMPARE(density->ChartLeftTitle(), QStringLiteral("Density (SPH)"));
    QCOMPARE(volume->ChartLeftTitle(), QStringLiteral("GTV (cu.m/ha)"));
    QCOMPARE(volume->ChartBottomTitle(), QStringLiteral("DBH Class (cm)"));
    QCOMPARE(density->ChartYAxisMin(), 0.0);
    QVERIFY(density->ChartYAxisMax() >= 200.0);
    QVERIFY(volume->ChartYAxisMax() >= 20.0 && volume->ChartYAxisMax() < 200.0);
    QVERIFY(density->shownChart() != nullptr);

    // Two years selected: the sample is the upper one, whichever was clicked last.
    auto *list = o.ctl<QListWidget>(QStringLiteral("lstCycles"));
    list->item(1)->setSelected(true);
    QTest::mouseClick(o.ctl<QPushButton>(QStringLiteral("cmdPlot")), Qt::LeftButton);
    QCOMPARE(o.ctl<QGroupBox>(QStringLiteral("fraCycle"))->title(), QStringLiteral("Sample for year: 2000"));
    list->item(0)->setSelected(false);
    QTest::mouseClick(o.ctl<QPushButton>(QStringLiteral("cmdPlot")), Qt::LeftButton);
    QCOMPARE(o.ctl<QGroupBox>(QStringLiteral("fraCycle"))->title(), QStringLiteral("Sample for year: 2010"));
    QCOMPARE(density->ChartSeriesCount(), qint16(1));
    QCOMPARE(density->series()[0].legend, QStringLiteral("FD"));
    QCOMPARE(density->value(1, 4), 80.0);
    QVERIFY(o.env.questions.messageTexts().isEmpty());
}

void tst_frmParameters::noCycleSelected()
{
    Opened o;
    auto *density = o.ctl<Graph>(QStringLiteral("gphDensity"));
    auto *list = o.ctl<QListWidget>(QStringLiteral("lstCycles"));
    list->clearSelection();
    QTest::mouseClick(o.ctl<QPushButton>(QStringLiteral("cmdPlot")), Qt::LeftButton);
    QCOMPARE(o.env.questions.messageTexts(), QStringList{QStringLiteral("No cycles selected.")});
    // The chart keeps its data; the axis goes back to what nothing needs.
    QCOMPARE(density->ChartSeriesCount(), qint16(3));
    QCOMPARE(density->value(1, 1), 200.0);
    QCOMPARE(density->ChartYAxisMin(), 0.0);
    QVERIFY(density->ChartYAxisMax() < 200.0);
    QCOMPARE(o.ctl<QGroupBox>(QStringLiteral("fraCycle"))->title(), QStringLiteral("Sample for year: 2000"));
}

void tst_frmParameters::switchingTablesNeedsNoQuery()
{
    Opened o;
    auto *density = o.ctl<Graph>(QStringLiteral("gphDensity"));
    auto *volume = o.ctl<Graph>(QStringLiteral("gphMerchVol"));
    QVERIFY(density->isVisible());
    QVERIFY(!volume->isVisible());
    // Trees added behind the window's back show only after a new query.
    o.env.exec(QStringLiteral("INSERT INTO Model_Entries (Run_Id, Species_Code, Trees_per_ha, Current_Diameter, "
                              "Total_Volume, Cycle_Number, Standing_Harvested) VALUES ('R1', 3, 1000, 12, 1, 1, 'S')"));
    QTest::mouseClick(o.ctl<QRadioButton>(QStringLiteral("optMerchVol")), Qt::LeftButton);
    QVERIFY(volume->isVisible());
    QVERIFY(!density->isVisible());
    QVERIFY(volume->shownChart() != nullptr);
    QCOMPARE(volume->value(2, 2), 10.0);
    QTest::mouseClick(o.ctl<QRadioButton>(QStringLiteral("optDensity")), Qt::LeftButton);
    QVERIFY(density->isVisible());
    QVERIFY(!volume->isVisible());
    QCOMPARE(density->value(2, 2), 100.0);
    // Refresh queries again.
    QTest::mouseClick(o.ctl<QPushButton>(QStringLiteral("cmdPlot")), Qt::LeftButton);
    QCOMPARE(density->value(2, 2), 1100.0);
    QCOMPARE(volume->value(2, 2), 1010.0);
}

void tst_frmParameters::classBoxLabels_data()
{
    QTest::addColumn<QString>("start");
    QTest::addColumn<QString>("width");
    QTest::addColumn<QString>("count");
    QTest::addColumn<QStringList>("labels");   // lblDbhError, start, width, count

    const QString range = QStringLiteral("Invalid.       Valid range is:");
    const QString step = QStringLiteral("        Must be a multiple of:");
    QTest::newRow("start 2000") << "2000" << "10" << "10" << QStringList{range, "0 - 1000", "", ""};
    QTest::newRow("range hides step") << "2000" << "0.3" << "10" << QStringList{range, "0 - 1000", "", ""};
    QTest::newRow("width 0.25") << "0" << "0.25" << "10" << QStringList{step, "", "0.5", ""};
    QTest::newRow("start 12.25") << "12.25" << "2.5" << "10" << QStringList{step, "0.5", "", ""};
    QTest::newRow("count 1") << "0" << "10" << "1" << QStringList{range, "", "", "2 - 30"};
    QTest::newRow("count 31") << "0" << "10" << "31" << QStringList{range, "", "", "2 - 30"};
    QTest::newRow("count 7.5") << "0" << "10" << "7.5" << QStringList{step, "", "", "1.0"};
    QTest::newRow("all three out") << "-1" << "0" << "x" << QStringList{range, "0 - 1000", "0.25 - 1000", "2 - 30"};
    QTest::newRow("good") << "12.5" << "2.5" << "10" << QStringList{"", "", "", ""};
}

void tst_frmParameters::classBoxLabels()
{
    QFETCH(QString, start);
    QFETCH(QString, width);
    QFETCH(QString, count);
    QFETCH(QStringList, labels);
    Opened o;
    Retype(o.box(QStringLiteral("txtNumofClasses")), count);
    Retype(o.box(QStringLiteral("txtClassWidth")), width);
    Retype(o.box(QStringLiteral("txtClassStart")), start);
    QCOMPARE(o.label(QStringLiteral("lblDbhError")), labels[0]);
    QCOMPARE(o.label(QStringLiteral("lblClassStartError")), labels[1]);
    QCOMPARE(o.label(QStringLiteral("lblClassWidthError")), labels[2]);
    QCOMPARE(o.label(QStringLiteral("lblNumClassesError")), labels[3]);
    if (!labels[0].isEmpty()) {
        // A refused entry leaves the classes of the last good keystroke ("3" on the way to
        // "31"), ruler and all, while iNumofClasses holds the refused number.
        const int n = o.w->Layout.ClassCount();
        QVERIFY(!o.panel(n - 1)->isHidden());
        QVERIFY(n == 30 || o.panel(n)->isHidden());
        QCOMPARE(o.panel(n - 1)->text(), DefaultText(o.w->Layout.aClass[n - 1].MinDia) + QLatin1Char('+'));
        QCOMPARE(o.w->iNumofClasses, ToInt16(ReadNumber(count)));
    }
    QVERIFY(o.env.questions.asked().isEmpty());
}

void tst_frmParameters::goodEntryRebuildsRuler()
{
    Opened o;
    Retype(o.box(QStringLiteral("txtClassStart")), QStringLiteral("12.5"));
    Retype(o.box(QStringLiteral("txtClassWidth")), QStringLiteral("2.5"));
    Retype(o.box(QStringLiteral("txtNumofClasses")), QStringLiteral("20"));
    QCOMPARE(o.w->Layout.ClassCount(), qint16(20));
    QCOMPARE(o.w->Layout.aClass[19].MinDia, 60.0);
    QCOMPARE(o.panel(0)->text(), QStringLiteral("13.75"));
    QCOMPARE(o.panel(19)->text(), QStringLiteral("60+"));
    QVERIFY(o.panel(20)->isHidden());
    // The scale starts at the whole centimetre below the start; the first panel at its origin.
    QCOMPARE(o.w->RulerView()->lblDBHScale(0)->text(), QStringLiteral("12"));
    QCOMPARE(o.panel(0)->x(), TwipsToPixels(135));
    // Neighbouring panels meet without a gap or an overlap.
    for (int i = 1; i < 20; ++i)
        QCOMPARE(o.panel(i)->x(), o.panel(i - 1)->x() + o.panel(i - 1)->width());
    // Nothing of the sample changes until Refresh.
    QCOMPARE(o.ctl<Graph>(QStringLiteral("gphDensity"))->ChartPointCount(), qint16(10));
    QTest::mouseClick(o.ctl<QPushButton>(QStringLiteral("cmdPlot")), Qt::LeftButton);
    QCOMPARE(o.ctl<Graph>(QStringLiteral("gphDensity"))->ChartPointCount(), qint16(20));
}

void tst_frmParameters::rulerDragMovesEdgeAndEditorFollows()
{
    Opened o;
    // A press in the middle of the third class opens the editor on it.
    QTest::mousePress(o.panel(2), Qt::LeftButton, {}, o.at(2, o.panel(2)->width() / 2));
    QTest::mouseRelease(o.panel(2), Qt::LeftButton, {}, o.at(2, o.panel(2)->width() / 2));
    QVERIFY(o.range()->isVisible());
    QCOMPARE(o.range()->ClassNumber(), QStringLiteral("2"));
    QCOMPARE(o.rangeText(QStringLiteral("txtMin")), QStringLiteral("20"));
    QCOMPARE(o.rangeText(QStringLiteral("txtMax")), QStringLiteral("30"));
    QCOMPARE(o.rangeText(QStringLiteral("txtCentre")), QStringLiteral("25"));
    QCOMPARE(o.panel(2)->TextColour(), QColor(30, 50, 150));
    QCOMPARE(o.panel(1)->TextColour(), QColor(Qt::black));
    QVERIFY(!o.w->Reset.bClassesEdited);

    // Drag its right edge 20 pixels (300 twips, 3.75 cm at 80 twips a cm) to the right.
    const int x0 = o.rightEdge(2);
    QTest::mousePress(o.panel(2), Qt::LeftButton, {}, o.at(2, x0));
    QCOMPARE(o.host.MousePointer(), 9);
    QCOMPARE(QApplication::overrideCursor()->shape(), Qt::SizeHorCursor);
    QVERIFY(o.w->Reset.bClassesEdited);
    QTest::mouseMove(o.panel(2), o.at(2, x0 + 20));
    // (Left 1735 + X (x0 + 20) * 15 - 135) / 80, snapped down to 0.5.
    const double expected = ClassRuler::SnapDown((1735 + (x0 + 20) * 15.0 - 135) / 80);
    QCOMPARE(o.w->Layout.aClass[2].MaxDia, expected);
    QCOMPARE(o.w->Layout.aClass[3].MinDia, expected);
    QCOMPARE(o.w->Layout.aClass[2].MidPoint, (20 + expected) / 2);
    QCOMPARE(o.w->Layout.aClass[3].MidPoint, (expected + 40) / 2);
    // The editor follows, and its change events take nothing back.
    QCOMPARE(o.rangeText(QStringLiteral("txtMax")), DefaultText(expected));
    QCOMPARE(o.rangeText(QStringLiteral("txtCentre")), DefaultText((20 + expected) / 2));
    QCOMPARE(o.rangeError(), QString());
    QCOMPARE(o.panel(2)->text(), DefaultText((20 + expected) / 2));
    QCOMPARE(o.panel(3)->x(), o.panel(2)->x() + o.panel(2)->width());
    QTest::mouseRelease(o.panel(2), Qt::LeftButton, {}, o.at(2, x0 + 20));
    QCOMPARE(o.host.MousePointer(), 0);
    QVERIFY(QApplication::overrideCursor() == nullptr);
    QVERIFY(!o.w->Ruler.bDragRightEdge);

    // The editor closes: no class highlighted any more.
    QTest::mouseClick(Control<QPushButton>(o.range(), QStringLiteral("cmdOK")), Qt::LeftButton);
    QVERIFY(!o.range()->isVisible());
    QCOMPARE(o.range()->ClassNumber(), QStringLiteral("-1"));
    QCOMPARE(o.panel(2)->TextColour(), QColor(Qt::black));
}

void tst_frmParameters::dragIsHeldAtNeighbour()
{
    Opened o;
    // The left edge of the fifth class (40-50), dragged far to the left and then far right.
    QTest::mousePress(o.panel(4), Qt::LeftButton, {}, o.at(4, 2));
    QVERIFY(o.w->Ruler.bDragLeftEdge);
    QTest::mouseMove(o.panel(4), o.at(4, -300));
    QCOMPARE(o.w->Layout.aClass[3].MaxDia, 30.5);
    QCOMPARE(o.w->Layout.aClass[4].MinDia, 30.5);
    QTest::mouseMove(o.panel(4), o.at(4, 600));
    QCOMPARE(o.w->Layout.aClass[4].MinDia, 49.5);
    QCOMPARE(o.panel(4)->text(), QStringLiteral("49.75"));
    QTest::mouseRelease(o.panel(4), Qt::LeftButton, {}, o.at(4, 600));
    // The first class's left edge offers no drag, yet the press marks the layout as edited.
    QTest::mousePress(o.panel(0), Qt::LeftButton, {}, o.at(0, 1));
    QTest::mouseMove(o.panel(0), o.at(0, 30));
    QCOMPARE(o.w->Layout.aClass[0].MinDia, 0.0);
    QCOMPARE(o.w->Layout.aClass[0].MaxDia, 10.0);
    QTest::mouseRelease(o.panel(0), Qt::LeftButton, {}, o.at(0, 30));
    // That press alone makes the next box change ask before the layout goes.
    o.env.questions.answerMessage(Answer::Cancel);
    QLineEdit *width = o.box(QStringLiteral("txtClassWidth"));
    width->setFocus();
    width->end(false);
    QTest::keyClick(width, Qt::Key_0);
    QCOMPARE(o.env.questions.asked().size(), 1);
    QCOMPARE(width->text(), QStringLiteral("10"));
    QCOMPARE(o.w->Layout.aClass[4].MinDia, 49.5);
}

void tst_frmParameters::resetQuestionCancelAsksOnce()
{
    Opened o;
    const int x0 = o.rightEdge(2);
    QTest::mousePress(o.panel(2), Qt::LeftButton, {}, o.at(2, x0));
    QTest::mouseMove(o.panel(2), o.at(2, x0 + 20));
    QTest::mouseRelease(o.panel(2), Qt::LeftButton, {}, o.at(2, x0 + 20));
    const double edge = o.w->Layout.aClass[2].MaxDia;
    QVERIFY(edge != 30.0);

    o.env.questions.answerMessage(Answer::Cancel);
    QLineEdit *count = o.box(QStringLiteral("txtNumofClasses"));
    count->setFocus();
    count->selectAll();
    QTest::keyClick(count, Qt::Key_5);
    QCOMPARE(o.env.questions.asked().size(), 1);
    QCOMPARE(count->text(), QStringLiteral("10"));
    QCOMPARE(o.w->Layout.aClass[2].MaxDia, edge);
    QCOMPARE(o.w->Layout.ClassCount(), qint16(10));
    QVERIFY(!o.w->bInChange);
    QCOMPARE(o.label(QStringLiteral("lblDbhError")), QString());
}

void tst_frmParameters::resetQuestionOKRebuilds()
{
    Opened o;
    QTest::mousePress(o.panel(5), Qt::LeftButton, {}, o.at(5, 1));
    QTest::mouseMove(o.panel(5), o.at(5, -20));
    QTest::mouseRelease(o.panel(5), Qt::LeftButton, {}, o.at(5, -20));
    QVERIFY(o.w->Layout.aClass[5].MinDia < 50.0);

    o.env.questions.answerMessage(Answer::OK);
    QLineEdit *count = o.box(QStringLiteral("txtNumofClasses"));
    count->setFocus();
    count->end(false);
    QTest::keyClick(count, Qt::Key_Backspace);   // "1": refused, after the question
    QCOMPARE(o.env.questions.asked().size(), 1);
    QCOMPARE(o.label(QStringLiteral("lblNumClassesError")), QStringLiteral("2 - 30"));
    QTest::keyClick(count, Qt::Key_2);           // "12": no question any more
    QCOMPARE(o.env.questions.asked().size(), 1);
    QCOMPARE(o.w->Layout.ClassCount(), qint16(12));
    QCOMPARE(o.w->Layout.aClass[5].MinDia, 50.0);
    QCOMPARE(o.panel(11)->text(), QStringLiteral("110+"));
}

void tst_frmParameters::pressOnNarrowPanelEdgeOpensEditor()
{
    Opened o;
    // 1 cm classes over 8000 twips from 0 to 10: 800 twips each; 0.5 cm makes 400, and a
    // 30-class layout of 0.5 cm 600 each. A class of 1 cm among 30 of 10 cm is narrow enough.
    Retype(o.box(QStringLiteral("txtNumofClasses")), QStringLiteral("30"));
    // Make class 3 narrow by dragging its right edge onto its left.
    QTest::mousePress(o.panel(3), Qt::LeftButton, {}, o.at(3, o.rightEdge(3)));
    QTest::mouseMove(o.panel(3), o.at(3, -200));
    QTest::mouseRelease(o.panel(3), Qt::LeftButton, {}, o.at(3, -200));
    QCOMPARE(o.w->Layout.aClass[3].MaxDia, 30.5);
    QVERIFY(o.panel(3)->Width() < ClassRuler::kNarrowPanel);
    QVERIFY(o.range()->isHidden());
    // An edge press on it opens the editor, and the drag stays on until the release.
    QTest::mousePress(o.panel(3), Qt::LeftButton, {}, o.at(3, 0));
    QVERIFY(o.range()->isVisible());
    QCOMPARE(o.range()->ClassNumber(), QStringLiteral("3"));
    QCOMPARE(o.rangeText(QStringLiteral("txtMax")), QStringLiteral("30.5"));
    QVERIFY(o.w->Ruler.bDragLeftEdge);
    QTest::mouseRelease(o.panel(3), Qt::LeftButton, {}, o.at(3, 0));
    QVERIFY(!o.w->Ruler.bDragLeftEdge);
}

void tst_frmParameters::longRulerScrolls()
{
    Opened o;
    auto *scroll = o.ctl<QScrollBar>(QStringLiteral("hsScrollDBH"));
    QVERIFY(!scroll->isEnabled());
    Retype(o.box(QStringLiteral("txtNumofClasses")), QStringLiteral("30"));
    // 30 classes: 18000 twips of ruler, wider than the view.
    QCOMPARE(o.w->Ruler.iDrawWidth, qint16(18000));
    QVERIFY(scroll->isEnabled());
    QCOMPARE(scroll->maximum(), int(18000 + 250 - o.w->RulerView()->ViewAreaWidth() + 400));
    scroll->setValue(1500);
    QCOMPARE(o.w->RulerView()->DrawArea()->x(), -100);
    // Back to ten classes: the ruler fits, and stands at its start again.
    Retype(o.box(QStringLiteral("txtNumofClasses")), QStringLiteral("10"));
    QVERIFY(!scroll->isEnabled());
    QCOMPARE(o.w->RulerView()->DrawArea()->x(), 0);
}

void tst_frmParameters::buttonsReportsAndHelp()
{
    Opened o;
    // "View Reports" asks for the title first; cancelling it compiles nothing.
    o.env.questions.answerReportText(false);
    QTest::mouseClick(o.ctl<QPushButton>(QStringLiteral("cmdPrintReport")), Qt::LeftButton);
    QCOMPARE(o.env.questions.pendingAnswers(), 0);
    QCOMPARE(o.env.questions.asked().last().title, o.w->This_RunId + QStringLiteral(": Stand Table"));
    QCOMPARE(o.ctl<QPushButton>(QStringLiteral("cmdPrintCharts"))->text(), QStringLiteral("View Charts"));
    QCOMPARE(o.ctl<QPushButton>(QStringLiteral("cmdPrintReport"))->text(), QStringLiteral("View Reports"));
    QTest::mouseClick(o.ctl<QPushButton>(QStringLiteral("cmdHelp")), Qt::LeftButton);
    QTest::mouseClick(Control<QPushButton>(o.range(), QStringLiteral("cmdHelp")), Qt::LeftButton);
    QCOMPARE(o.host.HelpTopics, (QList<int>{76, 2100}));
}

void tst_frmParameters::comingBackDrawsTheSampleAgain()
{
    Opened o;
    auto *density = o.ctl<Graph>(QStringLiteral("gphDensity"));
    o.w->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(o.w));
    // Its first activation follows the browser's own drawing: no second query.
    o.env.exec(QStringLiteral("INSERT INTO Model_Entries (Run_Id, Species_Code, Trees_per_ha, Current_Diameter, "
                              "Total_Volume, Cycle_Number, Standing_Harvested) VALUES ('R1', 3, 1000, 12, 1, 1, 'S')"));
    QCOMPARE(density->value(2, 2), 100.0);
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QCOMPARE(density->value(2, 2), 100.0);
    o.w->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(o.w));
    QCOMPARE(density->value(2, 2), 1100.0);
    QVERIFY(o.env.questions.messageTexts().isEmpty());
}

void tst_frmParameters::firstDrawingGivesEachClassItsRoom()
{
    RunDatabase env{RunDatabase::Db::None};
    env.openAsProgram();
    env.tm.settings.ClassesStart = 5;
    env.tm.settings.ClassesWidth = 2.5;
    env.tm.settings.NumClasses = 24;
    WindowHostStub host;
    QPointer<frmParameters> w = new frmParameters(env.tm, host);
    // One SetClasses at load: 24 classes of 600 twips, a ruler longer than the view.
    QCOMPARE(Control<QLineEdit>(w, QStringLiteral("txtNumofClasses"))->text(), QStringLiteral("24"));
    QCOMPARE(w->Ruler.iDrawWidth, qint16(24 * 600));
    QCOMPARE(w->Ruler.iTwipsPerCm, qint16(240));
    QCOMPARE(w->RulerView()->SSPanel2(0)->Width(), 600.0);
    QCOMPARE(w->RulerView()->SSPanel2(23)->text(), QStringLiteral("62.5+"));
    QVERIFY(Control<QScrollBar>(w, QStringLiteral("hsScrollDBH"))->isEnabled());
    delete w;
}

void tst_frmParameters::pointerTellsWhatAPressWouldDo()
{
    Opened o;
    auto hover = [](QWidget *target, int x) {
        QMouseEvent move(QEvent::MouseMove, QPointF(x, 5), target->mapToGlobal(QPointF(x, 5)), Qt::NoButton, Qt::NoButton,
                         Qt::NoModifier);
        QApplication::sendEvent(target, &move);
    };
    hover(o.panel(3), 2);
    QCOMPARE(o.host.MousePointer(), 9);
    QCOMPARE(QApplication::overrideCursor()->shape(), Qt::SizeHorCursor);
    hover(o.panel(3), o.panel(3)->width() / 2);
    QCOMPARE(o.host.MousePointer(), 0);
    QVERIFY(QApplication::overrideCursor() == nullptr);
    // The first class's left edge and the last class's right edge offer no drag.
    hover(o.panel(0), 1);
    QCOMPARE(o.host.MousePointer(), 0);
    hover(o.panel(9), o.panel(9)->width() - 1);
    QCOMPARE(o.host.MousePointer(), 0);
    hover(o.panel(9), 1);
    QCOMPARE(o.host.MousePointer(), 9);
    // Off the panels the arrows go.
    hover(o.ctl<QGroupBox>(QStringLiteral("SSPanel3")), 5);
    QCOMPARE(o.host.MousePointer(), 0);
    // The sample's query shows the hourglass while it runs.
    o.host.Pointers.clear();
    QTest::mouseClick(o.ctl<QPushButton>(QStringLiteral("cmdPlot")), Qt::LeftButton);
    QCOMPARE(o.host.Pointers, (QList<int>{11, 0}));
}

SENDREL_TEST_MAIN(tst_frmParameters)
#include "tst_frmParameters.moc"
