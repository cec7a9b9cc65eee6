#pragma once

#include <QDialog>
#include <QDialogButtonBox>
#include <QKeySequence>
#include <QLayout>
#include <QPushButton>
#include <QShortcut>

#include <functional>

namespace sendrel {

// OK, Cancel and Help at the foot of one of the shell's dialogs (cmdOK, cmdCancel, cmdHelp); Help
// and F1 call help, which opens the dialog's topic.
inline void AddDialogButtons(QDialog *dialog, QLayout *layout, const std::function<void()> &help)
{
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Help, dialog);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("cmdOK"));
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cmdCancel"));
    buttons->button(QDialogButtonBox::Help)->setObjectName(QStringLiteral("cmdHelp"));
    layout->addWidget(buttons);
    QObject::connect(buttons, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    QObject::connect(buttons, &QDialogButtonBox::helpRequested, dialog, help);
    QObject::connect(new QShortcut(QKeySequence::HelpContents, dialog), &QShortcut::activated, dialog, help);
}

}  // namespace sendrel
