// Moving a flickable by a page.

#pragma once

class QQuickItem;

namespace lindenreed::device {

/// Moves `flickable` by what it shows, within its content and at once. A grid or list keeps one row in sight
/// and ends at the upper edge of a row. An item without a content position stays as it is.
void scrollByPage(QQuickItem &flickable, bool down);

} // namespace lindenreed::device
