#include "support/TestMain.h"

#include "domain/units/Units.h"

#include <cmath>

using namespace sendrel;

// Each quantity's factor worked out by hand from the two exact ones (1 ha = 2.471053814671653
// acres, 1 m = 3.280839895013123 ft), its labels, and the way back to metric.
class tst_units : public QObject {
    Q_OBJECT

private slots:
    void quantities_data()
    {
        QTest::addColumn<int>("quantity");
        QTest::addColumn<double>("imperialPerMetric");
        QTest::addColumn<QString>("metric");
        QTest::addColumn<QString>("imperial");
        QTest::newRow("stems") << int(Quantity::StemsPerArea) << 0.40468564224 << "stems/ha" << "trees/acre";   // 1 / 2.471053814671653
        QTest::newRow("density") << int(Quantity::Density) << 0.40468564224 << "SPH" << "TPA";
        QTest::newRow("basal area") << int(Quantity::BasalAreaPerArea) << 4.356 << "sq.m/ha" << "sq.ft/acre";   // 10.7639104 / 2.4710538
        QTest::newRow("volume") << int(Quantity::VolumePerArea) << 14.291338583 << "cu.m/ha" << "cu.ft/acre";   // 35.3146667 / 2.4710538
        QTest::newRow("increment") << int(Quantity::VolumeIncrementPerArea) << 14.291338583 << "cu.m/ha/yr" << "cu.ft/acre/yr";
        QTest::newRow("diameter") << int(Quantity::Diameter) << 0.39370078740 << "cm" << "in";   // 1 / 2.54
        QTest::newRow("length") << int(Quantity::Length) << 3.2808398950 << "m" << "ft";
        QTest::newRow("none") << int(Quantity::None) << 1.0 << "" << "";
    }
    void quantities()
    {
        QFETCH(int, quantity);
        QFETCH(double, imperialPerMetric);
        QFETCH(QString, metric);
        QFETCH(QString, imperial);
        const auto q = static_cast<Quantity>(quantity);
        const double stored = 123.456;
        const double shown = ToUnits(stored, q, UnitSystem::Imperial);
        QVERIFY2(std::fabs(shown / stored - imperialPerMetric) <= 1e-9, qPrintable(QString::number(shown / stored, 'g', 17)));
        QVERIFY(std::fabs(FromUnits(shown, q, UnitSystem::Imperial) - stored) <= 1e-9 * stored);
        QCOMPARE(ToUnits(stored, q, UnitSystem::Metric), stored);
        QCOMPARE(UnitLabel(q, UnitSystem::Metric), metric);
        QCOMPARE(UnitLabel(q, UnitSystem::Imperial), imperial);
        QCOMPARE(ConversionWords(q, UnitSystem::Metric), QString());
        QCOMPARE(ConversionWords(q, UnitSystem::Imperial).isEmpty(), q == Quantity::None);
    }

    void names()
    {
        QCOMPARE(UnitSystemNamed(QStringLiteral("Imperial")), std::optional<UnitSystem>(UnitSystem::Imperial));
        QCOMPARE(UnitSystemNamed(QStringLiteral("metres")), std::nullopt);
        QCOMPARE(UnitSystemOfSetting(QStringLiteral("imperial")), UnitSystem::Imperial);
        QCOMPARE(UnitSystemOfSetting(QStringLiteral("")), UnitSystem::Metric);
        QCOMPARE(ReferenceDiameterText(UnitSystem::Imperial), QStringLiteral("10 in"));
        QVERIFY(UnitsDescription(UnitSystem::Imperial).contains(QStringLiteral("2.471053814671653")));
    }
};

SENDREL_TEST_MAIN(tst_units)
#include "tst_units.moc"
