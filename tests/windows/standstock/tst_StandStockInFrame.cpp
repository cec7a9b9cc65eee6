// The stand and stock window as the desktop opens it: from the run browser, inside the frame,
// with the frame's pointer, the browser's count, the delete window's open-run check and the end
// of a start with a run.
#include "support/TestMain.h"
#include "support/GuiBench.h"
#include "support/GuiBench.h"
#include "support/SampleRuns.h"

#include "windows/import/frmDeleteRuns.h"
#include "graph/Graph.h"
#include "windows/standstock/ClassRulerView.h"
#include "windows/standstock/frmParameters.h"
#include "windows/standstock/frmRange.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>

using namespace sendrel;

namespace {

// Run "A" standing with two years, and "B" standing with one year and no trees.
frmMarquel *startWithRuns(GuiBench &b)
{
    b.openDatabase();
    b.addRun(QStringLiteral("A"), QStringLiteral("S"), QStringLiteral("Thinned"));
    b.addRun(QStringLiteral("B"), QStringLiteral("S"), QStringLiteral("Empty"));
    for (const auto &[run, cycle, year] : {std::tuple{"A", 1, 2000}, {"A", 2, 2010}, {"B", 1, 1990}})
        b.addHeader(QString::fromLatin1(run), QStringLiteral("S"), cycle, year);
    for (const auto &[species, dbh, tph] : {std::tuple{3, 12.0, 100}, {1, 25.0, 30}, {3, 42.0, 10}}) {
        b.exec(QStringLiteral("INSERT INTO Model_Entries (Run_Id, Species_Code, Trees_per_ha, Current_Diameter, Total_Volume, "
                                 "Cycle_Number, Standing_Harvested) VALUES ('A', %1, %2, %3, 0.5, 1, 'S')")
                      .arg(species)
                      .arg(tph)
                      .arg(dbh));
    }
    return b.start();
}

int rowOf(QListWidget *list, const QString &head)
{
    for (int i = 0; i < list->count(); ++i) {
        if (list->item(i)->text().startsWith(head + QLatin1Char('\t')))
            return i;
    }
    return -1;
}

frmParameters *openStandStock(GuiBench &b, frmMarquel *m, const QString &head)
{
    clickRow(m->lstRuns, 0);   // the first row comes selected: take it away
    clickRow(m->lstRuns, rowOf(m->lstRuns, head));
    clickBox(m->chkSS);
    QTest::mouseClick(m->cmdOK, Qt::LeftButton);
    for (QWidget *form : b.frame->ChildForms()) {
        if (auto *w = qobject_cast<frmParameters *>(form))
            return w;
    }
    return nullptr;
}

Graph *density(frmParameters *w)
{
    return w->findChild<Graph *>(QStringLiteral("gphDensity"));
}

}  // namespace

class tst_StandStockInFrame : public QObject {
    Q_OBJECT

private slots:
    void browserOpensTheWindowOfTheRun()
    {
        GuiBench b;
        frmMarquel *m = startWithRuns(b);
        frmParameters *w = openStandStock(b, m, QStringLiteral("A:Standing"));
        QVERIFY(w);
        QCOMPARE(w->windowTitle(), QStringLiteral("Stand & Stock Tables: A"));
        QCOMPARE(w->This_RunId, QStringLiteral("A"));
        QCOMPARE(w->This_SorH, QStringLiteral("S"));
        QCOMPARE(w->This_RunDesc, QStringLiteral("Thinned"));
        QVERIFY(b.frame->SubWindowOf(w)->isVisible());
        QCOMPARE(m->NumOpenWindows, qint16(1));
        QCOMPARE(b.frame->RightForm.data(), w);
        QCOMPARE(b.frame->SubWindowOf(w)->pos(), QPoint(b.frame->mdiArea()->viewport()->width() / 2, 0));
        QVERIFY(w->findChild<QRadioButton *>(QStringLiteral("optDensity"))->isChecked());
        QCOMPARE(w->findChild<QGroupBox *>(QStringLiteral("fraCycle"))->title(), QStringLiteral("Sample for year: 2000"));
        QCOMPARE(density(w)->ChartSeriesCount(), qint16(2));
        QCOMPARE(density(w)->value(1, 2), 100.0);
        QVERIFY(b.questions.messageTexts().isEmpty());
        QCOMPARE(b.frame->MousePointer(), 0);
        // The range editor is a child window of the frame too, hidden until a panel is pressed.
        QVERIFY(b.frame->SubWindowOf(w->RangeEditor()) != nullptr);
        QVERIFY(!b.frame->SubWindowOf(w->RangeEditor())->isVisible());

        // Closing it gives back the count and the place.
        b.frame->SubWindowOf(w)->close();
        QApplication::processEvents();
        QCOMPARE(m->NumOpenWindows, qint16(0));
        QVERIFY(b.frame->RightForm.isNull());
        QVERIFY(b.ended.isEmpty());
    }

