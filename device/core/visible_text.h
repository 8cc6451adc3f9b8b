// Texts of strangers within a message to people.

#pragma once

#include <QString>

namespace lindenreed::device {

/// The text with its control characters and line separators as "\n", "\x1b", "\u2028": a message stays one
/// line, and does not steer the terminal that it is shown on.
QString visibleText(const QString &text);

} // namespace lindenreed::device
