#include "support/TestMain.h"
#include "base/SendrelError.h"
#include "base/Settings.h"
#include "base/SettingsStore.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace sendrel;

class tst_settings : public QObject {
    Q_OBJECT

    QTemporaryDir m_install;
    QString programDir() const { return m_install.path() + QStringLiteral("/bin"); }

    void wipe()
    {
        SettingsStore store;
        QFile::remove(store.fileName());
    }

private slots:
    void init() { wipe(); }

    void storeLivesUnderTheConfigHome()
    {
        SettingsStore store;
        QVERIFY(store.fileName().startsWith(qEnvironmentVariable("XDG_CONFIG_HOME")));
        QVERIFY(store.fileName().endsWith(QStringLiteral("Tolvan/Tolvan.ini")));
    }

    void firstStartTakesEveryDefault()
    {
        SettingsStore store;
        Settings s;
        s.LoadSettings(store, programDir());
        QCOMPARE(s.DataDir, QString());
        QCOMPARE(s.WorkDir, QString());
        QCOMPARE(s.HelpFile, QDir::toNativeSeparators(m_install.path() + QStringLiteral("/Help/Tolvane.chm")));
        QVERIFY(s.PrintTo_Printer);
        QVERIFY(!s.PrintAs_Colour);
        QVERIFY(s.StandLevelsDefault_Sph);
        QCOMPARE(s.MerchVolLeftTitle, QStringLiteral("GTV(cu.m/ha)"));
        QCOMPARE(s.StandLevels_SPH_ReportTitle, QStringLiteral("Total Vol (cu.m/ha)"));
        QCOMPARE(s.ClassesStart, 0.0);
        QCOMPARE(s.ClassesWidth, 10.0);
        QCOMPARE(s.NumClasses, qint16(10));
    }

    void valuesAreReadByTheirRules()
    {
        SettingsStore store;
        const QString S = kSectionSendrel;
        store.SaveSetting(S, QStringLiteral("PrintTo_Printer"), QStringLiteral("yes"));
        store.SaveSetting(S, QStringLiteral("PrintAs_Colour"), QStringLiteral("YES please"));
        store.SaveSetting(S, QStringLiteral("VerticalGrid"), QStringLiteral("Y"));
        store.SaveSetting(S, QStringLiteral("ClassesWidth"), QStringLiteral("abc"));
        store.SaveSetting(S, QStringLiteral("ClassesStart"), QStringLiteral("abc"));
        store.SaveSetting(S, QStringLiteral("NumClasses"), QStringLiteral("0"));
        store.SaveSetting(S, QStringLiteral("MerchVolBottomTitle"), QStringLiteral("Merch"));
        store.SaveSetting(S, QStringLiteral("MerchVolTopTitle"), QString());
        store.SaveSetting(S, QStringLiteral("MerchVolLeftTitle"), QString());
        store.SaveSetting(S, QStringLiteral("StandLevels_MerchVol_LeftTitle"), QStringLiteral("Merch Vol"));
        store.SaveSetting(S, QStringLiteral("StandLevels_MerchVol_ReportTitle"), QString());
        store.SaveSetting(kSectionCommon, QStringLiteral("HelpDir"), QStringLiteral("/nowhere/gone.chm"));
        Settings s;
        s.LoadSettings(store, programDir());
        QVERIFY(!s.PrintTo_Printer);
        QVERIFY(s.PrintAs_Colour);
        QVERIFY(s.VerticalGrid);
        QCOMPARE(s.ClassesWidth, 10.0);
        QCOMPARE(s.ClassesStart, 0.0);
        QCOMPARE(s.NumClasses, qint16(10));
        QCOMPARE(s.MerchVolBottomTitle, QStringLiteral("Merch"));
        QCOMPARE(s.MerchVolTopTitle, QString());
        QCOMPARE(s.MerchVolLeftTitle, QStringLiteral("GTV(cu.m/ha)"));
        QCOMPARE(s.StandLevels_MerchVol_LeftTitle, QStringLiteral("GTV (cu.m/ha)"));
        QCOMPARE(s.StandLevels_MerchVol_ReportTitle, QStringLiteral("GTV (cu.m/ha)"));
        QVERIFY(s.HelpFile.endsWith(QStringLiteral("Help/Tolvane.chm")));

        store.SaveSetting(S, QStringLiteral("ClassesWidth"), QStringLiteral("0"));
        store.SaveSetting(S, QStringLiteral("ClassesStart"), QStringLiteral("12.5cm"));
        store.SaveSetting(S, QStringLiteral("NumClasses"), QStringLiteral("7.5"));
        s.LoadSettings(store, programDir());
        QCOMPARE(s.ClassesWidth, 10.0);
        QCOMPARE(s.ClassesStart, 12.5);
        QCOMPARE(s.NumClasses, qint16(8));
    }

