#include "windows/output/frmChart.h"

#include "base/SendrelError.h"
#include "base/UserQuestions.h"
#include "domain/standstock/ClassCharts.h"
#include "graph/Graph.h"
#include "windows/common/ChildFrame.h"
#include "windows/common/ChildWindow.h"
#include "windows/common/ReportWindowHost.h"
#include "windows/output/ChartPrinting.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPrinter>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QShortcut>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace sendrel {

namespace {

constexpr int kTitleLength = 80;
// As many digits as an axis can take: the Y axis maximum is a whole number of stems or cubic metres.
constexpr int kYAxisDigits = 15;

template <typename T>
T *named(T *w, const char *name)
{
    w->setObjectName(QString::fromLatin1(name));
    return w;
}

}  // namespace

frmChart::frmChart(QWidget *parent) : QWidget(parent), m_printer(std::make_unique<QPrinter>(QPrinter::HighResolution))
{
    setObjectName(QStringLiteral("frmChart"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Chart Print Preview"));
    buildWindow();
}

frmChart::~frmChart() = default;

void frmChart::buildWindow()
{
    gphDensity = named(new Graph(this), "gphDensity");
    gphMerchVol = named(new Graph(this), "gphMerchVol");
    for (Graph *g : {gphDensity, gphMerchVol}) {
        g->setKind(ChartData::Kind::ClassBars);
        g->setMinimumSize(560, 340);
    }
    gphMerchVol->Visible(false);

    // Made in the order of the tab chain: the titles and the Y axis, the options, the paging, the
    // buttons.
    QLayout *middle = buildTitlesAndYAxis();
    QBoxLayout *options = buildOptions();
    QLayout *paging = buildPaging();
    cmdPrint = named(new QPushButton(QStringLiteral("Print"), this), "cmdPrint");
    cmdCancel = named(new QPushButton(QStringLiteral("Cancel"), this), "cmdCancel");
    cmdHelp = named(new QPushButton(QStringLiteral("Help"), this), "cmdHelp");
    auto *buttons = new QGridLayout;
    buttons->addWidget(cmdPrint, 0, 0);
    buttons->addWidget(cmdCancel, 1, 0);
    buttons->addWidget(cmdHelp, 2, 0);
    options->addLayout(buttons);

    // The chart over all the width, the paging row under it; below them the titles and the Y axis,
    // then the options and the buttons.
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(gphDensity, 1);
    layout->addWidget(gphMerchVol, 1);
    layout->addLayout(paging);
    layout->addLayout(middle);
    layout->addLayout(options);
    // The place of the stand and stock window it stands in for.
    resize(664, 640);
    connectControls();
}

QLayout *frmChart::buildTitlesAndYAxis()
{
    auto *fraTitles = named(new QGroupBox(QStringLiteral("Edit Chart Titles:"), this), "fraTitles");
    txtGraphTitle = named(new QLineEdit(fraTitles), "txtGraphTitle");
    txtLeftTitle = named(new QLineEdit(fraTitles), "txtLeftTitle");
    txtBottomTitle = named(new QLineEdit(fraTitles), "txtBottomTitle");
    {
        auto *grid = new QGridLayout(fraTitles);
        int row = 0;
        for (const auto &[caption, box] : {std::pair{QStringLiteral("Top:"), txtGraphTitle},
                                           {QStringLiteral("Left:"), txtLeftTitle},
                                           {QStringLiteral("Bottom:"), txtBottomTitle}}) {
            box->setMaxLength(kTitleLength);
            auto *label = new QLabel(caption, fraTitles);
            label->setBuddy(box);
            grid->addWidget(label, row, 0);
            grid->addWidget(box, row, 1);
            ++row;
        }
    }

    auto *fraYAxis = named(new QGroupBox(QStringLiteral("Y Axis Max:"), this), "fraYAxis");
    txtYAxisMax = named(new QLineEdit(fraYAxis), "txtYAxisMax");
    // Digits only: whatever else is typed or pasted is refused.
    txtYAxisMax->setValidator(new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]*")), txtYAxisMax));
    txtYAxisMax->setMaxLength(kYAxisDigits);
    txtYAxisMax->setFixedWidth(fontMetrics().horizontalAdvance(QStringLiteral("0000000000")));
    cmdApply = named(new QPushButton(QStringLiteral("Apply"), fraYAxis), "cmdApply");
    {
        auto *box = new QVBoxLayout(fraYAxis);
        box->addWidget(txtYAxisMax);
        box->addWidget(cmdApply);
        box->addStretch();
    }

    auto *middle = new QHBoxLayout;
    middle->addWidget(fraTitles, 1);
    middle->addWidget(fraYAxis);
    return middle;
}

QBoxLayout *frmChart::buildOptions()
{
    auto optionFrame = [this](const QString &caption, const char *name, QRadioButton *&first, const QString &firstText,
                              const char *firstName, QRadioButton *&second, const QString &secondText, const char *secondName) {
        auto *frame = named(new QGroupBox(caption, this), name);
        first = named(new QRadioButton(firstText, frame), firstName);
        second = named(new QRadioButton(secondText, frame), secondName);
        auto *group = new QButtonGroup(frame);
        group->addButton(first);
        group->addButton(second);
        auto *box = new QVBoxLayout(frame);
        box->addWidget(first);
        box->addWidget(second);
        box->addStretch();
        return frame;
    };
    QGroupBox *fraPrintAs = optionFrame(QStringLiteral("Print as:"), "fraPrintAs", optColour, QStringLiteral("Colour"), "optColour",
                                        optBandW, QStringLiteral("B+W"), "optBandW");
    QGroupBox *fraPrintTo = optionFrame(QStringLiteral("Print to:"), "fraPrintTo", optPrinter, QStringLiteral("Printer"), "optPrinter",
                                        optClipboard, QStringLiteral("Clipboard"), "optClipboard");
    optColour->setChecked(true);
    optPrinter->setChecked(true);

    auto *fraGrids = named(new QGroupBox(QStringLiteral("Grids:"), this), "fraGrids");
    chkHorizontal = named(new QCheckBox(QStringLiteral("Horizontal"), fraGrids), "chkHorizontal");
    chkVertical = named(new QCheckBox(QStringLiteral("Vertical"), fraGrids), "chkVertical");
    {
        auto *box = new QVBoxLayout(fraGrids);
        box->addWidget(chkHorizontal);
        box->addWidget(chkVertical);
        box->addStretch();
    }

    auto *options = new QHBoxLayout;
    options->addWidget(fraPrintAs);
    options->addWidget(fraPrintTo);
    options->addWidget(fraGrids);
    options->addStretch();
    return options;
}

// First, previous, the year and where it stands, next, last.
QLayout *frmChart::buildPaging()
{
    cmdFirst = named(new QPushButton(QStringLiteral("|<"), this), "cmdFirst");
    cmdPrev = named(new QPushButton(QStringLiteral("<"), this), "cmdPrev");
    cmdNext = named(new QPushButton(QStringLiteral(">"), this), "cmdNext");
    cmdLast = named(new QPushButton(QStringLiteral(">|"), this), "cmdLast");
    lblPage = named(new QLabel(this), "lblPage");
    cboYear = named(new QComboBox(this), "cboYear");
    cboYear->setToolTip(QStringLiteral("Go to year"));
    cmdFirst->setToolTip(QStringLiteral("First year (Home)"));
    cmdPrev->setToolTip(QStringLiteral("Previous year (Page Up)"));
    cmdNext->setToolTip(QStringLiteral("Next year (Page Down)"));
    cmdLast->setToolTip(QStringLiteral("Last year (End)"));
    for (QPushButton *b : {cmdFirst, cmdPrev, cmdNext, cmdLast})
        b->setFixedWidth(fontMetrics().horizontalAdvance(QStringLiteral("<<<<")) + 16);
    auto *paging = new QHBoxLayout;
    paging->addWidget(cmdFirst);
    paging->addWidget(cmdPrev);
    paging->addWidget(cboYear);
    paging->addWidget(lblPage);
    paging->addWidget(cmdNext);
    paging->addWidget(cmdLast);
    paging->addStretch();
    return paging;
}

void frmChart::connectControls()
{
    for (QLineEdit *box : {txtGraphTitle, txtLeftTitle, txtBottomTitle})
        connect(box, &QLineEdit::textChanged, this, &frmChart::titleChanged);
    connect(cmdApply, &QPushButton::clicked, this, &frmChart::cmdApply_Click);
    for (QCheckBox *box : {chkHorizontal, chkVertical})
        connect(box, &QCheckBox::toggled, this, &frmChart::ApplyGrids);
    connect(cmdPrev, &QPushButton::clicked, this, [this] { page(false); });
    connect(cmdNext, &QPushButton::clicked, this, [this] { page(true); });
    connect(cmdFirst, &QPushButton::clicked, this, [this] { pageTo(1); });
    connect(cmdLast, &QPushButton::clicked, this, [this] { pageTo(cboYear->count()); });
    connect(cboYear, &QComboBox::activated, this, [this](int index) { pageTo(index + 1); });
    // The paging keys; a title box keeps Home and End for its own text.
    const std::pair<QKeySequence, QPushButton *> keys[] = {{QKeySequence(Qt::Key_PageUp), cmdPrev},
                                                           {QKeySequence(Qt::Key_PageDown), cmdNext},
                                                           {QKeySequence(Qt::Key_Home), cmdFirst},
                                                           {QKeySequence(Qt::Key_End), cmdLast}};
    for (const auto &[key, button] : keys) {
        auto *shortcut = new QShortcut(key, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
        connect(shortcut, &QShortcut::activated, button, [button] {
            if (button->isEnabled())
                button->click();
        });
    }
    connect(cmdPrint, &QPushButton::clicked, this, &frmChart::cmdPrint_Click);
    connect(cmdCancel, &QPushButton::clicked, this, [this] { CloseChildWindow(this); });
    connect(cmdHelp, &QPushButton::clicked, this, [this] {
        if (m_parameters)
            m_parameters->Host().ShowHelpTopic(HelpContextID);
    });
}

void frmChart::SetParameters(ChartWindowParent *theParameters)
{
    m_parameters = theParameters;
    // Titles typed before the first filling go to the chart that will be shown.
    if (m_parameters) {
        m_questions = &m_parameters->Questions();
        gphDensity->Visible(m_parameters->DensityChosen());
        gphMerchVol->Visible(!m_parameters->DensityChosen());
    }
}

Graph *frmChart::VisibleChart() const
{
    if (m_parameters)
        return m_parameters->DensityChosen() ? gphDensity : gphMerchVol;
    return gphDensity->Visible() ? gphDensity : gphMerchVol;
}

ChartChoices frmChart::Choices() const
{
    return {txtYAxisMax->text(), optPrinter->isChecked(), optColour->isChecked(), chkVertical->isChecked(), chkHorizontal->isChecked()};
}

void frmChart::SetChoices(const ChartChoices &choices, bool applyYAxis)
{
    if (txtYAxisMax->text() != choices.yAxisMax) {
        txtYAxisMax->setText(choices.yAxisMax);
        if (applyYAxis)
            cmdApply_Click();
    }
    (choices.toPrinter ? optPrinter : optClipboard)->setChecked(true);
    (choices.colour ? optColour : optBandW)->setChecked(true);
    chkVertical->setChecked(choices.verticalGrid);
    chkHorizontal->setChecked(choices.horizontalGrid);
}

void frmChart::SetTopTitle(const QString &title)
{
    txtGraphTitle->setText(title);
}

void frmChart::SetAxisTitles(const QString &left, const QString &bottom)
{
    txtLeftTitle->setText(left);
    txtBottomTitle->setText(bottom);
}

void frmChart::titleChanged()
{
    Graph *g = VisibleChart();
    g->ChartTopTitle(txtGraphTitle->text());
    g->ChartLeftTitle(txtLeftTitle->text());
    g->ChartBottomTitle(txtBottomTitle->text());
    g->ChartDraw(2);
}

void frmChart::PrintChart()
{
    if (!m_parameters)
        return;
    const bool density = m_parameters->DensityChosen();
    gphDensity->Visible(density);
    gphMerchVol->Visible(!density);
    const ClassChartMaxima maxima = PrintClassCharts(m_parameters->Store(), m_parameters->Classes(), m_parameters->Cells(), *gphDensity,
                                                     *gphMerchVol, txtYAxisMax->text());
    MaxDensity = maxima.density;
    MaxMerchVol = maxima.merchVol;
    gphDensity->ChartDraw(2);
    gphMerchVol->ChartDraw(2);
}

void frmChart::cmdApply_Click()
{
    ApplyYAxisRule(*gphDensity, MaxDensity, txtYAxisMax->text());
    ApplyYAxisRule(*gphMerchVol, MaxMerchVol, txtYAxisMax->text());
    for (Graph *g : {gphDensity, gphMerchVol}) {
        if (g->Visible())
            g->ChartDraw(2);
    }
}

void frmChart::ApplyGrids()
{
    const qint16 grid = GridFrom(chkHorizontal->isChecked(), chkVertical->isChecked());
    for (Graph *g : {gphDensity, gphMerchVol}) {
        g->ChartGrid(grid);
        g->ChartDraw(2);
    }
}

void frmChart::cmdPrint_Click()
{
    Graph *g = VisibleChart();
    try {
        if (optPrinter->isChecked()) {
            const qint16 style = optColour->isChecked() ? 3 : 2;
            gphDensity->ChartPrintStyle(style);
            gphMerchVol->ChartPrintStyle(style);
            if (m_questions)
                PrintChartThroughDialog(*m_questions, *m_printer, *g, style, PrintFile);
        } else {
            // The copy is black and white on request; the screen returns to colour.
            g->ChartScreenStyle(optColour->isChecked() ? 1 : 0);
            g->ChartDraw(2);
            g->ChartDraw(4);
            g->ChartScreenStyle(1);
            g->ChartDraw(2);
        }
    } catch (const SendrelError &e) {
        g->ChartScreenStyle(1);
        g->ChartDraw(2);
        showError(e.description());
    }
}

void frmChart::showError(const QString &description)
{
    if (m_questions)
        m_questions->ShowErrorMessage(description);
}

void frmChart::page(bool next)
{
    ChartWindowParent *parent = m_parameters;
    HideChild(this);
    if (!parent)
        return;
    if (next)
        parent->DisplayNextChart(this);
    else
        parent->DisplayPreviousChart(this);
}

void frmChart::SetPaging(int position, const QStringList &years)
{
    const int count = static_cast<int>(years.size());
    {
        const QSignalBlocker quiet(cboYear);
        cboYear->clear();
        cboYear->addItems(years);
        cboYear->setCurrentIndex(position - 1);
    }
    lblPage->setText(QStringLiteral("Year %1 of %2").arg(position).arg(count));
    cmdFirst->setEnabled(position > 1);
    cmdPrev->setEnabled(position > 1);
    cmdNext->setEnabled(position < count);
    cmdLast->setEnabled(position < count);
    cboYear->setEnabled(count > 1);
}

void frmChart::pageTo(int position)
{
    ChartWindowParent *parent = m_parameters;
    if (position == cycleNum || position < 1) {
        const QSignalBlocker quiet(cboYear);
        cboYear->setCurrentIndex(cycleNum - 1);
        return;
    }
    HideChild(this);
    if (parent)
        parent->DisplayChartAt(this, position);
}

void frmChart::Unload()
{
    m_unloading = true;
    m_parameters = nullptr;
    ChildFrame(this)->close();
}

void frmChart::closeEvent(QCloseEvent *event)
{
    if (m_unloading) {
        QWidget::closeEvent(event);
        return;
    }
    // Cancel or the frame's close: the parent comes back in this window's place; the window
    // itself stays, hidden, with the rest of its sequence.
    event->ignore();
    ChartWindowParent *parent = m_parameters;
    HideChild(this);
    m_parameters = nullptr;
    if (parent)
        parent->ChartClosed(this);
}

void frmChart::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isWindow() && isActiveWindow())
        VisibleChart()->ChartDraw(2);
}

void frmChart::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    VisibleChart()->ChartDraw(2);
}

}  // namespace sendrel
