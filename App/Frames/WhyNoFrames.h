// What to say of an input that shows no frames.
#ifndef FRAMESIFT_APP_FRAMES_WHYNOFRAMES_H
#define FRAMESIFT_APP_FRAMES_WHYNOFRAMES_H

#include <cstdint>
#include <span>
#include <string>

namespace Marvane::FrameSift {

// The first bytes of an input, in whatever chunks they come.
class CInputStart
{
public:
    void Take(std::span<const uint8_t> chunk);
    // "no known stream format in 5000 bytes", and what would help, if the bytes give a hint.
    std::string NoFormatText(uint64_t nBytes) const;

private:
    uint32_t m_nWord = 0;
    uint32_t m_nTaken = 0;
};

// Whether it takes a frame to call the input a stream of this type. The first word of an input is enough for the detector
// to see the older formats, and it may stand there by chance.
bool NeedsFrame(int32_t nStreamType, bool bFixedType);
// "no frame of a stream of type old (194) in 5000 bytes".
std::string NoFrameText(int32_t nStreamType, uint64_t nBytes);

} // namespace Marvane::FrameSift

#endif
