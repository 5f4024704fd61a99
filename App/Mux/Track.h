// One elementary stream on its way into a recording: its next unit, and when that is due.
#ifndef FRAMESIFT_APP_MUX_TRACK_H
#define FRAMESIFT_APP_MUX_TRACK_H

#include <optional>
#include <string_view>

#include "Mux/UnitSource.h"

namespace Marvane::FrameSift {

// Pictures in a second, as a fraction: 30000/1001 has no finite decimal.
struct FRAME_RATE
{
    uint32_t nValue = 25;
    uint32_t nDenominator = 1;
};

// "25" or "30000/1001". Nothing for another form, or for a rate that the wire cannot carry: both numbers are 1 to
// 65535, and the rate at most 255.
std::optional<FRAME_RATE> ParseFrameRate(std::string_view text);

struct PICTURE_SIZE
{
    uint32_t nWidth = 0;
    uint32_t nHeight = 0;
};

// "640x480"; both numbers 1 to 65535.
std::optional<PICTURE_SIZE> ParsePictureSize(std::string_view text);

class CTrack
{
public:
    explicit CTrack(CUnitSource& source) : m_source(source) {}
    virtual ~CTrack() = default;

    // The unit that is due next; null at the end.
    const MediaUnit* Front();
    uint64_t DueMs() const { return m_nDueUs / 1000; } // when Front is due, since the start of the recording
    void Pop();

    uint32_t Units() const { return m_nUnits; } // popped so far
    uint32_t KeyUnits() const { return m_nKeyUnits; }
    uint32_t LeftOut() const { return m_nLeftOut; }
    const CUnitSource& Source() const { return m_source; }

protected:
    // False leaves the unit out. May complete it.
    virtual bool Accept(MediaUnit& unit) = 0;
    // When the unit behind this one is due, in microseconds.
    virtual uint64_t DueAfter(const MediaUnit& unit) = 0;

private:
    CUnitSource& m_source;
    MediaUnit m_unit;
    bool m_bFront = false;
    uint64_t m_nDueUs = 0;
    uint32_t m_nUnits = 0;
    uint32_t m_nKeyUnits = 0;
    uint32_t m_nLeftOut = 0;
};

// Units follow each other at a fixed rate in the order of the stream. Those whose size is not known are left out.
class CVideoTrack : public CTrack
{
public:
    CVideoTrack(CUnitSource& source, FRAME_RATE rate, std::optional<PICTURE_SIZE> size);

private:
    bool Accept(MediaUnit& unit) override;
    uint64_t DueAfter(const MediaUnit& unit) override;

    FRAME_RATE m_rate;
    std::optional<PICTURE_SIZE> m_size;
};

// Each unit lasts as long as its samples.
class CAudioTrack : public CTrack
{
public:
    using CTrack::CTrack;

private:
    bool Accept(MediaUnit& unit) override;
    uint64_t DueAfter(const MediaUnit& unit) override;

    uint64_t m_nBaseUs = 0; // when the sample rate was last seen to change
    uint64_t m_nSamples = 0;
    uint32_t m_nSamplesPerSec = 0;
};

} // namespace Marvane::FrameSift

#endif
