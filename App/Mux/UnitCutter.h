// An elementary stream, cut into the pieces that become frames.
#ifndef FRAMESIFT_APP_MUX_UNITCUTTER_H
#define FRAMESIFT_APP_MUX_UNITCUTTER_H

#include <cstdint>
#include <deque>
#include <span>
#include <vector>

namespace Marvane::FrameSift {

// In the order of strength: a picture is what its weakest slice is.
enum class UNIT_KIND : uint8_t
{
    Audio,
    I,
    P,
    B
};

// One access unit: a coded picture or field with all that belongs to it, or one frame of audio.
struct MediaUnit
{
    std::vector<uint8_t> payload;
    uint64_t nOffset = 0; // in the elementary stream
    UNIT_KIND eKind = UNIT_KIND::Audio;
    bool bKey = false; // a decoder can start here

    uint32_t nWidth = 0; // in pixels, cropped; 0: the stream has not said yet
    uint32_t nHeight = 0;

    uint32_t nSamplesPerSec = 0;
    uint32_t nChannels = 0;   // 0: not known
    uint32_t nBitsPerSec = 0; // 0: not known
    uint32_t nSamples = 0;    // of each channel
};

// A unit longer than this could not be found again: the reader of a recording believes in frames of up to 10 MiB, and
// head, extension heads (255 bytes at most) and tail take from that.
inline constexpr size_t gsk_maxUnitSize = size_t{10} * 1024 * 1024 - 24 - 255 - 8;

// Give it the stream in pieces of any size, and take the units as they become whole. Holds two units and one piece at
// most.
class CUnitCutter
{
public:
    virtual ~CUnitCutter() = default;
    // Throws CAppError for a unit above gsk_maxUnitSize.
    virtual void Feed(std::span<const uint8_t> bytes) = 0;
    virtual void Finish() = 0;

    bool Take(MediaUnit& unit);
    uint64_t SkippedBytes() const { return m_nSkipped; } // those that belong to no unit

protected:
    void Deliver(MediaUnit&& unit);
    void CountSkipped(uint64_t nBytes) { m_nSkipped += nBytes; }

private:
    std::deque<MediaUnit> m_units;
    uint64_t m_nSkipped = 0;
};

} // namespace Marvane::FrameSift

#endif
