// What tests of the track formats have in common.
#ifndef FRAMESIFT_TEST_IVSPARSER_IVSPAYLOADS_H
#define FRAMESIFT_TEST_IVSPARSER_IVSPAYLOADS_H

#include <sstream>

#include "Support/IvsEvents.h"
#include "Support/LogOf.h"
#include "Support/Testing.h"

namespace Marvane::FrameSift {

// "01 EE": a byte each.
inline Bytes Hex(const char* pText)
{
    Bytes bytes;
    std::istringstream words(pText);
    for (unsigned nByte = 0; words >> std::hex >> nByte;)
        bytes.push_back(static_cast<uint8_t>(nByte));
    return bytes;
}

// nSize bytes of a record from nAt on. Many records lie in memory as on the wire.
template <class RECORD>
Bytes BytesOf(const RECORD& record, size_t nAt = 0, size_t nSize = sizeof(RECORD))
{
    const auto* pBytes = reinterpret_cast<const uint8_t*>(&record);
    return {pBytes + nAt, pBytes + nAt + nSize};
}

using IVS_CASES = Rows<const char*, Bytes, int, std::vector<IVS_EVENT>>;

// Each payload has its result and its events. Answers what the log says of them all.
inline std::string ExpectCases(KX_IVS_PARSE_TYPE eType, const IVS_CASES& cases)
{
    const auto log = [&] {
        for (const auto& [pName, payload, nResult, events] : cases)
            KX_ParseIVS(Bytes(payload).data(), static_cast<int>(payload.size()), eType, nullptr, nullptr);
    };
    for (const auto& [pName, payload, nResult, events] : cases)
        EXPECT_EQ(ParseIvs(eType, payload), (IVS_RUN{nResult, events})) << pName;
    return LogOf(log, false);
}

} // namespace Marvane::FrameSift

#endif
