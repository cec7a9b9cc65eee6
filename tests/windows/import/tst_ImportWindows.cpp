// The windows of the import subsystem: the dialogs of an import, shown modally through the
// desktop's questions ("Standing or Harvested", "Enter Run ID", "Duplicate Run Id"), each ending
// as the user leaves it; and the delete window, as the browser's menu shows it.
#include "support/TestMain.h"
#include "support/GuiBench.h"

#include "base/SendrelError.h"
#include "shell/GuiQuestions.h"
#include "store/Run.h"
#include "windows/common/ShowHelp.h"
#include "windows/common/frmHelp.h"
#include "windows/import/frmDeleteRuns.h"
#include "windows/import/frmDuplicateId.h"
#include "windows/import/frmRunId.h"
#include "windows/import/frmSorH.h"

#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTextBrowser>

using namespace sendrel;
using namespace sendrel::test;

class tst_ImportWindows : public QObject {
    Q_OBJECT

private slots:
    // OK without a choice tells the user and keeps the window; no kind is taken by default.
    void sorHNeedsAChoice()
    {
        ScriptedQuestions q;
        frmSorH form(q);
        form.show();
        QTest::mouseClick(Control<QPushButton>(&form, "cmdOK"), Qt::LeftButton);
        QCOMPARE(q.messageTexts(), QStringList{QStringLiteral("You must specify Harvested or Standing.")});
        QVERIFY(form.isVisible() && form.bImportCancelled);
    }

    // Each import gets a cleared window; OK (or Return) gives the kind, every other way out none.
    void sorHAnswers_data()
    {
        QTest::addColumn<QString>("option");
        QTest::addColumn<QString>("leave");
        QTest::addColumn<QString>("kind");
        QTest::newRow("harvested") << "optHarvested" << "cmdOK" << "H";
        QTest::newRow("standing by Return") << "optStanding" << "Return" << "S";
        QTest::newRow("Cancel") << "optStanding" << "cmdCancel" << "";
        QTest::newRow("close box") << "optHarvested" << "close" << "";
    }

    void sorHAnswers()
    {
        QFETCH(QString, option);
        QFETCH(QString, leave);
        QFETCH(QString, kind);
        GuiQuestions q;
        bool cleared = false;
        onNextModal([&](QWidget *w) {
            auto *f = qobject_cast<frmSorH *>(w);
            cleared = !Control<QRadioButton>(f, "optStanding")->isChecked() && !Control<QRadioButton>(f, "optHarvested")->isChecked();
            clickBox(f->findChild<QRadioButton *>(option));
            leaveDialog(f, leave);
        });
        const std::optional<RunKind> chosen = q.askStandingOrHarvested();
        QCOMPARE(chosen ? KindLetter(*chosen) : QString(), kind);
        QVERIFY(cleared);
    }

    // The name offered comes up selected in the focused box; OK follows the text, and Return in
    // an empty box does nothing; Cancel and the close box cancel. The problem line is emptied at
    // each showing.
    void runIdAnswers()
    {
        GuiQuestions q;
        QString name = QStringLiteral("RUN1");
        QStringList seen;
        onNextModal([&](QWidget *w) {
            auto *f = qobject_cast<frmRunId *>(w);
            auto *box = Control<QLineEdit>(f, "txtRunId");
            QCOMPARE(f->focusWidget(), box);
            seen << box->selectedText();   // typing replaces the name offered
            Control<QLabel>(f, "lblNameProblem")->setText(QStringLiteral("left over"));
            Retype(box, QString());
            seen << (Control<QPushButton>(f, "cmdOK")->isEnabled() ? QStringLiteral("enabled") : QStringLiteral("disabled"));
            QTest::keyClick(box, Qt::Key_Return);
            QTest::keyClicks(box, QStringLiteral("Thin 40%"));
            QTest::mouseClick(Control<QPushButton>(f, "cmdOK"), Qt::LeftButton);
        });
        QCOMPARE(q.askRunId(name), DialogEnd::Check);
        QCOMPARE(name, QStringLiteral("Thin 40%"));
        onNextModal([&](QWidget *w) {
            seen << Control<QLabel>(qobject_cast<frmRunId *>(w), "lblNameProblem")->text();
            w->close();
        });
        QCOMPARE(q.askRunId(name), DialogEnd::Cancel);
        QCOMPARE(seen, (QStringList{"RUN1", "disabled", ""}));
        onNextModal([](QWidget *w) { leaveDialog(w, QStringLiteral("cmdCancel")); });
        QCOMPARE(q.askRunId(name), DialogEnd::Cancel);
    }

