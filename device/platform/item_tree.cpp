#include "item_tree.h"

#include "item_description.h"
#include "keyboard_window.h"
#include "platform_screen.h"
#include "platform_window.h"
#include "status_panel.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QJSValue>
#include <QJsonObject>
#include <QQuickWindow>

#include <algorithm>

namespace lindenreed::device {

using namespace Qt::StringLiterals;

namespace {

/// What lies over others, in the order of painting.
struct Cover
{
    const QQuickItem *item; ///< null: a whole window
    QRect rectangle; ///< screen pixels
};

bool isOpaque(const QQuickItem *item)
{
    const QVariant gradient = item->property("gradient");
    const bool plain = gradient.isNull() || gradient.value<QJSValue>().isNull()
        || gradient.value<QJSValue>().isUndefined();
    return plain && item->inherits("QQuickRectangle")
        && item->property("color").value<QColor>().alpha() == 255 && item->rotation() == 0;
}

bool takesTaps(const QQuickItem *item)
{
    // A mouse area has an "enabled" of its own, beside the item's.
    return item->inherits("QQuickMouseArea") && item->isEnabled() && item->property("enabled").toBool()
        && item->property("acceptedButtons").value<Qt::MouseButtons>().testFlag(Qt::LeftButton);
}

/// Whether it stands for one row of a list, so that it has the keys for what is in it.
bool isCell(const QQuickItem *item)
{
    const QQuickItem *content = item->parentItem();
    return content && content->parentItem() && content->parentItem()->inherits("QQuickItemView");
}

bool canBePressed(const TreeNode &node)
{
    QAccessibleInterface *accessible = accessibleInterface(node.item);
    QAccessibleActionInterface *actions = accessible ? accessible->actionInterface() : nullptr;
    return actions && actions->actionNames().contains(QAccessibleActionInterface::pressAction());
}

/// Children in the order of painting.
QList<QQuickItem *> paintOrder(const QQuickItem *item)
{
    QList<QQuickItem *> children = item->childItems();
    std::stable_sort(children.begin(), children.end(),
                     [](const QQuickItem *left, const QQuickItem *right) { return left->z() < right->z(); });
    return children;
}

class Walk
{
public:
    explicit Walk(const QRect &screen)
        : m_screen(screen)
    {
    }

    std::vector<TreeNode> window(const QQuickWindow &window, const QRect &rectangle)
    {
        m_origin = rectangle.topLeft();
        m_window = rectangle & m_screen;
        const bool hasKeys = &window == QGuiApplication::focusWindow();
        m_focus = hasKeys ? window.activeFocusItem() : nullptr;
        m_claim = nullptr;
        m_covers.push_back({nullptr, m_window});
        std::vector<TreeNode> nodes;
        visit(window.contentItem(), m_window, 1.0, nodes);
        if (m_claim)
            focusAlone(nodes, hasKeys ? m_claim : nullptr);
        return nodes;
    }

    /// A window without items still hides what is below it.
    void coverBy(const QRect &rectangle) { m_covers.push_back({nullptr, rectangle & m_screen}); }

    void findCovered(std::vector<TreeNode> &nodes) const
    {
        for (TreeNode &node : nodes) {
            const Below below = m_below.value(node.item);
            node.covered = isBehind(node, m_covers, below.covers);
            node.behindModal = isBehind(node, m_modals, below.modals);
            findCovered(node.children);
        }
    }

private:
    /// How many of each are painted before an item.
    struct Below
    {
        std::size_t covers = 0;
        std::size_t modals = 0;
    };

    /// Whether one of `covers`, from number `first` on, lies over all of the item and is no part of it.
    static bool isBehind(const TreeNode &node, const std::vector<Cover> &covers, std::size_t first)
    {
        return std::any_of(covers.begin() + std::ptrdiff_t(first), covers.end(), [&](const Cover &cover) {
            return cover.rectangle.contains(node.rectangle)
                && !(cover.item && (cover.item == node.item || node.item->isAncestorOf(cover.item)));
        });
    }

    /// An opaque rectangle covers what does not reach into its round corners.
    void addCover(const QQuickItem *item, const QRectF &inScene, const QRect &clip)
    {
        const qreal radius = std::max(item->property("radius").toReal(), 0.0);
        for (const QRectF &part :
             {inScene.adjusted(radius, 0, -radius, 0), inScene.adjusted(0, radius, 0, -radius)}) {
            if (part.isValid())
                m_covers.push_back({item, part.translated(m_origin).toAlignedRect() & clip});
        }
    }

    void visit(QQuickItem *item, const QRect &clip, qreal opacity, std::vector<TreeNode> &siblings)
    {
        opacity *= item->opacity();
        if (!item->isVisible() || opacity <= 0)
            return;
        const QRectF inScene = item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
        const QRect rectangle = inScene.translated(m_origin).toAlignedRect() & clip;
        const QRect childClip = item->clip() ? rectangle : clip;
        if (opacity >= 1 && isOpaque(item))
            addCover(item, inScene, clip);
        if (rectangle == m_window && takesTaps(item))
            m_modals.push_back({item, rectangle});

        std::optional<TreeNode> node;
        if (!rectangle.isEmpty())
            node = describeItem(item);
        if (node) {
            node->rectangle = rectangle;
            if (node->focused)
                m_claim = item;
            m_below.insert(item, {m_covers.size(), m_modals.size()});
        }
        const auto above = std::ptrdiff_t(siblings.size());
        const QList<QQuickItem *> items = childClip.isEmpty() ? QList<QQuickItem *>() : paintOrder(item);
        for (QQuickItem *child : items)
            visit(child, childClip, opacity, node ? node->children : siblings);
        if (node) {
            // The focus is told once, where it is nearest.
            if (m_focus && (item == m_focus || item->isAncestorOf(m_focus)))
                tellFocus(*node);
            siblings.push_back(std::move(*node));
        } else if (item == m_focus && isCell(item)) {
            const auto first = std::find_if(siblings.begin() + above, siblings.end(), canBePressed);
            if (first != siblings.end())
                tellFocus(*first);
        }
    }

