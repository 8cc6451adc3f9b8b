// Where the process tells what happens to it.

#pragma once

namespace lindenreed::picture_stand {

/// A pipe on standard error holds nobody up from here on: what does not fit into it while its reader stalls
/// is lost, line by line. One whose reader has gone ends nothing. Whoever else writes into the pipe goes on
/// as before. To be called before there are threads.
void setUpErrorOutput();

} // namespace lindenreed::picture_stand
