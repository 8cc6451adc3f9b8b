// How the process takes memory from the system.

#pragma once

namespace lindenreed::picture_stand {

/// Has memory of pictures go back to the system as soon as it is free. To be called before there are threads.
void setUpMemory();

} // namespace lindenreed::picture_stand
