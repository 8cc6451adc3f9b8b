#include "error_output.h"

#include <csignal>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lindenreed::picture_stand {

void setUpErrorOutput()
{
    std::signal(SIGPIPE, SIG_IGN); // a reader that has gone does not end a show

    struct stat status = {};
    if (fstat(STDERR_FILENO, &status) != 0 || !S_ISFIFO(status.st_mode))
        return;
    // Opened anew, because a change of flags would reach all who share the descriptor: the shell and its
    // other commands, say.
    const int descriptor = open("/proc/self/fd/2", O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return;
    dup2(descriptor, STDERR_FILENO);
    close(descriptor);
}

} // namespace lindenreed::picture_stand
