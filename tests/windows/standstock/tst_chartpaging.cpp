#include "support/TestMain.h"
#include "support/GuiBench.h"
#include "support/WindowHostStub.h"

#include "domain/standstock/ChartPages.h"
#include "graph/ChartKey.h"
#include "graph/Graph.h"
#include "windows/common/ChildFrame.h"
#include "windows/output/frmChart.h"
#include "windows/standstock/frmParameters.h"

#include <QBarSeries>
#include <QBarSet>
#include <QBarCategoryAxis>
#include <QCheckBox>
#include <QChart>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QPrinter>
#include <QPushButton>
#include <QRadioButton>

using namespace sendrel;
using namespace sendrel::test;

namespace {

// A stand and stock window over run "R1" with one year per decade from 2000, each of two species
// in two classes (0-10, 10-20 and the bucket), and the chart windows it opens.
struct Paging {
    RunDatabase env{RunDatabase::Db::None};
    WindowHostStub host;
    QPointer<frmParameters> w;
    int calcReports = 0;

    explicit Paging(int years, QList<int> selected = {0})
    {
        env.openAsProgram();
        Settings &s = env.tm.settings;
        s.DensityTopTitle = QStringLiteral("Density");
        s.DensityLeftTitle = QStringLiteral("Density (SPH)");
        s.DensityBottomTitle = QStringLiteral("DBH Class (cm)");
        s.ClassesStart = 0;
        s.ClassesWidth = 10;
        s.NumClasses = 3;
        env.addRun(QStringLiteral("R1"), QStringLiteral("S"));
        for (int y = 1; y <= years; ++y) {
            env.addHeader(QStringLiteral("R1"), QStringLiteral("S"), y, 1990 + 10 * y);
            env.addTree(QStringLiteral("R1"), QStringLiteral("S"), y, 3, 5, 100 * y, 1.0);
            env.addTree(QStringLiteral("R1"), QStringLiteral("S"), y, 1, 15, 10, 2.0);
        }
        w = new frmParameters(env.tm, host);
        w->This_RunId = QStringLiteral("R1");
        w->This_SorH = QStringLiteral("S");
        w->UpdateHeaderList();
        auto *list = Control<QListWidget>(w, "lstCycles");
        list->clearSelection();
        for (int row : selected)
            list->item(row)->setSelected(true);
        w->PlotClick();
        w->show();
        w->Data.LetEventsRun = [this] { ++calcReports; };
        env.questions.clear();
    }
    ~Paging()
    {
        if (w)
            w->close();
        liveCharts();
    }

    frmChart *viewCharts()
    {
        QTest::mouseClick(Control<QPushButton>(w, "cmdPrintCharts"), Qt::LeftButton);
        return w->FirstChart;
    }
    // Every chart window still there.
    static QList<frmChart *> liveCharts()
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QList<frmChart *> charts;
        for (QWidget *t : QApplication::topLevelWidgets()) {
            if (auto *c = qobject_cast<frmChart *>(t))
                charts.append(c);
        }
        return charts;
    }
    static frmChart *next(frmChart *c)
    {
        QTest::mouseClick(Control<QPushButton>(c, "cmdNext"), Qt::LeftButton);
        return c->nextChart;
    }
    static frmChart *previous(frmChart *c)
    {
        QTest::mouseClick(Control<QPushButton>(c, "cmdPrev"), Qt::LeftButton);
        return c->prevChart;
    }
};

// What a page shows, to compare the pages of the windows with those of the files.
QStringList Shown(const ChartData &c)
{
    QStringList out{c.ChartTopTitle(), c.ChartLeftTitle(), c.ChartBottomTitle(),
                    QStringLiteral("y %1..%2/%3 grid %4").arg(c.ChartYAxisMin()).arg(c.ChartYAxisMax()).arg(c.ChartYAxisTicks()).arg(c.ChartGrid()),
                    QStringList(c.pointLabels().begin(), c.pointLabels().end()).join(QLatin1Char(' '))};
    for (const ChartData::Series &s : c.series()) {
        QStringList values;
        for (double v : s.values)
            values.append(QString::number(v));
        out.append(QStringLiteral("%1 %2: %3").arg(s.legend).arg(s.colour).arg(values.join(QLatin1Char(' '))));
    }
    return out;
}

}  // namespace

