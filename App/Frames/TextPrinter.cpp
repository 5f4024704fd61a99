#include <fmt/format.h>

#include "Frames/CodeNames.h"
#include "Frames/FramePrinter.h"
#include "Frames/FrameState.h"
#include "Frames/FrameText.h"
#include "Frames/PictureText.h"

namespace Marvane::FrameSift {

namespace {

constexpr const char* sc_columns =
    "{:>12}  {:<7}  {:<10}  {:<7}  {:<23}  {:>7}  {:>7}  {:>8}  {:>8}  {:<10}  {:<11}  {}\n";

std::string OrDash(std::string text)
{
    return text.empty() ? "-" : std::move(text);
}

// What the frame itself says.
std::string FormatText(const LISTED_FRAME& listed)
{
    const FrameInfo& frame = listed.frame;
    if (IsLostFrame(frame))
        return "SEQ of video jumps here";
    if (frame.frameType == KX_FRAME_TYPE_VIDEO)
        return OrDash(PictureText(listed));
    if (frame.frameType == KX_FRAME_TYPE_AUDIO && frame.samplesPerSec > 0)
        return fmt::format("{} Hz {} ch {} bit", +frame.samplesPerSec, +frame.channels, +frame.bitsPerSample);
    return "-";
}

// Which of the older formats the stream is stands in front: it is found out as it goes.
std::string WithInnerFormat(const LISTED_FRAME& listed)
{
    const std::string inner = InnerFormatName(listed.nStreamType, listed.nInnerType);
    return inner.empty() ? FormatText(listed) : fmt::format("{}: {}", inner, FormatText(listed));
}

// Of a cipher that --key does not open, the name.
std::string CipherText(const FrameInfo& parsed)
{
    std::string text = CipherStateText(parsed);
    if (CipherStateOf(parsed) == CIPHER_STATE::Enciphered && parsed.nEncryptType != KX_ENCRYPT_AES)
        text.append(" ").append(CipherName(parsed.nEncryptType));
    return OrDash(text);
}

std::string NumberText(const LISTED_FRAME& listed)
{
    return listed.bNumbered ? fmt::format("{}", static_cast<uint32_t>(listed.frame.frameSeq)) : "-";
}

std::string PayloadText(const LISTED_FRAME& listed)
{
    return IsPayloadLost(listed) ? "-" : fmt::format("{}", +listed.frame.streamLen);
}

class CTextPrinter : public CFramePrinter
{
public:
    std::string Title() const override
    {
        return fmt::format(sc_columns, "OFFSET", "KIND", "SUBTYPE", "CODEC", "TIME", "STAMP", "SEQ", "FRAME", "PAYLOAD",
                           "CIPHER", "ERROR", "FORMAT");
    }

    std::string Line(const LISTED_FRAME& listed) const override
    {
        const FrameInfo& frame = listed.frame;
        return fmt::format(sc_columns, listed.nFrameOffset, FrameTypeName(frame.frameType), OrDash(SubTypeText(frame)),
                           OrDash(CodecText(frame)), OrDash(TimeOrHourText(KX_TIME(frame.frameTime))), +frame.timeStamp,
                           NumberText(listed), +frame.frameLen, PayloadText(listed), CipherText(listed.parsed),
                           OrDash(ErrorName(frame.errorFlags)), WithInnerFormat(listed));
    }
};

} // namespace

std::unique_ptr<CFramePrinter> MakeTextPrinter()
{
    return std::make_unique<CTextPrinter>();
}

} // namespace Marvane::FrameSift
