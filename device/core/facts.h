// The few values of the device that every thread may read.

#pragma once

#include <atomic>

namespace lindenreed::device {

/// What every thread may read. Written by the main thread; values of one moment need not fit together.
/// Before the device starts they are those of the default profile; after it has stopped they stay as they
/// were, but for `running`.
struct Facts
{
    std::atomic<int> width{758}, height{1024}; ///< screen pixels, as turned now, status panel included
    std::atomic<int> dpi{212};
    std::atomic<int> colourMask{0}; ///< 0 on a grey panel
    std::atomic<int> platformNumber{0};
    std::atomic<bool> inverted{false};
    std::atomic<bool> cardPresent{false}, usbPresent{false};
    std::atomic<bool> running{false}; ///< there is a device: the values are a panel's, not the default's
};

/// Constant-initialised and never destroyed: safe from static constructors and destructors.
Facts &facts();

} // namespace lindenreed::device
