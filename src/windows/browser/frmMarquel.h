#pragma once

#include "base/RunKind.h"
#include "windows/common/ChildMenus.h"

#include <QPointer>
#include <QWidget>

#include <array>
#include <functional>

class QAction;
class QCheckBox;
class QGroupBox;
class QListWidget;
class QMenu;
class QPushButton;

namespace sendrel {

struct TreeModel;
class SendrelError;
class FrameHost;
class frmDeleteRuns;
class RunListDelegate;

// The run browser: lists the runs of the database, lets the user pick up to two of them and a
// report type, opens the report windows and keeps count of them (two at most). Closing it ends
// the program.
class frmMarquel : public QWidget, public ChildMenus {
    Q_OBJECT
    Q_PROPERTY(int HelpContextID MEMBER HelpContextID)
public:
    frmMarquel(TreeModel &tm, FrameHost &frame, QWidget *parent = nullptr);

    // The browser of the frame: made, taken into the frame and loaded.
    static frmMarquel *Load(TreeModel &tm, FrameHost &frame);

    // The load step: fill the list, select its first row, caption the frame, take the left place.
    void Form_Load();

    void AddOpenWindow();
    void RemoveOpenWindow();
    // Rebuilds lstRuns from the database and sets what is enabled. Failures are passed on.
    void UpdateRunList();
    // Highlights exactly the rows of the first SelectedItems entries of SelectedRuns.
    void RefreshList();
    // Opens the report windows for the selection.
    void OKClickMarq();
    // Checks the stand and stock tables as the report type, and not the composition.
    void ChooseStandAndStock();

    // The user's actions, as the controls and menus call them.
    void lstRuns_Click();
    void chkSS_Click();
    void chkStandLevels_Click();
    void MenuFileDB_Click();
    // Server Database...: a PostgreSQL database in place of the file, by its connection text.
    void MenuFileServerDB_Click();
    void mnu_File_Compact_Click();
    // Options: the units, the SDI method and the CSV definitions, kept in the settings at once.
    void mnu_File_Options_Click();
    void mnu_Runs_Import_Click();
    void mnu_Runs_Delete_Click();
    // Opens a stand summary window for each selected run; these are no report windows.
    void cmdSummary_Click();
    // Opens a comparison window with the selected runs checked; more are checked there.
    void cmdCompare_Click();

    // The texts of all rows of lstRuns, in order.
    QStringList RunEntries() const;

    QList<QMenu *> ChildMenuList() const override;

    // Selection state. SelectedRuns holds list positions, the most recent first (entries 1 and 2
    // are [0] and [1]); -1 is none.
    qint16 SelectedItems = 0;
    std::array<qint16, 2> SelectedRuns{{-1, -1}};
    bool ChangingChecks = false;
    qint16 NumOpenWindows = 0;
    bool InListClick = false;
    int HelpContextID = 29;

    struct ImportOutcome {
        bool completed = false;
        QString runId;
    };
    // The import of one tree list (file name, kind "S" or "H"); the import core by default.
    std::function<ImportOutcome(TreeModel &, const QString &, RunKind)> Importer;

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void buildControls();
    void buildMenus();
    QMenu *addMenu(const QString &name, const QString &caption);
    QAction *addItem(QMenu *menu, const QString &name, const QString &caption);
    void setChecked(QCheckBox *box, bool checked);
    void reportTypeClick(QCheckBox *clicked, QCheckBox *other);
    void SetVariantCaption();
    // One report window for one list position; nullptr when none opened.
    QWidget *OpenStandStockWindow(int position);
    QWidget *OpenStandLevelsWindow(int position);
    // A database that could not be opened, with the error trail; the one open stays.
    void ShowOpenFailure(const SendrelError &e);
    // Selects the first row of the run, as a click on it would.
    void selectRun(const QString &runId);

    QGroupBox *Frame3;
    QListWidget *lstRuns;
    QPushButton *cmdOK;
    QPushButton *cmdSummary;
    QPushButton *cmdCompare;
    QGroupBox *Frame2;
    QCheckBox *chkStandLevels;
    QCheckBox *chkSS;

    QMenu *mnu_File;
    QAction *MenuFileDB;
    QAction *mnu_File_Compact;
    QAction *mnu_File_Exit;
    QMenu *mnu_Runs;
    QAction *mnu_Runs_Import;
    QAction *mnu_Runs_Delete;
    QMenu *mnu_Window;
    QMenu *mnu_Help;

    TreeModel &m_tm;
    FrameHost &m_frame;
    RunListDelegate *m_delegate;
    QList<QMenu *> m_menus;
    QPointer<frmDeleteRuns> m_deleteRuns;
    bool m_programSelecting = false;
};

}  // namespace sendrel
