// The shipped samples and the list of their access units.
#ifndef FRAMESIFT_TEST_APP_SAMPLEUNITS_H
#define FRAMESIFT_TEST_APP_SAMPLEUNITS_H

#include <cstdint>
#include <string>
#include <vector>

namespace Marvane::FrameSift {

struct SAMPLE_UNIT
{
    uint64_t nOffset = 0;
    uint64_t nLength = 0;
    std::string kind; // "I", "P", "B" or "audio"
    bool bKey = false;

    bool operator==(const SAMPLE_UNIT&) const = default;
};

// Names of the files in one folder of the samples, as "h264/16x16.h264", in the order of the list.
std::vector<std::string> SampleFiles(const std::string& folder);
std::vector<SAMPLE_UNIT> ListedUnits(const std::string& file);
std::vector<uint8_t> ReadSample(const std::string& file);
std::string SamplePath(const std::string& file);

} // namespace Marvane::FrameSift

#endif
