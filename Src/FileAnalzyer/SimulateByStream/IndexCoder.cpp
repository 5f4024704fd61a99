#include "FileAnalzyer/SimulateByStream/IndexCoder.h"

#include <algorithm>
#include <cstring>
#include <type_traits>

namespace Marvane::FrameSift {

namespace {

constexpr unsigned sc_classBits = 3;
constexpr unsigned sc_classMask = (1U << sc_classBits) - 1;
static_assert(gsk_indexClasses < sc_classMask);
static_assert(gsk_maxIndexRuns < (0xFFU >> sc_classBits));

// Damaged frames may say anything: differences wrap, and come back exactly.
template <class T>
T Plus(T nLeft, T nRight)
{
    using Unsigned = std::make_unsigned_t<T>;
    return static_cast<T>(static_cast<Unsigned>(static_cast<Unsigned>(nLeft) + static_cast<Unsigned>(nRight)));
}

template <class T>
T Minus(T nLeft, T nRight)
{
    using Unsigned = std::make_unsigned_t<T>;
    return static_cast<T>(static_cast<Unsigned>(static_cast<Unsigned>(nLeft) - static_cast<Unsigned>(nRight)));
}

INDEX_COUNTERS CountersOf(const FrameInfo& frame)
{
    return {frame.frameSeq, frame.timeStamp, frame.nYuvTimeStamp, frame.nSampleSeq, frame.utcTime};
}

void SetCounters(FrameInfo& frame, const INDEX_COUNTERS& counters)
{
    frame.frameSeq = counters.frameSeq;
    frame.timeStamp = counters.timeStamp;
    frame.nYuvTimeStamp = counters.nYuvTimeStamp;
    frame.nSampleSeq = counters.nSampleSeq;
    frame.utcTime = counters.utcTime;
}

INDEX_COUNTERS Sum(const INDEX_COUNTERS& left, const INDEX_COUNTERS& right)
{
    return {Plus(left.frameSeq, right.frameSeq), Plus(left.timeStamp, right.timeStamp),
            left.nYuvTimeStamp + right.nYuvTimeStamp, left.nSampleSeq + right.nSampleSeq, left.utcTime + right.utcTime};
}

INDEX_COUNTERS Difference(const INDEX_COUNTERS& left, const INDEX_COUNTERS& right)
{
    return {Minus(left.frameSeq, right.frameSeq), Minus(left.timeStamp, right.timeStamp),
            left.nYuvTimeStamp - right.nYuvTimeStamp, left.nSampleSeq - right.nSampleSeq, left.utcTime - right.utcTime};
}

// The form of a record in which frames of a class are most alike: counters by their step, the offset by its distance
// from the end of the frame before, the payload by what surrounds it.
FILE_INDEX_INFO ToForm(const FILE_INDEX_INFO& record, const INDEX_COUNTERS& last, uint64_t nExpected)
{
    FILE_INDEX_INFO form = record;
    form.indexInfo.index = 0;
    form.indexInfo.streamOffset = Minus(record.indexInfo.streamOffset, record.indexInfo.frameOffset);
    form.indexInfo.frameOffset = Minus(record.indexInfo.frameOffset, static_cast<KXint64>(nExpected));
    FrameInfo& frame = form.frameInfo;
    frame.streamLen = Minus(int32_t{frame.frameLen}, int32_t{frame.streamLen});
    frame.streamPointer = nullptr;
    frame.framePointer = nullptr;
    frame.extDataPtr = nullptr;
    frame.pSvacOsdInfo = nullptr;
    SetCounters(frame, Difference(CountersOf(frame), last));
    return form;
}

const uint8_t* BytesOf(const FILE_INDEX_INFO& form)
{
    return reinterpret_cast<const uint8_t*>(&form);
}

// Writes where two forms differ, as runs.
class CRunWriter
{
public:
    CRunWriter(const FILE_INDEX_INFO& form, const FILE_INDEX_INFO& last, uint8_t* pRuns)
        : m_pForm(BytesOf(form)), m_pLast(BytesOf(last)), m_pRuns(pRuns)
    {}

    // False if there are more runs than the first byte can tell.
    bool WriteChanges()
    {
        for (size_t nStart = NextChange(0); nStart < gsk_indexRecordSize; nStart = NextChange(m_nPos)) {
            Write(nStart, EndOfRun(nStart));
            if (m_nRuns > gsk_maxIndexRuns)
                return false;
        }
        return true;
    }

    void WriteWhole()
    {
        m_nLength = m_nPos = m_nRuns = 0;
        Write(0, gsk_indexRecordSize);
    }

    unsigned Runs() const { return m_nRuns; }
    size_t Length() const { return m_nLength; }

private:
    bool IsChanged(size_t n) const { return m_pForm[n] != m_pLast[n]; }

