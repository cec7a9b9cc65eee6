#include "support/TestMain.h"
#include "base/Numbers.h"
#include "base/SendrelError.h"
#include "base/ToolBox.h"

#include <QTest>

using namespace sendrel;

class tst_numbers : public QObject {
    Q_OBJECT
private slots:
    void readNumber_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("value");
        QTest::newRow("digit blank digit") << "1 2" << 12.0;
        QTest::newRow("digits then letter") << "12a" << 12.0;
        QTest::newRow("letter first") << "a1" << 0.0;
        QTest::newRow("empty") << "" << 0.0;
        QTest::newRow("exponent E") << " -3.5E2" << -350.0;
        QTest::newRow("exponent D") << "1D2" << 100.0;
        QTest::newRow("tab and line feed inside") << "\t4\n5" << 45.0;
        QTest::newRow("second point stops") << "1.5.3" << 1.5;
        QTest::newRow("lone point") << "." << 0.0;
        QTest::newRow("lone sign") << "-" << 0.0;
        QTest::newRow("exponent without digits") << "1e" << 1.0;
        QTest::newRow("leading point") << ".25" << 0.25;
        QTest::newRow("plus sign") << "+7" << 7.0;
        QTest::newRow("carriage return is not skipped") << "1\r2" << 1.0;
    }
    void readNumber()
    {
        QFETCH(QString, text);
        QFETCH(double, value);
        QCOMPARE(ReadNumber(text), value);
    }

    void int16Conversion()
    {
        QCOMPARE(ToInt16(2.5), qint16(2));
        QCOMPARE(ToInt16(3.5), qint16(4));
        QCOMPARE(ToInt16(-2.5), qint16(-2));
        QCOMPARE(ToInt16(32767.4), qint16(32767));
        QCOMPARE(ToInt16(-32768.5), qint16(-32768));
        for (double bad : {32767.5, -32769.0, 40000.0}) {
            try {
                ToInt16(bad);
                QFAIL("no overflow");
            } catch (const SendrelError &e) {
                QCOMPARE(e.number(), ErrNo::Overflow);
            }
        }
        QCOMPARE(ToInt32(40000.0), 40000);
    }

    void printForms()
    {
        QCOMPARE(PrintForm(12.5), QStringLiteral(" 12.5"));
        QCOMPARE(PrintForm(-3), QStringLiteral("-3"));
        QCOMPARE(PrintForm(0), QStringLiteral(" 0"));
        QCOMPARE(DefaultText(33.25), QStringLiteral("33.25"));
        QCOMPARE(DefaultText(1234567), QStringLiteral("1234567"));
        QCOMPARE(DefaultText(0.1 + 0.2), QStringLiteral("0.3"));
    }

    void quoteSQL()
    {
        QCOMPARE(QuoteSQL(QStringLiteral("a''b")), QStringLiteral("a''''b"));
        QCOMPARE(QuoteSQL(QString()), QString());
        QCOMPARE(QuoteSQL(QStringLiteral("O'Brien's")), QStringLiteral("O''Brien''s"));
    }

    void formatNumber2()
    {
        QCOMPARE(FormatNumber2(12.345, 1), QStringLiteral(" 12.3"));
        QCOMPARE(FormatNumber2(7, 2), QStringLiteral(" 7.00"));
        QCOMPARE(FormatNumber2(7.9, 0), QStringLiteral(" 7"));
        QCOMPARE(FormatNumber2(-0.5, 0), QStringLiteral("-1"));
        QCOMPARE(FormatNumber2(12.5, 2), QStringLiteral(" 12.50"));
        QCOMPARE(FormatNumber2(10, 1), QStringLiteral(" 10.0"));
        QVERIFY_THROWS_EXCEPTION(SendrelError, FormatNumber2(12.345, 2));
    }

    void niceAxisScale_data()
    {
        QTest::addColumn<double>("min");
        QTest::addColumn<double>("max");
        QTest::addColumn<int>("div");
        QTest::addColumn<double>("newMin");
        QTest::addColumn<double>("newMax");
        QTest::addColumn<int>("newDiv");
        QTest::newRow("0-1234 by 10") << 0.0 << 1234.0 << 10 << 0.0 << 1400.0 << 7;
        QTest::newRow("0-37 by 5") << 0.0 << 37.0 << 5 << 0.0 << 40.0 << 4;
        QTest::newRow("half to even 4") << 0.0 << 3.0 << 1 << 0.0 << 4.0 << 1;
        QTest::newRow("half to even 16") << 0.0 << 12.0 << 3 << 0.0 << 16.0 << 3;
        QTest::newRow("equal ends") << 5.0 << 5.0 << 4 << 5.0 << 6.0 << 1;
        QTest::newRow("minimum not on a step") << 13.0 << 97.0 << 4 << 0.0 << 100.0 << 2;
    }
    void niceAxisScale()
    {
        QFETCH(double, min);
        QFETCH(double, max);
        QFETCH(int, div);
        qint32 d = div;
        NiceAxisScale(min, max, d);
        QTEST(min, "newMin");
        QTEST(max, "newMax");
        QTEST(int(d), "newDiv");
    }

    void speciesColourIndex()
    {
        QCOMPARE(SpeciesColourIndex(14), qint16(14));
        QCOMPARE(SpeciesColourIndex(15), qint16(16));
        QCOMPARE(SpeciesColourIndex(28), qint16(29));
        QCOMPARE(SpeciesColourIndex(29), qint16(31));
        QCOMPARE(SpeciesColourIndex(124), qint16(126));
        QCOMPARE(SpeciesColourIndex(125), qint16(0));
    }
};

SENDREL_TEST_MAIN(tst_numbers)
#include "tst_numbers.moc"
