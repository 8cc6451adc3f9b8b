#include "item_tree.h"

#include "item_description.h"
#include "keyboard_window.h"
#include "platform_screen.h"
#include "platform_window.h"
#include "status_panel.h"

#include <QJSValue>
#include <QJsonObject>
#include <QQuickWindow>

#include <algorithm>

namespace lindenreed::device {

using namespace Qt::StringLiterals;

namespace {

/// Something opaque, in the order of painting.
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
        && item->property("color").value<QColor>().alpha() == 255 && item->property("radius").toReal() <= 0
        && item->rotation() == 0;
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
        m_covers.push_back({nullptr, rectangle & m_screen});
        std::vector<TreeNode> nodes;
        visit(window.contentItem(), rectangle & m_screen, 1.0, nodes);
        return nodes;
    }

    /// A window without items still hides what is below it.
    void coverBy(const QRect &rectangle) { m_covers.push_back({nullptr, rectangle & m_screen}); }

    void findCovered(std::vector<TreeNode> &nodes) const
    {
        for (TreeNode &node : nodes) {
            const std::size_t later = m_paintedBefore.value(node.item);
            node.covered = std::any_of(
                m_covers.begin() + std::ptrdiff_t(later), m_covers.end(), [&](const Cover &cover) {
                    return cover.rectangle.contains(node.rectangle)
                        && !(cover.item && (cover.item == node.item || node.item->isAncestorOf(cover.item)));
                });
            findCovered(node.children);
        }
    }

private:
    void visit(QQuickItem *item, const QRect &clip, qreal opacity, std::vector<TreeNode> &siblings)
    {
        opacity *= item->opacity();
        if (!item->isVisible() || opacity <= 0)
            return;
        const QRectF inScene = item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
        const QRect rectangle = inScene.translated(m_origin).toAlignedRect() & clip;
        const QRect childClip = item->clip() ? rectangle : clip;
        if (opacity >= 1 && isOpaque(item) && !rectangle.isEmpty())
            m_covers.push_back({item, rectangle});

        std::optional<TreeNode> node;
        if (!rectangle.isEmpty())
            node = describeItem(item);
        if (node) {
            node->rectangle = rectangle;
            m_paintedBefore.insert(item, m_covers.size());
        }
        std::vector<TreeNode> children;
        const QList<QQuickItem *> items = childClip.isEmpty() ? QList<QQuickItem *>() : paintOrder(item);
        for (QQuickItem *child : items)
            visit(child, childClip, opacity, node ? node->children : siblings);
        if (node)
            siblings.push_back(std::move(*node));
    }

    QRect m_screen;
    QPoint m_origin;
    std::vector<Cover> m_covers;
    QHash<const QQuickItem *, std::size_t> m_paintedBefore; ///< how many covers lie below an item
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
                           {u"enabled"_s, node.enabled},
                           {u"rectangle"_s,
                            QJsonObject{{u"x"_s, node.rectangle.x()},
                                        {u"y"_s, node.rectangle.y()},
                                        {u"width"_s, node.rectangle.width()},
                                        {u"height"_s, node.rectangle.height()}}}};
        if (!node.id.isEmpty())
            object.insert(u"id"_s, node.id);
        if (!node.value.isEmpty())
            object.insert(u"value"_s, node.value);
        if (node.checked)
            object.insert(u"checked"_s, *node.checked);
        if (!children.isEmpty())
            object.insert(u"children"_s, children);
        array.append(object);
    }
    return array;
}

} // namespace lindenreed::device
