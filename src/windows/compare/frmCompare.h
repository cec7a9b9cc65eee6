#pragma once

#include "domain/compare/Comparison.h"
#include "domain/standstock/ClassLayout.h"
#include "domain/table/TableModel.h"

#include <QPrinter>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <optional>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QRadioButton;
class QTabWidget;
class QTableWidget;

namespace sendrel {

struct TreeModel;
class FrameHost;
class Graph;

// Runs side by side: the standing runs of the database to check (2 to 8), the base among them, and
// three tabs: the summary comparison of one statistic, the stand or stock table of one year with
// the differences from the base, and the charts. Export... writes every table, Print prints them
// with the chart. A child window of the frame, not counted among the report windows. It reads the
// runs when the checked runs or the base change, and shows those numbers until then.
class frmCompare : public QWidget {
    Q_OBJECT
    Q_PROPERTY(int HelpContextID MEMBER HelpContextID)
public:
    explicit frmCompare(TreeModel &tm, QWidget *parent = nullptr);

    // Lists the standing runs and checks those of runIds (any kind's Run Id), then compares them.
    void ShowRuns(const QStringList &runIds);
    // The comparison shown; none while fewer than 2 or more than 8 runs are checked, or the runs
    // checked were refused (lblMessage says why).
    const std::optional<Comparison> &Shown() const { return m_comparison; }
    const TableDocument &DifferenceTables() const { return m_difference; }

    void cmdExport_Click();
    void cmdPrint_Click();

    std::function<void(int topic)> ShowHelpTopic;
    using PrintDialogFn = std::function<bool(QPrinter &printer, QWidget *parent)>;
    void setPrintDialog(PrintDialogFn dialog) { m_printDialog = std::move(dialog); }
    QPrinter &printer() { return m_printer; }

    int HelpContextID = 95;

private:
    QStringList checkedRuns() const;
    void compare();
    void showSummaryTable();
    void showDifferenceTables();
    void showDifferenceTable();
    void showChart();
    // The window's tables as one document: the summary's, then the stand or stock tables shown.
    TableDocument everyTable() const;

    TreeModel &m_tm;
    const UnitSystem m_units;  // the setting's when the window opened, kept while it is open
    std::optional<Comparison> m_comparison;
    TableDocument m_summary;
    TableDocument m_difference;
    ClassLayout m_layout;
    QPrinter m_printer;
    PrintDialogFn m_printDialog;
    bool m_filling = false;

    QListWidget *lstRuns;
    QComboBox *cboBase;
    QLabel *lblMessage;
    QTabWidget *tabCompare;
    QComboBox *cboMeasure;
    QTableWidget *grdSummary;
    QComboBox *cboYear;
    QLineEdit *txtClassStart;
    QLineEdit *txtClassWidth;
    QLineEdit *txtNumofClasses;
    QRadioButton *optStand;
    QRadioButton *optStock;
    QComboBox *cboTable;
    QTableWidget *grdTable;
    QComboBox *cboChart;
    QCheckBox *chkDifference;
    Graph *gphCompare;
    QPushButton *cmdExport;
    QPushButton *cmdPrint;
    QPushButton *cmdHelp;
    QPushButton *cmdClose;
};

// Opens a comparison window in the frame with the runs of runIds checked. Fails, with no window
// made, when the runs cannot be listed.
frmCompare *OpenCompareWindow(TreeModel &tm, FrameHost &frame, const QStringList &runIds);

}  // namespace sendrel
