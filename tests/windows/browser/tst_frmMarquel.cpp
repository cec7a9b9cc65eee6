// The run browser: the list, the selection limits, the report type boxes, OK with runs that
// vanished behind the list, the count and places of report windows, import and database.
#include "support/TestMain.h"
#include "support/GuiBench.h"
#include "support/ServerDatabase.h"
#include "support/TreeListLines.h"

#include "base/SendrelError.h"
#include "base/SettingsStore.h"
#include "store/Schema.h"
#include "windows/common/RunListDelegate.h"

#include <QAction>
#include <QCheckBox>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>

using namespace sendrel;
using namespace sendrel::test;

class tst_frmMarquel : public QObject {
    Q_OBJECT

    // Three runs, listed as A:Harvested, A:Standing, B:Standing.
    frmMarquel *startWithRuns(GuiBench &b)
    {
        b.openDatabase();
        b.addListedRun(QStringLiteral("B"), QStringLiteral("S"), QStringLiteral("Thinned to 600 sph"));
        b.addListedRun(QStringLiteral("A"), QStringLiteral("S"), QStringLiteral("No treatment"));
        b.addListedRun(QStringLiteral("A"), QStringLiteral("H"), QStringLiteral("No treatment"));
        return b.start();
    }

    static QStringList checkedBoxes(frmMarquel *m)
    {
        QStringList checked;
        for (QCheckBox *box : {Control<QCheckBox>(m, "chkSS"), Control<QCheckBox>(m, "chkStandLevels")}) {
            if (box->isChecked())
                checked << box->objectName();
        }
        return checked;
    }

private slots:
    void loadListsRunsAndSelectsTheFirst()
    {
        GuiBench b;
        frmMarquel *m = startWithRuns(b);
        QCOMPARE(m->RunEntries(), (QStringList{QStringLiteral("A:Harvested\tNo treatment"), QStringLiteral("A:Standing\tNo treatment"),
                                               QStringLiteral("B:Standing\tThinned to 600 sph")}));
        QCOMPARE(highlightedRows(RunList(m)), QList<int>{0});
        QCOMPARE(b.frame->windowTitle(), QStringLiteral("Sendrel - Variant KDM"));
        QCOMPARE(b.frame->LeftForm().data(), m);
        QVERIFY(Control<QPushButton>(m, "cmdOK")->isEnabled() && Control<QCheckBox>(m, "chkSS")->isEnabled() && MenuCommand(m, "mnu_Runs_Delete")->isEnabled());
    }

    void emptyDatabaseDisablesReportsAndDelete()
    {
        GuiBench b;
        frmMarquel *m = b.start();
        QCOMPARE(RunList(m)->count(), 0);
        QVERIFY(!Control<QPushButton>(m, "cmdOK")->isEnabled() && !Control<QCheckBox>(m, "chkSS")->isEnabled() && !Control<QCheckBox>(m, "chkStandLevels")->isEnabled());
        QVERIFY(!MenuCommand(m, "mnu_Runs_Delete")->isEnabled() && MenuCommand(m, "mnu_Runs_Import")->isEnabled());
        QCOMPARE(m->SelectedItems, qint16(0));
    }

    // The descriptions stand in one column behind the longest head, at 105 dialog units at least.
    void descriptionsLineUp()
    {
        GuiBench b;
        b.openDatabase();
        b.addRun(QStringLiteral("A"), QStringLiteral("S"), QStringLiteral("short"));
        b.addRun(QStringLiteral("THIN40_CT2025_LONGNAME_XY"), QStringLiteral("H"), QStringLiteral("long"));
        frmMarquel *m = b.start();
        auto *delegate = qobject_cast<RunListDelegate *>(RunList(m)->itemDelegate());
        const QFontMetrics fm(RunList(m)->font());
        QVERIFY(delegate->TabStop() > fm.horizontalAdvance(QStringLiteral("THIN40_CT2025_LONGNAME_XY:Harvested")));
        QVERIFY(delegate->TabStop() >= delegate->BaseTabStop());
    }

