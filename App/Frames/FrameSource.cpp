#include "Frames/FrameSource.h"

#include <new>

#include "Frames/AnnouncedSize.h"
#include "StreamAnalzyer/OldStream/LegacyWords.h"
#include "Tools/BufferRead.h"

namespace Marvane::FrameSift {

namespace {

constexpr int sc_magicSize = 4;

bool IsOldFormat(int32_t nStreamType)
{
    return nStreamType == KX_STREAM_TYPE_OLD || nStreamType == KX_STREAM_TYPE_MPEG4;
}

} // namespace

CFrameSource::CFrameSource(int32_t nType) : CStreamAnalyzer(0)
{
    if (InitEx(nType) != KX_SUCCESS)
        throw std::bad_alloc();
}

int CFrameSource::SetKey(std::span<const uint8_t> key)
{
    return SetExtInfo(KX_ENCRYPT_AES, key.data(), static_cast<int>(key.size()));
}

int CFrameSource::Feed(std::span<uint8_t> chunk)
{
    m_notes.clear(); // as the analyzer drops the frames of the chunk before
    const int nResult = ParseData(chunk.data(), static_cast<int>(chunk.size()));
    return m_bOutOfMemory ? int{KX_ERROR_SYSTEM_OUT_OF_MEMORY} : nResult;
}

int CFrameSource::Flush()
{
    const int nResult = FlushBuffer();
    if (nResult == KX_SUCCESS && GetStreamType() == KX_STREAM_TYPE_MPEG4)
        m_nAppended = sc_magicSize; // a border, which closed the last picture
    return m_bOutOfMemory ? int{KX_ERROR_SYSTEM_OUT_OF_MEMORY} : nResult;
}

bool CFrameSource::Next(LISTED_FRAME& listed)
{
    ExtZOAVIFrameInfo ext = {};
    FrameInfo frame = {};
    if (m_notes.empty() || GetOneFrame(&frame, &ext) != KX_SUCCESS)
        return false;
    listed = m_notes.front();
    m_notes.pop_front();
    listed.frame = frame;
    listed.nStreamType = GetStreamType();
    return true;
}

uint64_t CFrameSource::UnfinishedBytes()
{
    uint8_t* pKept = nullptr;
    int nKept = 0;
    if (m_logicData.GetRemainData(&pKept, &nKept) != KX_SUCCESS)
        return 0;
    nKept -= m_nAppended;
    // So many are kept in any case, lest a magic be split: in the ZOAV family no frame has begun in them.
    const bool bIsMagic = nKept == sc_magicSize && IsOldFormat(GetStreamType()) && LoadUint32Msb(pKept) == sc_wordAudio;
    return nKept > sc_magicSize || bIsMagic ? static_cast<uint64_t>(nKept) : 0;
}

int CFrameSource::OnFrame(FrameInfo* frame, ExtZOAVIFrameInfo* ext, void* userData)
{
    LISTED_FRAME note;
    note.parsed = *frame;
    note.nInnerType = GetInnerType();
    note.nFrameOffset = m_nLastEnd;
    note.nPayloadOffset = m_nLastEnd;
    // A record of frames that were lost has no bytes, and the window still tells of the frame before it.
    const bool bHasBytes = frame->frameLen > 0;
    if (bHasBytes && m_logicData.GetKeyPos(note.nPayloadOffset, note.nFrameOffset) == KX_SUCCESS)
        m_nLastEnd = note.nFrameOffset + frame->frameLen;
    TakeAnnouncedSize(note);
    try {
        m_notes.push_back(note);
    } catch (const std::bad_alloc&) {
        m_bOutOfMemory = true; // no exception may pass through the scan
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    }
    const int nResult = CStreamAnalyzer::OnFrame(frame, ext, userData);
    if (nResult != KX_SUCCESS) {
        m_notes.pop_back();
        m_bOutOfMemory = true;
    }
    return nResult;
}

} // namespace Marvane::FrameSift
