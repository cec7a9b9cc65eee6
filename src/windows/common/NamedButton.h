#pragma once

#include <QPushButton>

namespace sendrel {

// A push button with its caption and the objectName by which tests and help find it.
inline QPushButton *NamedButton(const QString &caption, const QString &name, QWidget *parent)
{
    auto *button = new QPushButton(caption, parent);
    button->setObjectName(name);
    return button;
}

}  // namespace sendrel
