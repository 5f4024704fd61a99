#include "IVSParser/IvsPayloads.h"

namespace Marvane::FrameSift {

namespace {

using RECORD = KX_IVS_TRACK_TRAFFIC_SCENE_POINTS_INFOR;

// Three plans: two regions, none, and one with three bytes to spare.
const Bytes sc_record = Hex("0D 00 EE EE 3B 00 00 00"  // type, -, length
                            " 0D 00 03 04 EE EE 18 00" // PlanId, -, RuleType, -, length
                            " 05 06 EE EE FE FF FF FF" // RegionId, State, -, PeopleNum
                            " 07 08 EE EE 01 02 03 04"
                            " 09 EE 0A 00 EE EE 08 00"
                            " 0B EE 0C 00 EE EE 13 00"
                            " 0F 10 EE EE 11 00 00 00 EE EE EE");

// A plan by which a record behind this one is found; nLength as it is told.
Bytes Plan(uint8_t nLength, size_t nSize)
{
    Bytes plan = {13, 0, 0, 0, 0, 0, nLength, 0};
    plan.resize(nSize);
    return plan;
}

Bytes Record(int16_t nLength, const Bytes& body)
{
    const auto nSign = static_cast<uint8_t>(nLength < 0 ? 0xFF : 0);
    return Bytes{13, 0, 0, 0} + BytesOf(nLength) + Bytes{nSign, nSign} + body;
}

// All numbers of a record and of its plans and regions, each plan behind a 0.
Fields NumbersOf(const RECORD& record)
{
    Fields numbers = {record.NumberStat};
    for (const auto& plan : std::span(record.pIVSTrafficPlan, record.nIVSTrafficPlanNum)) {
        numbers.insert(numbers.end(), {0, plan.PlanId, plan.RuleType, plan.RegionNum});
        for (const auto& region : std::span(plan.pRegion, plan.RegionNum))
            numbers.insert(numbers.end(), {region.RegionId, region.State, region.PeopleNum});
    }
    return numbers;
}

} // namespace

TEST(IVSTraffic, RecordsPlansAndRegions)
{
    const Bytes golden = sc_record + sc_record;
    const IVS_RUN run = ParseIvs(IVS_TRACK_15, golden, [](KX_IVS_PARSE_TYPE, void* pRecords, int nLen) {
        const Fields numbers = {13, 0, 13, 0x403, 2, 5,  6,  -2, 7,  8,  0x4030201, //
                                0,  9, 10, 0,     0, 11, 12, 1,  15, 16, 17};
        for (const RECORD& record : IvsRecords<RECORD>(pRecords, nLen))
            EXPECT_EQ(NumbersOf(record), numbers);
    });
    EXPECT_EQ(run, (IVS_RUN{0, {{IVS_TRACK_B1, 48}}}));
    ExpectSurvivesDamage(IVS_TRACK_15, golden, {0, 18}, true);
}

TEST(IVSTraffic, WhatIsHandedOutAndWhatIsNot)
{
    const auto records = [](size_t nCount) { return std::vector<IVS_EVENT>{{IVS_TRACK_B1, nCount * sizeof(RECORD)}}; };
    const Bytes first = Record(24, Plan(16, 16));
    const Bytes unfound = Record(24, Bytes{12, 0, 0, 0, 0, 0, 16, 0} + Bytes(8));
    Bytes plans;
    while (plans.size() < 264)
        plans = plans + Plan(8, 8);
    const Bytes manyRegions = {1, 0, 0, 0, 0, 0, 16, 1}; // 272 bytes
    EXPECT_EQ(
        ExpectCases(IVS_TRACK_15,
                    {{"too short", {13, 0, 0, 0, 8, 0, 0}, 18, {}},
                     {"another type", {12, 0, 0, 0, 8, 0, 0, 0, 0}, 0, {}},
                     {"no length", Record(0, Bytes(1)), 0, {}},
                     {"negative length", Record(-8, Bytes(1)), 0, {}},
                     {"a head and nothing behind it", Record(8, {}), 0, {}},
                     {"no body", Record(8, Bytes(1)), 0, records(1)},
                     {"42 records", Record(1, Bytes(42)), 18, {}},
                     {"two of 100 bytes in 250", Record(100, Plan(92, 92)) + Record(8, Bytes(134)), 0, records(2)},
                     {"the second one is not found", unfound + first, 18, {}},
                     {"back in front of the payload", first + Record(-30, Plan(16, 41)), 0, records(3)},
                     {"body shorter than a plan", Record(15, Bytes(7)), 0, {}},
                     {"no plan", Record(24, Plan(17, 16)), 0, {}},
                     {"a head at the end is no plan", Record(16, Plan(8, 8)), 0, {}},
                     {"32 plans", Record(8 + 257, Part(plans, 0, 257)), 0, records(1)},
                     {"33 plans", Record(8 + 265, plans + Bytes(1)), 0, {}},
                     {"plan too short for a region", Record(24, Plan(15, 16)), 0, {}},
                     {"30 regions", Record(8 + 255, Plan(255, 255)), 0, records(1)},
                     {"33 regions", Record(8 + 272, manyRegions + Bytes(264)), 0, {}}}),
        "warn [ParseIVSTrackEx15] data is not enough! len =  7\n"
        "warn [ParseIVSTrackTraffic] scene_points is not allowed! nIvsTrafficNum =  42\n"
        "warn [ParseIVSTrackTrafficPlan] data is not enough! len =  7\n"
        "warn [ParseIVSTrackTrafficPlan] scene_points is not allowed! nIVSTrackTrafficPlanNum =  0\n"
        "warn [ParseIVSTrackTrafficPlan] scene_points is not allowed! nIVSTrackTrafficPlanNum =  0\n"
        "warn [ParseIVSTrackTrafficPlan] scene_points is not allowed! nIVSTrackTrafficPlanNum =  33\n"
        "warn [ParseIVSTrackTrafficPlanRegion] scene_points is not allowed! nIvsTrafficPlanRegionNum =  33\n");
}

} // namespace Marvane::FrameSift
