#pragma once

#include "base/UserQuestions.h"
#include "domain/standstock/ClassLayout.h"
#include "domain/standstock/ClassRuler.h"
#include "domain/standstock/StandStockData.h"
#include "store/Run.h"
#include "windows/output/frmChart.h"

#include <QPointer>
#include <QString>
#include <QVector>
#include <QWidget>

#include <memory>

class QGroupBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QRadioButton;

namespace sendrel {

struct TreeModel;
class ClassRulerView;
class Graph;
class ReportWindowHost;
class frmRange;

// The stand and stock window of one run: the years to report, the diameter classes (boxes and
// ruler), a sample chart of the stand or stock table for the first selected year, and the chart
// windows of the selected years, paged one at a time. One instance per open window;
// constructing it is its load step, closing it its unload step.
class frmParameters : public QWidget, public ChartWindowParent {
    Q_OBJECT
    // The run as properties, by which tests find the report windows of a frame.
    Q_PROPERTY(QString This_RunId MEMBER This_RunId)
    Q_PROPERTY(QString This_SorH MEMBER This_SorH)
    Q_PROPERTY(QString This_RunDesc MEMBER This_RunDesc)
    Q_PROPERTY(int HelpContextID MEMBER HelpContextID)
public:
    // The host lives longer than the window (tests).
    frmParameters(TreeModel &tm, ReportWindowHost &host, QWidget *parent = nullptr);
    // The window keeps its host for as long as it lives (the desktop's frame and browser).
    frmParameters(TreeModel &tm, std::unique_ptr<ReportWindowHost> host, QWidget *parent = nullptr);
    ~frmParameters() override;

    // The run that the window shows, set by the browser before UpdateHeaderList.
    QString This_RunId;
    QString This_SorH;  // "S" standing, "H" harvested
    QString This_RunDesc;
    // The run that the window shows, as the browser asks before a delete.
    RunKey ShownRun() const { return {This_RunId, KindOfText(This_SorH)}; }

    // The classes and their entry (aClass, dClassStart, dClassWidth).
    ClassLayout Layout;
    // bClassesEdited and bInChange of the class boxes.
    ClassResetGuard Reset;
    // The ruler's scale and drag state.
    ClassRuler Ruler;
    // The cells of the last CalcReport.
    StandStockData Data;

    // Public fields under their own names, sharing the storage of the parts above.
    qint16 &iNumofClasses = Layout.iNumofClasses;
    bool &bInChange = Reset.bInChange;
    qint16 &NextSpecies = Data.NextSpecies;
    bool bDBH_Change = false;  // DrawClass is being called by frmRange's UpdateDbhPanels
    bool bMouseMove = false;  // DrawClass is being called by a drag on the ruler
    bool bChartsCancelled = false;
    int HelpContextID = 76;

    // The chart windows: list positions in lstCycles of the years selected at "View Charts"
    // (every one of them, however many), and the head of the chain of pages made so far.
    QVector<int> iSelectedCycles;
    int iNumSelectedCycles = 0;
    QPointer<frmChart> FirstChart;

    // Fills lstCycles with the cycles of the run and selects the first.
    void UpdateHeaderList();
    // The sample charts for the first selected year. A failure of the aggregation is passed on.
    void PlotClick();
    // The change of a class box: reset question, checks, new classes, ruler.
    void SetClasses();
    // Redraws the whole ruler, and one class's panel.
    void DrawClasses();
    void DrawClass(int iClass);

    // The range editor of this window.
    frmRange *RangeEditor() const;
    ClassRulerView *RulerView() const { return m_ruler; }
    ReportWindowHost &Host() const override { return m_host; }
    TreeModel &Model() const { return m_tm; }

    // "View Charts": a new sequence of chart windows, one per selected year, of which the first
    // is made now and takes this window's place. A failure is shown and this window comes back.
    void cmdPrintCharts_Click();
    // Makes and shows the page of a position (from 1) between two neighbours, either may be
    // empty; nullptr when the position is out of range. A failure passes on, leaving the
    // neighbours as they were.
    frmChart *CreateChart(int Position, frmChart *PrevNeighbour, frmChart *NextNeighbour);
    // Show the neighbour of the chart being left, making it on the first visit; a failure is
    // shown and the chart being left comes back.
    void DisplayPreviousChart(frmChart *theChart) override;
    void DisplayNextChart(frmChart *theChart) override;
    void DisplayChartAt(frmChart *theChart, int position) override;
    // Unloads this chart and those after it, the far end first.
    void UnloadChartChain(frmChart *theChart);

    // What the chart windows read.
    bool DensityChosen() const override;
    const StandStockData &Cells() const override { return Data; }
    const ClassLayout &Classes() const override { return Layout; }
    const RunStore &Store() const override;
    UserQuestions &Questions() const override;
    void ChartClosed(frmChart *theChart) override;

    // Chooses the chart as a click on the option does.
    void ChooseDensity(bool density);

protected:
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void initialise();
    void buildWindow();
    void buildClassBoxes();
    void buildYears();
    void buildButtons();
    void buildSample();
    void layOutWindow();
    void connectControls();
    void Form_Load();
    void Form_Unload();
    void Form_Activate();
    void hookActivation();
    // Runs an event handler at the top of the error trail: a failure is shown and the window goes on.
    template <typename F>
    void handled(F &&handler);
    Answer ask(const MessageRequest &request);
    void writeBoxesBack();
    void showEntryCheck(const ClassEntryCheck &check);
    void drawChosenChart();
    void setPointer(int pointer);
    void panelPressed(int index, double X, int button);
    void panelMoved(int index, double X, int button);
    void panelReleased(int index, double X, int button);
    void showFailure(const QString &description);

    TreeModel &m_tm;
    std::unique_ptr<ReportWindowHost> m_ownHost;
    ReportWindowHost &m_host;

    QGroupBox *SSPanel3 = nullptr;
    QLineEdit *txtClassStart = nullptr;
    QLineEdit *txtClassWidth = nullptr;
    QLineEdit *txtNumofClasses = nullptr;
    QLabel *lblClassStartError = nullptr;
    QLabel *lblClassWidthError = nullptr;
    QLabel *lblNumClassesError = nullptr;
    QLabel *lblDbhError = nullptr;
    QGroupBox *SSPanel4 = nullptr;
    QListWidget *lstCycles = nullptr;
    QWidget *SSPanel5 = nullptr;
    QGroupBox *fraCycle = nullptr;
    QRadioButton *optDensity = nullptr;
    QRadioButton *optMerchVol = nullptr;
    Graph *gphDensity = nullptr;
    Graph *gphMerchVol = nullptr;
    QPushButton *cmdPlot = nullptr;
    ClassRulerView *m_ruler = nullptr;
    QPushButton *cmdPrintCharts = nullptr;
    QPushButton *cmdPrintReport = nullptr;
    QPushButton *cmdExport = nullptr;
    QPushButton *cmdOK = nullptr;
    QPushButton *cmdHelp = nullptr;

    QPointer<frmRange> m_range;
    bool m_loaded = false;
    bool m_unloaded = false;
    bool m_asking = false;  // a question of this window is up
    bool m_wasAway = false;  // another window was active since this one was last
};

}  // namespace sendrel
