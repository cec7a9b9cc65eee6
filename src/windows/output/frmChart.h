#pragma once

#include <QPointer>
#include <QWidget>

#include <memory>

class QCheckBox;
class QComboBox;
class QLabel;
class QBoxLayout;
class QLayout;
class QPrinter;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace sendrel {

class ClassLayout;
class Graph;
class ReportWindowHost;
class RunStore;
class StandStockData;
class UserQuestions;
class frmChart;

// What a chart window needs of the window that made it: the cells it charts, the table chosen,
// the paging between the windows of one sequence, and the frame around them.
class ChartWindowParent {
public:
    virtual ~ChartWindowParent() = default;

    // The stand table's chart is the one shown and printed, else the stock table's.
    virtual bool DensityChosen() const = 0;
    // The cells of the parent's last CalcReport, its classes, and the store that names the species.
    virtual const StandStockData &Cells() const = 0;
    virtual const ClassLayout &Classes() const = 0;
    virtual const RunStore &Store() const = 0;

    // "<" and ">": the chart has hidden itself; the parent shows the neighbour.
    virtual void DisplayPreviousChart(frmChart *theChart) = 0;
    virtual void DisplayNextChart(frmChart *theChart) = 0;
    // First, last, or a year picked: the chart has hidden itself; the parent shows the page of
    // that position (from 1), making it if needed.
    virtual void DisplayChartAt(frmChart *theChart, int position) = 0;
    // The chart is closing: the parent takes its place in the frame back, notes that the charts
    // were cancelled and shows itself again.
    virtual void ChartClosed(frmChart *theChart) = 0;

    virtual ReportWindowHost &Host() const = 0;
    virtual UserQuestions &Questions() const = 0;
};

// What a page takes from the settings and hands on to its neighbours: the Y axis maximum typed
// ("" for none), printer or clipboard, colour or black and white, and the grids.
struct ChartChoices {
    QString yAxisMax;
    bool toPrinter = true;
    bool colour = true;
    bool verticalGrid = false;
    bool horizontalGrid = false;
};

// "Chart Print Preview": the density and volume charts of one selected year, of which the
// parent's choice is shown, with their titles, Y axis, grids, and printing or copying in colour
// or black and white. Closing it hides it: the windows of a sequence stay, hidden, until the
// parent unloads the whole chain (Unload).
class frmChart : public QWidget {
    Q_OBJECT
    Q_PROPERTY(int HelpContextID MEMBER HelpContextID)
public:
    explicit frmChart(QWidget *parent = nullptr);
    ~frmChart() override;

    void SetParameters(ChartWindowParent *theParameters);
    ChartWindowParent *Parameters() const { return m_parameters; }

    // Fills both charts from the parent's cells, shows the chart of the parent's choice with the
    // Y axis rule of txtYAxisMax, and draws.
    void PrintChart();
    // The Y axis rule on both charts with the typed maximum; the visible chart is drawn again.
    void cmdApply_Click();
    // ChartGrid from the grid boxes on both charts, and both drawn again.
    void ApplyGrids();
    // Prints the visible chart through the print dialog (Print to File offered as PrintFile) or
    // copies it to the clipboard, in colour or black and white; the screen stays in colour. A
    // failure is shown.
    void cmdPrint_Click();
    // Really unloads the window (the parent's chain goes).
    void Unload();
    // The page's place in its sequence: its position (from 1) among the years selected, which
    // the year box lists; "Year n of N", and the paging buttons that lead somewhere enabled.
    void SetPaging(int position, const QStringList &years);

    // The visible chart: the parent's choice.
    Graph *VisibleChart() const;

    ChartChoices Choices() const;
    // Sets the choices; a changed Y axis maximum is applied at once with applyYAxis.
    void SetChoices(const ChartChoices &choices, bool applyYAxis);
    // The titles in their boxes (Top, Left, Bottom), from which the charts take them.
    void SetTopTitle(const QString &title);
    void SetAxisTitles(const QString &left, const QString &bottom);

    QPointer<frmChart> prevChart;
    QPointer<frmChart> nextChart;
    qint16 cycleNum = 0;  // the position in the selection, from 1
    QString PrintFile;  // the PDF file that the print dialog offers
    double MaxDensity = 0;
    double MaxMerchVol = 0;
    int HelpContextID = 76;

protected:
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void buildWindow();
    QLayout *buildTitlesAndYAxis();
    QBoxLayout *buildOptions();
    QLayout *buildPaging();
    void connectControls();
    void titleChanged();
    void page(bool next);
    void pageTo(int position);
    void showError(const QString &description);

    Graph *gphDensity;
    Graph *gphMerchVol;
    QLineEdit *txtGraphTitle;
    QLineEdit *txtLeftTitle;
    QLineEdit *txtBottomTitle;
    QLineEdit *txtYAxisMax;
    QPushButton *cmdApply;
    QRadioButton *optColour;
    QRadioButton *optBandW;
    QRadioButton *optPrinter;
    QRadioButton *optClipboard;
    QCheckBox *chkHorizontal;
    QCheckBox *chkVertical;
    QPushButton *cmdFirst;
    QPushButton *cmdPrev;
    QPushButton *cmdNext;
    QPushButton *cmdLast;
    QLabel *lblPage;
    QComboBox *cboYear;
    QPushButton *cmdPrint;
    QPushButton *cmdCancel;
    QPushButton *cmdHelp;

    ChartWindowParent *m_parameters = nullptr;
    UserQuestions *m_questions = nullptr;  // outlives the parent: the process's questions
    bool m_unloading = false;
    std::unique_ptr<QPrinter> m_printer;
};

}  // namespace sendrel
