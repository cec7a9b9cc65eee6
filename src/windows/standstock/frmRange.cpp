#include "windows/standstock/frmRange.h"

#include "windows/common/ChildFrame.h"

#include "base/Numbers.h"
#include "windows/common/ReportWindowHost.h"
#include "windows/standstock/ClassRulerView.h"
#include "windows/standstock/frmParameters.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QVBoxLayout>

namespace sendrel {

frmRange::frmRange(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("frmRange"));
    setWindowTitle(QStringLiteral("Range"));

    lblClassNumber = new QLabel(QStringLiteral("-1"), this);
    lblClassNumber->setObjectName(QStringLiteral("lblClassNumber"));
    // The index is the window's link to its class; the person reads the class below.
    lblClassNumber->hide();
    lblClassTitle = new QLabel(this);
    lblClassTitle->setObjectName(QStringLiteral("lblClassTitle"));
    QFont bold = lblClassTitle->font();
    bold.setBold(true);
    lblClassTitle->setFont(bold);

    txtMin = new QLineEdit(this);
    txtMin->setObjectName(QStringLiteral("txtMin"));
    txtMax = new QLineEdit(this);
    txtMax->setObjectName(QStringLiteral("txtMax"));
    txtCentre = new QLineEdit(this);
    txtCentre->setObjectName(QStringLiteral("txtCentre"));
    for (QLineEdit *box : {txtMin, txtMax, txtCentre})
        box->setFixedWidth(80);

    lblDbhError = new QLabel(this);
    lblDbhError->setObjectName(QStringLiteral("lblDbhError"));
    lblDbhError->setStyleSheet(QStringLiteral("color: #b00000"));
    lblDbhError->setWordWrap(true);
    lblDbhError->setMinimumHeight(lblDbhError->fontMetrics().height() * 2);

