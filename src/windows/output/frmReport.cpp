#include "windows/output/frmReport.h"

#include "base/SendrelError.h"
#include "base/UserQuestions.h"
#include "windows/output/ReportPrinting.h"

#include <QFile>
#include <QFontDatabase>
#include <QFontInfo>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPrintDialog>
#include <QPushButton>
#include <QScrollBar>
#include <QShowEvent>
#include <QTextCursor>
#include <QVBoxLayout>

#include <cmath>

namespace sendrel {

namespace {

const QString kCrLf = QStringLiteral("\r\n");

constexpr double kLandscapeWidening = 1.7;
constexpr int kDesignColumns = 84;  // a portrait report of seven columns and its margin
constexpr int kDesignLines = 40;
constexpr int kFramePadding = 13;  // what the window adds to the box beside it (200 twips)
constexpr double kPrintMarginMm = 15.0;

QFont reportFont()
{
    QFont font(QStringLiteral("Courier"));
    font.setStyleHint(QFont::TypeWriter);
    font.setFixedPitch(true);
    if (!QFontInfo(font).fixedPitch())
        font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(8.5);
    return font;
}

}  // namespace

frmReport::frmReport(UserQuestions &questions, QWidget *parent)
    : QDialog(parent), m_questions(questions), m_printer(QPrinter::HighResolution)
{
    setObjectName(QStringLiteral("frmReport"));
    setWindowTitle(QStringLiteral("Stand Table Report"));
    setModal(true);

    rtbReport = new QPlainTextEdit(this);
    rtbReport->setObjectName(QStringLiteral("rtbReport"));
    rtbReport->setReadOnly(true);
    rtbReport->setLineWrapMode(QPlainTextEdit::NoWrap);
    rtbReport->setFont(reportFont());
    rtbReport->setPlainText(QStringLiteral("Report Failed"));

    cmdPrint = new QPushButton(QStringLiteral("Print"), this);
    cmdPrint->setObjectName(QStringLiteral("cmdPrint"));
    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    cmdPrint->setAutoDefault(false);
    cmdCancel->setAutoDefault(false);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdPrint);
    buttons->addWidget(cmdCancel);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(rtbReport, 1);
    layout->addLayout(buttons);

    const QFontMetrics metrics(rtbReport->font());
    m_designBoxWidth = metrics.horizontalAdvance(QString(kDesignColumns, QLatin1Char('0'))) + 2 * rtbReport->frameWidth() +
                       rtbReport->verticalScrollBar()->sizeHint().width();
    rtbReport->setMinimumWidth(m_designBoxWidth);
    rtbReport->setMinimumHeight(metrics.lineSpacing() * 10);
    m_designSize = QSize(m_designBoxWidth + 2 * kFramePadding, metrics.lineSpacing() * kDesignLines);
    resize(m_designSize);

    // Margins a ring binder and a hand-written note leave room for; the dialog may change them.
    m_printer.setPageMargins(QMarginsF(kPrintMarginMm, kPrintMarginMm, kPrintMarginMm, kPrintMarginMm), QPageLayout::Millimeter);
    m_printDialog = &frmReport::showPrintDialog;

    connect(cmdPrint, &QPushButton::clicked, this, &frmReport::cmdPrint_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmReport::cmdCancel_Click);
}

void frmReport::showEvent(QShowEvent *event)
{
    // Every showing is a new load of the window, as with a form that is loaded for each report.
    if (!event->spontaneous())
        Form_Load();
    QDialog::showEvent(event);
}

void frmReport::Form_Load()
{
    switch (ReportType) {
    case 0:
        setWindowTitle(QStringLiteral("Stand Table Report"));
        break;
    case 1:
        setWindowTitle(QStringLiteral("Stock Table Report"));
        break;
    case 2:
        setWindowTitle(QStringLiteral("Species Composition Report"));
        break;
    default:
        break;
    }

    int boxWidth = m_designBoxWidth;
    if (ReportOrientation == 2) {
        boxWidth = static_cast<int>(std::lround(m_designBoxWidth * kLandscapeWidening));
        rtbReport->setMinimumWidth(boxWidth);
        resize(boxWidth + 2 * kFramePadding, height());
    } else {
        rtbReport->setMinimumWidth(m_designBoxWidth);
    }

    QFile file(ReportFile);
    if (ReportFile.isEmpty() || !file.open(QIODevice::ReadOnly)) {
        rtbReport->setPlainText(QStringLiteral("Report Failed"));
        m_questions.message({QStringLiteral("Sendrel"), QStringLiteral("Error loading the report from file ") + ReportFile,
                             MsgIcon::Exclamation, MsgButtons::OK, Answer::OK});
        return;
    }
    QString text = QString::fromUtf8(file.readAll());
    text.replace(kCrLf, QStringLiteral("\n"));
    rtbReport->setPlainText(text);
}

QString frmReport::textToPrint() const
{
    const QTextCursor cursor = rtbReport->textCursor();
    if (cursor.hasSelection()) {
        QString selected = cursor.selectedText();
        selected.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
        return selected;
    }
    return rtbReport->toPlainText();
}

bool frmReport::showPrintDialog(QPrinter &printer, QAbstractPrintDialog::PrintDialogOptions options, QWidget *parent)
{
    QPrintDialog dialog(&printer, parent);
    dialog.setOptions(options);
    return dialog.exec() == QDialog::Accepted;
}

void frmReport::cmdPrint_Click()
{
    try {
        QAbstractPrintDialog::PrintDialogOptions options = QAbstractPrintDialog::PrintToFile | QAbstractPrintDialog::PrintShowPageSize;
        const bool selection = rtbReport->textCursor().hasSelection();
        if (selection)
            options |= QAbstractPrintDialog::PrintSelection;
        m_printer.setPrintRange(selection ? QPrinter::Selection : QPrinter::AllPages);
        m_printer.setPageOrientation(ReportOrientation == 2 ? QPageLayout::Landscape : QPageLayout::Portrait);
        if (!m_printDialog(m_printer, options, this))
            return;
        PrintReportText(m_printer, textToPrint(), rtbReport->font());
    } catch (const SendrelError &e) {
        m_questions.message({QStringLiteral("Sendrel"),
                             QStringLiteral("Error printing the report.") + kCrLf + e.description() + QLatin1Char('(') +
                                 QString::number(e.number()) + QLatin1Char(')'),
                             MsgIcon::Exclamation, MsgButtons::OK, Answer::OK});
    }
}

void frmReport::cmdCancel_Click()
{
    // The report file lives only as long as its viewer; a file already gone is no matter.
    if (!ReportFile.isEmpty())
        QFile::remove(ReportFile);
    reject();
}

}  // namespace sendrel
