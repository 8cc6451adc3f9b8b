/* The last step into the sandbox: takes the program's own standard error back from the launcher, which until here
 * reads what the sandbox has to say, tells the launcher that the sandbox stands, and becomes the program.
 * Plain C without libraries, because every start goes through it.
 *
 * slate-enter DESCRIPTOR PROGRAM [ARGUMENT...] */

#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

int main(int argc, char **argv)
{
    if (argc < 3)
        return 2;
    const int standardError = atoi(argv[1]);
    const char standing = '\0';
    if (write(STDERR_FILENO, &standing, 1) != 1)
        return 2;
    if (dup2(standardError, STDERR_FILENO) < 0)
        return 2;
    fcntl(standardError, F_SETFD, FD_CLOEXEC);
    unsetenv("PWD"); /* set by the sandbox; the program's environment is the launcher's alone */
    execv(argv[2], argv + 2);
    fprintf(stderr, "slate-run: %s cannot be started: %s\n", argv[2], strerror(errno));
    return 2;
}
