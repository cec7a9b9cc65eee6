#include "support/TestMain.h"
#include "support/GoldenFile.h"
#include "support/SampleRuns.h"
#include "support/RunDatabase.h"

#include "base/SendrelError.h"
#include "windows/output/frmReport.h"
#include "domain/standstock/ClassLayout.h"
#include "domain/standstock/StandStockData.h"
#include "windows/standstock/ViewStandStockReport.h"

#include <QApplication>
#include <QFile>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace sendrel;
using namespace sendrel::test;

namespace {

// Acts on the viewer once it is up modally. The compile lets events run between cycles, so a
// one-shot timer could fire before the viewer exists: this one looks until it finds it.
void whenViewerShown(QObject *context, const std::function<void(frmReport &)> &act)
{
    auto *timer = new QTimer(context);
    timer->setInterval(10);
    QObject::connect(timer, &QTimer::timeout, context, [timer, act] {
        if (auto *viewer = qobject_cast<frmReport *>(QApplication::activeModalWidget())) {
            timer->stop();
            timer->deleteLater();
            act(*viewer);
        }
    });
    timer->start();
}

}  // namespace

// "View Reports" as the stand and stock window calls it, on the run of the command-line
// report test: the desktop's file must be the tool's, byte for byte.
class TestViewStandStockReport : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void selectedCyclesInListOrder();
    void standTableViewedThenCancelled();
    void stockTableShownModally();
    void failedCompileShowsErrorAndNoViewer();
    void viewerThatCannotBeShown();
    void nothingSelectedOrCancelled();

private:
    void view(bool density, const ShowReportViewerFn &show = {});

    std::unique_ptr<RunDatabase> m_db;
    std::unique_ptr<QListWidget> m_list;
    std::unique_ptr<ClassLayout> m_layout;
    std::unique_ptr<StandStockData> m_data;
    QString m_runDesc;
    QList<int> m_pointers;
};

void TestViewStandStockReport::init()
{
    m_db = std::make_unique<RunDatabase>();
    AddReportTestRun(*m_db);
    m_db->tm.ProgramDir = m_db->dir();
    // The list of years as the window fills it: the year as text, the cycle as item value.
    m_list = std::make_unique<QListWidget>();
    m_list->setSelectionMode(QAbstractItemView::MultiSelection);
    for (const auto &[cycle, year] : {std::pair{1, 2000}, std::pair{2, 2010}, std::pair{3, 2020}}) {
        auto *item = new QListWidgetItem(QString::number(year), m_list.get());
        item->setData(Qt::UserRole, cycle);
        item->setSelected(true);
    }
    m_layout = std::make_unique<ClassLayout>();
    QVERIFY(m_layout->SetClasses(u"10", u"5", u"4").passed());
    m_data = std::make_unique<StandStockData>(*m_layout, m_db->tm.db.NumSpecies);
    m_runDesc = QStringLiteral("from the browser");
    m_pointers.clear();
}

void TestViewStandStockReport::cleanup()
{
    m_data.reset();
    m_layout.reset();
    m_list.reset();
    m_db.reset();
}

void TestViewStandStockReport::view(bool density, const ShowReportViewerFn &show)
{
    ViewStandStockReport(m_db->tm, nullptr, kReportTestRunId, QStringLiteral("S"), m_runDesc, density, *m_list, *m_layout, *m_data,
                         [this](int pointer) { m_pointers.append(pointer); }, show);
}

void TestViewStandStockReport::selectedCyclesInListOrder()
{
    m_list->item(1)->setSelected(false);
    const QList<SelectedCycle> cycles = SelectedCycles(*m_list);
    QCOMPARE(cycles.size(), 2);
    QCOMPARE(cycles.at(0).cycle, qint16(1));
    QCOMPARE(cycles.at(0).yearText, QStringLiteral("2000"));
    QCOMPARE(cycles.at(1).cycle, qint16(3));
    QCOMPARE(cycles.at(1).yearText, QStringLiteral("2020"));
}

