// The ZOPT stream: MPEG-4 frames behind a length, audio in between. What a picture is, its payload says.
#ifndef FRAMESIFT_SRC_STREAMANALZYER_OLDSTREAM_ZOPTSTREAM_H
#define FRAMESIFT_SRC_STREAMANALZYER_OLDSTREAM_ZOPTSTREAM_H

#include <cstddef>
#include <cstdint>
#include <span>

#include "ESParse/MPEG4ESParser.h"
#include "StreamAnalzyer/StreamParseBase.h"
#include "Tools/FrameHelper.h"

namespace Marvane::FrameSift {

// Wire record.
#pragma pack(push, 1)
struct ZOPT_HEADER
{
    uint8_t nID[4];         // "ZOPT"
    uint32_t nFrameBodyLen; // little-endian
};
#pragma pack(pop)
static_assert(sizeof(ZOPT_HEADER) == 8);
static_assert(offsetof(ZOPT_HEADER, nFrameBodyLen) == 4);

class CZOPTStream : public CStreamParseBase, public CFrameHelper
{
public:
    int GetType() override { return KX_STREAM_TYPE_ZOPT; }
    bool CheckFrameID(int scanID) override;
    bool BuildFrame(CLogicData* logicData, int frameStartPos, FrameInfo& frame, ExtZOAVIFrameInfo& ext) override;
    void FrameVerify(CLogicData* logicData, int frameStartPos, FrameInfo& frame, ExtZOAVIFrameInfo& ext) override;
    bool IsBorderID(int scanID) override;
    bool GetActualFrameLength(CLogicData* logicData, int frameStartPos, FrameInfo& frame) override;

private:
    bool BuildVideoFrame(CLogicData& logicData, int nFramePos, FrameInfo& frame);
    bool BuildAudioFrame(CLogicData& logicData, int nFramePos, FrameInfo& frame);
    void ParseMPEG4Block(std::span<const uint8_t> body, FrameInfo& frame);
    static void TakeHeadFacts(std::span<const uint8_t> body, FrameInfo& frame);

    CMPEG4ESParser m_mpeg4ESParser;
    CMPEG4ESParser m_formerESParser; // as it was in front of the last picture
};

} // namespace Marvane::FrameSift

#endif
