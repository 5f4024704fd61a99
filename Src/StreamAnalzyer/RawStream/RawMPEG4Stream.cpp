#include "StreamAnalzyer/RawStream/RawMPEG4Stream.h"

#include "StreamAnalzyer/OldStream/LegacyWords.h"
#include "StreamAnalzyer/RawStream/MPEG4Fields.h"
#include "StreamAnalzyer/RawStream/RawMPEG4Heads.h"
#include "StreamAnalzyer/WordSlider.h"

namespace Marvane::FrameSift {

namespace {

constexpr int sc_idLen = 4;

constexpr OLD_AUDIO_FORM sc_audioForm = {sizeof(ZOOLD_STREAM_AUDIO_HEADER), KX_STREAM_TYPE_AUDIO, BAD_SAMPLES::Mend};

} // namespace

int CRawMPEG4Stream::FlushBuffer(CLogicData* logicData, IFrameCallBack* frameCallBack)
{
    // A chunk that is joined and not parsed would push out what the window keeps.
    if (logicData == nullptr || frameCallBack == nullptr)
        return KX_SUCCESS;
    m_flushID = {0, 0, 1, 0xF0};
    if (logicData->JoinData(m_flushID.data(), static_cast<int>(m_flushID.size())) == KX_SUCCESS)
        ParseData(logicData, frameCallBack);
    return KX_SUCCESS;
}

bool CRawMPEG4Stream::IsBorderID(int scanID)
{
    switch (static_cast<uint32_t>(scanID)) {
    case gsk_firstObject:
    case gsk_secondObject:
    case MPEG4_SEQUENCE:
    case MPEG4_VOP:
    case sc_wordAudio:
        return true;
    default:
        return false;
    }
}

bool CRawMPEG4Stream::CheckFrameID(int scanID)
{
    if (!CRawMPEG4Stream::IsBorderID(scanID))
        return false;
    m_nScanID = scanID;
    return true;
}

bool CRawMPEG4Stream::BuildFrame(CLogicData* logicData, int frameStartPos, FrameInfo& frame, ExtZOAVIFrameInfo&)
{
    if (static_cast<uint32_t>(m_nScanID) == sc_wordAudio)
        return BuildAudioFrame(logicData, frameStartPos, frame);
    return CRawMPEG4Stream::IsBorderID(m_nScanID) && BuildVideoFrame(*logicData, frameStartPos, frame);
}

bool CRawMPEG4Stream::BuildVideoFrame(CLogicData& logicData, int nFramePos, FrameInfo& frame)
{
    if (IsEndStillAwaited(logicData, nFramePos))
        return false;
    const uint8_t* pHeads = logicData.GetData(nFramePos, gsk_rawMpeg4HeadsLen);
    if (pHeads == nullptr)
        return false;
    frame.frameType = KX_FRAME_TYPE_VIDEO;
    frame.frameEncodeType = KX_ENCODE_VIDEO_MPEG4;
    frame.frameSubType = KX_FRAME_SUB_TYPE_VIDEO_I_FRAME;
    // A frame that waits for its end comes here again, and must not be learnt from twice.
    CMPEG4ESParser esParser = m_mpeg4ESParser;
    if (esParser.Parse(pHeads, gsk_rawMpeg4HeadsLen, frame) == 0) {
        // The size holds from now on, also if the rest of this frame is lost.
        m_nWidth = frame.width;
        m_nHeight = frame.height;
    }
    CWordSlider slider(logicData, logicData.Size());
    slider.Restart(int64_t{nFramePos} - 1);
    if (!ReadRawMPEG4Heads(logicData, slider, frame) || !SlideToBorder(logicData, nFramePos, slider))
        return false;
    const int nFrameLen = slider.WordPos() - nFramePos;
    uint8_t* pFrame = logicData.GetData(nFramePos, nFrameLen);
    if (pFrame == nullptr)
        return false;
    m_mpeg4ESParser = esParser;
    frame.frameSeq = genVideoSeq();
    frame.deinterlace = KX_DEINTERLACE_NONE;
    frame.width = m_nWidth;
    frame.height = m_nHeight;
    frame.streamType = KX_STREAM_TYPE_RAW_MPEG4;
    frame.frameLen = nFrameLen;
    frame.streamLen = nFrameLen;
    frame.framePointer = pFrame;
    frame.streamPointer = pFrame;
    fillPFrameByKeyFrameInfo(frame);
    return true;
}

bool CRawMPEG4Stream::BuildAudioFrame(CLogicData* logicData, int frameStartPos, FrameInfo& frame)
{
    return BuildNumberedAudio(*logicData, frameStartPos, sc_audioForm, frame);
}

bool CRawMPEG4Stream::BuildNumberedAudio(CLogicData& logicData, int nFramePos, const OLD_AUDIO_FORM& form,
                                         FrameInfo& frame)
{
    if (!BuildOldAudioFrame(logicData, nFramePos, form, frame))
        return false;
    frame.frameSeq = genAudioSeq();
    return true;
}

void CRawMPEG4Stream::FrameVerify(CLogicData* logicData, int frameStartPos, FrameInfo& frame, ExtZOAVIFrameInfo&)
{
    if (frame.frameType != KX_FRAME_TYPE_AUDIO || FrameLengthVerify(logicData, frameStartPos, frame.frameLen))
        return;
    frame.errorFlags = KX_ERROR_FLAGS_LENGTH;
    frame.frameLen = sc_idLen;
}

// The length of a bad audio frame stands: the ID alone. What follows it is scanned, whether a border comes or not.
bool CRawMPEG4Stream::GetActualFrameLength(CLogicData*, int, FrameInfo&)
{
    return true;
}

bool CRawMPEG4Stream::FrameLengthVerify(CLogicData* logicData, int frameStartPos, int frameLen)
{
    return logicData != nullptr && IsBorderBehind(*logicData, frameStartPos, frameLen);
}

} // namespace Marvane::FrameSift
