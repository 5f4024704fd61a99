// What a frame that leaves a stream handle does not tell.
#include <cstring>

#include "ParserMethod/StreamAnalyzer.h"

namespace Marvane::FrameSift {

namespace {

void BlankFrame(FrameInfo& frame)
{
    frame.streamType = 0;
    frame.deinterlace = 0;
    frame.totalChannels = 0;
    frame.curChannel = 0;
    frame.extDataPtr = nullptr;
    frame.extDataLen = 0;
    frame.nEncryptType = 0;
    frame.nEncryptLen = 0;
    frame.encryptOffset = 0;
    frame.incompleteFrameFlag = 0;
    frame.pictrueStructure = 0;
    frame.rotationAngle = 0;
    frame.bFrameNum = 0;
    frame.rateValue = 0;
    frame.rateDenominator = 0;
    frame.audioBitrate = 0;
    frame.nOverLayPicPurpose = 0;
    frame.nOverLayPicAction = 0;
    frame.nOverLayPicCodeFormat = 0;
    frame.nOsdTopLeftCornercoordinateX = 0;
    frame.nOsdTopLeftCornercoordinateY = 0;
    frame.nOsdRgbaValue = 0;
    frame.nOsdWordSize = 0;
    frame.nOsdWordAlignment = 0;
    frame.companyType = 0;
    frame.tpStreamHeaderLen = 0;
    std::memset(frame.nB5HeadEncryptVKid, 0, sizeof frame.nB5HeadEncryptVKid);
    frame.nB5HeadEncryptCrc16 = 0;
    std::memset(frame.nB5HeadIV, 0, sizeof frame.nB5HeadIV);
    frame.nB5Headoffset = 0;
    frame.bHasDecrypt = 0;
    frame.allLevels = 0;
    frame.levelOrder = 0;
}

// What is left tells which frame it is, not what made it.
void BlankExtInfo(ExtZOAVIFrameInfo& ext)
{
    ExtZOAVIFrameInfo kept{};
    kept.frameSeq = ext.frameSeq;
    kept.refIFrameSeq = ext.refIFrameSeq;
    kept.frameSubType = ext.frameSubType;
    ext = kept;
}

int32_t PlainSubType(int32_t nFrameSubType)
{
    switch (nFrameSubType) {
    case KX_FRAME_SUB_TYPE_VIDEO_SMART_I_FRAME:
    case KX_FRAME_SUB_TYPE_VIDEO_SMART_I_NORENDER:
        return KX_FRAME_SUB_TYPE_VIDEO_I_FRAME;
    case KX_FRAME_SUB_TYPE_VIDEO_SMART_P_FRAME:
        return KX_FRAME_SUB_TYPE_VIDEO_P_FRAME;
    default:
        return nFrameSubType;
    }
}

} // namespace

void CloseSensitiveBytesForRepublic(FrameInfo* frame, ExtZOAVIFrameInfo* ext)
{
    BlankFrame(*frame);
    BlankExtInfo(*ext);
    frame->frameSubType = PlainSubType(frame->frameSubType);
}

} // namespace Marvane::FrameSift
