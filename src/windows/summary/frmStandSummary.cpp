#include "windows/summary/frmStandSummary.h"

#include "app/TreeModel.h"
#include "base/SendrelError.h"
#include "base/UserQuestions.h"
#include "domain/summary/StandSummaryTable.h"
#include "domain/table/TableFile.h"
#include "domain/table/TableRender.h"
#include "graph/Graph.h"
#include "windows/common/ChildWindow.h"
#include "windows/common/EventHandler.h"
#include "windows/common/ExportStatus.h"
#include "windows/common/FrameHost.h"
#include "windows/common/NamedButton.h"
#include "windows/common/ReportWindowHost.h"
#include "windows/common/TableWindow.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QImage>
#include <QLabel>
#include <QPrintDialog>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTableWidget>
#include <QVBoxLayout>

namespace sendrel {

frmStandSummary::frmStandSummary(TreeModel &tm, QWidget *parent) : QWidget(parent), m_tm(tm), m_printer(QPrinter::HighResolution)
{
    setObjectName(QStringLiteral("frmStandSummary"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Stand Summary"));

    grdSummary = new QTableWidget(this);
    grdSummary->setObjectName(QStringLiteral("grdSummary"));
    grdSummary->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grdSummary->setSelectionBehavior(QAbstractItemView::SelectColumns);
    grdSummary->verticalHeader()->hide();
    grdSummary->verticalHeader()->setDefaultSectionSize(grdSummary->fontMetrics().height() + 6);
    cboColumn = new QComboBox(this);
    cboColumn->setObjectName(QStringLiteral("cboColumn"));
    auto *chartLabel = new QLabel(QStringLiteral("&Chart of:"), this);
    chartLabel->setObjectName(QStringLiteral("lblColumn"));
    chartLabel->setBuddy(cboColumn);
    gphSummary = new Graph(this);
    gphSummary->setObjectName(QStringLiteral("gphSummary"));
    gphSummary->setKind(ChartData::Kind::TimeLines);
    gphSummary->setMinimumHeight(260);

    cmdPrint = NamedButton(QStringLiteral("Print"), QStringLiteral("cmdPrint"), this);
    cmdExport = NamedButton(QStringLiteral("Export..."), QStringLiteral("cmdExport"), this);
    cmdHelp = NamedButton(QStringLiteral("Help"), QStringLiteral("cmdHelp"), this);
    cmdClose = NamedButton(QStringLiteral("Close"), QStringLiteral("cmdClose"), this);

    auto *choice = new QHBoxLayout;
    choice->addWidget(chartLabel);
    choice->addWidget(cboColumn, 1);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdPrint);
    buttons->addWidget(cmdExport);
    buttons->addStretch();
    buttons->addWidget(cmdHelp);
    buttons->addWidget(cmdClose);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(grdSummary, 1);
    layout->addLayout(choice);
    layout->addWidget(gphSummary, 1);
    layout->addLayout(buttons);
    resize(900, 640);

    connect(cboColumn, &QComboBox::currentIndexChanged, this, [this](int index) {
        if (index >= 0)
            RunHandler(m_tm.questions, [this, index] { ChooseColumn(index + 2); });
    });
    // A click on a column's heading charts that column.
    connect(grdSummary->horizontalHeader(), &QHeaderView::sectionClicked, this, [this](int section) {
        if (section >= 2)
            cboColumn->setCurrentIndex(section - 2);
    });
    connect(cmdPrint, &QPushButton::clicked, this, &frmStandSummary::cmdPrint_Click);
    connect(cmdExport, &QPushButton::clicked, this, &frmStandSummary::cmdExport_Click);
    connect(cmdHelp, &QPushButton::clicked, this, [this] {
        if (ShowHelpTopic)
            ShowHelpTopic(HelpContextID);
    });
    connect(cmdClose, &QPushButton::clicked, this, [this] { CloseChildWindow(this); });
}

void frmStandSummary::ShowRun(const RunKey &run)
{
    m_summary = ReadStandSummary(m_tm.db, run, SdiMethodOfSetting(m_tm.settings.SdiMethod));
    const UnitSystem units = UnitSystemOfSetting(m_tm.settings.Units);
    setWindowTitle(QStringLiteral("Stand Summary: ") + run.captionName());

    const QList<SummaryColumn> columns = StandSummaryColumns(run.kind, units, m_summary.sdiMethod);
    grdSummary->clear();
    grdSummary->setColumnCount(static_cast<int>(columns.size()));
    grdSummary->setRowCount(static_cast<int>(m_summary.rows.size()));
    QStringList headings;
    for (const SummaryColumn &c : columns)
        headings.append(c.group.isEmpty() ? c.name : c.group + QLatin1Char('\n') + c.name + QLatin1Char('\n') + c.unit);
    grdSummary->setHorizontalHeaderLabels(headings);
    const TableDocument document = StandSummaryDocument(m_summary, units);
    const DataTable &table = document.tables.first();
    for (int r = 0; r < table.rows.size(); ++r) {
        for (int c = 0; c < table.columns.size(); ++c) {
            auto *item = new QTableWidgetItem(TableCellText(table.rows[r].value(c), table.columns[c].decimals));
            item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            grdSummary->setItem(r, c, item);
        }
    }
    grdSummary->resizeColumnsToContents();

    // Gross total volume before harvest (a harvested run: harvested) is charted first.
    const QSignalBlocker quiet(cboColumn);
    cboColumn->clear();
    int first = 0;
    for (int c = 2; c < columns.size(); ++c) {
        cboColumn->addItem(columns[c].header());
        if (columns[c].name == QLatin1String("GTV") && first == 0)
            first = c - 2;
    }
    cboColumn->setCurrentIndex(first);
    ChooseColumn(first + 2);
}

void frmStandSummary::ChooseColumn(int column)
{
    gphSummary->setChartData(StandSummaryChart(m_summary, column, UnitSystemOfSetting(m_tm.settings.Units)));
    gphSummary->ChartDraw(2);
}

void frmStandSummary::cmdExport_Click()
{
    RunHandler(m_tm.questions, [this] {
        // The table shown is read when the window opened: another program may have deleted the run since.
        if (!m_tm.db.runExists(m_summary.run)) {
            m_tm.questions.ShowInfoMessage(QStringLiteral("Run %1 is no longer in the database: another application has deleted it. "
                                                          "There is nothing to export.")
                                               .arg(m_summary.run.displayName()));
            return;
        }
        const QString path = m_tm.questions.saveFile(ExportFileRequest(QStringLiteral("Export Stand Summary"), m_tm.ReportFolder(),
                                                                       ExportFileStem(m_summary.run, QStringLiteral("Summary"))));
        if (path.isEmpty())
            return;
        SaveExport(StandSummaryDocument(m_summary, UnitSystemOfSetting(m_tm.settings.Units)), path, m_tm.settings.CsvDefinitions);
        ShowExportedPath(this, path);
    });
}

void frmStandSummary::cmdPrint_Click()
{
    RunHandler(m_tm.questions, [this] {
        m_printer.setPageOrientation(QPageLayout::Landscape);
        const bool go = m_printDialog ? m_printDialog(m_printer, this) : QPrintDialog(&m_printer, this).exec() == QDialog::Accepted;
        if (!go)
            return;
        // The table, then the chart on a page of its own, as the window shows it.
        PrintTablesAndChart(m_printer, HtmlText(StandSummaryDocument(m_summary, UnitSystemOfSetting(m_tm.settings.Units))),
                            gphSummary->toImage(Graph::kFileSize, m_printer.colorMode() == QPrinter::Color));
    });
}

frmStandSummary *OpenStandSummaryWindow(TreeModel &tm, FrameHost &frame, const RunKey &run)
{
    return OpenInFrame(frame, new frmStandSummary(tm), [&run](frmStandSummary *window) { window->ShowRun(run); });
}

}  // namespace sendrel
