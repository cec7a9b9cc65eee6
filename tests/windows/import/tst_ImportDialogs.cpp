// The dialogs of an import: "Standing or Harvested", "Enter Run ID" and "Duplicate Run Id", each
// ending as the user leaves it.
#include "support/TestMain.h"
#include "support/GuiBench.h"

#include "shell/GuiQuestions.h"
#include "import/gui/ImportCoreBridge.h"
#include "windows/import/frmDuplicateId.h"
#include "windows/import/frmRunId.h"
#include "windows/import/frmSorH.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

using namespace sendrel;

class tst_ImportDialogs : public QObject {
    Q_OBJECT

private slots:
    void sorHNeedsAChoice()
    {
        ScriptedQuestions q;
        frmSorH form(q);
        form.show();
        QCOMPARE(form.windowTitle(), QStringLiteral("Standing or Harvested"));
        QCOMPARE(form.Label1->text(), QStringLiteral("Specify whether the tree file is standing or harvested:"));
        QVERIFY(!form.optStanding->isChecked() && !form.optHarvested->isChecked());

        QTest::mouseClick(form.cmdOK, Qt::LeftButton);
        QCOMPARE(q.messageTexts(), QStringList{QStringLiteral("You must specify Harvested or Standing.")});
        QCOMPARE(q.asked().first().title, QStringLiteral("Sendrel"));
        QVERIFY(form.isVisible());
        QVERIFY(form.bImportCancelled);

        clickBox(form.optHarvested);
        QTest::mouseClick(form.cmdOK, Qt::LeftButton);
        QVERIFY(!form.isVisible());
        QVERIFY(!form.bImportCancelled);
    }

    // Through the desktop's questions: a new, cleared window each time; Cancel and the close box
    // give no kind.
    void sorHAnswers()
    {
        GuiQuestions q;
        onNextModal([](QWidget *w) {
            auto *f = qobject_cast<frmSorH *>(w);
            QVERIFY(f);
            clickBox(f->optHarvested);
            QTest::mouseClick(f->cmdOK, Qt::LeftButton);
        });
        QCOMPARE(q.askStandingOrHarvested(), QStringLiteral("H"));

        bool cleared = false;
        onNextModal([&](QWidget *w) {
            auto *f = qobject_cast<frmSorH *>(w);
            cleared = !f->optStanding->isChecked() && !f->optHarvested->isChecked();
            clickBox(f->optStanding);
            QTest::keyClick(f, Qt::Key_Return);
        });
        QCOMPARE(q.askStandingOrHarvested(), QStringLiteral("S"));
        QVERIFY(cleared);

        onNextModal([](QWidget *w) {
            auto *f = qobject_cast<frmSorH *>(w);
            clickBox(f->optStanding);
            QTest::mouseClick(f->cmdCancel, Qt::LeftButton);
        });
        QCOMPARE(q.askStandingOrHarvested(), QString());

        onNextModal([](QWidget *w) { w->close(); });
        QCOMPARE(q.askStandingOrHarvested(), QString());
    }

    void runIdOkFollowsTheText()
    {
        GuiQuestions q;
        QString name = QStringLiteral("RUN1");
        bool startedRight = false;
        bool disabledWhenEmpty = false;
        onNextModal([&](QWidget *w) {
            auto *f = qobject_cast<frmRunId *>(w);
            startedRight = f->windowTitle() == QStringLiteral("Enter Run ID") && f->txtRunId->text() == QStringLiteral("RUN1")
                           && f->lblNameProblem->text().isEmpty() && f->cmdOK->isEnabled()
                           && f->lblEnterName->text() == QStringLiteral("Enter a unique Run ID for this data set:");
            f->txtRunId->selectAll();
            QTest::keyClick(f->txtRunId, Qt::Key_Backspace);
            disabledWhenEmpty = !f->cmdOK->isEnabled();
            QTest::keyClicks(f->txtRunId, QStringLiteral("Thin 40%"));
            QTest::mouseClick(f->cmdOK, Qt::LeftButton);
        });
        QCOMPARE(q.askRunId(name), QStringLiteral("CHECK"));
        QVERIFY(startedRight);
        QVERIFY(disabledWhenEmpty);
        QCOMPARE(name, QStringLiteral("Thin 40%"));

        // Cleared and cancelled: Cancel still works.
        onNextModal([&](QWidget *w) {
            auto *f = qobject_cast<frmRunId *>(w);
            f->lblNameProblem->setText(QStringLiteral("left over"));
            f->txtRunId->clear();
            QTest::keyClick(f->txtRunId, Qt::Key_Return);   // no effect while empty
            QTest::mouseClick(f->cmdCancel, Qt::LeftButton);
        });
        QCOMPARE(q.askRunId(name), QStringLiteral("CANCEL"));
        QCOMPARE(name, QString());

        // The problem line is emptied each time; the close box counts as Cancel.
        name = QStringLiteral("X");
        QString problem = QStringLiteral("unset");
        onNextModal([&](QWidget *w) {
            problem = qobject_cast<frmRunId *>(w)->lblNameProblem->text();
            w->close();
        });
        QCOMPARE(q.askRunId(name), QStringLiteral("CANCEL"));
        QCOMPARE(problem, QString());
    }

