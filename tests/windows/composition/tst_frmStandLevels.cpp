#include "support/TestMain.h"
#include "support/GuiBench.h"
#include "support/RunDatabase.h"
#include "support/WindowHostStub.h"

#include "graph/Graph.h"
#include "windows/composition/frmStandLevels.h"
#include "windows/output/frmReport.h"

#include <QApplication>
#include <QCheckBox>
#include <QChart>
#include <QClipboard>
#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QPrinter>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

using namespace sendrel;
using namespace sendrel::test;

namespace {

const StandLevelsStatistic kAll[] = {StandLevelsStatistic::Sph, StandLevelsStatistic::BasalArea, StandLevelsStatistic::MerchVol,
                                     StandLevelsStatistic::TotalVol};

QString yAxes(frmStandLevels &w)
{
    QStringList axes;
    for (StandLevelsStatistic s : kAll)
        axes.append(QStringLiteral("%1-%2").arg(w.Chart(s)->ChartYAxisMin()).arg(w.Chart(s)->ChartYAxisMax()));
    return axes.join(QLatin1Char(' '));
}

}  // namespace

// The wiring of the composition window: what each control reaches. The numbers behind the
// charts and the report are the domain's, tested there.
class tst_frmStandLevels : public QObject {
    Q_OBJECT

    std::unique_ptr<RunDatabase> m_db;
    std::unique_ptr<WindowHostStub> m_host;
    QPointer<frmStandLevels> m_window;

    template <typename T> T *control(const QString &name) { return m_window->findChild<T *>(name); }
    void click(const QString &name) { QTest::mouseClick(control<QAbstractButton>(name), Qt::LeftButton); }

private slots:
    void init()
    {
        m_db = std::make_unique<RunDatabase>();
        // 200 stems of 20 cm with 0.5 m3 each: 200 SPH, 6.3 sq.m/ha, 100 cu.m/ha.
        m_db->addRun(QStringLiteral("R"), QStringLiteral("S"), QStringLiteral("Trial"));
        m_db->addHeader(QStringLiteral("R"), QStringLiteral("S"), 1, 2000);
        m_db->addTree(QStringLiteral("R"), QStringLiteral("S"), 1, 3, 20, 200, 0.5);
        m_host = std::make_unique<WindowHostStub>();
        m_window = new frmStandLevels(m_db->tm, *m_host);
        m_window->This_RunId = QStringLiteral("R");
        m_window->This_SorH = QStringLiteral("S");
        m_window->This_RunDesc = QStringLiteral("Trial");
        m_window->CalcStandLevelsReport();
        m_window->show();
    }
    void cleanup()
    {
        delete m_window;
        m_host.reset();
        m_db.reset();
    }

    // Each option shows its chart and its three title boxes, and nothing else.
    void options_data()
    {
        QTest::addColumn<int>("statistic");
        QTest::addColumn<QString>("name");
        QTest::newRow("SPH") << 0 << "Sph";
        QTest::newRow("Basal Area") << 1 << "BasalArea";
        QTest::newRow("GTV") << 2 << "MerchVol";
        QTest::newRow("Total Vol., hidden") << 3 << "TotalVol";
    }
    void options()
    {
        QFETCH(int, statistic);
        QFETCH(QString, name);
        QVERIFY(!control<QRadioButton>(QStringLiteral("optTotalVol"))->isVisible());
        m_window->ChooseStatistic(StandLevelsStatistic::BasalArea);
        m_window->ChooseStatistic(static_cast<StandLevelsStatistic>(statistic));
        QVERIFY(control<QRadioButton>(QStringLiteral("opt") + (name == QLatin1String("Sph") ? QStringLiteral("SPH") : name))->isChecked());
        QCOMPARE(int(m_window->SelectedStatistic()), statistic);
        const QList<QWidget *> shown = {control<QWidget>(QStringLiteral("gphStandLevels_") + name), control<QWidget>(QStringLiteral("txtGraphTitle_") + name),
                                        control<QWidget>(QStringLiteral("txtLeftTitle_") + name), control<QWidget>(QStringLiteral("txtBottomTitle_") + name)};
        for (QWidget *w : m_window->findChildren<QWidget *>(QRegularExpression(QStringLiteral("^(gphStandLevels|txt\\w+Title)_"))))
            QVERIFY2(w->isVisible() == shown.contains(w), qPrintable(w->objectName()));
        // A title typed goes to its chart as drawn.
        auto *top = control<QLineEdit>(QStringLiteral("txtGraphTitle_") + name);
        QTest::keyClicks(top, QStringLiteral("Mine"));
        QCOMPARE(m_window->Chart(static_cast<StandLevelsStatistic>(statistic))->shownChart()->title(), QStringLiteral("Mine"));
    }

