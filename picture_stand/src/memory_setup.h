// How the process takes memory from the system.

#pragma once

namespace lindenreed::picture_stand {

/// Limits what one picture may take, and has memory of pictures go back to the system as soon as it is free.
/// To be called before there are threads.
void setUpMemory();

/// Gives the system what lies free between the blocks of the heaps; by itself only their ends go back.
/// Whoever takes memory meanwhile waits, for a few milliseconds at most. Any thread.
void giveFreeMemoryBack();

} // namespace lindenreed::picture_stand