    // 25 characters bind what is typed; a longer name given by the program stays until edited.
    void runIdLengthLimit()
    {
        frmRunId f;
        f.show();
        const QString longName = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZ1234");   // 30
        f.txtRunId->setText(longName);
        QCOMPARE(f.txtRunId->text(), longName);
        f.txtRunId->end(false);
        QTest::keyClick(f.txtRunId, Qt::Key_5);
        QCOMPARE(f.txtRunId->text(), longName);
        QTest::keyClick(f.txtRunId, Qt::Key_Backspace);
        QCOMPARE(f.txtRunId->text().size(), 29);

        f.txtRunId->clear();
        QTest::keyClicks(f.txtRunId, QStringLiteral("123456789012345678901234567890"));
        QCOMPARE(f.txtRunId->text(), QStringLiteral("1234567890123456789012345"));
    }

    // Overwrite, Rename (the next free name of either kind) and Cancel.
    void duplicateIdButtons()
    {
        GuiBench b;
        b.openDatabase();
        b.addRun(QStringLiteral("X"), QStringLiteral("S"), QStringLiteral("first"));
        b.addRun(QStringLiteral("X:1"), QStringLiteral("H"), QStringLiteral("second"));
        b.addRun(QStringLiteral("X:2"), QStringLiteral("S"), QStringLiteral("third"));
        // Rename reads the run names as of the opening of the database.
        b.openDatabase();
        GuiQuestions q;
        q.setNextFreeRunId([&](const QString &n) { return importcore::NextFreeRunId(b.tm, n); });

        QString shown;
        onNextModal([&](QWidget *w) {
            auto *f = qobject_cast<frmDuplicateId *>(w);
            shown = f->windowTitle() + QLatin1Char('|') + f->lblDuplicateId->text() + QLatin1Char('|') + f->Label1->text()
                    + QLatin1Char('|') + f->lblRunId->text();
            QTest::mouseClick(f->cmdRename, Qt::LeftButton);
        });
        QCOMPARE(q.askDuplicateId(QStringLiteral("X")), QStringLiteral("RENAME"));
        QCOMPARE(shown, QStringLiteral("Duplicate Run Id|A Run with this ID has already been imported.|Duplicate Run ID:|X"));
        QCOMPARE(q.lastRenamedId(), QStringLiteral("X:3"));
        QCOMPARE(q.duplicateIdWindow()->lblRunId->text(), QStringLiteral("X:3"));
        QVERIFY(!q.duplicateIdWindow()->isVisible());

        // A renamed name that is taken too gets a second suffix.
        onNextModal([](QWidget *w) { QTest::mouseClick(qobject_cast<frmDuplicateId *>(w)->cmdRename, Qt::LeftButton); });
        QCOMPARE(q.askDuplicateId(QStringLiteral("X:1")), QStringLiteral("RENAME"));
        QCOMPARE(q.lastRenamedId(), QStringLiteral("X:1:1"));

        onNextModal([](QWidget *w) { QTest::mouseClick(qobject_cast<frmDuplicateId *>(w)->cmdOverWrite, Qt::LeftButton); });
        QCOMPARE(q.askDuplicateId(QStringLiteral("X")), QStringLiteral("OVERWRITE"));
        QCOMPARE(q.lastRenamedId(), QString());

        onNextModal([](QWidget *w) { QTest::mouseClick(qobject_cast<frmDuplicateId *>(w)->cmdCancel, Qt::LeftButton); });
        QCOMPARE(q.askDuplicateId(QStringLiteral("X")), QStringLiteral("CANCEL"));

        onNextModal([](QWidget *w) { QTest::keyClick(w, Qt::Key_Escape); });
        QCOMPARE(q.askDuplicateId(QStringLiteral("X")), QStringLiteral("CANCEL"));

        // Rename is the default button.
        onNextModal([](QWidget *w) { QTest::keyClick(w, Qt::Key_Return); });
        QCOMPARE(q.askDuplicateId(QStringLiteral("Y")), QStringLiteral("RENAME"));
        QCOMPARE(q.lastRenamedId(), QStringLiteral("Y:1"));
    }
};

SENDREL_TEST_MAIN(tst_ImportDialogs)
#include "tst_ImportDialogs.moc"
