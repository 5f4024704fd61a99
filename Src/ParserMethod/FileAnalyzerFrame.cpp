// The frame as a callback of a recording gets it: all that the records tell, where KX_GetOneFrame hands out 18 fields.
#include <cstring>

#include "ParserMethod/FileAnalyzer.h"

namespace Marvane::FrameSift {

namespace {

void CopyPlace(const FrameInfo& from, KX_FRAME_INFO& to)
{
    to.streamType = from.streamType;
    to.framePointer = from.framePointer;
    to.streamPointer = from.streamPointer;
    to.frameLen = from.frameLen;
    to.streamLen = from.streamLen;
    to.extDataPtr = from.extDataPtr;
    to.extDataLen = from.extDataLen;
    to.errorFlags = from.errorFlags;
    to.incompleteFrameFlag = from.incompleteFrameFlag;
    to.companyType = from.companyType;
    to.tpStreamHeaderLen = from.tpStreamHeaderLen;
    to.totalChannels = from.totalChannels;
    to.curChannel = from.curChannel;
    to.programCount = from.programCount;
    to.programNum = from.programNum;
    to.frameSeq = from.frameSeq;
    to.frameTime = from.frameTime;
    to.timeStamp = from.timeStamp;
    to.utcTime = static_cast<KXint64>(from.utcTime);
}

void CopyMedia(const FrameInfo& from, KX_FRAME_INFO& to)
{
    to.frameType = from.frameType;
    to.frameSubType = from.frameSubType;
    to.frameEncodeType = from.frameEncodeType;
    to.frameRate = from.frameRate;
    to.rateValue = from.rateValue;
    to.rateDenominator = from.rateDenominator;
    to.width = from.width;
    to.height = from.height;
    to.cropBeforeWidth = from.cropBeforeWidth;
    to.cropBeforeHeight = from.cropBeforeHeight;
    to.deinterlace = from.deinterlace;
    to.pictrueStructure = from.pictrueStructure;
    to.rotationAngle = from.rotationAngle;
    to.bFrameNum = from.bFrameNum;
    to.allLevels = from.allLevels;
    to.levelOrder = from.levelOrder;
    to.bPrivacyEnable = from.bPrivacyEnable;
    to.samplesPerSec = from.samplesPerSec;
    to.bitsPerSample = from.bitsPerSample;
    to.channels = from.channels;
    to.audioBitrate = from.audioBitrate;
}

void CopyColours(const FrameInfo& from, KX_FRAME_INFO& to)
{
    to.nVideoBitDepth = from.nVideoBitDepth;
    to.nColorPrimaries = from.nColorPrimaries;
    to.nColorTransfer = from.nColorTransfer;
    to.nColorSpace = from.nColorSpace;
    std::memcpy(to.nDisplayPrimaries, from.nDisplayPrimaries, sizeof to.nDisplayPrimaries);
    std::memcpy(to.nWhitePoint, from.nWhitePoint, sizeof to.nWhitePoint);
    to.nMaxLuminance = from.nMaxLuminance;
    to.nMinLuminance = from.nMinLuminance;
    to.nMaxContentLightLevel = from.nMaxContentLightLevel;
    to.nMaxFrameAverageLightLevel = from.nMaxFrameAverageLightLevel;
}

void CopyOverlays(const FrameInfo& from, KX_FRAME_INFO& to)
{
    to.nOverLayPicPurpose = from.nOverLayPicPurpose;
    to.nOverLayPicAction = from.nOverLayPicAction;
    to.nOverLayPicCodeFormat = from.nOverLayPicCodeFormat;
    to.nOsdTopLeftCornercoordinateX = from.nOsdTopLeftCornercoordinateX;
    to.nOsdTopLeftCornercoordinateY = from.nOsdTopLeftCornercoordinateY;
    to.nOsdRgbaValue = from.nOsdRgbaValue;
    to.nOsdWordSize = from.nOsdWordSize;
    to.nOsdWordAlignment = from.nOsdWordAlignment;
    to.pSvacOsdInfo = from.pSvacOsdInfo;
    to.nSvacOsdNum = from.nSvacOsdNum;
}

void CopyCipher(const FrameInfo& from, KX_FRAME_INFO& to)
{
    to.nEncryptType = from.nEncryptType;
    to.nEncryptLen = from.nEncryptLen;
    to.encryptOffset = from.encryptOffset;
    std::memcpy(to.nB5HeadEncryptVKid, from.nB5HeadEncryptVKid, sizeof to.nB5HeadEncryptVKid);
    std::memcpy(to.nB5HeadIV, from.nB5HeadIV, sizeof to.nB5HeadIV);
    to.nB5HeadEncryptCrc16 = static_cast<uint16_t>(from.nB5HeadEncryptCrc16); // a CRC-16 kept in 32 bits: low half
    std::memcpy(to.nB6HeadVkekVersion, from.nB6HeadVkekVersion, sizeof to.nB6HeadVkekVersion);
}

void CopyExtPicture(const ExtZOAVIFrameInfo& from, KX_FRAME_INFO& to)
{
    to.n_slice = from.n_slice;
    to.m_slice = from.m_slice;
    // Both get the height. Kept: callers of the index know it so, and have the picture's width elsewhere.
    to.srcPicWidth = from.srcPicHeight;
    to.srcPicHeight = from.srcPicHeight;
    to.sliceInfoOffset = from.sliceInfoOffset;
    to.sliceInfoLength = from.sliceInfoLength;
    to.nSliceSensor = from.nSliceSensor;
    to.mSliceSensor = from.mSliceSensor;
    to.slicePosOffset = from.slicePosOffset;
    to.slicePosLength = from.slicePosLength;
    to.ratioWidth = from.ratioWidth;
    to.ratioHeigth = from.ratioHeigth;
    to.ratioEncodeWidth = from.ratioEncodeWidth;
    to.ratioEncodeHeight = from.ratioEncodeHeight;
    to.refIFrameSeq = from.refIFrameSeq;
}

void CopyExtCamera(const ExtZOAVIFrameInfo& from, KX_FRAME_INFO& to)
{
    to.fogThrough = from.fogThrough;
    // Without nReserved, which means nothing.
    to.customChangeInfo.chType = from.customChangeInfo.chType;
    to.customChangeInfo.chLength = from.customChangeInfo.chLength;
    to.customChangeInfo.chValue = from.customChangeInfo.chValue;
    to.fishEyeGain = from.fishEyeGain;
    to.fishEyeDenoiseLevel = from.fishEyeDenoiseLevel;
    to.fishInstallStyle = from.fishInstallStyle;
    to.fishEyeCorrectMode = from.fishEyeCorrectMode;
    to.fishEyeCircleX = from.fishEyeCircleX;
    to.fishEyeCircleY = from.fishEyeCircleY;
    to.fishEyeRadius = from.fishEyeRadius;
    to.osdExtDataLen = from.osdExtDataLen;
    to.osdExtDataPtr = from.osdExtDataPtr;
}

void CopyExtSums(const ExtZOAVIFrameInfo& from, KX_FRAME_INFO& to)
{
    to.digtalSignatureSamplenlen = from.digtalSignatureSamplenlen;
    to.digtalSignatureEncdeclen = from.digtalSignatureEncdeclen;
    to.digtalSignatureDigestType = from.digtalSignatureDigestType;
    to.digtalSignatureEncryptType = from.digtalSignatureEncryptType;
    to.digtalSignatureEncdecDataPtr = from.digtalSignatureEncdecDataPtr;
    to.svacEncryptKeyLen = from.svacEncryptKeyLen;
    to.svacEncryptDataLen = from.svacEncryptDataLen;
    to.svacEncryptKeyData = from.svacEncryptKeyData;
    to.encryptCheckSum = from.encryptCheckSum;
    std::memcpy(to.encryptNonse, from.encryptNonse, sizeof to.encryptNonse);
}

// Left at zero, deliberately: mediaFlag, nB6HeadGmIv, nB6HeadVekEncryptType, nB6HeadVek, nYuvTimeStamp and bHasDecrypt.
// A callback is not told of the wrapped key, nor whether the payload in hand has been deciphered.
KX_FRAME_INFO ToIndexFrame(const FrameInfo& frame, const ExtZOAVIFrameInfo* pExt)
{
    KX_FRAME_INFO target{};
    CopyPlace(frame, target);
    CopyMedia(frame, target);
    CopyColours(frame, target);
    CopyOverlays(frame, target);
    CopyCipher(frame, target);
    if (pExt != nullptr) {
        CopyExtPicture(*pExt, target);
        CopyExtCamera(*pExt, target);
        CopyExtSums(*pExt, target);
    }
    return target;
}

} // namespace

int CFileAnalyzer::OnIndex(KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx)
{
    if (m_bEnded)
        StopParse();
    if (m_pfnFileIndex == nullptr || m_bEnded)
        return KX_SUCCESS;
    int nProcess = 0;
    GetProcess(&nProcess);
    KX_FRAME_INFO frame = ToIndexFrame(*frameInfo, frameInfoEx);
    return m_pfnFileIndex(this, &frame, indexInfo, nProcess, m_pUserData);
}

} // namespace Marvane::FrameSift
