// What the frames between two key frames take from the first of them.
#include "Memory/TryAlloc.h"
#include "StreamAnalzyer/ZOSTD/ZOAVStream.h"
#include "Tools/FrameHelper.h"

namespace Marvane::FrameSift {

namespace {

// A JPEG frame stands alone: it neither keeps nor inherits.
bool IsBequeather(int32_t nFrameSubType)
{
    return IsIFrameSubType(nFrameSubType) && nFrameSubType != KX_FRAME_SUB_TYPE_VIDEO_JPEG_FRAME;
}

bool IsInheritor(int32_t nFrameSubType)
{
    return nFrameSubType == KX_FRAME_SUB_TYPE_VIDEO_P_FRAME || nFrameSubType == KX_FRAME_SUB_TYPE_VIDEO_B_FRAME ||
           nFrameSubType == KX_FRAME_SUB_TYPE_VIDEO_SMART_P_FRAME;
}

// The key frame's values win, also over heads of the frame's own.
void TakeAttributes(const FrameInfo& from, FrameInfo& to)
{
    to.frameEncodeType = from.frameEncodeType;
    to.deinterlace = from.deinterlace;
    to.width = from.width;
    to.height = from.height;
    to.cropBeforeHeight = from.cropBeforeHeight;
    to.cropBeforeWidth = from.cropBeforeWidth;
    to.frameRate = from.frameRate;
    to.rateDenominator = from.rateDenominator;
    to.rateValue = from.rateValue;
    to.rotationAngle = from.rotationAngle;
    to.nVideoBitDepth = from.nVideoBitDepth;
    to.bPrivacyEnable = from.bPrivacyEnable;
    TakeColour(from, to);
}

} // namespace

int CZOAVStream::FillPFrameByKeyFrameInfo(FrameInfo& frame, ExtZOAVIFrameInfo& ext)
{
    if (frame.frameType != KX_FRAME_TYPE_VIDEO)
        return KX_SUCCESS;
    if (IsBequeather(frame.frameSubType))
        return KeepKeyFrame(frame, ext);
    if (IsInheritor(frame.frameSubType))
        InheritFromKeyFrame(frame, ext);
    return KX_SUCCESS;
}

int CZOAVStream::KeepKeyFrame(const FrameInfo& frame, const ExtZOAVIFrameInfo& ext)
{
    const bool bKept = TryAlloc([&] {
        ZOAV_KEY_FRAME& kept = m_prevIFrameInfoMap[frame.levelOrder];
        kept = {frame, ext};
        m_prevIFrameInfo = &kept;
    });
    return bKept ? KX_SUCCESS : KX_ERROR_SYSTEM_OUT_OF_MEMORY;
}

void CZOAVStream::InheritFromKeyFrame(FrameInfo& frame, ExtZOAVIFrameInfo& ext)
{
    // A level without a key frame of its own takes from whichever came last; before any there is nothing but zeros.
    static constexpr ZOAV_KEY_FRAME sc_none;
    if (const auto level = m_prevIFrameInfoMap.find(frame.levelOrder); level != m_prevIFrameInfoMap.end())
        m_prevIFrameInfo = &level->second;
    const ZOAV_KEY_FRAME& key = m_prevIFrameInfo != nullptr ? *m_prevIFrameInfo : sc_none;
    TakeAttributes(key.frame, frame);
    if (frame.frameSubType == KX_FRAME_SUB_TYPE_VIDEO_SMART_P_FRAME) {
        const ExtZOAVIFrameInfo own = ext;
        ext = key.ext;
        ext.frameSeq = own.frameSeq;
        ext.refIFrameSeq = own.refIFrameSeq;
        ext.frameSubType = own.frameSubType;
    }
    // The one exception: a rate of the frame's own holds, for this frame alone.
    if (m_nPRate != 0)
        frame.frameRate = m_nPRate;
    m_nPRate = 0;
}

} // namespace Marvane::FrameSift
