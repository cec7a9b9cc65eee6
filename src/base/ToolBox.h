#pragma once

#include <QString>
#include <QtGlobal>

namespace sendrel {

// Doubles every single quote so that the text can stand inside a quoted SQL string.
QString QuoteSQL(const QString &text);

// A number cut (not rounded) to 0, 1 or 2 decimals, in print form with the decimals padded.
// FormatNumber2(12.345, 1) == " 12.3", FormatNumber2(7, 2) == " 7.00", FormatNumber2(-0.5, 0) == "-1".
QString FormatNumber2(double value, qint16 decimals);

// Widens [minimum, maximum] to round numbers for a chart axis and sets the number of divisions.
void NiceAxisScale(double &minimum, double &maximum, qint32 &divisions);

// Palette index of a chart series for a numeric species code: stable on every chart.
qint16 SpeciesColourIndex(qint16 code);

}  // namespace sendrel
