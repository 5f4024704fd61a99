#include "Cut/CutCommand.h"

#include <fmt/format.h>

#include "Check/FindingText.h"
#include "Frames/TypeOption.h"
#include "Io/ErrorOutput.h"
#include "Io/Interrupt.h"

namespace Marvane::FrameSift {

namespace {

std::string Example()
{
    return "Examples:\n"
           "  framesift cut --from 2026-01-31T10:00:00 --to 2026-01-31T10:05:00 -o part.zoav night.zoav\n"
           "  framesift cut --to 90 -o - night.zoav | framesift check -\n"
           "\n"
           "Copies whole frames as they stand in the file: enciphered ones stay so, and sums stay true. The part "
           "begins\n"
           "with the key frame at or before --from (with the first video frame if there is none) and ends in front of "
           "the\n"
           "first frame behind --to; audio and data between these places come along. A part that reaches out of the\n"
           "recording ends with it. Damaged frames are copied as long as they are whole; bytes in no frame are left "
           "out.\n"
           "The bytes that are told at the end are all that were written; of an older format, the 4 that close it are "
           "among them.\n" +
           std::string(gsk_timeHelp) +
           "--to is looked for at or behind --from.\n"
           "Exit codes: 0 done, 2 wrong usage, a part outside the recording too, 3 cannot read or write, 4 format not\n"
           "recognised or no frame found, 130 interrupted; the output is incomplete then.";
}

} // namespace

CCutCommand::CCutCommand(CLI::App& app)
    : m_pVerb(app.add_subcommand("cut", "Copy a part of a recording into a recording of its own"))
{
    m_pVerb->footer(Example());
    m_pVerb->add_option("FILE", m_options.path, "The recording")->required();
    AddTimeOption(*m_pVerb, "--from", m_options.times.from,
                  "Where the part begins, see below (default: the beginning)");
    AddTimeOption(*m_pVerb, "--to", m_options.times.to, "Where it ends (default: the end)");
    AddTypeOption(*m_pVerb, m_options.nType);
    m_pVerb->add_option("-o,--output", m_options.outputPath, "The part; - is standard output")->required();
}

EXIT_CODE CCutCommand::Run()
{
    if (!m_options.times.from && !m_options.times.to)
        throw CAppError(EXIT_CODE::Usage, "cut needs --from, --to or both");
    const CInterruptWatch watch;
    const CUT_RESULT result = CutRecording(m_options);
    if (!result.note.empty())
        WriteErrorLine(result.note);
    if (result.nLeftOutBytes > 0)
        WriteErrorLine(
            fmt::format("{}: {} bytes belong to no frame and were left out", result.inputName, result.nLeftOutBytes));
    WriteError(fmt::format("{}: {} ({} key), {}, {}, {}\n", result.outputName, Counted(result.nVideo, "video frame"),
                           result.nKeys, Counted(result.nAudio, "audio frame"), Counted(result.nOther, "other frame"),
                           Counted(result.nBytes, "byte")));
    return EXIT_CODE::Done;
}

} // namespace Marvane::FrameSift
