// A big-endian 32-bit word that slides over the window.
#ifndef FRAMESIFT_SRC_STREAMANALZYER_WORDSLIDER_H
#define FRAMESIFT_SRC_STREAMANALZYER_WORDSLIDER_H

#include <algorithm>
#include <cstdint>
#include <limits>

#include "Memory/LogicData.h"

namespace Marvane::FrameSift {

// Reads the window run by run, so that a byte costs no call. Positions are 64 bits wide: a length from the wire may
// lead past the window's end, and past what an index can count.
class CWordSlider
{
public:
    static constexpr uint32_t EMPTY_WORD = 0xFFFFFFFF;

    CWordSlider(CLogicData& logicData, int64_t nEnd) : m_logicData(logicData), m_nEnd(nEnd) {}

    // Slides on until isID agrees with the word. False at the end of the data.
    template <class IsID>
    bool SlideTo(IsID&& isID)
    {
        while (m_nPos + 1 < m_nEnd) {
            auto run = m_logicData.GetRun(static_cast<int>(m_nPos + 1));
            run = run.first(std::min(run.size(), static_cast<size_t>(m_nEnd - m_nPos - 1)));
            if (run.empty())
                return false;
            for (const uint8_t nByte : run) {
                m_nWord = m_nWord << 8 | nByte;
                ++m_nPos;
                if (isID(static_cast<int>(m_nWord))) {
                    m_nLastOutside = m_nPos - 1;
                    return true;
                }
            }
            m_nLastOutside = m_nPos;
        }
        return false;
    }

    // Goes on behind nLastByte with a fresh word.
    void Restart(int64_t nLastByte, uint32_t nWord = EMPTY_WORD)
    {
        m_nPos = nLastByte;
        m_nRestartPos = nLastByte;
        m_nLastOutside = nLastByte;
        m_nWord = nWord;
    }

    // Goes on behind the window's first nLen bytes as if it had slid through them.
    void GoOnBehind(int64_t nLen)
    {
        if (nLen - 5 < m_nPos) // the word must hold none of what it started with
            return;
        for (int64_t nPos = nLen - 4; nPos < nLen; ++nPos)
            m_nWord = m_nWord << 8 | m_logicData.GetByte(static_cast<int>(nPos));
        m_nPos = nLen - 1;
        m_nLastOutside = m_nPos;
    }

    uint32_t Word() const { return m_nWord; }
    // Index of the word's last byte; after a match it fits an index.
    int64_t Pos() const { return m_nPos; }
    int WordPos() const { return static_cast<int>(m_nPos - 3); }

    // Where the next cycle starts if nothing is found any more: 3 bytes before the last byte that ended no ID, so that an
    // ID split between two chunks is found. Negative for a window of fewer than 4 bytes; the window's end if a block was
    // stepped over that ends behind it.
    int KeepPos() const { return ToIndex(std::min(m_nLastOutside - 3, m_nEnd)); }

    // How many bytes from KeepPos on lie before the place of the last restart; they may be still to come.
    int TakenLen() const { return ToIndex(std::max<int64_t>(m_nRestartPos + 1 - KeepPos(), 0)); }

    // An index past the window's end stays past it.
    static int ToIndex(int64_t nPos)
    {
        return static_cast<int>(std::min<int64_t>(nPos, std::numeric_limits<int>::max()));
    }

private:
    CLogicData& m_logicData;
    int64_t m_nEnd;
    int64_t m_nPos = -1;
    int64_t m_nRestartPos = -1;
    int64_t m_nLastOutside = 0;
    uint32_t m_nWord = EMPTY_WORD;
};

} // namespace Marvane::FrameSift

#endif
