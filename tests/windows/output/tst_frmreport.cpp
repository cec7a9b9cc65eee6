#include "support/TestMain.h"
#include "base/ScriptedQuestions.h"
#include "windows/output/ReportPrinting.h"
#include "windows/output/frmReport.h"

#include <QApplication>
#include <QFile>
#include <QFontInfo>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTextCursor>

using namespace sendrel;

namespace {

// A report of many lines: a stand table block repeated, so that it runs over several pages.
QByteArray longReport(int blocks, int width)
{
    QByteArray text = "   R7: Stand Table\r\n";
    const QByteArray rule(width, '_');
    for (int b = 0; b < blocks; ++b) {
        text += rule + "\r\nRun Name: R7\r\n" + rule + "\r\n";
        for (int i = 0; i < 30; ++i)
            text += QByteArray::number(5 + 10 * i).rightJustified(10, ' ') + QByteArray("       121").repeated(width / 10 - 1) + "\r\n";
    }
    return text;
}

int pdfPages(const QString &path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray pdf = f.readAll();
    if (!pdf.startsWith("%PDF"))
        return -1;
    return static_cast<int>(pdf.count("/Type /Page\n") + pdf.count("/Type /Page\r") + pdf.count("/Type /Page "));
}

struct DialogCall {
    int calls = 0;
    QAbstractPrintDialog::PrintDialogOptions options;
    QPageLayout::Orientation orientation = QPageLayout::Portrait;
};

// A print dialog that answers at once: OK with output to a PDF file, or Cancel.
frmReport::PrintDialogFn pdfDialog(DialogCall &call, const QString &pdfPath, bool accept = true)
{
    return [&call, pdfPath, accept](QPrinter &printer, QAbstractPrintDialog::PrintDialogOptions options, QWidget *) {
        ++call.calls;
        call.options = options;
        call.orientation = printer.pageLayout().orientation();
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(pdfPath);
        return accept;
    };
}

}  // namespace

class TestFrmReport : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;

    QString writeReport(const QString &name, const QByteArray &text)
    {
        const QString path = m_dir.filePath(name);
        QFile f(path);
        if (!f.open(QIODevice::WriteOnly))
            return QString();
        f.write(text);
        return path;
    }

    static QPlainTextEdit *box(frmReport &w) { return w.findChild<QPlainTextEdit *>(QStringLiteral("rtbReport")); }
    static QPushButton *button(frmReport &w, const char *name) { return w.findChild<QPushButton *>(QLatin1String(name)); }

private slots:
    void titleByReportType_data();
    void titleByReportType();
    void showsFileInFixedPitch();
    void missingFileTellsAndShowsDesignText();
    void landscapeWidensTheBox();
    void cancelDeletesTheFile();
    void closingByFrameKeepsTheFile();
    void printsWholeReportToPdf();
    void printsOnlyTheSelection();
    void cancelledPrintDialogPrintsNothing();
    void widestLineFitsThePage();
};

void TestFrmReport::titleByReportType_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("title");
    QTest::newRow("stand") << 0 << "Stand Table Report";
    QTest::newRow("stock") << 1 << "Stock Table Report";
    QTest::newRow("composition") << 2 << "Species Composition Report";
    QTest::newRow("other value keeps the design title") << 7 << "Stand Table Report";
}

void TestFrmReport::titleByReportType()
{
    QFETCH(int, type);
    QFETCH(QString, title);
    ScriptedQuestions questions;
    frmReport w(questions);
    w.ReportType = type;
    w.ReportFile = writeReport(QStringLiteral("title.txt"), "x\r\n");
    w.show();
    QCOMPARE(w.windowTitle(), title);
    QCOMPARE(w.objectName(), QStringLiteral("frmReport"));
}

