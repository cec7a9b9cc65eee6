// The two windows around a report: "Report Description", asked modally before the compile, and
// the report viewer, which shows the file, prints it and deletes it when the user leaves.
#include "support/TestMain.h"
#include "support/FileSizeLimit.h"
#include "support/GuiBench.h"

#include "shell/GuiQuestions.h"
#include "windows/output/ReportPrinting.h"
#include "windows/output/frmReport.h"
#include "windows/output/frmReportText.h"

#include <QFile>
#include <QFontInfo>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTextCursor>

using namespace sendrel;
using namespace sendrel::test;

namespace {

// A report of many lines: a stand table block repeated, so that it runs over several pages.
QByteArray longReport(int blocks)
{
    QByteArray text = "   R7: Stand Table\r\n";
    const QByteArray rule(80, '_');
    for (int b = 0; b < blocks; ++b) {
        text += rule + "\r\nRun Name: R7\r\n" + rule + "\r\n";
        for (int i = 0; i < 30; ++i)
            text += QByteArray::number(5 + 10 * i).rightJustified(10, ' ') + QByteArray("       121").repeated(7) + "\r\n";
    }
    return text;
}

int pdfPages(const QString &path)
{
    QFile f(path);
    const QByteArray pdf = f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    return static_cast<int>(pdf.count("/Type /Page\n") + pdf.count("/Type /Page\r") + pdf.count("/Type /Page "));
}

QPlainTextEdit *box(frmReport &w)
{
    return w.findChild<QPlainTextEdit *>(QStringLiteral("rtbReport"));
}

}  // namespace

class TestFrmReport : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    ScriptedQuestions m_questions;

    QString writeReport(const QString &name, const QByteArray &text)
    {
        QFile f(m_dir.filePath(name));
        if (!f.open(QIODevice::WriteOnly))
            return QString();
        f.write(text);
        return f.fileName();
    }

