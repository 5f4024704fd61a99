// An owned block of bytes: a key, or the header of an elementary stream.
#ifndef FRAMESIFT_SRC_ESPARSE_ESHEAD_H
#define FRAMESIFT_SRC_ESPARSE_ESHEAD_H

#include <cstdint>
#include <memory>

namespace Marvane::FrameSift {

// A copy that runs out of memory has no data but the length of its source.
class CESHead
{
public:
    CESHead() = default;
    CESHead(const CESHead& other);
    CESHead& operator=(const CESHead& other);
    ~CESHead() = default;

    // Room for nLen bytes; what was there is gone. 0 or 13.
    int Init(uint32_t nLen);

    // 13 without memory; 6 if the block is shorter than nDataLen. The length that a shorter copy leaves is the new
    // limit: a later longer one is refused.
    int SetData(const uint8_t* pData, uint32_t nDataLen);

    uint8_t* GetData() const { return m_pData.get(); }
    uint32_t GetLength() const { return m_nDataLen; }

private:
    void CopyFrom(const CESHead& other);

    std::unique_ptr<uint8_t[]> m_pData;
    uint32_t m_nDataLen = 0;
};

} // namespace Marvane::FrameSift

#endif
