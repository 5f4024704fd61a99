#include "LegacySeeds.h"

#include <map>

#include "Support/RandomLegacy.h"
#include "Support/RandomStream.h"

namespace Marvane::FrameSift {

namespace {

// The formats of each target, and the bytes in front that choose form and cut.
struct SEED_ROW
{
    LEGACY_FORMAT eFormat;
    Bytes front;
};

std::vector<SEED_ROW> RowsOf(const std::string& target)
{
    const std::map<std::string, std::vector<SEED_ROW>> rows = {
        {"FuzzNew", {{LEGACY_FORMAT::New, {0, 30}}, {LEGACY_FORMAT::NewEx, {1, 30}}, {LEGACY_FORMAT::NewEx1, {2, 30}}}},
        {"FuzzZopt", {{LEGACY_FORMAT::Zopt, {30}}}},
        {"FuzzHb", {{LEGACY_FORMAT::Hb, {255}}}},
        {"FuzzRawMpeg4", {{LEGACY_FORMAT::RawMpeg4, {30}}}}};
    const auto row = rows.find(target);
    if (row != rows.end())
        return row->second;
    std::vector<SEED_ROW> all;
    if (target == "FuzzOld") {
        for (const LEGACY_FORMAT eFormat : gsk_legacyFormats)
            all.push_back({eFormat, {30}});
    }
    return all;
}

} // namespace

std::vector<Bytes> LegacySeeds(const std::string& target)
{
    std::vector<Bytes> seeds;
    for (const SEED_ROW& row : RowsOf(target)) {
        for (uint32_t nSeed = 1; nSeed <= 3; ++nSeed)
            seeds.push_back(row.front + Joined(RandomLegacyFrames(row.eFormat, nSeed, 8, 200)));
    }
    return seeds;
}

} // namespace Marvane::FrameSift
