#include "Cut/Cutter.h"

#include <algorithm>
#include <vector>

#include "FrameWriter/LegacyFrameWriter.h"
#include "Io/AppError.h"
#include "Io/OutputSink.h"
#include "Recordings/RangeRead.h"

namespace Marvane::FrameSift {

namespace {

constexpr size_t sc_block = size_t{1024} * 1024;

void CountFrame(const FrameInfo& frame, CUT_RESULT& result)
{
    if (frame.frameType == KX_FRAME_TYPE_VIDEO) {
        ++result.nVideo;
        result.nKeys += IsIFrameSubType(frame.frameSubType) ? 1 : 0;
    } else if (frame.frameType == KX_FRAME_TYPE_AUDIO) {
        ++result.nAudio;
    } else {
        ++result.nOther;
    }
}

// Copies from the file and not from the parser's window, where a frame may have been changed.
class CFileCopy
{
public:
    CFileCopy(const CRecording& recording, COutputSink& output)
        : m_recording(recording), m_output(output), m_block(sc_block)
    {}

    void Copy(uint64_t nOffset, uint64_t nLength)
    {
        while (nLength > 0) {
            const auto part = std::span(m_block).first(std::min<uint64_t>(nLength, m_block.size()));
            if (m_recording.ReadBytes(nOffset, part) < part.size())
                throw CAppError(EXIT_CODE::Io, m_recording.Name() + " became shorter while it was read");
            m_output.Write(part);
            nOffset += part.size();
            nLength -= part.size();
        }
    }

private:
    const CRecording& m_recording;
    COutputSink& m_output;
    std::vector<uint8_t> m_block;
};

void CopyRange(CRecording& recording, const FOUND_RANGE& range, COutputSink& output, CUT_RESULT& result)
{
    CFileCopy copy(recording, output);
    int64_t nEnd = range.start.nOffset; // of the last frame
    ReadRange(recording, range, [&](const LISTED_FRAME& listed) {
        if (!IsWholeFrame(listed.frame))
            return;
        const auto nLength = static_cast<uint64_t>(listed.frame.frameLen);
        copy.Copy(static_cast<uint64_t>(listed.nFrameOffset), nLength);
        CountFrame(listed.frame, result);
        result.nBytes += nLength;
        nEnd = listed.nFrameOffset + listed.frame.frameLen;
    });
    const int64_t nPart = std::max(nEnd, range.nEnd) - range.start.nOffset;
    result.nLeftOutBytes = static_cast<uint64_t>(nPart) - result.nBytes;
    if (recording.StreamType() == KX_STREAM_TYPE_OLD) { // where only the next frame ends one
        const Bytes mark = LegacyEndMark();
        output.Write(mark);
        result.nBytes += mark.size();
        if (IsEndMark(recording, static_cast<uint64_t>(nEnd)))
            result.nLeftOutBytes = 0;
    }
    output.Close();
}

} // namespace

CUT_RESULT CutRecording(const CUT_OPTIONS& options)
{
    RefuseToOverwriteInput(options.path, options.outputPath);
    CRecording recording(options.path, {}, options.nType);
    const FOUND_RANGE range = FindRange(recording, options.times);
    COutputSink output(options.outputPath); // not before the part is known to exist: a file may stand there
    CUT_RESULT result;
    result.inputName = recording.Name();
    result.outputName = output.Name();
    result.note = range.note;
    try {
        CopyRange(recording, range, output, result);
    } catch (const CAppError& error) {
        throw CAppError(error.Code(), std::string(error.what()) + "; " + output.Name() + " is incomplete: it has " +
                                          std::to_string(output.WrittenBytes()) + " bytes");
    }
    return result;
}

} // namespace Marvane::FrameSift
