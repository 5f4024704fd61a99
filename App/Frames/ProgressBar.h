// How far a long listing has come, on standard error.
#ifndef FRAMESIFT_APP_FRAMES_PROGRESSBAR_H
#define FRAMESIFT_APP_FRAMES_PROGRESSBAR_H

#include <cstdint>

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
    uint64_t m_nTotal;
    bool m_bShown;
    uint64_t m_nPercent = UINT64_MAX; // on the screen
};

} // namespace Marvane::FrameSift

#endif
