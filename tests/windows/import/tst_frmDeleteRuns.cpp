// The delete window as the browser's menu shows it: modal over the frame, the browser's runs,
// the runs open in report windows of the frame, and both lists read again after a delete.
#include "support/TestMain.h"
#include "support/GuiBench.h"

#include "base/SendrelError.h"
#include "windows/import/frmDeleteRuns.h"

#include <QAction>
#include <QCheckBox>
#include <QPushButton>

using namespace sendrel;

class tst_frmDeleteRuns : public QObject {
    Q_OBJECT

private slots:
    void deleteFromTheMenu_data()
    {
        QTest::addColumn<QString>("openBox");   // "": no report window; else the box for A:Standing
        QTest::addColumn<QString>("selected");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QStringList>("left");
        const QStringList all{"A:Harvested", "A:Standing", "B:Standing"};
        QTest::newRow("deleted") << "" << "B:Standing" << "Delete run: B:Standing" << QStringList{"A:Harvested", "A:Standing"};
        QTest::newRow("open in a stand and stock window") << "chkSS" << "A:Standing"
                                                          << "Can't delete this Run: A:Standing while open." << all;
        QTest::newRow("open in a composition window") << "chkStandLevels" << "A:Standing"
                                                       << "Can't delete this Run: A:Standing while open." << all;
        QTest::newRow("the other kind of an open run") << "chkSS" << "A:Harvested" << "Delete run: A:Harvested"
                                                       << QStringList{"A:Standing", "B:Standing"};
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
            b.addListedRun(QString::fromLatin1(run), QString::fromLatin1(kind), QStringLiteral("Run"));
        frmMarquel *m = b.start();
        if (!openBox.isEmpty()) {
            clickRow(m->lstRuns, 0);
            clickRow(m->lstRuns, rowOf(m->lstRuns, QStringLiteral("A:Standing")));
            clickBox(m->findChild<QCheckBox *>(openBox));
            QTest::mouseClick(m->cmdOK, Qt::LeftButton);
            QCOMPARE(reportWindows(*b.frame).size(), 1);
        }

        b.questions.answerMessage(Answer::OK);
        QStringList shown, afterDelete;
        bool stayed = false;
        onNextModal([&](QWidget *w) {
            auto *d = qobject_cast<frmDeleteRuns *>(w);
            QVERIFY(d && d->parentWidget() == b.frame.get());
            for (int i = 0; i < d->lstRuns->count(); ++i)
                shown << d->lstRuns->item(i)->text();
            clickRow(d->lstRuns, rowOf(d->lstRuns, selected));
            QTest::mouseClick(d->cmdDelete, Qt::LeftButton);
            for (int i = 0; i < d->lstRuns->count(); ++i)
                afterDelete << d->lstRuns->item(i)->text().section(QLatin1Char('\t'), 0, 0);
            stayed = d->isVisible();
            QTest::mouseClick(d->cmdCancel, Qt::LeftButton);
        });
        const QStringList before = m->RunEntries();
        m->mnu_Runs_Delete->trigger();

        QCOMPARE(shown, before);
        QCOMPARE(b.questions.messageTexts(), QStringList{message});
        QVERIFY(stayed);
        QCOMPARE(afterDelete, left);
        QStringList browser;
        for (const QString &entry : m->RunEntries())
            browser << entry.section(QLatin1Char('\t'), 0, 0);
        QCOMPARE(browser, left);
        QCOMPARE(b.count(QStringLiteral("Model_Run")), qint64(left.size()));
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
            d->Delete = [](const QStringList &) { throw SendrelError(-2147467259, QStringLiteral("db"), QStringLiteral("locked")); };
            b.frame->SetMousePointer(11);
            clickRow(d->lstRuns, 0);
            QTest::mouseClick(d->cmdDelete, Qt::LeftButton);
            stayed = d->isVisible();
            d->reject();
        });
        m->mnu_Runs_Delete->trigger();
        QVERIFY(stayed);
        QCOMPARE(b.questions.messageTexts(), QStringList{QStringLiteral("The following error occured:\nlocked")});
        QCOMPARE(b.frame->MousePointer(), 0);
    }
};

SENDREL_TEST_MAIN(tst_frmDeleteRuns)
#include "tst_frmDeleteRuns.moc"
