// By which curve pictures are dithered for the device's panel.

#pragma once

#include <level_curve.h>

#include <optional>

namespace lindenreed::device {

/// That of even levels until a device with other ones has started. Never freed. Any thread.
const pixels::LevelCurve &levelCurve();

/// Nothing: even levels. Main thread.
void setLevelLuminances(const std::optional<pixels::Luminances> &luminances);

} // namespace lindenreed::device
