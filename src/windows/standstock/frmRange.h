#pragma once

#include "domain/standstock/ClassRange.h"

#include <QPointer>
#include <QString>
#include <QWidget>

class QLabel;
class QLineEdit;
class QPushButton;

namespace sendrel {

class frmParameters;

// "Range": the edges of one diameter class typed by hand. Each stand and stock window owns one,
// made hidden at its load; a press on a class panel of the ruler fills it and shows it. An
// accepted edge goes at once into the classes and moves the neighbours' edges.
class frmRange : public QWidget {
    Q_OBJECT
    // F1 in the frame opens the active window's page.
    Q_PROPERTY(int HelpContextID MEMBER HelpContextID)
public:
    explicit frmRange(QWidget *parent = nullptr);
    ~frmRange() override;

    int HelpContextID = 2100;

    // Keeps the owning window and takes its place on the screen.
    void SetParameters(frmParameters *theParameters);
    frmParameters *Parameters() const { return m_parameters; }

    // The first fault of a proposed class, or the empty text.
    QString ValidateDbhClass(qint16 iClassNum, double dMin, double dMax, double dCentre) const;
    // Takes the boxes into the classes and redraws their panels; nothing while a fault is shown.
    void UpdateDbhPanels();

    // lblClassNumber with its change: the class shown is highlighted on the ruler.
    void SetClassNumber(const QString &text);
    QString ClassNumber() const;
    // How the ruler opens the editor: class number, then minimum, maximum and centre, then show.
    void OpenClass(int iClass);
    // Writes a class's edges into the boxes, each raising its change event.
    void ShowEdges(double minDia, double maxDia, double midPoint);

    // Close: no class shown, window hidden; it stays loaded.
    void cmdOK_Click();

    // The unload with its owner: lets go of theParameters and goes away (later, from the event loop).
    void Unload();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void edgeChanged(RangeBox box);
    void centreChanged();
    // The window as the user sees it: its own, or the MDI child window that holds it.
    QWidget *frameWindow() const;

    QPointer<frmParameters> m_parameters;  // theParameters
    QLabel *lblClassNumber = nullptr;
    QLabel *lblClassTitle = nullptr;
    QLineEdit *txtMin = nullptr;
    QLineEdit *txtMax = nullptr;
    QLineEdit *txtCentre = nullptr;
    QLabel *lblDbhError = nullptr;
    QPushButton *cmdOK = nullptr;
    QPushButton *cmdHelp = nullptr;
};

}  // namespace sendrel
