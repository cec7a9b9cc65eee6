#pragma once

#include <QString>
#include <QtGlobal>

namespace sendrel {

class SettingsStore;

// True when the first character is "Y", upper case only.
bool IsYes(const QString &text);

inline const QString kSectionCommon = QStringLiteral("Common");
inline const QString kSectionSendrel = QStringLiteral("Sendrel");
inline const QString kSectionKestrane = QStringLiteral("Kestrane");

// The settings variables, each named as its key. Read once at start, written once at the end;
// only DataDir, WorkDir and ServerDatabase are written the moment they are chosen.
struct Settings {
    // Common
    QString DataDir;
    QString WorkDir;
    QString HelpFile;  // the program's help file (key HelpDir)

    // Sendrel
    bool PrintTo_Printer = true;
    bool PrintAs_Colour = false;
    bool VerticalGrid = false;
    bool HorizontalGrid = false;
    bool StandLevelsDefault_Sph = true;
    bool StandLevelsDefault_BasalArea = false;
    bool StandLevelsDefault_MerchVol = false;
    bool StandLevelsDefault_TotalVol = false;

    QString DensityTopTitle;
    QString DensityLeftTitle;
    QString DensityBottomTitle;
    QString MerchVolTopTitle;
    QString MerchVolLeftTitle;
    QString MerchVolBottomTitle;
    QString StandLevels_Sph_TopTitle;
    QString StandLevels_Sph_LeftTitle;
    QString StandLevels_Sph_BottomTitle;
    QString StandLevels_BasalArea_TopTitle;
    QString StandLevels_BasalArea_LeftTitle;
    QString StandLevels_BasalArea_BottomTitle;
    QString StandLevels_MerchVol_TopTitle;
    QString StandLevels_MerchVol_LeftTitle;
    QString StandLevels_MerchVol_BottomTitle;
    QString StandLevels_TotalVol_TopTitle;
    QString StandLevels_TotalVol_LeftTitle;
    QString StandLevels_TotalVol_BottomTitle;
    QString StandLevels_SPH_ReportTitle;
    QString StandLevels_BasalArea_ReportTitle;
    QString StandLevels_MerchVol_ReportTitle;
    QString StandLevels_TotalVol_ReportTitle;
    QString Stock_Density_ReportTitle;
    QString Stock_MerchVol_ReportTitle;

    double ClassesStart = 0;
    double ClassesWidth = 10;
    qint16 NumClasses = 10;

    // How long a write waits for a run database that another program is writing, in seconds.
    double LockWaitSeconds = 10;

    // The maximum of Reineke's stand density index that the density diagram of a comparison
    // draws its lines from, metric (stems/ha at a mean diameter of 25.4 cm).
    double MaxSDI = 1000;

    // The units of the summary, the comparison, the exports and our own charts: "metric" or
    // "imperial" (any other text reads as metric). Report files of fixed layout are always metric.
    QString Units = QStringLiteral("metric");
    // How the summary works out the stand density index: "reineke" (from the quadratic mean
    // diameter) or "summation" (over the trees); any other text reads as Reineke's.
    QString SdiMethod = QStringLiteral("reineke");
    // Whether a CSV export of the desktop writes its definitions beside it (NAME.definitions.csv).
    bool CsvDefinitions = false;

    // The connection text of the server database the desktop opens at start in place of the file
    // in DataDir; empty for the file. Never with a password.
    QString ServerDatabase;

    // Reads every key with its default and repairs what the rules say. programDir is the
    // folder of the executable; the default help file lies in its parent's Help folder.
    // Fails (Overflow) when NumClasses does not fit 16 bits.
    void LoadSettings(const SettingsStore &store, const QString &programDir);

    // Writes every key as SaveSettingsAndEnd does, without ending anything. leftPos and
    // topPos are the frame's edges.
    void SaveSettings(SettingsStore &store, double leftPos, double topPos) const;

    // Writes the keys that Options sets (Units, SdiMethod, CsvDefinitions) at once, so that the
    // headless tool started meanwhile reads them too.
    void SaveChosenOptions(SettingsStore &store) const;

    // Writes ServerDatabase at once: the database chosen is the one of the next start.
    void SaveServerDatabase(SettingsStore &store) const;

    // The default help file: the parent of the program's folder, "Help", "Tolvane.chm".
    static QString DefaultHelpFile(const QString &programDir);
};

}  // namespace sendrel
