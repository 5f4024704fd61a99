// The parsers' handle on a byte window.
#ifndef FRAMESIFT_SRC_MEMORY_LOGICDATA_H
#define FRAMESIFT_SRC_MEMORY_LOGICDATA_H

#include <cstdint>
#include <memory>
#include <span>

#include "Memory/BufferBase.h"

namespace Marvane::FrameSift {

// The window is made at the first join. Until then it reads as empty, and what would change it answers -1.
class CLogicData
{
public:
    CLogicData() = default;
    virtual ~CLogicData() = default;
    CLogicData(const CLogicData&) = delete;
    CLogicData& operator=(const CLogicData&) = delete;

    // Does nothing: windows start at a size of their own, and the size given to a handle has no effect.
    int Init(int) { return 0; }

    // 13 for null data; -1 if the window has no memory for its buffers; else the window's result.
    int JoinData(uint8_t* pData, int nLen);
    uint32_t Size();
    uint32_t MaxSize();
    uint8_t GetByte(int nIndex);
    uint8_t* GetData(int nIndex, int nLen);
    std::span<const uint8_t> GetRun(int nIndex);

    // Two bytes, big-endian.
    bool GetShortValue(int32_t nPos, uint16_t& value);

    // How many bytes from the window's front on a scan has taken already. The last bytes of every scan are kept, but may
    // belong to a frame that was delivered: looked at again, a magic among them would be reported twice. It can be more
    // than the window holds, if a block was stepped over that is still arriving. Set once the cycle is saved.
    void SetTakenLen(int nTakenLen) { m_nTakenLen = nTakenLen; }
    int GetTakenLen() const { return m_nTakenLen; }

    // How many bytes from the window's front on a search for the end of the frame there has been through in vain: it goes
    // on behind them, once more bytes have come. Set once the cycle is saved.
    void SetSearchedLen(int nSearchedLen) { m_nSearchedLen = nSearchedLen; }
    int GetSearchedLen() const { return m_nSearchedLen; }

    // Everything before nIndex is consumed.
    int SetCurParseIndex(int nIndex) { return SaveRemainData(nIndex); }
    int SaveRemainData(int nIndex);
    int ClearBuffer();
    int GetRemainData(uint8_t** ppData, int* pLen);
    int SetKeyPos(int nStreamPos, int nFramePos);
    int GetKeyPos(int64_t& nStreamPos, int64_t& nFramePos);
    int64_t GetDeletedLen();
    int GetMemType() const { return m_nMemoryType; }

private:
    [[maybe_unused]] bool m_bMemReAlloc_prevPointerChange = false; // never used
    std::unique_ptr<IBufferBase> m_pBufferManager;
    int32_t m_nMemoryType = 0;
    bool m_bHasInit = false;
    int m_nTakenLen = 0;
    int m_nSearchedLen = 0;
};

} // namespace Marvane::FrameSift

#endif
