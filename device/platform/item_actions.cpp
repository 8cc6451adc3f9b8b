#include "item_actions.h"

#include "item_description.h"
#include "item_tree.h"

#include <QAccessible>

#include <algorithm>

namespace lindenreed::device {

using namespace Qt::StringLiterals;

namespace {

/// A no-break space looks like any other, and is not on keyboards.
QString asTyped(QString name)
{
    return name.replace(QChar::Nbsp, u' ');
}

void collect(const std::vector<TreeNode> &nodes, const ItemChoice &choice,
             std::vector<const TreeNode *> &matches)
{
    for (const TreeNode &node : nodes) {
        if ((node.item || node.press)
            && (choice.id.isEmpty() ? asTyped(node.name) == asTyped(choice.name) : node.id == choice.id))
            matches.push_back(&node);
        collect(node.children, choice, matches);
    }
}

/// The item's own name of the action, empty where it does not know it.
QString actionName(const TreeNode &node, ItemAction action)
{
    QAccessibleInterface *accessible = accessibleInterface(node.item);
    QAccessibleActionInterface *actions = accessible ? accessible->actionInterface() : nullptr;
    if (!actions)
        return {};
    const QStringList known = actions->actionNames();
    QStringList wanted;
    switch (action) {
    case ItemAction::Press: // a box to be checked is pressed by toggling it
        wanted = {QAccessibleActionInterface::pressAction(), QAccessibleActionInterface::toggleAction()};
        break;
    case ItemAction::Increase:
        wanted = {QAccessibleActionInterface::increaseAction()};
        break;
    case ItemAction::Decrease:
        wanted = {QAccessibleActionInterface::decreaseAction()};
        break;
    }
    const auto found = std::find_if(wanted.cbegin(), wanted.cend(),
                                    [&](const QString &name) { return known.contains(name); });
    return found == wanted.cend() ? QString() : *found;
}

bool knows(const TreeNode &node, ItemAction action)
{
    return node.press ? action == ItemAction::Press : !actionName(node, action).isEmpty();
}

} // namespace

std::optional<ItemFailure> actOnItem(const PlatformScreen &screen, const StatusPanel &statusPanel,
                                     const ItemChoice &choice, ItemAction action)
{
    const QString label = choice.id.isEmpty() ? choice.name : u'#' + choice.id;
    const std::vector<TreeNode> tree = readTree(screen, statusPanel);
    std::vector<const TreeNode *> matches;
    collect(tree, choice, matches);
    if (matches.empty())
        return ItemFailure{u"no-such-item"_s, u"Nothing on the screen is called \"%1\"."_s.arg(label)};

    const auto keepIf = [&matches](auto condition) {
        std::erase_if(matches, [&](const TreeNode *node) { return !condition(*node); });
        return !matches.empty();
    };
    if (!keepIf([](const TreeNode &node) { return !node.covered && !node.behindModal; }))
        return ItemFailure{u"not-possible"_s, u"\"%1\" is covered."_s.arg(label)};
    if (!keepIf([&](const TreeNode &node) { return knows(node, action); }))
        return ItemFailure{u"not-possible"_s, u"\"%1\" does not know this action."_s.arg(label)};
    // A parent comes before its children in the tree, but not always on the screen.
    std::stable_sort(matches.begin(), matches.end(), [](const TreeNode *left, const TreeNode *right) {
        return std::pair(left->rectangle.top(), left->rectangle.left())
            < std::pair(right->rectangle.top(), right->rectangle.left());
    });
    if (std::size_t(choice.number) > matches.size()) {
        const QString there
            = matches.size() == 1 ? u"is only one item"_s : u"are only %1 items"_s.arg(matches.size());
        return ItemFailure{u"no-such-item"_s, u"There %1 called \"%2\"."_s.arg(there, label)};
    }
    const TreeNode &node = *matches.at(std::size_t(choice.number - 1));
    if (!node.enabled)
        return ItemFailure{u"not-possible"_s, u"\"%1\" is disabled."_s.arg(label)};
    if (node.press)
        node.press();
    else
        accessibleInterface(node.item)->actionInterface()->doAction(actionName(node, action));
    return std::nullopt;
}

} // namespace lindenreed::device
