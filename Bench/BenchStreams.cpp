#include "BenchStreams.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <sstream>

namespace Marvane::FrameSift {

namespace {

struct UNIT
{
    Bytes bytes;
    bool bAudio = false;
    bool bKey = false;
};

Bytes ReadFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// The units of the files that make a usual recording: large and small pictures, and sound.
std::vector<UNIT> SampleUnits()
{
    std::map<std::string, Bytes> files = {
        {"h264/1080p25_high_b.h264", {}}, {"h264/cif_baseline_25.h264", {}}, {"audio/aac_lc_16k_mono.aac", {}}};
    for (auto& [name, bytes] : files)
        bytes = ReadFile(FRAMESIFT_SAMPLES "/" + name);
    std::vector<UNIT> units;
    std::ifstream list(FRAMESIFT_SAMPLES "/units.tsv");
    for (std::string line; std::getline(list, line);) {
        std::istringstream fields(line);
        std::string name;
        std::string kind;
        size_t nIndex = 0;
        size_t nOffset = 0;
        size_t nLength = 0;
        if (!(fields >> name >> nIndex >> nOffset >> nLength >> kind) || !files.contains(name))
            continue;
        const std::span<const uint8_t> file(files[name]);
        if (nLength > file.size() || nOffset > file.size() - nLength)
            continue;
        const auto bytes = file.subspan(nOffset, nLength);
        units.push_back({Bytes(bytes.begin(), bytes.end()), kind == "audio", kind == "I"});
    }
    return units;
}

Bytes FrameOf(const UNIT& unit, uint32_t dwSeq)
{
    auto frame = ZoavFrame().Seq(dwSeq).TimeStamp(static_cast<uint16_t>(dwSeq * 40)).Payload(unit.bytes);
    if (unit.bAudio)
        return frame.Type(ZOAV_FRAME::Audio).ExtHead({0x83, 1, 26, 4});
    frame.ExtHead({0x81, 25, 8, 25}).ExtHead({0xA0, 0, 40, 0});
    if (unit.bKey)
        return frame.Type(ZOAV_FRAME::I).ExtHead({0x82, 0, 0, 0, 0x80, 0x07, 0x38, 0x04});
    return frame.Type(ZOAV_FRAME::P);
}

} // namespace

Bytes RecordingStream(size_t nBytes)
{
    const std::vector<UNIT> units = SampleUnits();
    Bytes stream;
    stream.reserve(nBytes);
    for (uint32_t dwSeq = 0; !units.empty(); ++dwSeq) {
        const Bytes frame = FrameOf(units[dwSeq % units.size()], dwSeq);
        if (frame.size() > nBytes - stream.size())
            break;
        stream.insert(stream.end(), frame.begin(), frame.end());
    }
    return stream;
}

Bytes RubbishStream(size_t nBytes)
{
    Bytes stream = ZoavFrame().Payload(Bytes(100, 0xAB));
    std::minstd_rand random(1); // the same bytes at each run
    for (size_t n = 0; n < nBytes; ++n)
        stream.push_back(static_cast<uint8_t>(random() >> 8 & 0x3F)); // no letter of a magic is below 0x40
    return stream;
}

} // namespace Marvane::FrameSift
