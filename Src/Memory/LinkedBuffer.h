// Private copies of bytes that must outlive the window.
#ifndef FRAMESIFT_SRC_MEMORY_LINKEDBUFFER_H
#define FRAMESIFT_SRC_MEMORY_LINKEDBUFFER_H

#include <cstdint>
#include <list>
#include <memory>

namespace Marvane::FrameSift {

class CLinkedBuffer
{
public:
    CLinkedBuffer() = default;
    CLinkedBuffer(const CLinkedBuffer&) = delete;
    CLinkedBuffer& operator=(const CLinkedBuffer&) = delete;

    // A copy that lives until Clear. Null for a null source, for a length of 0, and without memory.
    uint8_t* InsertBuffer(const uint8_t* pData, uint32_t nLen);
    void Clear() { m_listBuffer.clear(); }

private:
    std::list<std::unique_ptr<uint8_t[]>> m_listBuffer;
};

} // namespace Marvane::FrameSift

#endif
