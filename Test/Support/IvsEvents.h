// What a parser of intelligent video metadata hands out.
#ifndef FRAMESIFT_TEST_SUPPORT_IVSEVENTS_H
#define FRAMESIFT_TEST_SUPPORT_IVSEVENTS_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "FrameWriter/ZOAVFrameWriter.h"
#include "Support/IvsTouch.h"
#include "framesift/framesift.h"

namespace Marvane::FrameSift {

struct IVS_EVENT
{
    int nType;    // IVSType
    size_t nSize; // nIVSBuffLen
    bool operator==(const IVS_EVENT&) const = default;
};

struct IVS_RUN
{
    int nResult = -1;
    std::vector<IVS_EVENT> events;
    bool operator==(const IVS_RUN&) const = default;
};

// Looks at the records while they live.
using IVS_SEE = std::function<void(KX_IVS_PARSE_TYPE eType, void* pRecords, int nLen)>;

// KX_ParseIVS on a copy of the payload in a heap block of just its size. Every byte of the records, and of all that they
// lead to, is read, so that a sanitizer finds what is not there or not initialised.
IVS_RUN ParseIvs(KX_IVS_PARSE_TYPE eType, std::span<const uint8_t> payload, const IVS_SEE& see = {});

// All parsers get each of the payload's fronts, and each copy of it with one byte set to 0, 1 and 255. A parse type's
// answer is one of results, and a failure of a format that hands out all or nothing comes without a callback.
void ExpectSurvivesDamage(KX_IVS_PARSE_TYPE eType, const Bytes& payload, const std::vector<int>& results,
                          bool bAllOrNothing);

} // namespace Marvane::FrameSift

#endif