    // A description longer than the list is elided there, on one line, and shown whole as the
    // row's tip; no row is wider than its head, so none pushes a scroll bar out.
    void longDescriptionsAreElidedWithATip()
    {
        GuiBench b;
        b.openDatabase();
        const QString text = QStringLiteral("Thinned from below\r\nto 600 stems ") + QString(300, QLatin1Char('x'));
        b.addRun(QStringLiteral("A"), QStringLiteral("S"), text);
        frmMarquel *m = b.start();
        QListWidgetItem *item = RunList(m)->item(0);
        QCOMPARE(item->toolTip(), QString(text).simplified());
        auto *delegate = qobject_cast<RunListDelegate *>(RunList(m)->itemDelegate());
        QStyleOptionViewItem option;
        option.initFrom(RunList(m));
        QVERIFY(delegate->sizeHint(option, RunList(m)->model()->index(0, 0)).width() <= delegate->TabStop() + 8);
    }

    // The user's clicks on rows (by number) and boxes (by name), with 0, 1 or 2 report windows
    // open: how many runs may be selected, and which boxes may be checked together (two boxes
    // would make more than two windows with two runs, or with a window open). The first row
    // comes selected.
    void selectionAndBoxes_data()
    {
        QTest::addColumn<int>("openWindows");
        QTest::addColumn<QStringList>("clicks");
        QTest::addColumn<QList<int>>("highlighted");
        QTest::addColumn<QStringList>("checked");
        const QStringList both{"chkSS", "chkStandLevels"};
        QTest::newRow("two runs") << 0 << QStringList{"1"} << QList<int>{0, 1} << QStringList();
        QTest::newRow("a third pick pushes out the oldest") << 0 << QStringList{"1", "2"} << QList<int>{1, 2} << QStringList();
        QTest::newRow("a click takes a row away") << 0 << QStringList{"1", "0"} << QList<int>{1} << QStringList();
        QTest::newRow("the older row moves up") << 0 << QStringList{"1", "1", "2"} << QList<int>{0, 2} << QStringList();
        QTest::newRow("both boxes: one run") << 0 << QStringList{"chkSS", "chkStandLevels", "2"} << QList<int>{2} << both;
        QTest::newRow("one box: two runs") << 0 << QStringList{"chkStandLevels", "2"} << QList<int>{0, 2} << QStringList{"chkStandLevels"};
        QTest::newRow("two runs: the other box goes") << 0 << QStringList{"1", "chkSS", "chkStandLevels"} << QList<int>{0, 1}
                                                      << QStringList{"chkStandLevels"};
        QTest::newRow("two runs, other order") << 0 << QStringList{"1", "chkStandLevels", "chkSS"} << QList<int>{0, 1} << QStringList{"chkSS"};
        QTest::newRow("one window: one run") << 1 << QStringList{"2"} << QList<int>{2} << QStringList();
        QTest::newRow("one window: one box") << 1 << QStringList{"chkStandLevels", "chkSS"} << QList<int>{0} << QStringList{"chkSS"};
        QTest::newRow("two windows: one run for a summary, no box") << 2 << QStringList{"chkSS", "1", "2"} << QList<int>{2} << QStringList();
    }

    void selectionAndBoxes()
    {
        QFETCH(int, openWindows);
        QFETCH(QStringList, clicks);
        QFETCH(QList<int>, highlighted);
        QFETCH(QStringList, checked);
        GuiBench b;
        frmMarquel *m = startWithRuns(b);
        m->NumOpenWindows = static_cast<qint16>(openWindows);
        for (const QString &c : clicks) {
            if (auto *box = m->findChild<QCheckBox *>(c))
                clickBox(box);
            else
                clickRow(RunList(m), c.toInt());
        }
        QCOMPARE(highlightedRows(RunList(m)), highlighted);
        QCOMPARE(m->SelectedItems, qint16(highlighted.size()));
        QCOMPARE(checkedBoxes(m), checked);
        m->NumOpenWindows = 0;
    }

