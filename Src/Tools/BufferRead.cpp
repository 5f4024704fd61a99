#include "Tools/BufferRead.h"

namespace Marvane::FrameSift {

bool CBufferRead::ReadUint8(uint8_t& value)
{
    const uint8_t* pBytes = ReadBuffer(sizeof value);
    if (pBytes == nullptr)
        return false;
    value = *pBytes;
    return true;
}

bool CBufferRead::ReadUint16Lsb(uint16_t& value)
{
    const uint8_t* pBytes = ReadBuffer(sizeof value);
    if (pBytes == nullptr)
        return false;
    value = static_cast<uint16_t>(LoadLsb(pBytes, sizeof value));
    return true;
}

bool CBufferRead::ReadInt16Lsb(int16_t& value)
{
    uint16_t nRead = 0;
    if (!ReadUint16Lsb(nRead))
        return false;
    value = static_cast<int16_t>(nRead);
    return true;
}

bool CBufferRead::ReadUint32Lsb(uint32_t& value)
{
    const uint8_t* pBytes = ReadBuffer(sizeof value);
    if (pBytes == nullptr)
        return false;
    value = LoadUint32Lsb(pBytes);
    return true;
}

uint8_t CBufferRead::ReadInt8()
{
    uint8_t value = 0;
    return ReadUint8(value) ? value : uint8_t{0};
}

uint16_t CBufferRead::ReadInt16()
{
    uint16_t value = 0;
    return ReadUint16Lsb(value) ? value : uint16_t{0};
}

uint32_t CBufferRead::ReadInt24()
{
    const uint8_t* pBytes = ReadBuffer(3);
    return pBytes != nullptr ? static_cast<uint32_t>(LoadLsb(pBytes, 3)) : 0;
}

void CBufferRead::Backforword(uint32_t nLen)
{
    m_nCurPos = nLen > m_nCurPos ? 0 : m_nCurPos - nLen;
}

} // namespace Marvane::FrameSift
