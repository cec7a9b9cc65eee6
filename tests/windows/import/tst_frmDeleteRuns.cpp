// The delete window: its checks before each run goes, and what stays in the tables.
#include "support/TestMain.h"
#include "support/GuiBench.h"

#include "windows/import/frmDeleteRuns.h"

#include <QAction>
#include <QCheckBox>
#include <QGroupBox>
#include <QPushButton>

using namespace sendrel;

class tst_frmDeleteRuns : public QObject {
    Q_OBJECT

    // Runs with rows in all three tables: A standing and harvested, B standing, C and C:1 standing.
    frmMarquel *startWithRuns(GuiBench &b)
    {
        b.openDatabase();
        const QList<QPair<QString, QString>> runs = {{QStringLiteral("A"), QStringLiteral("S")},
                                                    {QStringLiteral("A"), QStringLiteral("H")},
                                                    {QStringLiteral("B"), QStringLiteral("S")},
                                                    {QStringLiteral("C"), QStringLiteral("S")},
                                                    {QStringLiteral("C:1"), QStringLiteral("S")}};
        for (const auto &r : runs) {
            b.addRun(r.first, r.second, QStringLiteral("Run ") + r.first);
            b.addHeader(r.first, r.second, 1, 2000);
            b.exec(QStringLiteral("INSERT INTO Model_Entries (Run_Id, Tree_Id, Species_Code, Trees_per_ha, Current_Diameter, "
                                     "Cycle_Number, Standing_Harvested) VALUES ('%1', '1', 1, 50, 20.5, 1, '%2')")
                          .arg(r.first, r.second));
        }
        return b.start();
    }

    // Rows of a run in the three tables, as "entries/headers/runs".
    QString rowsOf(GuiBench &b, const QString &runId, const QString &sorH)
    {
        QStringList counts;
        for (const char *table : {"Model_Entries", "Model_Header", "Model_Run"}) {
            counts << QString::number(b.count(QString::fromLatin1(table), QStringLiteral("Run_Id = '%1' AND Standing_Harvested = '%2'").arg(runId, sorH)));
        }
        return counts.join(QLatin1Char('/'));
    }

    int rowOf(QListWidget *list, const QString &head)
    {
        for (int i = 0; i < list->count(); ++i) {
            if (list->item(i)->text().startsWith(head + QLatin1Char('\t')))
                return i;
        }
        return -1;
    }

private slots:
    void windowShowsTheBrowsersRuns()
    {
        GuiBench b;
        frmMarquel *m = startWithRuns(b);
        frmDeleteRuns d(b.tm, *m, *b.frame);
        d.RefreshRunList();
        QCOMPARE(d.windowTitle(), QStringLiteral("Delete Runs"));
        QCOMPARE(d.Frame3->title(), QStringLiteral("Select Runs For Deletion"));
        QCOMPARE(d.cmdDelete->text(), QStringLiteral("&Delete"));
        QCOMPARE(d.cmdCancel->text(), QStringLiteral("&Cancel"));
        QStringList texts;
        for (int i = 0; i < d.lstRuns->count(); ++i)
            texts << d.lstRuns->item(i)->text();
        QCOMPARE(texts, m->RunEntries());
        QCOMPARE(texts.size(), 5);
    }

    void nothingSelectedTouchesNothing()
    {
        GuiBench b;
        frmMarquel *m = startWithRuns(b);
        frmDeleteRuns d(b.tm, *m, *b.frame);
        d.RefreshRunList();
        d.show();
        QTest::mouseClick(d.cmdDelete, Qt::LeftButton);
        QCOMPARE(b.questions.messageTexts(), QStringList{QStringLiteral("No run selected")});
        QCOMPARE(b.questions.asked().first().title, QStringLiteral("Sendrel"));
        QCOMPARE(b.count(QStringLiteral("Model_Run")), 5);
        QVERIFY(d.isVisible());
    }

    // One of two selected runs vanished: the user hears of it and is asked about the other; only
    // that kind of that run goes.
    void vanishedRunIsReportedAndTheOtherAsked()
    {
        GuiBench b;
        frmMarquel *m = startWithRuns(b);
        frmDeleteRuns d(b.tm, *m, *b.frame);
        d.RefreshRunList();
        d.show();
        clickRow(d.lstRuns, rowOf(d.lstRuns, QStringLiteral("A:Harvested")));
        clickRow(d.lstRuns, rowOf(d.lstRuns, QStringLiteral("B:Standing")));
        b.exec(QStringLiteral("DELETE FROM Model_Run WHERE Run_Id = 'B'"));
        b.questions.answerMessage(Answer::OK);
        QTest::mouseClick(d.cmdDelete, Qt::LeftButton);

        QCOMPARE(b.questions.messageTexts(), (QStringList{QStringLiteral("Some of the runs you selected were deleted by another application."),
                                                          QStringLiteral("Delete run: A:Harvested")}));
        QCOMPARE(b.questions.asked()[1].title, QStringLiteral("Delete?"));
        QCOMPARE(rowsOf(b, QStringLiteral("A"), QStringLiteral("H")), QStringLiteral("0/0/0"));
        QCOMPARE(rowsOf(b, QStringLiteral("A"), QStringLiteral("S")), QStringLiteral("1/1/1"));
        // Both lists were read again.
        QCOMPARE(m->lstRuns->count(), 3);
        QCOMPARE(d.lstRuns->count(), 3);
        QVERIFY(d.isVisible());
    }

