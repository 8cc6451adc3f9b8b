// Limits of the control protocol's arguments, for the device that enforces them and for clients that tell
// them early.

#pragma once

namespace lindenreed::remote {

inline constexpr int longestHoldMs = 60'000;
inline constexpr int mostDragSteps = 1'000;
inline constexpr int longestQuietMs = 20'000; ///< of "idle"; well below the watcher's patience of 30 s

} // namespace lindenreed::remote
