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

    Answer message(const MessageRequest &request) override;
    QString openFile(const FileRequest &request) override;
    QString saveFile(const FileRequest &request) override;
    QString chooseFolder(const QString &title, const QString &startFolder) override;
    // Keeps the name (the suggestion, --run-id, or the name Rename found) and confirms it.
    QString askRunId(QString &name) override;
    QString askDuplicateId(const QString &name) override;
    QString askStandingOrHarvested() override;
    bool askReportText(ReportTextRequest &request) override;
    // The headless tool writes chart files; it never prints.
    bool askPrint(PrintRequest &request) override;

private:
    QTextStream &m_err;
    bool m_duplicateRefused = false;
    int m_duplicates = 0;
};

}  // namespace sendrel
