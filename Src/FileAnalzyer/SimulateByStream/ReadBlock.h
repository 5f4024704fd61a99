// The block that a stage reads into.
#ifndef FRAMESIFT_SRC_FILEANALZYER_SIMULATEBYSTREAM_READBLOCK_H
#define FRAMESIFT_SRC_FILEANALZYER_SIMULATEBYSTREAM_READBLOCK_H

#include <algorithm>
#include <cstdint>
#include <memory>

#include "Memory/TryAlloc.h"

namespace Marvane::FrameSift {

// A window leads into the block that was fed last: a block that has grown leaves its former bytes in place until the
// next one has reached the window.
class CReadBlock
{
public:
    static constexpr uint32_t MAX_SIZE = 0x500000; // a longer need is met in several reads

    // Makes the block, once: a block that is there keeps its size. False without memory.
    bool Make(uint32_t nSize)
    {
        if (m_pBytes != nullptr)
            return true;
        m_pBytes = TRY_ALLOC_ARRAY<uint8_t>(nSize);
        m_nSize = m_pBytes != nullptr ? nSize : 0;
        return m_pBytes != nullptr;
    }

    // The size of the next read for a parser that needs nNeed bytes: the bytes themselves if they fit or the block can
    // grow to them. It never grows beyond what a file of nFileSize bytes can fill. 0 without memory.
    uint32_t SizeFor(int32_t nNeed, uint32_t nUsual, int64_t nFileSize)
    {
        if (nNeed <= 0)
            return nUsual;
        const auto nWanted = static_cast<uint32_t>(nNeed);
        if (nWanted >= MAX_SIZE)
            return m_nSize;
        return nWanted <= m_nSize || Grow(std::clamp<int64_t>(nFileSize, m_nSize, nWanted)) ? std::min(nWanted, m_nSize)
                                                                                            : 0;
    }

    void DropFormer() { m_pFormer.reset(); } // the window has moved on
    void Free()
    {
        m_pBytes.reset();
        m_pFormer.reset();
        m_nSize = 0;
    }
    uint8_t* Bytes() const { return m_pBytes.get(); }
    uint32_t Size() const { return m_nSize; }

private:
    bool Grow(int64_t nSize)
    {
        if (nSize <= m_nSize)
            return true;
        auto pBytes = TRY_ALLOC_ARRAY<uint8_t>(static_cast<size_t>(nSize));
        if (pBytes == nullptr)
            return false;
        if (m_pFormer == nullptr)
            m_pFormer = std::move(m_pBytes);
        m_pBytes = std::move(pBytes);
        m_nSize = static_cast<uint32_t>(nSize);
        return true;
    }

    std::unique_ptr<uint8_t[]> m_pBytes;
    std::unique_ptr<uint8_t[]> m_pFormer;
    uint32_t m_nSize = 0;
};

} // namespace Marvane::FrameSift

#endif