void TestViewStandStockReport::standTableViewedThenCancelled()
{
    ScriptedQuestions &q = m_db->questions;
    q.answerReportText(true);   // the presets as they stand
    QString file;
    int shown = 0;
    view(true, [&](frmReport &viewer) {
        ++shown;
        file = viewer.ReportFile;
        QCOMPARE(viewer.ReportType, 0);
        QCOMPARE(viewer.ReportOrientation, qint16(1));
        viewer.show();
        QCOMPARE(viewer.windowTitle(), QStringLiteral("Stand Table Report"));
        QVERIFY(viewer.findChild<QPlainTextEdit *>(QStringLiteral("rtbReport"))->toPlainText().startsWith(QStringLiteral("   CLIRPT: Stand Table")));
        // The file of the desktop is the file of the command line.
        SENDREL_COMPARE_GOLDEN(ReadWholeFile(file), QStringLiteral("reports/cli_stand_all_cycles.txt"));
        QTest::mouseClick(viewer.findChild<QPushButton *>(QStringLiteral("cmdCancel")), Qt::LeftButton);
    });
    QCOMPARE(shown, 1);
    QCOMPARE(file, m_db->dir() + QStringLiteral("/CLIRPT_Stand.txt"));
    QVERIFY(!QFile::exists(file));
    QCOMPARE(q.asked().first().title, QStringLiteral("CLIRPT: Stand Table"));
    QCOMPARE(m_runDesc, QStringLiteral("Thinned to 400 sph in 2010"));
    QCOMPARE(m_pointers, (QList<int>{11, 0}));
    QCOMPARE(q.busyCalls(), 4);
    QCOMPARE(q.lastBusyMessage(), QStringLiteral("Compiling report data for cycle: 3"));
    QVERIFY(!q.busyVisible());
    QCOMPARE(q.messageTexts(), QStringList());
}

void TestViewStandStockReport::stockTableShownModally()
{
    m_db->questions.answerReportText(true);
    bool seen = false;
    whenViewerShown(this, [&](frmReport &viewer) {
        seen = true;
        QCOMPARE(viewer.windowTitle(), QStringLiteral("Stock Table Report"));
        viewer.close();   // by the frame: the file stays
        SENDREL_COMPARE_GOLDEN(ReadWholeFile(viewer.ReportFile), QStringLiteral("reports/cli_stock_all_cycles.txt"));
    });
    view(false);
    QVERIFY(seen);
    QVERIFY(QFile::exists(m_db->dir() + QStringLiteral("/CLIRPT_Stock.txt")));
    QCOMPARE(m_pointers, (QList<int>{11, 0}));
}

void TestViewStandStockReport::failedCompileShowsErrorAndNoViewer()
{
    m_db->exec(QStringLiteral("DROP TABLE Report_Header"));
    m_db->questions.answerReportText(true);
    view(true, [](frmReport &) { QFAIL("no viewer after a failed compile"); });
    const QStringList said = m_db->questions.messageTexts();
    QCOMPARE(said.size(), 1);
    QVERIFY2(said.first().startsWith(QStringLiteral("The following error occured:\r\n\r\n(")), qPrintable(said.first()));
    QVERIFY(said.first().contains(QStringLiteral("Report_Header")));
    QVERIFY(!QFile::exists(m_db->dir() + QStringLiteral("/CLIRPT_Stand.txt")));
    QVERIFY(!m_db->questions.busyVisible());
    QCOMPARE(m_pointers, (QList<int>{11, 0}));
}

void TestViewStandStockReport::viewerThatCannotBeShown()
{
    m_db->questions.answerReportText(true);
    view(true, [](frmReport &) { throw SendrelError(7, QStringLiteral("frmReport"), QStringLiteral("Out of memory")); });
    QCOMPARE(m_db->questions.messageTexts(), QStringList{QStringLiteral("Report Failed: 7\r\nOut of memory")});
    QCOMPARE(m_pointers, (QList<int>{11, 0}));
}

void TestViewStandStockReport::nothingSelectedOrCancelled()
{
    m_list->clearSelection();
    view(true, [](frmReport &) { QFAIL("nothing to view"); });
    QCOMPARE(m_db->questions.messageTexts(), QStringList{QStringLiteral("No Cycles Are Selected")});
    QCOMPARE(m_runDesc, QStringLiteral("from the browser"));

    m_db->questions.clear();
    m_list->item(0)->setSelected(true);
    m_db->questions.answerReportText(false);
    view(true, [](frmReport &) { QFAIL("cancelled"); });
    QCOMPARE(m_db->questions.messageTexts(), QStringList());
    QCOMPARE(m_db->questions.busyCalls(), 0);
    // The run's parameters were read before the dialog, so they stand after a Cancel too.
    QCOMPARE(m_runDesc, QStringLiteral("Thinned to 400 sph in 2010"));
    QCOMPARE(m_pointers, (QList<int>{0, 0}));
}

SENDREL_TEST_MAIN(TestViewStandStockReport)
#include "tst_viewstandstockreport.moc"
