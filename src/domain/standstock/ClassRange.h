#pragma once

#include "domain/standstock/ClassLayout.h"

#include <QString>
#include <QStringView>
#include <QVector>

namespace sendrel {

// The class range editor's checks and class arithmetic: frmRange gathers its boxes and shows
// what these give back.

// Checks a proposed class; the first fault found, or the empty text. Numbers in the messages
// are in print form ("Minimum must be  12.5 or larger."). Each neighbour keeps at least 0.5 cm,
// the first class's lower edge can only rise and the last class's upper edge only fall.
QString ValidateDbhClass(const ClassLayout &layout, qint16 iClassNum, double dMin, double dMax, double dCentre);

enum class RangeBox { Min, Max, Centre };

// What a change of one box of the editor leads to (the mouse-move and bInChange tests stay
// with the window, which owns those flags).
struct RangeBoxChange {
    QString fault;  // for lblDbhError; empty when the change passed
    bool writeCentre = false;  // write txtCentre (its own change event follows)
    QString centre;  // the mean of the edges, as a number's text without blanks
    bool updatePanels = false;  // a change of an edge: run UpdateDbhPanels next
};

// The change of txtMin, txtMax or txtCentre: reads the number at the start of each box (the
// class number rounded to 16 bits), validates, and for an edge proposes the new centre.
RangeBoxChange RangeBoxChanged(const ClassLayout &layout, RangeBox changed, QStringView lblClassNumber, QStringView txtMin,
                               QStringView txtMax, QStringView txtCentre);

// UpdateDbhPanels: takes the boxes into the class and its neighbours. Nothing happens while
// fault (what lblDbhError shows) is not empty or when the number names no class in use. Returns the classes
// whose panels are to be drawn again, in drawing order.
QVector<int> UpdateDbhPanels(ClassLayout &layout, const QString &fault, QStringView lblClassNumber, QStringView txtMin, QStringView txtMax,
                             QStringView txtCentre);

// Highlight of the class being edited on the ruler: RGB(30, 50, 150) for the class of
// lblClassNumber, black for the others ("-1" highlights none).
inline constexpr unsigned kEditedClassColour = 0x1E3296;  // 0xRRGGBB
bool IsEditedClass(QStringView lblClassNumber, int iClass);

}  // namespace sendrel
