// A growing byte array whose earlier blocks can be kept readable.
#ifndef FRAMESIFT_SRC_MEMORY_DYNAMICBUFFER_H
#define FRAMESIFT_SRC_MEMORY_DYNAMICBUFFER_H

#include <cstdint>
#include <memory>
#include <vector>

namespace Marvane::FrameSift {

class CDynamicBuffer
{
public:
    static constexpr int32_t REALLOC_STEP = 65536;
    static constexpr int32_t DOUBLE_SIZE_THRELOD = 256000;

    CDynamicBuffer() = default;
    CDynamicBuffer(const CDynamicBuffer&) = delete;
    CDynamicBuffer& operator=(const CDynamicBuffer&) = delete;

    // Empties the buffer and makes room for nSize bytes, zeroed if they are new. 0, or 13 without memory.
    int Init(int32_t nSize);

    // Empties the buffer and frees the earlier blocks. The current block stays: a buffer that has grown stays grown.
    void Clear();

    // Appends within the capacity. 0; 6 for null; 12 if the capacity does not suffice; 13 without a block.
    int StaticAppendBuffer(const uint8_t* pData, int32_t nLen);

    // Appends and grows as needed. bKeepOld: pointers into the buffer stay readable until Clear or the next growth
    // without it. 0; 6 for null; 13 without memory, with the contents as they were.
    int AppendBuffer(const uint8_t* pData, int32_t nLen, bool bKeepOld);

    // Grows by one step: doubles the capacity up to 256000 bytes, then adds 65536. Results as AppendBuffer.
    int ReAlloc(bool bKeepOld);

    void Swap(CDynamicBuffer& other);

    // Frees the earlier blocks; the contents stay.
    void FreeEarlierBlocks() { m_safeBuffers.clear(); }
    // Moves what stands behind the first nLen bytes to the front.
    void RemoveFront(int32_t nLen);
    void RemoveBack(int32_t nLen) { m_nDataLen -= nLen; }
    // The capacity that a buffer of nMaxSize bytes grows to by steps until nLen bytes fit.
    static int32_t SizeFor(int32_t nMaxSize, int64_t nLen);

    uint8_t* GetPointer() const { return m_pBuffer.get(); }
    int32_t GetDataLen() const { return m_nDataLen; }
    int32_t MaxSize() const { return m_nMaxSize; }
    bool IsEmpty() const { return m_nDataLen == 0; }
    uint8_t operator[](int32_t nIndex) const { return m_pBuffer[static_cast<size_t>(nIndex)]; }

private:
    int GrowTo(int64_t nMaxSize, bool bKeepOld);

    std::unique_ptr<uint8_t[]> m_pBuffer;
    // Blocks that pointers handed out may still lead into; all of them, however often the buffer has grown.
    std::vector<std::unique_ptr<uint8_t[]>> m_safeBuffers;
    int32_t m_nMaxSize = 0;
    int32_t m_nBlockSize = 0; // bytes that m_pBuffer really has, at least m_nMaxSize
    int32_t m_nDataLen = 0;
};

} // namespace Marvane::FrameSift

#endif
