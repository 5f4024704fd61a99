// Records of intelligent video metadata as JSON, by the names that they have in the public headers.
#ifndef FRAMESIFT_APP_IVS_JSON_IVSJSON_H
#define FRAMESIFT_APP_IVS_JSON_IVSJSON_H

#include <nlohmann/json.hpp>

#include "framesift/framesift.h"

namespace Marvane::FrameSift {

// What one callback of KX_ParseIVS brings, as {"type": "track-ex", "objects": [...]}. Counts that a record bounds badly
// are bounded here. Nothing in the result leads into the records. pRecords may be null, with nLen 0.
nlohmann::ordered_json IvsRecordsToJson(KX_IVS_PARSE_TYPE eType, const void* pRecords, int nLen);

} // namespace Marvane::FrameSift

#endif
