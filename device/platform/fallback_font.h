// Letters that the interface's own font does not have.

#pragma once

#include <QString>

namespace lindenreed::device {

/// Names the font that Han characters and kana come from wherever the interface's own lacks them: one and the
/// same character is drawn differently for Chinese and for Japanese readers. Once, with the device language,
/// before anything is drawn.
void nameFallbackFont(const QString &language);

} // namespace lindenreed::device
