#include "Memory/LogicData.h"

#include <new>

#include "Memory/LogicBuffer.h"
#include "framesift/framesift.h"

namespace Marvane::FrameSift {

int CLogicData::JoinData(uint8_t* pData, int nLen)
{
    if (pData == nullptr)
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    if (m_pBufferManager == nullptr)
        m_pBufferManager.reset(new (std::nothrow) CLogicBuffer);
    // Not an error here: the cycle then finds an empty window, and the next one tries again.
    if (m_pBufferManager == nullptr)
        return KX_SUCCESS;
    if (!m_bHasInit && m_pBufferManager->InitBuffer(0) != KX_SUCCESS)
        return -1;
    m_bHasInit = true;
    return m_pBufferManager->JoinData(pData, nLen);
}

uint32_t CLogicData::Size()
{
    return m_pBufferManager != nullptr ? m_pBufferManager->Size() : 0;
}

uint32_t CLogicData::MaxSize()
{
    return m_pBufferManager != nullptr ? m_pBufferManager->MaxSize() : 0;
}

uint8_t CLogicData::GetByte(int nIndex)
{
    return m_pBufferManager != nullptr ? m_pBufferManager->GetByte(nIndex) : uint8_t{0};
}

uint8_t* CLogicData::GetData(int nIndex, int nLen)
{
    return m_pBufferManager != nullptr ? m_pBufferManager->GetData(nIndex, nLen) : nullptr;
}

std::span<const uint8_t> CLogicData::GetRun(int nIndex)
{
    return m_pBufferManager != nullptr ? m_pBufferManager->GetRun(nIndex) : std::span<const uint8_t>();
}

bool CLogicData::GetShortValue(int32_t nPos, uint16_t& value)
{
    const uint8_t* pBytes = GetData(nPos, sizeof value);
    if (pBytes == nullptr)
        return false;
    value = static_cast<uint16_t>(pBytes[0] << 8 | pBytes[1]);
    return true;
}

int CLogicData::SaveRemainData(int nIndex)
{
    m_nTakenLen = 0;
    m_nSearchedLen = 0;
    return m_pBufferManager != nullptr ? m_pBufferManager->SaveRemainData(nIndex) : -1;
}

int CLogicData::ClearBuffer()
{
    m_nTakenLen = 0;
    m_nSearchedLen = 0;
    return m_pBufferManager != nullptr ? m_pBufferManager->ClearBuffer() : -1;
}

int CLogicData::GetRemainData(uint8_t** ppData, int* pLen)
{
    return m_pBufferManager != nullptr ? m_pBufferManager->GetRemainData(ppData, pLen) : -1;
}

int CLogicData::SetKeyPos(int nStreamPos, int nFramePos)
{
    return m_pBufferManager != nullptr ? m_pBufferManager->SetKeyPos(nStreamPos, nFramePos) : -1;
}

int CLogicData::GetKeyPos(int64_t& nStreamPos, int64_t& nFramePos)
{
    return m_pBufferManager != nullptr ? m_pBufferManager->GetKeyPos(nStreamPos, nFramePos) : -1;
}

int64_t CLogicData::GetDeletedLen()
{
    return m_pBufferManager != nullptr ? m_pBufferManager->GetDeletedLen() : 0;
}

} // namespace Marvane::FrameSift
