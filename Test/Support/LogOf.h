// What the log says of what a test does.
#ifndef FRAMESIFT_TEST_SUPPORT_LOGOF_H
#define FRAMESIFT_TEST_SUPPORT_LOGOF_H

#include <gtest/gtest.h>

#include <sstream>

#include "Support/ChildProcess.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

// The lines as "warn ParseSPS Out of range.", without what differs from run to run. All that is to be looked at goes into
// one body: it runs in a process of its own, as the log is opened for good, and a process takes long to start. What body
// prints stands between the lines.
template <class Body>
std::string LogOf(Body body, bool bFunctions = true)
{
    const ChildResult run = RunInChild([&] {
        CKXLog::CreateLog("", 0, nullptr, KX_LOG_LevelTrace);
        body();
        return testing::Test::HasFailure() ? 1 : 0;
    });
    EXPECT_EQ(run.nExitCode, 0) << run.output;
    std::string log;
    std::istringstream lines(run.output);
    for (std::string line; std::getline(lines, line);) {
        std::string date, time, level, module, place, thread, function, message;
        std::istringstream words(line);
        words >> date >> time >> level >> module >> place >> thread >> function;
        std::getline(words, message);
        log += (module == "SIFTKIT" ? level + (bFunctions ? " " + function : "") + message : line) + "\n";
    }
    return log;
}

} // namespace Marvane::FrameSift

#endif
