#pragma once

#include <QAbstractPrintDialog>
#include <QDialog>
#include <QPrinter>
#include <QString>

#include <functional>

class QPlainTextEdit;
class QPushButton;

namespace sendrel {

class UserQuestions;

// The report viewer: shows a report text file in a fixed-pitch, read-only box, prints it, and
// deletes it when the user leaves by "Cancel". Closing it by its frame keeps the file; the next
// report of the same run and kind replaces it. The caller sets the three fields, then shows it
// modally (exec); each showing loads the file anew.
class frmReport : public QDialog {
    Q_OBJECT
public:
    explicit frmReport(UserQuestions &questions, QWidget *parent = nullptr);

    qint32 ReportType = 0;  // 0 stand table, 1 stock table, 2 species composition
    QString ReportFile;  // full path of the report text file
    qint16 ReportOrientation = 1;  // 1 portrait, 2 landscape

    // How the print dialog is put to the user: it may change the printer and gives false
    // when the user cancels. Tests put a function here that prints to a PDF file.
    using PrintDialogFn = std::function<bool(QPrinter &printer, QAbstractPrintDialog::PrintDialogOptions options, QWidget *parent)>;
    void setPrintDialog(PrintDialogFn dialog) { m_printDialog = std::move(dialog); }
    QPrinter &printer() { return m_printer; }

    // The text that "Print" prints: the selection, or the whole text when nothing is selected.
    QString textToPrint() const;

    // Width of the box as designed, before a landscape report widens it.
    int designBoxWidth() const { return m_designBoxWidth; }

    void cmdPrint_Click();
    void cmdCancel_Click();

protected:
    void showEvent(QShowEvent *event) override;

private:
    void Form_Load();
    static bool showPrintDialog(QPrinter &printer, QAbstractPrintDialog::PrintDialogOptions options, QWidget *parent);

    UserQuestions &m_questions;
    QPlainTextEdit *rtbReport;
    QPushButton *cmdPrint;
    QPushButton *cmdCancel;
    QPrinter m_printer;
    PrintDialogFn m_printDialog;
    int m_designBoxWidth = 0;
    QSize m_designSize;
};

}  // namespace sendrel
