// What the frames are coded as, and where that changes.
#ifndef FRAMESIFT_APP_INFO_FORMATWATCH_H
#define FRAMESIFT_APP_INFO_FORMATWATCH_H

#include <cstdint>
#include <map>
#include <vector>

#include "Frames/FrameSource.h"

namespace Marvane::FrameSift {

struct VIDEO_FORMAT
{
    int32_t nCodec = 0;
    int32_t nWidth = 0; // 0: not known
    int32_t nHeight = 0;
    int32_t nFrameRate = 0; // as announced, a second; 0: not known
    bool operator==(const VIDEO_FORMAT&) const = default;
};

struct AUDIO_FORMAT
{
    int32_t nCodec = 0;
    int32_t nSampleRate = 0;
    int32_t nChannels = 0;
    int32_t nBits = 0;
    bool operator==(const AUDIO_FORMAT&) const = default;
};

// The first frame of a format.
template <class FORMAT>
struct FORMAT_START
{
    FORMAT format;
    int64_t nOffset = 0;
    KX_TIME time = {};
    uint8_t nChannel = 0; // of a stream of several; each has formats of its own
};

template <class FORMAT>
class CFormatWatch
{
public:
    void Follow(const FORMAT& format, const LISTED_FRAME& listed)
    {
        const uint8_t nChannel = listed.parsed.curChannel;
        const auto [place, bFirst] = m_last.try_emplace(nChannel, format);
        if (!bFirst && place->second == format)
            return;
        place->second = format;
        m_nChanges += bFirst ? 0 : 1;
        constexpr size_t sc_mostStarts = 1000; // a recording that is noise must not fill the memory
        if (m_starts.size() < sc_mostStarts)
            m_starts.push_back({format, listed.nFrameOffset, KX_TIME(listed.parsed.frameTime), nChannel});
        else
            ++m_nLeftOut;
    }

    bool HasSeen(uint8_t nChannel) const { return m_last.count(nChannel) > 0; }
    const std::vector<FORMAT_START<FORMAT>>& Starts() const { return m_starts; }
    uint64_t Changes() const { return m_nChanges; } // the first format of a channel is none
    uint64_t LeftOut() const { return m_nLeftOut; } // of the starts

private:
    std::map<uint8_t, FORMAT> m_last; // by channel
    std::vector<FORMAT_START<FORMAT>> m_starts;
    uint64_t m_nChanges = 0;
    uint64_t m_nLeftOut = 0;
};

} // namespace Marvane::FrameSift

#endif