    void runOpenInAReportWindowIsRefused()
    {
        GuiBench b;
        frmMarquel *m = startWithRuns(b);
        // A composition window on A standing.
        clickRow(m->lstRuns, 0);
        clickRow(m->lstRuns, rowOf(m->lstRuns, QStringLiteral("A:Standing")));
        clickBox(m->chkStandLevels);
        QTest::mouseClick(m->cmdOK, Qt::LeftButton);
        QCOMPARE(m->NumOpenWindows, qint16(1));

        frmDeleteRuns d(b.tm, *m, *b.frame);
        d.RefreshRunList();
        d.show();
        clickRow(d.lstRuns, rowOf(d.lstRuns, QStringLiteral("A:Standing")));
        clickRow(d.lstRuns, rowOf(d.lstRuns, QStringLiteral("B:Standing")));
        QTest::mouseClick(d.cmdDelete, Qt::LeftButton);
        QCOMPARE(b.questions.messageTexts(), QStringList{QStringLiteral("Can't delete this Run: A:Standing while open.")});
        QCOMPARE(rowsOf(b, QStringLiteral("A"), QStringLiteral("S")), QStringLiteral("1/1/1"));
        QCOMPARE(rowsOf(b, QStringLiteral("B"), QStringLiteral("S")), QStringLiteral("1/1/1"));

        // The other kind of the same run is no obstacle.
        b.questions.clear();
        clickRow(d.lstRuns, rowOf(d.lstRuns, QStringLiteral("A:Harvested")));
        b.questions.answerMessage(Answer::OK);
        QTest::mouseClick(d.cmdDelete, Qt::LeftButton);
        QCOMPARE(b.questions.messageTexts(), QStringList{QStringLiteral("Delete run: A:Harvested")});
        QCOMPARE(rowsOf(b, QStringLiteral("A"), QStringLiteral("H")), QStringLiteral("0/0/0"));
    }

    void cancellingEveryRunDeletesNothing()
    {
        GuiBench b;
        frmMarquel *m = startWithRuns(b);
        frmDeleteRuns d(b.tm, *m, *b.frame);
        d.RefreshRunList();
        d.show();
        clickRow(d.lstRuns, 0);
        clickRow(d.lstRuns, 1);
        b.questions.answerMessage(Answer::Cancel);
        b.questions.answerMessage(Answer::Cancel);
        QTest::mouseClick(d.cmdDelete, Qt::LeftButton);
        QCOMPARE(b.questions.pendingAnswers(), 0);
        QCOMPARE(b.count(QStringLiteral("Model_Entries")), 5);
        // Refreshed all the same: the selection is gone.
        QCOMPARE(highlightedRows(d.lstRuns), QList<int>{});
    }

    // A renamed run's entry holds two ":"; its own rows go, not those of the name it came from.
    void renamedRunGoesAlone()
    {
        GuiBench b;
        frmMarquel *m = startWithRuns(b);
        frmDeleteRuns d(b.tm, *m, *b.frame);
        d.RefreshRunList();
        d.show();
        clickRow(d.lstRuns, rowOf(d.lstRuns, QStringLiteral("C:1:Standing")));
        b.questions.answerMessage(Answer::OK);
        QTest::mouseClick(d.cmdDelete, Qt::LeftButton);
        QCOMPARE(b.questions.messageTexts(), QStringList{QStringLiteral("Delete run: C:1:Standing")});
        QCOMPARE(rowsOf(b, QStringLiteral("C:1"), QStringLiteral("S")), QStringLiteral("0/0/0"));
        QCOMPARE(rowsOf(b, QStringLiteral("C"), QStringLiteral("S")), QStringLiteral("1/1/1"));
    }

    // Through the browser's menu: the window is modal, and the browser's list is rebuilt after it.
    void menuCommandRebuildsTheBrowserList()
    {
        GuiBench b;
        frmMarquel *m = startWithRuns(b);
        b.questions.answerMessage(Answer::OK);
        onNextModal([this](QWidget *w) {
            auto *d = qobject_cast<frmDeleteRuns *>(w);
            QVERIFY(d);
            clickRow(d->lstRuns, rowOf(d->lstRuns, QStringLiteral("B:Standing")));
            QTest::mouseClick(d->cmdDelete, Qt::LeftButton);
            QTest::mouseClick(d->cmdCancel, Qt::LeftButton);
        });
        m->mnu_Runs_Delete->trigger();
        QCOMPARE(b.questions.messageTexts(), QStringList{QStringLiteral("Delete run: B:Standing")});
        QCOMPARE(m->lstRuns->count(), 4);
        QCOMPARE(rowOf(m->lstRuns, QStringLiteral("B:Standing")), -1);
    }
};

SENDREL_TEST_MAIN(tst_frmDeleteRuns)
#include "tst_frmDeleteRuns.moc"
