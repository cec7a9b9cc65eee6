// The comparison window as the browser opens it: the runs checked, the base chosen, the tables and
// the chart following them, a refusal shown in place, Export... read back number for number, Print.
#include "support/TestMain.h"
#include "support/CompareRuns.h"
#include "support/GuiBench.h"

#include "domain/compare/ComparisonTables.h"
#include "graph/Graph.h"
#include "windows/compare/frmCompare.h"

#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QProcess>
#include <QPushButton>
#include <QRegularExpression>
#include <QTableWidget>

using namespace sendrel;
using namespace sendrel::test;

namespace {

// The numbers of a document in reading order: rows then totals of each table, blanks and texts left out.
QList<double> numbersOf(const TableDocument &document)
{
    QList<double> numbers;
    for (const DataTable &t : document.tables) {
        for (const TableRow &row : t.rows + t.totals) {
            for (const QVariant &v : row) {
                if (!v.isNull() && v.typeId() != QMetaType::QString)
                    numbers.append(TableValue(v.toDouble()));   // as a file keeps it
            }
        }
    }
    return numbers;
}

// The numbers of a workbook's sheets in order, as stored.
QList<double> workbookNumbers(const QString &path, int sheets)
{
    QList<double> numbers;
    static const QRegularExpression value(QStringLiteral("<c ([^>]*)><v>([^<]*)</v>"));
    for (int s = 1; s <= sheets; ++s) {
        QProcess unzip;
        unzip.start(QStringLiteral("unzip"), {QStringLiteral("-p"), path, QStringLiteral("xl/worksheets/sheet%1.xml").arg(s)});
        unzip.waitForFinished();
        for (const QRegularExpressionMatch &m : value.globalMatch(QString::fromUtf8(unzip.readAllStandardOutput()))) {
            if (!m.captured(1).contains(QStringLiteral("t=\"s\"")))
                numbers.append(m.captured(2).toDouble());
        }
    }
    return numbers;
}

}  // namespace

class tst_frmcompare : public QObject {
    Q_OBJECT

    frmCompare *open(GuiBench &b, const QStringList &runs)
    {
        b.start();
        return OpenCompareWindow(b.tm, *b.frame, runs);
    }

private slots:
    void initTestCase() { QVERIFY(QFile::exists(QStringLiteral(SENDREL_SOURCE_DIR "/install/Help/95.html"))); }

    void fromTheBrowser()
    {
        GuiBench b;
        b.openDatabase();
        AddComparisonRuns(b);
        frmMarquel *m = b.start();
        auto *list = m->findChild<QListWidget *>(QStringLiteral("lstRuns"));
        for (const QString &run : {QStringLiteral("GROW:Standing"), QStringLiteral("THIN:Standing")}) {
            if (!list->findItems(run + QLatin1Char('\t'), Qt::MatchStartsWith).first()->isSelected())
                clickRow(list, rowOf(list, run));
        }
        QTest::mouseClick(Control<QPushButton>(m, QStringLiteral("cmdCompare")), Qt::LeftButton);
        auto *w = b.frame->findChild<frmCompare *>();
        QVERIFY(w && w->isVisible());
        QVERIFY(w->Shown());
        QCOMPARE(w->Shown()->runIds(), (QStringList{"GROW", "THIN"}));
        QCOMPARE(w->windowTitle(), QStringLiteral("Compare Runs: GROW, THIN"));
    }

