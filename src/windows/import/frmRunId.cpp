#include "windows/import/frmRunId.h"

#include "base/UserQuestions.h"
#include "store/Run.h"
#include "windows/common/ShowHelp.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include <algorithm>

namespace sendrel {

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

    connect(txtRunId, &QLineEdit::textChanged, this, [this] {
        m_lastText = txtRunId->text();
        // Blanks at the ends are no part of a Run Id: a box of blanks is an empty one.
        cmdOK->setEnabled(!TakenRunId(m_lastText).isEmpty());
    });
    connect(txtRunId, &QLineEdit::textEdited, this, &frmRunId::limitLength);
    connect(cmdOK, &QPushButton::clicked, this, &frmRunId::accept);
    connect(cmdCancel, &QPushButton::clicked, this, &frmRunId::reject);
    auto *help = new QShortcut(QKeySequence::HelpContents, this);
    connect(help, &QShortcut::activated, this, [this] { ShowHelp(HelpContentsAndTopic, HelpFile, HelpContextID); });
    cmdOK->setEnabled(false);
}

void frmRunId::limitLength()
{
    // The limit binds typing only: a longer name put in by the program stays until the user
    // shortens it, and an edit is cut so that it never makes the text longer than the limit allows.
    const QString edited = txtRunId->text();
    const QString before = m_lastText;
    if (edited.size() <= kMaxLength || edited.size() <= before.size())
        return;
    qsizetype prefix = 0;
    while (prefix < before.size() && prefix < edited.size() && before[prefix] == edited[prefix])
        ++prefix;
    qsizetype suffix = 0;
    while (suffix < before.size() - prefix && suffix < edited.size() - prefix &&
           before[before.size() - 1 - suffix] == edited[edited.size() - 1 - suffix])
        ++suffix;
    const QString inserted = edited.mid(prefix, edited.size() - prefix - suffix);
    const qsizetype kept = prefix + suffix;
    const qsizetype room = std::max<qsizetype>(0, kMaxLength - kept);
    const QString allowed = inserted.left(room);
    txtRunId->setText(edited.left(prefix) + allowed + edited.right(suffix));
    txtRunId->setCursorPosition(static_cast<int>(prefix + allowed.size()));
}

DialogEnd frmRunId::AskRunId(QString &name)
{
    txtRunId->setText(name);
    cmdOK->setEnabled(!TakenRunId(name).isEmpty());
    lblNameProblem->clear();
    DialogResult = DialogEnd::Cancel;
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
    DialogResult = DialogEnd::Check;
    QDialog::accept();
}

void frmRunId::reject()
{
    DialogResult = DialogEnd::Cancel;
    QDialog::reject();
}

}  // namespace sendrel
