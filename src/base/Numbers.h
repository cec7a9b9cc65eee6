#pragma once

#include <QString>
#include <QtGlobal>

namespace sendrel {

// The number at the start of a text, 0 when there is none. Blanks, tabs and line feeds
// are skipped wherever they stand, also between digits; an exponent may start with E or D.
// No text ever fails here.
double ReadNumber(QStringView text);

// Round to the nearest integer, a half to the even neighbour.
double RoundHalfEven(double value);

// The conversions to 16- and 32-bit integers: rounded half to even, failing (Overflow)
// beyond the type's range.
qint16 ToInt16(double value);
qint32 ToInt32(double value);

// The next integer below or equal.
double IntegerPart(double value);

// Remainder as the integer Mod operator gives it: both sides rounded half to even first,
// the sign follows the dividend. Fails on a zero divisor.
qint64 IntegerMod(double dividend, double divisor);

// The shortest decimal text of a number, with a point and no blank ("12.5", "-3", "0.25").
QString DefaultText(double value);
// The print form: the default text with a blank in front unless the number is negative.
QString PrintForm(double value);

}  // namespace sendrel