    size_t NextChange(size_t n) const
    {
        constexpr size_t nWord = sizeof(uint64_t);
        while (n + nWord <= gsk_indexRecordSize && std::memcmp(m_pForm + n, m_pLast + n, nWord) == 0)
            n += nWord;
        while (n < gsk_indexRecordSize && !IsChanged(n))
            ++n;
        return n;
    }

    // Two equal bytes in between cost no more than the head of another run.
    size_t EndOfRun(size_t nStart) const
    {
        size_t nEnd = nStart + 1;
        for (size_t n = nEnd; n < gsk_indexRecordSize && n - nEnd < 3; ++n) {
            if (IsChanged(n))
                nEnd = n + 1;
        }
        return nEnd;
    }

    // In several runs where a number does not fit in its byte.
    void Write(size_t nStart, size_t nEnd)
    {
        while (m_nPos < nEnd) {
            const size_t nSkip = std::min<size_t>(nStart - std::min(nStart, m_nPos), UINT8_MAX);
            m_nPos += nSkip;
            const size_t nCount = m_nPos < nStart ? 0 : std::min<size_t>(nEnd - m_nPos, UINT8_MAX);
            m_pRuns[m_nLength++] = static_cast<uint8_t>(nSkip);
            m_pRuns[m_nLength++] = static_cast<uint8_t>(nCount);
            for (const size_t nTo = m_nPos + nCount; m_nPos < nTo; ++m_nPos)
                m_pRuns[m_nLength++] = m_pForm[m_nPos] ^ m_pLast[m_nPos];
            ++m_nRuns;
        }
    }

    const uint8_t* m_pForm;
    const uint8_t* m_pLast;
    uint8_t* m_pRuns;
    size_t m_nLength = 0;
    size_t m_nPos = 0; // behind the last run
    unsigned m_nRuns = 0;
};

} // namespace

void CIndexCoder::StartBlock(uint64_t nExpected)
{
    for (INDEX_STATE& state : m_states)
        state.bSet = false;
    m_nExpected = nExpected;
}

INDEX_STATE& CIndexCoder::StateOf(INDEX_CLASS eClass)
{
    const auto nClass = static_cast<size_t>(eClass);
    INDEX_STATE& state = m_states[nClass];
    if (!state.bSet) {
        state = m_bases[nClass];
        state.bSet = true;
    }
    return state;
}

INDEX_STATE CIndexCoder::BaseOf(const FILE_INDEX_INFO& record)
{
    INDEX_STATE base;
    base.counters = CountersOf(record.frameInfo);
    base.form = ToForm(record, base.counters, static_cast<uint64_t>(record.indexInfo.frameOffset));
    base.bSet = true;
    return base;
}

size_t CIndexCoder::Encode(const FILE_INDEX_INFO& record, uint8_t* pCoded)
{
    const INDEX_CLASS eClass = ClassOf(record.frameInfo);
    const INDEX_STATE& state = StateOf(eClass);
    const FILE_INDEX_INFO form = ToForm(record, state.counters, m_nExpected);
    CRunWriter runs(form, state.form, pCoded + 1);
    if (!runs.WriteChanges())
        runs.WriteWhole();
    pCoded[0] = static_cast<uint8_t>(runs.Runs() << sc_classBits | static_cast<unsigned>(eClass));
    return 1 + runs.Length();
}

size_t CIndexCoder::Decode(const uint8_t* pCoded)
{
    m_eClass = static_cast<INDEX_CLASS>(pCoded[0] & sc_classMask);
    INDEX_STATE& state = StateOf(m_eClass);
    const uint8_t* pRun = pCoded + 1;
    auto* pForm = reinterpret_cast<uint8_t*>(&state.form);
    for (unsigned nRun = pCoded[0] >> sc_classBits; nRun > 0; --nRun) {
        pForm += *pRun++;
        for (size_t nCount = *pRun++; nCount > 0; --nCount)
            *pForm++ ^= *pRun++;
    }
    state.counters = Sum(state.counters, CountersOf(state.form.frameInfo));
    m_nFrameOffset = m_nExpected + static_cast<uint64_t>(state.form.indexInfo.frameOffset);
    m_nExpected = m_nFrameOffset + static_cast<uint64_t>(int64_t{state.form.frameInfo.frameLen});
    return static_cast<size_t>(pRun - pCoded);
}

FILE_INDEX_INFO CIndexCoder::Record() const
{
    const INDEX_STATE& state = m_states[static_cast<size_t>(m_eClass)];
    FILE_INDEX_INFO record = state.form;
    record.indexInfo.frameOffset = static_cast<KXint64>(m_nFrameOffset);
    record.indexInfo.streamOffset = Plus(record.indexInfo.streamOffset, record.indexInfo.frameOffset);
    FrameInfo& frame = record.frameInfo;
    frame.streamLen = Minus(int32_t{frame.frameLen}, int32_t{frame.streamLen});
    SetCounters(frame, state.counters);
    return record;
}

} // namespace Marvane::FrameSift
