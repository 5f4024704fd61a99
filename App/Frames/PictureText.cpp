#include "Frames/PictureText.h"

#include <fmt/format.h>

#include "Frames/CodeNames.h"
#include "Frames/FrameState.h"

namespace Marvane::FrameSift {

namespace {

constexpr double sc_luminanceUnit = 0.0001; // cd/m2, as the coded stream counts

std::string SizeText(const LISTED_FRAME& listed)
{
    const FrameInfo& frame = listed.parsed;
    const bool bKnown = frame.width > 0 && frame.height > 0;
    const bool bAnnounced = listed.nAnnouncedWidth > 0 && listed.nAnnouncedHeight > 0;
    const bool bAgree = listed.nAnnouncedWidth == frame.width && listed.nAnnouncedHeight == frame.height;
    std::string text = bKnown ? fmt::format("{}x{}", +frame.width, +frame.height) : "";
    if (bAnnounced && !bAgree)
        text += fmt::format("{}(head {}x{})", bKnown ? " " : "no key frame yet ", listed.nAnnouncedWidth,
                            listed.nAnnouncedHeight);
    return text;
}

std::string CodedSizeText(const FrameInfo& frame)
{
    const bool bTold = frame.cropBeforeWidth > 0 && frame.cropBeforeHeight > 0;
    const bool bSame = frame.cropBeforeWidth == frame.width && frame.cropBeforeHeight == frame.height;
    return !bTold || bSame ? "" : fmt::format(", coded {}x{}", +frame.cropBeforeWidth, +frame.cropBeforeHeight);
}

std::string InterlaceText(const LISTED_FRAME& listed)
{
    const int32_t nDeinterlace = listed.parsed.deinterlace;
    if (nDeinterlace == KX_DEINTERLACE_SINGLE)
        return ", interlaced, one field";
    return nDeinterlace == KX_DEINTERLACE_PAIR && IsInterlaceTold(listed) ? ", interlaced" : "";
}

std::string ColourText(const FrameInfo& frame)
{
    const auto orDash = [](const std::string& name) { return name.empty() ? "-" : name; };
    std::string text;
    if (frame.nVideoBitDepth > 8)
        text += fmt::format(", {} bit", +frame.nVideoBitDepth);
    if (frame.nColorPrimaries != 0 || frame.nColorTransfer != 0 || frame.nColorSpace != 0)
        text +=
            fmt::format(", {}/{}/{}", orDash(ColourPrimariesName(frame.nColorPrimaries)),
                        orDash(ColourTransferName(frame.nColorTransfer)), orDash(ColourMatrixName(frame.nColorSpace)));
    if (frame.nMaxLuminance != 0)
        text += fmt::format(", mastered for {:g} to {:g} cd/m2", frame.nMinLuminance * sc_luminanceUnit,
                            frame.nMaxLuminance * sc_luminanceUnit);
    if (frame.nMaxContentLightLevel != 0)
        text += fmt::format(", light at most {}, on average {} cd/m2", +frame.nMaxContentLightLevel,
                            +frame.nMaxFrameAverageLightLevel);
    return text;
}

} // namespace

std::string PictureText(const LISTED_FRAME& listed)
{
    const FrameInfo& frame = listed.parsed;
    std::string text = SizeText(listed);
    if (text.empty())
        return text;
    if (frame.frameRate > 0)
        text += fmt::format(" {}/s", +frame.frameRate);
    if (IsIFrameSubType(frame.frameSubType)) // the frames behind it inherit all this
        text += CodedSizeText(frame) + InterlaceText(listed) + ColourText(frame);
    return text;
}

} // namespace Marvane::FrameSift
