#include "ESParse/ESHead.h"

#include <cstring>

#include "Memory/TryAlloc.h"
#include "framesift/framesift.h"

namespace Marvane::FrameSift {

CESHead::CESHead(const CESHead& other)
{
    CopyFrom(other);
}

CESHead& CESHead::operator=(const CESHead& other)
{
    if (this != &other)
        CopyFrom(other);
    return *this;
}

void CESHead::CopyFrom(const CESHead& other)
{
    m_pData.reset();
    m_nDataLen = other.m_nDataLen;
    if (other.m_pData == nullptr || other.m_nDataLen == 0)
        return;
    m_pData = TRY_ALLOC_ARRAY<uint8_t>(other.m_nDataLen);
    if (m_pData != nullptr)
        std::memcpy(m_pData.get(), other.m_pData.get(), other.m_nDataLen);
}

int CESHead::Init(uint32_t nLen)
{
    m_pData = TRY_ALLOC_ARRAY<uint8_t>(nLen);
    m_nDataLen = m_pData != nullptr ? nLen : 0;
    return m_pData != nullptr ? KX_SUCCESS : KX_ERROR_SYSTEM_OUT_OF_MEMORY;
}

int CESHead::SetData(const uint8_t* pData, uint32_t nDataLen)
{
    if (m_pData == nullptr && Init(nDataLen) != KX_SUCCESS)
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    if (nDataLen > m_nDataLen)
        return KX_ERROR_PARAMETER;
    if (nDataLen > 0 && pData == nullptr)
        return KX_ERROR_PARAMETER;
    if (nDataLen > 0)
        std::memcpy(m_pData.get(), pData, nDataLen);
    m_nDataLen = nDataLen;
    return KX_SUCCESS;
}

} // namespace Marvane::FrameSift
