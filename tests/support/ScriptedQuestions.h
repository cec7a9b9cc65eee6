#pragma once

#include "base/UserQuestions.h"

#include <QList>
#include <QVariant>

namespace sendrel {

// Answers questions from a script and records every question asked, for tests and benchmarks.
// A message with only an OK button needs no scripted answer. A question that the script did not
// foresee fails loudly instead of blocking.
class ScriptedQuestions : public UserQuestions {
public:
    struct Asked {
        QString kind;   // "message", "openFile", "chooseFolder", "askRunId", ...
        QString title;
        QString text;
    };

    // Queue answers in the order the questions will come.
    void answerMessage(Answer a) { m_script.append({QStringLiteral("message"), QVariant::fromValue(static_cast<int>(a)), {}}); }
    void answerOpenFile(const QString &path) { m_script.append({QStringLiteral("openFile"), path, {}}); }
    void answerSaveFile(const QString &path) { m_script.append({QStringLiteral("saveFile"), path, {}}); }
    void answerFolder(const QString &path) { m_script.append({QStringLiteral("chooseFolder"), path, {}}); }
    void answerRunId(DialogEnd result, const QString &name = QString()) { m_script.append({QStringLiteral("askRunId"), int(result), name}); }
    void answerDuplicateId(DialogEnd result) { m_script.append({QStringLiteral("askDuplicateId"), int(result), {}}); }
    void answerStandingOrHarvested(std::optional<RunKind> kindOrCancel)
    {
        m_script.append({QStringLiteral("askStandingOrHarvested"), kindOrCancel ? QVariant(int(*kindOrCancel)) : QVariant(), {}});
    }
    // The PDF file to print into; "" cancels the print dialog.
    void answerPrint(const QString &pdfFile) { m_script.append({QStringLiteral("askPrint"), pdfFile, {}}); }
    void answerReportText(bool ok, const QString &title = QString(), const QString &description = QString())
    {
        m_script.append({QStringLiteral("askReportText"), ok, QStringList{title, description}});
    }

    void answerOptions(bool ok, const OptionsRequest &chosen = {})
    {
        m_script.append({QStringLiteral("askOptions"), ok,
                         QStringList{chosen.units, chosen.sdiMethod, chosen.csvDefinitions ? QStringLiteral("YES") : QStringLiteral("NO")}});
    }

    // The connection text, or the password; false cancels.
    void answerServerDatabase(bool ok, const QString &connection = QString())
    {
        m_script.append({QStringLiteral("askServerDatabase"), ok, connection});
    }
    void answerPassword(bool ok, const QString &password = QString()) { m_script.append({QStringLiteral("askPassword"), ok, password}); }

    Answer message(const MessageRequest &request) override;
    QString openFile(const FileRequest &request) override;
    QString saveFile(const FileRequest &request) override;
    QString chooseFolder(const QString &title, const QString &startFolder) override;
    DialogEnd askRunId(QString &name) override;
    DialogEnd askDuplicateId(const QString &name) override;
    std::optional<RunKind> askStandingOrHarvested() override;
    bool askReportText(ReportTextRequest &request) override;
    bool askOptions(OptionsRequest &request) override;
    bool askServerDatabase(QString &connection) override;
    bool askPassword(const QString &connection, QString &password) override;
    bool askPrint(PrintRequest &request) override;
    void showBusyMessage(const QString &title, const QString &message) override;
    void hideBusyMessage() override;

    const QList<Asked> &asked() const { return m_asked; }
    QStringList messageTexts() const;
    int pendingAnswers() const { return static_cast<int>(m_script.size()); }
    int busyCalls() const { return m_busyCalls; }
    bool busyVisible() const { return m_busyVisible; }
    const QString &lastBusyMessage() const { return m_lastBusy; }
    void clear();

private:
    struct Entry {
        QString kind;
        QVariant value;
        QVariant extra;
    };
    Entry take(const QString &kind, const QString &title, const QString &text);

    QList<Entry> m_script;
    QList<Asked> m_asked;
    int m_busyCalls = 0;
    bool m_busyVisible = false;
    QString m_lastBusy;
};

}  // namespace sendrel
