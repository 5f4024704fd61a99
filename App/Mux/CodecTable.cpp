#include "Mux/CodecTable.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>

#include "Mux/FramedAudioCutter.h"
#include "Mux/H264Cutter.h"
#include "Mux/H265Cutter.h"
#include "Mux/JpegCutter.h"
#include "Mux/Mpeg2Cutter.h"
#include "Mux/Mpeg4Cutter.h"
#include "Tools/AudioSampleMap.h"
#include "framesift/framesift.h"

namespace Marvane::FrameSift {

namespace {

template <class CUTTER>
std::unique_ptr<CUnitCutter> MakeVideo()
{
    return std::make_unique<CUTTER>();
}

template <AUDIO_HEAD_READER READ_HEAD>
std::unique_ptr<CUnitCutter> MakeFramed(const RAW_AUDIO&)
{
    return std::make_unique<CFramedAudioCutter>(READ_HEAD);
}

std::unique_ptr<CUnitCutter> MakeRaw(const RAW_AUDIO& format)
{
    return std::make_unique<CFixedSizeCutter>(format);
}

constexpr VIDEO_CODEC_ROW sc_videoCodecs[] = {
    {"h264", 8, &MakeVideo<CH264Cutter>},   {"h265", 12, &MakeVideo<CH265Cutter>},
    {"mpeg4", 1, &MakeVideo<CMpeg4Cutter>}, {"mpeg2", 9, &MakeVideo<CMpeg2Cutter>},
    {"jpeg", 5, &MakeVideo<CJpegCutter>},
};

constexpr AUDIO_CODEC_ROW sc_audioCodecs[] = {
    {"aac", KX_ENCODE_AUDIO_AAC, 0, &MakeFramed<&ReadAdtsHead>},
    {"mp2", KX_ENCODE_AUDIO_MP2, 0, &MakeFramed<&ReadMpegLayer2Head>},
    {"mp3", KX_ENCODE_AUDIO_MP3, 0, &MakeFramed<&ReadMpegLayer3Head>},
    {"g711a", KX_ENCODE_AUDIO_G711A, 8, &MakeRaw},
    {"g711u", KX_ENCODE_AUDIO_G711U, 8, &MakeRaw},
    {"pcm16", KX_ENCODE_AUDIO_PCM16, 16, &MakeRaw},
};

template <class ROWS>
auto FindRow(const ROWS& rows, std::string_view name)
{
    const auto* pRow =
        std::find_if(std::begin(rows), std::end(rows), [&](const auto& row) { return row.name == name; });
    return pRow == std::end(rows) ? nullptr : pRow;
}

template <class ROWS>
std::string NamesOf(const ROWS& rows)
{
    std::string names;
    for (const auto& row : rows)
        names += (names.empty() ? "" : ", ") + std::string(row.name);
    return names;
}

} // namespace

const VIDEO_CODEC_ROW* FindVideoCodec(std::string_view name)
{
    return FindRow(sc_videoCodecs, name);
}

const AUDIO_CODEC_ROW* FindAudioCodec(std::string_view name)
{
    return FindRow(sc_audioCodecs, name);
}

std::string VideoCodecNames()
{
    return NamesOf(sc_videoCodecs);
}

std::string AudioCodecNames()
{
    return NamesOf(sc_audioCodecs);
}

std::string SampleRates()
{
    const std::set<int32_t> rates(gsk_AudioSampleMap.begin(), gsk_AudioSampleMap.end());
    return fmt::format("{}", fmt::join(rates, ", "));
}

} // namespace Marvane::FrameSift
