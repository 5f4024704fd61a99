#include <gtest/gtest.h>

#include <set>

#include "App/Ivs/Json/RandomRecords.h"
#include "Ivs/Json/IvsJson.h"
#include "Ivs/Json/IvsWire.h"
#include "Support/IvsEvents.h"

namespace Marvane::FrameSift {

namespace {

using nlohmann::ordered_json;

// What the library makes of a payload.
ordered_json Decoded(const IVS_FORMAT_ROW& format, const Bytes& payload)
{
    ordered_json records = ordered_json::array();
    const IVS_RUN run = ParseIvs(format.eParseType, payload, [&](KX_IVS_PARSE_TYPE eType, void* pRecords, int nLen) {
        records.push_back(IvsRecordsToJson(eType, pRecords, nLen));
    });
    EXPECT_EQ(run.nResult, KX_SUCCESS);
    return records;
}

// The part of decoded that was written: a decoder adds fields of its own, and does not tell the length of face data.
ordered_json WrittenPart(const ordered_json& decoded, ordered_json& written)
{
    if (written.is_array() && decoded.is_array()) {
        ordered_json part = ordered_json::array();
        for (size_t n = 0; n < decoded.size(); ++n)
            part.push_back(n < written.size() ? WrittenPart(decoded[n], written[n]) : decoded[n]);
        return part;
    }
    if (!written.is_object() || !decoded.is_object())
        return decoded;
    written.erase("facedata");
    ordered_json part = ordered_json::object();
    for (const auto& item : written.items()) {
        if (decoded.contains(item.key()))
            part[item.key()] = WrittenPart(decoded[item.key()], item.value());
    }
    return part;
}

// The values of "type" and the names of attributes, wherever they stand.
void Collect(const ordered_json& json, std::set<std::string>& names)
{
    for (const auto& item : json.items()) {
        if (item.key() == "type")
            names.insert(item.value().get<std::string>());
        if (item.key() == "attributes") {
            for (const auto& attribute : item.value().items())
                names.insert(attribute.key());
        }
        if (item.value().is_structured())
            Collect(item.value(), names);
    }
}

} // namespace

TEST(IvsRoundTrip, TheLibraryReadsWhatWasWritten)
{
    std::set<std::string> seen;
    for (uint32_t nSeed = 0; nSeed < 25; ++nSeed) {
        for (const IVS_FORMAT_ROW& format : IvsFormats()) {
            SCOPED_TRACE(std::string(format.name) + ", seed " + std::to_string(nSeed));
            ordered_json written = CRandomRecords(nSeed).Make(format.eParseType);
            const ordered_json decoded = Decoded(format, IvsPayload(format, written));
            ASSERT_EQ(WrittenPart(decoded, written), written);
            ASSERT_EQ(Decoded(format, IvsPayload(format, decoded)), decoded) << "what was printed cannot be fed back";
            Collect(written, seen);
        }
    }
    std::set<std::string> all = {"track",         "track-ex", "common-objects", "a0-objects",
                                 "a0-ex-objects", "scene",    "overlay",        "traffic"};
    for (const auto& row : IvsAttributes())
        all.emplace(row.name);
    for (const auto& row : IvsLanes())
        all.emplace(row.name);
    for (const auto& row : IvsElements())
        all.emplace(row.name);
    EXPECT_EQ(seen, all);
}

// Every byte of a payload is looked at, so no damage may lead the printer out of the records.
TEST(IvsRoundTrip, DamagedPayloadsArePrintedWithinBounds)
{
    std::mt19937 random(1);
    for (uint32_t nSeed = 0; nSeed < 6; ++nSeed) {
        for (const IVS_FORMAT_ROW& format : IvsFormats()) {
            Bytes payload = IvsPayload(format, CRandomRecords(nSeed).Make(format.eParseType));
            for (int nTurn = 0; nTurn < 20; ++nTurn) {
                payload[random() % payload.size()] = static_cast<uint8_t>(random());
                ParseIvs(format.eParseType, payload, [](KX_IVS_PARSE_TYPE eType, void* pRecords, int nLen) {
                    EXPECT_FALSE(IvsRecordsToJson(eType, pRecords, nLen).dump().empty());
                });
            }
        }
    }
}

} // namespace Marvane::FrameSift
