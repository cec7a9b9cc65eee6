#include "base/Settings.h"

#include "base/Numbers.h"
#include "base/SendrelError.h"
#include "base/SettingsStore.h"

#include <QDir>
#include <QFileInfo>

namespace sendrel {

bool IsYes(const QString &text)
{
    return !text.isEmpty() && text.at(0) == QLatin1Char('Y');
}

namespace {

QString yesNo(bool b)
{
    return b ? QStringLiteral("YES") : QStringLiteral("NO");
}

struct BoolKey {
    const char *key;
    bool Settings::*member;
    const char *defaultText;
};

struct TextKey {
    const char *key;
    QString Settings::*member;
    const char *defaultText;
};

const BoolKey kBoolKeys[] = {
    {"PrintTo_Printer", &Settings::PrintTo_Printer, "YES"},
    {"PrintAs_Colour", &Settings::PrintAs_Colour, "NO"},
    {"VerticalGrid", &Settings::VerticalGrid, "NO"},
    {"HorizontalGrid", &Settings::HorizontalGrid, "NO"},
    {"StandLevelsDefault_Sph", &Settings::StandLevelsDefault_Sph, "YES"},
    {"StandLevelsDefault_BasalArea", &Settings::StandLevelsDefault_BasalArea, "NO"},
    {"StandLevelsDefault_MerchVol", &Settings::StandLevelsDefault_MerchVol, "NO"},
    {"StandLevelsDefault_TotalVol", &Settings::StandLevelsDefault_TotalVol, "NO"},
};

const TextKey kTextKeys[] = {
    {"DensityTopTitle", &Settings::DensityTopTitle, "Density"},
    {"DensityLeftTitle", &Settings::DensityLeftTitle, "Density (SPH)"},
    {"DensityBottomTitle", &Settings::DensityBottomTitle, "DBH Class (cm)"},
    {"MerchVolTopTitle", &Settings::MerchVolTopTitle, "Gross Total Volume"},
    {"MerchVolLeftTitle", &Settings::MerchVolLeftTitle, "GTV(cu.m/ha)"},
    {"MerchVolBottomTitle", &Settings::MerchVolBottomTitle, "DBH Class (cm)"},
    {"StandLevels_Sph_TopTitle", &Settings::StandLevels_Sph_TopTitle, "Species Composition through time (by Species)"},
    {"StandLevels_Sph_LeftTitle", &Settings::StandLevels_Sph_LeftTitle, "Density (SPH)"},
    {"StandLevels_Sph_BottomTitle", &Settings::StandLevels_Sph_BottomTitle, "Calendar Year"},
    {"StandLevels_BasalArea_TopTitle", &Settings::StandLevels_BasalArea_TopTitle, "Species Composition Through Time (by Species)"},
    {"StandLevels_BasalArea_LeftTitle", &Settings::StandLevels_BasalArea_LeftTitle, "Basal Area"},
    {"StandLevels_BasalArea_BottomTitle", &Settings::StandLevels_BasalArea_BottomTitle, "Calendar Year"},
    {"StandLevels_MerchVol_TopTitle", &Settings::StandLevels_MerchVol_TopTitle, "Species Composition Through Time (by Species)"},
    {"StandLevels_MerchVol_LeftTitle", &Settings::StandLevels_MerchVol_LeftTitle, "GTV (cu.m/ha)"},
    {"StandLevels_MerchVol_BottomTitle", &Settings::StandLevels_MerchVol_BottomTitle, "Calendar Year"},
    {"StandLevels_TotalVol_TopTitle", &Settings::StandLevels_TotalVol_TopTitle, "Species Composition Through Time (by Species)"},
    {"StandLevels_TotalVol_LeftTitle", &Settings::StandLevels_TotalVol_LeftTitle, "Total Vol (cu.m/ha)"},
    {"StandLevels_TotalVol_BottomTitle", &Settings::StandLevels_TotalVol_BottomTitle, "Calendar Year"},
    {"StandLevels_SPH_ReportTitle", &Settings::StandLevels_SPH_ReportTitle, "Total Vol (cu.m/ha)"},
    {"StandLevels_BasalArea_ReportTitle", &Settings::StandLevels_BasalArea_ReportTitle, "Species Composition Through Time (by Species)"},
    {"StandLevels_MerchVol_ReportTitle", &Settings::StandLevels_MerchVol_ReportTitle, "GTV (cu.m/ha)"},
    {"StandLevels_TotalVol_ReportTitle", &Settings::StandLevels_TotalVol_ReportTitle, "Calendar Year"},
    {"Stock_Density_ReportTitle", &Settings::Stock_Density_ReportTitle, "Calendar Year"},
    {"Stock_MerchVol_ReportTitle", &Settings::Stock_MerchVol_ReportTitle, "Calendar Year"},
};

QString textDefault(QString Settings::*member)
{
    for (const TextKey &k : kTextKeys) {
        if (k.member == member)
            return QString::fromLatin1(k.defaultText);
    }
    return QString();
}

bool holdsErch(const QString &s)
{
    return s.contains(QLatin1String("erch"), Qt::CaseSensitive);
}

}  // namespace

QString Settings::DefaultHelpFile(const QString &programDir)
{
    // The parent of the program's folder, whether or not the folder ends in a separator.
    QString dir = QDir::cleanPath(programDir);
    const QString parent = QFileInfo(dir).path();
    return QDir::toNativeSeparators(parent + QStringLiteral("/Help/Tolvane.chm"));
}

void Settings::LoadSettings(const SettingsStore &store, const QString &programDir)
{
    DataDir = store.GetSetting(kSectionCommon, QStringLiteral("DataDir"), QString());
    WorkDir = store.GetSetting(kSectionCommon, QStringLiteral("WorkDir"), QString());

    const QString defaultHelp = DefaultHelpFile(programDir);
    HelpFile = store.GetSetting(kSectionCommon, QStringLiteral("HelpDir"), defaultHelp);
    if (!QFileInfo::exists(HelpFile))
        HelpFile = defaultHelp;

    for (const BoolKey &k : kBoolKeys)
        this->*(k.member) = IsYes(store.GetSetting(kSectionSendrel, QString::fromLatin1(k.key), QString::fromLatin1(k.defaultText)));
    for (const TextKey &k : kTextKeys)
        this->*(k.member) = store.GetSetting(kSectionSendrel, QString::fromLatin1(k.key), QString::fromLatin1(k.defaultText));

    // Older versions stored "Merch..." titles; the volume shown is gross total volume.
    if (holdsErch(MerchVolTopTitle))
        MerchVolTopTitle = textDefault(&Settings::MerchVolTopTitle);
    if (MerchVolLeftTitle.isEmpty() || holdsErch(MerchVolLeftTitle))
        MerchVolLeftTitle = textDefault(&Settings::MerchVolLeftTitle);
    if (holdsErch(StandLevels_MerchVol_LeftTitle))
        StandLevels_MerchVol_LeftTitle = textDefault(&Settings::StandLevels_MerchVol_LeftTitle);
    if (StandLevels_MerchVol_ReportTitle.isEmpty() || holdsErch(StandLevels_MerchVol_ReportTitle))
        StandLevels_MerchVol_ReportTitle = textDefault(&Settings::StandLevels_MerchVol_ReportTitle);

    ClassesStart = ReadNumber(store.GetSetting(kSectionSendrel, QStringLiteral("ClassesStart"), QStringLiteral("0")));
    ClassesWidth = ReadNumber(store.GetSetting(kSectionSendrel, QStringLiteral("ClassesWidth"), QStringLiteral("10")));
    if (ClassesWidth == 0)
        ClassesWidth = 10;
    NumClasses = ToInt16(ReadNumber(store.GetSetting(kSectionSendrel, QStringLiteral("NumClasses"), QStringLiteral("10"))));
    if (NumClasses == 0)
        NumClasses = 10;
    LockWaitSeconds = ReadNumber(store.GetSetting(kSectionSendrel, QStringLiteral("LockWaitSeconds"), QStringLiteral("10")));
    if (LockWaitSeconds <= 0 || LockWaitSeconds > 3600)
        LockWaitSeconds = 10;
    MaxSDI = ReadNumber(store.GetSetting(kSectionSendrel, QStringLiteral("MaxSDI"), QStringLiteral("1000")));
    if (!(MaxSDI > 0))
        MaxSDI = 1000;
    Units = store.GetSetting(kSectionSendrel, QStringLiteral("Units"), QStringLiteral("metric"));
    SdiMethod = store.GetSetting(kSectionSendrel, QStringLiteral("SdiMethod"), QStringLiteral("reineke"));
    CsvDefinitions = IsYes(store.GetSetting(kSectionSendrel, QStringLiteral("CsvDefinitions"), QStringLiteral("NO")));
    ServerDatabase = store.GetSetting(kSectionSendrel, QStringLiteral("ServerDatabase"), QString());
}

void Settings::SaveServerDatabase(SettingsStore &store) const
{
    store.SaveSetting(kSectionSendrel, QStringLiteral("ServerDatabase"), ServerDatabase);
    store.sync();
}

void Settings::SaveChosenOptions(SettingsStore &store) const
{
    store.SaveSetting(kSectionSendrel, QStringLiteral("Units"), Units);
    store.SaveSetting(kSectionSendrel, QStringLiteral("SdiMethod"), SdiMethod);
    store.SaveSetting(kSectionSendrel, QStringLiteral("CsvDefinitions"), yesNo(CsvDefinitions));
    store.sync();
}

void Settings::SaveSettings(SettingsStore &store, double leftPos, double topPos) const
{
    store.SaveSetting(kSectionSendrel, QStringLiteral("LeftPos"), DefaultText(leftPos));
    store.SaveSetting(kSectionSendrel, QStringLiteral("TopPos"), DefaultText(topPos));

    store.SaveSetting(kSectionCommon, QStringLiteral("HelpDir"), HelpFile);
    try {
        store.DeleteSetting(kSectionSendrel, QStringLiteral("HelpDir"));
    } catch (const SendrelError &e) {
        if (e.number() != ErrNo::InvalidCall)
            throw;
    }

    for (const BoolKey &k : kBoolKeys)
        store.SaveSetting(kSectionSendrel, QString::fromLatin1(k.key), yesNo(this->*(k.member)));
    for (const TextKey &k : kTextKeys)
        store.SaveSetting(kSectionSendrel, QString::fromLatin1(k.key), this->*(k.member));

    store.SaveSetting(kSectionSendrel, QStringLiteral("ClassesStart"), DefaultText(ClassesStart));
    store.SaveSetting(kSectionSendrel, QStringLiteral("ClassesWidth"), DefaultText(ClassesWidth));
    store.SaveSetting(kSectionSendrel, QStringLiteral("NumClasses"), DefaultText(NumClasses));
    store.SaveSetting(kSectionSendrel, QStringLiteral("LockWaitSeconds"), DefaultText(LockWaitSeconds));
    store.SaveSetting(kSectionSendrel, QStringLiteral("MaxSDI"), DefaultText(MaxSDI));
    SaveChosenOptions(store);
    store.sync();
}

}  // namespace sendrel
