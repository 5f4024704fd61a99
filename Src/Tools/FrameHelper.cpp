#include "Tools/FrameHelper.h"

#include <cstring>

namespace Marvane::FrameSift {

namespace {

constexpr int32_t sc_defaultRate = 25;

} // namespace

void CFrameHelper::fillPFrameByKeyFrameInfo(FrameInfo& frame)
{
    if (frame.frameType == KX_FRAME_TYPE_VIDEO && frame.frameSubType == KX_FRAME_SUB_TYPE_VIDEO_I_FRAME) {
        if (frame.frameRate < 1)
            frame.frameRate = sc_defaultRate;
        m_prevIframeInfo = frame;
        return;
    }
    frame.frameEncodeType = m_prevIframeInfo.frameEncodeType;
    frame.deinterlace = m_prevIframeInfo.deinterlace;
    frame.width = m_prevIframeInfo.width;
    frame.height = m_prevIframeInfo.height;
    frame.frameRate = m_prevIframeInfo.frameRate;
    frame.cropBeforeHeight = m_prevIframeInfo.cropBeforeHeight;
    frame.cropBeforeWidth = m_prevIframeInfo.cropBeforeWidth;
    TakeColour(m_prevIframeInfo, frame);
}

void CFrameHelper::Clear()
{
    m_nVideoFrameNumber = 0;
    m_nAudioFrameNumber = 0;
    m_nDataFrameNumber = 0;
    m_prevIframeInfo = {};
}

void TakeColour(const FrameInfo& from, FrameInfo& to)
{
    to.nColorPrimaries = from.nColorPrimaries;
    to.nColorTransfer = from.nColorTransfer;
    to.nColorSpace = from.nColorSpace;
    to.nMaxLuminance = from.nMaxLuminance;
    to.nMinLuminance = from.nMinLuminance;
    to.nMaxContentLightLevel = from.nMaxContentLightLevel;
    to.nMaxFrameAverageLightLevel = from.nMaxFrameAverageLightLevel;
    std::memcpy(to.nDisplayPrimaries, from.nDisplayPrimaries, sizeof to.nDisplayPrimaries);
    std::memcpy(to.nWhitePoint, from.nWhitePoint, sizeof to.nWhitePoint);
}

} // namespace Marvane::FrameSift
