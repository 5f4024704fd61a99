#include "Check/TailScan.h"

#include <algorithm>
#include <new>
#include <span>
#include <utility>

#include "Memory/LogicData.h"
#include "Tools/BufferRead.h"

namespace Marvane::FrameSift {

namespace {

constexpr size_t sc_magicSize = 4;
constexpr size_t sc_blockHeadSize = 8;
constexpr size_t sc_headLengthAt = 12;
// The parser asks for twice a head before it looks at one. The padding gives it that, and completes no frame: a length
// whose high byte it would be is out of range, and it is part of no magic.
constexpr size_t sc_paddingSize = 48;
constexpr uint8_t sc_padding = 0x11;

size_t HeadSizeOf(uint32_t nMagic)
{
    if (nMagic == gsk_zoiiMagic)
        return sc_blockHeadSize;
    return IfZavHeaderBigEndian(nMagic) ? size_t{gsk_stdFrameHeadSize} : sc_magicSize;
}

uint32_t LoadMagic(const uint8_t* pBytes)
{
    return __builtin_bswap32(LoadUint32Lsb(pBytes));
}

// One to three bytes that a head could begin with.
bool IsPartOfMagic(std::span<const uint8_t> bytes)
{
    if (bytes.empty() || bytes.size() >= sc_magicSize)
        return false;
    uint32_t nWord = 0;
    for (const uint8_t nByte : bytes)
        nWord = nWord << 8 | nByte;
    const auto nShift = static_cast<uint32_t>(8 * (sc_magicSize - bytes.size()));
    for (const uint32_t nMagic : gsk_zavHeaders) {
        if (nMagic >> nShift == nWord)
            return true;
    }
    return false;
}

} // namespace

CTailScan::CTailScan()
{
    // What the numbers leave out is looked at for the whole file, not here.
    m_parser.SetCallBackUserData(reinterpret_cast<void*>(intptr_t{CALLBACK_USE_BASE_FRAME}));
}

void CTailScan::Scan(std::vector<uint8_t> tail, int64_t nOffset, CFrameAccount& account)
{
    m_tail = std::move(tail);
    m_nSize = m_tail.size();
    m_nOffset = nOffset;
    m_tail.insert(m_tail.end(), sc_paddingSize, sc_padding);
    CLogicData window;
    if (window.JoinData(m_tail.data(), static_cast<int>(m_tail.size())) != KX_SUCCESS)
        throw std::bad_alloc();
    for (size_t nPos = 0; nPos + sc_magicSize <= m_nSize;) {
        if (!m_parser.CheckFrameID(static_cast<int>(LoadMagic(&m_tail[nPos])))) {
            ++nPos;
            continue;
        }
        const STEP step = JudgeMagic(window, nPos);
        if (step.bWaits)
            account.TakeWaiting(DescribeWaiting(nPos));
        else
            account.Take(step.frame, nOffset + static_cast<int64_t>(nPos));
        nPos += step.nLength;
    }
    const auto nFramesEnd = static_cast<size_t>(std::max<int64_t>(account.End() - nOffset, 0));
    if (IsPartOfMagic(std::span(m_tail).first(m_nSize).subspan(nFramesEnd)))
        account.TakeWaiting({nOffset + static_cast<int64_t>(nFramesEnd), 0});
}

CTailScan::STEP CTailScan::JudgeMagic(CLogicData& window, size_t nPos)
{
    STEP step;
    if (m_nSize - nPos < HeadSizeOf(LoadMagic(&m_tail[nPos]))) {
        step.bWaits = true;
        return step;
    }
    const auto nFramePos = static_cast<int>(nPos);
    ExtZOAVIFrameInfo ext = {};
    m_parser.DoInit(); // drops what it has copied of the frame before
    if (!m_parser.BuildFrame(&window, nFramePos, step.frame, ext)) {
        step.bWaits = true;
        return step;
    }
    if (step.frame.errorFlags == KX_ERROR_FLAGS_NOERROR)
        m_parser.FrameVerify(&window, nFramePos, step.frame, ext);
    const auto nLength = static_cast<size_t>(step.frame.frameLen);
    // A block may be stepped over that ends behind the file.
    step.bWaits = nLength > m_nSize - nPos || EndsInPadding(step.frame, nPos);
    if (!step.bWaits)
        step.nLength = nLength;
    return step;
}

// The head is believed, or it would have no kind, but it is the padding that its tail was looked for in.
bool CTailScan::EndsInPadding(const FrameInfo& frame, size_t nPos) const
{
    if (frame.errorFlags != KX_ERROR_FLAGS_LENGTH || frame.frameType == KX_FRAME_TYPE_UNKNOWN)
        return false;
    const size_t nAnnounced = LoadUint32Lsb(&m_tail[nPos + sc_headLengthAt]);
    return nAnnounced > m_nSize - nPos && nAnnounced <= m_tail.size() - nPos;
}

UNFINISHED_FRAME CTailScan::DescribeWaiting(size_t nPos) const
{
    UNFINISHED_FRAME waiting;
    waiting.nOffset = m_nOffset + static_cast<int64_t>(nPos);
    const uint32_t nMagic = LoadMagic(&m_tail[nPos]);
    const size_t nLengthAt = nPos + (nMagic == gsk_zoiiMagic ? sc_magicSize : sc_headLengthAt);
    if (m_nSize - nPos >= HeadSizeOf(nMagic))
        waiting.nAnnounced = LoadUint32Lsb(&m_tail[nLengthAt]);
    return waiting;
}

} // namespace Marvane::FrameSift