    // 25 characters bind what is typed; a longer name given by the program stays until edited.
    void runIdLengthLimit()
    {
        frmRunId f;
        f.show();
        QLineEdit *box = Control<QLineEdit>(&f, "txtRunId");
        const QString longName = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZ1234");   // 30
        box->setText(longName);
        box->end(false);
        QTest::keyClick(box, Qt::Key_5);
        QCOMPARE(box->text(), longName);
        QTest::keyClick(box, Qt::Key_Backspace);
        QCOMPARE(box->text().size(), 29);

        box->clear();
        QTest::keyClicks(box, QStringLiteral("123456789012345678901234567890"));
        QCOMPARE(box->text(), QStringLiteral("1234567890123456789012345"));
    }

    // Rename shows the next free name that the finder gives; Rename is the default button.
    void duplicateIdButtons_data()
    {
        QTest::addColumn<QString>("leave");
        QTest::addColumn<int>("result");
        QTest::addColumn<QString>("renamed");
        QTest::newRow("Overwrite") << "cmdOverWrite" << int(DialogEnd::Overwrite) << "X";
        QTest::newRow("Rename") << "cmdRename" << int(DialogEnd::Rename) << "X:3";
        QTest::newRow("Return") << "Return" << int(DialogEnd::Rename) << "X:3";
        QTest::newRow("Cancel") << "cmdCancel" << int(DialogEnd::Cancel) << "X";
        QTest::newRow("Escape") << "Escape" << int(DialogEnd::Cancel) << "X";
    }

    void duplicateIdButtons()
    {
        QFETCH(QString, leave);
        QFETCH(int, result);
        QFETCH(QString, renamed);
        GuiQuestions q;
        q.setNextFreeRunId([](const QString &name) { return name + QStringLiteral(":3"); });
        QString shown;
        onNextModal([&](QWidget *w) {
            shown = Control<QLabel>(qobject_cast<frmDuplicateId *>(w), "lblRunId")->text();
            leaveDialog(w, leave);
        });
        QCOMPARE(q.askDuplicateId(QStringLiteral("X")), DialogEnd(result));
        QCOMPARE(shown, QStringLiteral("X"));
        QCOMPARE(Control<QLabel>(q.duplicateIdWindow(), "lblRunId")->text(), renamed);
        QVERIFY(!q.duplicateIdWindow()->isVisible());
    }

    // A failure of the name lookup reaches the import once the window is gone.
    void duplicateIdLookupFailure()
    {
        GuiQuestions q;
        q.setNextFreeRunId([](const QString &) -> QString {
            throw SendrelError(ErrNo::DatabaseFailure, QStringLiteral("db"), QStringLiteral("locked"));
        });
        onNextModal([](QWidget *w) { leaveDialog(w, QStringLiteral("cmdRename")); });
        QVERIFY_THROWS_EXCEPTION(SendrelError, q.askDuplicateId(QStringLiteral("X")));
        QVERIFY(!q.duplicateIdWindow()->isVisible());
    }

    // The delete window as the browser's menu shows it: modal over the frame, the browser's runs,
    // the runs open in report windows of the frame, and both lists read again after a delete.
    void deleteFromTheMenu_data()
    {
        QTest::addColumn<QString>("openBox");   // "": no report window; else the box for A:Standing
        QTest::addColumn<QString>("selected");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QStringList>("left");
        const QStringList all{"A:Harvested\t", "A:Standing\t", "B:Standing\t"};
        const QString refused = QStringLiteral("Can't delete this Run: A:Standing while open.");
        QTest::newRow("deleted") << "" << "B:Standing" << "Delete run: B:Standing" << all.mid(0, 2);
        QTest::newRow("open in a stand and stock window") << "chkSS" << "A:Standing" << refused << all;
        QTest::newRow("open in a composition window") << "chkStandLevels" << "A:Standing" << refused << all;
        QTest::newRow("the other kind of an open run") << "chkSS" << "A:Harvested" << "Delete run: A:Harvested" << all.mid(1);
        QTest::newRow("nothing selected") << "" << "" << "No run selected" << all;
        QTest::newRow("gone meanwhile") << "gone" << "B:Standing" << "The run you selected was deleted by another application."
                                        << all.mid(0, 2);
    }

