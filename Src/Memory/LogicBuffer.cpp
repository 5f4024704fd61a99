#include "Memory/LogicBuffer.h"

#include <algorithm>
#include <limits>

#include "framesift/framesift.h"

namespace Marvane::FrameSift {

namespace {

constexpr int32_t sc_initialSize = 16384;
constexpr int32_t sc_noWaste = 1 << 30; // above it, what was consumed would cost bytes that an index could count

} // namespace

int CLogicBuffer::InitBuffer(int)
{
    if (const int nResult = m_fixBuffer.Init(sc_initialSize); nResult != KX_SUCCESS)
        return nResult;
    m_nFixCapacity = sc_initialSize;
    return m_remainBuffer.Init(sc_initialSize);
}

int CLogicBuffer::JoinData(uint8_t* pData, int nLen)
{
    if (pData == nullptr)
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    if (nLen < 0)
        return KX_ERROR_PARAMETER;
    // Indices are 32 bits wide: a window that they cannot count is refused before anything moves.
    if (nLen > std::numeric_limits<int32_t>::max() - KeptLen())
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    MoveRemainBufferToFixBuffer();
    m_pNewBuffer = pData;
    m_nNewBufferLen = nLen;
    return KX_SUCCESS;
}

int64_t CLogicBuffer::KeptLen() const
{
    return IsKeptInPlace() ? m_fixBuffer.GetDataLen() - m_nKeepFrom : m_remainBuffer.GetDataLen();
}

// Nothing can fail here: bytes that were kept elsewhere come by a change of places.
int CLogicBuffer::MoveRemainBufferToFixBuffer()
{
    if (IsKeptInPlace()) {
        m_fixBuffer.FreeEarlierBlocks();
        m_nFront = m_nKeepFrom;
        m_nKeepFrom = -1;
        if (m_nFront > 0 &&
            (m_nFront >= m_fixBuffer.GetDataLen() - m_nFront || m_fixBuffer.GetDataLen() > sc_noWaste)) {
            m_fixBuffer.RemoveFront(m_nFront);
            m_nFront = 0;
        }
    } else {
        m_fixBuffer.Clear();
        m_fixBuffer.Swap(m_remainBuffer);
        m_nFront = 0;
    }
    CountFixLen(m_fixBuffer.GetDataLen() - m_nFront);
    m_nHasDeletedDataLen += m_nNeedToDel;
    m_nNeedToDel = 0;
    return KX_SUCCESS;
}

void CLogicBuffer::CountFixLen(int32_t nFixLen)
{
    m_nFixLen = nFixLen;
    m_nFixCapacity = CDynamicBuffer::SizeFor(m_nFixCapacity, nFixLen);
}

uint8_t* CLogicBuffer::GetData(int nIndex, int nLen)
{
    if (m_pNewBuffer == nullptr || !IsParameterValid(nIndex, nLen))
        return nullptr;
    if (nIndex >= m_nFixLen)
        return m_pNewBuffer + (nIndex - m_nFixLen);
    const int32_t nEnd = nIndex + nLen;
    if (nEnd > m_nFixLen && MoveSeam(nEnd - m_nFixLen) != KX_SUCCESS)
        return nullptr;
    return Front() + nIndex;
}

int CLogicBuffer::MoveSeam(int32_t nLen)
{
    // Frames queued earlier in this cycle may lie in a block that a growth replaces: it stays.
    if (!IsKeptInPlace() && m_fixBuffer.AppendBuffer(m_pNewBuffer, nLen, true) != KX_SUCCESS)
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    m_pNewBuffer += nLen;
    m_nNewBufferLen -= nLen;
    CountFixLen(m_nFixLen + nLen);
    return KX_SUCCESS;
}

std::span<const uint8_t> CLogicBuffer::GetRun(int nIndex)
{
    if (m_pNewBuffer == nullptr || !IsIndexValid(nIndex))
        return {};
    if (nIndex < m_nFixLen)
        return {Front() + nIndex, static_cast<size_t>(m_nFixLen - nIndex)};
    return {m_pNewBuffer + (nIndex - m_nFixLen), static_cast<size_t>(m_nNewBufferLen - (nIndex - m_nFixLen))};
}

uint32_t CLogicBuffer::MaxSize()
{
    return static_cast<uint32_t>(int64_t{m_nNewBufferLen} + m_nFixCapacity);
}

uint8_t CLogicBuffer::GetByte(int nIndex)
{
    const auto run = GetRun(nIndex);
    return run.empty() ? uint8_t{0} : run.front();
}

int CLogicBuffer::ClearBuffer()
{
    m_fixBuffer.Clear();
    m_remainBuffer.Clear();
    m_nFront = 0;
    m_nFixLen = 0;
    m_nKeepFrom = -1;
    m_nHasDeletedDataLen = 0;
    m_nNeedToDel = 0;
    m_nFrameStartPos = 0;
    m_nStreamStartPos = 0;
    m_nNewBufferLen = 0;
    m_pNewBuffer = nullptr;
    return KX_SUCCESS;
}

int CLogicBuffer::SaveRemainData(int nIndex)
{
    if (m_pNewBuffer == nullptr)
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    if (!IsIndexValid(nIndex)) {
        // The bytes are not kept, so they leave the window; the offsets behind them stay right.
        m_nNeedToDel = Size();
        return KX_ERROR_PARAMETER;
    }
    const bool bInPlace = nIndex < m_nFixLen && KeptLen() == 0;
    const int nResult = bInPlace ? KeepInPlace(nIndex) : KeepInRemainBuffer(nIndex);
    if (nResult == KX_SUCCESS)
        m_nNeedToDel = static_cast<uint32_t>(nIndex);
    return nResult;
}

int CLogicBuffer::KeepInPlace(int nIndex)
{
    if (m_fixBuffer.AppendBuffer(m_pNewBuffer, m_nNewBufferLen, true) != KX_SUCCESS)
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    m_nKeepFrom = m_nFront + nIndex;
    return KX_SUCCESS;
}

int CLogicBuffer::KeepInRemainBuffer(int nIndex)
{
    const auto keep = [this](const uint8_t* pBytes, int32_t nLen) {
        return m_remainBuffer.AppendBuffer(pBytes, nLen, false) == KX_SUCCESS;
    };
    if (IsKeptInPlace()) {
        if (!keep(m_fixBuffer.GetPointer() + m_nKeepFrom, static_cast<int32_t>(KeptLen())))
            return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
        m_nKeepFrom = -1;
        // From here on the chunk's bytes behind the front part are not looked at again.
        m_fixBuffer.RemoveBack(m_nNewBufferLen);
    }
    const int32_t nFromFix = std::max(m_nFixLen - nIndex, 0);
    const int32_t nFromNew = std::max(nIndex - m_nFixLen, 0);
    if (!keep(Front() + m_nFixLen - nFromFix, nFromFix) || !keep(m_pNewBuffer + nFromNew, m_nNewBufferLen - nFromNew))
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    return KX_SUCCESS;
}

bool CLogicBuffer::IsParameterValid(int nIndex, int nLen)
{
    return IsIndexValid(nIndex) && IsLengthValid(nLen) && int64_t{nIndex} + nLen <= WindowSize();
}

int CLogicBuffer::GetRemainData(uint8_t** ppData, int* pLen)
{
    if (ppData == nullptr || pLen == nullptr)
        return KX_ERROR_PARAMETER;
    *ppData = IsKeptInPlace() ? m_fixBuffer.GetPointer() + m_nKeepFrom : m_remainBuffer.GetPointer();
    *pLen = static_cast<int>(KeptLen());
    return KX_SUCCESS;
}

int CLogicBuffer::SetKeyPos(int nStreamPos, int nFramePos)
{
    m_nStreamStartPos = nStreamPos;
    m_nFrameStartPos = nFramePos;
    return KX_SUCCESS;
}

int CLogicBuffer::GetKeyPos(int64_t& nStreamPos, int64_t& nFramePos)
{
    nStreamPos = m_nStreamStartPos + m_nHasDeletedDataLen;
    nFramePos = m_nFrameStartPos + m_nHasDeletedDataLen;
    return KX_SUCCESS;
}

} // namespace Marvane::FrameSift