    // OK opens the windows of the selection, after reading the list again: another program may
    // have deleted a run, and the whole row text is compared. What stays selected and checked
    // follows the number of windows now open.
    void okOpensTheReportWindows_data()
    {
        QTest::addColumn<QList<int>>("clicks");   // the first row comes selected
        QTest::addColumn<QStringList>("boxes");
        QTest::addColumn<QString>("change");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QStringList>("opened");
        QTest::addColumn<QStringList>("boxesAfter");
        QTest::addColumn<QList<int>>("highlightedAfter");
        const QString goneAH = QStringLiteral("DELETE FROM Model_Run WHERE Run_Id = 'A' AND Standing_Harvested = 'H'");
        const QString renamed = QStringLiteral("UPDATE Run SET Run_Desc = 'Renamed' WHERE Run_Id = 'A'");
        const QStringList ss{"chkSS"};
        QTest::newRow("no report type") << QList<int>{} << QStringList() << "" << "Please choose a report type." << QStringList()
                                        << QStringList() << QList<int>{0};
        QTest::newRow("no run") << QList<int>{0} << ss << "" << "No run selected" << QStringList() << ss << QList<int>{};
        QTest::newRow("two runs, one type") << QList<int>{2} << ss << "" << ""
                                            << QStringList{"Stand & Stock Tables: B (Standing)", "Stand & Stock Tables: A (Harvested)"} << QStringList()
                                            << QList<int>{};
        QTest::newRow("one run, both types, stand and stock first")
            << QList<int>{0, 2} << QStringList{"chkSS", "chkStandLevels"} << "" << ""
            << QStringList{"Stand & Stock Tables: B (Standing)", "Species Composition through time: B (Standing)"} << QStringList() << QList<int>{};
        QTest::newRow("one run, one type") << QList<int>{} << QStringList{"chkStandLevels"} << "" << ""
                                           << QStringList{"Species Composition through time: A (Harvested)"} << QStringList{"chkStandLevels"}
                                           << QList<int>{0};
        QTest::newRow("one of two gone") << QList<int>{2} << ss << goneAH
                                         << "Some of the runs you selected were deleted by another application."
                                         << QStringList{"Stand & Stock Tables: B (Standing)"} << ss << QList<int>{1};
        QTest::newRow("the one gone") << QList<int>{} << ss << goneAH << "The run you selected was deleted by another application."
                                      << QStringList() << ss << QList<int>{};
        QTest::newRow("both changed") << QList<int>{1} << ss << renamed << "The runs you selected were deleted by another application."
                                      << QStringList() << ss << QList<int>{};
    }

    void okOpensTheReportWindows()
    {
        QFETCH(QList<int>, clicks);
        QFETCH(QStringList, boxes);
        QFETCH(QString, change);
        QFETCH(QString, message);
        QFETCH(QStringList, opened);
        QFETCH(QStringList, boxesAfter);
        QFETCH(QList<int>, highlightedAfter);
        GuiBench b;
        frmMarquel *m = startWithRuns(b);
        for (int row : clicks)
            clickRow(RunList(m), row);
        for (const QString &box : boxes)
            clickBox(m->findChild<QCheckBox *>(box));
        if (!change.isEmpty())
            b.exec(change);
        QTest::mouseClick(Control<QPushButton>(m, "cmdOK"), Qt::LeftButton);
        QCOMPARE(b.questions.messageTexts(), message.isEmpty() ? QStringList() : QStringList{message});
        QStringList titles;
        for (const QWidget *w : reportWindows(*b.frame))
            titles << w->windowTitle();
        QCOMPARE(titles, opened);
        QCOMPARE(checkedBoxes(m), boxesAfter);
        QCOMPARE(highlightedRows(RunList(m)), highlightedAfter);
        QCOMPARE(m->SelectedItems, qint16(highlightedAfter.size()));
        QCOMPARE(b.frame->MousePointer(), 0);
    }