    cmdOK = new QPushButton(QStringLiteral("Close"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdHelp = new QPushButton(QStringLiteral("Help"), this);
    cmdHelp->setObjectName(QStringLiteral("cmdHelp"));

    auto *grid = new QGridLayout;
    auto addRow = [grid](int row, const QString &caption, const QString &name, QLineEdit *box) {
        auto *label = new QLabel(caption);
        label->setObjectName(name);
        label->setBuddy(box);
        grid->addWidget(label, row, 0);
        grid->addWidget(box, row, 1);
    };
    addRow(0, QStringLiteral("Minimum:"), QStringLiteral("lblMin"), txtMin);
    addRow(1, QStringLiteral("Maximum:"), QStringLiteral("lblMax"), txtMax);
    addRow(2, QStringLiteral("Centre Point:"), QStringLiteral("lblCentre"), txtCentre);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdHelp);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(lblClassTitle);
    layout->addLayout(grid);
    layout->addWidget(lblDbhError);
    layout->addLayout(buttons);
    setFixedWidth(260);

    connect(txtMin, &QLineEdit::textChanged, this, [this] { edgeChanged(RangeBox::Min); });
    connect(txtMax, &QLineEdit::textChanged, this, [this] { edgeChanged(RangeBox::Max); });
    connect(txtCentre, &QLineEdit::textChanged, this, &frmRange::centreChanged);
    connect(cmdOK, &QPushButton::clicked, this, &frmRange::cmdOK_Click);
    connect(cmdHelp, &QPushButton::clicked, this, [this] {
        if (m_parameters)
            m_parameters->Host().ShowHelpTopic(HelpContextID);
    });
}

frmRange::~frmRange() = default;

QWidget *frmRange::frameWindow() const
{
    if (QMdiSubWindow *sub = HoldingSubWindow(this))
        return sub;
    return const_cast<frmRange *>(this);
}

void frmRange::SetParameters(frmParameters *theParameters)
{
    m_parameters = theParameters;
    if (!theParameters)
        return;
    // The editor opens over the top left corner of its window.
    QWidget *owner = theParameters->parentWidget() && theParameters->parentWidget()->inherits("QMdiSubWindow")
                         ? theParameters->parentWidget()
                         : theParameters;
    frameWindow()->move(owner->pos());
}

QString frmRange::ValidateDbhClass(qint16 iClassNum, double dMin, double dMax, double dCentre) const
{
    if (!m_parameters)
        return QString();
    return sendrel::ValidateDbhClass(m_parameters->Layout, iClassNum, dMin, dMax, dCentre);
}

void frmRange::UpdateDbhPanels()
{
    if (!m_parameters)
        return;
    const QVector<int> redraw = sendrel::UpdateDbhPanels(m_parameters->Layout, lblDbhError->text(), lblClassNumber->text(), txtMin->text(),
                                                         txtMax->text(), txtCentre->text());
    for (int i : redraw)
        m_parameters->DrawClass(i);
}

void frmRange::SetClassNumber(const QString &text)
{
    lblClassNumber->setText(text);
    if (!m_parameters)
        return;
    const int n = m_parameters->Layout.ClassCount();
    for (int i = 0; i < n; ++i) {
        m_parameters->RulerView()->SSPanel2(i)->SetTextColour(IsEditedClass(text, i) ? QColor::fromRgb(kEditedClassColour)
                                                                                     : QColor(Qt::black));
    }
    const int c = static_cast<int>(RoundHalfEven(ReadNumber(text)));
    lblClassTitle->setText(c >= 0 && c < n ? QStringLiteral("DBH class %1 of %2").arg(c + 1).arg(n) : QString());
}

QString frmRange::ClassNumber() const
{
    return lblClassNumber->text();
}

void frmRange::ShowEdges(double minDia, double maxDia, double midPoint)
{
    txtMin->setText(DefaultText(minDia));
    txtMax->setText(DefaultText(maxDia));
    txtCentre->setText(DefaultText(midPoint));
}

void frmRange::OpenClass(int iClass)
{
    SetClassNumber(QString::number(iClass));
    if (m_parameters) {
        const ClassType &c = m_parameters->Layout.aClass[iClass];
        ShowEdges(c.MinDia, c.MaxDia, c.MidPoint);
    }
    QWidget *w = frameWindow();
    if (w->isHidden() && m_parameters)
        SetParameters(m_parameters);  // over its window again, wherever that went meanwhile
    w->show();
    show();
    w->raise();
}

void frmRange::edgeChanged(RangeBox box)
{
    if (!m_parameters || m_parameters->bMouseMove)
        return;
    if (m_parameters->bInChange) {
        m_parameters->bInChange = false;
        return;
    }
    const RangeBoxChange change =
        RangeBoxChanged(m_parameters->Layout, box, lblClassNumber->text(), txtMin->text(), txtMax->text(), txtCentre->text());
    lblDbhError->setText(change.fault);
    if (change.writeCentre)
        txtCentre->setText(change.centre);
    if (change.updatePanels) {
        m_parameters->bDBH_Change = true;
        UpdateDbhPanels();
        m_parameters->bDBH_Change = false;
    }
}

void frmRange::centreChanged()
{
    if (!m_parameters || m_parameters->bMouseMove)
        return;
    if (m_parameters->bInChange) {
        m_parameters->bInChange = false;
        return;
    }
    const RangeBoxChange change =
        RangeBoxChanged(m_parameters->Layout, RangeBox::Centre, lblClassNumber->text(), txtMin->text(), txtMax->text(), txtCentre->text());
    lblDbhError->setText(change.fault);
}

void frmRange::cmdOK_Click()
{
    SetClassNumber(QStringLiteral("-1"));
    frameWindow()->hide();
}

void frmRange::Unload()
{
    m_parameters = nullptr;
    QWidget *w = frameWindow();
    w->hide();
    w->deleteLater();
}

void frmRange::closeEvent(QCloseEvent *event)
{
    // Closing by the window's own close box only hides it: the editor lives as long as its
    // stand and stock window.
    if (m_parameters) {
        event->ignore();
        cmdOK_Click();
        return;
    }
    QWidget::closeEvent(event);
}

}  // namespace sendrel
