#pragma once

#include "app/UserQuestions.h"

#include <QPointer>

class QWidget;

namespace sendrel {

// The desktop's answers: real message boxes and file and folder dialogs.
class GuiQuestions : public UserQuestions {
public:
    explicit GuiQuestions(QWidget *parent = nullptr) : m_parent(parent) {}
    void setParent(QWidget *parent) { m_parent = parent; }

    Answer message(const MessageRequest &request) override;
    QString openFile(const FileRequest &request) override;
    QString chooseFolder(const QString &title, const QString &startFolder) override;
    QString askRunId(QString &name) override;
    QString askDuplicateId(const QString &name) override;
    QString askStandingOrHarvested() override;
    bool askReportText(ReportTextRequest &request) override;

    // "Name (*.a)|*.a|All (*.*)|*.*" in the form of Qt's file dialogs.
    static QString qtFilter(const QString &filter);

private:
    QPointer<QWidget> m_parent;
};

}  // namespace sendrel
