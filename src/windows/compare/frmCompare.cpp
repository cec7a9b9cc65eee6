#include "windows/compare/frmCompare.h"

#include "app/TreeModel.h"
#include "base/Numbers.h"
#include "base/SafeFileName.h"
#include "base/SendrelError.h"
#include "base/ToolBox.h"
#include "base/UserQuestions.h"
#include "domain/compare/ComparisonCharts.h"
#include "domain/compare/ComparisonTables.h"
#include "domain/table/TableFile.h"
#include "domain/table/TableRender.h"
#include "graph/Graph.h"
#include "windows/common/EventHandler.h"
#include "windows/common/ExportStatus.h"
#include "windows/common/FrameHost.h"
#include "windows/common/NamedButton.h"
#include "windows/common/TableWindow.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPrintDialog>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QTabWidget>
#include <QTableWidget>
#include <QVBoxLayout>

namespace sendrel {

namespace {

QTableWidget *newGrid(QWidget *parent, const QString &name)
{
    auto *grid = new QTableWidget(parent);
    grid->setObjectName(name);
    grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid->verticalHeader()->hide();
    return grid;
}

QLineEdit *newBox(QWidget *parent, const QString &name, const QString &text)
{
    auto *box = new QLineEdit(text, parent);
    box->setObjectName(name);
    box->setMaximumWidth(70);
    return box;
}

// A table into a grid: headings with their units, the totals after the rows, the notes below.
void fillGrid(QTableWidget *grid, const DataTable &table)
{
    grid->clear();
    grid->setColumnCount(static_cast<int>(table.columns.size()));
    const QList<TableRow> rows = table.rows + table.totals;
    grid->setRowCount(static_cast<int>(rows.size()));
    QStringList headings;
    for (const TableColumn &c : table.columns)
        headings.append(c.unit.isEmpty() ? c.heading : c.heading + QLatin1Char('\n') + c.unit);
    grid->setHorizontalHeaderLabels(headings);
    for (int r = 0; r < rows.size(); ++r) {
        for (int c = 0; c < table.columns.size(); ++c) {
            auto *item = new QTableWidgetItem(TableCellText(rows[r].value(c), table.columns[c].decimals));
            item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            grid->setItem(r, c, item);
        }
    }
    grid->resizeColumnsToContents();
}

}  // namespace

frmCompare::frmCompare(TreeModel &tm, QWidget *parent)
    : QWidget(parent), m_tm(tm), m_units(UnitSystemOfSetting(tm.settings.Units)), m_printer(QPrinter::HighResolution)
{
    setObjectName(QStringLiteral("frmCompare"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Compare Runs"));

    lstRuns = new QListWidget(this);
    lstRuns->setObjectName(QStringLiteral("lstRuns"));
    lstRuns->setMaximumWidth(200);
    cboBase = new QComboBox(this);
    cboBase->setObjectName(QStringLiteral("cboBase"));
    lblMessage = new QLabel(this);
    lblMessage->setObjectName(QStringLiteral("lblMessage"));
    lblMessage->setWordWrap(true);

    tabCompare = new QTabWidget(this);
    tabCompare->setObjectName(QStringLiteral("tabCompare"));
    auto *summaryTab = new QWidget(tabCompare);
    cboMeasure = new QComboBox(summaryTab);
    cboMeasure->setObjectName(QStringLiteral("cboMeasure"));
    for (const CompareMeasure &m : CompareMeasures())
        cboMeasure->addItem(m.title());
    // Total yield of gross total volume first: standing volume alone makes every thinning look worse.
    cboMeasure->setCurrentIndex(static_cast<int>(CompareMeasures().size()) - 2);
    grdSummary = newGrid(summaryTab, QStringLiteral("grdSummary"));
    auto *summaryLayout = new QVBoxLayout(summaryTab);
    auto *measureRow = new QHBoxLayout;
    measureRow->addWidget(new QLabel(QStringLiteral("Statistic:"), summaryTab));
    measureRow->addWidget(cboMeasure, 1);
    summaryLayout->addLayout(measureRow);
    summaryLayout->addWidget(grdSummary, 1);
    tabCompare->addTab(summaryTab, QStringLiteral("Summary"));

    auto *tableTab = new QWidget(tabCompare);
    cboYear = new QComboBox(tableTab);
    cboYear->setObjectName(QStringLiteral("cboYear"));
    txtClassStart = newBox(tableTab, QStringLiteral("txtClassStart"), DefaultText(tm.settings.ClassesStart));
    txtClassWidth = newBox(tableTab, QStringLiteral("txtClassWidth"), DefaultText(tm.settings.ClassesWidth));
    txtNumofClasses = newBox(tableTab, QStringLiteral("txtNumofClasses"), DefaultText(tm.settings.NumClasses));
    optStand = new QRadioButton(QStringLiteral("Stand table"), tableTab);
    optStand->setObjectName(QStringLiteral("optStand"));
    optStand->setChecked(true);
    optStock = new QRadioButton(QStringLiteral("Stock table"), tableTab);
    optStock->setObjectName(QStringLiteral("optStock"));
    cboTable = new QComboBox(tableTab);
    cboTable->setObjectName(QStringLiteral("cboTable"));
    grdTable = newGrid(tableTab, QStringLiteral("grdTable"));
    auto *choices = new QHBoxLayout;
    for (QWidget *w : std::initializer_list<QWidget *>{
             new QLabel(QStringLiteral("Year:"), tableTab), cboYear, new QLabel(QStringLiteral("Starting:"), tableTab), txtClassStart,
             new QLabel(QStringLiteral("Class width:"), tableTab), txtClassWidth, new QLabel(QStringLiteral("# of Classes:"), tableTab),
             txtNumofClasses, optStand, optStock, cboTable})
        choices->addWidget(w);
    auto *tableLayout = new QVBoxLayout(tableTab);
    tableLayout->addLayout(choices);
    tableLayout->addWidget(grdTable, 1);
    tabCompare->addTab(tableTab, QStringLiteral("Difference table"));

    auto *chartTab = new QWidget(tabCompare);
    cboChart = new QComboBox(chartTab);
    cboChart->setObjectName(QStringLiteral("cboChart"));
    for (const CompareStatistic &s : CompareStatistics())
        cboChart->addItem(s.titleIn(m_units));
    cboChart->addItem(QStringLiteral("Density diagram"));
    cboChart->setCurrentIndex(CompareStatisticIndex(QStringLiteral("gtv")));
    chkDifference = new QCheckBox(QStringLiteral("Difference from the base"), chartTab);
    chkDifference->setObjectName(QStringLiteral("chkDifference"));
    gphCompare = new Graph(chartTab);
    gphCompare->setObjectName(QStringLiteral("gphCompare"));
    gphCompare->setMinimumHeight(300);
    auto *chartRow = new QHBoxLayout;
    chartRow->addWidget(cboChart, 1);
    chartRow->addWidget(chkDifference);
    auto *chartLayout = new QVBoxLayout(chartTab);
    chartLayout->addLayout(chartRow);
    chartLayout->addWidget(gphCompare, 1);
    tabCompare->addTab(chartTab, QStringLiteral("Chart"));

    cmdExport = NamedButton(QStringLiteral("Export..."), QStringLiteral("cmdExport"), this);
    cmdPrint = NamedButton(QStringLiteral("Print"), QStringLiteral("cmdPrint"), this);
    cmdHelp = NamedButton(QStringLiteral("Help"), QStringLiteral("cmdHelp"), this);
    cmdClose = NamedButton(QStringLiteral("Close"), QStringLiteral("cmdClose"), this);

    auto *side = new QVBoxLayout;
    side->addWidget(new QLabel(QStringLiteral("Runs (2 to 8):"), this));
    side->addWidget(lstRuns, 1);
    side->addWidget(new QLabel(QStringLiteral("Base:"), this));
    side->addWidget(cboBase);
    auto *main = new QHBoxLayout;
    main->addLayout(side);
    auto *right = new QVBoxLayout;
    right->addWidget(lblMessage);
    right->addWidget(tabCompare, 1);
    main->addLayout(right, 1);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdPrint);
    buttons->addWidget(cmdExport);
    buttons->addStretch();
    buttons->addWidget(cmdHelp);
    buttons->addWidget(cmdClose);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(main, 1);
    layout->addLayout(buttons);
    resize(1000, 640);

    connect(lstRuns, &QListWidget::itemChanged, this, [this] {
        if (!m_filling)
            RunHandler(m_tm.questions, [this] { compare(); });
    });
    connect(cboBase, &QComboBox::currentIndexChanged, this, [this] {
        if (!m_filling)
            RunHandler(m_tm.questions, [this] { compare(); });
    });
    connect(cboMeasure, &QComboBox::currentIndexChanged, this, [this] { showSummaryTable(); });
    for (QLineEdit *box : {txtClassStart, txtClassWidth, txtNumofClasses})
        connect(box, &QLineEdit::editingFinished, this, [this] { RunHandler(m_tm.questions, [this] { showDifferenceTables(); }); });
    connect(cboYear, &QComboBox::currentIndexChanged, this, [this] {
        if (!m_filling)
            RunHandler(m_tm.questions, [this] { showDifferenceTables(); });
    });
    connect(optStand, &QRadioButton::toggled, this, [this] { RunHandler(m_tm.questions, [this] { showDifferenceTables(); }); });
    connect(cboTable, &QComboBox::currentIndexChanged, this, [this] { showDifferenceTable(); });
    connect(cboChart, &QComboBox::currentIndexChanged, this, [this] { showChart(); });
    connect(chkDifference, &QCheckBox::toggled, this, [this] { showChart(); });
    connect(cmdExport, &QPushButton::clicked, this, &frmCompare::cmdExport_Click);
    connect(cmdPrint, &QPushButton::clicked, this, &frmCompare::cmdPrint_Click);
    connect(cmdHelp, &QPushButton::clicked, this, [this] {
        if (ShowHelpTopic)
            ShowHelpTopic(HelpContextID);
    });
    connect(cmdClose, &QPushButton::clicked, this, &QWidget::close);
}

void frmCompare::ShowRuns(const QStringList &runIds)
{
    m_filling = true;
    lstRuns->clear();
    for (const RunRow &row : m_tm.db.runs()) {
        if (row.key.kind != RunKind::Standing)
            continue;
        auto *item = new QListWidgetItem(row.key.runId, lstRuns);
        item->setFlags(Qt::ItemIsUserCheckable | Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        const bool wanted = std::any_of(runIds.cbegin(), runIds.cend(),
                                        [&row](const QString &id) { return id.compare(row.key.runId, Qt::CaseInsensitive) == 0; });
        item->setCheckState(wanted ? Qt::Checked : Qt::Unchecked);
    }
    m_filling = false;
    compare();
}

QStringList frmCompare::checkedRuns() const
{
    QStringList runs;
    for (int i = 0; i < lstRuns->count(); ++i) {
        if (lstRuns->item(i)->checkState() == Qt::Checked)
            runs.append(lstRuns->item(i)->text());
    }
    return runs;
}

void frmCompare::compare()
{
    const QStringList runs = checkedRuns();
    const QString base = runs.contains(cboBase->currentText()) ? cboBase->currentText() : QString();
    m_filling = true;
    cboBase->clear();
    cboBase->addItems(runs);
    cboBase->setCurrentIndex(base.isEmpty() ? 0 : static_cast<int>(runs.indexOf(base)));
    m_filling = false;
    m_comparison.reset();
    m_summary = TableDocument();
    m_difference = TableDocument();
    if (runs.size() < kFewestComparedRuns || runs.size() > kMostComparedRuns) {
        lblMessage->setText(QStringLiteral("Check 2 to 8 runs to compare; %1 checked.").arg(runs.size()));
    } else {
        try {
            m_comparison = ReadComparison(m_tm.db, runs, base, m_units);
            m_summary = SummaryComparisonDocument(*m_comparison);
            lblMessage->setText(QStringLiteral("Differences from %1, by calendar year.").arg(m_comparison->baseRun().run.runId));
        } catch (const SendrelError &e) {
            // A state of the choice, not an event's failure: said where the tables would be.
            lblMessage->setText(e.description());
        }
    }
    setWindowTitle(QStringLiteral("Compare Runs") + (m_comparison ? QStringLiteral(": ") + runs.join(QStringLiteral(", ")) : QString()));
    cmdExport->setEnabled(m_comparison.has_value());
    cmdPrint->setEnabled(m_comparison.has_value());
    showSummaryTable();
    m_filling = true;
    const QString year = cboYear->currentText();
    cboYear->clear();
    if (m_comparison) {
        for (const qint32 y : m_comparison->years)
            cboYear->addItem(QString::number(y));
        cboYear->setCurrentIndex(std::max(0, cboYear->findText(year)));
    }
    m_filling = false;
    showDifferenceTables();
    showChart();
}

void frmCompare::showSummaryTable()
{
    const int measure = cboMeasure->currentIndex();
    if (m_summary.tables.isEmpty() || measure < 0) {
        grdSummary->clear();
        grdSummary->setRowCount(0);
        grdSummary->setColumnCount(0);
        return;
    }
    fillGrid(grdSummary, m_summary.tables.at(measure));
}

void frmCompare::showDifferenceTables()
{
    m_difference = TableDocument();
    if (m_comparison && cboYear->currentIndex() >= 0) {
        const ClassEntryCheck check = m_layout.SetClasses(txtClassStart->text(), txtClassWidth->text(), txtNumofClasses->text());
        if (!check.passed()) {
            lblMessage->setText(check.describe());
        } else {
            m_difference = DifferenceTableDocument(m_tm.db, *m_comparison, m_layout, cboYear->currentText().toInt(), optStand->isChecked());
        }
    }
    const int shown = std::max(0, cboTable->currentIndex());
    const QSignalBlocker quiet(cboTable);
    cboTable->clear();
    for (const DataTable &t : std::as_const(m_difference.tables))
        cboTable->addItem(t.name);
    cboTable->setCurrentIndex(std::min(shown, static_cast<int>(cboTable->count()) - 1));
    showDifferenceTable();
}

void frmCompare::showDifferenceTable()
{
    const int table = cboTable->currentIndex();
    if (table < 0 || table >= m_difference.tables.size()) {
        grdTable->clear();
        grdTable->setRowCount(0);
        grdTable->setColumnCount(0);
        return;
    }
    fillGrid(grdTable, m_difference.tables.at(table));
}

void frmCompare::showChart()
{
    ChartData chart;
    if (m_comparison) {
        const int which = cboChart->currentIndex();
        chart = which < CompareStatistics().size() ? CompareChart(*m_comparison, which, chkDifference->isChecked())
                                                   : DensityDiagram(*m_comparison, m_tm.settings.MaxSDI);
    }
    chkDifference->setEnabled(cboChart->currentIndex() < CompareStatistics().size());
    gphCompare->setChartData(chart);
    gphCompare->ChartDraw(2);
}

TableDocument frmCompare::everyTable() const
{
    TableDocument all = m_summary;
    all.tables += m_difference.tables;
    return all;
}

void frmCompare::cmdExport_Click()
{
    RunHandler(m_tm.questions, [this] {
        if (!m_comparison)
            return;
        const QString stem = SafeFileStem(m_comparison->runIds().join(QLatin1Char('_'))) + QStringLiteral("_Compare");
        const QString path = m_tm.questions.saveFile(ExportFileRequest(QStringLiteral("Export Comparison"), m_tm.ReportFolder(), stem));
        if (path.isEmpty())
            return;
        // A workbook takes every table, a sheet each; a CSV file holds tables of one shape, so the
        // stand or stock tables go beside it under a name of their own.
        SaveExport(everyTable(), path, m_tm.settings.CsvDefinitions);
        if (ExportFormatOf(path) == TableFormat::Csv && !m_difference.tables.isEmpty()) {
            const QFileInfo info(path);
            const QString table = (optStand->isChecked() ? QStringLiteral("Stand") : QStringLiteral("Stock")) + cboYear->currentText();
            SaveExport(m_difference,
                       info.path() + QLatin1Char('/') + info.completeBaseName() + QLatin1Char('-') + table + QStringLiteral(".csv"),
                       m_tm.settings.CsvDefinitions);
        }
        ShowExportedPath(this, path);
    });
}

void frmCompare::cmdPrint_Click()
{
    RunHandler(m_tm.questions, [this] {
        if (!m_comparison)
            return;
        m_printer.setPageOrientation(QPageLayout::Landscape);
        const bool go = m_printDialog ? m_printDialog(m_printer, this) : QPrintDialog(&m_printer, this).exec() == QDialog::Accepted;
        if (!go)
            return;
        // Every table, then the chart shown on a page of its own.
        PrintTablesAndChart(m_printer, HtmlText(everyTable()),
                            gphCompare->toImage(Graph::kFileSize, m_printer.colorMode() == QPrinter::Color));
    });
}

frmCompare *OpenCompareWindow(TreeModel &tm, FrameHost &frame, const QStringList &runIds)
{
    return OpenInFrame(frame, new frmCompare(tm), [&runIds](frmCompare *window) { window->ShowRuns(runIds); });
}

}  // namespace sendrel
