// The New stream: frames behind start codes, without tail and check sum. Only the next frame's ID vouches for a length.
#ifndef FRAMESIFT_SRC_STREAMANALZYER_OLDSTREAM_NEWSTREAM_H
#define FRAMESIFT_SRC_STREAMANALZYER_OLDSTREAM_NEWSTREAM_H

#include <cstddef>
#include <cstdint>

#include "StreamAnalzyer/StreamParseBase.h"
#include "Tools/DateTime.h"
#include "Tools/FrameHelper.h"

namespace Marvane::FrameSift {

// Wire records, little-endian.
#pragma pack(push, 1)
struct NEW_STREAM_I_FRAME_HEADER
{
    uint8_t nID[4];
    uint8_t reserved; // the low 4 bits: 2 in an H.264 frame means an interlaced picture
    uint8_t chRate;   // the low 5 bits: frames a second; the high 3 bits: interlace
    uint8_t chWidth;  // in 8 pixels
    uint8_t chHeight; // in 8 pixels
    KX_DATE_TIME time;
    uint32_t nFrameBodyLen; // the low 24 bits
};
struct NEW_STREAM_P_FRAME_HEADER
{
    uint8_t nID[4];
    uint32_t nFrameBodyLen; // the low 24 bits
};
struct NEWEX1_STREAM_I_FRAME_HEADER
{
    NEW_STREAM_I_FRAME_HEADER head;
    uint32_t unknown; // not read
};
struct NEWEX1_STREAM_P_FRAME_HEADER
{
    NEW_STREAM_P_FRAME_HEADER head;
    uint32_t unknown; // not read
};
#pragma pack(pop)
static_assert(sizeof(NEW_STREAM_I_FRAME_HEADER) == 16);
static_assert(sizeof(NEW_STREAM_P_FRAME_HEADER) == 8);
static_assert(sizeof(NEWEX1_STREAM_I_FRAME_HEADER) == 20);
static_assert(sizeof(NEWEX1_STREAM_P_FRAME_HEADER) == 12);
static_assert(offsetof(NEW_STREAM_I_FRAME_HEADER, time) == 8);
static_assert(offsetof(NEW_STREAM_I_FRAME_HEADER, nFrameBodyLen) == 12);

class CNewStream : public CStreamParseBase, public CFrameHelper
{
public:
    // KX_STREAM_TYPE_NEW, KX_STREAM_TYPE_NEW_EX or KX_STREAM_TYPE_NEW_EX1: which IDs mark key frames, and how long heads
    // are.
    explicit CNewStream(int nType) : m_nType(nType) {}

    // The variant does not show from outside.
    int GetType() override { return KX_STREAM_TYPE_NEW; }
    bool CheckFrameID(int scanID) override;
    bool BuildFrame(CLogicData* logicData, int frameStartPos, FrameInfo& frame, ExtZOAVIFrameInfo& ext) override;
    void FrameVerify(CLogicData* logicData, int frameStartPos, FrameInfo& frame, ExtZOAVIFrameInfo& ext) override;
    bool IsBorderID(int scanID) override;
    void DoCallBack(FrameInfo* frame, ExtZOAVIFrameInfo* ext) override;

private:
    enum class BODY
    {
        Here,    // with the next ID behind it
        Awaited, // not all of it has come
        TooLong  // longer than the window has room for: the border search decides
    };

    bool IsVideoID() const;
    bool IsKeyFrameID() const;
    bool IsEx1() const { return m_nType == KX_STREAM_TYPE_NEW_EX1; }
    bool BuildIFrame(CLogicData& logicData, int nFramePos, int nHeadLen, FrameInfo& frame);
    bool BuildPFrame(CLogicData& logicData, int nFramePos, int nHeadLen, FrameInfo& frame);
    bool BuildAudioFrame(CLogicData& logicData, int nFramePos, FrameInfo& frame);
    bool BuildDataFrame(CLogicData& logicData, int nFramePos, FrameInfo& frame);
    BODY TakeBody(CLogicData& logicData, int nFramePos, int nHeadLen, int nLengthPos, FrameInfo& frame);

    int m_nType;
};

} // namespace Marvane::FrameSift

#endif
