#include "facts.h"

#include <type_traits>

namespace lindenreed::device {

namespace {

// Read from static constructors and destructors of any library: needs neither code to begin nor to end.
constinit Facts theFacts;
static_assert(std::is_trivially_destructible_v<Facts>);

} // namespace

Facts &facts()
{
    return theFacts;
}

} // namespace lindenreed::device