    void tellFocus(TreeNode &node)
    {
        node.focused = true;
        m_focus = nullptr;
    }

    static void focusAlone(std::vector<TreeNode> &nodes, const QQuickItem *item)
    {
        for (TreeNode &node : nodes) {
            node.focused = item && node.item == item;
            focusAlone(node.children, item);
        }
    }

    QRect m_screen;
    QRect m_window; ///< the one that is walked through now
    QPoint m_origin;
    const QQuickItem *m_focus = nullptr; ///< not told yet, of that window
    /// What says of itself that it is where the keys are, as the row of a menu does, to which others hand
    /// them.
    const QQuickItem *m_claim = nullptr;
    std::vector<Cover> m_covers;
    std::vector<Cover> m_modals; ///< mouse areas that are as large as their window
    QHash<const QQuickItem *, Below> m_below;
};

void sortForReading(std::vector<TreeNode> &nodes)
{
    std::stable_sort(nodes.begin(), nodes.end(), [](const TreeNode &left, const TreeNode &right) {
        return std::pair(left.rectangle.top(), left.rectangle.left())
            < std::pair(right.rectangle.top(), right.rectangle.left());
    });
    for (TreeNode &node : nodes)
        sortForReading(node.children);
}

TreeNode describeKeyboard(KeyboardWindow &keyboard)
{
    TreeNode node;
    node.role = u"Grouping"_s;
    node.name = u"Keyboard"_s;
    node.rectangle = keyboard.place();
    for (qsizetype i = 0; i < keyboard.keys().size(); ++i) {
        const KeyboardKey &key = keyboard.keys().at(i);
        TreeNode &child = node.children.emplace_back();
        child.role = u"Button"_s;
        child.name = key.name();
        child.id = key.id();
        child.rectangle = key.rectangle.translated(node.rectangle.topLeft());
        child.focused = keyboard.isFramed(i);
        if (key.action == KeyAction::Shift)
            child.checked = keyboard.view().shifted;
        child.press = [&keyboard, i] { keyboard.press(i); };
    }
    return node;
}

TreeNode describeStatusPanel(const StatusPanel &statusPanel)
{
    TreeNode node;
    node.role = u"StatusBar"_s;
    node.rectangle = statusPanel.screenRectangle();
    const StatusValues &values = statusPanel.values();
    node.value = values.battery ? u"%1 %2"_s.arg(values.clock, batteryText(*values.battery)) : values.clock;
    return node;
}

} // namespace

std::vector<TreeNode> readTree(const PlatformScreen &screen, const StatusPanel &statusPanel)
{
    std::vector<TreeNode> nodes;
    Walk walk(screen.geometry());
    KeyboardWindow *keyboard = nullptr;
    const QList<PlatformWindow *> windows = screen.platformWindows();
    for (const PlatformWindow *window : windows) {
        const auto *quickWindow = qobject_cast<const QQuickWindow *>(window->window());
        if (auto *keyboardWindow = qobject_cast<KeyboardWindow *>(window->window()))
            keyboard = keyboardWindow;
        if (!quickWindow) {
            walk.coverBy(window->screenRectangle());
            continue;
        }
        std::vector<TreeNode> ofWindow = walk.window(*quickWindow, window->screenRectangle());
        std::move(ofWindow.begin(), ofWindow.end(), std::back_inserter(nodes));
    }
    walk.findCovered(nodes);
    if (keyboard)
        nodes.push_back(describeKeyboard(*keyboard)); // nothing lies above it
    if (statusPanel.isShown())
        nodes.push_back(describeStatusPanel(statusPanel));
    sortForReading(nodes);
    return nodes;
}

QJsonArray toJson(const std::vector<TreeNode> &nodes)
{
    QJsonArray array;
    for (const TreeNode &node : nodes) {
        const QJsonArray children = toJson(node.children);
        if (node.covered) {
            for (const auto &child : children)
                array.append(child);
            continue;
        }
        QJsonObject object{{u"role"_s, node.role},
                           {u"name"_s, node.name},
                           {u"enabled"_s, node.enabled && !node.behindModal},
                           {u"rectangle"_s,
                            QJsonObject{{u"x"_s, node.rectangle.x()},
                                        {u"y"_s, node.rectangle.y()},
                                        {u"width"_s, node.rectangle.width()},
                                        {u"height"_s, node.rectangle.height()}}}};
        if (!node.id.isEmpty())
            object.insert(u"id"_s, node.id);
        if (!node.value.isEmpty())
            object.insert(u"value"_s, node.value);
        if (node.focused)
            object.insert(u"focused"_s, true);
        if (node.checked)
            object.insert(u"checked"_s, *node.checked);
        if (!children.isEmpty())
            object.insert(u"children"_s, children);
        array.append(object);
    }
    return array;
}

} // namespace lindenreed::device
