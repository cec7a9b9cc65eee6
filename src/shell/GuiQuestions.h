#pragma once

#include "base/UserQuestions.h"

#include <QPointer>

#include <functional>

class QWidget;

namespace sendrel {

class frmBusyMessage;
class frmDuplicateId;
class frmRunId;

// The desktop's answers: real message boxes, file and folder dialogs and the program's own
// modal windows.
class GuiQuestions : public UserQuestions {
public:
    explicit GuiQuestions(QWidget *parent = nullptr) : m_parent(parent) {}
    ~GuiQuestions() override;
    void setParent(QWidget *parent) { m_parent = parent; }
    // The help file that the dialogs' help keys open.
    void setHelpFile(const QString &helpFile) { m_helpFile = helpFile; }
    // How Rename in "Duplicate Run Id" finds the next free name.
    void setNextFreeRunId(std::function<QString(const QString &)> finder) { m_nextFree = std::move(finder); }

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

    // The shared windows, once made.
    frmBusyMessage *busyWindow() const;
    frmRunId *runIdWindow() const;
    frmDuplicateId *duplicateIdWindow() const;

    // "Name (*.a)|*.a|All (*.*)|*.*" in the form of Qt's file dialogs.
    static QString qtFilter(const QString &filter);

private:
    QPointer<QWidget> m_parent;
    QPointer<frmBusyMessage> m_busy;
    QPointer<frmRunId> m_runId;
    QPointer<frmDuplicateId> m_duplicate;
    QString m_helpFile;
    std::function<QString(const QString &)> m_nextFree;
};

}  // namespace sendrel
