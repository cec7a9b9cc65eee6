#pragma once

#include <QWidget>

class QLineEdit;
class QTextBrowser;
class QPushButton;

namespace sendrel {

// The help viewer: the topic pages of the installation's Help folder, one page per topic
// number ("29.html"), the contents in "index.html".
class frmHelp : public QWidget {
    Q_OBJECT
public:
    explicit frmHelp(QWidget *parent = nullptr);

    // The folder of the pages; false when it holds no contents page.
    bool SetHelpFolder(const QString &folder);
    const QString &HelpFolder() const { return m_folder; }

    void ShowContents();
    // False when there is no page for the topic; the page shown stays.
    bool ShowTopic(int topic);
    // A page of the folder by its file name ("delete.html"); false when there is none.
    bool ShowPage(const QString &name);
    // The contents with the search box ready; an empty query lists nothing.
    void ShowSearch(const QString &query = QString());

private:
    QTextBrowser *txtTopic;
    QLineEdit *txtSearch;
    QPushButton *cmdContents;

    void runSearch();
    QString m_folder;
};

}  // namespace sendrel
