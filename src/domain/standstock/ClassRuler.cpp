#include "domain/standstock/ClassRuler.h"

#include "base/Numbers.h"

namespace sendrel {

void ClassRuler::SetScale(const ClassLayout &layout)
{
    const int n = layout.ClassCount();
    iDbhMin = static_cast<qint16>(IntegerPart(layout.dClassStart));
    iDbhMax = static_cast<qint16>(IntegerPart(n * layout.dClassWidth + layout.dClassStart + 0.5));
    iDbhRange = static_cast<qint16>(iDbhMax - iDbhMin);
    if (iDrawWidth < n * 600)
        iDrawWidth = static_cast<qint16>(n * 600);
    else
        iDrawWidth = 8000;
    // A layout always spans at least 1 cm; the guard only keeps a stray call from dividing by 0.
    iTwipsPerCm = iDbhRange > 0 ? ToInt16(static_cast<double>(iDrawWidth) / iDbhRange) : 0;
}

double ClassRuler::ScrollMax(double viewAreaWidth) const
{
    return viewAreaWidth < DrawAreaWidth() ? DrawAreaWidth() - viewAreaWidth + 400 : 0;
}

ClassRuler::Panel ClassRuler::DrawClass(const ClassLayout &layout, int iClass) const
{
    const ClassType &c = layout.aClass[iClass];
    Panel p;
    p.Caption = iClass >= layout.BucketClass() ? DefaultText(c.MinDia) + QLatin1Char('+') : DefaultText(c.MidPoint);
    p.Left = (c.MinDia - layout.dClassStart) * iTwipsPerCm + iDrawLeft;
    p.Width = (c.MaxDia - c.MinDia) * iTwipsPerCm;
    return p;
}

ClassRuler::Panel ClassRuler::FirstPanel(const ClassLayout &layout) const
{
    const ClassType &c = layout.aClass[0];
    return {static_cast<double>(iDrawLeft), (c.MaxDia - c.MinDia) * iTwipsPerCm, DefaultText(c.MidPoint)};
}

std::array<ClassRuler::Tick, 11> ClassRuler::Ticks() const
{
    std::array<Tick, 11> ticks;
    for (int i = 0; i <= 10; ++i) {
        // Four twips less per step keep the last tick inside the ruler.
        const double x = ((iDrawWidth - 4.0 * i) / 10.0) * i;
        ticks[i].x = x;
        ticks[i].LabelLeft = iDrawLeft + x - 75;
        ticks[i].Caption = DefaultText(iDbhRange * i / 10.0 + iDbhMin);
    }
    return ticks;
}

double ClassRuler::EdgeAt(const ClassLayout &layout, double panelLeft, double X) const
{
    return (panelLeft + X - iDrawLeft) / iTwipsPerCm + layout.dClassStart;
}

double ClassRuler::SnapDown(double x)
{
    const double whole = IntegerPart(x);
    return IntegerPart(x + 0.5) > whole ? whole + 0.5 : whole;
}

double ClassRuler::HoldInside(const ClassLayout &layout, int leftClass, double x)
{
    const double lowest = layout.aClass[leftClass].MinDia + 0.5;
    const double highest = layout.aClass[leftClass + 1].MaxDia - 0.5;
    if (lowest > x)
        return lowest;
    if (highest < x)
        return highest;
    return x;
}

void ClassRuler::MoveEdge(ClassLayout &layout, int leftClass, double x)
{
    ClassType &l = layout.aClass[leftClass];
    ClassType &r = layout.aClass[leftClass + 1];
    l.MaxDia = x;
    l.MidPoint = (l.MaxDia + l.MinDia) / 2;
    r.MinDia = x;
    r.MidPoint = (r.MaxDia + r.MinDia) / 2;
}

ClassRuler::Press ClassRuler::MousePress(ClassResetGuard &guard, int index, double X, double width)
{
    Q_UNUSED(index)
    Press press;
    if (X < kEdgeZone || X > width - kEdgeZone) {
        if (X < kEdgeZone)
            bDragLeftEdge = true;
        else
            bDragRightEdge = true;
        guard.bClassesEdited = true;
        press.pointer = kPointerWestEast;
        // Too narrow a panel has no middle: an edge press opens the editor too.
        press.openEditor = width < kNarrowPanel;
        return press;
    }
    bDragLeftEdge = false;
    bDragRightEdge = false;
    press.pointer = -1;
    press.openEditor = true;
    return press;
}

ClassRuler::Move ClassRuler::MouseMove(ClassLayout &layout, int index, double X, double panelLeft, double width, int button,
                                       int currentPointer)
{
    const int n = layout.ClassCount();
    Move move;
    move.pointer = currentPointer;
    if (index >= 1 && X < kEdgeZone)
        move.pointer = kPointerWestEast;
    else if (X > width - kEdgeZone && index < n - 1)
        move.pointer = kPointerWestEast;
    else if (!bDragLeftEdge && !bDragRightEdge)
        move.pointer = kPointerDefault;

    auto drag = [&](int leftClass) {
        const double x = HoldInside(layout, leftClass, SnapDown(EdgeAt(layout, panelLeft, X)));
        MoveEdge(layout, leftClass, x);
    };
    if (index >= 1 && bDragLeftEdge) {
        move.pointer = kPointerWestEast;
        if (button == 1) {
            drag(index - 1);
            move.redraw = {index - 1, index};
        }
        return move;
    }
    if (index < n - 1 && bDragRightEdge) {
        move.pointer = kPointerWestEast;
        if (button == 1) {
            drag(index);
            move.redraw = {index, index + 1};
        }
    }
    return move;
}

int ClassRuler::MouseRelease()
{
    bDragLeftEdge = false;
    bDragRightEdge = false;
    return kPointerDefault;
}

}  // namespace sendrel
