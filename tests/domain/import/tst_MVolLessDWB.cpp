#include "support/TestMain.h"
#include "domain/import/MVolLessDWB.h"

#include <QTest>

using namespace sendrel;

class tst_MVolLessDWB : public QObject {
    Q_OBJECT

private slots:
    void classBounds_data()
    {
        QTest::addColumn<QString>("species");
        QTest::addColumn<double>("diameter");
        QTest::addColumn<double>("percent");   // -1: no class, the result is 0
        // PL differs between neighbouring classes, so the class taken shows.
        QTest::newRow("12.5 takes class 15") << "PL" << 12.5 << 4.3;
        QTest::newRow("12.49 takes class 10") << "PL" << 12.49 << 3.45;
        QTest::newRow("7.5 takes class 10") << "PL" << 7.5 << 3.45;
        QTest::newRow("below 7.5 gives 0") << "PL" << 7.49 << -1.0;
        QTest::newRow("167.5 takes the top class") << "CW" << 167.5 << 49.4;
        QTest::newRow("167.49 takes class 165") << "CW" << 167.49 << 49.3;
        QTest::newRow("998.9 takes the top class") << "CW" << 998.9 << 49.4;
        QTest::newRow("999 gives 0") << "CW" << 999.0 << -1.0;
        QTest::newRow("HM jumps at class 30") << "HM" << 27.5 << 42.6;
        QTest::newRow("HW falls before it rises") << "HW" << 25.0 << 8.8;
        QTest::newRow("SE falls back") << "SE" << 100.0 << 5.8;
        QTest::newRow("BG second decimal") << "BG" << 20.0 << 17.75;
        QTest::newRow("FD exact 3.65") << "FD" << 50.0 << 3.65;
        QTest::newRow("PY class 35") << "PY" << 35.0 << 3.5;
        QTest::newRow("LW class 85") << "LW" << 85.0 << 6.7;
        QTest::newRow("BL as BG") << "BL" << 40.0 << 25.1;
        QTest::newRow("PW class 105") << "PW" << 105.0 << 18.2;
    }

    void classBounds()
    {
        QFETCH(QString, species);
        QFETCH(double, diameter);
        QFETCH(double, percent);
        const double volume = 2.5;
        const double expected = percent < 0 ? 0.0 : volume - (volume * percent) / 100.0;
        QCOMPARE(MVol_less_DWB(species, diameter, volume), expected);
    }

    void spotValues()
    {
        QCOMPARE(MVol_less_DWB(u"PW", 30.0, 1.0), 0.968);
        QCOMPARE(MVol_less_DWB(u"HM", 75.0, 1.0), 0.0);
        QCOMPARE(MVol_less_DWB(u"HM", 75.0, 123.456), 0.0);
        QCOMPARE(MVol_less_DWB(u"HM", 72.49, 1.0), 1.0 - 93.3 / 100.0);
    }

    void codesOutsideTheTable()
    {
        QCOMPARE(MVol_less_DWB(u"pw", 30.0, 1.0), 0.0);
        QCOMPARE(MVol_less_DWB(u"P ", 30.0, 1.0), 0.0);
        QCOMPARE(MVol_less_DWB(u" P", 30.0, 1.0), 0.0);
        QCOMPARE(MVol_less_DWB(u"PWX", 30.0, 1.0), 0.0);
        QCOMPARE(MVol_less_DWB(u"", 30.0, 1.0), 0.0);
        QCOMPARE(MVol_less_DWB(u"XX", 30.0, 0.0), 0.0);
        QCOMPARE(MVol_less_DWB(u"PW", 30.0, 0.0), 0.0);
    }

    void negativeVolumePassesTheFormula()
    {
        QCOMPARE(MVol_less_DWB(u"PW", 30.0, -1.0), -0.968);
    }

    void tableShape()
    {
        // 363 values; each row's bounds 5 cm apart and touching the next, the top open to 999.
        for (int i = 0; i + 1 < DWBTable::kClasses; ++i) {
            QCOMPARE(DWBTable::kClassToBelow[i] - DWBTable::kClassFrom[i], 5.0);
            QCOMPARE(DWBTable::kClassFrom[i + 1], DWBTable::kClassToBelow[i]);
        }
        QCOMPARE(DWBTable::kClassToBelow[DWBTable::kClasses - 1], 999.0);
        for (int i = 0; i < DWBTable::kClasses; ++i)
            QCOMPARE(DWBTable::kPercent[i][3], DWBTable::kPercent[i][8]);   // BG and BL columns are the same
    }
};

SENDREL_TEST_MAIN(tst_MVolLessDWB)
#include "tst_MVolLessDWB.moc"
