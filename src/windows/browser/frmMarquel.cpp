#include "windows/browser/frmMarquel.h"

#include "app/GameDB.h"
#include "app/TreeModel.h"
#include "base/SendrelError.h"
#include "base/UserQuestions.h"
#include "domain/browser/RunDeletion.h"
#include "domain/browser/RunList.h"
#include "domain/import/ImportTreeList.h"
#include "windows/browser/FrameReportHost.h"
#include "windows/common/FrameHost.h"
#include "windows/common/RunListDelegate.h"
#include "windows/common/WindowMenu.h"
#include "windows/compare/frmCompare.h"
#include "windows/composition/frmStandLevels.h"
#include "windows/import/frmDeleteRuns.h"
#include "windows/standstock/frmParameters.h"
#include "windows/summary/frmStandSummary.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QListWidget>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPushButton>
#include <QVBoxLayout>

namespace sendrel {

namespace {

// The frame's pointer is the hourglass for as long as this lives.
class Hourglass {
public:
    explicit Hourglass(FrameHost &frame) : m_frame(frame) { m_frame.SetMousePointer(11); }
    ~Hourglass() { m_frame.SetMousePointer(0); }
    Hourglass(const Hourglass &) = delete;
    Hourglass &operator=(const Hourglass &) = delete;

private:
    FrameHost &m_frame;
};

// The report windows that stand open in the frame: a run open in a stand and stock or a
// composition window cannot be deleted; chart and report viewer windows are no obstacle.
class FrameReportWindows : public OpenReportWindows {
public:
    explicit FrameReportWindows(const FrameHost &frame) : m_frame(frame) {}
    bool isRunOpen(const RunKey &run) const override
    {
        for (const QWidget *form : m_frame.ChildForms()) {
            if (const auto *standStock = qobject_cast<const frmParameters *>(form); standStock && standStock->ShownRun() == run)
                return true;
            if (const auto *composition = qobject_cast<const frmStandLevels *>(form); composition && composition->ShownRun() == run)
                return true;
        }
        return false;
    }

private:
    const FrameHost &m_frame;
};

}  // namespace

frmMarquel::frmMarquel(TreeModel &tm, FrameHost &frame, QWidget *parent) : QWidget(parent), m_tm(tm), m_frame(frame)
{
    setObjectName(QStringLiteral("frmMarquel"));
    setWindowTitle(QStringLiteral("Stand Structure Reporting System"));
    buildControls();
    buildMenus();
    Importer = [](TreeModel &model, const QString &fileName, RunKind kind) {
        const ImportResult r = ImportTreeList(model.db, model.questions, fileName, kind);
        model.DialogResult = r.dialogResult;
        for (const MessageRequest &told : ImportMessages(fileName, r))
            model.questions.message(told);
        return ImportOutcome{r.completed(), r.runId};
    };
}

frmMarquel *frmMarquel::Load(TreeModel &tm, FrameHost &frame)
{
    auto *browser = new frmMarquel(tm, frame);
    frame.AddChildWindow(browser);
    browser->Form_Load();
    return browser;
}

void frmMarquel::buildControls()
{
    Frame3 = new QGroupBox(QStringLiteral("Available Runs"), this);
    Frame3->setObjectName(QStringLiteral("Frame3"));
    lstRuns = new QListWidget(Frame3);
    lstRuns->setObjectName(QStringLiteral("lstRuns"));
    // Each click toggles one row; which rows may stay highlighted is decided in lstRuns_Click.
    lstRuns->setSelectionMode(QAbstractItemView::MultiSelection);
    lstRuns->setUniformItemSizes(true);
    m_delegate = new RunListDelegate(lstRuns);
    lstRuns->setItemDelegate(m_delegate);
    auto *listLayout = new QVBoxLayout(Frame3);
    listLayout->addWidget(lstRuns);

    Frame2 = new QGroupBox(QStringLiteral("Report Type"), this);
    Frame2->setObjectName(QStringLiteral("Frame2"));
    chkSS = new QCheckBox(QStringLiteral("Stand && Stock Tables"), Frame2);
    chkSS->setObjectName(QStringLiteral("chkSS"));
    chkStandLevels = new QCheckBox(QStringLiteral("Species Composition"), Frame2);
    chkStandLevels->setObjectName(QStringLiteral("chkStandLevels"));
    auto *typeLayout = new QHBoxLayout(Frame2);
    typeLayout->addWidget(chkSS);
    typeLayout->addSpacing(12);
    typeLayout->addWidget(chkStandLevels);
    typeLayout->addStretch(1);

    cmdOK = new QPushButton(QStringLiteral("&Ok"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setMinimumWidth(90);

    cmdSummary = new QPushButton(QStringLiteral("Stand &Summary"), this);
    cmdSummary->setObjectName(QStringLiteral("cmdSummary"));
    cmdCompare = new QPushButton(QStringLiteral("Compare..."), this);
    cmdCompare->setObjectName(QStringLiteral("cmdCompare"));

    auto *bottom = new QHBoxLayout;
    bottom->addWidget(Frame2, 1);
    bottom->addSpacing(8);
    auto *commands = new QVBoxLayout;
    commands->addStretch();
    commands->addWidget(cmdSummary);
    commands->addWidget(cmdCompare);
    commands->addWidget(cmdOK);
    bottom->addLayout(commands);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(Frame3, 1);
    layout->addLayout(bottom);
    resize(660, 340);

    // User actions only: program changes of the list and the boxes do not come through here.
    connect(lstRuns, &QListWidget::itemSelectionChanged, this, [this] {
        if (!m_programSelecting)
            lstRuns_Click();
    });
    connect(chkSS, &QCheckBox::clicked, this, &frmMarquel::chkSS_Click);
    connect(chkStandLevels, &QCheckBox::clicked, this, &frmMarquel::chkStandLevels_Click);
    connect(cmdOK, &QPushButton::clicked, this, &frmMarquel::OKClickMarq);
    connect(cmdSummary, &QPushButton::clicked, this, &frmMarquel::cmdSummary_Click);
    connect(cmdCompare, &QPushButton::clicked, this, &frmMarquel::cmdCompare_Click);
}

QMenu *frmMarquel::addMenu(const QString &name, const QString &caption)
{
    auto *menu = new QMenu(caption, this);
    menu->setObjectName(name);
    menu->menuAction()->setObjectName(name);
    m_menus.append(menu);
    return menu;
}

QAction *frmMarquel::addItem(QMenu *menu, const QString &name, const QString &caption)
{
    QAction *action = menu->addAction(caption);
    action->setObjectName(name);
    return action;
}

void frmMarquel::buildMenus()
{
    mnu_File = addMenu(QStringLiteral("mnu_File"), QStringLiteral("&File"));
    MenuFileDB = addItem(mnu_File, QStringLiteral("MenuFileDB"), QStringLiteral("&Database"));
    connect(addItem(mnu_File, QStringLiteral("MenuFileServerDB"), QStringLiteral("&Server Database...")), &QAction::triggered, this,
            &frmMarquel::MenuFileServerDB_Click);
    mnu_File_Compact = addItem(mnu_File, QStringLiteral("mnu_File_Compact"), QStringLiteral("&Compact"));
    connect(addItem(mnu_File, QStringLiteral("mnu_File_Options"), QStringLiteral("&Options...")), &QAction::triggered, this,
            &frmMarquel::mnu_File_Options_Click);
    mnu_File->addSeparator()->setObjectName(QStringLiteral("MenuSepEx"));
    mnu_File_Exit = addItem(mnu_File, QStringLiteral("mnu_File_Exit"), QStringLiteral("E&xit"));
    connect(MenuFileDB, &QAction::triggered, this, &frmMarquel::MenuFileDB_Click);
    connect(mnu_File_Compact, &QAction::triggered, this, &frmMarquel::mnu_File_Compact_Click);
    connect(mnu_File_Exit, &QAction::triggered, this, [this] { m_frame.SaveSettingsAndEnd(); });

    mnu_Runs = addMenu(QStringLiteral("mnu_Runs"), QStringLiteral("&Runs"));
    mnu_Runs_Import = addItem(mnu_Runs, QStringLiteral("mnu_Runs_Import"), QStringLiteral("&Import New"));
    mnu_Runs_Delete = addItem(mnu_Runs, QStringLiteral("mnu_Runs_Delete"), QStringLiteral("&Delete Runs"));
    connect(mnu_Runs_Import, &QAction::triggered, this, &frmMarquel::mnu_Runs_Import_Click);
    connect(mnu_Runs_Delete, &QAction::triggered, this, &frmMarquel::mnu_Runs_Delete_Click);
    connect(addItem(mnu_Runs, QStringLiteral("mnu_Runs_Compare"), QStringLiteral("&Compare...")), &QAction::triggered, this,
            &frmMarquel::cmdCompare_Click);

    mnu_Window = addMenu(QStringLiteral("mnu_Window"), QStringLiteral("&Window"));
    connect(addItem(mnu_Window, QStringLiteral("mnu_Window_Cascade"), QStringLiteral("&Cascade")), &QAction::triggered, this,
            [this] { m_frame.Arrange(kArrangeCascade); });
    connect(addItem(mnu_Window, QStringLiteral("mnuArrangeWindows"), QStringLiteral("&Arrange Windows")), &QAction::triggered, this,
            [this] { m_frame.ArrangeWindows(); });
    connect(addItem(mnu_Window, QStringLiteral("mnu_Window_TileHorizontally"), QStringLiteral("Tile &Horizontally")), &QAction::triggered,
            this, [this] { m_frame.Arrange(kArrangeTileHorizontal); });
    connect(addItem(mnu_Window, QStringLiteral("mnu_Window_TileVertically"), QStringLiteral("Tile &Vertically")), &QAction::triggered, this,
            [this] { m_frame.Arrange(kArrangeTileVertical); });
    connect(addItem(mnu_Window, QStringLiteral("mnu_Window_ArrangeIcons"), QStringLiteral("&Arrange Icons")), &QAction::triggered, this,
            [this] { m_frame.Arrange(kArrangeIcons); });
    ListOpenWindows(mnu_Window, m_frame);

    mnu_Help = addMenu(QStringLiteral("mnu_Help"), QStringLiteral("&Help"));
    connect(addItem(mnu_Help, QStringLiteral("mnu_Help_Contents"), QStringLiteral("&Contents")), &QAction::triggered, this,
            [this] { m_frame.ShowHelpTopic(0); });
    connect(addItem(mnu_Help, QStringLiteral("mnuHelpSearch"), QStringLiteral("&Search for help on...")), &QAction::triggered, this,
            [this] { m_frame.ShowHelpTopic(0); });
    connect(addItem(mnu_Help, QStringLiteral("mnuHelpTechnicalSupport"), QStringLiteral("&Obtaining Technical Support")),
            &QAction::triggered, this, [this] { m_frame.ShowHelpTopic(14); });
    connect(addItem(mnu_Help, QStringLiteral("mnuHelpAcknowledgements"), QStringLiteral("Acknowledgements")), &QAction::triggered, this,
            [this] { m_frame.ShowHelpTopic(15); });
    mnu_Help->addSeparator()->setObjectName(QStringLiteral("mnu_Help_S1"));
    connect(addItem(mnu_Help, QStringLiteral("mnu_Help_About"), QStringLiteral("&About Tolvane")), &QAction::triggered, this,
            [this] { m_frame.ShowAbout(); });
}

QList<QMenu *> frmMarquel::ChildMenuList() const
{
    return m_menus;
}

void frmMarquel::Form_Load()
{
    SelectedItems = 0;
    ChangingChecks = false;
    try {
        UpdateRunList();
        if (lstRuns->count() > 0) {
            // Making the first row current counts as a click on it. Started with a run, its
            // standing list comes first: that is the stand a report of the run is about.
            m_programSelecting = true;
            lstRuns->setCurrentRow(m_tm.RunOnCommandLine ? FirstStandingEntry(RunEntries()) : 0, QItemSelectionModel::NoUpdate);
            m_programSelecting = false;
            lstRuns_Click();
        }
    } catch (const SendrelError &e) {
        m_programSelecting = false;
        m_tm.questions.ShowErrorMessage(e.description());
    }
    SetVariantCaption();
    m_frame.LeftForm() = this;
}

void frmMarquel::SetVariantCaption()
{
    m_frame.SetCaption(QStringLiteral("Sendrel - Variant KDM"));
}

QStringList frmMarquel::RunEntries() const
{
    QStringList texts;
    texts.reserve(lstRuns->count());
    for (int i = 0; i < lstRuns->count(); ++i)
        texts.append(lstRuns->item(i)->text());
    return texts;
}

void frmMarquel::UpdateRunList()
{
    m_programSelecting = true;
    lstRuns->clear();
    m_programSelecting = false;
    const QStringList entries = RunListEntries(m_tm.db, m_tm.RunOnCommandLine ? std::optional<QString>(m_tm.CurrentRunId) : std::nullopt);
    m_programSelecting = true;
    lstRuns->addItems(entries);
    m_programSelecting = false;
    m_delegate->UpdateTabStop();

    const bool any = lstRuns->count() > 0;
    mnu_Runs_Delete->setEnabled(any);
    if (!any) {
        setChecked(chkSS, false);
        setChecked(chkStandLevels, false);
    }
    chkSS->setEnabled(any);
    chkStandLevels->setEnabled(any);
    cmdOK->setEnabled(any);
    cmdSummary->setEnabled(any);
}

void frmMarquel::RefreshList()
{
    m_programSelecting = true;
    for (int i = 0; i < lstRuns->count(); ++i) {
        bool wanted = false;
        for (int e = 0; e < SelectedItems; ++e)
            wanted = wanted || SelectedRuns[e] == i;
        QListWidgetItem *item = lstRuns->item(i);
        if (item->isSelected() != wanted)
            item->setSelected(wanted);
    }
    m_programSelecting = false;
}

void frmMarquel::lstRuns_Click()
{
    if (InListClick)
        return;
    InListClick = true;
    try {
        // With two report windows open no report can be asked for (the boxes stay unchecked),
        // but a stand summary, which is no report window, can: one run may be picked for it.
        qint16 limit = 1;
        if (NumOpenWindows == 0)
            limit = chkSS->isChecked() && chkStandLevels->isChecked() ? 1 : 2;

        if (const int c = lstRuns->currentRow(); c >= 0) {
            if (SelectedItems > limit)
                SelectedItems = limit;
            int at = -1;
            for (int e = 0; e < SelectedItems; ++e) {
                if (SelectedRuns[e] == c)
                    at = e;
            }
            if (at >= 0) {
                // A click on a selected row takes it away.
                --SelectedItems;
                if (at == 0 && SelectedItems == 1)
                    SelectedRuns[0] = SelectedRuns[1];
            } else if (limit == 1 || SelectedItems == 0) {
                SelectedRuns = {{static_cast<qint16>(c), -1}};
                SelectedItems = 1;
            } else {
                // A third pick pushes out the oldest one.
                SelectedItems = 2;
                SelectedRuns[1] = SelectedRuns[0];
                SelectedRuns[0] = static_cast<qint16>(c);
            }
        }
        RefreshList();
    } catch (const SendrelError &e) {
        m_tm.questions.ShowErrorMessage(e.description());
    }
    InListClick = false;
}

void frmMarquel::setChecked(QCheckBox *box, bool checked)
{
    const bool was = ChangingChecks;
    ChangingChecks = true;
    box->setChecked(checked);
    ChangingChecks = was;
}

void frmMarquel::reportTypeClick(QCheckBox *clicked, QCheckBox *other)
{
    if (ChangingChecks)
        return;
    ChangingChecks = true;
    if (NumOpenWindows == 2) {
        // No report can be asked for while two windows are open.
        if (clicked->isChecked())
            clicked->setChecked(false);
        if (other->isChecked())
            other->setChecked(false);
    } else if (clicked->isChecked() && other->isChecked() && (NumOpenWindows == 1 || (NumOpenWindows == 0 && SelectedItems == 2))) {
        // Two boxes with two runs would make four windows; with one window open, three.
        other->setChecked(false);
    }
    ChangingChecks = false;
}

void frmMarquel::chkSS_Click()
{
    reportTypeClick(chkSS, chkStandLevels);
}

void frmMarquel::chkStandLevels_Click()
{
    reportTypeClick(chkStandLevels, chkSS);
}

void frmMarquel::ChooseStandAndStock()
{
    ChangingChecks = true;
    chkSS->setChecked(true);
    chkStandLevels->setChecked(false);
    ChangingChecks = false;
}

void frmMarquel::OKClickMarq()
{
    try {
        QStringList kept;
        for (int e = 0; e < SelectedItems; ++e) {
            const QListWidgetItem *item = lstRuns->item(SelectedRuns[e]);
            kept.append(item ? item->text() : QString());
        }
        if (SelectedItems == 0) {
            m_tm.questions.ShowInfoMessage(QStringLiteral("No run selected"));
            return;
        }
        if (!chkSS->isChecked() && !chkStandLevels->isChecked()) {
            m_tm.questions.ShowInfoMessage(QStringLiteral("Please choose a report type."));
            return;
        }

        // Other programs of the suite may have changed the database behind the list.
        UpdateRunList();
        const QStringList rows = RunEntries();
        qint16 n = 0;
        for (const QString &text : kept) {
            const qsizetype at = rows.indexOf(text);
            if (at >= 0)
                SelectedRuns[n++] = static_cast<qint16>(at);
        }
        if (n != SelectedItems) {
            if (n > 0)
                m_tm.questions.ShowInfoMessage(QStringLiteral("Some of the runs you selected were deleted by another application."));
            else if (SelectedItems == 1)
                m_tm.questions.ShowInfoMessage(QStringLiteral("The run you selected was deleted by another application."));
            else
                m_tm.questions.ShowInfoMessage(QStringLiteral("The runs you selected were deleted by another application."));
        }
        SelectedItems = n;
        if (n > 0) {
            for (int e = 0; e < n; ++e) {
                if (chkSS->isChecked())
                    OpenStandStockWindow(SelectedRuns[e]);
                if (chkStandLevels->isChecked())
                    OpenStandLevelsWindow(SelectedRuns[e]);
            }
            if (NumOpenWindows == 2) {
                setChecked(chkSS, false);
                setChecked(chkStandLevels, false);
                SelectedItems = 0;
                SelectedRuns = {{-1, -1}};
            } else if (NumOpenWindows == 1) {
                if (chkSS->isChecked() && chkStandLevels->isChecked()) {
                    setChecked(chkSS, false);
                    setChecked(chkStandLevels, false);
                }
                if (SelectedItems > 1)
                    SelectedItems = 1;
            }
            m_frame.ArrangeWindows();
        }
        RefreshList();
    } catch (const SendrelError &e) {
        m_tm.questions.ShowErrorMessage(e.description());
    }
}

QWidget *frmMarquel::OpenStandStockWindow(int position)
{
    if (position == -1) {
        m_tm.questions.ShowInfoMessage(QStringLiteral("No run selected!"));
        return nullptr;
    }
    const RunEntry run = SplitRunEntry(lstRuns->item(position)->text());
    Hourglass hourglass(m_frame);
    // Its load counts it in, takes a place of the frame and makes it a child window there.
    auto *window = new frmParameters(m_tm, std::make_unique<FrameReportHost>(m_frame, *this));
    window->This_RunId = run.runId;
    window->This_RunDesc = run.description;
    window->This_SorH = KindLetter(run.kind());
    window->UpdateHeaderList();
    window->ChooseDensity(true);
    window->setWindowTitle(QStringLiteral("Stand & Stock Tables: ") + run.key().captionName());
    window->PlotClick();
    if (QMdiSubWindow *sub = m_frame.SubWindowOf(window))
        sub->show();
    return window;
}

QWidget *frmMarquel::OpenStandLevelsWindow(int position)
{
    if (position == -1) {
        m_tm.questions.ShowInfoMessage(QStringLiteral("No run selected!"));
        return nullptr;
    }
    const RunEntry run = SplitRunEntry(lstRuns->item(position)->text());
    Hourglass hourglass(m_frame);
    // Its load counts it in, takes a place of the frame and makes it a child window there.
    auto *window = new frmStandLevels(m_tm, std::make_unique<FrameReportHost>(m_frame, *this));
    window->This_RunId = run.runId;
    window->This_SorH = KindLetter(run.kind());
    window->This_RunDesc = run.description;
    window->CalcStandLevelsReport();
    window->setWindowTitle(QStringLiteral("Species Composition through time: ") + run.key().captionName());
    const Settings &settings = m_tm.settings;
    for (StandLevelsStatistic s :
         {StandLevelsStatistic::Sph, StandLevelsStatistic::BasalArea, StandLevelsStatistic::MerchVol, StandLevelsStatistic::TotalVol})
        window->SetTitles(s, StandLevelsChartTitles(settings, s, run.key().captionName()));
    window->SetPrintOptions(settings.PrintTo_Printer, settings.PrintAs_Colour);
    window->SetGrids(settings.VerticalGrid, settings.HorizontalGrid);
    window->ChooseStatistic(DefaultStandLevelsStatistic(settings));
    if (QMdiSubWindow *sub = m_frame.SubWindowOf(window))
        sub->show();
    return window;
}

void frmMarquel::cmdSummary_Click()
{
    try {
        if (SelectedItems == 0) {
            m_tm.questions.ShowInfoMessage(QStringLiteral("No run selected"));
            return;
        }
        for (int e = 0; e < SelectedItems; ++e) {
            if (const QListWidgetItem *item = lstRuns->item(SelectedRuns[e])) {
                const RunEntry run = SplitRunEntry(item->text());
                OpenStandSummaryWindow(m_tm, m_frame, {run.runId, run.kind()});
            }
        }
    } catch (const SendrelError &e) {
        m_tm.questions.ShowErrorMessage(e.description());
    }
}

void frmMarquel::cmdCompare_Click()
{
    try {
        QStringList runIds;
        for (int e = 0; e < SelectedItems; ++e) {
            if (const QListWidgetItem *item = lstRuns->item(SelectedRuns[e]))
                runIds.append(SplitRunEntry(item->text()).runId);
        }
        OpenCompareWindow(m_tm, m_frame, runIds);
    } catch (const SendrelError &e) {
        m_tm.questions.ShowErrorMessage(e.description());
    }
}

void frmMarquel::AddOpenWindow()
{
    ++NumOpenWindows;
    if (NumOpenWindows == 2) {
        // The browser steps aside: the two report windows take the frame's two places.
        if (m_frame.LeftForm() == this)
            m_frame.LeftForm() = nullptr;
        else if (m_frame.RightForm() == this)
            m_frame.RightForm() = nullptr;
        if (QMdiSubWindow *sub = m_frame.SubWindowOf(this))
            sub->showMinimized();
    }
}

void frmMarquel::RemoveOpenWindow()
{
    if (NumOpenWindows == 2) {
        if (QMdiSubWindow *sub = m_frame.SubWindowOf(this); sub && sub->isMinimized())
            sub->showNormal();
        if (!m_frame.LeftForm())
            m_frame.LeftForm() = this;
        else if (!m_frame.RightForm())
            m_frame.RightForm() = this;
        m_frame.ArrangeWindows();
    }
    --NumOpenWindows;
}

void frmMarquel::MenuFileDB_Click()
{
    try {
        OpenGameDB(m_tm, true);
        UpdateRunList();
    } catch (const SendrelError &e) {
        // Giving up on the file dialog keeps the database that is open.
        if (e.number() == ErrNo::DialogCancelled)
            return;
        ShowOpenFailure(e);
    }
}

void frmMarquel::MenuFileServerDB_Click()
{
    try {
        QString connection = m_tm.DBEngine.IsServer() ? m_tm.DBEngine.PathToDB : m_tm.settings.ServerDatabase;
        if (m_tm.questions.askServerDatabase(connection) && OpenServerDatabase(m_tm, connection))
            UpdateRunList();
    } catch (const SendrelError &e) {
        ShowOpenFailure(e);
    }
}

void frmMarquel::ShowOpenFailure(const SendrelError &e)
{
    m_tm.questions.message(
        {QStringLiteral("Sendrel"),
         QStringLiteral("The following error occured:\n(") + QString::number(e.number()) + QStringLiteral(") ") + e.description(),
         MsgIcon::Exclamation, MsgButtons::OK, Answer::OK});
}

void frmMarquel::mnu_File_Compact_Click()
{
    try {
        Hourglass hourglass(m_frame);
        m_tm.questions.showBusyMessage(QStringLiteral("Please wait..."), QStringLiteral("Compacting the run database..."));
        CompactResult result;
        try {
            result = m_tm.db.compact();
        } catch (const SendrelError &) {
            m_tm.questions.hideBusyMessage();
            throw;
        }
        m_tm.questions.hideBusyMessage();
        m_tm.questions.ShowInfoMessage(CompactMessage(result));
    } catch (const SendrelError &e) {
        m_tm.questions.ShowErrorMessage(e.description());
    }
}

void frmMarquel::mnu_File_Options_Click()
{
    try {
        Settings &settings = m_tm.settings;
        OptionsRequest chosen{settings.Units, settings.SdiMethod, settings.CsvDefinitions};
        if (!m_tm.questions.askOptions(chosen))
            return;
        settings.Units = chosen.units;
        settings.SdiMethod = chosen.sdiMethod;
        settings.CsvDefinitions = chosen.csvDefinitions;
        settings.SaveChosenOptions(m_tm.settingsStore);
    } catch (const SendrelError &e) {
        m_tm.questions.ShowErrorMessage(e.description());
    }
}

void frmMarquel::mnu_Runs_Import_Click()
{
    try {
        FileRequest request;
        request.title = QStringLiteral("Select Tree List to Import");
        request.filter = QStringLiteral("Tree Lists (*.lst)|*.lst|All Files (*.*)|*.*");
        request.startFolder = m_tm.settings.WorkDir;
        request.mustExist = true;
        const QString fileName = m_tm.questions.openFile(request);
        if (fileName.isEmpty())
            return;
        const std::optional<RunKind> kind = m_tm.questions.askStandingOrHarvested();
        if (!kind)
            return;
        ImportOutcome outcome;
        {
            Hourglass hourglass(m_frame);
            outcome = Importer(m_tm, fileName, *kind);
        }
        if (outcome.completed) {
            UpdateRunList();
            selectRun(outcome.runId);
        }
    } catch (const SendrelError &e) {
        m_frame.SetMousePointer(0);
        m_tm.questions.ShowErrorMessage(e.description());
    }
}

void frmMarquel::selectRun(const QString &runId)
{
    for (int i = 0; i < lstRuns->count(); ++i) {
        if (SplitRunEntry(lstRuns->item(i)->text()).runId != runId)
            continue;
        bool selected = false;
        for (int e = 0; e < SelectedItems; ++e)
            selected = selected || SelectedRuns[e] == i;
        m_programSelecting = true;
        lstRuns->setCurrentRow(i, QItemSelectionModel::NoUpdate);
        m_programSelecting = false;
        if (selected)
            RefreshList();
        else
            lstRuns_Click();
        return;
    }
}

void frmMarquel::mnu_Runs_Delete_Click()
{
    try {
        if (!m_deleteRuns) {
            m_deleteRuns = new frmDeleteRuns(m_tm, m_frame.FrameWidget());
            m_deleteRuns->BrowserEntries = [this] { return RunEntries(); };
            m_deleteRuns->Delete = [this](const QStringList &selected) {
                if (selected.isEmpty()) {
                    m_tm.questions.ShowInfoMessage(NoRunSelectedMessage());
                    return;
                }
                // Re-read first: another program may have removed runs since the list was filled.
                const auto refresh = [this] {
                    UpdateRunList();
                    m_deleteRuns->RefreshRunList();
                    return RunEntries();
                };
                const FoundRuns runs = FindSelectedRuns(selected, refresh());
                if (!runs.vanishedMessage.isEmpty())
                    m_tm.questions.ShowInfoMessage(runs.vanishedMessage);
                if (runs.found.isEmpty())
                    return;
                const DeleteRunsResult result = DeleteConfirmedRuns(m_tm.db, m_tm.questions, runs.found, FrameReportWindows(m_frame));
                if (!result.stoppedMessage.isEmpty()) {
                    m_tm.questions.ShowInfoMessage(result.stoppedMessage);
                    return;
                }
                refresh();
            };
            m_deleteRuns->SetMousePointer = [this](int pointer) { m_frame.SetMousePointer(pointer); };
        }
        m_deleteRuns->ShowModal();
        UpdateRunList();
        RefreshList();
    } catch (const SendrelError &e) {
        m_tm.questions.ShowErrorMessage(e.description());
    }
    setCursor(Qt::ArrowCursor);
}

void frmMarquel::closeEvent(QCloseEvent *event)
{
    // Closing the browser is the program's end, with every report window.
    if (m_frame.SaveSettingsAndEnd())
        event->accept();
    else
        event->ignore();
}

}  // namespace sendrel
