#include "ESParse/MPEG2ESParser.h"

#include "ESParse/CodeScan.h"
#include "ESParse/StartCode.h"

namespace Marvane::FrameSift {

namespace {

constexpr bool IsSlice(uint32_t nCode)
{
    return nCode >= MPEG2_FIRST_SLICE && nCode <= MPEG2_LAST_SLICE;
}

// From the code of a picture head on.
int ReadPictureType(CBitsStream& bs)
{
    bs.Skip(32);
    bs.GetBits(10); // temporal_reference
    switch (bs.GetBits(3)) {
    case 1:
        return KX_FRAME_SUB_TYPE_VIDEO_I_FRAME;
    case 2:
        return KX_FRAME_SUB_TYPE_VIDEO_P_FRAME;
    case 3:
        return KX_FRAME_SUB_TYPE_VIDEO_B_FRAME;
    default:
        return KX_FRAME_SUB_TYPE_DATA_INVALID;
    }
}

} // namespace

int CMPEG2ESParser::Parse(const uint8_t* pESBuffer, uint32_t nESBufferLen, FrameInfo& frameInfo)
{
    uint32_t nLastBlock = 0;
    return ScanCodes(pESBuffer, nESBufferLen,
                     [&](CBitsStream& bs, uint32_t nCode) { return ParseCode(bs, nCode, nLastBlock, frameInfo); });
}

std::optional<int> CMPEG2ESParser::ParseCode(CBitsStream& bs, uint32_t nCode, uint32_t& nLastBlock,
                                             FrameInfo& frameInfo)
{
    int nResult = 0;
    switch (nCode) {
    case MPEG2_SEQUENCE:
        bs.Skip(32);
        nResult = ParseSeqBlock(bs, frameInfo);
        break;
    case MPEG2_EXTENSION:
        bs.Skip(32);
        nResult = ParseExtBlock(bs, frameInfo, nLastBlock);
        break;
    case MPEG2_PICTURE:
        frameInfo.frameSubType = ReadPictureType(bs);
        TakeSequence(frameInfo);
        break;
    case MPEG2_USER_DATA:
        bs.Skip(32);
        TakeSequence(frameInfo);
        break;
    default: // nLastBlock keeps its value: a group head may stand between a head and its extension
        bs.Skip(8);
        return IsSlice(nCode) ? std::optional(0) : std::nullopt;
    }
    nLastBlock = nCode;
    return nResult != 0 ? std::optional(nResult) : std::nullopt;
}

int CMPEG2ESParser::GetFrameSubType(const uint8_t* pESBuffer, uint32_t nESBufferLen)
{
    static_assert(gsk_noResult == KX_FRAME_SUB_TYPE_DATA_INVALID);
    return ScanCodes(pESBuffer, nESBufferLen, [](CBitsStream& bs, uint32_t nCode) -> std::optional<int> {
        if (nCode == MPEG2_PICTURE)
            return ReadPictureType(bs);
        if (IsSlice(nCode))
            return KX_FRAME_SUB_TYPE_DATA_INVALID;
        bs.Skip(8);
        return std::nullopt;
    });
}

bool CMPEG2ESParser::IsFullFrame(const uint8_t* pESBuffer, uint32_t nESBufferLen)
{
    if (pESBuffer == nullptr)
        return false;
    const std::span bytes(pESBuffer, nESBufferLen);
    for (size_t nPos = FindStartCode(bytes, 0, 1); nPos < bytes.size(); nPos = FindStartCode(bytes, nPos + 1, 1)) {
        const uint32_t nCode = 0x100U | bytes[nPos + gsk_startCodeLen];
        if (nCode == MPEG2_PICTURE || nCode == MPEG2_FIRST_SLICE || nCode == MPEG2_SEQUENCE ||
            nCode == MPEG2_SEQUENCE_END || nCode == MPEG2_GROUP)
            return true;
    }
    return false;
}

bool CMPEG2ESParser::IsNextFrame(const uint8_t* pESBuffer, uint32_t nESBufferLen)
{
    return IsFullFrame(pESBuffer, nESBufferLen);
}

} // namespace Marvane::FrameSift
