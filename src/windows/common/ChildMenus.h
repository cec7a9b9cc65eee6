#pragma once

#include <QList>

class QMenu;

namespace sendrel {

// A child window with a menu of its own. While such a window is active in the frame its menus
// stand in the frame's menu bar in place of the frame's short menu.
class ChildMenus {
public:
    virtual ~ChildMenus() = default;
    virtual QList<QMenu *> ChildMenuList() const = 0;
};

}  // namespace sendrel