private slots:
    void init() { m_questions.clear(); }

    // The file's lines unchanged, in a fixed-pitch box the user cannot edit; the title follows the
    // kind of report, and a landscape report gets a box 1.7 times as wide.
    void showsTheFile_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("orientation");
        QTest::addColumn<QString>("title");
        QTest::newRow("stand") << 0 << 1 << "Stand Table Report";
        QTest::newRow("stock, landscape") << 1 << 2 << "Stock Table Report";
        QTest::newRow("composition") << 2 << 1 << "Species Composition Report";
        QTest::newRow("other value keeps the design title") << 7 << 1 << "Stand Table Report";
    }

    void showsTheFile()
    {
        QFETCH(int, type);
        QFETCH(int, orientation);
        QFETCH(QString, title);
        frmReport w(m_questions);
        const QSize designSize = w.size();
        w.ReportType = type;
        w.ReportOrientation = static_cast<qint16>(orientation);
        w.ReportFile = writeReport(QStringLiteral("R7.txt"), "   R7: Stand Table\r\nDBH_Class         PW\r\n      12.5       121\r\n");
        w.show();
        QCOMPARE(box(w)->toPlainText(), QStringLiteral("   R7: Stand Table\nDBH_Class         PW\n      12.5       121\n"));
        QVERIFY(box(w)->isReadOnly() && QFontInfo(box(w)->font()).fixedPitch());
        QVERIFY(m_questions.messageTexts().isEmpty());
        QCOMPARE(w.windowTitle(), title);
        if (orientation == 1) {
            QCOMPARE(w.size(), designSize);
            return;
        }
        QVERIFY(qAbs(double(box(w)->minimumWidth()) / w.designBoxWidth() - 1.7) < 0.01);
        QVERIFY(w.width() > box(w)->minimumWidth());
    }

    // The generator failed (no path) or the file is gone: the user is told and the window opens.
    void missingFileTellsAndShowsTheDesignText()
    {
        frmReport w(m_questions);
        w.show();
        QVERIFY(w.isVisible());
        QCOMPARE(box(w)->toPlainText(), QStringLiteral("Report Failed"));
        w.hide();
        w.ReportFile = m_dir.filePath(QStringLiteral("gone.txt"));
        w.show();
        QCOMPARE(m_questions.messageTexts(), (QStringList{QStringLiteral("Error loading the report from file "),
                                                           QStringLiteral("Error loading the report from file ") + w.ReportFile}));
    }

    // Cancel deletes the file; closing by the frame keeps it.
    void leaving_data()
    {
        QTest::addColumn<QString>("how");
        QTest::newRow("Cancel") << "cmdCancel";
        QTest::newRow("frame") << "close";
    }

    void leaving()
    {
        QFETCH(QString, how);
        frmReport w(m_questions);
        w.ReportFile = writeReport(QStringLiteral("R7_Stock.txt"), "report\r\n");
        w.show();
        leaveDialog(&w, how);
        QVERIFY(!w.isVisible());
        QCOMPARE(QFile::exists(w.ReportFile), how == QLatin1String("close"));
    }

    // The print dialog is preset with the orientation and offers the selection when there is
    // one; what prints is the selection or the whole text, and the window stays.
    void printing_data()
    {
        QTest::addColumn<int>("orientation");
        QTest::addColumn<bool>("select");
        QTest::addColumn<bool>("accept");
        QTest::addColumn<int>("pages");   // at least
        QTest::newRow("whole, landscape") << 2 << false << true << 3;
        QTest::newRow("selection") << 1 << true << true << 1;
        QTest::newRow("dialog cancelled") << 1 << false << false << 0;
    }

    void printing()
    {
        QFETCH(int, orientation);
        QFETCH(bool, select);
        QFETCH(bool, accept);
        QFETCH(int, pages);
        frmReport w(m_questions);
        w.ReportFile = writeReport(QStringLiteral("long.txt"), longReport(4));
        w.ReportOrientation = static_cast<qint16>(orientation);
        w.show();
        if (select) {
            QTextCursor cursor = box(w)->textCursor();
            cursor.movePosition(QTextCursor::Down, QTextCursor::KeepAnchor, 2);
            cursor.movePosition(QTextCursor::EndOfLine, QTextCursor::KeepAnchor);
            box(w)->setTextCursor(cursor);
            QCOMPARE(w.textToPrint(), QStringLiteral("   R7: Stand Table\n") + QString(80, QLatin1Char('_')) + QStringLiteral("\nRun Name: R7"));
        }
        const QString pdf = m_dir.filePath(QStringLiteral("printed%1.pdf").arg(orientation * 2 + select));
        QAbstractPrintDialog::PrintDialogOptions offered;
        QPageLayout::Orientation preset = QPageLayout::Portrait;
        w.setPrintDialog([&](QPrinter &printer, QAbstractPrintDialog::PrintDialogOptions options, QWidget *) {
            offered = options;
            preset = printer.pageLayout().orientation();
            printer.setOutputFormat(QPrinter::PdfFormat);
            printer.setOutputFileName(pdf);
            return accept;
        });
        QTest::mouseClick(w.findChild<QPushButton *>(QStringLiteral("cmdPrint")), Qt::LeftButton);
        QVERIFY(m_questions.messageTexts().isEmpty());
        QCOMPARE(preset, orientation == 2 ? QPageLayout::Landscape : QPageLayout::Portrait);
        QCOMPARE(offered.testFlag(QAbstractPrintDialog::PrintSelection), select);
        QVERIFY(!offered.testFlag(QAbstractPrintDialog::PrintPageRange));
        QVERIFY(select ? pdfPages(pdf) == 1 : pdfPages(pdf) >= pages);
        QCOMPARE(QFile::exists(pdf), accept);
        QVERIFY(w.isVisible() && QFile::exists(w.ReportFile));
    }

    // A print to a file on a full disk is told once, naming the file and the cause, and the file
    // that was there stays as it was.
    void printToFileOnAFullDisk()
    {
        frmReport w(m_questions);
        w.ReportFile = writeReport(QStringLiteral("full.txt"), longReport(1));
        w.show();
        const QString pdf = writeReport(QStringLiteral("full.pdf"), QByteArray("earlier"));
        w.setPrintDialog([&](QPrinter &printer, QAbstractPrintDialog::PrintDialogOptions, QWidget *) {
            printer.setOutputFormat(QPrinter::PdfFormat);
            printer.setOutputFileName(pdf);
            return true;
        });
        {
            const test::FileSizeLimit limit(200);
            QTest::mouseClick(w.findChild<QPushButton *>(QStringLiteral("cmdPrint")), Qt::LeftButton);
        }
        QCOMPARE(m_questions.messageTexts(), QStringList{QStringLiteral("Error printing the report.\r\nCannot write %1: File too large(57)").arg(pdf)});
        QFile earlier(pdf);
        QVERIFY(earlier.open(QIODevice::ReadOnly));
        QCOMPARE(earlier.readAll(), QByteArray("earlier"));
    }

    // The widest line decides the print size: a 140-character line on a portrait page makes the font give way.
    void widestLineFitsThePage()
    {
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(m_dir.filePath(QStringLiteral("fit.pdf")));
        QFont font(QStringLiteral("Courier"));
        font.setStyleHint(QFont::TypeWriter);
        font.setPointSizeF(8.5);
        const QString narrow = QString(80, QLatin1Char('0'));
        const QString wide = QString(140, QLatin1Char('_'));
        QCOMPARE(ReportPrintPointSize(printer, narrow, font), 8.5);
        font.setPointSizeF(ReportPrintPointSize(printer, narrow + QLatin1Char('\n') + wide, font));
        QVERIFY(font.pointSizeF() < 8.5);
        QVERIFY(QFontMetricsF(font, &printer).horizontalAdvance(wide) <= printer.pageRect(QPrinter::DevicePixel).width());
    }

    // "Report Description": 50 characters by typing; a longer title given by the caller is kept
    // but cannot grow.
    void reportTitleTypingLimit()
    {
        frmReportText form;
        form.show();
        QLineEdit *title = Control<QLineEdit>(&form, "txtReportTitle");
        title->setFocus();
        QTest::keyClicks(title, QString(48, QLatin1Char('a')) + QStringLiteral("bcdef"));
        QCOMPARE(title->text(), QString(48, QLatin1Char('a')) + QStringLiteral("bc"));
        QTest::keyClick(title, Qt::Key_Backspace);
        QTest::keyClicks(title, QStringLiteral("xy"));
        QCOMPARE(title->text(), QString(48, QLatin1Char('a')) + QStringLiteral("bx"));
        const QString preset = QString(48, QLatin1Char('R')) + QStringLiteral(": Stand Table");
        title->setText(preset);
        title->end(false);
        QTest::keyClicks(title, QStringLiteral("z"));
        QCOMPARE(title->text(), preset);
        QTest::keyClick(title, Qt::Key_Backspace);
        QTest::keyClicks(title, QStringLiteral("z"));
        QCOMPARE(title->text(), preset.chopped(1));
    }

    // Through the desktop's questions, modally: OK gives the edited boxes (the window stays loaded
    // until they are read); every other way out cancels and gives nothing back.
    void askReportText_data()
    {
        QTest::addColumn<QString>("leave");
        QTest::newRow("OK") << "cmdOK";
        QTest::newRow("Cancel") << "cmdCancel";
        QTest::newRow("Escape") << "Escape";
        QTest::newRow("close box") << "close";
    }

    void askReportText()
    {
        QFETCH(QString, leave);
        const bool ok = leave == QLatin1String("cmdOK");
        GuiQuestions questions;
        ReportTextRequest request{QStringLiteral("R7: Stock Table"), QStringLiteral("Printed by: \r\n\r\nThin to 400\r\n")};
        QString shownDescription;
        onNextModal([&](QWidget *w) {
            auto *form = qobject_cast<frmReportText *>(w);
            shownDescription = Control<QPlainTextEdit>(form, "txtReportDesc")->toPlainText();
            Control<QLineEdit>(form, "txtReportTitle")->selectAll();
            QTest::keyClicks(Control<QLineEdit>(form, "txtReportTitle"), QStringLiteral("Spacing trial "));   // blanks kept
            Control<QPlainTextEdit>(form, "txtReportDesc")->moveCursor(QTextCursor::End);
            QTest::keyClicks(Control<QPlainTextEdit>(form, "txtReportDesc"), QStringLiteral(" at 2010 "));
            leaveDialog(form, leave);
        });
        QCOMPARE(questions.askReportText(request), ok);
        QCOMPARE(shownDescription, QStringLiteral("Printed by: \n\nThin to 400\n"));
        QCOMPARE(request.title, ok ? QStringLiteral("Spacing trial ") : QStringLiteral("R7: Stock Table"));
        QCOMPARE(request.description, ok ? QStringLiteral("Printed by: \n\nThin to 400\n at 2010 ") : QStringLiteral("Printed by: \r\n\r\nThin to 400\r\n"));
    }
};

SENDREL_TEST_MAIN(TestFrmReport)
#include "tst_frmreport.moc"
