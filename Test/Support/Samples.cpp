#include "Support/Samples.h"

#include <fstream>

#include "Support/TempDirectory.h"

namespace Marvane::FrameSift {

namespace {

template <class Wanted>
std::vector<json> Select(Wanted wanted)
{
    static const json s_manifest = json::parse(std::ifstream(SamplePath("manifest.json")));
    std::vector<json> selected;
    for (const json& stream : s_manifest["streams"]) {
        if (wanted(stream["file"].get_ref<const std::string&>()))
            selected.push_back(stream);
    }
    EXPECT_FALSE(selected.empty()); // else a test over them would test nothing
    return selected;
}

} // namespace

std::vector<json> SamplesIn(const std::string& folder)
{
    return Select([&](const std::string& file) { return file.starts_with(folder + "/"); });
}

json SampleOf(const std::string& file)
{
    return Select([&](const std::string& each) { return each == file; }).at(0);
}

std::string SamplePath(const std::string& file)
{
    return std::string(FRAMESIFT_SAMPLES) + "/" + file;
}

Bytes ReadSample(const std::string& file)
{
    const std::string bytes = ReadText(SamplePath(file));
    return {bytes.begin(), bytes.end()};
}

Bytes UnitOf(const Bytes& stream, const json& unit)
{
    return Part(stream, unit["offset"], unit["length"]);
}

int32_t SubTypeOf(const json& unit)
{
    return static_cast<int32_t>(std::string("IPB").find(unit["kind"].get<std::string>()));
}

} // namespace Marvane::FrameSift
