#pragma once

#include "domain/standstock/ClassTypes.h"

#include <QString>
#include <QStringView>
#include <QtGlobal>

#include <array>

namespace sendrel {

class UserQuestions;

// Texts of the class boxes' fault labels.
inline const QString kClassStartRange = QStringLiteral("0 - 1000");
inline const QString kClassWidthRange = QStringLiteral("0.25 - 1000");
inline const QString kNumClassesRange = QStringLiteral("2 - 30");
inline const QString kHalfStep = QStringLiteral("0.5");
inline const QString kWholeStep = QStringLiteral("1.0");
inline const QString kDbhRangeFault = QStringLiteral("Invalid.       Valid range is:");
inline const QString kDbhMultipleFault = QStringLiteral("        Must be a multiple of:");

// What the four labels beside the class boxes show after an entry; all empty when it passes.
// fault is the heading (lblDbhError), the others the range or step of each box at fault
// (lblClassStartError, lblClassWidthError, lblNumClassesError).
struct ClassEntryCheck {
    QString startFault;
    QString widthFault;
    QString countFault;
    QString fault;

    bool passed() const { return fault.isEmpty(); }
    // The faults as lines for a message, the texts as the window shows them: the heading, then
    // "Starting: ", "Class width: ", "# 0f Classes: " with each label at fault. Empty when it passed.
    QString describe() const;
};

// Checks start, width and count as read from the boxes: first the range of all three, and
// only when all are in range their steps, so that a range fault hides a step fault.
// numberOfClasses is the unrounded number read; its range is tested after rounding.
ClassEntryCheck CheckClassEntry(double dClassStart, double dClassWidth, double numberOfClasses);

// The three box texts of a layout, as the window writes them back.
struct ClassBoxTexts {
    QString start;  // txtClassStart
    QString width;  // txtClassWidth
    QString count;  // txtNumofClasses
};

// The diameter classes of one stand and stock window. Slots 0 to ClassCount() - 1 are in use.
class ClassLayout {
public:
    static constexpr int kSlots = 33;
    static constexpr int kMaxClasses = 30;

    std::array<ClassType, kSlots> aClass{};
    qint16 iNumofClasses = 0;  // as last entered, also when that entry was refused
    double dClassStart = 0;  // as last entered
    double dClassWidth = 0;  // as last entered

    // Classes in use: the count of the last entry that passed (0 before any). Between a
    // refused entry and the next good one iNumofClasses holds the refused number while the
    // classes stay those of the last good entry; everything that walks the classes (the
    // aggregation, the charts, the ruler) uses this count, so it always matches aClass.
    qint16 ClassCount() const { return m_classCount; }
    // The last class in use, which holds every tree from its MinDia up.
    int BucketClass() const { return m_classCount - 1; }

    // The box change of the class entry, after the reset question: reads the three texts
    // (the number at the start of each, 0 if none), keeps the numbers, checks them and, when
    // they pass, rebuilds all classes. Returns the four label texts.
    ClassEntryCheck SetClasses(QStringView txtClassStart, QStringView txtClassWidth, QStringView txtNumofClasses);

    // Builds iNumofClasses classes of width dClassWidth from dClassStart upward, without gap;
    // slots above the last keep their old values. Needs an entry that passed CheckClassEntry.
    void BuildClasses();

    ClassBoxTexts BoxTexts() const;

private:
    qint16 m_classCount = 0;
};

// The question before a box change replaces a layout dragged on the ruler. The window owns one
// and calls BoxChanged at every change of a class box, before ClassLayout::SetClasses.
class ClassResetGuard {
public:
    bool bClassesEdited = false;  // an edge zone of the ruler was pressed
    bool bInChange = false;  // the boxes are being set back: the next change is to be ignored

    enum class Action {
        Rebuild,  // go on with ClassLayout::SetClasses
        Ignore,  // the change that the setting back caused: nothing to do
        RestoreBoxes,  // the user kept the dragged layout: write ClassLayout::BoxTexts() back
    };
    // Clear the four labels in any case, then act as told. For RestoreBoxes bInChange is now
    // set, so exactly one change event must follow the writing back (write only the box that
    // differs); that event comes back here as Ignore.
    Action BoxChanged(UserQuestions &questions);
};

}  // namespace sendrel
