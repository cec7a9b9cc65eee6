#pragma once

#include "base/UserQuestions.h"

#include <QTextStream>

#include <optional>

namespace sendrel {

// The headless tool's answers: it never waits for anyone. Information goes to stderr; a question
// with a choice takes its default; the import's dialogs are answered from the command's flags.
class CliQuestions : public UserQuestions {
public:
    enum class OnDuplicate { Fail, Overwrite, Rename };

    explicit CliQuestions(QTextStream &err) : m_err(err) {}

    OnDuplicate onDuplicate = OnDuplicate::Fail;
    // The report dialog's answers; the dialog's presets stand where these are not given.
    std::optional<QString> reportTitle;
    std::optional<QString> reportDescription;
    // True once a taken Run Id was met under OnDuplicate::Fail.
    bool duplicateRefused() const { return m_duplicateRefused; }

    // The file, folder, kind, options and print dialogs are cancelled: the flags choose, and the
    // headless tool writes chart files instead of printing.
    Answer message(const MessageRequest &request) override;
    // Keeps the name (the suggestion, --run-id, or the name Rename found) and confirms it.
    DialogEnd askRunId(QString &name) override;
    DialogEnd askDuplicateId(const QString &name) override;
    bool askReportText(ReportTextRequest &request) override;

private:
    QTextStream &m_err;
    bool m_duplicateRefused = false;
    int m_duplicates = 0;
};

}  // namespace sendrel
