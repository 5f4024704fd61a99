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

// Of a cipher that --key does not open, the name.
std::string CipherText(const FrameInfo& parsed)
{
    std::string text = CipherStateText(parsed);
    if (CipherStateOf(parsed) == CIPHER_STATE::Enciphered && parsed.nEncryptType != KX_ENCRYPT_AES)
        text.append(" ").append(CipherName(parsed.nEncryptType));
    return OrDash(text);
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
                           OrDash(CodecText(frame)), OrDash(TimeText(KX_TIME(frame.frameTime))), +frame.timeStamp,
                           static_cast<uint32_t>(frame.frameSeq), +frame.frameLen, +frame.streamLen,
                           CipherText(listed.parsed), OrDash(ErrorName(frame.errorFlags)), FormatText(listed));
    }
};

} // namespace

std::unique_ptr<CFramePrinter> MakeTextPrinter()
{
    return std::make_unique<CTextPrinter>();
}

} // namespace Marvane::FrameSift