    void yAxisMaxTakesDigits_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("text");
        QTest::newRow("digits and others") << "1a2.5-e" << "125";
        QTest::newRow("a blank and a sign") << " +7" << "7";
    }
    void yAxisMaxTakesDigits()
    {
        QFETCH(QString, typed);
        QFETCH(QString, text);
        auto *box = control<QLineEdit>(QStringLiteral("txtYAxisMax"));
        QTest::keyClicks(box, typed);
        QCOMPARE(box->text(), text);
        QTest::keyClick(box, Qt::Key_Backspace);
        QCOMPARE(box->text(), text.chopped(1));
    }

    // Each statistic has a maximum of its own, kept while another is shown, and never cuts its data.
    void apply()
    {
        QCOMPARE(yAxes(*m_window), QStringLiteral("0-200 0-7 0-100 0-0"));
        auto *box = control<QLineEdit>(QStringLiteral("txtYAxisMax"));
        m_window->ChooseStatistic(StandLevelsStatistic::BasalArea);
        QTest::keyClicks(box, QStringLiteral("10"));
        click(QStringLiteral("cmdApply"));
        QCOMPARE(yAxes(*m_window), QStringLiteral("0-200 0-10 0-100 0-0"));
        m_window->ChooseStatistic(StandLevelsStatistic::Sph);
        QCOMPARE(box->text(), QString());
        QTest::keyClicks(box, QStringLiteral("400"));
        click(QStringLiteral("cmdApply"));
        QCOMPARE(yAxes(*m_window), QStringLiteral("0-400 0-10 0-100 0-0"));
        m_window->ChooseStatistic(StandLevelsStatistic::MerchVol);
        QTest::keyClicks(box, QStringLiteral("50"));   // below the data: no change
        click(QStringLiteral("cmdApply"));
        QCOMPARE(yAxes(*m_window), QStringLiteral("0-400 0-10 0-100 0-0"));
        m_window->ChooseStatistic(StandLevelsStatistic::BasalArea);
        QCOMPARE(box->text(), QStringLiteral("10"));
        box->clear();
        click(QStringLiteral("cmdApply"));
        QCOMPARE(yAxes(*m_window), QStringLiteral("0-400 0-7 0-100 0-0"));
    }

    // Black and white goes to the clipboard or the printer; the screen stays in colour, and the
    // printer style is set on the printed chart alone.
    void printInBlackAndWhite()
    {
        m_window->ChooseStatistic(StandLevelsStatistic::MerchVol);
        click(QStringLiteral("optBandW"));
        click(QStringLiteral("optClipboard"));
        click(QStringLiteral("cmdPrint"));
        const QImage copied = QApplication::clipboard()->image();
        QVERIFY(!copied.isNull() && copied.allGray());
        Graph *shown = m_window->Chart(StandLevelsStatistic::MerchVol);
        QCOMPARE(shown->ChartScreenStyle(), qint16(1));

        // The print dialog offers a PDF file in the Work folder, named by run, kind and statistic.
        m_db->tm.settings.WorkDir = m_db->folder();
        const QString pdf = m_db->filePath(QStringLiteral("chart.pdf"));
        m_db->questions.answerPrint(QString());
        click(QStringLiteral("optPrinter"));
        click(QStringLiteral("cmdPrint"));
        QCOMPARE(m_db->questions.asked().last().text, QDir(m_db->tm.ReportFolder()).filePath(QStringLiteral("R_Standing_Species_MerchVol.pdf")));
        QVERIFY(!QFileInfo::exists(pdf));
        m_db->questions.answerPrint(pdf);
        click(QStringLiteral("cmdPrint"));
        QVERIFY(QFileInfo(pdf).size() > 0);
        QCOMPARE(shown->ChartPrintStyle(), qint16(2));
        QCOMPARE(m_window->Chart(StandLevelsStatistic::Sph)->ChartPrintStyle(), qint16(3));
        QCOMPARE(shown->ChartScreenStyle(), qint16(1));
    }

    // "View Report": the dialog, the report of the chosen statistic, the viewer, the pointer back.
    void viewReport()
    {
        m_window->ChooseStatistic(StandLevelsStatistic::BasalArea);
        m_db->questions.answerReportText(true);
        qint32 type = -1;
        qint16 orientation = 0;
        QString file;
        m_window->ShowReportViewer = [&](frmReport &viewer) {
            type = viewer.ReportType;
            orientation = viewer.ReportOrientation;
            file = viewer.ReportFile;
        };
        click(QStringLiteral("cmdPrintReport"));
        QCOMPARE(type, 2);
        QCOMPARE(orientation, qint16(1));
        QCOMPARE(QFileInfo(file).fileName(), QStringLiteral("R_Species.txt"));
        QVERIFY(QFileInfo::exists(file));
        QCOMPARE(m_db->rows(QStringLiteral("SELECT Report_Type FROM Report_Header")), QStringList{QStringLiteral("SL_BASAL_AREA")});
        QCOMPARE(m_host->Pointers.last(), kPointerDefault);
        QCOMPARE(m_db->tm.CurrentRunId, QStringLiteral("R"));
    }

    // Loaded, the window counts itself in and takes the first free place; Cancel counts it out.
    void loadAndCancel()
    {
        QCOMPARE(m_host->NumOpenWindows, 1);
        QCOMPARE(m_host->Left.data(), m_window.data());
        click(QStringLiteral("cmdHelp"));
        QCOMPARE(m_host->HelpTopics, QList<int>{75});
        QCOMPARE(control<QPushButton>(QStringLiteral("cmdOK"))->text(), QStringLiteral("Cancel"));
        click(QStringLiteral("cmdOK"));
        QCOMPARE(m_host->NumOpenWindows, 0);
        QVERIFY(m_host->Left.isNull());
    }

    // The run browser opens the window with its caption, the titles and options of the settings,
    // for a Run Id with quotes too.
    void openedByTheBrowser()
    {
        GuiBench b;
        b.openDatabase();
        const QString runId = QStringLiteral("O'Neil \"7\"");
        b.addRun(runId, QStringLiteral("S"), QStringLiteral("Trial"));
        b.addHeader(runId, QStringLiteral("S"), 1, 2000);
        b.addTree(runId, QStringLiteral("S"), 1, 3, 20, 200, 0.5);
        b.tm.settings.StandLevelsDefault_Sph = false;
        b.tm.settings.StandLevelsDefault_BasalArea = true;
        b.tm.settings.PrintTo_Printer = false;
        b.tm.settings.HorizontalGrid = true;
        b.tm.settings.StandLevels_BasalArea_LeftTitle = QStringLiteral("BA (sq.m/ha)");
        frmMarquel *m = b.start();
        clickBox(Control<QCheckBox>(m, "chkStandLevels"));
        QTest::mouseClick(Control<QPushButton>(m, "cmdOK"), Qt::LeftButton);
        auto *w = b.frame->findChild<frmStandLevels *>();
        QVERIFY(w);
        QCOMPARE(w->windowTitle(), QStringLiteral("Species Composition through time: ") + runId + QStringLiteral(" (Standing)"));
        QCOMPARE(w->SelectedStatistic(), StandLevelsStatistic::BasalArea);
        QVERIFY(w->findChild<QRadioButton *>(QStringLiteral("optClipboard"))->isChecked());
        QVERIFY(w->findChild<QCheckBox *>(QStringLiteral("chkHorizontal"))->isChecked());
        Graph *g = w->Chart(StandLevelsStatistic::BasalArea);
        QVERIFY(g->isVisible());
        QCOMPARE(g->ChartTopTitle(), runId + QStringLiteral(" (Standing): Basal Area by Species"));
        QCOMPARE(g->ChartLeftTitle(), QStringLiteral("BA (sq.m/ha)"));
        QCOMPARE(w->Chart(StandLevelsStatistic::MerchVol)->ChartTopTitle(), runId + QStringLiteral(" (Standing): Gross Total Volume by Species"));
        QCOMPARE(g->ChartGrid(), qint16(1));
        QCOMPARE(g->series().size(), 2);
        QCOMPARE(m->NumOpenWindows, qint16(1));
    }
};

SENDREL_TEST_MAIN(tst_frmStandLevels)
#include "tst_frmStandLevels.moc"
