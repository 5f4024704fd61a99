// Reads numbers one behind the other into records that may be longer than what is there.
#ifndef FRAMESIFT_SRC_IVSPARSER_IVSNUMBERS_H
#define FRAMESIFT_SRC_IVSPARSER_IVSNUMBERS_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <type_traits>

#include "IVSParser/IVSField.h"
#include "Tools/BufferRead.h"

namespace Marvane::FrameSift {

// A number that does not fit into what remains is not read, and the next one is looked for at the same place: a record
// that is cut off may so take a number for its neighbour. Deliberate.
template <class NUMBER>
void Take(CBufferRead& pb, NUMBER& number)
{
    static_assert(std::is_integral_v<NUMBER>);
    if (const uint8_t* pBytes = pb.ReadBuffer(sizeof number))
        std::memcpy(&number, pBytes, sizeof number);
}

// records: nothing but NUMBERs one behind the other, so that all of them are one move if they are there.
template <class NUMBER, class RECORD>
void TakeEach(CBufferRead& pb, std::span<RECORD> records)
{
    static_assert(std::is_integral_v<NUMBER> && sizeof(RECORD) % sizeof(NUMBER) == 0);
    const auto bytes = std::as_writable_bytes(records);
    if (const uint8_t* pAll = pb.ReadBuffer(static_cast<uint32_t>(bytes.size()))) {
        std::memcpy(bytes.data(), pAll, bytes.size());
        return;
    }
    for (size_t nAt = 0; nAt < bytes.size(); nAt += sizeof(NUMBER)) {
        const uint8_t* pBytes = pb.ReadBuffer(sizeof(NUMBER));
        if (pBytes == nullptr)
            return;
        std::memcpy(&bytes[nAt], pBytes, sizeof(NUMBER));
    }
}

template <class NUMBER, class RECORD>
void TakeEach(CBufferRead& pb, RECORD& record)
{
    TakeEach<NUMBER>(pb, std::span(&record, 1));
}

// What TakeEach would read into nBytes of records, dropped.
template <class NUMBER>
void SkipEach(CBufferRead& pb, uint32_t nBytes)
{
    if (pb.Skip(nBytes))
        return;
    while (pb.Skip(sizeof(NUMBER))) {
    }
}

// nCount as the wire states it: what the array has no room for is read too, and dropped.
template <class NUMBER, class RECORD, size_t nRoom>
void TakeCounted(CBufferRead& pb, RECORD (&records)[nRoom], uint32_t nCount)
{
    const uint32_t nKept = nCount < nRoom ? nCount : uint32_t{nRoom};
    TakeEach<NUMBER>(pb, std::span(records).first(nKept));
    SkipEach<NUMBER>(pb, (nCount - nKept) * uint32_t{sizeof(RECORD)});
}

} // namespace Marvane::FrameSift

#endif
