// What can be seen and reached on the screen, as a tree.

#pragma once

#include <QJsonArray>
#include <QPointer>
#include <QQuickItem>
#include <QRect>
#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace lindenreed::device {

class PlatformScreen;
class StatusPanel;

/// One item that says something: it has an Accessible that is not ignored, or it is a text.
struct TreeNode
{
    QPointer<QQuickItem> item; ///< null for the status panel and the keyboard
    std::function<void()> press; ///< of a key of the keyboard, which is no item
    QString role; ///< name of the QAccessible::Role, "StaticText" for a plain text
    QString name; ///< accessible name, else the text itself
    QString id; ///< the QML id, where there is one
    QString value; ///< of a slider or a field
    QRect rectangle; ///< screen pixels, cut by each ancestor that clips, and by the screen
    bool enabled = true;
    /// It gets the keys, or something that says nothing of itself gets them: the cell of a list, in which it
    /// is the first by painting that can be pressed, or something in it.
    bool focused = false;
    std::optional<bool> checked; ///< nothing where it cannot be checked
    /// Wholly hidden: one opaque rectangle that is painted later, and is no part of the item itself, or a
    /// window above, covers all that would show.
    bool covered = false;
    /// Behind a dialog or an open menu: a mouse area that is painted later, and is no part of the item
    /// itself, takes the taps on the whole window. A smaller one does not matter.
    bool behindModal = false;
    std::vector<TreeNode> children; ///< in reading order: by upper edge, then by left edge
};

/// Made anew from the items of all windows, and the keys of the keyboard, at each call. In reading order;
/// covered nodes are among them.
std::vector<TreeNode> readTree(const PlatformScreen &screen, const StatusPanel &statusPanel);

/// What is not covered, as JSON. The children of what is covered take its place; what is behind a modal item
/// can be read, so it is there, but it is not enabled.
QJsonArray toJson(const std::vector<TreeNode> &nodes);

} // namespace lindenreed::device
