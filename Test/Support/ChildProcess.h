// Runs part of a test in a process of its own, for code with state that lasts as long as its process.
#ifndef FRAMESIFT_TEST_SUPPORT_CHILDPROCESS_H
#define FRAMESIFT_TEST_SUPPORT_CHILDPROCESS_H

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace Marvane::FrameSift {

struct ChildResult
{
    int nExitCode = -1; // -1 if a signal ended it
    std::string output; // what it wrote to standard output
};

// body answers the exit code; failed expectations in it go unseen. No other thread may run meanwhile.
template <typename Body>
ChildResult RunInChild(Body body)
{
    ChildResult result;
    int ends[2] = {};
    std::fflush(nullptr); // what is still in the buffers would be written by both processes
    if (pipe(ends) != 0)
        return result;
    const pid_t nChild = fork();
    if (nChild == 0) {
        alarm(120); // a hanging child must not hang the test
        dup2(ends[1], STDOUT_FILENO);
        close(ends[0]);
        close(ends[1]);
        std::exit(body()); // not _exit: sanitizers and coverage report on the way out
    }
    close(ends[1]);
    char buffer[4096];
    for (ssize_t nRead = 0; (nRead = read(ends[0], buffer, sizeof buffer)) > 0;)
        result.output.append(buffer, static_cast<size_t>(nRead));
    close(ends[0]);
    int nStatus = 0;
    if (nChild > 0 && waitpid(nChild, &nStatus, 0) == nChild && WIFEXITED(nStatus))
        result.nExitCode = WEXITSTATUS(nStatus);
    return result;
}

} // namespace Marvane::FrameSift

#endif
