#include "Frames/FrameSource.h"

#include <new>

namespace Marvane::FrameSift {

CFrameSource::CFrameSource() : CStreamAnalyzer(0)
{
    if (Init() != KX_SUCCESS)
        throw std::bad_alloc();
}

int CFrameSource::Feed(std::span<uint8_t> chunk)
{
    m_places.clear(); // as the analyzer drops the frames of the chunk before
    const int nResult = ParseData(chunk.data(), static_cast<int>(chunk.size()));
    return m_bOutOfMemory ? int{KX_ERROR_SYSTEM_OUT_OF_MEMORY} : nResult;
}

bool CFrameSource::Next(LISTED_FRAME& listed)
{
    ExtZOAVIFrameInfo ext = {};
    listed.frame = FrameInfo();
    if (m_places.empty() || GetOneFrame(&listed.frame, &ext) != KX_SUCCESS)
        return false;
    const FRAME_PLACE place = m_places.front();
    m_places.pop_front();
    listed.nStreamType = GetStreamType();
    listed.nFrameOffset = place.nFrameOffset;
    listed.nPayloadOffset = place.nPayloadOffset;
    return true;
}

uint64_t CFrameSource::UnfinishedBytes()
{
    constexpr int nScanTail = 4; // kept in any case, lest a magic be split; no frame has begun in them
    uint8_t* pKept = nullptr;
    int nKept = 0;
    if (m_logicData.GetRemainData(&pKept, &nKept) != KX_SUCCESS || nKept <= nScanTail)
        return 0;
    return static_cast<uint64_t>(nKept);
}

int CFrameSource::OnFrame(FrameInfo* frame, ExtZOAVIFrameInfo* ext, void* userData)
{
    FRAME_PLACE place = {m_nLastEnd, m_nLastEnd};
    // A record of frames that were lost has no bytes, and the window still tells of the frame before it.
    const bool bHasBytes = frame->frameLen > 0;
    if (bHasBytes && m_logicData.GetKeyPos(place.nPayloadOffset, place.nFrameOffset) == KX_SUCCESS)
        m_nLastEnd = place.nFrameOffset + frame->frameLen;
    try {
        m_places.push_back(place);
    } catch (const std::bad_alloc&) {
        m_bOutOfMemory = true; // no exception may pass through the scan
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    }
    const int nResult = CStreamAnalyzer::OnFrame(frame, ext, userData);
    if (nResult != KX_SUCCESS) {
        m_places.pop_back();
        m_bOutOfMemory = true;
    }
    return nResult;
}

} // namespace Marvane::FrameSift
