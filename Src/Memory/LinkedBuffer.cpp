#include "Memory/LinkedBuffer.h"

#include <cstring>

#include "Memory/TryAlloc.h"

namespace Marvane::FrameSift {

uint8_t* CLinkedBuffer::InsertBuffer(const uint8_t* pData, uint32_t nLen)
{
    if (pData == nullptr || nLen == 0)
        return nullptr;
    auto pCopy = TRY_ALLOC_ARRAY<uint8_t>(nLen);
    if (pCopy == nullptr)
        return nullptr;
    std::memcpy(pCopy.get(), pData, nLen);
    if (!TryAlloc([&] { m_listBuffer.push_back(std::move(pCopy)); }))
        return nullptr;
    return m_listBuffer.back().get();
}

} // namespace Marvane::FrameSift
