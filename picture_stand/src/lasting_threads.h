// Threads that are there before they are needed.

#pragma once

class QThreadPool;

namespace lindenreed::picture_stand {

/// Starts all threads that the pool may have, which stay from now on. One that starts later needs a handle,
/// and where there is none left, Qt's event loops end the program. The pool has to outlive them; where its
/// jobs call releaseThread(), it lets threads go and starts others.
void startLastingThreads(QThreadPool &pool);

} // namespace lindenreed::picture_stand
