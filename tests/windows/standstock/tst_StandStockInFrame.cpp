// The stand and stock window as the desktop opens it: from the run browser, inside the frame,
// with the frame's pointer and places and the browser's count.
#include "support/TestMain.h"
#include "support/GuiBench.h"

#include "graph/Graph.h"
#include "windows/standstock/ClassRulerView.h"
#include "windows/standstock/frmParameters.h"
#include "windows/standstock/frmRange.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QMdiArea>
#include <QPushButton>
#include <QRadioButton>

using namespace sendrel;

namespace {

// Run "A" standing with two years and trees in the first, opened from the browser.
frmParameters *openStandStock(GuiBench &b)
{
    b.openDatabase();
    b.addRun(QStringLiteral("A"), QStringLiteral("S"), QStringLiteral("Thinned"));
    b.addHeader(QStringLiteral("A"), QStringLiteral("S"), 1, 2000);
    b.addHeader(QStringLiteral("A"), QStringLiteral("S"), 2, 2010);
    b.addTree(QStringLiteral("A"), QStringLiteral("S"), 1, 3, 12.0, 100, 0.5);
    b.addTree(QStringLiteral("A"), QStringLiteral("S"), 1, 1, 25.0, 30, 0.5);
    frmMarquel *m = b.start();
    clickBox(m->chkSS);
    QTest::mouseClick(m->cmdOK, Qt::LeftButton);
    return reportWindows(*b.frame).isEmpty() ? nullptr : qobject_cast<frmParameters *>(reportWindows(*b.frame).first());
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
        frmParameters *w = openStandStock(b);
        QVERIFY(w);
        QVERIFY(b.frame->SubWindowOf(w)->isVisible());
        QCOMPARE(b.frame->Marquel->NumOpenWindows, qint16(1));
        QCOMPARE(b.frame->RightForm().data(), w);
        QVERIFY(w->findChild<QRadioButton *>(QStringLiteral("optDensity"))->isChecked());
        QCOMPARE(w->findChild<QGroupBox *>(QStringLiteral("fraCycle"))->title(), QStringLiteral("Sample for year: 2000"));
        QCOMPARE(density(w)->value(1, 2), 100.0);
        QVERIFY(b.questions.messageTexts().isEmpty());
        QCOMPARE(b.frame->MousePointer(), 0);
        // The range editor is a child window of the frame too, hidden until a panel is pressed.
        QVERIFY(!b.frame->SubWindowOf(w->RangeEditor())->isVisible());

        b.frame->SubWindowOf(w)->close();
        QApplication::processEvents();
        QCOMPARE(b.frame->Marquel->NumOpenWindows, qint16(0));
        QVERIFY(b.frame->RightForm().isNull());
        QVERIFY(b.ended.isEmpty());
    }

    // A drag shows the arrows of the frame; the editor opens in the frame, and its close box only hides it.
    void dragAndEditorInTheFrame()
    {
        GuiBench b;
        frmParameters *w = openStandStock(b);
        ClassPanel *p = w->RulerView()->SSPanel2(1);
        const QPoint edge(p->width() - 2, 5);
        QTest::mousePress(p, Qt::LeftButton, {}, edge);
        QCOMPARE(b.frame->MousePointer(), 9);
        QTest::mouseMove(p, edge + QPoint(15, 0));
        QVERIFY(w->Layout.aClass[1].MaxDia > 20.0);
        QTest::mouseRelease(p, Qt::LeftButton, {}, edge + QPoint(15, 0));
        QCOMPARE(b.frame->MousePointer(), 0);

        QTest::mouseClick(p, Qt::LeftButton, {}, QPoint(p->width() / 2, 5));
        QMdiSubWindow *editor = b.frame->SubWindowOf(w->RangeEditor());
        QVERIFY(editor->isVisible());
        editor->close();
        QApplication::processEvents();
        QVERIFY(w->RangeEditor() != nullptr);
        QVERIFY(!editor->isVisible());
        QCOMPARE(w->RangeEditor()->ClassNumber(), QStringLiteral("-1"));
    }

    // Coming back to the window in the frame draws the sample again.
    void activationDrawsTheSampleAgain()
    {
        GuiBench b;
        frmParameters *w = openStandStock(b);
        b.addTree(QStringLiteral("A"), QStringLiteral("S"), 1, 3, 15.0, 50, 0.5);
        b.frame->mdiArea()->setActiveSubWindow(b.frame->SubWindowOf(b.frame->Marquel));
        QCOMPARE(density(w)->value(1, 2), 100.0);
        b.frame->mdiArea()->setActiveSubWindow(b.frame->SubWindowOf(w));
        QCOMPARE(density(w)->value(1, 2), 150.0);
    }
};

SENDREL_TEST_MAIN(tst_StandStockInFrame)
#include "tst_StandStockInFrame.moc"
