#include "app/gui/GuiQuestions.h"

#include "app/SendrelError.h"
#include "output/gui/frmReportText.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>

namespace sendrel {

namespace {

QMessageBox::StandardButton toButton(Answer a)
{
    switch (a) {
    case Answer::OK: return QMessageBox::Ok;
    case Answer::Cancel: return QMessageBox::Cancel;
    case Answer::Yes: return QMessageBox::Yes;
    case Answer::No: return QMessageBox::No;
    case Answer::Retry: return QMessageBox::Retry;
    }
    return QMessageBox::Ok;
}

Answer fromButton(int b)
{
    switch (b) {
    case QMessageBox::Ok: return Answer::OK;
    case QMessageBox::Yes: return Answer::Yes;
    case QMessageBox::No: return Answer::No;
    case QMessageBox::Retry: return Answer::Retry;
    default: return Answer::Cancel;
    }
}

SendrelError notYet(const QString &what)
{
    return SendrelError(ErrNo::InvalidCall, QStringLiteral("Sendrel"), what + QStringLiteral(" is not available in this build."));
}

}  // namespace

Answer GuiQuestions::message(const MessageRequest &request)
{
    QMessageBox box(m_parent);
    box.setWindowTitle(request.title);
    box.setText(request.text);
    switch (request.icon) {
    case MsgIcon::None: box.setIcon(QMessageBox::NoIcon); break;
    case MsgIcon::Information: box.setIcon(QMessageBox::Information); break;
    case MsgIcon::Question: box.setIcon(QMessageBox::Question); break;
    case MsgIcon::Exclamation: box.setIcon(QMessageBox::Warning); break;
    case MsgIcon::Critical: box.setIcon(QMessageBox::Critical); break;
    }
    switch (request.buttons) {
    case MsgButtons::OK: box.setStandardButtons(QMessageBox::Ok); break;
    case MsgButtons::OKCancel: box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel); break;
    case MsgButtons::YesNo: box.setStandardButtons(QMessageBox::Yes | QMessageBox::No); break;
    case MsgButtons::RetryCancel: box.setStandardButtons(QMessageBox::Retry | QMessageBox::Cancel); break;
    case MsgButtons::YesNoCancel: box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel); break;
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

QString GuiQuestions::chooseFolder(const QString &title, const QString &startFolder)
{
    const QString dir = QFileDialog::getExistingDirectory(m_parent, title, startFolder, QFileDialog::ShowDirsOnly);
    return QDir::toNativeSeparators(dir);
}

QString GuiQuestions::askRunId(QString &name)
{
    Q_UNUSED(name)
    throw notYet(QStringLiteral("Enter Run ID"));
}

QString GuiQuestions::askDuplicateId(const QString &name)
{
    Q_UNUSED(name)
    throw notYet(QStringLiteral("Duplicate Run Id"));
}

QString GuiQuestions::askStandingOrHarvested()
{
    throw notYet(QStringLiteral("Standing or Harvested"));
}

bool GuiQuestions::askReportText(ReportTextRequest &request)
{
    // A new window for each report, shown modally; the boxes are read while it is still loaded.
    frmReportText form(m_parent);
    form.txtReportTitle->setText(request.title);
    // The box keeps its lines with bare line feeds; the compile turns them back into CR LF.
    form.txtReportDesc->setPlainText(QString(request.description).replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
    form.exec();
    if (form.bReportCancelled)
        return false;
    request.title = form.txtReportTitle->text();
    request.description = form.txtReportDesc->toPlainText();
    return true;
}

}  // namespace sendrel
