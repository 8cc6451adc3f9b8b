// Moving a flickable by pages.

#pragma once

class QQuickItem;

namespace lindenreed::device {

/// Moves `flickable` by `pages` (negative: up), within its content and at once. An item without a content
/// position stays as it is.
void scrollByPages(QQuickItem &flickable, int pages);

} // namespace lindenreed::device
