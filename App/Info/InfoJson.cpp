#include "Info/InfoJson.h"

#include <nlohmann/json.hpp>

#include "Frames/CodeNames.h"
#include "Frames/FrameText.h"

namespace Marvane::FrameSift {

namespace {

using Json = nlohmann::ordered_json;

// Goes up when a field changes its meaning or goes away, not when one is added.
constexpr int sc_schemaVersion = 1;

Json NumberOrNull(int64_t nValue)
{
    return nValue > 0 ? Json(nValue) : Json();
}

Json JsonOf(const std::optional<KX_TIME>& time)
{
    const std::string text = time ? TimeText(*time) : std::string();
    return text.empty() ? Json() : Json(text);
}

template <class NUMBER>
Json JsonOf(const std::optional<NUMBER>& number)
{
    return number ? Json(*number) : Json();
}

Json JsonOf(const std::optional<DISTANCE>& distance)
{
    return distance ? Json{{"typical", distance->nTypical}, {"largest", distance->nLargest}} : Json();
}

template <class NAME>
Json JsonOf(const std::map<int32_t, uint64_t>& counts, NAME name)
{
    Json object = Json::object();
    for (const auto& [nCode, nCount] : counts)
        object[name(nCode)] = nCount;
    return object;
}

void AddFormat(Json& object, const VIDEO_FORMAT& format)
{
    object["codec"] = CodecName(KX_FRAME_TYPE_VIDEO, format.nCodec);
    object["width"] = NumberOrNull(format.nWidth);
    object["height"] = NumberOrNull(format.nHeight);
    object["frame_rate"] = NumberOrNull(format.nFrameRate);
}

void AddFormat(Json& object, const AUDIO_FORMAT& format)
{
    object["codec"] = CodecName(KX_FRAME_TYPE_AUDIO, format.nCodec);
    object["sample_rate"] = NumberOrNull(format.nSampleRate);
    object["channels"] = NumberOrNull(format.nChannels);
    object["bits_per_sample"] = NumberOrNull(format.nBits);
}

template <class FORMAT>
Json JsonOf(const CFormatWatch<FORMAT>& watch)
{
    Json formats = Json::array();
    for (const auto& start : watch.Starts()) {
        Json object = {{"offset", start.nOffset}, {"time", JsonOf(std::optional(start.time))}};
        AddFormat(object, start.format);
        object["channel"] = start.nChannel;
        formats.push_back(std::move(object));
    }
    return {{"formats", std::move(formats)}, {"changes", watch.Changes()}, {"formats_left_out", watch.LeftOut()}};
}

Json FramesJson(const INFO_REPORT& report)
{
    const auto subTypeName = [](int32_t nCode) { return SubTypeName(KX_FRAME_TYPE_VIDEO, nCode); };
    return {{"good", report.GoodFrames()},
            {"by_kind", JsonOf(report.goodByType, &FrameTypeName)},
            {"video_by_subtype", JsonOf(report.videoBySubType, subTypeName)},
            {"payload_bytes_by_kind", JsonOf(report.payloadByType, &FrameTypeName)},
            {"largest", report.nLargestFrame},
            {"not_indexed", report.FramesNotIndexed()}};
}

Json GapsJson(const CHECK_REPORT& check)
{
    return {{"lost_by_kind", JsonOf(check.lostByType, &FrameTypeName)},
            {"gaps", check.findings.Count(FINDING_KIND::LostFrames)},
            {"clock_jumps", check.findings.Count(FINDING_KIND::ClockJump)},
            {"sequence_restarts", check.findings.Count(FINDING_KIND::SequenceRestart)},
            {"out_of_order", check.findings.Count(FINDING_KIND::OutOfOrder)},
            {"repeated_numbers", check.findings.Count(FINDING_KIND::RepeatedNumber)}};
}

Json DamageJson(const CHECK_REPORT& check)
{
    return {{"damaged_frames", check.findings.Count(FINDING_KIND::DamagedFrame)},
            {"damaged_by_error", JsonOf(check.damagedByFlag, &ErrorName)},
            {"bytes_in_no_frame", check.nOutsideBytes},
            {"stretches", check.findings.Count(FINDING_KIND::Stretch) + check.findings.Count(FINDING_KIND::Blocks)},
            {"unfinished_bytes", check.nUnfinishedBytes}};
}

Json Begin(const std::string& name, EXIT_CODE eCode, const Json& error)
{
    return {
        {"schema_version", sc_schemaVersion}, {"file", name}, {"exit_code", static_cast<int>(eCode)}, {"error", error}};
}

} // namespace

std::string InfoJson(const INFO_REPORT& report)
{
    const CHECK_REPORT& check = report.check;
    Json object = Begin(check.name, EXIT_CODE::Done, Json());
    object["stream_type"] = StreamTypeName(check.nStreamType);
    object["bytes"] = check.nBytes;
    object["time"] = {{"earliest", JsonOf(check.earliest)},
                      {"latest", JsonOf(check.latest)},
                      {"first", JsonOf(report.first)},
                      {"last", JsonOf(report.last)},
                      {"duration_ms", JsonOf(report.Duration())}};
    object["frames"] = FramesJson(report);
    object["key_frames"] = {{"count", report.keys.Keys()},
                            {"distance_frames", JsonOf(report.keys.Frames())},
                            {"distance_ms", JsonOf(report.keys.Milliseconds())}};
    object["video"] = JsonOf(report.video);
    object["audio"] = JsonOf(report.audio);
    object["bit_rate"] = {{"total", JsonOf(report.BitRate(std::nullopt))},
                          {"video", JsonOf(report.BitRate(KX_FRAME_TYPE_VIDEO))},
                          {"audio", JsonOf(report.BitRate(KX_FRAME_TYPE_AUDIO))}};
    object["cipher"] = {{"enciphered", JsonOf(report.encipheredByType, &CipherName)},
                        {"deciphered", report.nDeciphered}};
    object["gaps"] = report.bHasPlaces ? GapsJson(check) : Json();
    object["damage"] = report.bHasPlaces ? DamageJson(check) : Json();
    const std::string inner = InnerFormatName(check.nStreamType, report.nInnerType);
    object["inner_format"] = inner.empty() ? Json() : Json(inner);
    return object.dump() + "\n";
}

std::string FailureJson(const std::string& name, EXIT_CODE eCode, const std::string& error)
{
    return Begin(name, eCode, error).dump() + "\n";
}

} // namespace Marvane::FrameSift