    void runWithoutTreesShowsEmptySample()
    {
        GuiBench b;
        frmMarquel *m = startWithRuns(b);
        frmParameters *w = openStandStock(b, m, QStringLiteral("B:Standing"));
        QVERIFY(w);
        QCOMPARE(w->NextSpecies, qint16(0));
        QCOMPARE(density(w)->ChartSeriesCount(), qint16(1));
        QCOMPARE(density(w)->ChartPointCount(), qint16(10));
        QCOMPARE(density(w)->series()[0].legend, QString());
        QCOMPARE(density(w)->ChartYAxisMax(), density(w)->ChartYAxisMin());
        QVERIFY(b.questions.messageTexts().isEmpty());
    }

    void dragShowsArrowsOfTheFrameAndOpensEditorInFrame()
    {
        GuiBench b;
        frmMarquel *m = startWithRuns(b);
        frmParameters *w = openStandStock(b, m, QStringLiteral("A:Standing"));
        ClassPanel *p = w->RulerView()->SSPanel2(1);
        const QPoint edge(p->width() - 2, 5);
        QTest::mousePress(p, Qt::LeftButton, {}, edge);
        QCOMPARE(b.frame->MousePointer(), 9);
        QTest::mouseMove(p, edge + QPoint(15, 0));
        QVERIFY(w->Layout.aClass[1].MaxDia > 20.0);
        QTest::mouseRelease(p, Qt::LeftButton, {}, edge + QPoint(15, 0));
        QCOMPARE(b.frame->MousePointer(), 0);
        const QPoint middle(p->width() / 2, 5);
        QTest::mousePress(p, Qt::LeftButton, {}, middle);
        QTest::mouseRelease(p, Qt::LeftButton, {}, middle);
        QVERIFY(b.frame->SubWindowOf(w->RangeEditor())->isVisible());
        QCOMPARE(w->RangeEditor()->ClassNumber(), QStringLiteral("1"));
        // The editor's own close button only hides it.
        b.frame->SubWindowOf(w->RangeEditor())->close();
        QApplication::processEvents();
        QVERIFY(w->RangeEditor() != nullptr);
        QVERIFY(!b.frame->SubWindowOf(w->RangeEditor())->isVisible());
        QCOMPARE(w->RangeEditor()->ClassNumber(), QStringLiteral("-1"));
    }

    void activationDrawsTheSampleAgain()
    {
        GuiBench b;
        frmMarquel *m = startWithRuns(b);
        frmParameters *w = openStandStock(b, m, QStringLiteral("A:Standing"));
        QCOMPARE(density(w)->value(1, 2), 100.0);
        b.exec(QStringLiteral("INSERT INTO Model_Entries (Run_Id, Species_Code, Trees_per_ha, Current_Diameter, Total_Volume, "
                                 "Cycle_Number, Standing_Harvested) VALUES ('A', 3, 50, 15, 0.5, 1, 'S')"));
        b.frame->mdiArea()->setActiveSubWindow(b.frame->SubWindowOf(m));
        QCOMPARE(density(w)->value(1, 2), 100.0);
        b.frame->mdiArea()->setActiveSubWindow(b.frame->SubWindowOf(w));
        QCOMPARE(density(w)->value(1, 2), 150.0);
    }

    void runOpenHereCannotBeDeleted()
    {
        GuiBench b;
        frmMarquel *m = startWithRuns(b);
        QVERIFY(openStandStock(b, m, QStringLiteral("A:Standing")));
        frmDeleteRuns d(b.tm, *m, *b.frame);
        d.RefreshRunList();
        d.show();
        clickRow(d.lstRuns, rowOf(d.lstRuns, QStringLiteral("A:Standing")));
        QTest::mouseClick(d.cmdDelete, Qt::LeftButton);
        QCOMPARE(b.questions.messageTexts(), QStringList{QStringLiteral("Can't delete this Run: A:Standing while open.")});
        QCOMPARE(b.count(QStringLiteral("Model_Entries"), QStringLiteral("Run_Id = 'A'")), 3);
    }

    void startedWithRunClosingEndsProcess()
    {
        GuiBench b;
        b.tm.RunOnCommandLine = true;
        b.tm.CurrentRunId = QStringLiteral("A");
        frmMarquel *m = startWithRuns(b);
        frmParameters *w = openStandStock(b, m, QStringLiteral("A:Standing"));
        QVERIFY(w);
        // With a run the right-hand place stays empty.
        QVERIFY(b.frame->RightForm.isNull());
        QTest::mouseClick(sendrel::test::Control<QPushButton>(w, QStringLiteral("cmdOK")), Qt::LeftButton);
        QApplication::processEvents();
        QCOMPARE(b.ended, QList<int>{0});
        QVERIFY(!b.tm.DBEngine.IsOpen());
        b.openDatabase();   // the bench's end closes it again
    }
};

SENDREL_TEST_MAIN(tst_StandStockInFrame)
#include "tst_StandStockInFrame.moc"
