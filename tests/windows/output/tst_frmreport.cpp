// The report viewer: what it shows of the file, how it prints, and when the file goes.
#include "support/TestMain.h"
#include "base/ScriptedQuestions.h"
#include "windows/output/ReportPrinting.h"
#include "windows/output/frmReport.h"

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
    if (!f.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray pdf = f.readAll();
    return static_cast<int>(pdf.count("/Type /Page\n") + pdf.count("/Type /Page\r") + pdf.count("/Type /Page "));
}

QPlainTextEdit *box(frmReport &w)
{
    return w.findChild<QPlainTextEdit *>(QStringLiteral("rtbReport"));
}

QPushButton *button(frmReport &w, const char *name)
{
    return w.findChild<QPushButton *>(QLatin1String(name));
}

}  // namespace

class TestFrmReport : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;

    QString writeReport(const QString &name, const QByteArray &text)
    {
        QFile f(m_dir.filePath(name));
        if (!f.open(QIODevice::WriteOnly))
            return QString();
        f.write(text);
        return f.fileName();
    }

private slots:
    void titleByReportType_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("title");
        QTest::newRow("stand") << 0 << "Stand Table Report";
        QTest::newRow("stock") << 1 << "Stock Table Report";
        QTest::newRow("composition") << 2 << "Species Composition Report";
        QTest::newRow("other value keeps the design title") << 7 << "Stand Table Report";
    }

    void titleByReportType()
    {
        QFETCH(int, type);
        QFETCH(QString, title);
        ScriptedQuestions questions;
        frmReport w(questions);
        w.ReportType = type;
        w.ReportFile = writeReport(QStringLiteral("title.txt"), "x\r\n");
        w.show();
        QCOMPARE(w.windowTitle(), title);
    }

    // The file's lines unchanged, in a fixed-pitch box the user cannot edit.
    void showsTheFile()
    {
        ScriptedQuestions questions;
        frmReport w(questions);
        w.ReportFile = writeReport(QStringLiteral("R7_Stand.txt"), "   R7: Stand Table\r\nDBH_Class         PW\r\n      12.5       121\r\n");
        w.show();
        QCOMPARE(box(w)->toPlainText(), QStringLiteral("   R7: Stand Table\nDBH_Class         PW\n      12.5       121\n"));
        QVERIFY(box(w)->isReadOnly());
        QVERIFY(QFontInfo(box(w)->font()).fixedPitch());
        QVERIFY(questions.messageTexts().isEmpty());
    }

    // The generator failed (no path) or the file is gone: the user is told and the window opens.
    void missingFileTellsAndShowsTheDesignText()
    {
        ScriptedQuestions questions;
        frmReport w(questions);
        w.show();
        QVERIFY(w.isVisible());
        QCOMPARE(box(w)->toPlainText(), QStringLiteral("Report Failed"));
        w.hide();
        w.ReportFile = m_dir.filePath(QStringLiteral("gone.txt"));
        w.show();
        QCOMPARE(questions.messageTexts(), (QStringList{QStringLiteral("Error loading the report from file "),
                                                         QStringLiteral("Error loading the report from file ") + w.ReportFile}));
    }

    void landscapeWidensTheBox()
    {
        ScriptedQuestions questions;
        frmReport portrait(questions);
        const QSize designSize = portrait.size();
        portrait.ReportFile = writeReport(QStringLiteral("p.txt"), "x\r\n");
        portrait.show();
        QCOMPARE(portrait.size(), designSize);

        frmReport landscape(questions);
        landscape.ReportFile = portrait.ReportFile;
        landscape.ReportOrientation = 2;
        landscape.show();
        const double ratio = double(box(landscape)->minimumWidth()) / landscape.designBoxWidth();
        QVERIFY2(qAbs(ratio - 1.7) < 0.01, qPrintable(QString::number(ratio)));
        QVERIFY(landscape.width() > box(landscape)->minimumWidth());
    }

    // Cancel deletes the file; closing by the frame keeps it.
    void leaving_data()
    {
        QTest::addColumn<bool>("byCancel");
        QTest::newRow("Cancel") << true;
        QTest::newRow("frame") << false;
    }

    void leaving()
    {
        QFETCH(bool, byCancel);
        ScriptedQuestions questions;
        frmReport w(questions);
        w.ReportFile = writeReport(QStringLiteral("R7_Stock.txt"), "report\r\n");
        w.show();
        if (byCancel)
            QTest::mouseClick(button(w, "cmdCancel"), Qt::LeftButton);
        else
            w.close();
        QVERIFY(!w.isVisible());
        QCOMPARE(QFile::exists(w.ReportFile), !byCancel);
    }

    // The print dialog is preset with the orientation and offers the selection when there is
    // one; what prints is the selection or the whole text.
    void printing_data()
    {
        QTest::addColumn<int>("orientation");
        QTest::addColumn<bool>("select");
        QTest::addColumn<bool>("accept");
        QTest::addColumn<int>("pages");
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
        ScriptedQuestions questions;
        frmReport w(questions);
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
        const QString pdf = m_dir.filePath(QStringLiteral("printed%1.pdf").arg(QTest::currentDataTag()));
        QAbstractPrintDialog::PrintDialogOptions offered;
        QPageLayout::Orientation preset = QPageLayout::Portrait;
        w.setPrintDialog([&](QPrinter &printer, QAbstractPrintDialog::PrintDialogOptions options, QWidget *) {
            offered = options;
            preset = printer.pageLayout().orientation();
            printer.setOutputFormat(QPrinter::PdfFormat);
            printer.setOutputFileName(pdf);
            return accept;
        });
        QTest::mouseClick(button(w, "cmdPrint"), Qt::LeftButton);
        QVERIFY2(questions.messageTexts().isEmpty(), qPrintable(questions.messageTexts().join(QLatin1Char('|'))));
        QCOMPARE(preset, orientation == 2 ? QPageLayout::Landscape : QPageLayout::Portrait);
        QCOMPARE(offered.testFlag(QAbstractPrintDialog::PrintSelection), select);
        QVERIFY(!offered.testFlag(QAbstractPrintDialog::PrintPageRange));
        QVERIFY2(pages ? pdfPages(pdf) >= pages : !QFile::exists(pdf), qPrintable(QString::number(pdfPages(pdf))));
        if (select)
            QCOMPARE(pdfPages(pdf), 1);
        QVERIFY(w.isVisible());
        QVERIFY(QFile::exists(w.ReportFile));
    }

    // A twelve-species rule line of 140 characters on a portrait page: the font gives way.
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
        QFont fitted = font;
        fitted.setPointSizeF(ReportPrintPointSize(printer, narrow + QLatin1Char('\n') + wide, font));
        QVERIFY(fitted.pointSizeF() < 8.5);
        QVERIFY(QFontMetricsF(fitted, &printer).horizontalAdvance(wide) <= printer.pageRect(QPrinter::DevicePixel).width());
    }
};

SENDREL_TEST_MAIN(TestFrmReport)
#include "tst_frmreport.moc"
