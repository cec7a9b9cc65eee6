#include "windows/standstock/frmParameters.h"

#include "windows/standstock/ExportStandStockTables.h"
#include "windows/standstock/ViewStandStockReport.h"

#include "app/GameDB.h"
#include "app/TreeModel.h"
#include "base/Numbers.h"
#include "base/SendrelError.h"
#include "base/Settings.h"
#include "domain/standstock/ChartPages.h"
#include "domain/standstock/ClassCharts.h"
#include "graph/Graph.h"
#include "windows/common/ChildFrame.h"
#include "windows/common/ChildWindow.h"
#include "windows/common/ReportWindowHost.h"
#include "windows/output/ChartPrinting.h"
#include "windows/standstock/ClassRulerView.h"
#include "windows/standstock/ViewStandStockReport.h"
#include "windows/standstock/frmRange.h"

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace sendrel {

namespace {

const QString kPleaseWait = QStringLiteral("Please wait...");

// What a page takes from the page the user comes from: its place, the output options, the
// grids and the typed Y axis maximum; a page already made applies that maximum at once.
// Titles edited on one page stay there.
void CarryOver(frmChart &from, frmChart &to, bool applyYAxis)
{
    to.SetChoices(from.Choices(), applyYAxis);
    ChildFrame(&to)->move(ChildFrame(&from)->pos());
}

QLabel *faultLabel(const QString &name, QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setObjectName(name);
    label->setStyleSheet(QStringLiteral("color: #b00000"));
    return label;
}

}  // namespace

template <typename F>
void frmParameters::handled(F &&handler)
{
    try {
        handler();
    } catch (const SendrelError &e) {
        setPointer(kPointerDefault);
        m_asking = true;
        m_tm.questions.ShowErrorMessage(e.description());
        m_asking = false;
    }
}

frmParameters::frmParameters(TreeModel &tm, ReportWindowHost &host, QWidget *parent)
    : QWidget(parent), Data(Layout, tm.db.NumSpecies), m_tm(tm), m_host(host)
{
    initialise();
}

frmParameters::frmParameters(TreeModel &tm, std::unique_ptr<ReportWindowHost> host, QWidget *parent)
    : QWidget(parent), Data(Layout, tm.db.NumSpecies), m_tm(tm), m_ownHost(std::move(host)), m_host(*m_ownHost)
{
    initialise();
}

frmRange *frmParameters::RangeEditor() const
{
    return m_range;
}

void frmParameters::initialise()
{
    setObjectName(QStringLiteral("frmParameters"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Parameters"));
    buildWindow();
    m_host.AddChildWindow(this);
    hookActivation();
    Form_Load();
}

// A window taken away without a close event goes with its frame, at the end of the process:
// frame and browser may be half gone already, so the unload steps run only on a close. Its
// chart windows, going with the same frame, let go of it.
frmParameters::~frmParameters()
{
    for (frmChart *chart = FirstChart; chart; chart = chart->nextChart)
        chart->SetParameters(nullptr);
}

void frmParameters::buildWindow()
{
    setMouseTracking(true);
    buildClassBoxes();
    buildYears();
    buildButtons();
    buildSample();
    layOutWindow();
    connectControls();
}

void frmParameters::buildClassBoxes()
{
    SSPanel3 = new QGroupBox(QStringLiteral("  DBH Classes"), this);
    SSPanel3->setObjectName(QStringLiteral("SSPanel3"));
    SSPanel3->setMouseTracking(true);
    txtClassStart = new QLineEdit(SSPanel3);
    txtClassStart->setObjectName(QStringLiteral("txtClassStart"));
    txtClassWidth = new QLineEdit(SSPanel3);
    txtClassWidth->setObjectName(QStringLiteral("txtClassWidth"));
    txtNumofClasses = new QLineEdit(SSPanel3);
    txtNumofClasses->setObjectName(QStringLiteral("txtNumofClasses"));
    lblClassStartError = faultLabel(QStringLiteral("lblClassStartError"), SSPanel3);
    lblClassWidthError = faultLabel(QStringLiteral("lblClassWidthError"), SSPanel3);
    lblNumClassesError = faultLabel(QStringLiteral("lblNumClassesError"), SSPanel3);
    lblDbhError = faultLabel(QStringLiteral("lblDbhError"), SSPanel3);
    {
        auto *grid = new QGridLayout(SSPanel3);
        grid->setHorizontalSpacing(8);
        auto row = [&](int r, const QString &caption, const QString &name, QLineEdit *box, QLabel *fault) {
            auto *label = new QLabel(caption, SSPanel3);
            label->setObjectName(name);
            label->setBuddy(box);
            box->setFixedWidth(64);
            grid->addWidget(label, r, 0);
            grid->addWidget(box, r, 1);
            grid->addWidget(fault, r, 2);
        };
        // The fault's meaning stands over the boxes; the allowed values stand beside them.
        grid->addWidget(lblDbhError, 0, 0, 1, 3);
        row(1, QStringLiteral("Starting:"), QStringLiteral("lblClassStart"), txtClassStart, lblClassStartError);
        row(2, QStringLiteral("Class width:"), QStringLiteral("lblClassWidth"), txtClassWidth, lblClassWidthError);
        row(3, QStringLiteral("# 0f Classes:"), QStringLiteral("lblNumofClasses"), txtNumofClasses, lblNumClassesError);
        // Room for the longest allowed range, so that the panel doesn't jump while typing.
        grid->setColumnMinimumWidth(2, fontMetrics().horizontalAdvance(kClassWidthRange) + 8);
        grid->setRowMinimumHeight(0, fontMetrics().height() + 2);
        grid->setRowStretch(4, 1);
    }
}

void frmParameters::buildYears()
{
    SSPanel4 = new QGroupBox(QStringLiteral("  Reporting Years"), this);
    SSPanel4->setObjectName(QStringLiteral("SSPanel4"));
    SSPanel4->setMouseTracking(true);
    lstCycles = new QListWidget(SSPanel4);
    lstCycles->setObjectName(QStringLiteral("lstCycles"));
    lstCycles->setSelectionMode(QAbstractItemView::MultiSelection);
    {
        auto *box = new QVBoxLayout(SSPanel4);
        auto *label = new QLabel(QStringLiteral("Select year(s) to display."), SSPanel4);
        label->setObjectName(QStringLiteral("lblCycles"));
        box->addWidget(label);
        box->addWidget(lstCycles);
    }
}

void frmParameters::buildButtons()
{
    cmdPrintCharts = new QPushButton(QStringLiteral("View Charts"), this);
    cmdPrintCharts->setObjectName(QStringLiteral("cmdPrintCharts"));
    cmdPrintReport = new QPushButton(QStringLiteral("View Reports"), this);
    cmdPrintReport->setObjectName(QStringLiteral("cmdPrintReport"));
    cmdExport = new QPushButton(QStringLiteral("Export..."), this);
    cmdExport->setObjectName(QStringLiteral("cmdExport"));
    cmdOK = new QPushButton(QStringLiteral("Close"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdHelp = new QPushButton(QStringLiteral("Help"), this);
    cmdHelp->setObjectName(QStringLiteral("cmdHelp"));
}

// The sample chart of the first selected year, stand or stock table.
void frmParameters::buildSample()
{
    SSPanel5 = new QWidget(this);
    SSPanel5->setObjectName(QStringLiteral("SSPanel5"));
    fraCycle = new QGroupBox(QStringLiteral("Sample for year:"), SSPanel5);
    fraCycle->setObjectName(QStringLiteral("fraCycle"));
    optDensity = new QRadioButton(QStringLiteral("Stand Table"), fraCycle);
    optDensity->setObjectName(QStringLiteral("optDensity"));
    optMerchVol = new QRadioButton(QStringLiteral("Stock Table"), fraCycle);
    optMerchVol->setObjectName(QStringLiteral("optMerchVol"));
    optDensity->setChecked(true);
    cmdPlot = new QPushButton(QStringLiteral("Refresh"), fraCycle);
    cmdPlot->setObjectName(QStringLiteral("cmdPlot"));
    gphDensity = new Graph(fraCycle);
    gphDensity->setObjectName(QStringLiteral("gphDensity"));
    gphMerchVol = new Graph(fraCycle);
    gphMerchVol->setObjectName(QStringLiteral("gphMerchVol"));
    SetTitles(*gphDensity, SampleChartTitles(true));
    SetTitles(*gphMerchVol, SampleChartTitles(false));
    for (Graph *g : {gphDensity, gphMerchVol}) {
        g->setKind(ChartData::Kind::ClassBars);
        g->setMinimumSize(440, 260);
    }
    gphMerchVol->Visible(false);
    {
        auto *options = new QHBoxLayout;
        options->addWidget(optDensity);
        options->addWidget(optMerchVol);
        options->addStretch();
        options->addWidget(cmdPlot);
        auto *box = new QVBoxLayout(fraCycle);
        box->addLayout(options);
        box->addWidget(gphDensity, 1);
        box->addWidget(gphMerchVol, 1);
        auto *panel = new QVBoxLayout(SSPanel5);
        panel->setContentsMargins(0, 0, 0, 0);
        panel->addWidget(fraCycle);
    }
}

// Boxes and years above, the buttons beside them, the sample and the ruler below.
void frmParameters::layOutWindow()
{
    m_ruler = new ClassRulerView(Ruler, this);

    auto *buttons = new QVBoxLayout;
    buttons->addWidget(cmdPrintCharts);
    buttons->addWidget(cmdPrintReport);
    buttons->addWidget(cmdExport);
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdHelp);
    auto *top = new QHBoxLayout;
    top->addWidget(SSPanel3);
    top->addWidget(SSPanel4, 1);
    top->addLayout(buttons);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(SSPanel5, 1);
    layout->addWidget(m_ruler);
    SSPanel4->setMaximumHeight(SSPanel3->sizeHint().height() + 20);
    lstCycles->setMinimumHeight(60);
    // Half of a maximised frame on a 1366-pixel screen: the right-hand place shows it whole.
    resize(664, 640);
}

void frmParameters::connectControls()
{
    for (QWidget *w : {static_cast<QWidget *>(m_ruler), static_cast<QWidget *>(SSPanel3), static_cast<QWidget *>(SSPanel4)})
        w->installEventFilter(this);

    for (QLineEdit *box : {txtClassStart, txtClassWidth, txtNumofClasses})
        connect(box, &QLineEdit::textChanged, this, [this] { SetClasses(); });
    connect(optDensity, &QRadioButton::toggled, this, [this](bool on) { ChooseDensity(on); });
    connect(cmdPlot, &QPushButton::clicked, this, [this] { handled([this] { PlotClick(); }); });
    connect(cmdPrintCharts, &QPushButton::clicked, this, &frmParameters::cmdPrintCharts_Click);
    connect(cmdPrintReport, &QPushButton::clicked, this, [this] {
        m_asking = true;
        ViewStandStockReport(m_tm, this, This_RunId, This_SorH, This_RunDesc, optDensity->isChecked(), *lstCycles, Layout, Data,
                             [this](int p) { setPointer(p); });
        m_asking = false;
    });
    connect(cmdExport, &QPushButton::clicked, this, [this] {
        m_asking = true;
        ExportStandStockTables(m_tm, {This_RunId, KindOfText(This_SorH)}, optDensity->isChecked(), *lstCycles, Layout, Data,
                               [this](int p) { setPointer(p); });
        m_asking = false;
    });
    connect(cmdOK, &QPushButton::clicked, this, [this] { CloseChildWindow(this); });
    connect(cmdHelp, &QPushButton::clicked, this, [this] { m_host.ShowHelpTopic(HelpContextID); });

    for (int i = 0; i < ClassRulerView::kPanels; ++i) {
        ClassPanel *p = m_ruler->SSPanel2(i);
        connect(p, &ClassPanel::Pressed, this, &frmParameters::panelPressed);
        connect(p, &ClassPanel::Moved, this, &frmParameters::panelMoved);
        connect(p, &ClassPanel::Released, this, &frmParameters::panelReleased);
    }
}

void frmParameters::Form_Load()
{
    m_host.AddOpenWindow();
    // A place in the frame: the left one if free; the right one only on a start by hand, since
    // with a run on the command line this window is all there is.
    if (!m_host.LeftForm())
        m_host.LeftForm() = this;
    else if (!m_host.RightForm() && !m_tm.RunOnCommandLine)
        m_host.RightForm() = this;

    HelpContextID = 76;
    bInChange = false;
    bDBH_Change = false;
    bMouseMove = false;
    bChartsCancelled = false;

    m_range = new frmRange;
    m_host.AddChildWindow(m_range);
    // Without a frame it floats above this window, and goes with it.
    if (!m_range->parentWidget())
        m_range->setParent(this, Qt::Tool);
    m_range->SetParameters(this);

    Ruler.iDrawWidth = 8025;
    Ruler.iDrawLeft = 135;

    // The boxes take the settings quietly and the classes are built once, so that the ruler's
    // first drawing gives each class its full room (a second SetClasses with the same count
    // shortens the ruler again).
    const Settings &s = m_tm.settings;
    for (const auto &[box, value] : {std::pair{txtClassStart, s.ClassesStart},
                                     {txtClassWidth, s.ClassesWidth},
                                     {txtNumofClasses, static_cast<double>(s.NumClasses)}}) {
        const QSignalBlocker quiet(box);
        box->setText(DefaultText(value));
    }
    SetClasses();

    Ruler.bDragLeftEdge = false;
    Ruler.bDragRightEdge = false;
    m_range->cmdOK_Click();
    m_loaded = true;
}

void frmParameters::Form_Unload()
{
    if (m_unloaded || !m_loaded)
        return;
    m_unloaded = true;
    UnloadChartChain(FirstChart);
    if (m_host.LeftForm() == this)
        m_host.LeftForm() = nullptr;
    else if (m_host.RightForm() == this)
        m_host.RightForm() = nullptr;
    m_host.RemoveOpenWindow();
    if (m_range)
        m_range->Unload();
    if (m_host.MousePointer() != kPointerDefault)
        setPointer(kPointerDefault);
    if (m_tm.RunOnCommandLine) {
        // Started with a run, this window is the program's whole life.
        CloseGameDB(m_tm);
        m_tm.EndProcess(0);
    }
}

void frmParameters::closeEvent(QCloseEvent *event)
{
    Form_Unload();
    QWidget::closeEvent(event);
}

void frmParameters::setPointer(int pointer)
{
    m_host.SetMousePointer(pointer);
}

// ---- Activation: the sample is drawn again whenever the window comes back to the front from
// another window (not from its own message boxes, and not at its first showing, which follows
// the browser's own PlotClick).

void frmParameters::hookActivation()
{
    QMdiSubWindow *sub = HoldingSubWindow(this);
    QMdiArea *area = sub ? sub->mdiArea() : nullptr;
    if (!area)
        return;
    connect(area, &QMdiArea::subWindowActivated, this, [this, sub](QMdiSubWindow *active) {
        if (active == sub)
            Form_Activate();
        else if (active || !m_asking)
            m_wasAway = true;
    });
}

void frmParameters::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() != QEvent::ActivationChange || !isWindow())
        return;
    if (isActiveWindow())
        Form_Activate();
    else if (!m_asking)
        m_wasAway = true;
}

void frmParameters::Form_Activate()
{
    if (!m_loaded || m_unloaded || !isVisible() || !m_wasAway)
        return;
    m_wasAway = false;
    handled([this] { PlotClick(); });
}

// ---- Years and the sample.

void frmParameters::UpdateHeaderList()
{
    lstCycles->clear();
    for (const CycleListEntry &e : sendrel::UpdateHeaderList(m_tm.db, {This_RunId, KindOfText(This_SorH)})) {
        auto *item = new QListWidgetItem(e.yearText, lstCycles);
        item->setData(Qt::UserRole, e.cycle);
    }
    if (lstCycles->count() > 0)
        lstCycles->item(0)->setSelected(true);
}

void frmParameters::PlotClick()
{
    ClassChartMaxima maxima;
    int row = -1;
    for (int r = 0; r < lstCycles->count() && row < 0; ++r) {
        if (lstCycles->item(r)->isSelected())
            row = r;
    }
    if (row < 0) {
        m_asking = true;
        m_tm.questions.ShowInfoMessage(QStringLiteral("No cycles selected."));
        m_asking = false;
    } else {
        setPointer(kPointerHourglass);
        try {
            fraCycle->setTitle(QStringLiteral("Sample for year:"));
            const QListWidgetItem *item = lstCycles->item(row);
            const qint16 cycle = ToInt16(item->data(Qt::UserRole).toDouble());
            const qint16 year = ToInt16(ReadNumber(item->text()));
            fraCycle->setTitle(QStringLiteral("Sample for year: ") + QString::number(year));
            Data.LetEventsRun = [] { QApplication::processEvents(QEventLoop::ExcludeUserInputEvents); };
            maxima = PlotSampleCharts(m_tm.db, Data, Layout, {This_RunId, KindOfText(This_SorH)}, cycle, *gphDensity, *gphMerchVol);
        } catch (...) {
            setPointer(kPointerDefault);
            throw;
        }
        setPointer(kPointerDefault);
    }
    // Without a year the charts keep their data and are drawn again with the axis from 0 to 0.
    if (row < 0)
        SetSampleYAxes(*gphDensity, *gphMerchVol, maxima);
    drawChosenChart();
}

void frmParameters::drawChosenChart()
{
    Graph *g = optDensity->isChecked() ? gphDensity : gphMerchVol;
    g->ChartDraw(2);
}

void frmParameters::ChooseDensity(bool density)
{
    if (optDensity->isChecked() != density) {
        (density ? optDensity : optMerchVol)->setChecked(true);  // comes back here through toggled
        return;
    }
    gphDensity->Visible(density);
    gphMerchVol->Visible(!density);
    // The other chart was filled with the same query: no new one.
    drawChosenChart();
}

// ---- The chart windows.

void frmParameters::showFailure(const QString &description)
{
    m_tm.questions.hideBusyMessage();
    setPointer(kPointerDefault);
    m_asking = true;
    m_tm.questions.ShowErrorMessage(description);
    m_asking = false;
}

void frmParameters::cmdPrintCharts_Click()
{
    UnloadChartChain(FirstChart);
    FirstChart = nullptr;
    if (lstCycles->selectedItems().isEmpty()) {
        m_asking = true;
        m_tm.questions.ShowInfoMessage(QStringLiteral("No Cycles Are Selected"));
        m_asking = false;
        return;
    }
    setPointer(kPointerHourglass);
    m_tm.questions.showBusyMessage(kPleaseWait, QStringLiteral("Compiling report data..."));
    try {
        BeginChartSequence(m_tm.db);
        bChartsCancelled = false;
        iSelectedCycles.clear();
        for (int row = 0; row < lstCycles->count(); ++row) {
            if (lstCycles->item(row)->isSelected())
                iSelectedCycles.append(row);
        }
        iNumSelectedCycles = static_cast<int>(iSelectedCycles.size());
        // This window goes once the first page stands: a failure leaves the user where they were.
        frmChart *chart = CreateChart(1, nullptr, nullptr);
        HideChild(this);
        FirstChart = chart;
        if (m_host.LeftForm() == this)
            m_host.LeftForm() = chart;
        else if (m_host.RightForm() == this)
            m_host.RightForm() = chart;
        m_host.ArrangeWindows();
    } catch (const SendrelError &e) {
        showFailure(e.description());
    }
}

frmChart *frmParameters::CreateChart(int Position, frmChart *PrevNeighbour, frmChart *NextNeighbour)
{
    if (Position < 1 || Position > iNumSelectedCycles) {
        m_asking = true;
        m_tm.questions.message(
            {QStringLiteral("Sendrel"), QStringLiteral("Invalid Cycle Number"), MsgIcon::None, MsgButtons::OK, Answer::OK});
        m_asking = false;
        return nullptr;
    }
    auto *chart = new frmChart;
    m_host.AddChildWindow(chart);
    chart->SetParameters(this);
    try {
        const Settings &s = m_tm.settings;
        chart->SetChoices({QString(), s.PrintTo_Printer, s.PrintAs_Colour, s.VerticalGrid, s.HorizontalGrid}, false);
        const bool density = DensityChosen();
        chart->SetAxisTitles(density ? s.DensityLeftTitle : s.MerchVolLeftTitle, density ? s.DensityBottomTitle : s.MerchVolBottomTitle);

        chart->nextChart = NextNeighbour;
        if (NextNeighbour) {
            CarryOver(*NextNeighbour, *chart, false);
            NextNeighbour->prevChart = chart;
        }
        chart->prevChart = PrevNeighbour;
        if (PrevNeighbour) {
            CarryOver(*PrevNeighbour, *chart, false);
            PrevNeighbour->nextChart = chart;
        }
        QStringList years;
        for (int row : std::as_const(iSelectedCycles))
            years.append(lstCycles->item(row)->text().trimmed());
        chart->SetPaging(Position, years);

        const QListWidgetItem *item = lstCycles->item(iSelectedCycles.at(Position - 1));
        ChartPageRequest request;
        request.run = {This_RunId, KindOfText(This_SorH)};
        request.entry = {item->text(), item->data(Qt::UserRole).toInt()};
        request.density = density;
        setPointer(kPointerHourglass);
        m_tm.questions.showBusyMessage(kPleaseWait,
                                       QStringLiteral("Compiling report data for cycle: ") + QString::number(request.entry.cycle));
        chart->cycleNum = static_cast<qint16>(Position);
        if (!Data.LetEventsRun)
            Data.LetEventsRun = [] { QApplication::processEvents(QEventLoop::ExcludeUserInputEvents); };
        const ChartPage page = CompileChartPage(m_tm.db, m_tm.settings, Data, request);
        m_tm.questions.hideBusyMessage();
        setPointer(kPointerDefault);

        chart->SetTopTitle(page.titles.top);
        chart->setWindowTitle(page.caption);
        chart->PrintFile = ChartPrintFile(m_tm.ReportFolder(), This_RunId, request.run.word(),
                                          (density ? QStringLiteral("Stand_") : QStringLiteral("Stock_")) + page.yearText);
        chart->PrintChart();
        ShowChild(chart);
    } catch (...) {
        // A page that failed is no page: the chain stays as it was.
        m_tm.questions.hideBusyMessage();
        setPointer(kPointerDefault);
        if (NextNeighbour && NextNeighbour->prevChart == chart)
            NextNeighbour->prevChart = nullptr;
        if (PrevNeighbour && PrevNeighbour->nextChart == chart)
            PrevNeighbour->nextChart = nullptr;
        chart->Unload();
        throw;
    }
    return chart;
}

void frmParameters::DisplayPreviousChart(frmChart *theChart)
{
    DisplayChartAt(theChart, theChart->cycleNum - 1);
}

void frmParameters::DisplayNextChart(frmChart *theChart)
{
    DisplayChartAt(theChart, theChart->cycleNum + 1);
}

void frmParameters::DisplayChartAt(frmChart *theChart, int position)
{
    try {
        // The pages made so far stand in the chain in the order of their positions, with gaps
        // where the user jumped over years: the page wanted, or the two it goes between.
        frmChart *before = nullptr;
        frmChart *after = nullptr;
        frmChart *target = nullptr;
        for (frmChart *c = FirstChart; c && !target && !after; c = c->nextChart) {
            if (c->cycleNum == position)
                target = c;
            else if (c->cycleNum < position)
                before = c;
            else
                after = c;
        }
        if (target) {
            CarryOver(*theChart, *target, true);
            ShowChild(target);
        } else {
            target = CreateChart(position, before, after);
            // A jump takes the options of the page the user comes from, not of its neighbours.
            if (target && before != theChart && after != theChart)
                CarryOver(*theChart, *target, true);
        }
        if (!target) {
            ShowChild(theChart);
            return;
        }
        if (m_host.LeftForm() == theChart)
            m_host.LeftForm() = target;
        else if (m_host.RightForm() == theChart)
            m_host.RightForm() = target;
    } catch (const SendrelError &e) {
        // The user stays on the page they tried to leave.
        ShowChild(theChart);
        showFailure(e.description());
    }
}

void frmParameters::UnloadChartChain(frmChart *theChart)
{
    if (!theChart)
        return;
    if (theChart->nextChart)
        UnloadChartChain(theChart->nextChart);
    theChart->nextChart = nullptr;
    theChart->prevChart = nullptr;
    theChart->Unload();
}

bool frmParameters::DensityChosen() const
{
    return optDensity->isChecked();
}

const RunStore &frmParameters::Store() const
{
    return m_tm.db;
}

UserQuestions &frmParameters::Questions() const
{
    return m_tm.questions;
}

void frmParameters::ChartClosed(frmChart *theChart)
{
    if (m_host.LeftForm() == theChart)
        m_host.LeftForm() = this;
    else if (m_host.RightForm() == theChart)
        m_host.RightForm() = this;
    bChartsCancelled = true;
    ShowChild(this);
}

// ---- Class boxes.

void frmParameters::SetClasses()
{
    showEntryCheck({});
    m_asking = true;
    const ClassResetGuard::Action action = Reset.BoxChanged(m_tm.questions);
    m_asking = false;
    if (action == ClassResetGuard::Action::Ignore)
        return;
    if (action == ClassResetGuard::Action::RestoreBoxes) {
        writeBoxesBack();
        return;
    }
    const ClassEntryCheck check = Layout.SetClasses(txtClassStart->text(), txtClassWidth->text(), txtNumofClasses->text());
    showEntryCheck(check);
    if (!check.passed())
        return;
    Ruler.SetScale(Layout);
    m_ruler->UpdateDrawArea();
    DrawClasses();
}

void frmParameters::writeBoxesBack()
{
    // The layout dragged by hand stands, and so do the boxes that tell how it began. Each box
    // written raises one change event, which the flag tells to pass by.
    const ClassBoxTexts texts = Layout.BoxTexts();
    const std::pair<QLineEdit *, QString> boxes[] = {
        {txtNumofClasses, texts.count}, {txtClassStart, texts.start}, {txtClassWidth, texts.width}};
    for (const auto &[box, text] : boxes) {
        if (box->text() == text)
            continue;
        bInChange = true;
        box->setText(text);
    }
    bInChange = false;
}

void frmParameters::showEntryCheck(const ClassEntryCheck &check)
{
    lblDbhError->setText(check.fault);
    lblClassStartError->setText(check.startFault);
    lblClassWidthError->setText(check.widthFault);
    lblNumClassesError->setText(check.countFault);
}

// ---- The ruler.

void frmParameters::DrawClasses()
{
    m_ruler->HideAllPanels();
    const int n = Layout.ClassCount();
    if (n < 1)
        return;
    const ClassRuler::Panel first = Ruler.FirstPanel(Layout);
    ClassPanel *p0 = m_ruler->SSPanel2(0);
    p0->Place(first.Left, first.Width, first.Caption);
    p0->show();
    for (int i = 1; i < n; ++i) {
        m_ruler->SSPanel2(i)->show();
        DrawClass(i);
    }
    m_ruler->PlaceScale(Ruler.iDrawLeft, Ruler.Ticks());
}

void frmParameters::DrawClass(int iClass)
{
    if (iClass < 0 || iClass >= ClassRulerView::kPanels)
        return;
    const ClassRuler::Panel p = Ruler.DrawClass(Layout, iClass);
    m_ruler->SSPanel2(iClass)->Place(p.Left, p.Width, p.Caption);
    // The editor follows a drag of the class it shows, but not its own change.
    if (!bDBH_Change && m_range && IsEditedClass(m_range->ClassNumber(), iClass)) {
        const ClassType &c = Layout.aClass[iClass];
        m_range->ShowEdges(c.MinDia, c.MaxDia, c.MidPoint);
    }
}

void frmParameters::panelPressed(int index, double X, int button)
{
    Q_UNUSED(button)
    const ClassRuler::Press press = Ruler.MousePress(Reset, index, X, m_ruler->SSPanel2(index)->Width());
    if (press.pointer >= 0)
        setPointer(press.pointer);
    if (press.openEditor && m_range)
        m_range->OpenClass(index);
}

void frmParameters::panelMoved(int index, double X, int button)
{
    const ClassPanel *p = m_ruler->SSPanel2(index);
    const ClassRuler::Move move = Ruler.MouseMove(Layout, index, X, p->Left(), p->Width(), button, m_host.MousePointer());
    setPointer(move.pointer);
    if (move.redraw.isEmpty())
        return;
    bMouseMove = true;
    for (int i : move.redraw)
        DrawClass(i);
    bMouseMove = false;
}

void frmParameters::panelReleased(int index, double X, int button)
{
    Q_UNUSED(index)
    Q_UNUSED(X)
    Q_UNUSED(button)
    setPointer(Ruler.MouseRelease());
}

void frmParameters::mouseMoveEvent(QMouseEvent *event)
{
    setPointer(kPointerDefault);
    QWidget::mouseMoveEvent(event);
}

bool frmParameters::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseMove && (watched == m_ruler || watched == SSPanel3 || watched == SSPanel4)) {
        // Off the panels the arrows go, unless an edge is being dragged.
        if (m_host.MousePointer() == kPointerWestEast && !Ruler.bDragLeftEdge && !Ruler.bDragRightEdge)
            setPointer(kPointerDefault);
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace sendrel
