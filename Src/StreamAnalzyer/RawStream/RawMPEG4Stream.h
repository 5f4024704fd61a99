// The parser of a bare MPEG-4 elementary stream: its start codes are all that tells where a frame ends.
#ifndef FRAMESIFT_SRC_STREAMANALZYER_RAWSTREAM_RAWMPEG4STREAM_H
#define FRAMESIFT_SRC_STREAMANALZYER_RAWSTREAM_RAWMPEG4STREAM_H

#include <array>
#include <cstdint>

#include "ESParse/MPEG4ESParser.h"
#include "StreamAnalzyer/OldStream/OldAudio.h"
#include "StreamAnalzyer/StreamParseBase.h"
#include "Tools/FrameHelper.h"

namespace Marvane::FrameSift {

// Audio frames of the legacy form may lie between the pictures.
class CRawMPEG4Stream : public CStreamParseBase, public CFrameHelper
{
public:
    int GetType() override { return KX_STREAM_TYPE_RAW_MPEG4; }
    // Closes the last frame, which waits for the start of a next one, with an ID that begins none. 0 always. The ID stays
    // in the window, and so must this object while the window is in use.
    int FlushBuffer(CLogicData* logicData, IFrameCallBack* frameCallBack) override;
    bool CheckFrameID(int scanID) override;
    bool BuildFrame(CLogicData* logicData, int frameStartPos, FrameInfo& frame, ExtZOAVIFrameInfo& ext) override;
    // Judges the length of an audio frame; a picture ends where it was found to end.
    void FrameVerify(CLogicData* logicData, int frameStartPos, FrameInfo& frame, ExtZOAVIFrameInfo& ext) override;
    bool IsBorderID(int scanID) override;
    bool GetActualFrameLength(CLogicData* logicData, int frameStartPos, FrameInfo& frame) override;

    // False if the window does not hold the frame and the ID behind it.
    virtual bool BuildAudioFrame(CLogicData* logicData, int frameStartPos, FrameInfo& frame);
    // True if a frame may start behind this one.
    virtual bool FrameLengthVerify(CLogicData* logicData, int frameStartPos, int frameLen);

protected:
    bool BuildNumberedAudio(CLogicData& logicData, int nFramePos, const OLD_AUDIO_FORM& form, FrameInfo& frame);

private:
    bool BuildVideoFrame(CLogicData& logicData, int nFramePos, FrameInfo& frame);

    CMPEG4ESParser m_mpeg4ESParser;
    int m_nWidth = 0; // the size last found
    int m_nHeight = 0;
    std::array<uint8_t, 4> m_flushID{}; // joined to the window, so it is neither constant nor a local
};

} // namespace Marvane::FrameSift

#endif
