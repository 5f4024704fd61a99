// The records of an index, packed.
#ifndef FRAMESIFT_SRC_FILEANALZYER_SIMULATEBYSTREAM_INDEXRECORDS_H
#define FRAMESIFT_SRC_FILEANALZYER_SIMULATEBYSTREAM_INDEXRECORDS_H

#include <array>
#include <cstddef>
#include <cstdint>

#include "FileAnalzyer/SimulateByStream/IndexChunks.h"
#include "FileAnalzyer/SimulateByStream/IndexCoder.h"

namespace Marvane::FrameSift {

// A plain record has 463 bytes, and a day of one camera millions of them, nearly all alike. Here a frame takes a few
// bytes. Reading record after record costs about the same for each; reading elsewhere decodes a part of one block.
class CIndexRecords
{
public:
    // Room for one more. False without memory; the records are as they were.
    [[nodiscard]] bool Reserve();
    // After Reserve. The record's number is Count(); pointers are not kept.
    void Append(const FILE_INDEX_INFO& record);

    int64_t Count() const { return m_nCount; }
    int64_t Count(INDEX_CLASS eClass) const { return m_classCounts[static_cast<size_t>(eClass)]; }

    // Makes nIndex, from 0 to below Count(), the current record.
    INDEX_CLASS MoveTo(int64_t nIndex);
    FILE_INDEX_INFO Current() const;

private:
    // A reader pays for a long block, the store for a short one: the first records of a block find less to lean on.
    static constexpr int64_t sc_blockRecords = 32;
    struct INDEX_BLOCK
    {
        uint64_t nPos;      // of its first byte in m_bytes
        uint64_t nExpected; // where its first frame was expected
    };
    static constexpr size_t sc_bytesPerChunk = size_t{64} << 10;

    void DecodeNext();

    INDEX_STATES m_bases; // by class, from its first record
    CIndexCoder m_writer{m_bases};
    CIndexCoder m_reader{m_bases};
    CIndexChunks<uint8_t, sc_bytesPerChunk> m_bytes;
    CIndexChunks<INDEX_BLOCK, 1024> m_blocks;
    std::array<int64_t, gsk_indexClasses> m_classCounts{};
    int64_t m_nCount = 0;
    size_t m_nEnd = 0;      // of the bytes in use
    int64_t m_nDecoded = 0; // the current record is the one before
    size_t m_nReadPos = 0;  // behind it
};

} // namespace Marvane::FrameSift

#endif
