#include "Check/ReportText.h"

#include <fmt/format.h>

#include "Check/FindingText.h"
#include "Frames/CodeNames.h"
#include "Frames/FrameText.h"

namespace Marvane::FrameSift {

namespace {

using Parts = std::vector<std::string>;

void AddPart(Parts& parts, uint64_t nCount, const std::string& text)
{
    if (nCount > 0)
        parts.push_back(text);
}

Parts DamageParts(const CHECK_REPORT& report)
{
    const CFindings& findings = report.findings;
    Parts parts;
    Parts lost;
    for (const auto& [nType, nCount] : report.lostByType)
        lost.push_back(LostFramesText(nCount, nType));
    AddPart(parts, lost.size(),
            fmt::format("{} lost in {}", fmt::join(lost, " and "),
                        Counted(findings.Count(FINDING_KIND::LostFrames), "gap")));
    AddPart(parts, findings.Count(FINDING_KIND::DamagedFrame),
            Counted(findings.Count(FINDING_KIND::DamagedFrame), "damaged frame"));
    const uint64_t nStretches = findings.Count(FINDING_KIND::Stretch);
    AddPart(parts, nStretches,
            Counted(report.nOutsideBytes - report.nBlockBytes, "byte") + " in no frame" +
                (nStretches > 1 ? fmt::format(" in {} places", nStretches) : ""));
    AddPart(parts, findings.Count(FINDING_KIND::Unfinished), "cut off at the end");
    if (report.GoodFrames() == 0)
        parts.emplace_back("no good frame at all");
    return parts;
}

Parts NoteParts(const CHECK_REPORT& report)
{
    const CFindings& findings = report.findings;
    Parts parts;
    const auto add = [&](FINDING_KIND eKind, std::string_view noun, const char* pBehind = "") {
        AddPart(parts, findings.Count(eKind), Counted(findings.Count(eKind), noun) + pBehind);
    };
    AddPart(parts, findings.Count(FINDING_KIND::NoKeyFrame), "no key frame at the start");
    add(FINDING_KIND::ClockJump, "clock jump");
    add(FINDING_KIND::SequenceRestart, "restart", " of the frame numbers");
    add(FINDING_KIND::OutOfOrder, "frame", " out of order");
    add(FINDING_KIND::RepeatedNumber, "repeated number");
    add(FINDING_KIND::NoPayloadSum, "frame", " without a payload sum unlike others");
    AddPart(parts, report.nUnlikePicture,
            fmt::format("{} of {} deciphered key frames do not begin like a picture: the key may be wrong",
                        report.nUnlikePicture, report.nDecipheredKeys));
    AddPart(parts, report.nEnciphered, Counted(report.nEnciphered, "frame") + " still enciphered");
    return parts;
}

std::string VerdictText(const CHECK_REPORT& report)
{
    if (report.eCode == EXIT_CODE::Format)
        return fmt::format("{}: NO RECORDING: {}", report.name, report.error);
    if (!report.error.empty())
        return fmt::format("{}: NOT CHECKED{}: {}", report.name, report.nBytes > 0 ? " TO ITS END" : "", report.error);
    const Parts damage = DamageParts(report);
    const Parts notes = NoteParts(report);
    std::string text = fmt::format("{}: {}", report.name, damage.empty() ? "no damage found" : "DAMAGED: ");
    text += fmt::format("{}", fmt::join(damage, ", "));
    if (!notes.empty())
        text += fmt::format("; worth a look: {}", fmt::join(notes, ", "));
    return text;
}

std::string FindingLines(const CHECK_REPORT& report)
{
    std::string text;
    for (const FINDING& finding : report.findings.Listed())
        text += fmt::format("  at {:<12} {}\n", finding.nOffset, FindingText(finding));
    for (size_t n = 0; n < gsk_findingKinds; ++n) {
        const auto eKind = static_cast<FINDING_KIND>(n);
        if (report.findings.LeftOut(eKind) > 0)
            text += fmt::format("  and {} more of the kind {}; --max-findings lists more\n",
                                report.findings.LeftOut(eKind), FindingName(eKind));
    }
    return text;
}

// " (2 video, 1 audio)"; nothing for no counts.
template <class NAME>
std::string InBrackets(const std::map<int32_t, uint64_t>& counts, NAME name)
{
    Parts parts;
    for (const auto& [nCode, nCount] : counts)
        parts.push_back(fmt::format("{} {}", nCount, name(nCode)));
    return parts.empty() ? "" : fmt::format(" ({})", fmt::join(parts, ", "));
}

std::string LostKindName(int32_t nFrameType)
{
    return nFrameType == KX_FRAME_TYPE_UNKNOWN ? "of an unknown kind" : FrameTypeName(nFrameType);
}

std::string FramesLine(const CHECK_REPORT& report)
{
    std::string text = fmt::format(
        "{} good{}, {} damaged{}, {} lost{}", report.GoodFrames(), InBrackets(report.goodByType, &FrameTypeName),
        report.findings.Count(FINDING_KIND::DamagedFrame), InBrackets(report.damagedByFlag, &ErrorName),
        report.LostFrames(), InBrackets(report.lostByType, &LostKindName));
    if (report.nDeciphered > 0)
        text += fmt::format(", {} deciphered", report.nDeciphered);
    if (report.nEnciphered > 0)
        text += fmt::format(", {} still enciphered, the first at {}", report.nEnciphered, *report.firstEnciphered);
    return text;
}

std::string TotalLines(const CHECK_REPORT& report)
{
    std::string text;
    if (report.nStreamType != KX_STREAM_TYPE_UNKNOWN)
        text += fmt::format("  stream  {}\n", StreamFormatText(report.nStreamType, report.nInnerType));
    if (report.earliest)
        text += fmt::format("  time    {} to {} by the recording's own clock\n", TimeText(*report.earliest),
                            TimeText(*report.latest));
    if (report.eCode != EXIT_CODE::Format) {
        text += fmt::format("  frames  {}\n", FramesLine(report));
        if (report.GoodFrames() > report.nSummed)
            text += fmt::format("          without a payload sum that can be checked: {} of the {} good ones; a change "
                                "inside would not show\n",
                                report.GoodFrames() - report.nSummed, report.GoodFrames());
        text += fmt::format("  bytes   {} = {} good + {} damaged + {} in no frame + {} unfinished\n", report.nBytes,
                            report.nGoodBytes, report.nDamagedBytes, report.nOutsideBytes, report.nUnfinishedBytes);
        if (report.nBlockBytes > 0)
            text +=
                fmt::format("          {} of those in no frame are in blocks of another kind, which are no damage\n",
                            report.nBlockBytes);
    }
    if (!report.sha256.empty())
        text += fmt::format("  sha256  {}\n", report.sha256);
    return text;
}

} // namespace

std::string ReportText(const CHECK_REPORT& report)
{
    const std::string totals = report.nBytes == 0 ? "" : TotalLines(report);
    return VerdictText(report) + "\n" + totals + FindingLines(report);
}

} // namespace Marvane::FrameSift
