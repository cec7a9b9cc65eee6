#include "windows/output/frmReportText.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QValidator>

#include <algorithm>

namespace sendrel {

namespace {

// Typing may not make the text longer than the limit, nor longer than it is when a text set
// by the program is already beyond it; shortening is always allowed. A text set by the
// program is taken as it is: the box is unmodified while setText has it checked.
class TypedLengthLimit : public QValidator {
public:
    TypedLengthLimit(QLineEdit *box, int limit) : QValidator(box), m_box(box), m_limit(limit), m_allowed(limit)
    {
        connect(box, &QLineEdit::textChanged, this, [this](const QString &text) { m_allowed = std::max<qsizetype>(m_limit, text.size()); });
    }

    State validate(QString &input, int &pos) const override
    {
        Q_UNUSED(pos)
        if (!m_box->isModified())
            return Acceptable;
        return input.size() > m_allowed ? Invalid : Acceptable;
    }

private:
    QLineEdit *m_box;
    qsizetype m_limit;
    qsizetype m_allowed;
};

}  // namespace

frmReportText::frmReportText(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmReportText"));
    setWindowTitle(QStringLiteral("Report Description"));
    setModal(true);

    Label1 = new QLabel(QStringLiteral("Edit report title:"), this);
    Label1->setObjectName(QStringLiteral("Label1"));
    txtReportTitle = new QLineEdit(this);
    txtReportTitle->setObjectName(QStringLiteral("txtReportTitle"));
    txtReportTitle->setValidator(new TypedLengthLimit(txtReportTitle, kTitleTypingLimit));
    Label1->setBuddy(txtReportTitle);

    Label2 = new QLabel(QStringLiteral("Enter report description:"), this);
    Label2->setObjectName(QStringLiteral("Label2"));
    txtReportDesc = new QPlainTextEdit(this);
    txtReportDesc->setObjectName(QStringLiteral("txtReportDesc"));
    txtReportDesc->setLineWrapMode(QPlainTextEdit::NoWrap);
    txtReportDesc->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    txtReportDesc->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    txtReportDesc->setTabChangesFocus(true);
    Label2->setBuddy(txtReportDesc);

    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    cmdHelp = new QPushButton(QStringLiteral("Help"), this);
    cmdHelp->setObjectName(QStringLiteral("cmdHelp"));
    cmdHelp->setAutoDefault(false);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    buttons->addWidget(cmdHelp);

    auto *layout = new QGridLayout(this);
    layout->addWidget(Label1, 0, 0);
    layout->addWidget(txtReportTitle, 1, 0);
    layout->addWidget(Label2, 2, 0);
    layout->addWidget(txtReportDesc, 3, 0);
    layout->setRowStretch(3, 1);
    layout->addLayout(buttons, 4, 0);

    const QFontMetrics metrics(txtReportTitle->font());
    txtReportTitle->setMinimumWidth(metrics.horizontalAdvance(QString(kTitleTypingLimit, QLatin1Char('n'))));
    txtReportDesc->setMinimumHeight(metrics.lineSpacing() * 8);

    connect(cmdOK, &QPushButton::clicked, this, &frmReportText::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmReportText::cmdCancel_Click);
    connect(cmdHelp, &QPushButton::clicked, this, &frmReportText::cmdHelp_Click);
    auto *help = new QShortcut(QKeySequence::HelpContents, this);
    connect(help, &QShortcut::activated, this, &frmReportText::cmdHelp_Click);
}

void frmReportText::SetTexts(const QString &title, const QString &description)
{
    txtReportTitle->setText(title);
    txtReportDesc->setPlainText(description);
}

QString frmReportText::Title() const
{
    return txtReportTitle->text();
}

QString frmReportText::Description() const
{
    return txtReportDesc->toPlainText();
}

void frmReportText::cmdOK_Click()
{
    bReportCancelled = false;
    accept();  // hidden, still loaded: the caller reads the boxes
}

void frmReportText::cmdCancel_Click()
{
    reject();
}

void frmReportText::cmdHelp_Click()
{
    if (OpenHelp)
        OpenHelp(HelpFile, HelpContextID);
}

void frmReportText::done(int result)
{
    // Any way out but OK counts as cancelled: Cancel, Escape, the frame's close box.
    if (result != QDialog::Accepted)
        bReportCancelled = true;
    QDialog::done(result);
}

}  // namespace sendrel
