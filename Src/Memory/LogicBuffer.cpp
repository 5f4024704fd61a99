#include "Memory/LogicBuffer.h"

#include <limits>

#include "framesift/framesift.h"

namespace Marvane::FrameSift {

namespace {

constexpr int32_t sc_initialSize = 16384;

} // namespace

int CLogicBuffer::InitBuffer(int)
{
    if (const int nResult = m_fixBuffer.Init(sc_initialSize); nResult != KX_SUCCESS)
        return nResult;
    return m_remainBuffer.Init(sc_initialSize);
}

int CLogicBuffer::JoinData(uint8_t* pData, int nLen)
{
    if (pData == nullptr)
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    if (nLen < 0)
        return KX_ERROR_PARAMETER;
    // Indices are 32 bits wide: a window that they cannot count is refused before anything moves.
    if (nLen > std::numeric_limits<int32_t>::max() - m_remainBuffer.GetDataLen())
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    MoveRemainBufferToFixBuffer();
    m_pNewBuffer = pData;
    m_nNewBufferLen = nLen;
    return KX_SUCCESS;
}

int CLogicBuffer::MoveRemainBufferToFixBuffer()
{
    // The two change places: what was kept is not copied once more, and nothing can fail.
    m_fixBuffer.Clear();
    m_fixBuffer.Swap(m_remainBuffer);
    m_nHasDeletedDataLen += m_nNeedToDel;
    m_nNeedToDel = 0;
    return KX_SUCCESS;
}

uint8_t* CLogicBuffer::GetData(int nIndex, int nLen)
{
    if (m_pNewBuffer == nullptr || !IsParameterValid(nIndex, nLen))
        return nullptr;
    const int32_t nSeam = m_fixBuffer.GetDataLen();
    if (nIndex >= nSeam)
        return m_pNewBuffer + (nIndex - nSeam);
    const int32_t nEnd = nIndex + nLen;
    if (nEnd > nSeam) {
        // Frames queued earlier in this cycle may lie in the block that the growth replaces.
        if (nEnd > m_fixBuffer.MaxSize())
            m_bMemReAlloc_prevPointerChange = true;
        const int32_t nMoved = nEnd - nSeam;
        if (m_fixBuffer.AppendBuffer(m_pNewBuffer, nMoved, m_bMemReAlloc_prevPointerChange) != KX_SUCCESS)
            return nullptr;
        m_pNewBuffer += nMoved;
        m_nNewBufferLen -= nMoved;
    }
    return m_fixBuffer.GetPointer() + nIndex;
}

std::span<const uint8_t> CLogicBuffer::GetRun(int nIndex)
{
    if (m_pNewBuffer == nullptr || !IsIndexValid(nIndex))
        return {};
    const int32_t nSeam = m_fixBuffer.GetDataLen();
    if (nIndex < nSeam)
        return {m_fixBuffer.GetPointer() + nIndex, static_cast<size_t>(nSeam - nIndex)};
    return {m_pNewBuffer + (nIndex - nSeam), static_cast<size_t>(m_nNewBufferLen - (nIndex - nSeam))};
}

uint32_t CLogicBuffer::MaxSize()
{
    return static_cast<uint32_t>(int64_t{m_nNewBufferLen} + m_fixBuffer.MaxSize());
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
    const int32_t nSeam = m_fixBuffer.GetDataLen();
    int32_t nFromNew = 0;
    if (nIndex >= nSeam)
        nFromNew = nIndex - nSeam;
    else if (m_remainBuffer.AppendBuffer(m_fixBuffer.GetPointer() + nIndex, nSeam - nIndex, false) != KX_SUCCESS)
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    if (m_remainBuffer.AppendBuffer(m_pNewBuffer + nFromNew, m_nNewBufferLen - nFromNew, false) != KX_SUCCESS)
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    m_nNeedToDel = static_cast<uint32_t>(nIndex);
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
    *ppData = m_remainBuffer.GetPointer();
    *pLen = m_remainBuffer.GetDataLen();
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
