// The computer's own battery.

#pragma once

#include <QString>

#include <optional>

namespace lindenreed::device {

/// Charge in percent, 0 to 100, of the first battery that feeds the whole computer, as the kernel tells it
/// below `folder`; nothing where there is none. Batteries of mice and keyboards do not count.
std::optional<int> batteryCharge(const QString &folder = QStringLiteral("/sys/class/power_supply"));

} // namespace lindenreed::device
