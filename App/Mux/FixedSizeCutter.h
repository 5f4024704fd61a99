// Audio without heads: PCM and G.711, cut into frames of one size.
#ifndef FRAMESIFT_APP_MUX_FIXEDSIZECUTTER_H
#define FRAMESIFT_APP_MUX_FIXEDSIZECUTTER_H

#include "Mux/CutWindow.h"
#include "Mux/UnitCutter.h"

namespace Marvane::FrameSift {

struct RAW_AUDIO
{
    uint32_t nSamplesPerSec = 8000;
    uint32_t nChannels = 1;
    uint32_t nBitsPerSample = 8;
    uint32_t nFrameSize = 0; // in bytes; 0: 20 ms
};

// The last frame has what is left.
class CFixedSizeCutter : public CUnitCutter
{
public:
    explicit CFixedSizeCutter(const RAW_AUDIO& format);
    void Feed(std::span<const uint8_t> bytes) override;
    void Finish() override;

private:
    void DeliverUpTo(uint64_t nEnd);

    RAW_AUDIO m_format;
    CCutWindow m_window;
};

} // namespace Marvane::FrameSift

#endif
