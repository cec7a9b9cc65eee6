#include "support/TestMain.h"
#include "domain/standstock/ClassRuler.h"

#include <QTest>

using namespace sendrel;

class TestClassRuler : public QObject {
    Q_OBJECT

private slots:
    void scaleOfAStartAtHalfCentimetre();
    void rulerLengthAlternates();
    void panelsAndBucketCaption();
    void ticks();
    void snapsDownToHalfCentimetre();
    void holdsHalfCentimetreFromTheNeighbour();
    void draggingAnEdge();
    void pressZones();
    void pointerOverEdges();
};

void TestClassRuler::scaleOfAStartAtHalfCentimetre()
{
    ClassLayout layout;
    QVERIFY(layout.SetClasses(u"12.5", u"2.5", u"10").passed());
    ClassRuler ruler;
    ruler.SetScale(layout);
    QCOMPARE(ruler.iDbhMin, qint16(12));
    QCOMPARE(ruler.iDbhMax, qint16(38));
    QCOMPARE(ruler.iDbhRange, qint16(26));
    QCOMPARE(ruler.iDrawWidth, qint16(8000));
    QCOMPARE(ruler.iTwipsPerCm, qint16(308));   // 8000 / 26 = 307.7
    // The first panel starts at the scale's origin, not where 12.5 would stand on it.
    const ClassRuler::Panel first = ruler.FirstPanel(layout);
    QCOMPARE(first.Left, 135.0);
    QCOMPARE(first.Width, 770.0);
    QCOMPARE(first.Caption, QStringLiteral("13.75"));
}

void TestClassRuler::rulerLengthAlternates()
{
    ClassLayout layout;
    QVERIFY(layout.SetClasses(u"0", u"5", u"30").passed());
    ClassRuler ruler;
    ruler.SetScale(layout);
    QCOMPARE(ruler.iDrawWidth, qint16(18000));
    QCOMPARE(ruler.DrawAreaWidth(), 18250.0);
    QCOMPARE(ruler.ScrollMax(8400), 10250.0);
    QCOMPARE(ruler.ScrollMax(20000), 0.0);
    ruler.SetScale(layout);
    QCOMPARE(ruler.iDrawWidth, qint16(8000));
    ruler.SetScale(layout);
    QCOMPARE(ruler.iDrawWidth, qint16(18000));
    QCOMPARE(ruler.iTwipsPerCm, qint16(120));
}

void TestClassRuler::panelsAndBucketCaption()
{
    ClassLayout layout;
    QVERIFY(layout.SetClasses(u"12.5", u"2.5", u"10").passed());
    ClassRuler ruler;
    ruler.SetScale(layout);
    ClassRuler::Panel p = ruler.DrawClass(layout, 1);
    QCOMPARE(p.Left, 905.0);   // (15 - 12.5) * 308 + 135
    QCOMPARE(p.Width, 770.0);
    QCOMPARE(p.Caption, QStringLiteral("16.25"));
    p = ruler.DrawClass(layout, 9);
    QCOMPARE(p.Caption, QStringLiteral("35+"));

    // The bucket's caption follows its MinDia, not a changed MaxDia.
    layout.aClass[9].MaxDia = 36.5;
    QCOMPARE(ruler.DrawClass(layout, 9).Caption, QStringLiteral("35+"));
    QCOMPARE(ruler.DrawClass(layout, 9).Width, 1.5 * 308);
}

void TestClassRuler::ticks()
{
    ClassLayout layout;
    QVERIFY(layout.SetClasses(u"12.5", u"2.5", u"10").passed());
    ClassRuler ruler;
    ruler.SetScale(layout);
    const auto ticks = ruler.Ticks();
    QCOMPARE(ticks[0].x, 0.0);
    QCOMPARE(ticks[0].Caption, QStringLiteral("12"));
    QCOMPARE(ticks[0].LabelLeft, 60.0);
    QCOMPARE(ticks[5].x, 3990.0);
    QCOMPARE(ticks[5].Caption, QStringLiteral("25"));
    QCOMPARE(ticks[3].Caption, QStringLiteral("19.8"));
    // The last tick stays 40 twips inside the ruler.
    QCOMPARE(ticks[10].x, 7960.0);
    QCOMPARE(ticks[10].Caption, QStringLiteral("38"));
}

void TestClassRuler::snapsDownToHalfCentimetre()
{
    QCOMPARE(ClassRuler::SnapDown(12.7), 12.5);
    QCOMPARE(ClassRuler::SnapDown(12.2), 12.0);
    QCOMPARE(ClassRuler::SnapDown(12.5), 12.5);
    QCOMPARE(ClassRuler::SnapDown(12.0), 12.0);
    QCOMPARE(ClassRuler::SnapDown(12.99), 12.5);
}

void TestClassRuler::holdsHalfCentimetreFromTheNeighbour()
{
    ClassLayout layout;
    QVERIFY(layout.SetClasses(u"10", u"5", u"3").passed());
    QCOMPARE(ClassRuler::HoldInside(layout, 0, 19.5), 19.5);
    QCOMPARE(ClassRuler::HoldInside(layout, 0, 21.0), 19.5);
    QCOMPARE(ClassRuler::HoldInside(layout, 0, 10.0), 10.5);
    QCOMPARE(ClassRuler::HoldInside(layout, 1, 30.0), 24.5);
}