    // Two windows: the browser steps aside, and comes back in the place that one of them frees.
    // Closing it then ends the program.
    void twoWindowsTakeThePlaces()
    {
        GuiBench b;
        frmMarquel *m = startWithRuns(b);
        clickRow(RunList(m), 2);
        clickBox(Control<QCheckBox>(m, "chkSS"));
        QTest::mouseClick(Control<QPushButton>(m, "cmdOK"), Qt::LeftButton);
        const QList<QWidget *> windows = reportWindows(*b.frame);
        QCOMPARE(windows[0]->property("This_RunDesc").toString(), QStringLiteral("Thinned to 600 sph"));
        QCOMPARE(windows[1]->property("This_SorH").toString(), QStringLiteral("H"));
        QVERIFY(b.frame->SubWindowOf(m)->isMinimized());
        // The first window went beside the browser; the second took the place that the browser left.
        QCOMPARE(b.frame->RightForm().data(), windows[0]);
        QCOMPARE(b.frame->LeftForm().data(), windows[1]);
        QCOMPARE(b.frame->SubWindowOf(windows[1])->pos(), QPoint(0, 0));
        QCOMPARE(b.frame->SubWindowOf(windows[0])->pos(), QPoint(b.frame->mdiArea()->viewport()->width() / 2, 0));

        // A stand summary is no report window: it opens beside the two.
        b.frame->SubWindowOf(m)->showNormal();
        clickRow(RunList(m), 1);
        QTest::mouseClick(Control<QPushButton>(m, "cmdSummary"), Qt::LeftButton);
        QVERIFY(b.frame->findChild<QWidget *>(QStringLiteral("frmStandSummary")));
        QVERIFY(b.questions.messageTexts().isEmpty());
        QCOMPARE(m->NumOpenWindows, qint16(2));

        b.frame->SubWindowOf(windows[1])->close();
        QApplication::processEvents();
        QCOMPARE(m->NumOpenWindows, qint16(1));
        QVERIFY(!b.frame->SubWindowOf(m)->isMinimized());
        QCOMPARE(b.frame->LeftForm().data(), m);
        QCOMPARE(b.frame->SubWindowOf(m)->pos(), QPoint(0, 0));
        QVERIFY(b.ended.isEmpty());

        // Closing the browser is the orderly end: settings saved, the process ended.
        b.frame->SubWindowOf(m)->close();
        QCOMPARE(b.ended, QList<int>{0});
        QCOMPARE(b.store.GetSetting(kSectionSendrel, QStringLiteral("NumClasses")), QStringLiteral("10"));
        QVERIFY(!b.tm.DBEngine.IsOpen());
    }

