// What one item of the interface says of itself.

#pragma once

#include "item_tree.h"

#include <optional>

class QAccessibleInterface;

namespace lindenreed::device {

/// All but rectangle, covering and children; nothing for an item that says nothing.
std::optional<TreeNode> describeItem(QQuickItem *item);

/// The item's way to be acted upon, null where it has none. Owned by Qt.
QAccessibleInterface *accessibleInterface(QQuickItem *item);

} // namespace lindenreed::device