void TestClassRuler::draggingAnEdge()
{
    ClassLayout layout;
    QVERIFY(layout.SetClasses(u"10", u"5", u"3").passed());
    ClassRuler ruler;
    ruler.SetScale(layout);
    QCOMPARE(ruler.iTwipsPerCm, qint16(533));   // 8000 / 15
    ClassResetGuard guard;

    // Press the left edge zone of the middle class.
    const ClassRuler::Panel middle = ruler.DrawClass(layout, 1);
    QCOMPARE(middle.Left, 2800.0);
    const ClassRuler::Press press = ruler.MousePress(guard, 1, 50, middle.Width);
    QCOMPARE(press.pointer, ClassRuler::kPointerWestEast);
    QVERIFY(!press.openEditor);
    QVERIFY(ruler.bDragLeftEdge);
    QVERIFY(guard.bClassesEdited);

    // Drag to 12.7 cm: the edge snaps down to 12.5.
    const double X = (12.7 - 10) * 533 + 135 - middle.Left;
    ClassRuler::Move move = ruler.MouseMove(layout, 1, X, middle.Left, middle.Width, 1, ClassRuler::kPointerWestEast);
    QCOMPARE(move.redraw, (QVector<int>{0, 1}));
    QCOMPARE(move.pointer, ClassRuler::kPointerWestEast);
    QCOMPARE(layout.aClass[0].MaxDia, 12.5);
    QCOMPARE(layout.aClass[0].MidPoint, 11.25);
    QCOMPARE(layout.aClass[1].MinDia, 12.5);
    QCOMPARE(layout.aClass[1].MidPoint, 16.25);

    // Far to the left: held 0.5 cm above the neighbour's lower edge.
    const ClassRuler::Panel moved = ruler.DrawClass(layout, 1);
    move = ruler.MouseMove(layout, 1, -5000, moved.Left, moved.Width, 1, ClassRuler::kPointerWestEast);
    QCOMPARE(layout.aClass[0].MaxDia, 10.5);
    QCOMPARE(layout.aClass[1].MinDia, 10.5);

    // Without the left button nothing moves.
    move = ruler.MouseMove(layout, 1, 3000, moved.Left, moved.Width, 0, ClassRuler::kPointerWestEast);
    QVERIFY(move.redraw.isEmpty());
    QCOMPARE(layout.aClass[1].MinDia, 10.5);

    QCOMPARE(ruler.MouseRelease(), ClassRuler::kPointerDefault);
    QVERIFY(!ruler.bDragLeftEdge);
    QVERIFY(!ruler.bDragRightEdge);

    // The right edge of the middle class, dragged past the last class: held at 24.5.
    const ClassRuler::Panel now = ruler.DrawClass(layout, 1);
    ruler.MousePress(guard, 1, now.Width - 20, now.Width);
    QVERIFY(ruler.bDragRightEdge);
    move = ruler.MouseMove(layout, 1, now.Width + 9000, now.Left, now.Width, 1, ClassRuler::kPointerWestEast);
    QCOMPARE(move.redraw, (QVector<int>{1, 2}));
    QCOMPARE(layout.aClass[1].MaxDia, 24.5);
    QCOMPARE(layout.aClass[2].MinDia, 24.5);
    QCOMPARE(layout.aClass[2].MidPoint, 24.75);
}

void TestClassRuler::pressZones()
{
    ClassLayout layout;
    QVERIFY(layout.SetClasses(u"10", u"5", u"3").passed());
    ClassRuler ruler;
    ClassResetGuard guard;

    // The middle opens the editor and starts no drag.
    ClassRuler::Press press = ruler.MousePress(guard, 1, 600, 2665);
    QVERIFY(press.openEditor);
    QCOMPARE(press.pointer, -1);
    QVERIFY(!ruler.bDragLeftEdge && !ruler.bDragRightEdge);
    QVERIFY(!guard.bClassesEdited);

    // The first class's left edge: nothing can move there, yet the layout counts as edited.
    press = ruler.MousePress(guard, 0, 20, 2665);
    QVERIFY(!press.openEditor);
    QVERIFY(guard.bClassesEdited);
    ruler.MouseRelease();

    // A narrow panel opens the editor from an edge too, and the drag stays on.
    guard.bClassesEdited = false;
    press = ruler.MousePress(guard, 2, 130, 140);
    QVERIFY(press.openEditor);
    QVERIFY(ruler.bDragRightEdge);
    QVERIFY(guard.bClassesEdited);
}

void TestClassRuler::pointerOverEdges()
{
    ClassLayout layout;
    QVERIFY(layout.SetClasses(u"10", u"5", u"3").passed());
    ClassRuler ruler;
    ruler.SetScale(layout);
    const double w = 2665;
    // The first class's left edge and the last class's right edge offer no drag.
    QCOMPARE(ruler.MouseMove(layout, 0, 50, 135, w, 0, 9).pointer, ClassRuler::kPointerDefault);
    QCOMPARE(ruler.MouseMove(layout, 2, w - 50, 5465, w, 0, 9).pointer, ClassRuler::kPointerDefault);
    QCOMPARE(ruler.MouseMove(layout, 1, 50, 2800, w, 0, 0).pointer, ClassRuler::kPointerWestEast);
    QCOMPARE(ruler.MouseMove(layout, 0, w - 50, 135, w, 0, 0).pointer, ClassRuler::kPointerWestEast);
    QCOMPARE(ruler.MouseMove(layout, 1, 1000, 2800, w, 0, 9).pointer, ClassRuler::kPointerDefault);
}

SENDREL_TEST_MAIN(TestClassRuler)
#include "tst_classruler.moc"