class tst_chartpaging : public QObject {
    Q_OBJECT

private slots:
    void viewCharts_data();
    void viewCharts();
    void pagesAreMadeOnceAndKept();
    void firstLastYearBoxAndKeys();
    void optionsTravelTitlesStay();
    void secondViewChartsAndUnloadEndTheChain();
    void cancelGivesThePlaceBack();
    void failureShowsWhereTheUserWas_data();
    void failureShowsWhereTheUserWas();
    void printAndCopyLeaveTheScreenInColour();
    void speciesAndClasses();
};

void tst_chartpaging::viewCharts_data()
{
    QTest::addColumn<int>("years");
    QTest::addColumn<QList<int>>("selected");
    QTest::addColumn<bool>("previous");
    QTest::addColumn<bool>("next");
    QTest::addColumn<QString>("caption");
    QTest::newRow("one year") << 3 << QList<int>{1} << false << false << "Density: R1 (Standing, 2010)";
    QTest::newRow("two years") << 3 << QList<int>{0, 2} << false << true << "Density: R1 (Standing, 2000)";
    QList<int> all;
    for (int i = 0; i < 101; ++i)
        all.append(i);
    QTest::newRow("more than a hundred") << 101 << all << false << true << "Density: R1 (Standing, 2000)";
    QTest::newRow("none") << 1 << QList<int>{} << false << false << QString();
}

void tst_chartpaging::viewCharts()
{
    QFETCH(int, years);
    QFETCH(QList<int>, selected);
    QFETCH(bool, previous);
    QFETCH(bool, next);
    QFETCH(QString, caption);
    Paging p(years, selected);
    p.host.LeftForm() = p.w.data();
    p.env.exec(QStringLiteral("INSERT INTO Report_Header (Report_id) VALUES (1)"));
    frmChart *c = p.viewCharts();
    if (selected.isEmpty()) {
        QCOMPARE(p.env.questions.messageTexts(), QStringList{"No Cycles Are Selected"});
        QVERIFY(!c && p.w->isVisible());
        return;
    }
    // The first page only, in the window's place; the window hidden, the report gone.
    QCOMPARE(Paging::liveCharts(), QList<frmChart *>{c});
    QCOMPARE(p.calcReports, 1);
    QCOMPARE(p.w->iNumSelectedCycles, selected.size());
    QVERIFY(!p.w->isVisible() && c->isVisible());
    QCOMPARE(p.host.LeftForm().data(), c);
    QCOMPARE(p.env.count(QStringLiteral("Report_Header")), 0);
    QCOMPARE(Control<QPushButton>(c, "cmdPrev")->isEnabled(), previous);
    QCOMPARE(Control<QPushButton>(c, "cmdNext")->isEnabled(), next);
    QCOMPARE(c->windowTitle(), caption);
    QCOMPARE(Control<QLineEdit>(c, "txtGraphTitle")->text(), caption.section(QStringLiteral(": "), 1) + QStringLiteral(": Density"));
    QCOMPARE(Control<Graph>(c, "gphDensity")->ChartTopTitle(), Control<QLineEdit>(c, "txtGraphTitle")->text());
    QVERIFY(Control<Graph>(c, "gphDensity")->Visible() && !Control<Graph>(c, "gphMerchVol")->Visible());
    QCOMPARE(p.env.questions.lastBusyMessage(), QStringLiteral("Compiling report data for cycle: %1").arg(selected.first() + 1));
    QVERIFY(!p.env.questions.busyVisible());
    QTest::mouseClick(Control<QPushButton>(c, "cmdHelp"), Qt::LeftButton);
    QCOMPARE(p.host.HelpTopics, QList<int>{76});
}

