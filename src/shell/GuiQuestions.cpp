#include "shell/GuiQuestions.h"

#include "base/SendrelError.h"
#include "shell/frmOptions.h"
#include "shell/frmServerDatabase.h"
#include "windows/common/ShowHelp.h"
#include "windows/common/frmBusyMessage.h"
#include "windows/import/frmDuplicateId.h"
#include "windows/import/frmRunId.h"
#include "windows/import/frmSorH.h"
#include "windows/output/frmReportText.h"

#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPrintDialog>
#include <QPrinter>
#include <QRadioButton>
#include <QRegularExpression>

namespace sendrel {

namespace {

QMessageBox::StandardButton toButton(Answer a)
{
    switch (a) {
    case Answer::OK:
        return QMessageBox::Ok;
    case Answer::Cancel:
        return QMessageBox::Cancel;
    case Answer::Yes:
        return QMessageBox::Yes;
    case Answer::No:
        return QMessageBox::No;
    case Answer::Retry:
        return QMessageBox::Retry;
    }
    return QMessageBox::Ok;
}

Answer fromButton(int b)
{
    switch (b) {
    case QMessageBox::Ok:
        return Answer::OK;
    case QMessageBox::Yes:
        return Answer::Yes;
    case QMessageBox::No:
        return Answer::No;
    case QMessageBox::Retry:
        return Answer::Retry;
    default:
        return Answer::Cancel;
    }
}

// Long work shows the hourglass; a question in the middle of it gets the normal pointer back for
// as long as it waits.
class NormalPointer {
public:
    NormalPointer() : m_active(QApplication::overrideCursor() != nullptr)
    {
        if (m_active)
            QApplication::setOverrideCursor(Qt::ArrowCursor);
    }
    ~NormalPointer()
    {
        if (m_active)
            QApplication::restoreOverrideCursor();
    }
    NormalPointer(const NormalPointer &) = delete;
    NormalPointer &operator=(const NormalPointer &) = delete;

private:
    bool m_active;
};

}  // namespace

Answer GuiQuestions::message(const MessageRequest &request)
{
    NormalPointer pointer;
    QMessageBox box(m_parent);
    box.setWindowTitle(request.title);
    box.setText(request.text);
    switch (request.icon) {
    case MsgIcon::None:
        box.setIcon(QMessageBox::NoIcon);
        break;
    case MsgIcon::Information:
        box.setIcon(QMessageBox::Information);
        break;
    case MsgIcon::Question:
        box.setIcon(QMessageBox::Question);
        break;
    case MsgIcon::Exclamation:
        box.setIcon(QMessageBox::Warning);
        break;
    case MsgIcon::Critical:
        box.setIcon(QMessageBox::Critical);
        break;
    }
    switch (request.buttons) {
    case MsgButtons::OK:
        box.setStandardButtons(QMessageBox::Ok);
        break;
    case MsgButtons::OKCancel:
        box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
        break;
    case MsgButtons::YesNo:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        break;
    case MsgButtons::RetryCancel:
        box.setStandardButtons(QMessageBox::Retry | QMessageBox::Cancel);
        break;
    case MsgButtons::YesNoCancel:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
        break;
    }
    box.setDefaultButton(toButton(request.defaultAnswer));
    return fromButton(box.exec());
}

QString GuiQuestions::qtFilter(const QString &filter)
{
    const QStringList parts = filter.split(QLatin1Char('|'));
    QStringList entries;
    for (int i = 0; i + 1 < parts.size(); i += 2) {
        QString name = parts[i];
        const qsizetype paren = name.indexOf(QLatin1Char('('));
        if (paren > 0)
            name = name.left(paren).trimmed();
        QStringList patterns;
        for (const QString &p : parts[i + 1].split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
            const QString pattern = p == QLatin1String("*.*") ? QStringLiteral("*") : p;
            patterns << pattern;
            // File names on this platform are case-sensitive; the suite's names are not.
            if (pattern.toLower() != pattern)
                patterns << pattern.toLower();
        }
        entries << QStringLiteral("%1 (%2)").arg(name, patterns.join(QLatin1Char(' ')));
    }
    return entries.join(QStringLiteral(";;"));
}

QString GuiQuestions::openFile(const FileRequest &request)
{
    NormalPointer pointer;
    QFileDialog dialog(m_parent, request.title, request.startFolder, qtFilter(request.filter));
    dialog.setFileMode(request.mustExist ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
    if (!request.defaultExtension.isEmpty())
        dialog.setDefaultSuffix(request.defaultExtension.mid(1));
    if (!request.fileName.isEmpty())
        dialog.selectFile(request.fileName);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return QString();
    return QDir::toNativeSeparators(dialog.selectedFiles().first());
}

QString GuiQuestions::saveFile(const FileRequest &request)
{
    NormalPointer pointer;
    QFileDialog dialog(m_parent, request.title, request.startFolder, qtFilter(request.filter));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    if (!request.defaultExtension.isEmpty())
        dialog.setDefaultSuffix(request.defaultExtension.mid(1));
    // A name typed without a suffix takes the suffix of the type chosen.
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, [&dialog](const QString &filter) {
        static const QRegularExpression suffix(QStringLiteral("\\*\\.(\\w+)"));
        if (const QRegularExpressionMatch m = suffix.match(filter); m.hasMatch())
            dialog.setDefaultSuffix(m.captured(1));
    });
    if (!request.fileName.isEmpty())
        dialog.selectFile(request.fileName);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return QString();
    return QDir::toNativeSeparators(dialog.selectedFiles().first());
}

QString GuiQuestions::chooseFolder(const QString &title, const QString &startFolder)
{
    NormalPointer pointer;
    const QString dir = QFileDialog::getExistingDirectory(m_parent, title, startFolder, QFileDialog::ShowDirsOnly);
    return QDir::toNativeSeparators(dir);
}

frmBusyMessage *GuiQuestions::busyWindow() const
{
    return m_busy;
}

frmRunId *GuiQuestions::runIdWindow() const
{
    return m_runId;
}

frmDuplicateId *GuiQuestions::duplicateIdWindow() const
{
    return m_duplicate;
}

GuiQuestions::~GuiQuestions()
{
    delete m_busy;
    delete m_runId;
    delete m_duplicate;
}

DialogEnd GuiQuestions::askRunId(QString &name)
{
    NormalPointer pointer;
    if (!m_runId)
        m_runId = new frmRunId(m_parent);
    m_runId->HelpFile = m_helpFile;
    return m_runId->AskRunId(name);
}

DialogEnd GuiQuestions::askDuplicateId(const QString &name)
{
    NormalPointer pointer;
    if (!m_duplicate)
        m_duplicate = new frmDuplicateId(m_parent);
    m_duplicate->HelpFile = m_helpFile;
    m_duplicate->NextFreeRunId = m_nextFree;
    return m_duplicate->AskDuplicateId(name);
}

std::optional<RunKind> GuiQuestions::askStandingOrHarvested()
{
    NormalPointer pointer;
    // A new window for each import.
    frmSorH form(*this, m_parent);
    form.HelpFile = m_helpFile;
    form.ClearOptions();
    form.exec();
    if (form.bImportCancelled)
        return std::nullopt;
    return form.HarvestedChosen() ? RunKind::Harvested : RunKind::Standing;
}

void GuiQuestions::showBusyMessage(const QString &title, const QString &message)
{
    if (!m_busy)
        m_busy = new frmBusyMessage(m_parent);
    m_busy->ShowBusyMessage(title, message);
}

void GuiQuestions::hideBusyMessage()
{
    if (m_busy)
        m_busy->HideBusyMessage();
}

bool GuiQuestions::askReportText(ReportTextRequest &request)
{
    // A new window for each report, shown modally; the boxes are read while it is still loaded.
    NormalPointer pointer;
    frmReportText form(m_parent);
    form.HelpFile = m_helpFile;
    form.OpenHelp = [](const QString &file, int topic) { ShowHelp(HelpContentsAndTopic, file, topic); };
    // The box keeps its lines with bare line feeds; the compile turns them back into CR LF.
    form.SetTexts(request.title, QString(request.description).replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
    form.exec();
    if (form.bReportCancelled)
        return false;
    request.title = form.Title();
    request.description = form.Description();
    return true;
}

bool GuiQuestions::askOptions(OptionsRequest &request)
{
    NormalPointer pointer;
    frmOptions form(m_parent);
    form.HelpFile = m_helpFile;
    form.OpenHelp = [](const QString &file, int topic) { ShowHelp(HelpContentsAndTopic, file, topic); };
    form.setChoices(request);
    if (form.exec() != QDialog::Accepted)
        return false;
    request = form.choices();
    return true;
}

bool GuiQuestions::askServerDatabase(QString &connection)
{
    NormalPointer pointer;
    frmServerDatabase form(m_parent);
    form.HelpFile = m_helpFile;
    form.OpenHelp = [](const QString &file, int topic) { ShowHelp(HelpContentsAndTopic, file, topic); };
    form.setConnection(connection);
    if (form.exec() != QDialog::Accepted)
        return false;
    connection = form.connection();
    return true;
}

bool GuiQuestions::askPassword(const QString &connection, QString &password)
{
    NormalPointer pointer;
    QInputDialog dialog(m_parent);
    dialog.setObjectName(QStringLiteral("frmPassword"));
    dialog.setWindowTitle(QStringLiteral("Password"));
    dialog.setLabelText(QStringLiteral("The password for %1:").arg(connection));
    dialog.setTextEchoMode(QLineEdit::Password);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    password = dialog.textValue();
    return true;
}

bool GuiQuestions::askPrint(PrintRequest &request)
{
    if (!request.printer)
        return false;
    NormalPointer pointer;
    QPrinter &printer = *request.printer;
    printer.setPageOrientation(request.landscape ? QPageLayout::Landscape : QPageLayout::Portrait);
    // Print to File (PDF) comes offered with the file in the Work folder: a machine without a
    // printer can still put the chart on paper later.
    if (!request.outputFile.isEmpty())
        printer.setOutputFileName(request.outputFile);
    QPrintDialog dialog(&printer, m_parent);
    dialog.setWindowTitle(request.title);
    dialog.setOptions(QAbstractPrintDialog::PrintToFile | QAbstractPrintDialog::PrintShowPageSize);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    request.outputFile = printer.outputFileName();
    return true;
}

}  // namespace sendrel
