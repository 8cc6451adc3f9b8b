// Limits of the control protocol's arguments, for the device that enforces them and for clients that tell
// them early.

#pragma once

namespace lindenreed::remote {

inline constexpr int longestHoldMs = 60'000;
inline constexpr int mostDragSteps = 1'000;
inline constexpr int longestIdleMs = 30'000; ///< how long "idle" waits for it
inline constexpr int longestQuietMs = 20'000; ///< of "idle"; well below the former

} // namespace lindenreed::remote
