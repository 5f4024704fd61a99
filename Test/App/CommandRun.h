// Runs the real command as a user does.
#ifndef FRAMESIFT_TEST_APP_COMMANDRUN_H
#define FRAMESIFT_TEST_APP_COMMANDRUN_H

#include <string>

namespace Marvane::FrameSift {

struct CommandResult
{
    int nExitCode = -1; // -1 if a signal ended it
    std::string output; // what it wrote to standard output
    std::string errors; // and to standard error
};

// arguments: as a shell takes them, redirections included. "$" cannot stand in them.
CommandResult RunFramesift(const std::string& arguments);

} // namespace Marvane::FrameSift

#endif
