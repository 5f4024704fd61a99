// The parser of the ZOAV family: where a frame begins and ends, and what its head says.
#ifndef FRAMESIFT_SRC_STREAMANALZYER_ZOSTD_ZOAVSTREAM_H
#define FRAMESIFT_SRC_STREAMANALZYER_ZOSTD_ZOAVSTREAM_H

#include <cstdint>
#include <span>

#include "Memory/LinkedBuffer.h"
#include "StreamAnalzyer/StreamParseBase.h"
#include "StreamAnalzyer/ZOSTD/ExtFrameHead.h"
#include "StreamAnalzyer/ZOSTD/ZOAVFrame.h"

namespace Marvane::FrameSift {

class CZOAVStream : public CStreamParseBase
{
public:
    // The label of the last good frame's magic; 8 before the first one.
    int GetType() override;
    bool CheckFrameID(int scanID) override;
    bool BuildFrame(CLogicData* logicData, int frameStartPos, FrameInfo& frame, ExtZOAVIFrameInfo& ext) override;
    void FrameVerify(CLogicData* logicData, int frameStartPos, FrameInfo& frame, ExtZOAVIFrameInfo& ext) override;
    bool IsBorderID(int scanID) override;
    void DoInit() override;
    void SetActualFrameLength(int frameStartPos, int nEndID, int nEndIDPos, FrameInfo& frame) override;
    bool GetActualFrameLength(CLogicData* logicData, int frameStartPos, FrameInfo& frame) override;
    bool GetFrameTime(CLogicData* logicData, int& frameStartPos, int64_t& nTime) override;
    bool CheckFrameTimeID(int scanID) override;
    bool GetFrameEndPos(CLogicData* logicData, int frameStartPos, int& nFrameEndPos) override;
    bool GetFrameType(CLogicData* logicData, int frameStartPos, int& nFrameType, int& nFrameSubType) override;
    using CStreamParseBase::ParseData;
    // Parses one "ZOAV" frame again that is held in memory: framePointer and frameLen are set. 0, or 6.
    virtual int ParseData(KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo);

    // The detector's test. Its bounds are not BuildFrame's, on purpose: it takes type 0x80, and refuses 0x55, 0xF2 and
    // whatever is longer than 10 MiB.
    static bool CheckStdFrameHead(const STD_FRAME_HEAD* pHead);
    static bool FrameHeadVerify(const STD_FRAME_HEAD* lpStdFrameHead);
    static bool FrameLengthVerify(CLogicData& logicData, int64_t frameStartPos, int32_t frameLen);
    static bool FrameTailVerify(CLogicData& logicData, int64_t tailStartPos, uint32_t frameLen);

    // bytes: the frame from its first extension head on; nothing outside them is read. Needs frameSubType and frameSeq
    // of the frame to be set.
    void ParseExtHead(std::span<const uint8_t> bytes, int nExtFrameLen, FrameInfo& frame, ExtZOAVIFrameInfo& ext);
    const EXT_FRAME_HEAD& GetExtFrameHead() const { return m_extFrameHead; }

private:
    bool StepOverBlock(CLogicData& logicData, int64_t nPos, FrameInfo& frame);
    bool IsHeadBelievable(const STD_FRAME_HEAD& head, FrameInfo& frame, ExtZOAVIFrameInfo& ext) const;
    bool TakeWholeFrame(CLogicData& logicData, int64_t nPos, const STD_FRAME_HEAD& head, FrameInfo& frame,
                        ExtZOAVIFrameInfo& ext);
    void LabelStream(const STD_FRAME_HEAD& head, FrameInfo& frame);

    CLinkedBuffer m_linkBuffer;      // copies of variable extension data; they live until the next scan starts
    CLinkedBuffer m_frameListBuffer; // cleared with it
    EXT_FRAME_HEAD m_extFrameHead{}; // of the last frame
    int m_B5ExtStartOffset = 0;
    int m_B6ExtStartOffset = 0;
    int m_nCommonEncryptHeadoffset = 0;
    int m_nPRate = 0;
    bool m_bGMSet = false; // nothing sets it
    int m_HeaderTailerFlag = -1;
};

// What chType and chSubType stand for. A field that a type does not name keeps its value.
void ParseStdFrameHead(const STD_FRAME_HEAD& frameHead, FrameInfo& frameInfo);

// Strips the prefix of a data payload that has one. The checks of the whole payload do not mind: they read it from the
// window, by its place in the frame.
void StripPayloadPrefix(FrameInfo& frame);

} // namespace Marvane::FrameSift

#endif