void tst_chartpaging::pagesAreMadeOnceAndKept()
{
    Paging p(5, {0, 1, 2, 3, 4});
    p.host.LeftForm() = p.w.data();
    frmChart *first = p.viewCharts();
    frmChart *third = Paging::next(Paging::next(first));
    QCOMPARE(third->cycleNum, qint16(3));
    QCOMPARE(Paging::previous(Paging::previous(third)), first);
    QCOMPARE(Paging::liveCharts().size(), 3);
    QCOMPARE(p.calcReports, 3);
    QVERIFY(first->isVisible() && !third->isVisible());
    QCOMPARE(p.host.LeftForm().data(), first);
    // Forward again: the pages already made, each with its own year; no new query.
    QCOMPARE(Paging::next(Paging::next(first)), third);
    QCOMPARE(Paging::liveCharts().size(), 3);
    QCOMPARE(p.calcReports, 3);
    QCOMPARE(third->windowTitle(), QStringLiteral("Density: R1 (Standing, 2020)"));
    QCOMPARE(Control<Graph>(third, "gphDensity")->value(1, 1), 300.0);
    QCOMPARE(p.host.LeftForm().data(), third);
    // The last page has no ">", and the pages are those a file of the same years holds.
    frmChart *fifth = Paging::next(Paging::next(third));
    QVERIFY(Control<QPushButton>(fifth, "cmdPrev")->isEnabled() && !Control<QPushButton>(fifth, "cmdNext")->isEnabled());
    StandStockData data(p.w->Layout, p.env.tm.db.NumSpecies);
    for (frmChart *c = p.w->FirstChart; c; c = c->nextChart) {
        ChartData density;
        ChartData volume;
        const ChartPageRequest request{{QStringLiteral("R1"), RunKind::Standing}, {QString::number(1990 + 10 * c->cycleNum), c->cycleNum}, true, {}, 0};
        MakeChartPage(p.env.db, p.env.tm.settings, p.w->Layout, data, request, density, volume);
        QCOMPARE(Shown(*Control<Graph>(c, "gphDensity")), Shown(density));
    }
}

// First, last, a year picked and the paging keys go straight to a page, made once between the
// pages already made; "Year n of N" and the buttons follow the page.
void tst_chartpaging::firstLastYearBoxAndKeys()
{
    Paging p(5, {0, 1, 2, 3, 4});
    p.host.LeftForm() = p.w.data();
    frmChart *first = p.viewCharts();
    auto shown = [&p] { return qobject_cast<frmChart *>(p.host.LeftForm().data()); };
    auto key = [](frmChart *c, Qt::Key k) {
        c->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(c));
        QTest::keyClick(c, k);
    };
    QCOMPARE(Control<QLabel>(first, "lblPage")->text(), QStringLiteral("Year 1 of 5"));
    QVERIFY(!Control<QPushButton>(first, "cmdFirst")->isEnabled());
    QTest::mouseClick(Control<QPushButton>(first, "cmdLast"), Qt::LeftButton);
    frmChart *last = shown();
    QCOMPARE(last->cycleNum, qint16(5));
    QCOMPARE(Control<QLabel>(last, "lblPage")->text(), QStringLiteral("Year 5 of 5"));
    QVERIFY(!Control<QPushButton>(last, "cmdLast")->isEnabled() && !Control<QPushButton>(last, "cmdNext")->isEnabled());
    key(last, Qt::Key_PageUp);
    frmChart *fourth = shown();
    QCOMPARE(fourth->cycleNum, qint16(4));
    auto *years = Control<QComboBox>(fourth, "cboYear");
    QCOMPARE(years->currentText(), QStringLiteral("2030"));
    QCOMPARE(years->count(), 5);
    emit years->activated(2);
    frmChart *third = shown();
    QCOMPARE(third->cycleNum, qint16(3));
    QCOMPARE(third->windowTitle(), QStringLiteral("Density: R1 (Standing, 2020)"));
    key(third, Qt::Key_Home);
    QCOMPARE(shown(), first);
    key(first, Qt::Key_End);
    QCOMPARE(shown(), last);
    key(last, Qt::Key_PageDown);   // nothing behind the last
    QCOMPARE(shown(), last);
    QCOMPARE(p.calcReports, 4);
    QList<int> positions;
    for (frmChart *c = p.w->FirstChart; c; c = c->nextChart)
        positions.append(c->cycleNum);
    QCOMPARE(positions, (QList<int>{1, 3, 4, 5}));
    // ">" from the first makes the second between the first and the third.
    key(last, Qt::Key_Home);
    frmChart *second = Paging::next(first);
    QCOMPARE(second->cycleNum, qint16(2));
    QCOMPARE(second->nextChart.data(), third);
}

