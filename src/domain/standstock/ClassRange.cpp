#include "domain/standstock/ClassRange.h"

#include "base/Numbers.h"

namespace sendrel {

namespace {

bool onStep(double value, std::initializer_list<double> fractions)
{
    const double f = value - IntegerPart(value);
    for (double allowed : fractions) {
        if (f == allowed)
            return true;
    }
    return false;
}

// The class number of the editor's label; a number beyond 16 bits names no class.
int classNumberOf(QStringView text)
{
    const double r = RoundHalfEven(ReadNumber(text));
    return r >= -32768.0 && r <= 32767.0 ? static_cast<int>(r) : -1;
}

const QString kMinStep = QStringLiteral("Minimum must be a multiple of 0.5");
const QString kMaxStep = QStringLiteral("Maximum must be a multiple of 0.5");
const QString kCentreStep = QStringLiteral("Centre must be a multiple of 0.25");

}  // namespace

QString ValidateDbhClass(const ClassLayout &layout, qint16 iClassNum, double dMin, double dMax, double dCentre)
{
    const int n = layout.ClassCount();
    const int c = iClassNum;
    // A number that names no class in use has no neighbours to check against.
    if (c < 0 || c >= n)
        return QString();

    if (c != 0) {
        const double lowest = layout.aClass[c - 1].MinDia + 0.5;
        if (lowest > dMin)
            return QStringLiteral("Minimum must be ") + PrintForm(lowest) + QStringLiteral(" or larger.");
    } else if (dMin < layout.aClass[0].MinDia) {
        return QStringLiteral("Minimum must be ") + PrintForm(layout.aClass[0].MinDia) + QStringLiteral(" or larger.");
    }
    if (!onStep(dMin, {0.0, 0.5}))
        return kMinStep;
    if (!(dMax > dMin))
        return QStringLiteral("Maximum must be larger than minimum.");
    if (c != n - 1) {
        const double highest = layout.aClass[c + 1].MaxDia - 0.5;
        if (highest < dMax)
            return QStringLiteral("Maximum must be ") + PrintForm(highest) + QStringLiteral(" or smaller.");
    } else if (dMax > layout.aClass[n - 1].MaxDia) {
        return QStringLiteral("Maximum must be ") + PrintForm(layout.aClass[n - 1].MaxDia) + QStringLiteral(" or smaller.");
    }
    if (!onStep(dMax, {0.0, 0.5}))
        return kMaxStep;
    if (!onStep(dCentre, {0.0, 0.25, 0.5, 0.75}))
        return kCentreStep;
    return QString();
}

RangeBoxChange RangeBoxChanged(const ClassLayout &layout, RangeBox changed, QStringView lblClassNumber, QStringView txtMin,
                               QStringView txtMax, QStringView txtCentre)
{
    const int c = classNumberOf(lblClassNumber);
    const double dMin = ReadNumber(txtMin);
    const double dMax = ReadNumber(txtMax);
    const double dCentre = ReadNumber(txtCentre);

    RangeBoxChange change;
    change.fault = ValidateDbhClass(layout, static_cast<qint16>(qBound(-32768, c, 32767)), dMin, dMax, dCentre);
    if (changed == RangeBox::Centre) {
        if (!onStep(dCentre, {0.0, 0.25, 0.5, 0.75}))
            change.fault = kCentreStep;
        return change;
    }
    const double edge = changed == RangeBox::Min ? dMin : dMax;
    if (!onStep(edge, {0.0, 0.5}))
        change.fault = changed == RangeBox::Min ? kMinStep : kMaxStep;
    if (change.fault.isEmpty()) {
        change.writeCentre = true;
        change.centre = DefaultText((dMin + dMax) / 2);
    }
    change.updatePanels = true;
    return change;
}

QVector<int> UpdateDbhPanels(ClassLayout &layout, const QString &fault, QStringView lblClassNumber, QStringView txtMin, QStringView txtMax,
                             QStringView txtCentre)
{
    const int c = classNumberOf(lblClassNumber);
    const int n = layout.ClassCount();
    if (!fault.isEmpty() || c < 0 || c >= n)
        return {};
    const double dMin = ReadNumber(txtMin);
    const double dMax = ReadNumber(txtMax);
    const double dCentre = ReadNumber(txtCentre);

    auto centre = [](ClassType &k) { k.MidPoint = (k.MaxDia + k.MinDia) / 2; };
    ClassType &here = layout.aClass[c];
    if (c != 0) {
        ClassType &before = layout.aClass[c - 1];
        before.MaxDia = dMin;
        centre(before);
        here.MinDia = dMin;
        here.MaxDia = dMax;
        here.MidPoint = dCentre;
        if (c >= n - 1)
            return {c - 1, c};
        ClassType &after = layout.aClass[c + 1];
        after.MinDia = dMax;
        centre(after);
        return {c - 1, c, c + 1};
    }
    here.MinDia = dMin;
    here.MaxDia = dMax;
    here.MidPoint = dCentre;
    ClassType &after = layout.aClass[1];
    after.MinDia = dMax;
    centre(after);
    return {0, 1};
}

bool IsEditedClass(QStringView lblClassNumber, int iClass)
{
    return classNumberOf(lblClassNumber) == iClass;
}

}  // namespace sendrel