    // The checked runs and the base drive every tab, in the units of the settings; a refusal and a
    // wrong count are said in place.
    void choices()
    {
        GuiBench b;
        b.openDatabase();
        AddComparisonRuns(b);
        b.tm.settings.Units = QStringLiteral("imperial");
        frmCompare *w = open(b, {QStringLiteral("GROW"), QStringLiteral("THIN")});
        auto *grid = Control<QTableWidget>(w, QStringLiteral("grdSummary"));
        auto *base = Control<QComboBox>(w, QStringLiteral("cboBase"));
        auto *message = Control<QLabel>(w, QStringLiteral("lblMessage"));
        auto *runs = Control<QListWidget>(w, QStringLiteral("lstRuns"));
        QCOMPARE(grid->rowCount(), 4);
        QCOMPARE(grid->item(3, 2)->text(), QStringLiteral("3144.1"));   // THIN's total yield in 2030, 220 cu.m/ha

        base->setCurrentIndex(1);
        QCOMPARE(w->Shown()->baseRun().run.runId, QStringLiteral("THIN"));
        QCOMPARE(grid->horizontalHeaderItem(3)->text(), QStringLiteral("GROW - THIN\ncu.ft/acre"));
        auto *chart = w->findChild<Graph *>(QStringLiteral("gphCompare"));
        QCOMPARE(chart->series().first().legend, QStringLiteral("THIN (base)"));

        Control<QComboBox>(w, QStringLiteral("cboYear"))->setCurrentText(QStringLiteral("2010"));
        QCOMPARE(w->DifferenceTables().tables.size(), 3);
        QCOMPARE(Control<QTableWidget>(w, QStringLiteral("grdTable"))->rowCount(), 10 + 1);   // the settings' classes and the totals

        runs->findItems(QStringLiteral("LATE"), Qt::MatchExactly).first()->setCheckState(Qt::Checked);
        QVERIFY(!w->Shown());
        QVERIFY2(message->text().contains(QStringLiteral("no year in common")), qPrintable(message->text()));
        QCOMPARE(grid->rowCount(), 0);
        QVERIFY(!Control<QPushButton>(w, QStringLiteral("cmdExport"))->isEnabled());
        runs->findItems(QStringLiteral("LATE"), Qt::MatchExactly).first()->setCheckState(Qt::Unchecked);
        runs->findItems(QStringLiteral("GROW"), Qt::MatchExactly).first()->setCheckState(Qt::Unchecked);
        QCOMPARE(message->text(), QStringLiteral("Check 2 to 8 runs to compare; 1 checked."));
    }

    // Every table to a workbook, a sheet each, and the summary to CSV, read back number for number;
    // the CSV files with their definitions beside them when the settings ask.
    void exportsAndPrints()
    {
        GuiBench b;
        b.openDatabase();
        AddComparisonRuns(b);
        frmCompare *w = open(b, {QStringLiteral("GROW"), QStringLiteral("THIN")});
        Control<QComboBox>(w, QStringLiteral("cboYear"))->setCurrentText(QStringLiteral("2010"));
        const TableDocument summary = SummaryComparisonDocument(*w->Shown());
        const QString book = b.filePath(QStringLiteral("compare.xlsx"));
        b.questions.answerSaveFile(book);
        QTest::mouseClick(Control<QPushButton>(w, QStringLiteral("cmdExport")), Qt::LeftButton);
        const int sheets = static_cast<int>(summary.tables.size() + w->DifferenceTables().tables.size());
        QCOMPARE(workbookNumbers(book, sheets), numbersOf(summary) + numbersOf(w->DifferenceTables()));

        const QString csv = b.filePath(QStringLiteral("compare.csv"));
        b.tm.settings.CsvDefinitions = true;
        b.questions.answerSaveFile(csv);
        QTest::mouseClick(Control<QPushButton>(w, QStringLiteral("cmdExport")), Qt::LeftButton);
        QList<double> read;
        QStringList texts;
        const QStringList lines = QString::fromUtf8(ReadWholeFile(csv)).split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
        QCOMPARE(lines.first(), QStringLiteral("Table,Year,GROW,THIN,THIN - GROW,THIN % of GROW (%)"));
        for (const QString &line : lines.mid(1)) {
            const QStringList cells = line.split(QLatin1Char(','));
            for (const QString &cell : cells.mid(1)) {
                bool ok = false;
                const double v = cell.toDouble(&ok);
                if (ok)
                    read.append(v);
                else if (!cell.isEmpty())
                    texts.append(cell);
            }
        }
        QCOMPARE(read, numbersOf(summary));
        QVERIFY(texts.size() > 0 && texts.count(QStringLiteral("n/a")) == texts.size());
        for (const char *beside : {"compare.definitions.csv", "compare-Stand2010.csv", "compare-Stand2010.definitions.csv"})
            QVERIFY2(QFile::exists(b.filePath(QLatin1String(beside))), beside);

        const QString pdf = b.filePath(QStringLiteral("compare.pdf"));
        w->setPrintDialog([&](QPrinter &printer, QWidget *) { return printer.setOutputFileName(pdf), true; });
        QTest::mouseClick(Control<QPushButton>(w, QStringLiteral("cmdPrint")), Qt::LeftButton);
        const QByteArray printed = ReadWholeFile(pdf);
        QVERIFY(printed.count("/Type /Page") - printed.count("/Type /Pages") >= 2);
    }
};

SENDREL_TEST_MAIN(tst_frmcompare)
#include "tst_frmcompare.moc"