void TestFrmReport::showsFileInFixedPitch()
{
    ScriptedQuestions questions;
    frmReport w(questions);
    w.ReportFile = writeReport(QStringLiteral("R7_Stand.txt"), "   R7: Stand Table\r\nDBH_Class         PW\r\n      12.5       121\r\n");
    w.show();
    QCOMPARE(box(w)->toPlainText(), QStringLiteral("   R7: Stand Table\nDBH_Class         PW\n      12.5       121\n"));
    QVERIFY(box(w)->isReadOnly());
    QVERIFY(QFontInfo(box(w)->font()).fixedPitch());
    QCOMPARE(box(w)->font().pointSizeF(), 8.5);
    QCOMPARE(button(w, "cmdPrint")->text(), QStringLiteral("Print"));
    QCOMPARE(button(w, "cmdCancel")->text(), QStringLiteral("Cancel"));
    QVERIFY(questions.messageTexts().isEmpty());
}

void TestFrmReport::missingFileTellsAndShowsDesignText()
{
    ScriptedQuestions questions;
    frmReport w(questions);
    w.ReportFile = QString();   // the generator failed
    w.show();
    QVERIFY(w.isVisible());
    QCOMPARE(box(w)->toPlainText(), QStringLiteral("Report Failed"));
    QCOMPARE(questions.messageTexts(), QStringList{QStringLiteral("Error loading the report from file ")});

    questions.clear();
    w.hide();
    w.ReportFile = m_dir.filePath(QStringLiteral("gone.txt"));
    w.show();
    QCOMPARE(questions.messageTexts(), QStringList{QStringLiteral("Error loading the report from file ") + w.ReportFile});
}

void TestFrmReport::landscapeWidensTheBox()
{
    ScriptedQuestions questions;
    frmReport portrait(questions);
    const QSize designSize = portrait.size();
    portrait.ReportFile = writeReport(QStringLiteral("p.txt"), "x\r\n");
    portrait.ReportOrientation = 1;
    portrait.show();
    QCOMPARE(portrait.size(), designSize);
    QCOMPARE(box(portrait)->minimumWidth(), portrait.designBoxWidth());

    frmReport landscape(questions);
    landscape.ReportFile = portrait.ReportFile;
    landscape.ReportOrientation = 2;
    landscape.show();
    const double ratio = double(box(landscape)->minimumWidth()) / landscape.designBoxWidth();
    QVERIFY2(qAbs(ratio - 1.7) < 0.01, qPrintable(QString::number(ratio)));
    QVERIFY(landscape.width() > box(landscape)->minimumWidth());
    QVERIFY(box(landscape)->width() >= box(landscape)->minimumWidth());
}

void TestFrmReport::cancelDeletesTheFile()
{
    ScriptedQuestions questions;
    frmReport w(questions);
    w.ReportFile = writeReport(QStringLiteral("R7_Stock.txt"), "report\r\n");
    w.show();
    QTest::mouseClick(button(w, "cmdCancel"), Qt::LeftButton);
    QVERIFY(!w.isVisible());
    QCOMPARE(w.result(), int(QDialog::Rejected));
    QVERIFY(!QFile::exists(w.ReportFile));
    QVERIFY(questions.messageTexts().isEmpty());
}

void TestFrmReport::closingByFrameKeepsTheFile()
{
    ScriptedQuestions questions;
    frmReport w(questions);
    w.ReportFile = writeReport(QStringLiteral("R7_Species.txt"), "report\r\n");
    w.show();
    QVERIFY(w.close());
    QVERIFY(!w.isVisible());
    QVERIFY(QFile::exists(w.ReportFile));
}

