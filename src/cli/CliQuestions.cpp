#include "cli/CliQuestions.h"

namespace sendrel {

namespace {
// Rename looks names up in a recordset that may be older than the table; past this many
// rounds another program keeps taking the names, and the import gives up.
constexpr int kMaxDuplicateRounds = 100;
}

Answer CliQuestions::message(const MessageRequest &request)
{
    QString text = request.text;
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    m_err << text << "\n";
    m_err.flush();
    return request.defaultAnswer;
}

QString CliQuestions::openFile(const FileRequest &)
{
    return QString();
}

QString CliQuestions::saveFile(const FileRequest &)
{
    return QString();
}

QString CliQuestions::chooseFolder(const QString &, const QString &)
{
    return QString();
}

QString CliQuestions::askRunId(QString &name)
{
    return name.isEmpty() ? kDialogCancel : kDialogCheck;
}

QString CliQuestions::askDuplicateId(const QString &name)
{
    switch (onDuplicate) {
    case OnDuplicate::Overwrite:
        return kDialogOverwrite;
    case OnDuplicate::Rename:
        return ++m_duplicates > kMaxDuplicateRounds ? kDialogCancel : kDialogRename;
    case OnDuplicate::Fail:
        break;
    }
    m_duplicateRefused = true;
    m_err << "A Run with this ID has already been imported.\n"
          << "Duplicate Run ID: " << name << "\n";
    m_err.flush();
    return kDialogCancel;
}

QString CliQuestions::askStandingOrHarvested()
{
    return QString();
}

bool CliQuestions::askReportText(ReportTextRequest &request)
{
    if (reportTitle)
        request.title = *reportTitle;
    if (reportDescription)
        request.description = *reportDescription;
    return true;
}

bool CliQuestions::askPrint(PrintRequest &request)
{
    Q_UNUSED(request)
    return false;
}

}  // namespace sendrel