void tst_chartpaging::optionsTravelTitlesStay()
{
    Paging p(4, {0, 1, 2, 3});
    frmChart *first = p.viewCharts();
    ChildFrame(first)->move(30, 40);
    clickBox(Control<QCheckBox>(first, "chkVertical"));
    clickBox(Control<QRadioButton>(first, "optClipboard"));
    clickBox(Control<QRadioButton>(first, "optColour"));
    Retype(Control<QLineEdit>(first, "txtLeftTitle"), QStringLiteral("Stems"));
    frmChart *second = Paging::next(first);
    QVERIFY(Control<QRadioButton>(second, "optColour")->isChecked());
    // Letters are refused; the digits typed here go to the next page, applied there at once.
    QTest::keyClicks(Control<QLineEdit>(second, "txtYAxisMax"), QStringLiteral("5x00"));
    QCOMPARE(Control<QLineEdit>(second, "txtYAxisMax")->text(), QStringLiteral("500"));
    QTest::mouseClick(Control<QPushButton>(second, "cmdApply"), Qt::LeftButton);
    QCOMPARE(Control<Graph>(second, "gphDensity")->ChartYAxisMax(), 500.0);
    frmChart *third = Paging::next(second);
    QCOMPARE(Control<Graph>(third, "gphDensity")->ChartYAxisMax(), 500.0);   // the digits carried over, applied
    QCOMPARE(ChildFrame(third)->pos(), QPoint(30, 40));
    QVERIFY(Control<QCheckBox>(third, "chkVertical")->isChecked() && !Control<QCheckBox>(third, "chkHorizontal")->isChecked());
    QCOMPARE(Control<Graph>(third, "gphDensity")->ChartGrid(), qint16(2));
    QVERIFY(Control<QRadioButton>(third, "optClipboard")->isChecked() && Control<QRadioButton>(third, "optColour")->isChecked());
    QCOMPARE(Control<QLineEdit>(third, "txtLeftTitle")->text(), QStringLiteral("Density (SPH)"));
    // Emptied and taken back to a page already made: that page follows its data again.
    QTest::keyClick(Control<QLineEdit>(third, "txtYAxisMax"), Qt::Key_End);
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(Control<QLineEdit>(third, "txtYAxisMax"), Qt::Key_Backspace);
    QCOMPARE(Paging::previous(third), second);
    QCOMPARE(Control<QLineEdit>(second, "txtYAxisMax")->text(), QString());
    QCOMPARE(Control<Graph>(second, "gphDensity")->ChartYAxisMax(), 200.0);
    QCOMPARE(Paging::previous(second), first);
    QCOMPARE(Control<QLineEdit>(first, "txtLeftTitle")->text(), QStringLiteral("Stems"));
    QCOMPARE(Control<Graph>(first, "gphDensity")->ChartLeftTitle(), QStringLiteral("Stems"));
}

void tst_chartpaging::secondViewChartsAndUnloadEndTheChain()
{
    Paging p(3, {0, 1, 2});
    QPointer<frmChart> first = p.viewCharts();
    QPointer<frmChart> second = Paging::next(first);
    p.w->cmdPrintCharts_Click();
    QCOMPARE(Paging::liveCharts(), QList<frmChart *>{p.w->FirstChart});
    QVERIFY(first.isNull() && second.isNull());
    QPointer<frmChart> again = p.w->FirstChart.data();
    Paging::next(again);
    p.w->close();
    QVERIFY(Paging::liveCharts().isEmpty());
    QVERIFY(again.isNull());
}

void tst_chartpaging::cancelGivesThePlaceBack()
{
    Paging p(2, {0, 1});
    p.host.LeftForm() = nullptr;
    p.host.RightForm() = p.w.data();
    p.w->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(p.w));
    frmChart *second = Paging::next(p.viewCharts());
    QVERIFY(QTest::qWaitForWindowActive(second));
    QCOMPARE(p.host.RightForm().data(), second);
    auto *sample = Control<Graph>(p.w, QStringLiteral("gphDensity"));
    QCOMPARE(sample->value(1, 1), 100.0);
    p.env.exec(QStringLiteral("DELETE FROM Model_Entries"));
    QTest::mouseClick(Control<QPushButton>(second, "cmdCancel"), Qt::LeftButton);
    QCOMPARE(p.host.RightForm().data(), p.w.data());
    QVERIFY(p.w->bChartsCancelled);
    QVERIFY(p.w->isVisible() && !second->isVisible());
    // The pages stay, hidden, until the next "View Charts".
    QCOMPARE(Paging::liveCharts().size(), 2);
    // Back in front, the window draws its sample again.
    QTRY_COMPARE(sample->value(1, 1), 0.0);
}

void tst_chartpaging::failureShowsWhereTheUserWas_data()
{
    QTest::addColumn<QList<int>>("selected");
    QTest::newRow("at the start") << QList<int>{1};
    QTest::newRow("paging") << QList<int>{0, 1};
}

