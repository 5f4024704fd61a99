#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <random>

#include "App/SampleUnits.h"
#include "Io/AppError.h"
#include "Mux/CodecTable.h"

namespace Marvane::FrameSift {

namespace {

std::vector<MediaUnit> Cut(CUnitCutter& cutter, std::span<const uint8_t> stream, size_t nPiece)
{
    std::vector<MediaUnit> units;
    const auto takeAll = [&] {
        for (MediaUnit unit; cutter.Take(unit);)
            units.push_back(unit);
    };
    for (size_t nPos = 0; nPos < stream.size(); nPos += nPiece) {
        // A copy of just this size: a read past it is found by the sanitizer.
        const auto part = stream.subspan(nPos, std::min(nPiece, stream.size() - nPos));
        cutter.Feed(std::vector<uint8_t>(part.begin(), part.end()));
        takeAll();
    }
    cutter.Finish();
    takeAll();
    return units;
}

SAMPLE_UNIT AsListed(const MediaUnit& unit)
{
    constexpr const char* sc_kinds[] = {"audio", "I", "P", "B"};
    return {unit.nOffset, unit.payload.size(), sc_kinds[static_cast<size_t>(unit.eKind)], unit.bKey};
}

nlohmann::json FactsOf(const std::string& file)
{
    static const nlohmann::json s_manifest = nlohmann::json::parse(std::ifstream(SamplePath("manifest.json")));
    for (const auto& stream : s_manifest["streams"]) {
        if (stream["file"] == file)
            return stream["facts"];
    }
    return {};
}

std::unique_ptr<CUnitCutter> MakeCutter(const std::string& codec, const nlohmann::json& facts)
{
    if (const auto* pVideo = FindVideoCodec(codec))
        return pVideo->pfnMakeCutter();
    RAW_AUDIO format;
    format.nSamplesPerSec = facts.value("rate", 0U);
    format.nChannels = facts.value("channels", 0U);
    format.nBitsPerSample = FindAudioCodec(codec)->nBitsPerSample;
    format.nFrameSize = facts.value("frame_bytes", 0U);
    return FindAudioCodec(codec)->pfnMakeCutter(format);
}

// Offsets, lengths, kinds, keys and bytes are those of the list, however the stream is fed.
void ExpectListedUnits(const std::string& file, const std::string& codec)
{
    SCOPED_TRACE(file);
    const auto stream = ReadSample(file);
    const auto listed = ListedUnits(file);
    const auto facts = FactsOf(file);
    ASSERT_FALSE(listed.empty());
    for (const size_t nPiece : {size_t{1021}, stream.size(), size_t{1}}) {
        if (nPiece == 1 && stream.size() > 20000)
            continue;
        SCOPED_TRACE(nPiece);
        const auto cutter = MakeCutter(codec, facts);
        const auto units = Cut(*cutter, stream, nPiece);
        ASSERT_EQ(units.size(), listed.size());
        EXPECT_EQ(cutter->SkippedBytes(), 0U);
        for (size_t n = 0; n < units.size(); ++n) {
            SCOPED_TRACE(n);
            ASSERT_EQ(AsListed(units[n]), listed[n]);
            ASSERT_TRUE(std::equal(units[n].payload.begin(), units[n].payload.end(),
                                   stream.begin() + static_cast<std::ptrdiff_t>(listed[n].nOffset)));
            EXPECT_EQ(units[n].nWidth, facts.value("width", 0U));
            EXPECT_EQ(units[n].nHeight, facts.value("height", 0U));
            EXPECT_EQ(units[n].nSamplesPerSec, facts.value("rate", 0U));
            EXPECT_EQ(units[n].nChannels, facts.value("channels", 0U));
            EXPECT_EQ(units[n].nSamples, facts.value("samples_per_frame", 0U));
        }
    }
}

} // namespace

TEST(UnitCutterSamples, VideoIsCutAsTheListSays)
{
    for (const std::string folder : {"h264", "h265", "mpeg4", "mpeg2", "jpeg"}) {
        const auto files = SampleFiles(folder);
        ASSERT_FALSE(files.empty()) << folder;
        for (const auto& file : files)
            ExpectListedUnits(file, folder);
    }
}

TEST(UnitCutterSamples, AudioIsCutAsTheListSays)
{
    int nFiles = 0;
    for (const auto& file : SampleFiles("audio")) {
        const std::string name = file.substr(file.find('/') + 1);
        const std::string codec = name.substr(0, name.find('_'));
        if (codec == "opus")
            continue; // its packets stand there without any mark between them
        ExpectListedUnits(file, codec);
        ++nFiles;
    }
    EXPECT_EQ(nFiles, 14);
}

TEST(UnitCutterDamage, RubbishYieldsNoUnitAndIsCounted)
{
    const std::vector<uint8_t> zeros(100000, 0);
    const std::vector<uint8_t> noise(100000, 0x5A);
    for (const std::string codec : {"h264", "h265", "mpeg4", "mpeg2", "jpeg", "aac", "mp2", "mp3"}) {
        for (const auto& rubbish : {zeros, noise}) {
            SCOPED_TRACE(codec);
            const auto cutter = MakeCutter(codec, nlohmann::json::object());
            EXPECT_TRUE(Cut(*cutter, rubbish, 4096).empty());
            EXPECT_EQ(cutter->SkippedBytes(), rubbish.size());
        }
    }
}

TEST(UnitCutterDamage, FlippedBytesLoseNoByteOfTheStream)
{
    std::minstd_rand random(1);
    for (const auto& [codec, file] : {std::pair("h264", "h264/svc_2spatial_cif.h264"),
                                      {"h265", "h265/cif_hrd_hash_tlayers.h265"},
                                      {"mpeg4", "mpeg4/cif_packed_divx.m4v"},
                                      {"mpeg2", "mpeg2/576i25_tff.m2v"},
                                      {"jpeg", "jpeg/exif_com.mjpg"},
                                      {"aac", "audio/aac_lc_16k_mono.aac"},
                                      {"mp3", "audio/mp3_16k_mono_vbr.mp3"}}) {
        for (int nRound = 0; nRound < 30; ++nRound) {
            SCOPED_TRACE(std::string(codec) + " " + std::to_string(nRound));
            auto stream = ReadSample(file);
            for (int n = 0; n < 1 + nRound; ++n)
                stream[random() % stream.size()] = static_cast<uint8_t>(random());
            const auto cutter = MakeCutter(codec, nlohmann::json::object());
            uint64_t nBytes = 0;
            for (const MediaUnit& unit : Cut(*cutter, stream, 1 + random() % 5000))
                nBytes += unit.payload.size();
            EXPECT_EQ(nBytes + cutter->SkippedBytes(), stream.size());
        }
    }
}

TEST(UnitCutterDamage, AudioComesBackBehindAGap)
{
    for (const auto& [codec, file] :
         {std::pair("aac", "audio/aac_lc_16k_mono.aac"), {"mp3", "audio/mp3_16k_mono_vbr.mp3"}}) {
        SCOPED_TRACE(codec);
        const auto listed = ListedUnits(file);
        auto stream = ReadSample(file);
        const std::vector<uint8_t> gap(50, 0xFF); // full of sync bits
        stream.insert(stream.begin() + static_cast<std::ptrdiff_t>(listed[5].nOffset), gap.begin(), gap.end());
        const auto cutter = MakeCutter(codec, nlohmann::json::object());
        EXPECT_EQ(Cut(*cutter, stream, 100).size(), listed.size());
        EXPECT_EQ(cutter->SkippedBytes(), gap.size());
    }
}

TEST(UnitCutterDamage, AUnitThatARecordingCannotCarryIsRefused)
{
    std::vector<uint8_t> stream = {0, 0, 0, 1, 0x65}; // one slice without an end
    stream.resize(3 * gsk_maxUnitSize, 0x55);
    const auto cutter = MakeCutter("h264", nlohmann::json::object());
    EXPECT_THROW(Cut(*cutter, stream, 65536), CAppError);
}

TEST(H264Cutter, SlicesOfOnePictureStayTogetherBehindPrefixes)
{
    // Without parameter sets: a slice that begins at macroblock 0 (first bit 1) begins a picture.
    const std::vector<uint8_t> prefix = {0, 0, 1, 14, 0x40, 0, 0x80};
    const std::vector<uint8_t> first = {0, 0, 1, 5, 0xB8, 0x80};
    const std::vector<uint8_t> later = {0, 0, 1, 5, 0x46, 0xE2};
    std::vector<uint8_t> stream;
    for (const auto& part : {prefix, first, prefix, later, prefix, first, later})
        stream.insert(stream.end(), part.begin(), part.end());
    const auto cutter = MakeCutter("h264", nlohmann::json::object());
    const auto units = Cut(*cutter, stream, 3);
    ASSERT_EQ(units.size(), 2U);
    EXPECT_EQ(units[0].payload.size(), 2 * prefix.size() + first.size() + later.size());
}

TEST(JpegCutter, AThumbnailEndsNoPicture)
{
    const std::vector<uint8_t> inner = {0xFF, 0xD8, 0xFF, 0xD9};
    const std::vector<uint8_t> picture = {
        0xFF, 0xD8,                                                                // SOI
        0xFF, 0xE1, 0,   6, inner[0], inner[1], inner[2], inner[3],                // APP1
        0xFF, 0xC0, 0,   8, 8,        0,        16,       0,        32,   0,       // SOF0: 32x16
        0xFF, 0xDA, 0,   2, 1,        2,        0xFF,     0,        0xFF, 0xD0, 3, // SOS
        0xFF, 0xFF, 0xD9};                                                         // fill, EOI
    std::vector<uint8_t> stream = picture;
    stream.insert(stream.end(), {0, 0}); // padding
    stream.insert(stream.end(), picture.begin(), picture.end());
    for (const size_t nPiece : {size_t{1}, stream.size()}) {
        const auto cutter = MakeCutter("jpeg", nlohmann::json::object());
        const auto units = Cut(*cutter, stream, nPiece);
        ASSERT_EQ(units.size(), 2U);
        EXPECT_EQ(units[1].payload, picture);
        EXPECT_EQ(units[1].nOffset, picture.size() + 2);
        EXPECT_EQ(units[1].nWidth, 32U);
        EXPECT_EQ(units[1].nHeight, 16U);
        EXPECT_EQ(cutter->SkippedBytes(), 2U);
    }
}

} // namespace Marvane::FrameSift
