// How far a long pass has come, on standard error.
#ifndef FRAMESIFT_APP_FRAMES_PROGRESSBAR_H
#define FRAMESIFT_APP_FRAMES_PROGRESSBAR_H

#include <chrono>
#include <cstdint>
#include <string>

namespace Marvane::FrameSift {

class CProgressBar
{
public:
    // nTotal: size of the input, 0 if it is not known. Stays silent for a small input, if standard error is no
    // terminal, and if the listing goes to the same terminal.
    CProgressBar(uint64_t nTotal, bool bListingOnTerminal);
    ~CProgressBar(); // takes the bar away
    CProgressBar(const CProgressBar&) = delete;
    CProgressBar& operator=(const CProgressBar&) = delete;

    void Update(uint64_t nDone);

private:
    using CLOCK = std::chrono::steady_clock;

    uint64_t m_nTotal;
    bool m_bShown;
    CLOCK::time_point m_begin = CLOCK::now();
    CLOCK::time_point m_drawn; // the epoch, long ago: the first update draws
};

// Bar, percentage, rate and the time that is left at this rate; both are left out until there is one.
std::string ProgressText(uint64_t nDone, uint64_t nTotal, double dSeconds);

} // namespace Marvane::FrameSift

#endif
