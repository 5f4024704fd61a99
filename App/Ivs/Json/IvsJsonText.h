// JSON text that a user has written.
#ifndef FRAMESIFT_APP_IVS_JSON_IVSJSONTEXT_H
#define FRAMESIFT_APP_IVS_JSON_IVSJSONTEXT_H

#include <nlohmann/json.hpp>
#include <string>

namespace Marvane::FrameSift {

// Stricter than JSON: a field that stands twice in its object is a mistake, since one of the two would be lost. Objects
// with more fields than any record has, and lists and objects that are nested deeper, are refused too: they would only
// cost time. Throws CIvsJsonError.
nlohmann::ordered_json ParseIvsJsonText(const std::string& text);

} // namespace Marvane::FrameSift

#endif
