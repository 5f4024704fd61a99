#include <algorithm>

#include "Mux/FamilyTable.h"
#include "Mux/OldPicture.h"
#include "Mux/OldRecording.h"

namespace Marvane::FrameSift {

namespace {

constexpr PICTURE_SIZE sc_largest = {1008, 2032};
constexpr uint32_t sc_step = 16;
constexpr size_t sc_leastBlocks = 6; // the sixth decides what the stream is: without it nobody sees the pictures
// Behind the last picture: a start code, which ends it, and so much that a reader looks at a picture of a few bytes too.
constexpr size_t sc_endSize = 100;

} // namespace

CHbRecording::CHbRecording(const MUX_OPTIONS& options) : COldRecording(options, OLD_AUDIO_HEAD::Long)
{
    RequireOldRate(options.rate, Family());
    m_picture.nFrameRate = static_cast<int32_t>(options.rate.nValue / options.rate.nDenominator);
}

void CHbRecording::RequireVideo(const MediaUnit& unit) const
{
    RequireOldSize(unit, sc_step, sc_largest, Family());
}

Bytes CHbRecording::Video(const MediaUnit& unit, const UNIT_PLACE& place)
{
    m_picture.nWidth = static_cast<int32_t>(unit.nWidth);
    m_picture.nHeight = static_cast<int32_t>(unit.nHeight);
    m_picture.nSeconds = static_cast<uint32_t>(TimeToClock(TimeAt(Options().nStart, place.nDueMs)) / 1000);
    m_pending.insert(m_pending.end(), unit.payload.begin(), unit.payload.end());
    return TakeBlocks();
}

Bytes CHbRecording::TakeBlocks()
{
    Bytes blocks;
    size_t nTaken = 0;
    for (; m_pending.size() - nTaken >= gsk_hbBlockPayload; nTaken += gsk_hbBlockPayload) {
        const Bytes block = HbBlock(m_picture, ++m_nBlocks, std::span(m_pending).subspan(nTaken, gsk_hbBlockPayload));
        blocks.insert(blocks.end(), block.begin(), block.end());
    }
    m_pending.erase(m_pending.begin(), m_pending.begin() + static_cast<ptrdiff_t>(nTaken));
    return blocks;
}

Bytes CHbRecording::End()
{
    const size_t nData = m_pending.size();
    const size_t nLeast = sc_leastBlocks - std::min<size_t>(m_nBlocks, sc_leastBlocks);
    const size_t nBlocks = std::max((nData + sc_endSize + gsk_hbBlockPayload - 1) / gsk_hbBlockPayload, nLeast);
    m_pending.resize(nBlocks * gsk_hbBlockPayload, 0);
    m_pending[nData + 2] = 1; // 00 00 01 B0
    m_pending[nData + 3] = 0xB0;
    return TakeBlocks() + LegacyEndMark();
}

} // namespace Marvane::FrameSift
