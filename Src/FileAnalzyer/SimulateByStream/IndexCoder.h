// Index records as differences.
#ifndef FRAMESIFT_SRC_FILEANALZYER_SIMULATEBYSTREAM_INDEXCODER_H
#define FRAMESIFT_SRC_FILEANALZYER_SIMULATEBYSTREAM_INDEXCODER_H

#include <array>
#include <cstddef>
#include <cstdint>

#include "FileAnalzyer/SimulateByStream/IndexRecord.h"

namespace Marvane::FrameSift {

// Fields that mostly grow by the same step from one frame of a class to the next.
struct INDEX_COUNTERS
{
    int32_t frameSeq = 0;
    int32_t timeStamp = 0;
    uint32_t nYuvTimeStamp = 0;
    uint32_t nSampleSeq = 0;
    uint64_t utcTime = 0;
};

// The last record of a class.
struct INDEX_STATE
{
    FILE_INDEX_INFO form{}; // as differences: see IndexCoder.cpp
    INDEX_COUNTERS counters;
    bool bSet = false;
};
using INDEX_STATES = std::array<INDEX_STATE, gsk_indexClasses>;

// Without the padding behind the frame.
inline constexpr size_t gsk_indexRecordSize = sizeof(KX_INDEX_INFO) + sizeof(FrameInfo);
static_assert(gsk_indexRecordSize == 463 && offsetof(FILE_INDEX_INFO, frameInfo) == sizeof(KX_INDEX_INFO));

// The first byte of a coded record holds class and number of runs. A run is: bytes to skip, bytes that follow, and
// those bytes, XORed with the last record of the class. A record in more runs than fit in that number is stored whole.
inline constexpr unsigned gsk_maxIndexRuns = 30;
// The greatest number of bytes that Encode writes, an attempt that ends in a whole record included.
inline constexpr size_t gsk_maxCodedRecord = 1 + gsk_indexRecordSize + 2 * (size_t{gsk_maxIndexRuns} + 4);
// No first byte has this value, as no class has the number 7.
inline constexpr uint8_t gsk_noCodedRecord = 0xFF;

// Codes or decodes records in their order. Each block starts anew, so that it can be decoded without those before it.
// Any content comes back as it was but for the number, which is known from the place, and the pointers: they led into
// a window that is gone when anybody reads the index, and come back null.
class CIndexCoder
{
public:
    // bases: by class, the state that a block starts with. An entry may be set as long as its class has no record.
    explicit CIndexCoder(const INDEX_STATES& bases) : m_bases(bases) {}
    CIndexCoder(const CIndexCoder&) = delete;
    CIndexCoder& operator=(const CIndexCoder&) = delete;

    // nExpected: where the next frame is expected, from ExpectedOffset behind the block before.
    void StartBlock(uint64_t nExpected);
    uint64_t ExpectedOffset() const { return m_nExpected; }

    // Answers the bytes written to pCoded, which has room for gsk_maxCodedRecord. The coder goes on to the record only
    // by Decode, so that a record that cannot be stored leaves no trace.
    size_t Encode(const FILE_INDEX_INFO& record, uint8_t* pCoded);
    // Answers the bytes read. pCoded comes from Encode, and nothing else.
    size_t Decode(const uint8_t* pCoded);

    // Of the record decoded last.
    INDEX_CLASS Class() const { return m_eClass; }
    // index stays 0.
    FILE_INDEX_INFO Record() const;

    // A base for the class of a record.
    static INDEX_STATE BaseOf(const FILE_INDEX_INFO& record);

private:
    INDEX_STATE& StateOf(INDEX_CLASS eClass);

    const INDEX_STATES& m_bases;
    INDEX_STATES m_states;
    INDEX_CLASS m_eClass = INDEX_CLASS::Other;
    uint64_t m_nFrameOffset = 0; // of the record decoded last
    uint64_t m_nExpected = 0;    // its end
};

} // namespace Marvane::FrameSift

#endif
