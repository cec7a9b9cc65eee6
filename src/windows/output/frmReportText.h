#pragma once

#include <QDialog>
#include <QString>

#include <functional>

class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace sendrel {

// "Report Description": asks for the title and the description of a report before it is
// compiled. A new instance for each report. OK hides it and leaves it loaded, so that the
// caller can read both boxes; every other way out (Cancel, the frame, Escape) unloads it with
// bReportCancelled true.
class frmReportText : public QDialog {
    Q_OBJECT
public:
    explicit frmReportText(QWidget *parent = nullptr);

    // True unless the window ended by OK.
    bool bReportCancelled = true;

    // What the help button opens: the help file at the window's topic. Empty: no help.
    QString HelpFile;
    int HelpContextID = 73;
    std::function<void(const QString &helpFile, int topic)> OpenHelp;

    // The title box takes at most this many characters by typing; the caller may preset more.
    static constexpr int kTitleTypingLimit = 50;

    // The title and the description in their boxes.
    void SetTexts(const QString &title, const QString &description);
    QString Title() const;
    QString Description() const;

    void cmdOK_Click();
    void cmdCancel_Click();
    void cmdHelp_Click();

    void done(int result) override;

private:
    QLabel *Label1;
    QLineEdit *txtReportTitle;
    QLabel *Label2;
    QPlainTextEdit *txtReportDesc;
    QPushButton *cmdOK;
    QPushButton *cmdCancel;
    QPushButton *cmdHelp;
};

}  // namespace sendrel
