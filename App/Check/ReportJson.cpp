#include "Check/ReportJson.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "Frames/CodeNames.h"
#include "Frames/FrameText.h"

namespace Marvane::FrameSift {

namespace {

using Json = nlohmann::ordered_json;

// Goes up when a field changes its meaning or goes away, not when one is added.
constexpr int sc_schemaVersion = 1;

Json TextOrNull(const std::string& text)
{
    return text.empty() ? Json() : Json(text);
}

Json JsonOf(const std::optional<KX_TIME>& time)
{
    return time ? TextOrNull(TimeText(*time)) : Json();
}

Json JsonOf(const std::optional<FRAME_MARK>& mark)
{
    if (!mark)
        return {};
    return {{"offset", mark->nOffset},
            {"kind", FrameTypeName(mark->nFrameType)},
            {"subtype", TextOrNull(SubTypeName(mark->nFrameType, mark->nFrameSubType))},
            {"sequence", mark->nSeq},
            {"time", TextOrNull(TimeText(mark->time))}};
}

void AddParticulars(Json& object, const FINDING& finding)
{
    switch (finding.eKind) {
    case FINDING_KIND::LostFrames:
        object["lost"] = finding.nLost;
        object["lost_kind"] = FrameTypeName(finding.nLostType);
        object["first_lost"] = finding.before->nSeq + 1;
        object["last_lost"] = finding.after->nSeq - 1;
        break;
    case FINDING_KIND::DamagedFrame:
        object["bytes"] = finding.nBytes;
        object["error"] = ErrorName(finding.nErrorFlags);
        object["error_flags"] = finding.nErrorFlags;
        break;
    case FINDING_KIND::Unfinished:
        object["bytes"] = finding.nBytes;
        object["announced"] = finding.nAnnounced == 0 ? Json() : Json(finding.nAnnounced);
        break;
    case FINDING_KIND::ClockJump:
        object["milliseconds"] = finding.nJump;
        break;
    case FINDING_KIND::Stretch:
    case FINDING_KIND::Blocks:
        object["bytes"] = finding.nBytes;
        object["heads"] = finding.contents.nHeads;
        object["tails"] = finding.contents.nTails;
        object["blocks"] = finding.contents.nBlocks;
        break;
    default:
        break;
    }
}

Json JsonOf(const FINDING& finding)
{
    Json object = {
        {"finding", FindingName(finding.eKind)}, {"damage", IsDamage(finding.eKind)}, {"offset", finding.nOffset}};
    AddParticulars(object, finding);
    if (finding.eKind == FINDING_KIND::DamagedFrame || finding.eKind == FINDING_KIND::NoPayloadSum) {
        object["frame"] = JsonOf(finding.after);
    } else {
        object["before"] = JsonOf(finding.before);
        object["after"] = JsonOf(finding.after);
    }
    return object;
}

const char* VerdictOf(EXIT_CODE eCode)
{
    switch (eCode) {
    case EXIT_CODE::Done:
        return "clean";
    case EXIT_CODE::Damage:
        return "damaged";
    case EXIT_CODE::Format:
        return "not-recognised";
    default:
        return "unreadable";
    }
}

template <class NAME>
Json JsonOf(const std::map<int32_t, uint64_t>& counts, NAME name)
{
    Json object = Json::object();
    for (const auto& [nCode, nCount] : counts)
        object[name(nCode)] = nCount;
    return object;
}

Json TotalsOf(const CHECK_REPORT& report)
{
    Json byFinding = Json::object();
    Json leftOut = Json::object();
    for (size_t n = 0; n < gsk_findingKinds; ++n) {
        const auto eKind = static_cast<FINDING_KIND>(n);
        byFinding[FindingName(eKind)] = report.findings.Count(eKind);
        if (report.findings.LeftOut(eKind) > 0)
            leftOut[FindingName(eKind)] = report.findings.LeftOut(eKind);
    }
    return {{"bytes",
             {{"all", report.nBytes},
              {"good", report.nGoodBytes},
              {"damaged", report.nDamagedBytes},
              {"in_no_frame", report.nOutsideBytes},
              {"unfinished", report.nUnfinishedBytes},
              {"blocks", report.nBlockBytes}}},
            {"frames",
             {{"good", report.GoodFrames()},
              {"damaged", report.findings.Count(FINDING_KIND::DamagedFrame)},
              {"good_by_sum", report.nSummed},
              {"lost", report.LostFrames()},
              {"enciphered", report.nEnciphered},
              {"deciphered", report.nDeciphered},
              {"deciphered_key_frames", report.nDecipheredKeys},
              {"deciphered_unlike_picture", report.nUnlikePicture},
              {"good_by_kind", JsonOf(report.goodByType, &FrameTypeName)},
              {"lost_by_kind", JsonOf(report.lostByType, &FrameTypeName)},
              {"damaged_by_error", JsonOf(report.damagedByFlag, &ErrorName)}}},
            {"first_enciphered_offset", report.firstEnciphered ? Json(*report.firstEnciphered) : Json()},
            {"earliest", JsonOf(report.earliest)},
            {"latest", JsonOf(report.latest)},
            {"findings", byFinding},
            {"findings_left_out", leftOut}};
}

} // namespace

std::string JsonTitle()
{
    return fmt::format("{{\"schema_version\":{},\"files\":[", sc_schemaVersion);
}

std::string JsonEntry(const CHECK_REPORT& report, bool bFirst)
{
    const bool bTyped = report.nStreamType != KX_STREAM_TYPE_UNKNOWN;
    Json entry = {{"file", report.name},
                  {"verdict", VerdictOf(report.eCode)},
                  {"exit_code", static_cast<int>(report.eCode)},
                  {"error", TextOrNull(report.error)},
                  {"stream_type", bTyped ? Json(StreamTypeName(report.nStreamType)) : Json()},
                  {"sha256", TextOrNull(report.sha256)},
                  {"inner_format", TextOrNull(InnerFormatName(report.nStreamType, report.nInnerType))},
                  {"totals", TotalsOf(report)},
                  {"findings", Json::array()}};
    for (const FINDING& finding : report.findings.Listed())
        entry["findings"].push_back(JsonOf(finding));
    return (bFirst ? "\n" : ",\n") + entry.dump();
}

std::string JsonEnd(EXIT_CODE eWorst)
{
    return fmt::format("\n],\"exit_code\":{}}}\n", static_cast<int>(eWorst));
}

} // namespace Marvane::FrameSift
