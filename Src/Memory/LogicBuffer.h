// The byte window: what was kept from earlier chunks, and the caller's chunk behind it, under one index.
#ifndef FRAMESIFT_SRC_MEMORY_LOGICBUFFER_H
#define FRAMESIFT_SRC_MEMORY_LOGICBUFFER_H

#include "Memory/BufferBase.h"
#include "Memory/DynamicBuffer.h"

namespace Marvane::FrameSift {

// The seam between the two parts moves towards the chunk's end as ranges that cross it are asked for. A pointer from
// GetData stays readable until the next JoinData, however often the front part grows meanwhile.
//
// What is kept from one cycle to the next is copied once: as long as a frame waits at the window's front, chunk after
// chunk is appended where it lies, and what has been consumed in front of it leaves when it is half of the block.
class CLogicBuffer final : public IBufferBase
{
public:
    int InitBuffer(int nSize) override;

    // Attaches the caller's chunk behind the bytes kept; the chunk is not copied. 13 for null and for more bytes than an
    // index can count, 6 for a negative length; the window is then as it was, without the chunk's bytes.
    int JoinData(uint8_t* pData, int nLen) override;

    // No packet ever reaches a window.
    int JoinData(CPacket&) override { return -1; }
    int GetPacketBuffer(int, int, CPacket&) override { return 0; }
    int GetPacket(int, int, std::deque<CPacket>&) override { return -1; }

    // nLen bytes in one piece, or null if the window does not have them.
    uint8_t* GetData(int nIndex, int nLen) override;
    uint32_t Size() override { return static_cast<uint32_t>(WindowSize()); }
    // The bytes of the chunk, and the room of the front part: it doubles up to 256000 bytes, then grows by 65536, and never
    // shrinks. Formats refuse lengths above it, so it follows that rule whatever memory there really is.
    uint32_t MaxSize() override;
    uint8_t GetByte(int nIndex) override;
    uint8_t operator[](int nIndex) override { return GetByte(nIndex); }
    int SetCurParseIndex(int nIndex) override { return SaveRemainData(nIndex); }
    int ClearBuffer() override;
    int MoveRemainBufferToFixBuffer() override;

    // Ends a cycle: the bytes from nIndex on are kept for the next one, and the window stays as it is. Once a cycle:
    // a second call keeps a second copy behind the first. 13 without a chunk or memory, 6 for an index outside the
    // window.
    int SaveRemainData(int nIndex) override;
    bool IsIndexValid(int nIndex) override { return nIndex >= 0 && nIndex <= WindowSize(); }
    bool IsLengthValid(int nLen) override { return nLen >= 0 && nLen <= WindowSize(); }
    bool IsParameterValid(int nIndex, int nLen) override;
    int GetRemainData(uint8_t** ppData, int* pLen) override;
    int SetKeyPos(int nStreamPos, int nFramePos) override;
    int GetKeyPos(int64_t& nStreamPos, int64_t& nFramePos) override;
    int64_t GetDeletedLen() override { return m_nHasDeletedDataLen; }
    std::span<const uint8_t> GetRun(int nIndex) override;

private:
    int64_t WindowSize() const { return int64_t{m_nNewBufferLen} + m_nFixLen; }
    uint8_t* Front() const { return m_fixBuffer.GetPointer() + m_nFront; }
    // Bytes are kept at the end of m_fixBuffer, where they lay, and those of the chunk behind them.
    bool IsKeptInPlace() const { return m_nKeepFrom >= 0; }
    int64_t KeptLen() const;
    int KeepInPlace(int nIndex);
    int KeepInRemainBuffer(int nIndex);
    int MoveSeam(int32_t nLen);
    void CountFixLen(int32_t nFixLen);

    uint8_t* m_pNewBuffer = nullptr; // the caller's; the part not yet in m_fixBuffer
    int32_t m_nNewBufferLen = 0;
    CDynamicBuffer m_fixBuffer;    // the window's front part: m_nFixLen bytes from m_nFront on
    CDynamicBuffer m_remainBuffer; // what the next cycle starts from, if nothing before the seam is kept
    int32_t m_nFront = 0;
    int32_t m_nFixLen = 0;
    int32_t m_nFixCapacity = 0;   // the room that a front part has which is copied anew in each cycle, see MaxSize
    int32_t m_nKeepFrom = -1;     // in m_fixBuffer
    uint32_t m_nNeedToDel = 0;    // consumed bytes, counted at the next join
    int64_t m_nFrameStartPos = 0; // of the last frame, within the window
    int64_t m_nStreamStartPos = 0;
    int64_t m_nHasDeletedDataLen = 0; // stream offset of the window's first byte
};

} // namespace Marvane::FrameSift

#endif
