// The parser of the ZOAV family: where a frame begins and ends, what it says, and whether it can be believed.
#ifndef FRAMESIFT_SRC_STREAMANALZYER_ZOSTD_ZOAVSTREAM_H
#define FRAMESIFT_SRC_STREAMANALZYER_ZOSTD_ZOAVSTREAM_H

#include <cstdint>
#include <map>
#include <span>

#include "Memory/LinkedBuffer.h"
#include "StreamAnalzyer/StreamParseBase.h"
#include "StreamAnalzyer/ZOSTD/ExtFrameHead.h"
#include "StreamAnalzyer/ZOSTD/ZOAVFrame.h"
#include "StreamAnalzyer/ZOSTD/ZOAVWaterMark.h"
#include "Tools/KXAes.h"

namespace Marvane::FrameSift {

// A key frame, as the frames behind it inherit from it. Only numbers are taken from frame, whose pointers are stale.
struct ZOAV_KEY_FRAME
{
    FrameInfo frame{};
    ExtZOAVIFrameInfo ext{};
};

class CZOAVStream : public CStreamParseBase
{
public:
    // The label of the last good frame's magic; 8 before the first one.
    int GetType() override;
    // The only key that this class takes is the bare one of KX_ENCRYPT_AES. 0, or 6.
    int SetExtInfo(unsigned int type, const unsigned char* data, int len) override;
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
    // The payload's sum, as head 0x88 gives it.
    bool FrameDataVerify(CLogicData& logicData, int64_t dataStartPos, int32_t datalen, const FrameInfo& frameInfo);
    // False if video frames are missing in front of this one. Only a live stream is judged.
    bool LostFrameVerify(const FrameInfo& frameInfo);

    // Deciphers the enciphered part of the payload in place, its whole blocks only. False if it cannot, and nothing is
    // changed.
    bool ParseEncryptData(const FrameInfo& frameInfo);
    // What the payload of a key frame says of the picture overrides what the heads said.
    void FrameVideoInfoVerify(FrameInfo& frame, const ExtZOAVIFrameInfo& ext);
    // Keeps a key frame, and gives any other its attributes. 0 or 13.
    int FillPFrameByKeyFrameInfo(FrameInfo& frame, ExtZOAVIFrameInfo& ext);

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
    void Decipher(FrameInfo& frame);
    void DecipherPart(FrameInfo& frame);
    void TakeH264Facts(FrameInfo& frame);
    void TakeH265Facts(FrameInfo& frame);
    int KeepKeyFrame(const FrameInfo& frame, const ExtZOAVIFrameInfo& ext);
    void InheritFromKeyFrame(FrameInfo& frame, ExtZOAVIFrameInfo& ext);
    void DeliverLostFrame(const FrameInfo& frame);
    int32_t JudgeFrame(CLogicData& logicData, int64_t nPos, const STD_FRAME_HEAD& head, const FrameInfo& frame);

    int32_t m_nPrevVideoFrameSeq = -1; // -1: none so far
    // The last key frame of each level: scalable layers have key frames of their own. 0 is all of a plain stream.
    std::map<int, ZOAV_KEY_FRAME> m_prevIFrameInfoMap;
    // The one that was stored or looked up last, of whatever level. Null before the first.
    const ZOAV_KEY_FRAME* m_prevIFrameInfo = nullptr;
    CLinkedBuffer m_linkBuffer;      // copies of variable extension data; they live until the next scan starts
    CLinkedBuffer m_frameListBuffer; // cleared with it
    EXT_FRAME_HEAD m_extFrameHead{}; // of the last frame
    CKXAes m_Aes;                    // the key of in-stream deciphering
    int m_B5ExtStartOffset = 0;
    int m_B6ExtStartOffset = 0;
    int m_nCommonEncryptHeadoffset = 0;
    int m_nPRate = 0;      // a rate that a non-key frame announced, not used yet
    bool m_bGMSet = false; // nothing sets it
    int m_HeaderTailerFlag = -1;
};

// What chType and chSubType stand for. A field that a type does not name keeps its value.
void ParseStdFrameHead(const STD_FRAME_HEAD& frameHead, FrameInfo& frameInfo);

// Strips the prefix of a data payload that has one. The sum of the whole payload does not mind: it is read from the
// window, by its place in the frame.
void StripPayloadPrefix(FrameInfo& frame);

} // namespace Marvane::FrameSift

#endif
