#include "support/TestMain.h"
#include "domain/standstock/ClassRange.h"

#include <QTest>

using namespace sendrel;

// Classes 10 to 15, 15 to 20, 20 to 25.
static ClassLayout threeClasses()
{
    ClassLayout layout;
    layout.SetClasses(u"10", u"5", u"3");
    return layout;
}

class TestClassRange : public QObject {
    Q_OBJECT

private slots:
    void validateMessages_data();
    void validateMessages();
    void printFormHasTwoBlanks();
    void middleMinimumMovesNeighbour();
    void refusedEditChangesNothing();
    void partialNumberWhileTyping();
    void firstAndLastClass();
    void centreBox();
    void editedClassHighlight();
};

void TestClassRange::validateMessages_data()
{
    QTest::addColumn<int>("cls");
    QTest::addColumn<double>("dMin");
    QTest::addColumn<double>("dMax");
    QTest::addColumn<double>("dCentre");
    QTest::addColumn<QString>("message");

    QTest::newRow("agrees with the class") << 1 << 15.0 << 20.0 << 17.5 << QString();
    QTest::newRow("minimum 15.25") << 1 << 15.25 << 20.0 << 17.5 << "Minimum must be a multiple of 0.5";
    QTest::newRow("minimum 10") << 1 << 10.0 << 20.0 << 17.5 << "Minimum must be  10.5 or larger.";
    QTest::newRow("maximum 25") << 1 << 15.0 << 25.0 << 17.5 << "Maximum must be  24.5 or smaller.";
    QTest::newRow("maximum equal to minimum") << 1 << 15.0 << 15.0 << 15.0 << "Maximum must be larger than minimum.";
    QTest::newRow("maximum 19.3") << 1 << 15.0 << 19.3 << 17.0 << "Maximum must be a multiple of 0.5";
    QTest::newRow("centre 17.3") << 1 << 15.0 << 20.0 << 17.3 << "Centre must be a multiple of 0.25";
    QTest::newRow("centre outside the edges is no fault") << 1 << 15.0 << 20.0 << 40.0 << QString();
    QTest::newRow("first class below its minimum") << 0 << 9.5 << 15.0 << 12.25 << "Minimum must be  10 or larger.";
    QTest::newRow("first class may rise") << 0 << 11.0 << 15.0 << 13.0 << QString();
    QTest::newRow("last class above its maximum") << 2 << 20.0 << 25.5 << 22.75 << "Maximum must be  25 or smaller.";
    QTest::newRow("last class may narrow") << 2 << 20.0 << 24.0 << 22.0 << QString();
    QTest::newRow("first fault wins") << 1 << 10.25 << 10.0 << 3.1 << "Minimum must be  10.5 or larger.";
}

void TestClassRange::validateMessages()
{
    QFETCH(int, cls);
    QFETCH(double, dMin);
    QFETCH(double, dMax);
    QFETCH(double, dCentre);
    QFETCH(QString, message);
    QCOMPARE(ValidateDbhClass(threeClasses(), static_cast<qint16>(cls), dMin, dMax, dCentre), message);
}

void TestClassRange::printFormHasTwoBlanks()
{
    ClassLayout layout;
    layout.SetClasses(u"12.5", u"2.5", u"10");
    QCOMPARE(ValidateDbhClass(layout, 0, 12, 15, 13.5), QStringLiteral("Minimum must be  12.5 or larger."));
    QCOMPARE(ValidateDbhClass(layout, 9, 35, 38, 36.5), QStringLiteral("Maximum must be  37.5 or smaller."));
}

void TestClassRange::middleMinimumMovesNeighbour()
{
    ClassLayout layout = threeClasses();
    const RangeBoxChange change = RangeBoxChanged(layout, RangeBox::Min, u"1", u"15.5", u"20", u"17.5");
    QCOMPARE(change.fault, QString());
    QVERIFY(change.writeCentre);
    QCOMPARE(change.centre, QStringLiteral("17.75"));
    QVERIFY(change.updatePanels);

    // The centre box's own change event comes between: it agrees.
    QCOMPARE(RangeBoxChanged(layout, RangeBox::Centre, u"1", u"15.5", u"20", change.centre).fault, QString());

    const QVector<int> redraw = UpdateDbhPanels(layout, change.fault, u"1", u"15.5", u"20", change.centre);
    QCOMPARE(redraw, (QVector<int>{0, 1, 2}));
    QCOMPARE(layout.aClass[0].MinDia, 10.0);
    QCOMPARE(layout.aClass[0].MaxDia, 15.5);
    QCOMPARE(layout.aClass[0].MidPoint, 12.75);
    QCOMPARE(layout.aClass[1].MinDia, 15.5);
    QCOMPARE(layout.aClass[1].MaxDia, 20.0);
    QCOMPARE(layout.aClass[1].MidPoint, 17.75);
    QCOMPARE(layout.aClass[2].MinDia, 20.0);
    QCOMPARE(layout.aClass[2].MidPoint, 22.5);
}

