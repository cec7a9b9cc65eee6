// The run browser: the list, the selection limits, the report type boxes, OK with runs that
// vanished behind the list, the count of report windows and the import command.
#include "support/TestMain.h"
#include "support/GuiBench.h"

#include "shell/frmSendrel.h"
#include "windows/browser/frmMarquel.h"
#include "windows/common/RunListDelegate.h"
#include "windows/composition/frmStandLevels.h"
#include "windows/standstock/frmParameters.h"

#include <QAction>
#include <QCheckBox>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTest>

using namespace sendrel;

namespace {

// The report windows of the frame, stand and stock and composition alike, read by their run.
struct ReportWindow {
    QWidget *form;
    QString This_RunId;
    QString This_SorH;
    QString This_RunDesc;
    QString windowTitle() const { return form->windowTitle(); }
    operator QWidget *() const { return form; }
};

QList<ReportWindow> reportWindows(frmSendrel &frame)
{
    QList<ReportWindow> windows;
    for (QWidget *form : frame.ChildForms()) {
        if (qobject_cast<frmStandLevels *>(form) || qobject_cast<frmParameters *>(form))
            windows.append({form, form->property("This_RunId").toString(), form->property("This_SorH").toString(),
                            form->property("This_RunDesc").toString()});
    }
    return windows;
}

// A run as an import leaves it: with the header row of its first year.
void addRun(GuiBench &b, const QString &runId, const QString &sorH, const QString &description)
{
    b.addRun(runId, sorH, description);
    b.addHeader(runId, sorH, 1, 2000);
}

QStringList captions(const QList<ReportWindow> &windows)
{
    QStringList texts;
    for (const ReportWindow &w : windows)
        texts.append(w.windowTitle());
    return texts;
}

}  // namespace

class tst_frmMarquel : public QObject {
    Q_OBJECT

    // Three runs: A standing and harvested, B standing.
    frmMarquel *startWithRuns(GuiBench &b)
    {
        b.openDatabase();
        addRun(b, QStringLiteral("B"), QStringLiteral("S"), QStringLiteral("Thinned to 600 sph"));
        addRun(b, QStringLiteral("A"), QStringLiteral("S"), QStringLiteral("No treatment"));
        addRun(b, QStringLiteral("A"), QStringLiteral("H"), QStringLiteral("No treatment"));
        return b.start();
    }

    void checkBox(QCheckBox *box) { clickBox(box); }

private slots:
    void loadListsRunsAndSelectsTheFirst()
    {
        GuiBench b;
        frmMarquel *m = startWithRuns(b);
        QCOMPARE(m->RunEntries(), (QStringList{QStringLiteral("A:Harvested\tNo treatment"), QStringLiteral("A:Standing\tNo treatment"),
                                               QStringLiteral("B:Standing\tThinned to 600 sph")}));
        QCOMPARE(highlightedRows(m->lstRuns), QList<int>{0});
        QCOMPARE(m->SelectedItems, qint16(1));
        QCOMPARE(b.frame->windowTitle(), QStringLiteral("Sendrel - Variant KDM"));
        QCOMPARE(b.frame->LeftForm.data(), m);
        QCOMPARE(m->windowTitle(), QStringLiteral("Stand Structure Reporting System"));
        QVERIFY(m->cmdOK->isEnabled());
        QVERIFY(m->mnu_Runs_Delete->isEnabled());
        QCOMPARE(m->chkSS->text(), QStringLiteral("Stand && Stock Tables"));
        QCOMPARE(m->chkStandLevels->text(), QStringLiteral("Species Composition"));
        QCOMPARE(m->cmdOK->text(), QStringLiteral("&Ok"));
    }

