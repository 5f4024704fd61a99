#include "Seek/SeekCommand.h"

#include <fmt/format.h>

#include "Frames/CodeNames.h"
#include "Frames/FrameFilter.h"
#include "Frames/FramePrinter.h"
#include "Frames/ProgressBar.h"
#include "Frames/TypeOption.h"
#include "Io/Interrupt.h"
#include "Io/OutputSink.h"
#include "Keys/KeyOption.h"
#include "Recordings/RangeRead.h"

namespace Marvane::FrameSift {

namespace {

std::string Example()
{
    return "Examples:\n"
           "  framesift seek --time 2026-01-31T10:00:00 night.zoav\n"
           "  framesift seek --time 90.5 --precise night.zoav\n"
           "  framesift seek --offset 1048576 --json night.zoav | jq .offset\n"
           "\n"
           "Prints the frame that a reader gets first behind the seek, as \"framesift frames\" prints it.\n" +
           std::string(gsk_timeHelp) +
           "Found is the key frame at or before that place, since a decoder can start there (the first video frame if "
           "there is\n"
           "none; without video, the audio frame at T), or with --precise the last frame that is not behind T; of "
           "several at the same time the first one.\n"
           "--offset N finds the last key frame whose head, of 24 bytes, lies in front of N, and failing that goes on "
           "from N; with --precise it "
           "finds\n"
           "the first frame at or behind N. In the older formats it finds the last key frame that begins at or in "
           "front "
           "of N.\n"
           "Of these only new, new-ex and new-ex1 tell times, and hb cannot be sought at all.\n"
           "Exit codes: 0 done, 2 wrong usage, a place outside the recording too, 3 cannot read or write, 4 format "
           "not\n"
           "recognised or no frame found, 130 interrupted.";
}

// A range would write its numbers into the help.
std::string NotNegative(const std::string& text)
{
    return text.starts_with('-') ? text + " is negative" : std::string();
}

} // namespace

CSeekCommand::CSeekCommand(CLI::App& app)
    : m_pVerb(app.add_subcommand("seek", "Find the frame at a time or at an offset of a recording"))
{
    m_pVerb->footer(Example());
    m_pVerb->add_option("FILE", m_path, "The recording")->required();
    auto* pTime = AddTimeOption(*m_pVerb, "--time", m_time, "Go to this time, see below");
    auto* pOffset =
        m_pVerb->add_option("--offset", m_offset, "Go to this byte of the file")->type_name("N")->check(NotNegative);
    pTime->excludes(pOffset);
    m_pVerb->add_flag("--precise", m_bPrecise, "Find the frame itself and not a key frame in front of it");
    AddKeyOption(*m_pVerb, m_key);
    AddTypeOption(*m_pVerb, m_nType);
    m_pVerb->add_flag("--json", m_bJson, "The frame as a JSON object in one line");
}

EXIT_CODE CSeekCommand::Run()
{
    if (!m_time && !m_offset)
        throw CAppError(EXIT_CODE::Usage, "seek needs --time or --offset");
    const CInterruptWatch watch;
    CRecording recording(m_path, m_key, m_nType);
    if (m_time)
        GoToTime(recording);
    else
        GoToOffset(recording);
    Print(ReadFrame(recording));
    return EXIT_CODE::Done;
}

// A frame inherits what it does not tell from the key frame that was read last. So reading starts at a key frame in front
// of the frame in any case, lest it show another one's size or codec.
void CSeekCommand::GoToTime(CRecording& recording)
{
    const FOUND_RANGE found = FindRange(recording, {.from = m_time, .to = {}, .bMayReachOut = false});
    recording.Seek(found.start.nOffset, true);
    m_nWanted = m_bPrecise ? found.nFrame : found.start.nOffset;
}

void CSeekCommand::GoToOffset(CRecording& recording)
{
    const int64_t nStart = StartInFront(recording);
    if (static_cast<uint64_t>(*m_offset) > recording.Size())
        throw CAppError(EXIT_CODE::Usage, fmt::format("{} has no offset {}: it has {} bytes", recording.Name(),
                                                      *m_offset, recording.Size()));
    m_nWanted = m_bPrecise ? *m_offset : 0;
    // In the older formats the library finds no key frames, so that the pass has looked for them.
    if (!InnerFormatName(recording.StreamType(), recording.InnerType()).empty())
        recording.Seek(nStart, true);
    else
        recording.Seek(*m_offset, m_bPrecise && !IsKeyFrameInFront(recording));
}

// The last key frame that begins at or in front of the place; without one, the last frame that does; without any, the place.
int64_t CSeekCommand::StartInFront(CRecording& recording) const
{
    CProgressBar progress(recording.Size(), false);
    FRAME_FILTER keys;
    keys.bKeysOnly = true;
    std::optional<int64_t> key;
    int64_t nLast = *m_offset;
    recording.Index(
        [&](const LISTED_FRAME& listed, int64_t) {
            if (listed.nFrameOffset > *m_offset)
                return;
            nLast = listed.nFrameOffset;
            if (keys.Passes(listed.frame))
                key = nLast;
        },
        progress);
    return key.value_or(nLast);
}

bool CSeekCommand::IsKeyFrameInFront(CRecording& recording) const
{
    LISTED_FRAME listed;
    try {
        recording.Seek(*m_offset, false);
    } catch (const CAppError&) { // nothing at all behind the offset: the precise seek tells
        return false;
    }
    return recording.Read(listed) && listed.nFrameOffset < *m_offset;
}

LISTED_FRAME CSeekCommand::ReadFrame(CRecording& recording) const
{
    const CInterruptWatch watch;
    LISTED_FRAME listed;
    while (recording.Read(listed)) {
        if (IsWholeFrame(listed.frame) && listed.nFrameOffset >= m_nWanted)
            return listed;
        watch.ThrowIfAsked(); // a damaged stretch may be long
    }
    throw CAppError(EXIT_CODE::Format, recording.Name() + " has no frame behind this place");
}

void CSeekCommand::Print(const LISTED_FRAME& listed) const
{
    const auto printer = m_bJson ? MakeJsonPrinter(m_path) : MakeTextPrinter();
    COutputSink output("-");
    output.Write(printer->Title() + printer->Line(listed));
    output.Flush();
}

} // namespace Marvane::FrameSift
