// Threads that are there before they are needed.

#pragma once

class QThreadPool;

namespace lindenreed::picture_stand {

/// Starts so many of the pool's threads, which stay from now on. One that starts later needs a handle, and
/// where there is none left, Qt's event loops end the program. The pool has to outlive them.
void startLastingThreads(QThreadPool &pool, int count);

} // namespace lindenreed::picture_stand