void tst_chartpaging::failureShowsWhereTheUserWas()
{
    QFETCH(QList<int>, selected);
    Paging p(2, selected);
    p.host.LeftForm() = p.w.data();
    // A species code the species table cannot hold stops the aggregation of 2010.
    p.env.addTree(QStringLiteral("R1"), QStringLiteral("S"), 2, 999, 12, 1, 1);
    frmChart *first = p.viewCharts();
    if (selected.size() > 1)
        QCOMPARE(Paging::next(first), nullptr);
    QCOMPARE(p.env.questions.messageTexts().size(), 1);
    QVERIFY(p.env.questions.messageTexts().first().startsWith(QStringLiteral("The following error occured:")));
    QVERIFY(!p.env.questions.busyVisible());
    QCOMPARE(p.host.MousePointer(), kPointerDefault);
    if (selected.size() > 1) {
        QCOMPARE(Paging::liveCharts(), QList<frmChart *>{first});
        QVERIFY(first->isVisible() && !first->nextChart);
        QCOMPARE(p.host.LeftForm().data(), first);
    } else {
        QVERIFY(Paging::liveCharts().isEmpty() && p.w->FirstChart.isNull());
        QVERIFY(p.w->isVisible());
        QCOMPARE(p.host.LeftForm().data(), p.w.data());
    }
}

void tst_chartpaging::printAndCopyLeaveTheScreenInColour()
{
    Paging p(1);
    frmChart *c = p.viewCharts();
    // The print dialog offers a PDF file in the Work folder, named by run, kind, table and year.
    const QString pdf = p.env.filePath(QStringLiteral("chart.pdf"));
    p.env.questions.answerPrint(pdf);
    clickBox(Control<QRadioButton>(c, "optBandW"));
    QTest::mouseClick(Control<QPushButton>(c, "cmdPrint"), Qt::LeftButton);
    QCOMPARE(p.env.questions.asked().last().text, QDir(p.env.tm.ReportFolder()).filePath(QStringLiteral("R1_Standing_Stand_2000.pdf")));
    QCOMPARE(ReadWholeFile(pdf).count("/Type /Page\n"), 1);
    QCOMPARE(Control<Graph>(c, "gphDensity")->ChartPrintStyle(), qint16(2));
    QCOMPARE(Control<Graph>(c, "gphMerchVol")->ChartPrintStyle(), qint16(2));

    clickBox(Control<QRadioButton>(c, "optClipboard"));
    QTest::mouseClick(Control<QPushButton>(c, "cmdPrint"), Qt::LeftButton);
    const QImage copy = QGuiApplication::clipboard()->image();
    QVERIFY(!copy.isNull());
    for (int y = 0; y < copy.height(); y += 7) {
        for (int x = 0; x < copy.width(); x += 7) {
            const QRgb px = copy.pixel(x, y);
            QVERIFY2(qRed(px) == qGreen(px) && qGreen(px) == qBlue(px), "the copy is black and white");
        }
    }
    QCOMPARE(Control<Graph>(c, "gphDensity")->ChartScreenStyle(), qint16(1));
    auto *bars = qobject_cast<QBarSeries *>(Control<Graph>(c, "gphDensity")->shownChart()->series().first());
    QCOMPARE(bars->barSets().first()->brush().color(), Graph::PaletteColour(3));
}

void tst_chartpaging::speciesAndClasses()
{
    Paging p(2, {0, 1});
    // 2000: five species in the first two of three classes; 2010: no trees at all.
    p.env.exec(QStringLiteral("DELETE FROM Model_Entries"));
    for (int code = 1; code <= 5; ++code)
        p.env.addTree(QStringLiteral("R1"), QStringLiteral("S"), 1, code, code * 3, code, 1);
    frmChart *many = p.viewCharts();
    QChart *chart = Control<Graph>(many, "gphDensity")->shownChart();
    auto *classes = qobject_cast<QBarCategoryAxis *>(chart->axes(Qt::Horizontal).first());
    QCOMPARE(classes->count(), 3);
    QCOMPARE(ChartKey::of(chart)->labels(), (QStringList{"PW", "LW", "FD", "BG", "HW"}));

    frmChart *none = Paging::next(many);
    QCOMPARE(Control<Graph>(none, "gphDensity")->ChartSeriesCount(), qint16(1));
    QCOMPARE(Control<Graph>(none, "gphDensity")->series().first().values, (QVector<double>{0, 0, 0}));
    QCOMPARE(Control<Graph>(none, "gphDensity")->pointLabels(), (QVector<QString>{"5", "15", "25"}));
    QVERIFY(!ChartKey::of(Control<Graph>(none, "gphDensity")->shownChart())->isVisible());
}

SENDREL_TEST_MAIN(tst_chartpaging)
#include "tst_chartpaging.moc"
