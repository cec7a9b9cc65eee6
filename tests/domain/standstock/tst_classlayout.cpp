#include "support/TestMain.h"
#include "support/ScriptedQuestions.h"
#include "domain/standstock/ClassLayout.h"

#include <QTest>

using namespace sendrel;

class TestClassLayout : public QObject {
    Q_OBJECT

private slots:
    void entryChecks_data();
    void entryChecks();
    void buildsClassesWithoutGap();
    void refusedEntryKeepsTheClasses();
    void faultsAsMessage();
    void resetQuestionCancelKeepsDraggedLayout();
    void resetQuestionOkRebuilds();
    void noQuestionWithoutDrag();
};

void TestClassLayout::entryChecks_data()
{
    QTest::addColumn<QString>("start");
    QTest::addColumn<QString>("width");
    QTest::addColumn<QString>("count");
    QTest::addColumn<QString>("startError");
    QTest::addColumn<QString>("widthError");
    QTest::addColumn<QString>("countError");
    QTest::addColumn<QString>("dbhError");

    const QString none;
    const QString range = QStringLiteral("Invalid.       Valid range is:");
    const QString step = QStringLiteral("        Must be a multiple of:");
    QTest::newRow("12.5/2.5/10 passes") << "12.5" << "2.5" << "10" << none << none << none << none;
    QTest::newRow("largest layout passes") << "1000" << "1000" << "30" << none << none << none << none;
    QTest::newRow("start 0, width 0.5, 2 classes passes") << "0" << "0.5" << "2" << none << none << none << none;
    QTest::newRow("start 12.25") << "12.25" << "2.5" << "10" << "0.5" << none << none << step;
    QTest::newRow("width 0.25 in range, not a step") << "0" << "0.25" << "10" << none << "0.5" << none << step;
    QTest::newRow("count 1") << "0" << "10" << "1" << none << none << "2 - 30" << range;
    QTest::newRow("count 31") << "0" << "10" << "31" << none << none << "2 - 30" << range;
    QTest::newRow("count 7.5") << "0" << "10" << "7.5" << none << none << "1.0" << step;
    QTest::newRow("count 1.6 rounds into range, no whole number") << "0" << "10" << "1.6" << none << none << "1.0" << step;
    QTest::newRow("range faults hide step faults") << "2000" << "0.3" << "10" << "0 - 1000" << none << none << range;
    QTest::newRow("negative start") << "-0.5" << "10" << "10" << "0 - 1000" << none << none << range;
    QTest::newRow("width above 1000") << "0" << "1000.5" << "10" << none << "0.25 - 1000" << none << range;
    QTest::newRow("all three out of range") << "1001" << "0" << "0" << "0 - 1000" << "0.25 - 1000" << "2 - 30" << range;
    QTest::newRow("text that is no number counts as 0") << "abc" << "" << "" << none << "0.25 - 1000" << "2 - 30" << range;
    QTest::newRow("count beyond 16 bits") << "0" << "10" << "99999" << none << "" << "2 - 30" << range;
    QTest::newRow("two step faults at once") << "0.3" << "2.7" << "10" << "0.5" << "0.5" << none << step;
    QTest::newRow("number at the start of the text") << "10cm" << "5 " << "3x" << none << none << none << none;
}

void TestClassLayout::entryChecks()
{
    QFETCH(QString, start);
    QFETCH(QString, width);
    QFETCH(QString, count);
    QFETCH(QString, startError);
    QFETCH(QString, widthError);
    QFETCH(QString, countError);
    QFETCH(QString, dbhError);
    ClassLayout layout;
    const ClassEntryCheck check = layout.SetClasses(start, width, count);
    QCOMPARE(check.startFault, startError);
    QCOMPARE(check.widthFault, widthError);
    QCOMPARE(check.countFault, countError);
    QCOMPARE(check.fault, dbhError);
    QCOMPARE(check.passed(), check.fault.isEmpty());
    QCOMPARE(layout.ClassCount() > 0, check.passed());
}

void TestClassLayout::buildsClassesWithoutGap()
{
    ClassLayout layout;
    QVERIFY(layout.SetClasses(u"10", u"5", u"3").passed());
    QCOMPARE(layout.ClassCount(), qint16(3));
    QCOMPARE(layout.BucketClass(), 2);
    const double expected[3][3] = {{10, 15, 12.5}, {15, 20, 17.5}, {20, 25, 22.5}};
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(layout.aClass[i].MinDia, expected[i][0]);
        QCOMPARE(layout.aClass[i].MaxDia, expected[i][1]);
        QCOMPARE(layout.aClass[i].MidPoint, expected[i][2]);
    }

    QVERIFY(layout.SetClasses(u"12.5", u"2.5", u"30").passed());
    for (int i = 0; i + 1 < 30; ++i)
        QCOMPARE(layout.aClass[i].MaxDia, layout.aClass[i + 1].MinDia);
    QCOMPARE(layout.aClass[29].MaxDia, 87.5);

    // Fewer classes: the slots above the last keep their old values.
    QVERIFY(layout.SetClasses(u"0", u"10", u"2").passed());
    QCOMPARE(layout.aClass[1].MaxDia, 20.0);
    QCOMPARE(layout.aClass[2].MinDia, 17.5);
    QCOMPARE(layout.aClass[29].MaxDia, 87.5);
}

