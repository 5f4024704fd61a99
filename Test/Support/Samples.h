// The shipped samples: real encoders' streams, with the facts that are known of them.
#ifndef FRAMESIFT_TEST_SUPPORT_SAMPLES_H
#define FRAMESIFT_TEST_SUPPORT_SAMPLES_H

#include <nlohmann/json.hpp>

#include "Support/Testing.h"

namespace Marvane::FrameSift {

using nlohmann::json;

// The manifest's entries of one folder, which is named after the codec or "audio". Each has "file", "facts" and "units",
// a unit "offset", "length", "kind" (I, P, B, audio), "key" and what its codec has besides.
std::vector<json> SamplesIn(const std::string& folder);
json SampleOf(const std::string& file);

std::string SamplePath(const std::string& file);
Bytes ReadSample(const std::string& file);
// The bytes of one unit of a stream that has been read.
Bytes UnitOf(const Bytes& stream, const json& unit);

// I 0, P 1, B 2: KX_FRAME_SUB_TYPE_VIDEO_*.
int32_t SubTypeOf(const json& unit);

} // namespace Marvane::FrameSift

#endif
