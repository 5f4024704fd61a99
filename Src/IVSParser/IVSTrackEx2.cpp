// Segments: a head of four bytes each, IVS_SEG_HEAD, and objects of a kind that its type tells.
#include <algorithm>

#include "IVSParser/IVSLaneStore.h"
#include "IVSParser/IVSParser.h"
#include "Tools/BufferRead.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

constexpr uint8_t sc_segTypeA1 = 0xA1;
constexpr uint8_t sc_firstCommonType = 0x40;

struct IVS_SEG_HEAD
{
    uint8_t segType;
    uint8_t reserved;
    uint16_t segLength; // of the whole segment
};
static_assert(sizeof(IVS_SEG_HEAD) == 4);

IVS_SEG_HEAD ReadSegHead(CBufferRead segment)
{
    IVS_SEG_HEAD head{};
    head.segType = segment.ReadInt8();
    head.reserved = segment.ReadInt8();
    head.segLength = segment.ReadInt16();
    return head;
}

// pSegment: the segment and all behind it, nRest bytes.
int ParseSegment(const IVS_SEG_HEAD& head, const uint8_t* pSegment, int nRest, IVSCallBack pCallBack, void* pUserData,
                 IVS_LANE_STORE& store)
{
    const int nLength = std::min<int>(head.segLength, nRest);
    if (head.segType == sc_segTypeA1)
        return ParseIVSTrackA1(pSegment, nLength, nRest, pCallBack, pUserData);
    if (head.segType < sc_firstCommonType) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath, "ParseIVSTrackEx2 invailed segment type = {%d, %d}! \n",
                     int{head.segType}, int{head.segLength});
        return KX_ERROR_IVS_DATA_WRONG;
    }
    return ParseIVSCommonObj(pSegment, nLength, pCallBack, pUserData, store);
}

} // namespace

int ParseIVSTrackEx2(const uint8_t* pFrameBody, int len, IVSCallBack pCallBack, void* pUserData)
{
    CBufferRead pb(pFrameBody, static_cast<uint32_t>(std::max(len, 0)));
    IVS_LANE_STORE store;
    int nRest = len;
    // A head with nothing behind it ends the walk as no data does.
    while (nRest > static_cast<int>(sizeof(IVS_SEG_HEAD))) {
        const IVS_SEG_HEAD head = ReadSegHead(pb);
        // Against the whole length and not against what is left, deliberately: the last segment may be cut off.
        if (head.segLength > len) {
            KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath,
                         "ParseIVSTrackEx2 invailed segment length:%d input data length:%d\n", int{head.segLength},
                         len);
            return KX_ERROR_PARAMETER;
        }
        CBufferRead rest = pb;
        const uint8_t* pSegment = rest.ReadBuffer(static_cast<uint32_t>(nRest));
        const int nResult = ParseSegment(head, pSegment, nRest, pCallBack, pUserData, store);
        if (nResult != KX_SUCCESS)
            return nResult;
        if (head.segLength == 0)
            return KX_ERROR_IVS_DATA_WRONG; // the next segment would be this one again, for ever
        nRest -= std::min<int>(head.segLength, nRest);
        pb.Skip(head.segLength);
    }
    return KX_SUCCESS;
}

} // namespace Marvane::FrameSift
