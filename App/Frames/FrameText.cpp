#include "Frames/FrameText.h"

#include <fmt/format.h>

#include "FrameWriter/RecordingClock.h"
#include "Frames/CodeNames.h"

namespace Marvane::FrameSift {

std::string TimeText(const KX_TIME& time)
{
    if (!IsCalendarTime(time))
        return {};
    return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}.{:03}", time.nYear, time.nMonth, time.nDay, time.nHour,
                       time.nMinute, time.nSecond, time.nMilliSecond);
}

std::string TimeOrHourText(const KX_TIME& time)
{
    const bool bDated = time.nYear != 0 || time.nMonth != 0 || time.nDay != 0;
    KX_TIME dated = time;
    dated.nMonth = 1;
    dated.nDay = 1;
    // Midnight is what a record holds that has not been told anything.
    const bool bTold = time.nHour != 0 || time.nMinute != 0 || time.nSecond != 0;
    if (bDated || !bTold || !IsCalendarTime(dated))
        return TimeText(time);
    return fmt::format("{:02}:{:02}:{:02}", time.nHour, time.nMinute, time.nSecond);
}

std::string SubTypeText(const FrameInfo& frame)
{
    return IsLostFrame(frame) ? std::string() : SubTypeName(frame.frameType, frame.frameSubType);
}

std::string CodecText(const FrameInfo& frame)
{
    return IsLostFrame(frame) ? std::string() : CodecName(frame.frameType, frame.frameEncodeType);
}

std::string CipherStateText(const FrameInfo& parsed)
{
    switch (CipherStateOf(parsed)) {
    case CIPHER_STATE::Enciphered:
        return "enciphered";
    case CIPHER_STATE::Deciphered:
        return "deciphered";
    case CIPHER_STATE::Clear:
        break;
    }
    return {};
}

std::string CountsText(const std::map<int32_t, uint64_t>& counts, std::string (*pfnName)(int32_t nCode))
{
    std::string text;
    for (const auto& [nCode, nCount] : counts)
        text += fmt::format("{}{} {}", text.empty() ? "" : ", ", nCount, pfnName(nCode));
    return text;
}

} // namespace Marvane::FrameSift
