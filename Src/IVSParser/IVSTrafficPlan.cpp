#include "IVSParser/IVSTrafficPlan.h"

#include <iterator>

#include "IVSParser/IVSField.h"
#include "IVSParser/IVSParser.h"
#include "IVSParser/IVSRecords.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

constexpr IVS_FIELD sc_planFields[] = {
    {0, 1, offsetof(KX_IVS_TRAFFIC_PLAN, PlanId)},
    IVS_FIELD_OF(2, KX_IVS_TRAFFIC_PLAN, RuleType),
};
constexpr uint32_t sc_planLengthAt = 6; // 16 bits, of the whole plan
constexpr uint32_t sc_planHeadSize = 8;

constexpr IVS_FIELD sc_regionFields[] = {
    {0, 1, offsetof(KX_IVS_TRAFFIC_REGION, RegionId)},
    {1, 1, offsetof(KX_IVS_TRAFFIC_REGION, State)},
    IVS_FIELD_OF(4, KX_IVS_TRAFFIC_REGION, PeopleNum),
};
constexpr uint32_t sc_regionSize = 8; // on the wire

// Steps over the next plan. plan then stands at its first byte and goes to the end of the body: of a plan shorter than
// its head the fields are taken from what follows. Answers its length; 0 if it is not whole, and also if a head is all
// that the body still has.
uint16_t NextPlan(CBufferRead& body, CBufferRead& plan)
{
    plan = body;
    CBufferRead head = body;
    if (!head.Skip(sc_planHeadSize + 1))
        return 0;
    head = body;
    head.Skip(sc_planLengthAt);
    const uint16_t nLength = head.ReadInt16();
    return body.Skip(nLength) ? nLength : uint16_t{0};
}

// regions: what follows the head of the plan.
bool ParseIVSTrackTrafficPlanRegion(CBufferRead& regions, uint32_t nSize, KX_IVS_TRAFFIC_PLAN& plan)
{
    const uint32_t nCount = nSize / sc_regionSize;
    if (nCount == 0)
        return false; // too short for one; no message, unlike the other damage
    if (nCount > gsk_maxTrafficNum) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath,
                     "[ParseIVSTrackTrafficPlanRegion] scene_points is not allowed! nIvsTrafficPlanRegionNum =  %d\n",
                     static_cast<int>(nCount));
        return false;
    }
    plan.pRegion = TryAllocRecords<KX_IVS_TRAFFIC_REGION>(nCount).release();
    if (plan.pRegion == nullptr) {
        KX_WRITE_LOG(KX_LOG_LevelError, gsk_ivsPath, "[ParseIVSTrackTrafficPlanRegion] out of memory %d * %d\n",
                     static_cast<int>(nCount), static_cast<int>(sizeof(KX_IVS_TRAFFIC_REGION)));
        return false;
    }
    plan.RegionNum = static_cast<uint16_t>(nCount);
    for (uint32_t n = 0; n < nCount; ++n) {
        if (const uint8_t* pWire = regions.ReadBuffer(sc_regionSize))
            FillWhole<sc_regionFields>(pWire, plan.pRegion[n]);
    }
    return true;
}

bool ReadPlan(CBufferRead bytes, uint16_t nLength, KX_IVS_TRAFFIC_PLAN& plan)
{
    FillFields<sc_planFields>(bytes, plan);
    if (nLength <= sc_planHeadSize)
        return true; // no regions
    bytes.Skip(sc_planHeadSize);
    return ParseIVSTrackTrafficPlanRegion(bytes, nLength - sc_planHeadSize, plan);
}

// In 16 bits, as the record has it, deliberately: the count of very many very short plans starts again from 0.
uint16_t CountPlans(CBufferRead body)
{
    uint16_t nCount = 0;
    for (CBufferRead plan = body; NextPlan(body, plan) != 0;)
        ++nCount;
    return nCount;
}

} // namespace

bool ParseIVSTrackTrafficPlan(std::span<const uint8_t> body, KX_IVS_TRACK_TRAFFIC_SCENE_POINTS_INFOR& record)
{
    if (body.size() < sc_planHeadSize) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath, "[ParseIVSTrackTrafficPlan] data is not enough! len =  %d\n",
                     static_cast<int>(body.size()));
        return false;
    }
    CBufferRead pb(body.data(), static_cast<uint32_t>(body.size()));
    const uint16_t nCount = CountPlans(pb);
    if (nCount == 0 || nCount > gsk_maxTrafficNum) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath,
                     "[ParseIVSTrackTrafficPlan] scene_points is not allowed! nIVSTrackTrafficPlanNum =  %d\n",
                     int{nCount});
        return false;
    }
    record.pIVSTrafficPlan = TryAllocRecords<KX_IVS_TRAFFIC_PLAN>(nCount).release();
    if (record.pIVSTrafficPlan == nullptr) {
        KX_WRITE_LOG(KX_LOG_LevelError, gsk_ivsPath, "[ParseIVSTrackTrafficPlan] out of memory %d * %d\n", int{nCount},
                     static_cast<int>(sizeof(KX_IVS_TRAFFIC_PLAN)));
        return false;
    }
    record.nIVSTrafficPlanNum = nCount;
    for (size_t n = 0; n < nCount; ++n) {
        CBufferRead plan = pb;
        const uint16_t nLength = NextPlan(pb, plan);
        if (!ReadPlan(plan, nLength, record.pIVSTrafficPlan[n]))
            return false;
    }
    return true;
}

void FreeTrafficPlans(const KX_IVS_TRACK_TRAFFIC_SCENE_POINTS_INFOR& record)
{
    for (size_t n = 0; n < record.nIVSTrafficPlanNum; ++n)
        delete[] record.pIVSTrafficPlan[n].pRegion;
    delete[] record.pIVSTrafficPlan;
}

} // namespace Marvane::FrameSift
