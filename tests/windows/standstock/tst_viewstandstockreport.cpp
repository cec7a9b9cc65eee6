// "View Reports" of a stand and stock window: the years of the list, the report file in the Work
// folder, the viewer shown modally, and how each way of ending leaves the pointer and the user.
// The compile itself and the file's contents are the domain's tests.
#include "support/TestMain.h"
#include "support/RunDatabase.h"
#include "support/SampleRuns.h"

#include "base/SendrelError.h"
#include "domain/standstock/ClassLayout.h"
#include "domain/standstock/StandStockData.h"
#include "windows/output/frmReport.h"
#include "windows/standstock/ViewStandStockReport.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>

using namespace sendrel;
using namespace sendrel::test;

class TestViewStandStockReport : public QObject {
    Q_OBJECT

private slots:
    void selectedCyclesInListOrder()
    {
        QListWidget list;
        list.setSelectionMode(QAbstractItemView::MultiSelection);
        for (const auto &[cycle, year] : {std::pair{1, 2000}, {2, 2010}, {3, 2020}}) {
            auto *item = new QListWidgetItem(QString::number(year), &list);
            item->setData(Qt::UserRole, cycle);
            item->setSelected(cycle != 2);
        }
        const QList<SelectedCycle> cycles = SelectedCycles(list);
        QCOMPARE(cycles.size(), 2);
        QCOMPARE(cycles.at(1).cycle, qint16(3));
        QCOMPARE(cycles.at(1).yearText, QStringLiteral("2020"));
    }

    void endings_data()
    {
        QTest::addColumn<bool>("answered");
        QTest::addColumn<QString>("fault");   // "compile": the tables are gone; "viewer": it cannot be shown
        QTest::addColumn<bool>("viewed");
        QTest::addColumn<QString>("said");    // the start of what the user is told, if anything
        QTest::newRow("viewed") << true << "" << true << "";
        QTest::newRow("cancelled") << false << "" << false << "";
        QTest::newRow("compile fails") << true << "compile" << false << "The following error occured:";
        QTest::newRow("viewer fails") << true << "viewer" << false << "Report Failed: 7\r\nOut of memory";
    }

    void endings()
    {
        QFETCH(bool, answered);
        QFETCH(QString, fault);
        QFETCH(bool, viewed);
        QFETCH(QString, said);
        RunDatabase db;
        AddReportTestRun(db);
        if (fault == QLatin1String("compile"))
            db.exec(QStringLiteral("DROP TABLE Report_Header"));
        db.questions.answerReportText(answered);
        QListWidget list;
        auto *item = new QListWidgetItem(QStringLiteral("2000"), &list);
        item->setData(Qt::UserRole, 1);
        item->setSelected(true);
        ClassLayout layout;
        QVERIFY(layout.SetClasses(u"10", u"5", u"4").passed());
        StandStockData data(layout, db.tm.db.NumSpecies);
        QString runDesc = QStringLiteral("from the browser");
        QList<int> pointers;

        // The viewer as the window shows it, modally; Cancel there deletes the file.
        bool shown = false;
        QString file;
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, [&] {
            if (auto *viewer = qobject_cast<frmReport *>(QApplication::activeModalWidget())) {
                shown = true;
                file = viewer->ReportFile;
                QVERIFY(QFile::exists(file));
                QCOMPARE(viewer->windowTitle(), QStringLiteral("Stand Table Report"));
                QTest::mouseClick(viewer->findChild<QPushButton *>(QStringLiteral("cmdCancel")), Qt::LeftButton);
            }
        });
        poll.start(10);
        ShowReportViewerFn show;
        if (fault == QLatin1String("viewer"))
            show = [](frmReport &) { throw SendrelError(7, QStringLiteral("frmReport"), QStringLiteral("Out of memory")); };
        ViewStandStockReport(db.tm, nullptr, kReportTestRunId, QStringLiteral("S"), runDesc, true, list, layout, data,
                             [&](int p) { pointers.append(p); }, show);

        QCOMPARE(shown, viewed);
        if (viewed) {
            QCOMPARE(QDir::cleanPath(file), QDir::cleanPath(db.workDir() + QStringLiteral("/CLIRPT_Stand.txt")));
            QVERIFY(!QFile::exists(file));
        }
        const QStringList texts = db.questions.messageTexts();
        QCOMPARE(texts.size(), said.isEmpty() ? 0 : 1);
        if (!said.isEmpty())
            QVERIFY2(texts.first().startsWith(said), qPrintable(texts.first()));
        QCOMPARE(pointers.last(), 0);
        QCOMPARE(pointers.contains(11), answered);
        QVERIFY(!db.questions.busyVisible());
        // The run's parameters are read before the dialog, so they stand after a Cancel too.
        QCOMPARE(runDesc, QStringLiteral("Thinned to 400 sph in 2010"));
        QCOMPARE(db.tm.CurrentRunId, kReportTestRunId);
    }
};

SENDREL_TEST_MAIN(TestViewStandStockReport)
#include "tst_viewstandstockreport.moc"
