// The program from its first statement to its last.

#pragma once

namespace lindenreed::picture_stand {

/**
 * Everything that the process does, in the one order in which it works: language, application, App.
 *
 * Makes the application object, so there must be none yet. Sets environment variables: to be called before
 * any other thread exists. The process's exit code.
 */
int runProgram(int argc, char **argv);

} // namespace lindenreed::picture_stand