void TestClassLayout::refusedEntryKeepsTheClasses()
{
    ClassLayout layout;
    QVERIFY(layout.SetClasses(u"10", u"5", u"3").passed());
    // Emptying the count on the way to a new number: the fault shows, the classes stay.
    const ClassEntryCheck check = layout.SetClasses(u"10", u"5", u"");
    QCOMPARE(check.countFault, QStringLiteral("2 - 30"));
    QCOMPARE(layout.iNumofClasses, qint16(0));
    QCOMPARE(layout.ClassCount(), qint16(3));
    QCOMPARE(layout.aClass[2].MinDia, 20.0);

    QVERIFY(!layout.SetClasses(u"12.25", u"5", u"4").passed());
    QCOMPARE(layout.dClassStart, 12.25);
    QCOMPARE(layout.iNumofClasses, qint16(4));
    QCOMPARE(layout.aClass[0].MinDia, 10.0);

    QVERIFY(layout.SetClasses(u"12.5", u"5", u"4").passed());
    QCOMPARE(layout.ClassCount(), qint16(4));
    QCOMPARE(layout.aClass[3].MaxDia, 32.5);
    const ClassBoxTexts texts = layout.BoxTexts();
    QCOMPARE(texts.start, QStringLiteral("12.5"));
    QCOMPARE(texts.width, QStringLiteral("5"));
    QCOMPARE(texts.count, QStringLiteral("4"));
}

void TestClassLayout::faultsAsMessage()
{
    QCOMPARE(CheckClassEntry(2000, 0.3, 40).describe(),
             QStringLiteral("Invalid.       Valid range is:\nStarting: 0 - 1000\n# 0f Classes: 2 - 30"));
    QCOMPARE(CheckClassEntry(0, 2.7, 10).describe(), QStringLiteral("        Must be a multiple of:\nClass width: 0.5"));
    QCOMPARE(CheckClassEntry(0, 10, 10).describe(), QString());
}

void TestClassLayout::resetQuestionCancelKeepsDraggedLayout()
{
    ScriptedQuestions questions;
    ClassResetGuard guard;
    guard.bClassesEdited = true;
    questions.answerMessage(Answer::Cancel);
    QCOMPARE(guard.BoxChanged(questions), ClassResetGuard::Action::RestoreBoxes);
    QCOMPARE(questions.asked().size(), 1);
    QCOMPARE(questions.asked().at(0).title, QStringLiteral("Reset DBH Classes?"));
    QCOMPARE(questions.asked().at(0).text, QStringLiteral("Reset all DBH classes?"));
    QVERIFY(guard.bInChange);
    QVERIFY(guard.bClassesEdited);

    // The change that writing the box back causes asks nothing.
    QCOMPARE(guard.BoxChanged(questions), ClassResetGuard::Action::Ignore);
    QCOMPARE(questions.asked().size(), 1);
    QVERIFY(!guard.bInChange);

    // The user's next change asks again.
    questions.answerMessage(Answer::Cancel);
    QCOMPARE(guard.BoxChanged(questions), ClassResetGuard::Action::RestoreBoxes);
    QCOMPARE(questions.asked().size(), 2);
}

void TestClassLayout::resetQuestionOkRebuilds()
{
    ScriptedQuestions questions;
    ClassResetGuard guard;
    guard.bClassesEdited = true;
    questions.answerMessage(Answer::OK);
    QCOMPARE(guard.BoxChanged(questions), ClassResetGuard::Action::Rebuild);
    QVERIFY(!guard.bClassesEdited);
    QVERIFY(!guard.bInChange);
    QCOMPARE(guard.BoxChanged(questions), ClassResetGuard::Action::Rebuild);
    QCOMPARE(questions.asked().size(), 1);
}

void TestClassLayout::noQuestionWithoutDrag()
{
    ScriptedQuestions questions;
    ClassResetGuard guard;
    QCOMPARE(guard.BoxChanged(questions), ClassResetGuard::Action::Rebuild);
    QVERIFY(questions.asked().isEmpty());
}

SENDREL_TEST_MAIN(TestClassLayout)
#include "tst_classlayout.moc"