    void deleteFromTheMenu()
    {
        QFETCH(QString, openBox);
        QFETCH(QString, selected);
        QFETCH(QString, message);
        QFETCH(QStringList, left);
        GuiBench b;
        b.openDatabase();
        for (const auto &[run, kind] : {std::pair{"A", "S"}, {"A", "H"}, {"B", "S"}})
            b.addListedRun(QString::fromLatin1(run), QString::fromLatin1(kind), QString());
        frmMarquel *m = b.start();
        if (openBox.startsWith(QLatin1String("chk"))) {
            clickRow(RunList(m), 0);
            clickRow(RunList(m), rowOf(RunList(m), QStringLiteral("A:Standing")));
            clickBox(m->findChild<QCheckBox *>(openBox));
            QTest::mouseClick(Control<QPushButton>(m, "cmdOK"), Qt::LeftButton);
            QCOMPARE(reportWindows(*b.frame).size(), 1);
        }
        if (message.startsWith(QLatin1String("Delete run")))
            b.questions.answerMessage(Answer::OK);
        const QStringList before = m->RunEntries();
        QStringList shown, afterDelete;
        onNextModal([&](QWidget *w) {
            auto *d = qobject_cast<frmDeleteRuns *>(w);
            QVERIFY(d && d->parentWidget() == b.frame.get());
            auto *list = d->findChild<QListWidget *>(QStringLiteral("lstRuns"));
            shown = rowTexts(list);
            if (!selected.isEmpty())
                clickRow(list, rowOf(list, selected));
            if (openBox == QLatin1String("gone"))   // another program's doing
                b.tm.db.deleteRun({QStringLiteral("B"), RunKind::Standing});
            QTest::mouseClick(d->findChild<QPushButton *>(QStringLiteral("cmdDelete")), Qt::LeftButton);
            if (d->isVisible())   // it stays open after a delete
                afterDelete = rowTexts(list);
            QTest::mouseClick(d->findChild<QPushButton *>(QStringLiteral("cmdCancel")), Qt::LeftButton);
        });
        MenuCommand(m, "mnu_Runs_Delete")->trigger();
        QCOMPARE(shown, before);
        QCOMPARE(b.questions.messageTexts(), QStringList{message});
        QCOMPARE(afterDelete, left);
        QCOMPARE(m->RunEntries(), left);
    }

    // F1 and the Help button of the delete window open the page on deleting runs.
    void deleteHelp()
    {
        GuiBench b;
        b.openDatabase();
        b.addListedRun(QStringLiteral("A"), QStringLiteral("S"), QStringLiteral("Run"));
        frmMarquel *m = b.start();
        b.tm.settings.HelpFile = QStringLiteral(SENDREL_SOURCE_DIR "/install/Help/Tolvane.chm");
        QStringList pages;
        onNextModal([&](QWidget *w) {
            w->activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(w));
            QTest::keyClick(w, Qt::Key_F1);
            pages << (HelpWindow() ? QFileInfo(Control<QTextBrowser>(HelpWindow(), "txtTopic")->source().toLocalFile()).fileName() : QString());
            if (HelpWindow())
                HelpWindow()->ShowContents();
            QTest::mouseClick(w->findChild<QPushButton *>(QStringLiteral("cmdHelp")), Qt::LeftButton);
            pages << (HelpWindow() ? QFileInfo(Control<QTextBrowser>(HelpWindow(), "txtTopic")->source().toLocalFile()).fileName() : QString());
            HelpWindow()->close();
            QTimer::singleShot(0, w, [w] { static_cast<QDialog *>(w)->reject(); });
        });
        MenuCommand(m, "mnu_Runs_Delete")->trigger();
        QCOMPARE(pages, (QStringList{QStringLiteral("delete.html"), QStringLiteral("delete.html")}));
    }

    // A failure of the delete is shown at the top; the pointer comes back and the window stays.
    void failureIsShown()
    {
        GuiBench b;
        b.openDatabase();
        b.addListedRun(QStringLiteral("A"), QStringLiteral("S"), QStringLiteral("Run"));
        frmMarquel *m = b.start();
        bool stayed = false;
        onNextModal([&](QWidget *w) {
            auto *d = qobject_cast<frmDeleteRuns *>(w);
            d->Delete = [](const QStringList &) { throw SendrelError(ErrNo::DatabaseFailure, QStringLiteral("db"), QStringLiteral("locked")); };
            b.frame->SetMousePointer(11);
            clickRow(d->findChild<QListWidget *>(QStringLiteral("lstRuns")), 0);
            QTest::mouseClick(d->findChild<QPushButton *>(QStringLiteral("cmdDelete")), Qt::LeftButton);
            stayed = d->isVisible();
            d->reject();
        });
        MenuCommand(m, "mnu_Runs_Delete")->trigger();
        QVERIFY(stayed);
        QCOMPARE(b.questions.messageTexts(), QStringList{QStringLiteral("The following error occured:\nlocked")});
        QCOMPARE(b.frame->MousePointer(), 0);
    }
};

SENDREL_TEST_MAIN(tst_ImportWindows)
#include "tst_ImportWindows.moc"
