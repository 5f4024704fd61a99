#include "Recordings/RangeRead.h"

#include <algorithm>

#include "FrameWriter/LegacyFrameWriter.h"
#include "Frames/FrameState.h"
#include "Frames/ProgressBar.h"
#include "Io/AppError.h"
#include "Io/Interrupt.h"
#include "Recordings/RegularFile.h"

namespace Marvane::FrameSift {

bool IsWholeFrame(const FrameInfo& frame)
{
    constexpr int32_t nMagicSize = 4; // as long as a head or tail is that is not believed
    return frame.frameLen > nMagicSize && frame.errorFlags != KX_ERROR_FLAGS_LOST_HEADER && !IsLostFrame(frame);
}

std::span<const uint8_t> PayloadOf(const FrameInfo& frame)
{
    if (frame.framePointer == nullptr || frame.streamPointer == nullptr || frame.frameLen <= 0)
        return {};
    const int64_t nInFrame = frame.frameLen - (frame.streamPointer - frame.framePointer);
    const int64_t nLength = std::min<int64_t>(frame.streamLen, nInFrame);
    if (nLength <= 0 || nInFrame > frame.frameLen)
        return {};
    return {frame.streamPointer, static_cast<size_t>(nLength)};
}

FOUND_RANGE FindRange(CRecording& recording, const TIME_RANGE& times)
{
    CTimeSearch search(times);
    CProgressBar progress(recording.Size(), false);
    recording.Index([&search](const LISTED_FRAME& listed, int64_t) { search.Take(listed); }, progress);
    FOUND_RANGE range = search.Result(recording.Name());
    range.nEnd = std::min(range.nEnd, static_cast<int64_t>(recording.Size())); // it may grow while it is read
    return range;
}

bool IsEndMark(const CRecording& recording, uint64_t nOffset)
{
    const Bytes mark = LegacyEndMark();
    if (recording.StreamType() != KX_STREAM_TYPE_OLD || recording.Size() != nOffset + mark.size())
        return false;
    Bytes tail(mark.size());
    return recording.ReadBytes(nOffset, tail) == tail.size() && tail == mark;
}

uint64_t ReadRange(CRecording& recording, const FOUND_RANGE& range,
                   const std::function<void(const LISTED_FRAME&)>& take)
{
    const CInterruptWatch watch;
    const int64_t nBegin = range.start.nOffset;
    CProgressBar progress(static_cast<uint64_t>(range.nEnd - nBegin), false);
    recording.Seek(nBegin, true);
    uint64_t nEnd = 0; // of the last record
    for (LISTED_FRAME listed; recording.Read(listed);) {
        if (listed.nFrameOffset >= range.nEnd)
            return 0;
        watch.ThrowIfAsked();
        take(listed);
        nEnd = static_cast<uint64_t>(listed.nFrameOffset + std::max(int32_t{listed.frame.frameLen}, 0));
        progress.Update(static_cast<uint64_t>(listed.nFrameOffset - nBegin));
    }
    return IsEndMark(recording, nEnd) ? 0 : recording.Size() - std::min(nEnd, recording.Size());
}

void RefuseToOverwriteInput(const std::string& inputPath, const std::string& outputPath)
{
    const CRegularFile input(inputPath);
    if (outputPath != "-" && input.IsSameFile(outputPath))
        throw CAppError(EXIT_CODE::Usage, input.Name() + " is the input and the output too");
}

} // namespace Marvane::FrameSift
