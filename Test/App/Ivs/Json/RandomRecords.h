// Records of intelligent video metadata as JSON, with any value that a field can have.
#ifndef FRAMESIFT_TEST_APP_IVS_JSON_RANDOMRECORDS_H
#define FRAMESIFT_TEST_APP_IVS_JSON_RANDOMRECORDS_H

#include <map>
#include <nlohmann/json.hpp>
#include <random>
#include <string>

#include "Ivs/IvsFormat.h"
#include "Ivs/Json/IvsFields.h"

namespace Marvane::FrameSift {

class CRandomRecords
{
public:
    explicit CRandomRecords(uint32_t nSeed) : m_random(nSeed) {}

    // What IvsPayload takes, and a decoder hands out again, but for face data.
    nlohmann::ordered_json Make(KX_IVS_PARSE_TYPE eParseType);

private:
    using COUNTS = std::map<std::string_view, size_t>;

    int64_t Between(int64_t nLowest, int64_t nHighest);
    template <class MAKE>
    nlohmann::ordered_json List(int64_t nFewest, int64_t nMost, MAKE make);
    nlohmann::ordered_json Number(uint32_t nBytes, bool bSigned);
    nlohmann::ordered_json Value(const JSON_FIELD& field);
    std::string Text(size_t nLength);
    size_t CountFor(const JSON_FIELD& list, COUNTS& counts);
    void AddField(nlohmann::ordered_json& record, const JSON_TABLE& table, const JSON_FIELD& field, COUNTS& counts);
    nlohmann::ordered_json Record(const JSON_TABLE& table);

    nlohmann::ordered_json TrackEx();
    nlohmann::ordered_json Attributes();
    nlohmann::ordered_json CommonObject();
    nlohmann::ordered_json Segment();
    nlohmann::ordered_json Drawing();
    nlohmann::ordered_json Traffic();

    std::mt19937 m_random;
};

} // namespace Marvane::FrameSift

#endif
