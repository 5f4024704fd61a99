// Bytes of common objects, from the inside out; lengths and counts come out right.
#ifndef FRAMESIFT_TEST_IVSPARSER_IVSOBJECTBYTES_H
#define FRAMESIFT_TEST_IVSPARSER_IVSOBJECTBYTES_H

#include <sstream>

#include "IVSParser/IVSLaneStore.h"
#include "IVSParser/IVSParser.h"
#include "Support/IvsEvents.h"
#include "Support/LogOf.h"
#include "Support/Testing.h"

namespace Marvane::FrameSift {

inline Bytes IvsAttribute(uint8_t nType, const Bytes& payload)
{
    return Bytes{nType, static_cast<uint8_t>(payload.size() + 2)} + payload;
}

// rest: what stands behind the size.
inline Bytes IvsObject(uint8_t objType, const Bytes& rest)
{
    const size_t nSize = rest.size() + 4;
    return Bytes{objType, 0, static_cast<uint8_t>(nSize), static_cast<uint8_t>(nSize >> 8)} + rest;
}

// rest: what stands behind the fixed fields of all objects but vehicles. objID is 9, operatorType 3.
inline Bytes IvsPlainObject(uint8_t objType, const Bytes& rest)
{
    return IvsObject(objType, Bytes{9, 0, 0, 0, 3, 0, 0, 0} + rest);
}

inline Bytes IvsGroup(const std::vector<Bytes>& objects)
{
    Bytes group = {1, 0, 0, 0, static_cast<uint8_t>(objects.size()), 0, 0, 0};
    for (const Bytes& object : objects)
        group = group + object;
    return group;
}

inline Bytes IvsSegment(const std::vector<Bytes>& groups)
{
    Bytes segment = Bytes{0x40, 0, 0, 0, static_cast<uint8_t>(groups.size())} + Bytes(27);
    for (const Bytes& group : groups)
        segment = segment + group;
    segment[2] = static_cast<uint8_t>(segment.size());
    segment[3] = static_cast<uint8_t>(segment.size() >> 8);
    return segment;
}

// What a parser is to write into a record: bytes from an offset on. Where the fields of the records stand is pinned
// elsewhere.
using WRITTEN = std::vector<std::pair<size_t, Bytes>>;

inline WRITTEN At(size_t nOffset, const Bytes& bytes)
{
    return {{nOffset, bytes}};
}

inline WRITTEN operator+(WRITTEN left, const WRITTEN& right)
{
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

inline Bytes operator+(Bytes record, const WRITTEN& written)
{
    for (const auto& [nOffset, bytes] : written)
        std::copy(bytes.begin(), bytes.end(), record.begin() + static_cast<ptrdiff_t>(nOffset));
    return record;
}

template <class RECORD>
Bytes IvsBytesOf(const RECORD& record)
{
    const auto* pRecord = reinterpret_cast<const uint8_t*>(&record);
    return Bytes(pRecord, pRecord + sizeof record);
}

constexpr int BAD = KX_ERROR_BAD_FORMATTED;
constexpr int PARAM = KX_ERROR_PARAMETER;

inline void ExpectSurvivesDamage(const std::vector<Bytes>& objects)
{
    ExpectSurvivesDamage(IVS_TRACK_EX2, IvsSegment({IvsGroup(objects)}),
                         {KX_SUCCESS, PARAM, BAD, KX_ERROR_IVS_DATA_WRONG}, false);
}

inline int IgnoreRecords(KX_IVS_PARSE_TYPE, void*, int, void*)
{
    return 0;
}

// The answer to each object, and what the log says of it; the lines with which group and segment join in go without
// saying. wrap makes the object of what stands in a row.
template <class Wrap>
void ExpectAnswers(Wrap wrap, const Rows<int, Bytes, const char*>& rows)
{
    std::ostringstream expected;
    std::vector<Bytes> payloads; // their addresses stand in the log
    for (const auto& [nResult, bytes, pLog] : rows) {
        payloads.push_back(IvsSegment({IvsGroup({wrap(bytes)})}));
        EXPECT_EQ(ParseIvs(IVS_TRACK_EX2, payloads.back()).nResult, nResult) << testing::PrintToString(bytes);
        expected << pLog;
        if (nResult != KX_SUCCESS)
            expected << "warn [ParseGroup] IVS format is error\nwarn [ParseIVSCommonObj] IVS format is error "
                     << static_cast<const void*>(payloads.back().data()) << ", " << payloads.back().size() << "\n";
    }
    IVS_LANE_STORE store;
    const auto parseAll = [&] {
        for (const Bytes& payload : payloads)
            ParseIVSCommonObj(payload.data(), static_cast<int>(payload.size()), &IgnoreRecords, nullptr, store);
    };
    EXPECT_EQ(LogOf(parseAll, false), expected.str());
}

} // namespace Marvane::FrameSift

#endif
