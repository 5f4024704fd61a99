// The parser of the HB stream: an MPEG-4 elementary stream in numbered blocks of one size.
#ifndef FRAMESIFT_SRC_STREAMANALZYER_OLDSTREAM_HBSTREAM_H
#define FRAMESIFT_SRC_STREAMANALZYER_OLDSTREAM_HBSTREAM_H

#include <cstdint>

#include "Memory/LinkedBuffer.h"
#include "Memory/LogicData.h"
#include "StreamAnalzyer/RawStream/RawMPEG4StreamEx.h"
#include "StreamAnalzyer/StreamParseBase.h"

namespace Marvane::FrameSift {

// The blocks take no notice of where frames end. Their payloads go through a window and a parser of their own, and what
// comes out of that is delivered, beside the audio frames that lie between the blocks. Frames are delivered without
// extension data and without the user data of the callback.
class CHBStream : public CStreamParseBase, public IFrameCallBack
{
public:
    // Behind a lost block, a bad length or a new kind of picture, no picture is delivered up to the next I frame.
    enum CLEAR_STEP : int32_t
    {
        STEP_NEED_CLEAR = 0,         // on to the next by a good block, whose payload is dropped with all before it
        STEP_BEGIN_FIND_I_FRAME = 1, // on to the next by an I frame; all other frames are dropped
        STEP_FINISH = 2              // normal running
    };

    int GetType() override { return KX_STREAM_TYPE_HB; }
    int Init() override { return m_rwExLogicData.Init(m_nBufferSize); }
    bool CheckFrameID(int scanID) override;
    bool BuildFrame(CLogicData* logicData, int frameStartPos, FrameInfo& frame, ExtZOAVIFrameInfo& ext) override;
    void FrameVerify(CLogicData* logicData, int frameStartPos, FrameInfo& frame, ExtZOAVIFrameInfo& ext) override;
    bool IsBorderID(int scanID) override;
    void DoCallBack(FrameInfo* frame, ExtZOAVIFrameInfo* ext) override;
    // The frames that were delivered in the last pass end here.
    void DoInit() override { m_linkedBuffer.Clear(); }
    bool GetActualFrameLength(CLogicData* logicData, int frameStartPos, FrameInfo& frame) override;
    // Takes blocks from the scan and pictures from the inner parser; tells them apart by their stream type.
    int OnFrame(FrameInfo* frame, ExtZOAVIFrameInfo* ext, void* userData) override;
    // Forgets what the blocks so far have left. 0 always.
    virtual int ClearInsideMemory();

private:
    bool BuildVideoFrame(CLogicData& logicData, int nFramePos, FrameInfo& frame);
    bool BuildAudioFrame(CLogicData& logicData, int nFramePos, FrameInfo& frame);
    bool LostFrameVerify(const FrameInfo& frame);
    void OnHBFrame(FrameInfo& frame);
    void OnRawFrame(FrameInfo& frame);
    void FeedInner(FrameInfo& block);
    void FillHBInfo(FrameInfo& frame) const;
    void Deliver(FrameInfo& frame);
    void RestartAtIFrame();

    CRawMPEG4StreamEx m_rwEx;
    // Its newest bytes lie in the outer window, so it is read only while they are fed to it.
    CLogicData m_rwExLogicData;
    CLinkedBuffer m_linkedBuffer; // the pictures of this pass: the inner window moves on while they are delivered
    int m_nBufferSize = 0;
    int m_nAudioFramNumber = 1;
    int m_prevBlockSeq = 0; // 0: the next block is the first
    CLEAR_STEP m_clearStep = STEP_FINISH;
    FrameInfo m_prevIFrameInfo{}; // of the last block; its pointers are stale
};

} // namespace Marvane::FrameSift

#endif
