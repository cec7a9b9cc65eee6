// The Stand Summary window as the browser opens it, its chart, Export... and Print; and the
// Export... button of the stand and stock window.
#include "support/TestMain.h"
#include "support/GuiBench.h"
#include "support/SampleRuns.h"
#include "support/WindowHostStub.h"

#include "graph/Graph.h"
#include "windows/standstock/frmParameters.h"
#include "windows/summary/frmStandSummary.h"

#include <QComboBox>
#include <QHeaderView>
#include <QPushButton>
#include <QStatusBar>
#include <QTableWidget>

using namespace sendrel;
using namespace sendrel::test;

class tst_frmstandsummary : public QObject {
    Q_OBJECT

    // The browser with the report test run, its standing list selected alone.
    frmMarquel *start(GuiBench &b)
    {
        b.openDatabase();
        AddReportTestRun(b);
        frmMarquel *m = b.start();
        clickRow(RunList(m), 0);   // the harvested list, selected on load, goes
        clickRow(RunList(m), 1);
        return m;
    }

private slots:
    void opensBesideTheReportWindows()
    {
        GuiBench b;
        frmMarquel *m = start(b);
        QTest::mouseClick(Control<QPushButton>(m, "cmdSummary"), Qt::LeftButton);
        auto *w = b.frame->findChild<frmStandSummary *>();
        QVERIFY(w && w->isVisible());
        QCOMPARE(w->windowTitle(), QStringLiteral("Stand Summary: CLIRPT (Standing)"));
        // No report window: the count and the frame's places are the browser's as before.
        QCOMPARE(m->NumOpenWindows, qint16(0));
        QCOMPARE(b.frame->LeftForm().data(), static_cast<QWidget *>(m));
        auto *grid = w->findChild<QTableWidget *>(QStringLiteral("grdSummary"));
        auto *chart = w->findChild<Graph *>(QStringLiteral("gphSummary"));
        QCOMPARE(grid->item(1, 0)->text(), QStringLiteral("2010"));

        // The chart follows the column chosen by a click on its heading.
        QTest::mouseClick(grid->horizontalHeader()->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(grid->horizontalHeader()->sectionViewportPosition(2) + 5, 5));
        QCOMPARE(chart->series().first().legend, QStringLiteral("Before SPH (stems/ha)"));
        QCOMPARE(chart->series().first().values.at(2), w->Summary().rows.at(2).before.sph);

        // Without a selected run the browser says so.
        clickRow(RunList(m), 1);
        QTest::mouseClick(Control<QPushButton>(m, "cmdSummary"), Qt::LeftButton);
        QCOMPARE(b.questions.messageTexts().last(), QStringLiteral("No run selected"));
        QVERIFY(QFile::exists(QStringLiteral(SENDREL_SOURCE_DIR "/install/Help/%1.html").arg(w->HelpContextID)));
    }

    void exportsAndPrints()
    {
        GuiBench b;
        start(b);
        frmStandSummary *w = OpenStandSummaryWindow(b.tm, *b.frame, {kReportTestRunId, RunKind::Standing});
        const QString path = b.filePath(QStringLiteral("summary.csv"));
        b.questions.answerSaveFile(path);
        QTest::mouseClick(w->findChild<QPushButton *>(QStringLiteral("cmdExport")), Qt::LeftButton);
        QVERIFY(ReadWholeFile(path).startsWith("Year,Cycle,Before SPH (stems/ha),"));
        QCOMPARE(b.questions.asked().last().text, b.folder() + QStringLiteral("|CLIRPT_Standing_Summary.xlsx"));
        QCOMPARE(b.frame->statusBar()->currentMessage(), QStringLiteral("Exported to ") + path);
        // A folder where the file should go: told, and nothing written.
        b.questions.answerSaveFile(b.dir());
        QTest::mouseClick(w->findChild<QPushButton *>(QStringLiteral("cmdExport")), Qt::LeftButton);
        QVERIFY(b.questions.messageTexts().last().startsWith(QStringLiteral("The following error occured:")));
        // A run another program has deleted since: told, no file asked for.
        const qsizetype asked = b.questions.asked().size();
        b.tm.db.deleteRun({kReportTestRunId, RunKind::Standing});
        QTest::mouseClick(w->findChild<QPushButton *>(QStringLiteral("cmdExport")), Qt::LeftButton);
        QCOMPARE(b.questions.asked().size(), asked + 1);
        QCOMPARE(b.questions.messageTexts().last(), QStringLiteral("Run CLIRPT:Standing is no longer in the database: another application "
                                                                   "has deleted it. There is nothing to export."));

        const QString pdf = b.filePath(QStringLiteral("summary.pdf"));
        w->setPrintDialog([&](QPrinter &printer, QWidget *) { return printer.setOutputFileName(pdf), true; });
        QTest::mouseClick(w->findChild<QPushButton *>(QStringLiteral("cmdPrint")), Qt::LeftButton);
        // The table, then the chart on a page of its own.
        const QByteArray printed = ReadWholeFile(pdf);
        QVERIFY(printed.count("/Type /Page") - printed.count("/Type /Pages") >= 2);
    }

    void standStockExportButton()
    {
        RunDatabase db;
        AddReportTestRun(db);
        WindowHostStub host;
        auto *window = new frmParameters(db.tm, host);
        window->show();
        window->This_RunId = kReportTestRunId;
        window->This_SorH = QStringLiteral("S");
        window->UpdateHeaderList();
        const QString path = db.filePath(QStringLiteral("stand.csv"));
        db.questions.answerSaveFile(path);
        QTest::mouseClick(Control<QPushButton>(window, "cmdExport"), Qt::LeftButton);
        QCOMPARE(db.questions.asked().last().title, QStringLiteral("Export Stand Table"));
        QVERIFY2(db.questions.asked().last().text.endsWith(QStringLiteral("|CLIRPT_Standing_Stand.xlsx")), qPrintable(db.questions.asked().last().text));
        // The years selected, the first of the list after loading.
        const QByteArray csv = ReadWholeFile(path);
        QVERIFY2(csv.startsWith("Year,Cycle,DBH class (cm),") && csv.contains("\r\n2000,1,") && !csv.contains("\r\n2010,"), csv.constData());
        QCOMPARE(host.Pointers.last(), kPointerDefault);
        window->close();
    }
};

SENDREL_TEST_MAIN(tst_frmstandsummary)
#include "tst_frmstandsummary.moc"
