#include <fstream>

#include "Io/AppError.h"
#include "Mux/CodecTable.h"
#include "Support/Samples.h"

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
        cutter.Feed(Bytes(part.begin(), part.end()));
        takeAll();
    }
    cutter.Finish();
    takeAll();
    return units;
}

std::unique_ptr<CUnitCutter> MakeCutter(const std::string& codec, const json& facts)
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

// Offsets, kinds, keys and bytes are those of the list, however the stream is fed.
void ExpectListedUnits(const json& sample, const std::string& codec)
{
    SCOPED_TRACE(sample["file"]);
    constexpr const char* sc_kinds[] = {"audio", "I", "P", "B"};
    const Bytes stream = ReadSample(sample["file"]);
    const json& facts = sample["facts"];
    for (const size_t nPiece : {size_t{1021}, stream.size(), size_t{1}}) {
        if (nPiece == 1 && stream.size() > 20000)
            continue;
        SCOPED_TRACE(nPiece);
        const auto cutter = MakeCutter(codec, facts);
        const auto units = Cut(*cutter, stream, nPiece);
        ASSERT_EQ(units.size(), sample["units"].size());
        EXPECT_EQ(cutter->SkippedBytes(), 0U);
        for (size_t n = 0; n < units.size(); ++n) {
            SCOPED_TRACE(n);
            const MediaUnit& unit = units[n];
            const json& listed = sample["units"][n];
            ASSERT_EQ(unit.nOffset, listed["offset"]);
            ASSERT_EQ(unit.payload, UnitOf(stream, listed));
            EXPECT_EQ(sc_kinds[static_cast<size_t>(unit.eKind)], listed["kind"]);
            EXPECT_EQ(unit.bKey, listed.value("key", true));
            EXPECT_EQ(unit.nWidth, facts.value("width", 0U));
            EXPECT_EQ(unit.nHeight, facts.value("height", 0U));
            EXPECT_EQ(unit.nSamplesPerSec, facts.value("rate", 0U));
            EXPECT_EQ(unit.nChannels, facts.value("channels", 0U));
            EXPECT_EQ(unit.nSamples, facts.value("samples_per_frame", 0U));
        }
    }
}

} // namespace

TEST(UnitCutterSamples, EachIsCutAsTheListSays)
{
    for (const std::string folder : {"h264", "h265", "mpeg4", "mpeg2", "jpeg", "audio"}) {
        for (const json& sample : SamplesIn(folder)) {
            if (sample["codec"] != "opus") // its packets stand there without any mark between them
                ExpectListedUnits(sample, sample["codec"]);
        }
    }
}

TEST(UnitCutterDamage, RubbishYieldsNoUnitAndIsCounted)
{
    const Bytes zeros(100000, 0);
    const Bytes noise(100000, 0x5A);
    for (const std::string codec : {"h264", "h265", "mpeg4", "mpeg2", "jpeg", "aac", "mp2", "mp3"}) {
        for (const auto& rubbish : {zeros, noise}) {
            SCOPED_TRACE(codec);
            const auto cutter = MakeCutter(codec, json::object());
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
            const auto cutter = MakeCutter(codec, json::object());
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
        const json listed = SampleOf(file)["units"];
        auto stream = ReadSample(file);
        const Bytes gap(50, 0xFF); // full of sync bits
        stream.insert(stream.begin() + listed[5]["offset"].get<ptrdiff_t>(), gap.begin(), gap.end());
        const auto cutter = MakeCutter(codec, json::object());
        EXPECT_EQ(Cut(*cutter, stream, 100).size(), listed.size());
        EXPECT_EQ(cutter->SkippedBytes(), gap.size());
    }
}

TEST(UnitCutterDamage, AUnitThatARecordingCannotCarryIsRefused)
{
    Bytes stream = {0, 0, 0, 1, 0x65}; // one slice without an end
    stream.resize(3 * gsk_maxUnitSize, 0x55);
    const auto cutter = MakeCutter("h264", json::object());
    EXPECT_THROW(Cut(*cutter, stream, 65536), CAppError);
}

TEST(H264Cutter, SlicesOfOnePictureStayTogetherBehindPrefixes)
{
    // Without parameter sets: a slice that begins at macroblock 0 (first bit 1) begins a picture.
    const Bytes prefix = {0, 0, 1, 14, 0x40, 0, 0x80};
    const Bytes first = {0, 0, 1, 5, 0xB8, 0x80};
    const Bytes later = {0, 0, 1, 5, 0x46, 0xE2};
    Bytes stream;
    for (const auto& part : {prefix, first, prefix, later, prefix, first, later})
        stream.insert(stream.end(), part.begin(), part.end());
    const auto cutter = MakeCutter("h264", json::object());
    const auto units = Cut(*cutter, stream, 3);
    ASSERT_EQ(units.size(), 2U);
    EXPECT_EQ(units[0].payload.size(), 2 * prefix.size() + first.size() + later.size());
}

TEST(JpegCutter, AThumbnailEndsNoPicture)
{
    const Bytes inner = {0xFF, 0xD8, 0xFF, 0xD9};
    const Bytes picture = {0xFF, 0xD8,                                                                // SOI
                           0xFF, 0xE1, 0,   6, inner[0], inner[1], inner[2], inner[3],                // APP1
                           0xFF, 0xC0, 0,   8, 8,        0,        16,       0,        32,   0,       // SOF0: 32x16
                           0xFF, 0xDA, 0,   2, 1,        2,        0xFF,     0,        0xFF, 0xD0, 3, // SOS
                           0xFF, 0xFF, 0xD9};                                                         // fill, EOI
    Bytes stream = picture;
    stream.insert(stream.end(), {0, 0}); // padding
    stream.insert(stream.end(), picture.begin(), picture.end());
    for (const size_t nPiece : {size_t{1}, stream.size()}) {
        const auto cutter = MakeCutter("jpeg", json::object());
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
