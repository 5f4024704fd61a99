#include "IvsSeeds.h"

#include "App/Ivs/Json/RandomRecords.h"
#include "Ivs/Json/IvsWire.h"

namespace Marvane::FrameSift {

namespace {

struct SEED_ROW
{
    std::string_view target;
    KX_IVS_PARSE_TYPE eParseType;
};

constexpr SEED_ROW sc_targets[] = {
    {"FuzzIvsTrack", IVS_TRACK},         {"FuzzIvsTrackEx", IVS_TRACK_EX},     {"FuzzIvsSegments", IVS_TRACK_EX2},
    {"FuzzIvsScene", IVS_TRACK_EX3},     {"FuzzIvsOverlay", IVS_TRACK_ZOOP},   {"FuzzIvsTraffic", IVS_TRACK_15},
    {"FuzzIvsFlattening", IVS_TRACK_EX}, {"FuzzIvsFlattening", IVS_TRACK_EX2},
};

constexpr uint32_t sc_seedsOfFormat = 24;
constexpr size_t sc_longest = 4096; // short inputs are fuzzed faster

} // namespace

std::vector<Bytes> IvsSeeds(const std::string& target)
{
    std::vector<Bytes> seeds;
    for (const SEED_ROW& row : sc_targets) {
        for (uint32_t nSeed = 0; row.target == target && nSeed < sc_seedsOfFormat; ++nSeed) {
            Bytes payload = IvsPayload(*FindIvsFormat(row.eParseType), CRandomRecords(nSeed).Make(row.eParseType));
            if (payload.size() <= sc_longest)
                seeds.push_back(std::move(payload));
        }
    }
    return seeds;
}

} // namespace Marvane::FrameSift