    // Every kind of child window closes the one way, by its own button, its title bar's close
    // box or Ctrl+F4: its sub-window goes with it (a chart page hides and its stand and stock
    // window comes back), and the count of report windows comes down.
    void windowsCloseEveryWay_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("how");
        for (const char *kind : {"chkSS", "chkStandLevels", "cmdSummary", "chart"}) {
            for (const char *how : {"button", "title bar", "Ctrl+F4"})
                QTest::newRow(qPrintable(QStringLiteral("%1, %2").arg(QLatin1String(kind), QLatin1String(how)))) << kind << how;
        }
    }

    void windowsCloseEveryWay()
    {
        QFETCH(QString, kind);
        QFETCH(QString, how);
        GuiBench b;
        frmMarquel *m = startWithRuns(b);
        auto visibleWindows = [&b] {
            QApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QApplication::processEvents();
            int n = 0;
            for (QMdiSubWindow *sub : b.frame->mdiArea()->subWindowList())
                n += sub->isVisible() ? 1 : 0;
            return n;
        };
        const int before = visibleWindows();
        QWidget *form = nullptr;
        QString button;
        if (kind == QLatin1String("cmdSummary")) {
            QTest::mouseClick(Control<QPushButton>(m, "cmdSummary"), Qt::LeftButton);
            form = b.frame->findChild<QWidget *>(QStringLiteral("frmStandSummary"));
            button = QStringLiteral("cmdClose");
        } else {
            clickBox(m->findChild<QCheckBox *>(kind == QLatin1String("chart") ? QStringLiteral("chkSS") : kind));
            QTest::mouseClick(Control<QPushButton>(m, "cmdOK"), Qt::LeftButton);
            form = reportWindows(*b.frame).value(0);
            button = QStringLiteral("cmdOK");
        }
        QVERIFY(form);
        int expected = before;
        if (kind == QLatin1String("chart")) {
            expected = visibleWindows();
            QTest::mouseClick(Control<QPushButton>(form, "cmdPrintCharts"), Qt::LeftButton);
            form = b.frame->findChild<QWidget *>(QStringLiteral("frmChart"));
            QVERIFY(form && form->isVisible());
            button = QStringLiteral("cmdCancel");
        }
        QPointer<QMdiSubWindow> sub = b.frame->SubWindowOf(form);
        QVERIFY(sub);
        if (how == QLatin1String("button")) {
            QTest::mouseClick(Control<QPushButton>(form, button), Qt::LeftButton);
        } else if (how == QLatin1String("title bar")) {
            sub->close();
        } else {
            b.frame->activateWindow();
            b.frame->mdiArea()->setActiveSubWindow(sub);
            QTest::keyClick(form->focusWidget() ? form->focusWidget() : form, Qt::Key_F4, Qt::ControlModifier);
        }
        // The window goes at once, with its frame: not an empty frame first.
        QVERIFY(sub.isNull() || !sub->isVisible());
        QCOMPARE(visibleWindows(), expected);
        QCOMPARE(m->NumOpenWindows, qint16(kind == QLatin1String("chart") ? 1 : 0));
        if (kind == QLatin1String("chart"))
            QVERIFY(reportWindows(*b.frame).value(0)->isVisible());
    }

    // The import command: file, kind, the import itself, then the new run is listed and selected.
    void importListsAndSelectsTheNewRun()
    {
        GuiBench b;
        frmMarquel *m = startWithRuns(b);
        const QString list = b.writeFile(QStringLiteral("new.lst"), TreeListText({HeaderLine(1, 1, 2000, "NEW"),
                                                                                   TreeLine("1", "FD", 3, 250, 30, 0.9, 0.7)}));
        // Cancelled at the file dialog, then at the kind: nothing is imported.
        b.questions.answerOpenFile(QString());
        MenuCommand(m, "mnu_Runs_Import")->trigger();
        b.questions.answerOpenFile(list);
        b.questions.answerStandingOrHarvested(std::nullopt);
        MenuCommand(m, "mnu_Runs_Import")->trigger();
        QCOMPARE(b.count(QStringLiteral("Model_Run")), 3);

        clickRow(RunList(m), 0);   // nothing selected now
        b.questions.answerOpenFile(list);
        b.questions.answerStandingOrHarvested(RunKind::Harvested);
        b.questions.answerRunId(DialogEnd::Check);
        MenuCommand(m, "mnu_Runs_Import")->trigger();
        QCOMPARE(b.questions.asked().first().text, b.tm.settings.WorkDir + QStringLiteral("|"));
        QCOMPARE(b.count(QStringLiteral("Model_Entries"), QStringLiteral("Standing_Harvested = 'H'")), 1);
        QCOMPARE(RunList(m)->item(3)->text(), QStringLiteral("NEW:Harvested\t"));
        QCOMPARE(highlightedRows(RunList(m)), QList<int>{3});
        QCOMPARE(b.tm.DialogResult, DialogEnd::OK);
        QCOMPARE(b.frame->MousePointer(), 0);

        // What the import has to tell, the window shows, once.
        b.questions.clear();
        b.questions.answerOpenFile(b.writeFile(QStringLiteral("invalid.lst"), "no header\r\n"));
        b.questions.answerStandingOrHarvested(RunKind::Standing);
        MenuCommand(m, "mnu_Runs_Import")->trigger();
        QCOMPARE(b.questions.messageTexts(), QStringList{QStringLiteral("Invalid File Format.  Expecting a Marquel file with -999 header.")});
        b.questions.clear();

        // A failure is shown at the top, the list stays and the pointer comes back.
        m->Importer = [](TreeModel &, const QString &, RunKind) -> frmMarquel::ImportOutcome {
            throw SendrelError(53, QStringLiteral("Sendrel"), QStringLiteral("File not found"));
        };
        b.questions.answerOpenFile(list);
        b.questions.answerStandingOrHarvested(RunKind::Standing);
        MenuCommand(m, "mnu_Runs_Import")->trigger();
        QCOMPARE(b.questions.messageTexts(), QStringList{QStringLiteral("The following error occured:\nFile not found")});
        QCOMPARE(RunList(m)->count(), 4);
        QCOMPARE(b.frame->MousePointer(), 0);
    }

    // File, Database: giving up keeps the old database in silence; another one is listed.
    void databaseMenu()
    {
        GuiBench b;
        frmMarquel *m = startWithRuns(b);
        b.questions.answerOpenFile(QString());
        MenuCommand(m, "MenuFileDB")->trigger();
        QCOMPARE(b.questions.asked().size(), 1);
        QCOMPARE(b.questions.asked()[0].title, QStringLiteral("Sendrel - Locate Tolv Game Database"));
        QCOMPARE(RunList(m)->count(), 3);
        QVERIFY(b.tm.db.isOpen());

        sendrel::test::RunDatabase other{sendrel::test::RunDatabase::Db::Created};
        b.questions.answerOpenFile(other.path());
        MenuCommand(m, "MenuFileDB")->trigger();
        QCOMPARE(RunList(m)->count(), 0);
        QVERIFY(!Control<QPushButton>(m, "cmdOK")->isEnabled());
    }

    // File, Server Database...: Cancel keeps the file in silence; the server database's runs are
    // listed and its connection text is kept without its password; a failure is shown once and keeps
    // what is open; File, Database back to the file forgets the server.
    void serverDatabaseMenu()
    {
        if (const QString why = ServerUnavailable(); !why.isEmpty())
            QSKIP(qPrintable(why));
        GuiBench b;
        frmMarquel *m = startWithRuns(b);
        const QString server = NewServerDatabase();
        CreateRunDatabase(server);
        {
            RunStore other;
            other.open(server);
            AddRun(other, QStringLiteral("SRV"), QStringLiteral("S"), QStringLiteral("On the server"));
            AddHeader(other, QStringLiteral("SRV"), QStringLiteral("S"), 1, 2000);
        }
        QAction *menu = MenuCommand(m, "MenuFileServerDB");
        b.questions.answerServerDatabase(false);
        menu->trigger();
        QCOMPARE(RunList(m)->count(), 3);

        b.questions.answerServerDatabase(true, QString(server).replace(QStringLiteral("sendrel@"), QStringLiteral("sendrel:secret@")));
        menu->trigger();
        QCOMPARE(m->RunEntries(), QStringList{QStringLiteral("SRV:Standing\tOn the server")});
        QCOMPARE(b.store.GetSetting(kSectionSendrel, QStringLiteral("ServerDatabase")), server);
        QVERIFY(!ReadWholeFile(b.store.fileName()).contains("secret"));

        b.questions.answerServerDatabase(true, QString(server).replace(QStringLiteral("/runs?"), QStringLiteral("/none?")));
        menu->trigger();
        QCOMPARE(b.questions.messageTexts().size(), 1);
        QVERIFY(b.questions.messageTexts()[0].startsWith(QStringLiteral("The following error occured:\n(-2147467259) Cannot open the database.\n")));
        QCOMPARE(RunList(m)->count(), 1);
        QCOMPARE(b.store.GetSetting(kSectionSendrel, QStringLiteral("ServerDatabase")), server);

        b.questions.answerOpenFile(b.folder() + kGameDBFileName);
        MenuCommand(m, "MenuFileDB")->trigger();
        QCOMPARE(RunList(m)->count(), 3);
        QCOMPARE(b.store.GetSetting(kSectionSendrel, QStringLiteral("ServerDatabase")), QString());
    }

    // File, Options: Cancel keeps the settings; OK keeps the choices at once, in the store too.
    void optionsMenu()
    {
        GuiBench b;
        frmMarquel *m = startWithRuns(b);
        auto *options = m->findChild<QAction *>(QStringLiteral("mnu_File_Options"));
        b.questions.answerOptions(false);
        options->trigger();
        QCOMPARE(b.questions.asked().last().title, QStringLiteral("metric"));
        QCOMPARE(b.tm.settings.Units, QStringLiteral("metric"));
        b.questions.answerOptions(true, {QStringLiteral("imperial"), QStringLiteral("summation"), true});
        options->trigger();
        QCOMPARE(b.tm.settings.Units, QStringLiteral("imperial"));
        QCOMPARE(b.tm.settings.SdiMethod, QStringLiteral("summation"));
        QVERIFY(b.tm.settings.CsvDefinitions);
        SettingsStore store;
        QCOMPARE(store.GetSetting(kSectionSendrel, QStringLiteral("Units")), QStringLiteral("imperial"));
        QCOMPARE(store.GetSetting(kSectionSendrel, QStringLiteral("CsvDefinitions")), QStringLiteral("YES"));
    }
};

SENDREL_TEST_MAIN(tst_frmMarquel)
#include "tst_frmMarquel.moc"
