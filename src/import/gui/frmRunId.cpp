#include "import/gui/frmRunId.h"

#include "app/UserQuestions.h"
#include "app/gui/ShowHelp.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QValidator>
#include <QVBoxLayout>

namespace sendrel {

namespace {

// The length limit binds typing only: a longer name put in by the program stays until the user
// shortens it, and no edit may make a text over the limit longer.
class RunIdLength : public QValidator {
public:
    RunIdLength(QLineEdit *edit, int limit) : QValidator(edit), m_edit(edit), m_limit(limit) {}
    State validate(QString &input, int &) const override
    {
        if (input.size() > m_limit && input.size() >= m_edit->text().size())
            return Invalid;
        return Acceptable;
    }

private:
    QLineEdit *m_edit;
    int m_limit;
};

}  // namespace

frmRunId::frmRunId(QWidget *parent)
    : QDialog(parent), lblEnterName(new QLabel(this)), txtRunId(new QLineEdit(this)), lblNameProblem(new QLabel(this)),
      cmdOK(new QPushButton(this)), cmdCancel(new QPushButton(this))
{
    setObjectName(QStringLiteral("frmRunId"));
    setWindowTitle(QStringLiteral("Enter Run ID"));
    setModal(true);
    lblEnterName->setObjectName(QStringLiteral("lblEnterName"));
    txtRunId->setObjectName(QStringLiteral("txtRunId"));
    lblNameProblem->setObjectName(QStringLiteral("lblNameProblem"));
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));

    lblEnterName->setText(QStringLiteral("Enter a unique Run ID for this data set:"));
    txtRunId->setValidator(new RunIdLength(txtRunId, kMaxLength));
    txtRunId->setMinimumWidth(txtRunId->fontMetrics().horizontalAdvance(QLatin1Char('W')) * 18);
    QPalette problem = lblNameProblem->palette();
    problem.setColor(QPalette::WindowText, QColor(160, 0, 0));
    lblNameProblem->setPalette(problem);
    cmdOK->setText(QStringLiteral("OK"));
    cmdOK->setDefault(true);
    cmdCancel->setText(QStringLiteral("Cancel"));

    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(lblEnterName);
    layout->addWidget(txtRunId);
    layout->addWidget(lblNameProblem);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    connect(txtRunId, &QLineEdit::textChanged, this, [this](const QString &text) { cmdOK->setEnabled(!text.isEmpty()); });
    connect(cmdOK, &QPushButton::clicked, this, &frmRunId::accept);
    connect(cmdCancel, &QPushButton::clicked, this, &frmRunId::reject);
    auto *help = new QShortcut(QKeySequence::HelpContents, this);
    connect(help, &QShortcut::activated, this, [this] { ShowHelp(HelpContentsAndTopic, HelpFile, HelpContextID); });
    cmdOK->setEnabled(false);
}

QString frmRunId::AskRunId(QString &name)
{
    txtRunId->setText(name);
    cmdOK->setEnabled(!name.isEmpty());
    lblNameProblem->clear();
    DialogResult = kDialogCancel;
    txtRunId->selectAll();
    txtRunId->setFocus();
    exec();
    name = txtRunId->text();
    return DialogResult;
}

void frmRunId::accept()
{
    // Enter in an empty box does nothing, as the disabled OK button does.
    if (!cmdOK->isEnabled())
        return;
    DialogResult = kDialogCheck;
    QDialog::accept();
}

void frmRunId::reject()
{
    DialogResult = kDialogCancel;
    QDialog::reject();
}

}  // namespace sendrel
