#include "windows/composition/frmStandLevels.h"

#include "app/TreeModel.h"
#include "base/SendrelError.h"
#include "base/UserQuestions.h"
#include "domain/composition/StandLevelsReport.h"
#include "domain/standstock/ClassCharts.h"
#include "domain/table/TableFile.h"
#include "graph/Graph.h"
#include "windows/common/ChildWindow.h"
#include "windows/common/EventHandler.h"
#include "windows/common/ExportStatus.h"
#include "windows/common/ReportWindowHost.h"
#include "windows/output/ChartPrinting.h"
#include "windows/output/frmReport.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPrinter>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>

#include <exception>

namespace sendrel {

namespace {

const QString kCrLf = QStringLiteral("\r\n");

// The statistics in the order of their options, with the names of their controls.
struct StatisticControls {
    StandLevelsStatistic statistic;
    const char *option;
    const char *caption;
    const char *name;  // of the chart and the title boxes
};
const StatisticControls kStatistics[kStandLevelsCharts] = {
    {StandLevelsStatistic::Sph, "optSPH", "SPH", "Sph"},
    {StandLevelsStatistic::BasalArea, "optBasalArea", "Basal Area", "BasalArea"},
    {StandLevelsStatistic::MerchVol, "optMerchVol", "GTV", "MerchVol"},
    {StandLevelsStatistic::TotalVol, "optTotalVol", "Total Vol.", "TotalVol"},
};
const char *const kTitleBoxes[3] = {"txtGraphTitle_", "txtLeftTitle_", "txtBottomTitle_"};
constexpr int kTitleLength = 80;
constexpr int kYAxisMaxLength = 15;

QGroupBox *frame(const QString &caption, const QString &name, QWidget *parent)
{
    auto *box = new QGroupBox(caption, parent);
    box->setObjectName(name);
    return box;
}

template <typename T>
T *named(T *widget, const QString &name)
{
    widget->setObjectName(name);
    return widget;
}

}  // namespace

template <typename F>
void frmStandLevels::handled(F &&handler)
{
    RunHandler(m_tm.questions, std::forward<F>(handler), [this] { setPointer(kPointerDefault); });
}

frmStandLevels::frmStandLevels(TreeModel &tm, ReportWindowHost &host, QWidget *parent)
    : QWidget(parent), m_tm(tm), m_host(host), m_printer(std::make_unique<QPrinter>(QPrinter::HighResolution))
{
    initialise();
}

frmStandLevels::frmStandLevels(TreeModel &tm, std::unique_ptr<ReportWindowHost> host, QWidget *parent)
    : QWidget(parent), m_tm(tm), m_ownHost(std::move(host)), m_host(*m_ownHost),
      m_printer(std::make_unique<QPrinter>(QPrinter::HighResolution))
{
    initialise();
}

// A window taken away without a close event goes with its frame, at the end of the process:
// frame and browser may be half gone already, so the unload steps run only on a close.
frmStandLevels::~frmStandLevels() = default;

void frmStandLevels::initialise()
{
    setObjectName(QStringLiteral("frmStandLevels"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Species Composition through time"));
    buildWindow();
    m_host.AddChildWindow(this);
    Form_Load();
}

void frmStandLevels::buildWindow()
{
    auto *charts = new QVBoxLayout;
    charts->setContentsMargins(0, 0, 0, 0);
    for (const StatisticControls &s : kStatistics) {
        auto *g = named(new Graph(this), QStringLiteral("gphStandLevels_") + QLatin1String(s.name));
        g->setKind(ChartData::Kind::TimeLines);
        g->setMinimumSize(440, 300);
        g->Visible(s.statistic == StandLevelsStatistic::Sph);
        charts->addWidget(g, 1);
        m_charts[static_cast<int>(s.statistic)] = g;
    }

    // Made in the order of the tab chain.
    QGroupBox *fraStatistic = buildStatistics();
    QGroupBox *fraTitles = buildTitles();
    QLayout *lower = buildChartOptions();
    cmdPrint = named(new QPushButton(QStringLiteral("Print"), this), QStringLiteral("cmdPrint"));
    cmdPrintReport = named(new QPushButton(QStringLiteral("View Report"), this), QStringLiteral("cmdPrintReport"));
    cmdExport = named(new QPushButton(QStringLiteral("Export..."), this), QStringLiteral("cmdExport"));
    cmdOK = named(new QPushButton(QStringLiteral("Cancel"), this), QStringLiteral("cmdOK"));
    cmdHelp = named(new QPushButton(QStringLiteral("Help"), this), QStringLiteral("cmdHelp"));

    auto *upper = new QHBoxLayout;
    upper->addWidget(fraStatistic);
    upper->addWidget(fraTitles, 1);
    auto *controls = new QVBoxLayout;
    controls->addLayout(upper);
    controls->addLayout(lower);
    auto *buttons = new QVBoxLayout;
    buttons->addWidget(cmdPrint);
    buttons->addWidget(cmdPrintReport);
    buttons->addStretch();
    buttons->addWidget(cmdExport);
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdHelp);
    auto *bottom = new QHBoxLayout;
    bottom->addLayout(controls, 1);
    bottom->addLayout(buttons);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(charts, 1);
    layout->addLayout(bottom);
    // Half of a maximised frame on a 1366-pixel screen, as the stand and stock window.
    resize(664, 640);
    m_options[static_cast<int>(StandLevelsStatistic::Sph)]->setChecked(true);

    connectControls();
}

// One option for each statistic; the chosen one is shown.
QGroupBox *frmStandLevels::buildStatistics()
{
    QGroupBox *fraStatistic = frame(QStringLiteral("Statistic:"), QStringLiteral("fraStatistic"), this);
    auto *statistics = new QVBoxLayout(fraStatistic);
    for (const StatisticControls &s : kStatistics) {
        auto *o = named(new QRadioButton(QLatin1String(s.caption), fraStatistic), QLatin1String(s.option));
        statistics->addWidget(o);
        m_options[static_cast<int>(s.statistic)] = o;
        connect(o, &QRadioButton::toggled, this, [this, s](bool on) {
            if (on)
                ChooseStatistic(s.statistic);
        });
    }
    statistics->addStretch();
    return fraStatistic;
}

QGroupBox *frmStandLevels::buildTitles()
{
    // The three boxes of each statistic share the three lines; only the chosen statistic's show.
    QGroupBox *fraTitles = frame(QStringLiteral("Edit Chart Titles:"), QStringLiteral("fraTitles"), this);
    auto *titles = new QGridLayout(fraTitles);
    const QString labels[3] = {QStringLiteral("Top:"), QStringLiteral("Left:"), QStringLiteral("Bottom:")};
    for (int line = 0; line < 3; ++line)
        titles->addWidget(named(new QLabel(labels[line], fraTitles), QStringLiteral("lblTitle%1").arg(line + 1)), line, 0);
    for (const StatisticControls &s : kStatistics) {
        const int k = static_cast<int>(s.statistic);
        for (int line = 0; line < 3; ++line) {
            auto *box = named(new QLineEdit(fraTitles), QLatin1String(kTitleBoxes[line]) + QLatin1String(s.name));
            box->setMaxLength(kTitleLength);
            box->setVisible(s.statistic == StandLevelsStatistic::Sph);
            titles->addWidget(box, line, 1);
            m_titleBoxes[k][line] = box;
            connect(box, &QLineEdit::textChanged, this, [this, k, line](const QString &text) {
                Graph *g = m_charts[k];
                if (line == 0)
                    g->ChartTopTitle(text);
                else if (line == 1)
                    g->ChartLeftTitle(text);
                else
                    g->ChartBottomTitle(text);
                g->ChartDraw(2);
            });
        }
    }
    titles->setColumnStretch(1, 1);
    return fraTitles;
}

// The Y axis, the grids and the printing, in a row.
QLayout *frmStandLevels::buildChartOptions()
{
    QGroupBox *fraYAxisMax = frame(QStringLiteral("Y Axis Max:"), QStringLiteral("fraYAxisMax"), this);
    txtYAxisMax = named(new QLineEdit(fraYAxisMax), QStringLiteral("txtYAxisMax"));
    // Digits and Backspace only, by typing and by pasting alike.
    txtYAxisMax->setValidator(new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]*")), txtYAxisMax));
    txtYAxisMax->setMaxLength(kYAxisMaxLength);
    txtYAxisMax->setFixedWidth(90);
    cmdApply = named(new QPushButton(QStringLiteral("Apply"), fraYAxisMax), QStringLiteral("cmdApply"));
    auto *yAxis = new QHBoxLayout(fraYAxisMax);
    yAxis->addWidget(txtYAxisMax);
    yAxis->addWidget(cmdApply);

    QGroupBox *fraGrids = frame(QStringLiteral("Grids:"), QStringLiteral("fraGrids"), this);
    chkVertical = named(new QCheckBox(QStringLiteral("Vertical"), fraGrids), QStringLiteral("chkVertical"));
    chkHorizontal = named(new QCheckBox(QStringLiteral("Horizontal"), fraGrids), QStringLiteral("chkHorizontal"));
    auto *grids = new QVBoxLayout(fraGrids);
    grids->addWidget(chkVertical);
    grids->addWidget(chkHorizontal);

    QGroupBox *fraPrintTo = frame(QStringLiteral("Print to:"), QStringLiteral("fraPrintTo"), this);
    optClipboard = named(new QRadioButton(QStringLiteral("Clipboard"), fraPrintTo), QStringLiteral("optClipboard"));
    optPrinter = named(new QRadioButton(QStringLiteral("Printer"), fraPrintTo), QStringLiteral("optPrinter"));
    optPrinter->setChecked(true);
    auto *printTo = new QVBoxLayout(fraPrintTo);
    printTo->addWidget(optClipboard);
    printTo->addWidget(optPrinter);

    QGroupBox *fraPrintAs = frame(QStringLiteral("Print as:"), QStringLiteral("fraPrintAs"), this);
    optColour = named(new QRadioButton(QStringLiteral("Colour"), fraPrintAs), QStringLiteral("optColour"));
    optBandW = named(new QRadioButton(QStringLiteral("B+W"), fraPrintAs), QStringLiteral("optBandW"));
    optColour->setChecked(true);
    auto *printAs = new QVBoxLayout(fraPrintAs);
    printAs->addWidget(optColour);
    printAs->addWidget(optBandW);

    auto *lower = new QHBoxLayout;
    lower->addWidget(fraYAxisMax);
    lower->addWidget(fraGrids);
    lower->addWidget(fraPrintTo);
    lower->addWidget(fraPrintAs);
    lower->addStretch();
    return lower;
}

void frmStandLevels::connectControls()
{
    connect(cmdApply, &QPushButton::clicked, this, [this] { handled([this] { cmdApply_Click(); }); });
    connect(chkVertical, &QCheckBox::clicked, this, [this] { handled([this] { ApplyGrids(); }); });
    connect(chkHorizontal, &QCheckBox::clicked, this, [this] { handled([this] { ApplyGrids(); }); });
    connect(cmdPrint, &QPushButton::clicked, this, [this] { handled([this] { cmdPrint_Click(); }); });
    connect(cmdPrintReport, &QPushButton::clicked, this, [this] { cmdPrintReport_Click(); });
    connect(cmdExport, &QPushButton::clicked, this, [this] { cmdExport_Click(); });
    connect(cmdOK, &QPushButton::clicked, this, [this] { CloseChildWindow(this); });
    connect(cmdHelp, &QPushButton::clicked, this, [this] { m_host.ShowHelpTopic(HelpContextID); });
}

void frmStandLevels::Form_Load()
{
    HelpContextID = 75;
    m_host.AddOpenWindow();
    if (!m_host.LeftForm())
        m_host.LeftForm() = this;
    else if (!m_host.RightForm())
        m_host.RightForm() = this;
    m_options[static_cast<int>(StandLevelsStatistic::TotalVol)]->setVisible(false);
    m_loaded = true;
}

void frmStandLevels::Form_Unload()
{
    if (m_unloaded || !m_loaded)
        return;
    m_unloaded = true;
    if (m_host.LeftForm() == this)
        m_host.LeftForm() = nullptr;
    else if (m_host.RightForm() == this)
        m_host.RightForm() = nullptr;
    m_host.RemoveOpenWindow();
}

void frmStandLevels::closeEvent(QCloseEvent *event)
{
    Form_Unload();
    QWidget::closeEvent(event);
}

void frmStandLevels::setPointer(int pointer)
{
    m_host.SetMousePointer(pointer);
}

void frmStandLevels::CalcStandLevelsReport()
{
    StandLevelsCharts charts;
    for (int k = 0; k < kStandLevelsCharts; ++k)
        charts[k] = m_charts[k];
    State = sendrel::CalcStandLevelsReport(m_tm.db, m_tm.questions, This_RunId, This_SorH, charts);
    if (State.filled) {
        for (Graph *g : m_charts)
            g->ChartDraw(2);
    }
}

void frmStandLevels::SetTitles(StandLevelsStatistic statistic, const StandLevelsTitles &titles)
{
    const auto &boxes = m_titleBoxes[static_cast<int>(statistic)];
    boxes[0]->setText(titles.top);
    boxes[1]->setText(titles.left);
    boxes[2]->setText(titles.bottom);
}

void frmStandLevels::SetPrintOptions(bool toPrinter, bool colour)
{
    (toPrinter ? optPrinter : optClipboard)->setChecked(true);
    (colour ? optColour : optBandW)->setChecked(true);
}

void frmStandLevels::SetGrids(bool vertical, bool horizontal)
{
    chkVertical->setChecked(vertical);
    chkHorizontal->setChecked(horizontal);
    ApplyGrids();
}

void frmStandLevels::ChooseStatistic(StandLevelsStatistic statistic)
{
    const int chosen = static_cast<int>(statistic);
    if (!m_options[chosen]->isChecked()) {
        m_options[chosen]->setChecked(true);  // comes back here through toggled
        return;
    }
    // Each statistic keeps its own Y axis maximum: the box shows the chosen one's.
    if (m_yAxisStatistic >= 0)
        m_yAxisMax[m_yAxisStatistic] = txtYAxisMax->text();
    txtYAxisMax->setText(m_yAxisMax[chosen]);
    m_yAxisStatistic = chosen;
    // Nothing is computed again: all four charts were filled together.
    for (int k = 0; k < kStandLevelsCharts; ++k) {
        for (QLineEdit *box : m_titleBoxes[k])
            box->setVisible(k == chosen);
        m_charts[k]->Visible(k == chosen);
    }
}

StandLevelsStatistic frmStandLevels::SelectedStatistic() const
{
    for (const StatisticControls &s : kStatistics) {
        if (s.statistic != StandLevelsStatistic::TotalVol && m_options[static_cast<int>(s.statistic)]->isChecked())
            return s.statistic;
    }
    return StandLevelsStatistic::TotalVol;
}

void frmStandLevels::cmdApply_Click()
{
    // The box is the chosen statistic's maximum; each chart keeps its own, within its own data
    // (a maximum for stems would flatten the basal area).
    m_yAxisMax[static_cast<int>(SelectedStatistic())] = txtYAxisMax->text();
    for (StandLevelsStatistic s :
         {StandLevelsStatistic::TotalVol, StandLevelsStatistic::Sph, StandLevelsStatistic::BasalArea, StandLevelsStatistic::MerchVol})
        ApplyYAxisRule(*Chart(s), State.maximum(s), m_yAxisMax[static_cast<int>(s)]);
    for (Graph *g : m_charts) {
        if (g->Visible())
            g->ChartDraw(2);
    }
}

void frmStandLevels::ApplyGrids()
{
    const qint16 grid = GridFrom(chkHorizontal->isChecked(), chkVertical->isChecked());
    for (Graph *g : m_charts) {
        g->ChartGrid(grid);
        g->ChartDraw(2);
    }
}

void frmStandLevels::cmdPrint_Click()
{
    Graph *g = Chart(SelectedStatistic());
    const bool colour = optColour->isChecked();
    if (optPrinter->isChecked()) {
        const QString subject = QStringLiteral("Species_") + QLatin1String(kStatistics[static_cast<int>(SelectedStatistic())].name);
        PrintChartThroughDialog(m_tm.questions, *m_printer, *g, colour ? 3 : 2,
                                ChartPrintFile(m_tm.ReportFolder(), This_RunId, KindWord(KindOfText(This_SorH)), subject));
    } else {
        // The copy may be black and white; the screen returns to colour.
        g->ChartScreenStyle(colour ? 1 : 0);
        g->ChartDraw(2);
        g->ChartDraw(4);
        g->ChartScreenStyle(1);
        g->ChartDraw(2);
    }
}

void frmStandLevels::cmdExport_Click()
{
    try {
        // The run as it stands now: another program may have changed or deleted it.
        if (!m_tm.db.runExists({This_RunId, KindOfText(This_SorH)})) {
            m_tm.questions.ShowInfoMessage(QStringLiteral("Run %1 is no longer in the database: another application has deleted it. "
                                                          "There is nothing to export.")
                                               .arg(RunKey{This_RunId, KindOfText(This_SorH)}.displayName()));
            return;
        }
        const RunKey run{This_RunId, KindOfText(This_SorH)};
        const QString path = m_tm.questions.saveFile(ExportFileRequest(QStringLiteral("Export Species Composition"), m_tm.ReportFolder(),
                                                                       ExportFileStem(run, QStringLiteral("Species"))));
        if (path.isEmpty())
            return;
        const StandLevelsCycleSums sums = ReadStandLevelsCycleSums(m_tm.db, This_RunId, This_SorH);
        SaveExport(StandLevelsDocument(m_tm.db, sums, SelectedStatistic(), run, UnitSystemOfSetting(m_tm.settings.Units)), path,
                   m_tm.settings.CsvDefinitions);
        ShowExportedPath(this, path);
    } catch (const SendrelError &e) {
        m_tm.questions.ShowErrorMessage(e.description());
    }
}

void frmStandLevels::cmdPrintReport_Click()
{
    const StandLevelsStatistic statistic = SelectedStatistic();
    StandLevelsReportRequest request;
    request.This_RunId = This_RunId;
    request.This_SorH = This_SorH;
    request.This_RunDesc = This_RunDesc;
    request.statistic = statistic;
    request.title = m_titleBoxes[static_cast<int>(statistic)][0]->text();
    request.CycleRS = State.CycleRS;
    request.SpeciesListRS = State.SpeciesListRS;
    request.SetMousePointer = [this](int p) { setPointer(p); };
    m_tm.CurrentRunId = This_RunId;
    request.reportPath = ReportFilePath(m_tm.ReportFolder(), This_RunId, ReportKind::Species);
    CompiledStandLevelsReport report;
    try {
        report = CompileStandLevelsReport(m_tm.db, m_tm.questions, request);
    } catch (const SendrelError &e) {
        m_tm.questions.message(ReportFailureMessage(e));
    }
    This_SorH = request.This_SorH;
    This_RunDesc = request.This_RunDesc;

    if (report.compiled) {
        auto failed = [this](long number, const QString &description) {
            m_tm.questions.message({QStringLiteral("Sendrel"),
                                    QStringLiteral("Report Failed: ") + QString::number(number) + kCrLf + description, MsgIcon::None,
                                    MsgButtons::OK, Answer::OK});
        };
        try {
            frmReport viewer(m_tm.questions, this);
            viewer.ReportFile = report.ReportFile;
            viewer.ReportType = report.ReportType;
            viewer.ReportOrientation = report.ReportOrientation;
            if (ShowReportViewer)
                ShowReportViewer(viewer);
            else
                viewer.exec();
        } catch (const SendrelError &e) {
            failed(e.number(), e.description());
        } catch (const std::exception &e) {
            failed(ErrNo::InvalidCall, QString::fromLocal8Bit(e.what()));
        }
    }
    setPointer(kPointerDefault);
}

}  // namespace sendrel
