// The whole command, behind main.
#ifndef FRAMESIFT_APP_COMMAND_H
#define FRAMESIFT_APP_COMMAND_H

namespace Marvane::FrameSift {

// Answers the exit code. Throws nothing.
int RunCommand(int nArguments, char** pArguments);

} // namespace Marvane::FrameSift

#endif
