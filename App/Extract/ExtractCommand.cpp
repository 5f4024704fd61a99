#include "Extract/ExtractCommand.h"

#include <filesystem>
#include <set>

#include "Frames/TypeOption.h"
#include "Io/ErrorOutput.h"
#include "Io/Interrupt.h"
#include "Keys/KeyOption.h"
#include "Recordings/RangeRead.h"

namespace Marvane::FrameSift {

namespace {

std::string Example()
{
    return "Examples:\n"
           "  framesift extract --video night.h264 --audio night.aac night.zoav\n"
           "  framesift extract --video - --from 2026-01-31T10:00:00 --to 2026-01-31T10:05:00 night.zoav | "
           "gst-launch-1.0 \\\n"
           "      fdsrc ! h264parse ! matroskamux ! filesink location=night.mkv\n"
           "\n"
           "Writes the payloads byte for byte, one behind the other. The part begins with the key frame at or before\n"
           "--from (with the first video frame if there is none), audio and data at the same place, and ends in front "
           "of "
           "the\n"
           "first frame behind --to. A part that reaches out of the recording ends with it.\n"
           "Left out and told are damaged frames: all with an ERROR in \"framesift frames\" but time-stamp and\n"
           "subtype-unknown, which leave the payload whole. So are enciphered frames that no key opens; what a wrong "
           "key\n"
           "makes of a frame nobody can tell from a payload. A part in which the codec of the video, or of the audio "
           "if\n"
           "that is asked for, changes is refused. Nothing is added: a decoder may need parameter sets that a recorder "
           "has\n"
           "written only at its beginning.\n"
           "A recording of the older format hb is read as a stream, twice, and has no times; nor have zopt, audio "
           "alone "
           "and\n"
           "elementary MPEG-4.\n" +
           std::string(gsk_timeHelp) +
           "--to is looked for at or behind --from.\n"
           "Exit codes: 0 done, 2 wrong usage, a part outside the recording too, 3 cannot read or write, 4 format not\n"
           "recognised, a change of codec or no frame of a kind asked for, 130 interrupted; outputs are incomplete "
           "then.";
}

} // namespace

CExtractCommand::CExtractCommand(CLI::App& app)
    : m_pVerb(app.add_subcommand("extract", "Write the payloads of a recording as elementary streams"))
{
    m_pVerb->footer(Example());
    m_pVerb->add_option("FILE", m_options.path, "The recording")->required();
    m_pVerb->add_option("--video", m_options.videoPath, "Video stream; - is standard output")->type_name("OUT");
    m_pVerb->add_option("--audio", m_options.audioPath, "Audio stream; - is standard output")->type_name("OUT");
    m_pVerb->add_option("--data", m_options.dataPath, "Payloads of data frames, of all kinds; - is standard output")
        ->type_name("OUT");
    AddTimeOption(*m_pVerb, "--from", m_options.times.from,
                  "Where the part begins, see below (default: the beginning)");
    AddTimeOption(*m_pVerb, "--to", m_options.times.to, "Where it ends (default: the end)");
    AddKeyOption(*m_pVerb, m_options.key);
    AddTypeOption(*m_pVerb, m_options.nType);
}

void CExtractCommand::CheckOutputs() const
{
    std::set<std::filesystem::path> outputs;
    for (const auto* pPath : {&m_options.videoPath, &m_options.audioPath, &m_options.dataPath}) {
        if (pPath->empty())
            continue;
        RefuseToOverwriteInput(m_options.path, *pPath);
        std::error_code unknown; // a path that cannot be followed is compared as it stands
        const auto canonical = std::filesystem::weakly_canonical(std::filesystem::absolute(*pPath, unknown), unknown);
        if (!outputs.insert(unknown ? std::filesystem::path(*pPath) : canonical).second)
            throw CAppError(EXIT_CODE::Usage, "only one stream can go to " + *pPath);
    }
    if (outputs.empty())
        throw CAppError(EXIT_CODE::Usage, "extract needs --video, --audio or --data");
}

EXIT_CODE CExtractCommand::Run()
{
    CheckOutputs();
    const CInterruptWatch watch;
    CExtraction extraction(m_options);
    extraction.Run();
    for (const std::string& note : extraction.Notes())
        WriteErrorLine(note);
    if (!extraction.Summary().empty())
        WriteError(extraction.Summary() + "\n");
    if (const char* pMissing = extraction.MissingKind())
        throw CAppError(EXIT_CODE::Format, std::string("no ") + pMissing + " frame was found to be written");
    return EXIT_CODE::Done;
}

} // namespace Marvane::FrameSift
