// By which tone and curve pictures are made ready for the device's panel.

#pragma once

#include <level_curve.h>
#include <tone.h>

#include <optional>

namespace lindenreed::device {

/// That of even levels until a device with other ones has started. Never freed. Any thread.
const pixels::LevelCurve &levelCurve();

/// The same for pictures that the screen inverts once more. Never freed. Any thread.
const pixels::LevelCurve &invertedLevelCurve();

/// The tone of thumbnails and of colour panels: pixels::panelTone, or no change at all where the levels were
/// measured. Their curve makes up for the panel entirely; both together would be too light. Any thread.
pixels::Tone defaultTone();

/// Nothing: even levels. Main thread.
void setLevelLuminances(const std::optional<pixels::Luminances> &luminances);

} // namespace lindenreed::device
