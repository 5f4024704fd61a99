// The interface of a byte window.
#ifndef FRAMESIFT_SRC_MEMORY_BUFFERBASE_H
#define FRAMESIFT_SRC_MEMORY_BUFFERBASE_H

#include <cstdint>
#include <deque>
#include <span>

namespace Marvane::FrameSift {

// A packet of a memory library that FrameSift does not use; no window holds any.
class CPacket;

// Every index counts from the window's first byte, from 0 to Size().
class IBufferBase
{
public:
    virtual ~IBufferBase() = default;
    virtual int InitBuffer(int nSize) = 0;
    virtual int JoinData(uint8_t* pData, int nLen) = 0;
    virtual int JoinData(CPacket& packet) = 0;
    virtual int GetPacketBuffer(int nIndex, int nLen, CPacket& packet) = 0;
    virtual uint8_t* GetData(int nIndex, int nLen) = 0;
    virtual int GetPacket(int nIndex, int nLen, std::deque<CPacket>& packets) = 0;
    virtual uint32_t Size() = 0;
    virtual uint32_t MaxSize() = 0;
    virtual uint8_t GetByte(int nIndex) = 0;
    virtual uint8_t operator[](int nIndex) = 0;
    virtual int SetCurParseIndex(int nIndex) = 0;
    virtual int ClearBuffer() = 0;
    virtual int MoveRemainBufferToFixBuffer() = 0;
    virtual int SaveRemainData(int nIndex) = 0;
    virtual bool IsIndexValid(int nIndex) = 0;
    virtual bool IsLengthValid(int nLen) = 0;
    virtual bool IsParameterValid(int nIndex, int nLen) = 0;
    virtual int GetRemainData(uint8_t** ppData, int* pLen) = 0;
    virtual int SetKeyPos(int nStreamPos, int nFramePos) = 0;
    virtual int GetKeyPos(int64_t& nStreamPos, int64_t& nFramePos) = 0;
    virtual int64_t GetDeletedLen() { return 0; }

    // The bytes from nIndex on that lie in one piece; empty at the window's end. A GetData that crosses the seam moves
    // it, but the bytes stay readable where they are until the next join.
    virtual std::span<const uint8_t> GetRun(int nIndex) = 0;
};

} // namespace Marvane::FrameSift

#endif