void TestFrmReport::printsWholeReportToPdf()
{
    ScriptedQuestions questions;
    frmReport w(questions);
    w.ReportFile = writeReport(QStringLiteral("long.txt"), longReport(4, 80));
    w.ReportOrientation = 2;
    w.show();
    DialogCall call;
    const QString pdf = m_dir.filePath(QStringLiteral("whole.pdf"));
    w.setPrintDialog(pdfDialog(call, pdf));
    QTest::mouseClick(button(w, "cmdPrint"), Qt::LeftButton);
    QVERIFY2(questions.messageTexts().isEmpty(), qPrintable(questions.messageTexts().join(QLatin1Char('|'))));
    QCOMPARE(call.calls, 1);
    QCOMPARE(call.orientation, QPageLayout::Landscape);
    QVERIFY(!call.options.testFlag(QAbstractPrintDialog::PrintSelection));
    QVERIFY(!call.options.testFlag(QAbstractPrintDialog::PrintPageRange));
    // 4 blocks of 33 lines and the title: more than two landscape pages.
    QVERIFY2(pdfPages(pdf) >= 3, qPrintable(QString::number(pdfPages(pdf))));
    QVERIFY(w.isVisible());
    QVERIFY(QFile::exists(w.ReportFile));
}

void TestFrmReport::printsOnlyTheSelection()
{
    ScriptedQuestions questions;
    frmReport w(questions);
    w.ReportFile = writeReport(QStringLiteral("sel.txt"), longReport(4, 80));
    w.show();
    QTextCursor cursor = box(w)->textCursor();
    cursor.movePosition(QTextCursor::Start);
    cursor.movePosition(QTextCursor::Down, QTextCursor::KeepAnchor, 2);
    cursor.movePosition(QTextCursor::EndOfLine, QTextCursor::KeepAnchor);
    box(w)->setTextCursor(cursor);
    QCOMPARE(w.textToPrint(), QStringLiteral("   R7: Stand Table\n") + QString(80, QLatin1Char('_')) + QStringLiteral("\nRun Name: R7"));

    DialogCall call;
    const QString pdf = m_dir.filePath(QStringLiteral("selection.pdf"));
    w.setPrintDialog(pdfDialog(call, pdf));
    QTest::mouseClick(button(w, "cmdPrint"), Qt::LeftButton);
    QVERIFY(call.options.testFlag(QAbstractPrintDialog::PrintSelection));
    QCOMPARE(call.orientation, QPageLayout::Portrait);
    QCOMPARE(pdfPages(pdf), 1);
}

void TestFrmReport::cancelledPrintDialogPrintsNothing()
{
    ScriptedQuestions questions;
    frmReport w(questions);
    w.ReportFile = writeReport(QStringLiteral("c.txt"), "x\r\n");
    w.show();
    DialogCall call;
    const QString pdf = m_dir.filePath(QStringLiteral("never.pdf"));
    w.setPrintDialog(pdfDialog(call, pdf, false));
    QTest::mouseClick(button(w, "cmdPrint"), Qt::LeftButton);
    QCOMPARE(call.calls, 1);
    QVERIFY(!QFile::exists(pdf));
    QVERIFY(questions.messageTexts().isEmpty());
}

void TestFrmReport::widestLineFitsThePage()
{
    // A twelve-species rule line of 140 characters on a portrait page: the font gives way.
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(m_dir.filePath(QStringLiteral("fit.pdf")));
    printer.setPageOrientation(QPageLayout::Portrait);
    QFont font(QStringLiteral("Courier"));
    font.setStyleHint(QFont::TypeWriter);
    font.setPointSizeF(8.5);
    const QString narrow = QString(80, QLatin1Char('0'));
    const QString wide = QString(140, QLatin1Char('_'));
    QCOMPARE(ReportPrintPointSize(printer, narrow, font), 8.5);
    const double smaller = ReportPrintPointSize(printer, narrow + QLatin1Char('\n') + wide, font);
    QVERIFY(smaller < 8.5);
    QFont fitted = font;
    fitted.setPointSizeF(smaller);
    QVERIFY(QFontMetricsF(fitted, &printer).horizontalAdvance(wide) <= printer.pageRect(QPrinter::DevicePixel).width());
}

SENDREL_TEST_MAIN(TestFrmReport)
#include "tst_frmreport.moc"
