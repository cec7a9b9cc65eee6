#pragma once

#include "domain/composition/StandLevelsSeries.h"
#include "store/Run.h"

#include <QString>
#include <QWidget>

#include <array>
#include <functional>
#include <memory>

class QCheckBox;
class QGroupBox;
class QLayout;
class QLineEdit;
class QPrinter;
class QPushButton;
class QRadioButton;

namespace sendrel {

struct TreeModel;
class Graph;
class ReportWindowHost;
class frmReport;

// "Species Composition through time" of one run and kind: four charts over calendar years, of
// which the one of the chosen statistic shows, their titles, a Y axis maximum for each of them,
// grids, printing or copying of the shown chart, and the report of the chosen statistic. One
// instance per open window; constructing it is its load step, closing it its unload step.
class frmStandLevels : public QWidget {
    Q_OBJECT
    // The run as properties, by which tests find the report windows of a frame.
    Q_PROPERTY(QString This_RunId MEMBER This_RunId)
    Q_PROPERTY(QString This_SorH MEMBER This_SorH)
    Q_PROPERTY(QString This_RunDesc MEMBER This_RunDesc)
    Q_PROPERTY(int HelpContextID MEMBER HelpContextID)
public:
    // The host lives longer than the window (tests).
    frmStandLevels(TreeModel &tm, ReportWindowHost &host, QWidget *parent = nullptr);
    // The window keeps its host for as long as it lives (the desktop's frame and browser).
    frmStandLevels(TreeModel &tm, std::unique_ptr<ReportWindowHost> host, QWidget *parent = nullptr);
    ~frmStandLevels() override;

    // The run that the window shows, set by the browser before CalcStandLevelsReport.
    QString This_RunId;
    QString This_SorH;  // "S" standing, "H" harvested
    QString This_RunDesc;
    // The run that the window shows, as the browser asks before a delete.
    RunKey ShownRun() const { return {This_RunId, KindOfText(This_SorH)}; }
    int HelpContextID = 75;

    // The cycles, species and maxima of the last CalcStandLevelsReport.
    StandLevelsState State;

    // Fills the four charts from the run and draws them. A database failure is passed on.
    void CalcStandLevelsReport();
    // The three title boxes of a statistic, each change going to its chart as a typed one does.
    void SetTitles(StandLevelsStatistic statistic, const StandLevelsTitles &titles);
    // The options the browser sets from the settings, as clicks would.
    void SetPrintOptions(bool toPrinter, bool colour);
    void SetGrids(bool vertical, bool horizontal);
    // Chooses the statistic as a click on its option does (the hidden total volume too).
    void ChooseStatistic(StandLevelsStatistic statistic);
    // The statistic of the option that is on; total volume when none of the other three is.
    StandLevelsStatistic SelectedStatistic() const;
    Graph *Chart(StandLevelsStatistic statistic) const { return m_charts[static_cast<int>(statistic)]; }

    // How the report viewer is put on screen: modally by default. Tests answer it here.
    std::function<void(frmReport &viewer)> ShowReportViewer;

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void initialise();
    void buildWindow();
    QGroupBox *buildStatistics();
    QGroupBox *buildTitles();
    QLayout *buildChartOptions();
    void connectControls();
    void Form_Load();
    void Form_Unload();
    // Runs an event handler at the top of the error trail: a failure is shown and the window goes on.
    template <typename F>
    void handled(F &&handler);
    void cmdApply_Click();
    void ApplyGrids();
    void cmdPrint_Click();
    void cmdPrintReport_Click();
    // "Export...": the statistics' tables as the report has them, a workbook sheet each, or the
    // shown statistic's as CSV.
    void cmdExport_Click();
    void setPointer(int pointer);

    TreeModel &m_tm;
    std::unique_ptr<ReportWindowHost> m_ownHost;
    ReportWindowHost &m_host;

    std::array<Graph *, kStandLevelsCharts> m_charts{};
    std::array<QRadioButton *, kStandLevelsCharts> m_options{};
    // By statistic: top, left, bottom.
    std::array<std::array<QLineEdit *, 3>, kStandLevelsCharts> m_titleBoxes{};
    QLineEdit *txtYAxisMax = nullptr;
    QPushButton *cmdApply = nullptr;
    QCheckBox *chkVertical = nullptr;
    QCheckBox *chkHorizontal = nullptr;
    QRadioButton *optClipboard = nullptr;
    QRadioButton *optPrinter = nullptr;
    QRadioButton *optColour = nullptr;
    QRadioButton *optBandW = nullptr;
    QPushButton *cmdPrint = nullptr;
    QPushButton *cmdPrintReport = nullptr;
    QPushButton *cmdExport = nullptr;
    QPushButton *cmdOK = nullptr;
    QPushButton *cmdHelp = nullptr;

    // The Y axis maximum typed for each statistic, and the statistic whose maximum the box shows.
    std::array<QString, kStandLevelsCharts> m_yAxisMax{};
    int m_yAxisStatistic = -1;
    std::unique_ptr<QPrinter> m_printer;

    bool m_loaded = false;
    bool m_unloaded = false;
};

}  // namespace sendrel
