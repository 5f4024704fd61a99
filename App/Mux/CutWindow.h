// The part of an elementary stream that a cutter still needs, addressed by offset in the stream.
#ifndef FRAMESIFT_APP_MUX_CUTWINDOW_H
#define FRAMESIFT_APP_MUX_CUTWINDOW_H

#include <cstdint>
#include <span>
#include <vector>

namespace Marvane::FrameSift {

class CCutWindow
{
public:
    // Drops what lies before Begin and adds bytes at the end. Throws CAppError if more than one unit would be held.
    void Append(std::span<const uint8_t> bytes);
    // Moves Begin; the bytes in front of it count as done.
    void Advance(uint64_t nBegin) { m_nBegin = nBegin; }

    uint64_t Begin() const { return m_nBegin; }
    uint64_t End() const { return m_nBase + m_bytes.size(); }
    uint8_t At(uint64_t nOffset) const { return m_bytes[Index(nOffset)]; }
    std::span<const uint8_t> Range(uint64_t nFrom, uint64_t nTo) const;

private:
    size_t Index(uint64_t nOffset) const { return static_cast<size_t>(nOffset - m_nBase); }

    std::vector<uint8_t> m_bytes;
    uint64_t m_nBase = 0;  // offset of m_bytes[0]
    uint64_t m_nBegin = 0; // never before m_nBase
};

} // namespace Marvane::FrameSift

#endif