    void numClassesBeyond16BitsFails()
    {
        SettingsStore store;
        store.SaveSetting(kSectionSendrel, QStringLiteral("NumClasses"), QStringLiteral("40000"));
        Settings s;
        try {
            s.LoadSettings(store, programDir());
            QFAIL("loaded");
        } catch (const SendrelError &e) {
            QCOMPARE(e.number(), ErrNo::Overflow);
        }
    }

    void deletingAMissingKeyFailsWithFive()
    {
        SettingsStore store;
        try {
            store.DeleteSetting(kSectionKestrane, QStringLiteral("DataDir"));
            QFAIL("deleted");
        } catch (const SendrelError &e) {
            QCOMPARE(e.number(), 5L);
        }
        store.SaveSetting(kSectionKestrane, QStringLiteral("DataDir"), QStringLiteral("x"));
        store.DeleteSetting(kSectionKestrane, QStringLiteral("DataDir"));
        QCOMPARE(store.GetSetting(kSectionKestrane, QStringLiteral("DataDir"), QStringLiteral("none")), QStringLiteral("none"));
    }

    void saveWritesEveryKeyAndASecondSaveChangesNothing()
    {
        QString first;
        {
            SettingsStore store;
            store.SaveSetting(kSectionSendrel, QStringLiteral("HelpDir"), QStringLiteral("old"));
            store.SaveSetting(kSectionSendrel, QStringLiteral("MerchVolTopTitle"), QStringLiteral("Merch"));
            store.SaveSetting(kSectionSendrel, QStringLiteral("Title, with comma"), QStringLiteral("a, b"));
            Settings s;
            s.LoadSettings(store, programDir());
            s.ClassesStart = 12.5;
            s.SaveSettings(store, 10, 20);
            QCOMPARE(store.GetSetting(kSectionSendrel, QStringLiteral("HelpDir"), QStringLiteral("gone")), QStringLiteral("gone"));
            QCOMPARE(store.GetSetting(kSectionCommon, QStringLiteral("HelpDir")), s.HelpFile);
            QCOMPARE(store.GetSetting(kSectionSendrel, QStringLiteral("PrintTo_Printer")), QStringLiteral("YES"));
            QCOMPARE(store.GetSetting(kSectionSendrel, QStringLiteral("StandLevelsDefault_TotalVol")), QStringLiteral("NO"));
            QCOMPARE(store.GetSetting(kSectionSendrel, QStringLiteral("MerchVolTopTitle")), QStringLiteral("Gross Total Volume"));
            QCOMPARE(store.GetSetting(kSectionSendrel, QStringLiteral("ClassesStart")), QStringLiteral("12.5"));
            QCOMPARE(store.GetSetting(kSectionSendrel, QStringLiteral("NumClasses")), QStringLiteral("10"));
            QCOMPARE(store.GetSetting(kSectionSendrel, QStringLiteral("LeftPos")), QStringLiteral("10"));
            QCOMPARE(store.GetSetting(kSectionSendrel, QStringLiteral("Title, with comma")), QStringLiteral("a, b"));
            store.sync();
            QFile f(store.fileName());
            QVERIFY(f.open(QIODevice::ReadOnly));
            first = QString::fromUtf8(f.readAll());
        }
        SettingsStore store;
        Settings s;
        s.LoadSettings(store, programDir());
        s.SaveSettings(store, 10, 20);
        store.sync();
        QFile f(store.fileName());
        QVERIFY(f.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(f.readAll()), first);
    }
};

SENDREL_TEST_MAIN(tst_settings)
#include "tst_settings.moc"
