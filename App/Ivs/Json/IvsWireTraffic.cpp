// Traffic counts. A decoder takes all records of a payload for as long as the first one, and looks for the type of each
// but the first where the plans of the one in front of it begin. What it would not read is refused here.
#include <fmt/format.h>

#include <algorithm>

#include "Ivs/Json/IvsWireFields.h"
#include "Ivs/Json/IvsWireFormats.h"

namespace Marvane::FrameSift {

namespace {

constexpr size_t sc_maxRecords = 32;
constexpr uint16_t sc_trafficType = 13;
constexpr size_t sc_headSize = 8; // of a record and of a plan
constexpr size_t sc_lengthAt = 4;
constexpr size_t sc_padding = 4;

Bytes RecordOf(const CJsonPlace& record)
{
    RequireNames(record, {&gsk_trafficFields});
    Bytes wire;
    PutFields(wire, gsk_trafficFields, record);
    const CJsonPlace plans = record.At("plans");
    const size_t nPlans = plans.Size(sc_maxRecords);
    // A plan that ends with its head is only seen if something stands behind it.
    if (nPlans > 0 && plans.At(nPlans - 1).At("regions").Size(SIZE_MAX) == 0)
        PadTo(wire, wire.size() + sc_padding);
    return wire;
}

void RequireReadable(const CJsonPlace& records, size_t nCount, const std::vector<Bytes>& wires)
{
    const auto isEmpty = [](const Bytes& wire) { return wire.size() == sc_headSize; };
    const bool bAllEmpty = isEmpty(wires[0]);
    for (size_t n = 0; n < nCount; ++n) {
        const CJsonPlace record = records.At(n);
        const CJsonPlace type = record.At("NumberStat");
        if ((n == 0 || bAllEmpty) && type.Number(0, UINT16_MAX) != sc_trafficType)
            type.Fail(fmt::format("must be {} here, or it would not be read", sc_trafficType));
        if (isEmpty(wires[n]) != bAllEmpty)
            record.At("plans").Fail("either all records have plans, or none");
        const CJsonPlace plan = record.At("plans").At(size_t{0}).At("PlanId");
        if (!bAllEmpty && n + 1 < nCount && plan.Number(0, UINT8_MAX) != sc_trafficType)
            plan.Fail(fmt::format("must be {} if a record follows, or that would not be read", sc_trafficType));
    }
}

} // namespace

Bytes TrafficPayload(const CJsonPlace& records)
{
    const CJsonPlace payload = OnlyRecord(records, "traffic");
    RequireNames(payload, {}, {"type", "records"});
    const CJsonPlace list = payload.At("records");
    const size_t nCount = list.Size(sc_maxRecords);
    if (nCount == 0)
        list.Fail("there must be one at least");
    std::vector<Bytes> wires;
    size_t nLongest = 0;
    for (size_t n = 0; n < nCount; ++n) {
        wires.push_back(RecordOf(list.At(n)));
        nLongest = std::max(nLongest, wires[n].size());
    }
    RequireReadable(list, nCount, wires);
    Bytes wire;
    for (Bytes& record : wires) {
        PadTo(record, nLongest);
        SetLsb(record, sc_lengthAt, nLongest, 4);
        wire = std::move(wire) + record;
    }
    if (nLongest == sc_headSize) // a record that ends with its head, the same
        PadTo(wire, wire.size() + sc_padding);
    return wire;
}

} // namespace Marvane::FrameSift
