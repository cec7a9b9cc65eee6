#pragma once

#include "domain/summary/StandSummary.h"

#include <QPrinter>
#include <QWidget>

#include <functional>

class QComboBox;
class QPushButton;
class QTableWidget;

namespace sendrel {

struct TreeModel;
class FrameHost;
class Graph;

// The stand summary of one run: the table of its cycle years, a chart of any one column over
// the years, and Print, Export..., Help. It reads the run once and shows those numbers for as
// long as it lives. A child window of the frame beside the report windows: it takes no place of
// the frame and is not counted among the report windows.
class frmStandSummary : public QWidget {
    Q_OBJECT
    Q_PROPERTY(int HelpContextID MEMBER HelpContextID)
public:
    explicit frmStandSummary(TreeModel &tm, QWidget *parent = nullptr);

    // Reads the summary of the run and shows it. Failures (the run gone, the database) pass on.
    void ShowRun(const RunKey &run);
    const StandSummary &Summary() const { return m_summary; }

    // The column of the table that the chart shows (from 2: Year and Cycle are not charted).
    void ChooseColumn(int column);

    void cmdPrint_Click();
    void cmdExport_Click();

    // Opens the help at a topic; the frame's help on the desktop.
    std::function<void(int topic)> ShowHelpTopic;
    // How the print dialog is put: it may change the printer and gives false when the user
    // cancels. Tests print to a PDF file here.
    using PrintDialogFn = std::function<bool(QPrinter &printer, QWidget *parent)>;
    void setPrintDialog(PrintDialogFn dialog) { m_printDialog = std::move(dialog); }
    QPrinter &printer() { return m_printer; }

    int HelpContextID = 90;

private:
    QTableWidget *grdSummary;
    QComboBox *cboColumn;
    Graph *gphSummary;
    QPushButton *cmdPrint;
    QPushButton *cmdExport;
    QPushButton *cmdHelp;
    QPushButton *cmdClose;

    TreeModel &m_tm;
    StandSummary m_summary;
    QPrinter m_printer;
    PrintDialogFn m_printDialog;
};

// Opens the summary window of a run in the frame, with the hourglass while it reads. Fails,
// with no window made, when the run cannot be read.
frmStandSummary *OpenStandSummaryWindow(TreeModel &tm, FrameHost &frame, const RunKey &run);

}  // namespace sendrel
