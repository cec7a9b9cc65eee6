#include "cli/CliQuestions.h"

namespace sendrel {

namespace {
// Past this many rounds of Rename another program keeps taking the names, and the import gives up.
constexpr int kMaxDuplicateRounds = 100;
}  // namespace

Answer CliQuestions::message(const MessageRequest &request)
{
    QString text = request.text;
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    m_err << text << "\n";
    m_err.flush();
    return request.defaultAnswer;
}

DialogEnd CliQuestions::askRunId(QString &name)
{
    return name.isEmpty() ? DialogEnd::Cancel : DialogEnd::Check;
}

DialogEnd CliQuestions::askDuplicateId(const QString &name)
{
    switch (onDuplicate) {
    case OnDuplicate::Overwrite:
        return DialogEnd::Overwrite;
    case OnDuplicate::Rename:
        return ++m_duplicates > kMaxDuplicateRounds ? DialogEnd::Cancel : DialogEnd::Rename;
    case OnDuplicate::Fail:
        break;
    }
    m_duplicateRefused = true;
    m_err << "A Run with this ID has already been imported.\n"
          << "Duplicate Run ID: " << name << "\n";
    m_err.flush();
    return DialogEnd::Cancel;
}

bool CliQuestions::askReportText(ReportTextRequest &request)
{
    if (reportTitle)
        request.title = *reportTitle;
    if (reportDescription)
        request.description = *reportDescription;
    return true;
}

}  // namespace sendrel
