#include "Support/IvsEvents.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

namespace Marvane::FrameSift {

namespace {

struct LISTENER
{
    IVS_RUN run;
    const IVS_SEE& see;
};

int OnRecords(KX_IVS_PARSE_TYPE eType, void* pRecords, int nLen, void* pUserData)
{
    auto& listener = *static_cast<LISTENER*>(pUserData);
    listener.run.events.push_back({eType, static_cast<size_t>(nLen)});
    EXPECT_EQ(pRecords == nullptr, nLen == 0);
    if (pRecords != nullptr)
        TouchIvsRecords(eType, pRecords, nLen);
    if (listener.see)
        listener.see(eType, pRecords, nLen);
    return -1; // what a callback answers changes nothing
}

} // namespace

IVS_RUN ParseIvs(KX_IVS_PARSE_TYPE eType, std::span<const uint8_t> payload, const IVS_SEE& see)
{
    const auto block = std::make_unique<uint8_t[]>(payload.size());
    std::copy(payload.begin(), payload.end(), block.get());
    LISTENER listener{{}, see};
    listener.run.nResult = KX_ParseIVS(block.get(), static_cast<int>(payload.size()), eType, &OnRecords, &listener);
    EXPECT_TRUE(std::equal(payload.begin(), payload.end(), block.get())) << "the payload was written to";
    EXPECT_EQ(KX_ParseIVS(block.get(), static_cast<int>(payload.size()), eType, nullptr, nullptr),
              listener.run.nResult);
    return listener.run;
}

void ExpectSurvivesDamage(KX_IVS_PARSE_TYPE eType, const Bytes& payload, const std::vector<int>& results,
                          bool bAllOrNothing)
{
    const auto expect = [&](std::span<const uint8_t> damaged) {
        const IVS_RUN run = ParseIvs(eType, damaged);
        EXPECT_NE(std::find(results.begin(), results.end(), run.nResult), results.end()) << run.nResult;
        EXPECT_TRUE(!bAllOrNothing || run.nResult == KX_SUCCESS || run.events.empty());
    };
    for (size_t nAt = 0; nAt < payload.size(); ++nAt) {
        SCOPED_TRACE(nAt);
        if (nAt > 0) // a length of 0 is the caller's fault, not the payload's
            expect(std::span(payload).first(nAt));
        for (const uint8_t nValue : Bytes{0, 1, 255}) {
            Bytes damaged = payload;
            damaged[nAt] = nValue;
            expect(damaged);
        }
    }
}

} // namespace Marvane::FrameSift
