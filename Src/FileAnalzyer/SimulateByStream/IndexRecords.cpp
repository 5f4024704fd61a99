#include "FileAnalzyer/SimulateByStream/IndexRecords.h"

#include <algorithm>

namespace Marvane::FrameSift {

// The rest of a chunk may be too short for the record, which then stands in the next.
bool CIndexRecords::Reserve()
{
    return m_blocks.ReserveNext() && m_bytes.Reserve(m_nEnd + 2 * gsk_maxCodedRecord);
}

void CIndexRecords::Append(const FILE_INDEX_INFO& record)
{
    if (m_nCount % sc_blockRecords == 0) {
        m_blocks.Append({m_nEnd, m_writer.ExpectedOffset()});
        m_writer.StartBlock(m_writer.ExpectedOffset());
    }
    const auto nClass = static_cast<size_t>(ClassOf(record.frameInfo));
    if (!m_bases[nClass].bSet)
        m_bases[nClass] = CIndexCoder::BaseOf(record);
    std::array<uint8_t, gsk_maxCodedRecord> coded;
    const size_t nCoded = m_writer.Encode(record, coded.data());
    m_writer.Decode(coded.data());

    // A record does not go over the end of a chunk, so that it can be read by a plain pointer.
    const size_t nLeft = sc_bytesPerChunk - m_nEnd % sc_bytesPerChunk;
    if (nLeft < nCoded) {
        m_bytes[m_nEnd] = gsk_noCodedRecord;
        m_nEnd += nLeft;
    }
    std::copy_n(coded.data(), nCoded, &m_bytes[m_nEnd]);
    m_nEnd += nCoded;
    ++m_classCounts[nClass];
    ++m_nCount;
}

INDEX_CLASS CIndexRecords::MoveTo(int64_t nIndex)
{
    const int64_t nBlock = nIndex / sc_blockRecords;
    const int64_t nInBlock = m_nDecoded - nBlock * sc_blockRecords; // decoded of the block, if it is the reader's
    if (nInBlock < 1 || nInBlock > sc_blockRecords || m_nDecoded - 1 > nIndex) {
        const INDEX_BLOCK& block = m_blocks[static_cast<size_t>(nBlock)];
        m_reader.StartBlock(block.nExpected);
        m_nReadPos = block.nPos;
        m_nDecoded = nBlock * sc_blockRecords;
    }
    while (m_nDecoded <= nIndex)
        DecodeNext();
    return m_reader.Class();
}

void CIndexRecords::DecodeNext()
{
    if (m_bytes[m_nReadPos] == gsk_noCodedRecord)
        m_nReadPos += sc_bytesPerChunk - m_nReadPos % sc_bytesPerChunk;
    m_nReadPos += m_reader.Decode(&m_bytes[m_nReadPos]);
    ++m_nDecoded;
}

FILE_INDEX_INFO CIndexRecords::Current() const
{
    FILE_INDEX_INFO record = m_reader.Record();
    record.indexInfo.index = m_nDecoded - 1;
    return record;
}

} // namespace Marvane::FrameSift