    // The descriptions stand in one column behind the longest head, at 105 dialog units at least.
    void descriptionsLineUp()
    {
        GuiBench b;
        b.openDatabase();
        b.addRun(QStringLiteral("A"), QStringLiteral("S"), QStringLiteral("short"));
        b.addRun(QStringLiteral("THIN40_CT2025_LONGNAME_XY"), QStringLiteral("H"), QStringLiteral("long"));
        frmMarquel *m = b.start();
        auto *delegate = qobject_cast<RunListDelegate *>(m->lstRuns->itemDelegate());
        QVERIFY(delegate);
        const QFontMetrics fm(m->lstRuns->font());
        QVERIFY(delegate->TabStop() >= delegate->BaseTabStop());
        QVERIFY(delegate->TabStop() > fm.horizontalAdvance(QStringLiteral("THIN40_CT2025_LONGNAME_XY:Harvested")));
        QCOMPARE(delegate->BaseTabStop(),
                 qRound(105 * fm.horizontalAdvance(QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz")) / 52.0 / 4.0));
    }

    void menusHaveTheirNamesAndCaptions()
    {
        GuiBench b;
        frmMarquel *m = startWithRuns(b);
        const QList<QPair<QString, QString>> expected = {
            {QStringLiteral("mnu_File"), QStringLiteral("&File")},
            {QStringLiteral("MenuFileDB"), QStringLiteral("&Database")},
            {QStringLiteral("MenuSepEx"), QString()},
            {QStringLiteral("mnu_File_Exit"), QStringLiteral("E&xit")},
            {QStringLiteral("mnu_Runs"), QStringLiteral("&Runs")},
            {QStringLiteral("mnu_Runs_Import"), QStringLiteral("&Import New")},
            {QStringLiteral("mnu_Runs_Delete"), QStringLiteral("&Delete Runs")},
            {QStringLiteral("mnu_Window"), QStringLiteral("&Window")},
            {QStringLiteral("mnu_Window_Cascade"), QStringLiteral("&Cascade")},
            {QStringLiteral("mnuArrangeWindows"), QStringLiteral("&Arrange Windows")},
            {QStringLiteral("mnu_Window_TileHorizontally"), QStringLiteral("Tile &Horizontally")},
            {QStringLiteral("mnu_Window_TileVertically"), QStringLiteral("Tile &Vertically")},
            {QStringLiteral("mnu_Window_ArrangeIcons"), QStringLiteral("&Arrange Icons")},
            {QStringLiteral("mnu_Help"), QStringLiteral("&Help")},
            {QStringLiteral("mnu_Help_Contents"), QStringLiteral("&Contents")},
            {QStringLiteral("mnuHelpSearch"), QStringLiteral("&Search for help on...")},
            {QStringLiteral("mnuHelpTechnicalSupport"), QStringLiteral("&Obtaining Technical Support")},
            {QStringLiteral("mnuHelpAcknowledgements"), QStringLiteral("Acknowledgements")},
            {QStringLiteral("mnu_Help_S1"), QString()},
            {QStringLiteral("mnu_Help_About"), QStringLiteral("&About Tolvane")},
        };
        QList<QPair<QString, QString>> actual;
        for (QMenu *menu : m->ChildMenuList()) {
            actual.append({menu->objectName(), menu->title()});
            for (QAction *a : menu->actions())
                actual.append({a->objectName(), a->isSeparator() ? QString() : a->text()});
        }
        QCOMPARE(actual, expected);

        // While the browser is active its menus stand in the frame's menu bar.
        QStringList bar;
        for (QAction *a : b.frame->menuBar()->actions())
            bar.append(a->objectName());
        QCOMPARE(bar, (QStringList{QStringLiteral("mnu_File"), QStringLiteral("mnu_Runs"), QStringLiteral("mnu_Window"),
                                   QStringLiteral("mnu_Help")}));
    }

    void emptyDatabaseDisablesReportsAndDelete()
    {
        GuiBench b;
        frmMarquel *m = b.start();
        QCOMPARE(m->lstRuns->count(), 0);
        QVERIFY(!m->cmdOK->isEnabled());
        QVERIFY(!m->chkSS->isEnabled());
        QVERIFY(!m->chkStandLevels->isEnabled());
        QVERIFY(!m->chkSS->isChecked());
        QVERIFY(!m->mnu_Runs_Delete->isEnabled());
        QVERIFY(m->mnu_Runs_Import->isEnabled());
        QCOMPARE(m->SelectedItems, qint16(0));
    }

    // The limit of selected runs, row by row of its table.
    void selectionLimits()
    {
        GuiBench b;
        frmMarquel *m = startWithRuns(b);

        // No window, at most one box: two runs; a third pick pushes out the oldest.
        clickRow(m->lstRuns, 1);
        QCOMPARE(highlightedRows(m->lstRuns), (QList<int>{0, 1}));
        clickRow(m->lstRuns, 2);
        QCOMPARE(highlightedRows(m->lstRuns), (QList<int>{1, 2}));
        QCOMPARE(m->SelectedRuns[0], qint16(2));
        QCOMPARE(m->SelectedRuns[1], qint16(1));
        // A click on a selected row takes it away; the other one moves up.
        clickRow(m->lstRuns, 2);
        QCOMPARE(highlightedRows(m->lstRuns), QList<int>{1});
        QCOMPARE(m->SelectedItems, qint16(1));
        QCOMPARE(m->SelectedRuns[0], qint16(1));

        // Both boxes checked: one run.
        checkBox(m->chkSS);
        checkBox(m->chkStandLevels);
        QVERIFY(m->chkSS->isChecked() && m->chkStandLevels->isChecked());
        clickRow(m->lstRuns, 0);
        QCOMPARE(highlightedRows(m->lstRuns), QList<int>{0});
        checkBox(m->chkStandLevels);

        // One window open: one run, whatever the boxes.
        m->NumOpenWindows = 1;
        clickRow(m->lstRuns, 2);
        QCOMPARE(highlightedRows(m->lstRuns), QList<int>{2});
        QCOMPARE(m->SelectedItems, qint16(1));

        // Two windows open: nothing can be selected.
        m->NumOpenWindows = 2;
        clickRow(m->lstRuns, 1);
        QCOMPARE(highlightedRows(m->lstRuns), QList<int>{});
        QCOMPARE(m->SelectedItems, qint16(0));
        m->NumOpenWindows = 0;
    }

    void reportTypeBoxRules()
    {
        GuiBench b;
        frmMarquel *m = startWithRuns(b);

        // Two runs selected: the second box unchecks the first.
        clickRow(m->lstRuns, 1);
        checkBox(m->chkSS);
        checkBox(m->chkStandLevels);
        QVERIFY(m->chkStandLevels->isChecked());
        QVERIFY(!m->chkSS->isChecked());
        checkBox(m->chkSS);
        QVERIFY(m->chkSS->isChecked());
        QVERIFY(!m->chkStandLevels->isChecked());

        // One run: both boxes may be checked; a click on a second row then takes the first away.
        clickRow(m->lstRuns, 1);
        QCOMPARE(m->SelectedItems, qint16(1));
        checkBox(m->chkStandLevels);
        QVERIFY(m->chkSS->isChecked() && m->chkStandLevels->isChecked());
        clickRow(m->lstRuns, 2);
        QCOMPARE(highlightedRows(m->lstRuns), QList<int>{2});

        // One window open: never both boxes.
        checkBox(m->chkStandLevels);
        m->NumOpenWindows = 1;
        checkBox(m->chkStandLevels);
        QVERIFY(m->chkStandLevels->isChecked());
        QVERIFY(!m->chkSS->isChecked());

        // Two windows open: no box stays checked.
        m->NumOpenWindows = 2;
        checkBox(m->chkSS);
        QVERIFY(!m->chkSS->isChecked());
        QVERIFY(!m->chkStandLevels->isChecked());
        m->NumOpenWindows = 0;
    }

    void okTellsWhatIsMissing()
    {
        GuiBench b;
        frmMarquel *m = startWithRuns(b);
        QTest::mouseClick(m->cmdOK, Qt::LeftButton);
        QCOMPARE(b.questions.messageTexts(), QStringList{QStringLiteral("Please choose a report type.")});
        clickRow(m->lstRuns, 0);
        checkBox(m->chkSS);
        QTest::mouseClick(m->cmdOK, Qt::LeftButton);
        QCOMPARE(b.questions.messageTexts().last(), QStringLiteral("No run selected"));
        QCOMPARE(b.questions.asked().last().title, QStringLiteral("Sendrel"));
        QVERIFY(reportWindows(*b.frame).isEmpty());
    }

    // Two runs and one type: two windows, the browser steps aside and the boxes are cleared.
    void twoRunsOpenTwoWindows()
    {
        GuiBench b;
        frmMarquel *m = startWithRuns(b);
        clickRow(m->lstRuns, 2);
        checkBox(m->chkSS);
        QTest::mouseClick(m->cmdOK, Qt::LeftButton);

        const auto windows = reportWindows(*b.frame);
        QCOMPARE(captions(windows), (QStringList{QStringLiteral("Stand & Stock Tables: B"), QStringLiteral("Stand & Stock Tables: A")}));
        QCOMPARE(windows[0].This_RunId, QStringLiteral("B"));
        QCOMPARE(windows[0].This_SorH, QStringLiteral("S"));
        QCOMPARE(windows[0].This_RunDesc, QStringLiteral("Thinned to 600 sph"));
        QCOMPARE(windows[1].This_SorH, QStringLiteral("H"));
        QCOMPARE(m->NumOpenWindows, qint16(2));
        QVERIFY(b.frame->SubWindowOf(m)->isMinimized());
        QVERIFY(!m->chkSS->isChecked());
        QCOMPARE(m->SelectedItems, qint16(0));
        QCOMPARE(highlightedRows(m->lstRuns), QList<int>{});
        // The first window went beside the browser; the second took the place that the browser left.
        QCOMPARE(b.frame->RightForm.data(), windows[0].form);
        QCOMPARE(b.frame->LeftForm.data(), windows[1].form);
        QCOMPARE(b.frame->SubWindowOf(windows[1])->pos(), QPoint(0, 0));
        QCOMPARE(b.frame->SubWindowOf(windows[0])->pos(), QPoint(b.frame->mdiArea()->viewport()->width() / 2, 0));

        // Closing one: the browser comes back in the place that it frees.
        b.frame->SubWindowOf(windows[1])->close();
        QApplication::processEvents();
        QCOMPARE(m->NumOpenWindows, qint16(1));
        QVERIFY(!b.frame->SubWindowOf(m)->isMinimized());
        QCOMPARE(b.frame->LeftForm.data(), m);
        QCOMPARE(b.frame->SubWindowOf(m)->pos(), QPoint(0, 0));
        QVERIFY(b.ended.isEmpty());
    }

    void oneRunBothTypesOpensStandAndStockFirst()
    {
        GuiBench b;
        frmMarquel *m = startWithRuns(b);
        clickRow(m->lstRuns, 0);
        clickRow(m->lstRuns, 2);   // B only
        checkBox(m->chkSS);
        checkBox(m->chkStandLevels);
        QTest::mouseClick(m->cmdOK, Qt::LeftButton);
        QCOMPARE(captions(reportWindows(*b.frame)),
                 (QStringList{QStringLiteral("Stand & Stock Tables: B"), QStringLiteral("Species Composition through time: B")}));
        QCOMPARE(m->NumOpenWindows, qint16(2));
        QVERIFY(!m->chkSS->isChecked() && !m->chkStandLevels->isChecked());
    }

    // One window: the boxes stay, and one more run may be picked for the second window.
    void oneRunOneTypeKeepsTheBoxes()
    {
        GuiBench b;
        frmMarquel *m = startWithRuns(b);
        checkBox(m->chkStandLevels);
        QTest::mouseClick(m->cmdOK, Qt::LeftButton);
        QCOMPARE(captions(reportWindows(*b.frame)), QStringList{QStringLiteral("Species Composition through time: A")});
        QVERIFY(m->chkStandLevels->isChecked());
        QCOMPARE(m->SelectedItems, qint16(1));
        QCOMPARE(m->NumOpenWindows, qint16(1));
        QCOMPARE(b.frame->LeftForm.data(), m);
        QCOMPARE(b.frame->RightForm.data(), reportWindows(*b.frame).first().form);
        clickRow(m->lstRuns, 2);
        QCOMPARE(highlightedRows(m->lstRuns), QList<int>{2});
    }

    // Another program deletes a run between the click and OK.
    void okRechecksTheDatabase()
    {
        {
            GuiBench b;
            frmMarquel *m = startWithRuns(b);
            clickRow(m->lstRuns, 2);
            checkBox(m->chkSS);
            b.exec(QStringLiteral("DELETE FROM Model_Run WHERE Run_Id = 'A' AND Standing_Harvested = 'H'"));
            QTest::mouseClick(m->cmdOK, Qt::LeftButton);
            QCOMPARE(b.questions.messageTexts(), QStringList{QStringLiteral("Some of the runs you selected were deleted by another application.")});
            QCOMPARE(captions(reportWindows(*b.frame)), QStringList{QStringLiteral("Stand & Stock Tables: B")});
            QCOMPARE(m->lstRuns->count(), 2);
        }
        {
            GuiBench b;
            frmMarquel *m = startWithRuns(b);
            checkBox(m->chkSS);
            b.exec(QStringLiteral("DELETE FROM Model_Run WHERE Run_Id = 'A' AND Standing_Harvested = 'H'"));
            QTest::mouseClick(m->cmdOK, Qt::LeftButton);
            QCOMPARE(b.questions.messageTexts(), QStringList{QStringLiteral("The run you selected was deleted by another application.")});
            QVERIFY(reportWindows(*b.frame).isEmpty());
            QCOMPARE(m->SelectedItems, qint16(0));
        }
        {
            // A changed description counts as deleted: the whole row text is compared.
            GuiBench b;
            frmMarquel *m = startWithRuns(b);
            clickRow(m->lstRuns, 1);
            checkBox(m->chkSS);
            b.exec(QStringLiteral("UPDATE Run SET Run_Desc = 'Renamed' WHERE Run_Id = 'A'"));
            QTest::mouseClick(m->cmdOK, Qt::LeftButton);
            QCOMPARE(b.questions.messageTexts(), QStringList{QStringLiteral("The runs you selected were deleted by another application.")});
            QVERIFY(reportWindows(*b.frame).isEmpty());
        }
    }

    void renamedRunIdKeepsItsColon()
    {
        GuiBench b;
        b.openDatabase();
        addRun(b, QStringLiteral("A:1"), QStringLiteral("S"), QStringLiteral("Second import"));
        frmMarquel *m = b.start();
        QCOMPARE(m->RunEntries(), QStringList{QStringLiteral("A:1:Standing\tSecond import")});
        checkBox(m->chkSS);
        QTest::mouseClick(m->cmdOK, Qt::LeftButton);
        const auto windows = reportWindows(*b.frame);
        QCOMPARE(windows.size(), 1);
        QCOMPARE(windows[0].This_RunId, QStringLiteral("A:1"));
        QCOMPARE(windows[0].This_SorH, QStringLiteral("S"));
        QCOMPARE(windows[0].windowTitle(), QStringLiteral("Stand & Stock Tables: A:1"));
    }

    // The import command: file, kind, import, then the new run is listed and selected.
    void importListsAndSelectsTheNewRun()
    {
        GuiBench b;
        frmMarquel *m = startWithRuns(b);
        QStringList calls;
        m->Importer = [&](TreeModel &, const QString &fileName, const QString &kind) {
            calls << fileName + QLatin1Char('|') + kind;
            b.addRun(QStringLiteral("NEW"), kind, QStringLiteral("Imported"));
            return frmMarquel::ImportOutcome{true, QStringLiteral("NEW")};
        };

        // Cancelled at the file dialog, then at the kind: nothing is imported.
        b.questions.answerOpenFile(QString());
        m->mnu_Runs_Import->trigger();
        b.questions.answerOpenFile(QStringLiteral("/lists/new.lst"));
        b.questions.answerStandingOrHarvested(QString());
        m->mnu_Runs_Import->trigger();
        QVERIFY(calls.isEmpty());

        clickRow(m->lstRuns, 0);   // nothing selected now
        b.questions.answerOpenFile(QStringLiteral("/lists/new.lst"));
        b.questions.answerStandingOrHarvested(QStringLiteral("H"));
        m->mnu_Runs_Import->trigger();
        QCOMPARE(calls, QStringList{QStringLiteral("/lists/new.lst|H")});
        const auto &asked = b.questions.asked();
        QCOMPARE(asked[asked.size() - 2].title, QStringLiteral("Select Tree List to Import"));
        QCOMPARE(asked[asked.size() - 2].text, b.tm.settings.WorkDir + QStringLiteral("|"));
        QCOMPARE(m->lstRuns->count(), 4);
        QCOMPARE(m->lstRuns->item(3)->text(), QStringLiteral("NEW:Harvested\tImported"));
        QCOMPARE(highlightedRows(m->lstRuns), QList<int>{3});
        QCOMPARE(b.frame->MousePointer(), 0);
    }

    void importFailureIsShown()
    {
        GuiBench b;
        frmMarquel *m = startWithRuns(b);
        m->Importer = [](TreeModel &, const QString &, const QString &) -> frmMarquel::ImportOutcome {
            throw SendrelError(53, QStringLiteral("Sendrel"), QStringLiteral("File not found"));
        };
        b.questions.answerOpenFile(QStringLiteral("/lists/none.lst"));
        b.questions.answerStandingOrHarvested(QStringLiteral("S"));
        m->mnu_Runs_Import->trigger();
        QCOMPARE(b.questions.messageTexts(), QStringList{QStringLiteral("The following error occured:\nFile not found")});
        QCOMPARE(m->lstRuns->count(), 3);
        QCOMPARE(b.frame->MousePointer(), 0);
    }

    // File, Database: giving up keeps the old database in silence.
    void databaseMenuCancelIsSilent()
    {
        GuiBench b;
        frmMarquel *m = startWithRuns(b);
        b.questions.answerOpenFile(QString());
        b.questions.answerMessage(Answer::Cancel);
        m->MenuFileDB->trigger();
        QCOMPARE(b.questions.asked().size(), 2);
        QCOMPARE(b.questions.asked()[0].title, QStringLiteral("Sendrel - Locate Tolv Game Database"));
        QCOMPARE(m->lstRuns->count(), 3);

        // Another database: the list follows it.
        sendrel::test::RunDatabase other{sendrel::test::RunDatabase::Db::Created};
        b.questions.answerOpenFile(other.path());
        m->MenuFileDB->trigger();
        QCOMPARE(m->lstRuns->count(), 0);
        QVERIFY(!m->cmdOK->isEnabled());
    }

    // Closing the browser is the orderly end: settings saved, the process ended.
    void closingTheBrowserEndsTheProgram()
    {
        GuiBench b;
        frmMarquel *m = startWithRuns(b);
        b.frame->SubWindowOf(m)->close();
        QCOMPARE(b.ended, QList<int>{0});
        QCOMPARE(b.store.GetSetting(kSectionSendrel, QStringLiteral("NumClasses")), QStringLiteral("10"));
        QVERIFY(!b.tm.DBEngine.IsOpen());
    }
};

SENDREL_TEST_MAIN(tst_frmMarquel)
#include "tst_frmMarquel.moc"
