#pragma once

#include "domain/standstock/ClassLayout.h"

#include <QString>
#include <QVector>

#include <array>

namespace sendrel {

// The arithmetic of the class ruler: scale, panel places, scale ticks, and the dragging of
// class edges in 0.5 cm steps. Positions are in twips, as the ruler's layout is stated; the
// window turns them into pixels. The window owns one ClassRuler and draws what it gives.
class ClassRuler {
public:
    // Mouse pointers of the frame.
    static constexpr int kPointerDefault = 0;
    static constexpr int kPointerWestEast = 9;
    // Width of a panel's edge zones, and the narrowest panel that can be dragged at an edge.
    static constexpr double kEdgeZone = 100;
    static constexpr double kNarrowPanel = 150;

    qint16 iDrawLeft = 135;  // left margin of the ruler
    qint16 iDrawWidth = 8025;  // length of the ruler
    qint16 iDbhMin = 0;  // diameter at the scale's left end
    qint16 iDbhMax = 0;  // diameter at the scale's right end
    qint16 iDbhRange = 0;
    qint16 iTwipsPerCm = 0;
    bool bDragLeftEdge = false;
    bool bDragRightEdge = false;

    // The scale after a layout has been built. The length alternates between 8000 and
    // 600 per class when that is longer, as the ruler always did; a class gets at least 600
    // twips at its first drawing.
    void SetScale(const ClassLayout &layout);

    double DrawAreaWidth() const { return iDrawWidth + 250.0; }
    // Maximum of the scroll bar for a view of that width; 0 means the bar is disabled.
    double ScrollMax(double viewAreaWidth) const;

    struct Panel {
        double Left = 0;
        double Width = 0;
        QString Caption;  // the midpoint; the bucket class reads as its MinDia and "+"
    };
    // DrawClass: the place and caption of one class's panel.
    Panel DrawClass(const ClassLayout &layout, int iClass) const;
    // The first panel as DrawClasses places it: always at the scale's origin.
    Panel FirstPanel(const ClassLayout &layout) const;

    struct Tick {
        double x = 0;  // from iDrawLeft; the tick line and the base line's end
        double LabelLeft = 0;
        QString Caption;
    };
    std::array<Tick, 11> Ticks() const;

    // An edge position under the mouse: X relative to a panel whose Left is panelLeft.
    double EdgeAt(const ClassLayout &layout, double panelLeft, double X) const;
    // Snapped down to a multiple of 0.5: 12.7 gives 12.5, 12.2 gives 12.
    static double SnapDown(double x);
    // Held so that class leftClass and the one after it keep at least 0.5 cm.
    static double HoldInside(const ClassLayout &layout, int leftClass, double x);
    // Puts the edge between leftClass and leftClass + 1 at x.
    static void MoveEdge(ClassLayout &layout, int leftClass, double x);

    struct Press {
        int pointer = kPointerDefault;  // -1: leave the pointer as it is
        bool openEditor = false;  // open the range editor for the pressed class
    };
    // A press on panel index at X (relative to the panel) of a panel of that width. A press
    // in an edge zone starts a drag and marks the layout as edited by hand.
    Press MousePress(ClassResetGuard &guard, int index, double X, double width);

    struct Move {
        int pointer = kPointerDefault;
        // Classes to draw again, in order, with bMouseMove set meanwhile; empty when no edge moved.
        QVector<int> redraw;
    };
    // A mouse move over (or captured by) panel index; button 1 is the left button.
    Move MouseMove(ClassLayout &layout, int index, double X, double panelLeft, double width, int button, int currentPointer);
    // The release ends any drag; gives the pointer.
    int MouseRelease();
};

}  // namespace sendrel
