#include "Check/FindingText.h"

#include <fmt/format.h>

#include "Frames/CodeNames.h"
#include "Frames/FrameText.h"

namespace Marvane::FrameSift {

namespace {

std::string TimeOr(const KX_TIME& time)
{
    const std::string text = TimeText(time);
    return text.empty() ? "no time" : text;
}

std::string KindText(const FRAME_MARK& mark)
{
    std::string type = FrameTypeName(mark.nFrameType);
    if (mark.nFrameType != KX_FRAME_TYPE_VIDEO)
        return type;
    return fmt::format("{} {}", type, SubTypeName(mark.nFrameType, mark.nFrameSubType));
}

std::string MarkText(const FRAME_MARK& mark)
{
    return fmt::format("{} frame {} ({})", KindText(mark), mark.nSeq, TimeOr(mark.time));
}

std::string NeighboursText(const FINDING& finding)
{
    const std::string before = finding.before ? MarkText(*finding.before) : "the start of the file";
    const std::string after = finding.after ? fmt::format("then {}", MarkText(*finding.after)) : "no frame follows";
    return fmt::format("behind {}; {}", before, after);
}

std::string LostText(const FINDING& finding)
{
    const uint32_t nFirst = finding.before->nSeq + 1;
    const uint32_t nLast = finding.after->nSeq - 1;
    std::string numbers =
        nFirst == nLast ? fmt::format("number {}", nFirst) : fmt::format("numbers {} to {}", nFirst, nLast);
    if (nLast - nFirst + 1 != finding.nLost)
        numbers = "of the " + numbers;
    return fmt::format("{} lost: {}, between {} and {}", LostFramesText(finding.nLost, finding.nLostType), numbers,
                       TimeOr(finding.before->time), TimeOr(finding.after->time));
}

std::string ContentsText(const STRETCH_CONTENTS& contents)
{
    std::vector<std::string> parts;
    if (contents.nHeads > 0)
        parts.push_back(fmt::format("{} whose sum, length or tail is wrong", Counted(contents.nHeads, "frame head")));
    if (contents.nTails > 0)
        parts.push_back(fmt::format("{} without a head", Counted(contents.nTails, "tail")));
    if (contents.nBlocks > 0)
        parts.push_back(fmt::format("{} of another kind", Counted(contents.nBlocks, "block")));
    return parts.empty() ? "" : fmt::format(" ({})", fmt::join(parts, ", "));
}

std::string StartText(const FINDING& finding)
{
    const std::string key = finding.after ? fmt::format("a decoder can start at offset {}: {}", finding.after->nOffset,
                                                        MarkText(*finding.after))
                                          : "there is no frame that a decoder can start from";
    return fmt::format("the first video frame is no key frame: {}; {}", MarkText(*finding.before), key);
}

std::string DamageText(int32_t nErrorFlags)
{
    switch (nErrorFlags) {
    case KX_ERROR_FLAGS_HEAD_VERIFY:
        return "its head does not match its sum";
    case KX_ERROR_FLAGS_DATA_VERIFY:
        return "its payload does not match its sum";
    case KX_ERROR_FLAGS_WATERMARK:
        return "its watermark does not match its sum: it may have been altered";
    case KX_ERROR_FLAGS_FRAME_HALF_BAKED:
        return "its end is missing or does not match its head";
    case KX_ERROR_FLAGS_DECRYPTION_FAILURE:
        return "it could not be deciphered";
    default:
        return ErrorName(nErrorFlags);
    }
}

std::string UnfinishedText(const FINDING& finding)
{
    const std::string last = finding.before ? "; the last whole one is " + MarkText(*finding.before) : "";
    if (finding.bOpenEnd)
        return fmt::format("{} that only a next frame would show to be whole{}", Counted(finding.nBytes, "byte"), last);
    if (finding.nAnnounced == 0)
        return fmt::format("the file ends inside the head of a frame, of which {} are there{}",
                           Counted(finding.nBytes, "byte"), last);
    return fmt::format("the file ends inside a frame: {} of {} bytes are there{}", finding.nBytes, finding.nAnnounced,
                       last);
}

std::string JumpText(const FINDING& finding)
{
    const CLOCK_MS nSize = finding.nJump < 0 ? -finding.nJump : finding.nJump;
    return fmt::format("the {} clock jumps {} by {}.{:03} s, from {} to {}", FrameTypeName(finding.after->nFrameType),
                       finding.nJump < 0 ? "back" : "ahead", nSize / 1000, nSize % 1000, TimeOr(finding.before->time),
                       TimeOr(finding.after->time));
}

} // namespace

std::string Counted(uint64_t nCount, std::string_view noun)
{
    return fmt::format("{} {}{}", nCount, noun, nCount == 1 ? "" : "s");
}

std::string LostFramesText(uint64_t nLost, int32_t nFrameType)
{
    return Counted(nLost, nFrameType == KX_FRAME_TYPE_UNKNOWN ? "frame" : FrameTypeName(nFrameType) + " frame");
}

std::string FindingText(const FINDING& finding)
{
    switch (finding.eKind) {
    case FINDING_KIND::LostFrames:
        return LostText(finding);
    case FINDING_KIND::DamagedFrame:
        return fmt::format("{}, {}: {}", MarkText(*finding.after), Counted(finding.nBytes, "byte"),
                           DamageText(finding.nErrorFlags));
    case FINDING_KIND::Stretch:
        return fmt::format("{} in no frame{}, {}", Counted(finding.nBytes, "byte"), ContentsText(finding.contents),
                           NeighboursText(finding));
    case FINDING_KIND::Blocks:
        if (finding.nBytes == gsk_endMarkSize)
            return fmt::format("{} that only end the frame in front", Counted(finding.nBytes, "byte"));
        return fmt::format("{} in blocks of another kind, {}", Counted(finding.nBytes, "byte"),
                           NeighboursText(finding));
    case FINDING_KIND::Unfinished:
        return UnfinishedText(finding);
    case FINDING_KIND::SequenceRestart:
        return fmt::format("the numbers of the {} frames step back from {} to {}, between {} and {}",
                           FrameTypeName(finding.after->nFrameType), finding.before->nSeq, finding.after->nSeq,
                           TimeOr(finding.before->time), TimeOr(finding.after->time));
    case FINDING_KIND::OutOfOrder:
        return fmt::format("{} comes late, behind number {}", MarkText(*finding.after), finding.before->nSeq);
    case FINDING_KIND::RepeatedNumber:
        return fmt::format("{} has the number of a frame in front of it", MarkText(*finding.after));
    case FINDING_KIND::NoPayloadSum:
        return fmt::format("{} has no payload sum, though most frames of its kind have one: a change inside it would "
                           "not show",
                           MarkText(*finding.after));
    case FINDING_KIND::NoKeyFrame:
        return StartText(finding);
    case FINDING_KIND::ClockJump:
        return JumpText(finding);
    case FINDING_KIND::Count:
        break;
    }
    return {};
}

} // namespace Marvane::FrameSift
