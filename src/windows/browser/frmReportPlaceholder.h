#pragma once

#include "windows/common/ReportWindowHost.h"

#include <QWidget>

#include <memory>

class QLabel;

namespace sendrel {

struct TreeModel;

// Stands where a report window of a run will open (stand and stock tables, or species
// composition through time) until those windows are part of the program. It behaves as they do
// towards the browser and the frame: it counts itself in on load and out on close, takes and
// gives up a place of the frame, and offers its run to the delete window.
class frmReportPlaceholder : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString This_RunId MEMBER This_RunId)
    Q_PROPERTY(QString This_SorH MEMBER This_SorH)
    Q_PROPERTY(QString This_RunDesc MEMBER This_RunDesc)
    Q_PROPERTY(int HelpContextID MEMBER HelpContextID)
public:
    enum class Kind { StandStock, StandLevels };

    frmReportPlaceholder(TreeModel &tm, std::unique_ptr<ReportWindowHost> host, Kind kind, QWidget *parent = nullptr);

    // The load step: a child window of the frame, counted by the browser, first free place of the frame.
    void Form_Load();
    // Shows the run once This_RunId, This_SorH and This_RunDesc are set.
    void ShowRun();

    Kind ReportKind() const { return m_kind; }

    QString This_RunId;
    QString This_SorH;
    QString This_RunDesc;
    int HelpContextID;
    QLabel *lblRun;

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    TreeModel &m_tm;
    std::unique_ptr<ReportWindowHost> m_host;
    Kind m_kind;
    bool m_unloaded = false;
};

}  // namespace sendrel