void TestClassRange::refusedEditChangesNothing()
{
    ClassLayout layout = threeClasses();
    const RangeBoxChange change = RangeBoxChanged(layout, RangeBox::Min, u"1", u"15.25", u"20", u"17.5");
    QCOMPARE(change.fault, QStringLiteral("Minimum must be a multiple of 0.5"));
    QVERIFY(!change.writeCentre);
    QVERIFY(UpdateDbhPanels(layout, change.fault, u"1", u"15.25", u"20", u"17.5").isEmpty());
    QCOMPARE(layout.aClass[0].MaxDia, 15.0);
    QCOMPARE(layout.aClass[1].MinDia, 15.0);

    // The step fault of the changed box replaces an earlier fault.
    QCOMPARE(RangeBoxChanged(layout, RangeBox::Max, u"1", u"9", u"19.3", u"17.5").fault,
             QStringLiteral("Maximum must be a multiple of 0.5"));
    // A class number that names no class in use changes nothing.
    QVERIFY(UpdateDbhPanels(layout, QString(), u"-1", u"15", u"20", u"17.5").isEmpty());
    QVERIFY(UpdateDbhPanels(layout, QString(), u"3", u"20", u"24", u"22").isEmpty());
}

void TestClassRange::partialNumberWhileTyping()
{
    ClassLayout layout = threeClasses();
    // "2" on the way to "24" in the last class's maximum.
    RangeBoxChange change = RangeBoxChanged(layout, RangeBox::Max, u"2", u"20", u"2", u"22.5");
    QCOMPARE(change.fault, QStringLiteral("Maximum must be larger than minimum."));
    QVERIFY(UpdateDbhPanels(layout, change.fault, u"2", u"20", u"2", u"22.5").isEmpty());
    QCOMPARE(layout.aClass[2].MaxDia, 25.0);

    change = RangeBoxChanged(layout, RangeBox::Max, u"2", u"20", u"24", u"22.5");
    QCOMPARE(change.fault, QString());
    QCOMPARE(change.centre, QStringLiteral("22"));
    QCOMPARE(UpdateDbhPanels(layout, change.fault, u"2", u"20", u"24", change.centre), (QVector<int>{1, 2}));
    QCOMPARE(layout.aClass[2].MaxDia, 24.0);
    QCOMPARE(layout.aClass[2].MidPoint, 22.0);
    QCOMPARE(layout.aClass[1].MaxDia, 20.0);
}

void TestClassRange::firstAndLastClass()
{
    ClassLayout layout = threeClasses();
    const RangeBoxChange change = RangeBoxChanged(layout, RangeBox::Min, u"0", u"11", u"15", u"12.5");
    QCOMPARE(change.fault, QString());
    QCOMPARE(UpdateDbhPanels(layout, change.fault, u"0", u"11", u"15", change.centre), (QVector<int>{0, 1}));
    QCOMPARE(layout.aClass[0].MinDia, 11.0);
    QCOMPARE(layout.aClass[0].MidPoint, 13.0);
    QCOMPARE(layout.aClass[1].MinDia, 15.0);
    QCOMPARE(layout.aClass[1].MidPoint, 17.5);

    // A centre typed by hand reaches the class when an edge changes next.
    QCOMPARE(UpdateDbhPanels(layout, QString(), u"1", u"15", u"19", u"16.25"), (QVector<int>{0, 1, 2}));
    QCOMPARE(layout.aClass[1].MidPoint, 16.25);
    QCOMPARE(layout.aClass[2].MinDia, 19.0);
    QCOMPARE(layout.aClass[2].MidPoint, 22.0);
}

void TestClassRange::centreBox()
{
    ClassLayout layout = threeClasses();
    RangeBoxChange change = RangeBoxChanged(layout, RangeBox::Centre, u"1", u"15", u"20", u"17.3");
    QCOMPARE(change.fault, QStringLiteral("Centre must be a multiple of 0.25"));
    QVERIFY(!change.updatePanels);
    QVERIFY(!change.writeCentre);
    change = RangeBoxChanged(layout, RangeBox::Centre, u"1", u"15", u"20", u"16.75");
    QCOMPARE(change.fault, QString());
    QVERIFY(!change.updatePanels);
    QCOMPARE(layout.aClass[1].MidPoint, 17.5);
}

void TestClassRange::editedClassHighlight()
{
    QVERIFY(IsEditedClass(u"1", 1));
    QVERIFY(!IsEditedClass(u"1", 0));
    QVERIFY(!IsEditedClass(u"-1", 0));
    QCOMPARE(kEditedClassColour, 0x1E3296u);
}

SENDREL_TEST_MAIN(TestClassRange)
#include "tst_classrange.moc"
