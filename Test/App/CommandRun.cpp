#include "App/CommandRun.h"

#include <sys/wait.h>

#include <cstdlib>

#include "Support/TempDirectory.h"

namespace Marvane::FrameSift {

CommandResult RunFramesift(const std::string& arguments)
{
    const TempDirectory directory;
    const std::string output = directory.Path() + "/output";
    const std::string errors = directory.Path() + "/errors";
    // The redirections stand first, so that those of the arguments win.
    const std::string line = std::string(">") + output + " 2>" + errors + " " FRAMESIFT_COMMAND " " + arguments;
    const int nStatus = std::system(line.c_str());
    CommandResult result;
    if (WIFEXITED(nStatus))
        result.nExitCode = WEXITSTATUS(nStatus);
    result.output = ReadText(output);
    result.errors = ReadText(errors);
    return result;
}

} // namespace Marvane::FrameSift
