#include "Info/InfoText.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "Check/FindingText.h"
#include "Frames/CodeNames.h"
#include "Frames/FrameText.h"

namespace Marvane::FrameSift {

namespace {

using Parts = std::vector<std::string>;

constexpr size_t sc_listedStarts = 6; // of formats; the screen has more to show

std::string Line(std::string_view name, std::string_view text)
{
    constexpr size_t sc_nameWidth = 11;
    return fmt::format("  {}{}{}\n", name, std::string(sc_nameWidth - name.size(), ' '), text);
}

std::string Joined(const Parts& parts, std::string_view nothing)
{
    return parts.empty() ? std::string(nothing) : fmt::format("{}", fmt::join(parts, ", "));
}

void AddCount(Parts& parts, uint64_t nCount, std::string_view noun, std::string_view behind = "")
{
    if (nCount > 0)
        parts.push_back(fmt::format("{}{}", Counted(nCount, noun), behind));
}

std::string SecondsText(int64_t nMilliseconds)
{
    return fmt::format("{}.{:03} s", nMilliseconds / 1000, nMilliseconds % 1000);
}

std::string TimeLines(const INFO_REPORT& report)
{
    const auto& [earliest, latest] = std::pair(report.check.earliest, report.check.latest);
    if (!earliest)
        return Line("time", "no frame has one");
    std::string text = Line("time", fmt::format("{} to {} ({}) by the recording's own clock", TimeText(*earliest),
                                                TimeText(*latest), SecondsText(*report.Duration())));
    const bool bDiffers = report.first && (TimeToClock(*report.first) != TimeToClock(*earliest) ||
                                           TimeToClock(*report.last) != TimeToClock(*latest));
    if (bDiffers)
        text +=
            Line("", fmt::format("in the file's order from {} to {}", TimeText(*report.first), TimeText(*report.last)));
    return text;
}

std::string FramesText(const INFO_REPORT& report)
{
    std::string text = fmt::format("{} good", report.GoodFrames());
    if (!report.goodByType.empty())
        text += fmt::format(": {}", CountsText(report.goodByType, &FrameTypeName));
    if (!report.videoBySubType.empty())
        text += fmt::format(" (video: {})", CountsText(report.videoBySubType, [](int32_t nCode) {
                                return SubTypeName(KX_FRAME_TYPE_VIDEO, nCode);
                            }));
    return text;
}

std::string KeysText(const CKeyDistance& keys)
{
    std::string text = fmt::format("{}", keys.Keys());
    const auto frames = keys.Frames();
    const auto times = keys.Milliseconds();
    if (frames)
        text +=
            fmt::format("; typical distance {}, largest {}", Counted(static_cast<uint64_t>(frames->nTypical), "frame"),
                        Counted(static_cast<uint64_t>(frames->nLargest), "frame"));
    if (times)
        text += fmt::format("; in time {} and {}", SecondsText(times->nTypical), SecondsText(times->nLargest));
    return text;
}

std::string FormatText(const VIDEO_FORMAT& format)
{
    std::string text = CodecName(KX_FRAME_TYPE_VIDEO, format.nCodec);
    if (format.nWidth > 0 && format.nHeight > 0)
        text += fmt::format(" {}x{}", format.nWidth, format.nHeight);
    if (format.nFrameRate > 0)
        text += fmt::format(", {}/s announced", format.nFrameRate);
    return text;
}

std::string FormatText(const AUDIO_FORMAT& format)
{
    std::string text = CodecName(KX_FRAME_TYPE_AUDIO, format.nCodec);
    if (format.nSampleRate > 0)
        text += fmt::format(" {} Hz", format.nSampleRate);
    if (format.nChannels > 0)
        text += fmt::format(", {}", Counted(static_cast<uint64_t>(format.nChannels), "channel"));
    if (format.nBits > 0)
        text += fmt::format(", {} bit", format.nBits);
    return text;
}

// The first format without its place, each further one with it.
template <class FORMAT>
std::string FormatLines(std::string_view name, const CFormatWatch<FORMAT>& watch)
{
    const auto& starts = watch.Starts();
    std::string text;
    for (size_t n = 0; n < std::min(starts.size(), sc_listedStarts); ++n) {
        const auto& start = starts[n];
        const std::string time = TimeText(start.time);
        const std::string place =
            n == 0 ? "" : fmt::format("from offset {} ({}) ", start.nOffset, time.empty() ? "no time" : time);
        const std::string channel = start.nChannel == 0 ? "" : fmt::format("channel {}: ", start.nChannel);
        text += Line(n == 0 ? name : "", fmt::format("{}{}{}", channel, place, FormatText(start.format)));
    }
    const uint64_t nAll = starts.size() + watch.LeftOut();
    if (nAll > sc_listedStarts)
        text += Line("", fmt::format("and {} more changes; --json lists more", nAll - sc_listedStarts));
    return text;
}

std::string BitRateText(const INFO_REPORT& report)
{
    const auto rate = [&report](std::optional<int32_t> type) {
        return fmt::format("{:.1f} kbit/s", static_cast<double>(*report.BitRate(type)) / 1000.0);
    };
    if (!report.BitRate(std::nullopt))
        return "not known: no time passes";
    std::string text = rate(std::nullopt);
    if (report.goodByType.count(KX_FRAME_TYPE_VIDEO) > 0)
        text += fmt::format("; video {}", rate(KX_FRAME_TYPE_VIDEO));
    if (report.goodByType.count(KX_FRAME_TYPE_AUDIO) > 0)
        text += fmt::format("; audio {}", rate(KX_FRAME_TYPE_AUDIO));
    return text + " of payload";
}

std::string CipherLine(const INFO_REPORT& report)
{
    Parts parts;
    if (!report.encipheredByType.empty())
        parts.push_back(fmt::format("enciphered frames: {}", CountsText(report.encipheredByType, &CipherName)));
    if (report.nDeciphered > 0)
        parts.push_back(fmt::format("{} deciphered with the key", Counted(report.nDeciphered, "frame")));
    return parts.empty() ? "" : Line("cipher", Joined(parts, ""));
}

std::string GapsText(const CHECK_REPORT& check)
{
    const auto count = [&check](FINDING_KIND eKind) { return check.findings.Count(eKind); };
    Parts parts;
    for (const auto& [nType, nCount] : check.lostByType)
        parts.push_back(fmt::format("{} lost", LostFramesText(nCount, nType)));
    if (!parts.empty())
        parts.back() += fmt::format(" in {}", Counted(count(FINDING_KIND::LostFrames), "gap"));
    AddCount(parts, count(FINDING_KIND::ClockJump), "clock jump");
    AddCount(parts, count(FINDING_KIND::SequenceRestart), "restart", " of the frame numbers");
    AddCount(parts, count(FINDING_KIND::OutOfOrder), "frame", " out of order");
    AddCount(parts, count(FINDING_KIND::RepeatedNumber), "repeated number");
    return Joined(parts, "none found");
}

std::string DamageText(const INFO_REPORT& report)
{
    const CHECK_REPORT& check = report.check;
    Parts parts;
    AddCount(parts, check.findings.Count(FINDING_KIND::DamagedFrame), "damaged frame");
    if (!check.damagedByFlag.empty())
        parts.back() += fmt::format(" ({})", CountsText(check.damagedByFlag, &ErrorName));
    AddCount(parts, check.nOutsideBytes, "byte", " in no frame");
    AddCount(parts, check.nUnfinishedBytes, "byte", " of a frame that the end cuts off");
    AddCount(parts, report.FramesNotIndexed(), "good frame", " behind a broken one at the end, which nobody reads");
    return parts.empty() ? "none found" : Joined(parts, "") + "; \"framesift check\" tells where";
}

} // namespace

std::string InfoText(const INFO_REPORT& report)
{
    const CHECK_REPORT& check = report.check;
    std::string text = fmt::format("{}\n", check.name);
    text += Line("format", StreamFormatText(check.nStreamType, report.nInnerType));
    text += Line("size", fmt::format("{}; largest frame {}", Counted(check.nBytes, "byte"), report.nLargestFrame));
    text += TimeLines(report);
    text += Line("frames", FramesText(report));
    if (report.goodByType.count(KX_FRAME_TYPE_VIDEO) > 0)
        text += Line("key frames", KeysText(report.keys));
    text += FormatLines("video", report.video);
    text += FormatLines("audio", report.audio);
    text += Line("bit rate", BitRateText(report));
    text += CipherLine(report);
    constexpr const char* sc_unknown = "not looked at: pictures are put together from blocks";
    text += Line("gaps", report.bHasPlaces ? GapsText(check) : sc_unknown);
    text += Line("damage", report.bHasPlaces ? DamageText(report) : sc_unknown);
    return text;
}

} // namespace Marvane::FrameSift
