// Payloads of intelligent video metadata from JSON.
#ifndef FRAMESIFT_APP_IVS_JSON_IVSWIRE_H
#define FRAMESIFT_APP_IVS_JSON_IVSWIRE_H

#include <cstdint>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <vector>

#include "Ivs/IvsFormat.h"

namespace Marvane::FrameSift {

// Says what in the JSON cannot be written, and where: "records[0].objects[2].obj_id: 5000000000 does not fit: 0 to
// 4294967295".
class CIvsJsonError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// records: an array of what IvsRecordsToJson makes, as one payload of the format brings it. What may be left out is 0.
// Throws CIvsJsonError.
std::vector<uint8_t> IvsPayload(const IVS_FORMAT_ROW& format, const nlohmann::ordered_json& records);

} // namespace Marvane::FrameSift

#endif
