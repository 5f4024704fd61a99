#include "Memory/DynamicBuffer.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "Memory/TryAlloc.h"
#include "framesift/framesift.h"

namespace Marvane::FrameSift {

namespace {

constexpr int32_t sc_firstSize = 16384;
constexpr int64_t sc_maxSize = std::numeric_limits<int32_t>::max();

int64_t NextSize(int64_t nMaxSize)
{
    if (nMaxSize == 0)
        return sc_firstSize;
    if (nMaxSize <= CDynamicBuffer::DOUBLE_SIZE_THRELOD)
        return nMaxSize * 2;
    return nMaxSize + CDynamicBuffer::REALLOC_STEP;
}

} // namespace

int CDynamicBuffer::Init(int32_t nSize)
{
    m_nDataLen = 0;
    if (nSize <= m_nMaxSize)
        return KX_SUCCESS;
    auto pBlock = TRY_ALLOC_ARRAY<uint8_t>(static_cast<size_t>(nSize));
    if (pBlock == nullptr)
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    std::memset(pBlock.get(), 0, static_cast<size_t>(nSize));
    m_pBuffer = std::move(pBlock);
    m_nMaxSize = nSize;
    m_nBlockSize = nSize;
    return KX_SUCCESS;
}

void CDynamicBuffer::Clear()
{
    m_nDataLen = 0;
    m_safeBuffers.clear();
}

int CDynamicBuffer::StaticAppendBuffer(const uint8_t* pData, int32_t nLen)
{
    if (pData == nullptr)
        return KX_ERROR_PARAMETER;
    if (nLen > m_nMaxSize - m_nDataLen)
        return KX_ERROR_BUFFER_OVERFLOW;
    if (m_pBuffer == nullptr)
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    if (nLen > 0) {
        std::memcpy(m_pBuffer.get() + m_nDataLen, pData, static_cast<size_t>(nLen));
        m_nDataLen += nLen;
    }
    return KX_SUCCESS;
}

int CDynamicBuffer::AppendBuffer(const uint8_t* pData, int32_t nLen, bool bKeepOld)
{
    if (pData == nullptr)
        return KX_ERROR_PARAMETER;
    if (nLen < 1)
        return KX_SUCCESS;
    const int64_t nNeeded = int64_t{m_nDataLen} + nLen;
    if (nNeeded > sc_maxSize)
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    const int32_t nMaxSize = SizeFor(m_nMaxSize, nNeeded);
    if (nMaxSize > m_nMaxSize && GrowTo(nMaxSize, bKeepOld) != KX_SUCCESS)
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    return StaticAppendBuffer(pData, nLen);
}

int32_t CDynamicBuffer::SizeFor(int32_t nMaxSize, int64_t nLen)
{
    int64_t nSize = nMaxSize;
    while (nSize < std::min(nLen, sc_maxSize))
        nSize = NextSize(nSize);
    return static_cast<int32_t>(std::min(nSize, sc_maxSize));
}

void CDynamicBuffer::RemoveFront(int32_t nLen)
{
    m_nDataLen -= nLen;
    std::memmove(m_pBuffer.get(), m_pBuffer.get() + nLen, static_cast<size_t>(m_nDataLen));
}

int CDynamicBuffer::ReAlloc(bool bKeepOld)
{
    return GrowTo(NextSize(m_nMaxSize), bKeepOld);
}

void CDynamicBuffer::Swap(CDynamicBuffer& other)
{
    std::swap(m_pBuffer, other.m_pBuffer);
    std::swap(m_safeBuffers, other.m_safeBuffers);
    std::swap(m_nMaxSize, other.m_nMaxSize);
    std::swap(m_nBlockSize, other.m_nBlockSize);
    std::swap(m_nDataLen, other.m_nDataLen);
}

int CDynamicBuffer::GrowTo(int64_t nMaxSize, bool bKeepOld)
{
    nMaxSize = std::min(nMaxSize, sc_maxSize);
    if (nMaxSize <= m_nMaxSize)
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    // The block at least doubles, whatever the step. A stream of false frame heads makes the window grow again and
    // again in one cycle; with blocks one step larger each, those kept would add up to the square of the window.
    const int64_t nBlockSize = std::min(std::max(nMaxSize, int64_t{m_nBlockSize} * 2), sc_maxSize);
    if (nMaxSize > m_nBlockSize) {
        auto pBlock = TRY_ALLOC_ARRAY<uint8_t>(static_cast<size_t>(nBlockSize));
        if (pBlock == nullptr)
            return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
        if (m_nDataLen > 0)
            std::memcpy(pBlock.get(), m_pBuffer.get(), static_cast<size_t>(m_nDataLen));
        if (bKeepOld && m_pBuffer != nullptr && !TryAlloc([this] { m_safeBuffers.reserve(m_safeBuffers.size() + 1); }))
            return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
        m_pBuffer.swap(pBlock);
        m_nBlockSize = static_cast<int32_t>(nBlockSize);
        if (bKeepOld && pBlock != nullptr)
            m_safeBuffers.push_back(std::move(pBlock));
        else
            m_safeBuffers.clear();
    }
    m_nMaxSize = static_cast<int32_t>(nMaxSize);
    return KX_SUCCESS;
}

} // namespace Marvane::FrameSift
