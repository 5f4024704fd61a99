#include <fmt/format.h>

#include "Frames/CodeNames.h"
#include "Frames/FramePrinter.h"
#include "Frames/FrameText.h"

namespace Marvane::FrameSift {

namespace {

constexpr const char* sc_columns = "{:>12}  {:<7}  {:<10}  {:<7}  {:<23}  {:>7}  {:>7}  {:<20}  {:>8}  {:>8}  {}\n";

std::string OrDash(std::string text)
{
    return text.empty() ? "-" : std::move(text);
}

std::string FormatText(const FrameInfo& frame)
{
    if (frame.frameType == KX_FRAME_TYPE_VIDEO && frame.width > 0)
        return fmt::format("{}x{} {}/s", +frame.width, +frame.height, +frame.frameRate);
    if (frame.frameType == KX_FRAME_TYPE_AUDIO && frame.samplesPerSec > 0)
        return fmt::format("{} Hz {} ch {} bit", +frame.samplesPerSec, +frame.channels, +frame.bitsPerSample);
    return "-";
}

class CTextPrinter : public CFramePrinter
{
public:
    std::string Title() const override
    {
        return fmt::format(sc_columns, "OFFSET", "KIND", "SUBTYPE", "CODEC", "TIME", "STAMP", "SEQ", "FORMAT", "FRAME",
                           "PAYLOAD", "ERROR");
    }

    std::string Line(const LISTED_FRAME& listed) const override
    {
        const FrameInfo& frame = listed.frame;
        return fmt::format(sc_columns, listed.nFrameOffset, FrameTypeName(frame.frameType),
                           OrDash(SubTypeName(frame.frameType, frame.frameSubType)),
                           OrDash(CodecName(frame.frameType, frame.frameEncodeType)),
                           OrDash(TimeText(KX_TIME(frame.frameTime))), +frame.timeStamp,
                           static_cast<uint32_t>(frame.frameSeq), FormatText(frame), +frame.frameLen, +frame.streamLen,
                           OrDash(ErrorName(frame.errorFlags)));
    }
};

} // namespace

std::unique_ptr<CFramePrinter> MakeTextPrinter()
{
    return std::make_unique<CTextPrinter>();
}

} // namespace Marvane::FrameSift
