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
    AddPart(parts, report.nLostFrames,
            fmt::format("{} lost in {}", Counted(report.nLostFrames, "video frame"),
                        Counted(findings.Count(FINDING_KIND::LostFrames), "gap")));
    AddPart(parts, findings.Count(FINDING_KIND::DamagedFrame),
            Counted(findings.Count(FINDING_KIND::DamagedFrame), "damaged frame"));
    const uint64_t nStretches = findings.Count(FINDING_KIND::Stretch);
    AddPart(parts, nStretches,
            Counted(report.nOutsideBytes - report.nBlockBytes, "byte") + " in no frame" +
                (nStretches > 1 ? fmt::format(" in {} places", nStretches) : ""));
    AddPart(parts, findings.Count(FINDING_KIND::Unfinished), "cut off at the end");
    if (report.SoundFrames() == 0)
        parts.emplace_back("no sound frame at all");
    return parts;
}

Parts NoteParts(const CHECK_REPORT& report)
{
    const CFindings& findings = report.findings;
    const uint64_t nJumps = findings.Count(FINDING_KIND::ClockJump);
    const uint64_t nRestarts = findings.Count(FINDING_KIND::SequenceRestart);
    Parts parts;
    AddPart(parts, nJumps, Counted(nJumps, "clock jump"));
    AddPart(parts, nRestarts, Counted(nRestarts, "restart") + " of the frame numbers");
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
            text += fmt::format("  {} more of the kind {} are not listed; --max-findings lists more\n",
                                report.findings.LeftOut(eKind), FindingName(eKind));
    }
    return text;
}

std::string FramesLine(const CHECK_REPORT& report)
{
    std::string text = fmt::format("{} sound", report.SoundFrames());
    const char* pBefore = " (";
    for (const auto& [nType, nCount] : report.soundByType) {
        text += fmt::format("{}{} {}", pBefore, nCount, FrameTypeName(nType));
        pBefore = ", ";
    }
    text += report.soundByType.empty() ? "" : ")";
    text += fmt::format(", {} damaged", report.findings.Count(FINDING_KIND::DamagedFrame));
    pBefore = " (";
    for (const auto& [nFlag, nCount] : report.damagedByFlag) {
        text += fmt::format("{}{} {}", pBefore, nCount, ErrorName(nFlag));
        pBefore = ", ";
    }
    text += report.damagedByFlag.empty() ? "" : ")";
    text += fmt::format(", {} lost", report.nLostFrames);
    if (report.nEnciphered > 0)
        text += fmt::format(", {} still enciphered, the first at {}", report.nEnciphered, *report.firstEnciphered);
    return text;
}

std::string TotalLines(const CHECK_REPORT& report)
{
    std::string text;
    if (report.nStreamType != KX_STREAM_TYPE_UNKNOWN)
        text += fmt::format("  stream  {} ({})\n", StreamTypeName(report.nStreamType), report.nStreamType);
    if (report.earliest)
        text += fmt::format("  time    {} to {} by the recording's own clock\n", TimeText(*report.earliest),
                            TimeText(*report.latest));
    if (report.eCode != EXIT_CODE::Format) {
        text += fmt::format("  frames  {}\n", FramesLine(report));
        if (report.SoundFrames() > report.nSummed)
            text += fmt::format("          {} of {} sound ones carry no sum of their payload: a change inside it would "
                                "not show\n",
                                report.SoundFrames() - report.nSummed, report.SoundFrames());
        text += fmt::format("  bytes   {} = {} sound + {} damaged + {} in no frame + {} unfinished\n", report.nBytes,
                            report.nSoundBytes, report.nDamagedBytes, report.nOutsideBytes, report.nUnfinishedBytes);
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
    std::string text = VerdictText(report) + "\n" + FindingLines(report);
    return report.nBytes == 0 ? text : text + TotalLines(report);
}

} // namespace Marvane::FrameSift
