// Acting on an item by its name, as assistive input does.

#pragma once

#include <QString>

#include <optional>

namespace lindenreed::device {

class PlatformScreen;
class StatusPanel;

enum class ItemAction { Press, Increase, Decrease };

/// Which item: by exact name, or by QML id; the n-th, from 1, in reading order, of those that know the
/// action.
struct ItemChoice
{
    QString name;
    QString id; ///< used where it is not empty
    int number = 1;
};

/// Why an action was not carried out: an error code of the control protocol, and a sentence.
struct ItemFailure
{
    QString code;
    QString message;
};

/// Carries out the action before it returns; nothing on success. An item that is disabled, wholly covered, or
/// behind a dialog or an open menu, is refused. What is reached without a finger is not told from a tap by
/// the item, so a smaller transparent mouse area above it does not matter.
std::optional<ItemFailure> actOnItem(const PlatformScreen &screen, const StatusPanel &statusPanel,
                                     const ItemChoice &choice, ItemAction action);

} // namespace lindenreed::device
