#include "domain/standstock/ClassLayout.h"

#include "base/Numbers.h"
#include "base/UserQuestions.h"

#include <cmath>

namespace sendrel {

namespace {

double fractionOf(double value)
{
    return value - IntegerPart(value);
}

bool onHalfStep(double value)
{
    const double f = fractionOf(value);
    return f == 0.0 || f == 0.5;
}

// The count as the box's number rounded to a 16-bit integer; a number beyond 16 bits cannot
// be a count at all and is held at the nearest end, which the range test refuses.
qint16 countFrom(double number)
{
    const double r = RoundHalfEven(number);
    if (r > 32767.0)
        return 32767;
    if (r < -32768.0)
        return -32768;
    return static_cast<qint16>(r);
}

}  // namespace

QString ClassEntryCheck::describe() const
{
    if (passed())
        return QString();
    QString text = fault;
    if (!startFault.isEmpty())
        text += QStringLiteral("\nStarting: ") + startFault;
    if (!widthFault.isEmpty())
        text += QStringLiteral("\nClass width: ") + widthFault;
    if (!countFault.isEmpty())
        text += QStringLiteral("\n# 0f Classes: ") + countFault;
    return text;
}

ClassEntryCheck CheckClassEntry(double dClassStart, double dClassWidth, double numberOfClasses)
{
    ClassEntryCheck check;
    const qint16 count = countFrom(numberOfClasses);

    bool inRange = true;
    if (!(dClassStart >= 0 && dClassStart <= 1000)) {
        check.startFault = kClassStartRange;
        inRange = false;
    }
    if (!(dClassWidth >= 0.25 && dClassWidth <= 1000)) {
        check.widthFault = kClassWidthRange;
        inRange = false;
    }
    if (!(count >= 2 && count <= ClassLayout::kMaxClasses)) {
        check.countFault = kNumClassesRange;
        inRange = false;
    }
    if (!inRange) {
        check.fault = kDbhRangeFault;
        return check;
    }

    bool onStep = true;
    if (!onHalfStep(dClassStart)) {
        check.startFault = kHalfStep;
        onStep = false;
    }
    if (fractionOf(numberOfClasses) != 0.0) {
        check.countFault = kWholeStep;
        onStep = false;
    }
    if (!onHalfStep(dClassWidth)) {
        check.widthFault = kHalfStep;
        onStep = false;
    }
    if (!onStep)
        check.fault = kDbhMultipleFault;
    return check;
}

ClassEntryCheck ClassLayout::SetClasses(QStringView txtClassStart, QStringView txtClassWidth, QStringView txtNumofClasses)
{
    const double number = ReadNumber(txtNumofClasses);
    iNumofClasses = countFrom(number);
    dClassStart = ReadNumber(txtClassStart);
    dClassWidth = ReadNumber(txtClassWidth);

    const ClassEntryCheck check = CheckClassEntry(dClassStart, dClassWidth, number);
    if (check.passed())
        BuildClasses();
    return check;
}

void ClassLayout::BuildClasses()
{
    const int n = qBound(0, static_cast<int>(iNumofClasses), kMaxClasses);
    for (int i = 0; i < n; ++i) {
        ClassType &c = aClass[i];
        c.MinDia = i == 0 ? dClassStart : aClass[i - 1].MaxDia;
        c.MaxDia = c.MinDia + dClassWidth;
        c.MidPoint = (c.MaxDia + c.MinDia) / 2;
    }
    m_classCount = static_cast<qint16>(n);
}

ClassBoxTexts ClassLayout::BoxTexts() const
{
    return {DefaultText(dClassStart), DefaultText(dClassWidth), DefaultText(iNumofClasses)};
}

ClassResetGuard::Action ClassResetGuard::BoxChanged(UserQuestions &questions)
{
    if (!bClassesEdited)
        return Action::Rebuild;
    if (bInChange) {
        bInChange = false;
        return Action::Ignore;
    }
    const Answer answer = questions.message({QStringLiteral("Reset DBH Classes?"), QStringLiteral("Reset all DBH classes?"),
                                             MsgIcon::Question, MsgButtons::OKCancel, Answer::OK});
    if (answer != Answer::OK) {
        bInChange = true;
        return Action::RestoreBoxes;
    }
    bClassesEdited = false;
    return Action::Rebuild;
}

}  // namespace sendrel
