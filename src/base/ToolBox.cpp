#include "base/ToolBox.h"

#include "base/Numbers.h"
#include "base/SendrelError.h"

namespace sendrel {

QString QuoteSQL(const QString &text)
{
    QString quoted;
    quoted.reserve(text.size() + 2);
    for (QChar c : text) {
        quoted.append(c);
        if (c == QLatin1Char('\''))
            quoted.append(c);
    }
    return quoted;
}

QString FormatNumber2(double value, qint16 decimals)
{
    double v;
    if (decimals == 2)
        v = value;
    else if (decimals == 1)
        v = IntegerPart(value * 10.0) / 10.0;
    else
        v = IntegerPart(value);

    QString text = PrintForm(v);
    if (decimals > 0) {
        qsizetype point = text.indexOf(QLatin1Char('.'));
        if (point < 0) {
            text.append(QLatin1Char('.'));
            point = text.size() - 1;
        }
        const qsizetype have = text.size() - point - 1;
        if (have > decimals) {
            throw SendrelError(ErrNo::InvalidCall, QStringLiteral("Sendrel"),
                               QStringLiteral("FormatNumber2: %1 has more than %2 decimals").arg(DefaultText(value)).arg(decimals));
        }
        text.append(QString(decimals - have, QLatin1Char('0')));
    }
    return text;
}

void NiceAxisScale(double &minimum, double &maximum, qint32 &divisions)
{
    const qint32 wished = divisions > 0 ? divisions : 1;
    const double span = maximum - minimum;

    // Steps 1, 2, 5 times a power of ten, from 1 upward.
    double step = 1.0;
    static const double factors[] = {1.0, 2.0, 5.0};
    for (double power = 1.0;; power *= 10.0) {
        bool found = false;
        for (double f : factors) {
            step = f * power;
            if (step * wished >= span) {
                found = true;
                break;
            }
        }
        if (found)
            break;
    }

    const double newMinimum = IntegerPart(minimum - static_cast<double>(IntegerMod(minimum, step)));

    const double m = RoundHalfEven(maximum + 0.5);
    const qint64 r = IntegerMod(m, step);
    const double newMaximum = r == 0 ? m : RoundHalfEven(step - static_cast<double>(r) + maximum + 0.5);

    minimum = newMinimum;
    maximum = newMaximum;
    const double d = IntegerPart((maximum - minimum) / step);
    divisions = d > 0 ? static_cast<qint32>(d) : 1;
}

qint16 SpeciesColourIndex(qint16 code)
{
    if (code < 15)
        return code;
    if (code <= 28)
        return static_cast<qint16>(code + 1);
    if (code <= 124)
        return static_cast<qint16>(code + 2);
    return 0;
}

}  // namespace sendrel
