#include "base/Numbers.h"

#include "base/SendrelError.h"

#include <cmath>
#include <limits>

namespace sendrel {

namespace {

bool isSkipped(QChar c)
{
    return c == QLatin1Char(' ') || c == QLatin1Char('\t') || c == QLatin1Char('\n');
}

}  // namespace

double ReadNumber(QStringView text)
{
    // Gather the characters that could make up a number, skipping blanks wherever they are.
    QString cleaned;
    cleaned.reserve(text.size());
    for (QChar c : text) {
        if (!isSkipped(c))
            cleaned.append(c);
    }

    qsizetype i = 0;
    const qsizetype n = cleaned.size();
    QString number;
    if (i < n && (cleaned[i] == QLatin1Char('+') || cleaned[i] == QLatin1Char('-')))
        number.append(cleaned[i++]);
    bool digits = false;
    while (i < n && cleaned[i].isDigit() && cleaned[i].unicode() < 128) {
        number.append(cleaned[i++]);
        digits = true;
    }
    if (i < n && cleaned[i] == QLatin1Char('.')) {
        number.append(cleaned[i++]);
        while (i < n && cleaned[i].isDigit() && cleaned[i].unicode() < 128) {
            number.append(cleaned[i++]);
            digits = true;
        }
    }
    if (!digits)
        return 0.0;
    if (i < n) {
        const QChar e = cleaned[i].toUpper();
        if (e == QLatin1Char('E') || e == QLatin1Char('D')) {
            qsizetype j = i + 1;
            QString exponent = QStringLiteral("e");
            if (j < n && (cleaned[j] == QLatin1Char('+') || cleaned[j] == QLatin1Char('-')))
                exponent.append(cleaned[j++]);
            bool expDigits = false;
            while (j < n && cleaned[j].isDigit() && cleaned[j].unicode() < 128) {
                exponent.append(cleaned[j++]);
                expDigits = true;
            }
            if (expDigits)
                number.append(exponent);
        }
    }
    bool ok = false;
    const double value = number.toDouble(&ok);
    if (!ok || !std::isfinite(value))
        return 0.0;
    return value;
}

double RoundHalfEven(double value)
{
    // nearbyint follows the default rounding mode, which is to nearest, ties to even.
    return std::nearbyint(value);
}

qint16 ToInt16(double value)
{
    const double r = RoundHalfEven(value);
    if (!(r >= -32768.0 && r <= 32767.0))
        throw SendrelError(ErrNo::Overflow, QStringLiteral("Sendrel"), QStringLiteral("Overflow"));
    return static_cast<qint16>(r);
}

qint32 ToInt32(double value)
{
    const double r = RoundHalfEven(value);
    if (!(r >= -2147483648.0 && r <= 2147483647.0))
        throw SendrelError(ErrNo::Overflow, QStringLiteral("Sendrel"), QStringLiteral("Overflow"));
    return static_cast<qint32>(r);
}

double IntegerPart(double value)
{
    return std::floor(value);
}

qint64 IntegerMod(double dividend, double divisor)
{
    const qint64 a = static_cast<qint64>(RoundHalfEven(dividend));
    const qint64 b = static_cast<qint64>(RoundHalfEven(divisor));
    if (b == 0)
        throw SendrelError(ErrNo::DivisionByZero, QStringLiteral("Sendrel"), QStringLiteral("Division by zero"));
    return a % b;
}

QString DefaultText(double value)
{
    if (value == 0.0)
        return QStringLiteral("0");
    // Fifteen significant digits, as the original's number-to-text did; no trailing zeros.
    return QString::number(value, 'g', 15);
}

QString PrintForm(double value)
{
    const QString text = DefaultText(value);
    return value < 0.0 ? text : QLatin1Char(' ') + text;
}

}  // namespace sendrel
