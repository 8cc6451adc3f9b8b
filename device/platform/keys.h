// Keys of the device and of its keyboard.

#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace lindenreed::device::keys {

struct Key
{
    std::optional<int> deviceCode; ///< par1 of the device's key event
    std::optional<Qt::Key> qtKey; ///< what the focused item gets
};

/// By its name: menu, prev, next, page-up, page-down, left, right, up, down, centre, back.
std::optional<Key> named(const QString &name);
QStringList names();

/// Presses and releases a key for the focused item; returns when it has dealt with it. False: nobody has
/// taken it.
bool press(Qt::Key key, const QString &text = {});

/// Moves the focus the way that an arrow key points, along the order of the items that Tab reaches; other
/// keys do nothing.
void moveFocus(Qt::Key arrow);

/// Types into the focused field, one key for each character; a line feed is the return key. False: no field
/// has the focus.
bool type(const QString &text);

} // namespace lindenreed::device::keys
