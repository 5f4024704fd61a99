#include "Index/IndexCommand.h"

#include "Frames/TypeOption.h"
#include "Io/ErrorOutput.h"
#include "Io/OutputSink.h"
#include "Keys/KeyOption.h"

namespace Marvane::FrameSift {

namespace {

constexpr const char* sc_example =
    "Examples:\n"
    "  framesift index recording.zoav -o recording.csv\n"
    "  framesift index --keys-only --json recording.zoav | jq '[.index, .offset, .time]'\n"
    "\n"
    "Each line holds the frame's number in the index, from 0, and then the fields of \"framesift frames\"; JSON holds "
    "one\n"
    "object in each line. In the index are the frames that a recording can be read and sought by: good ones, and those "
    "with\n"
    "the errors payload-sum, watermark and decryption. What is damaged worse is left out, as are places of lost "
    "frames:\n"
    "\"framesift frames\" lists those. Smart frames stand under their own subtypes.\n"
    "A recording of the older format hb has no index.\n"
    "Lines are written while the recording is read; those written stay if it fails or is interrupted.\n"
    "Exit codes: 0 done, 2 wrong usage, 3 cannot read or write, 4 format not recognised, 130 interrupted.";

} // namespace

CIndexCommand::CIndexCommand(CLI::App& app)
    : m_pVerb(app.add_subcommand("index", "Write the index of a recording: where each frame stands"))
{
    m_pVerb->footer(sc_example);
    m_pVerb->add_option("FILE", m_options.path, "The recording; a file, no pipe")->required();
    m_pVerb->add_option("-o,--output", m_options.output, "Where to write (default -, standard output)");
    auto* pJson = m_pVerb->add_flag("--json", m_options.bJson, "One JSON object in each line");
    m_pVerb
        ->add_flag_callback(
            "--csv", [this] { m_options.bJson = false; }, "Comma-separated, with a line of field names (the default)")
        ->excludes(pJson);
    m_pVerb->add_flag("--keys-only", m_options.filter.bKeysOnly, "Only frames that a decoder can start from");
    m_pVerb->add_flag("--errors-only", m_options.filter.bErrorsOnly, "Only damaged frames");
    AddKeyOption(*m_pVerb, m_options.key);
    AddTypeOption(*m_pVerb, m_options.nType);
}

EXIT_CODE CIndexCommand::Run()
{
    try {
        ListIndex(m_options);
    } catch (const CClosedPipe& closed) {
        WriteErrorLine(std::string(closed.what()) + "; stopped");
    }
    return EXIT_CODE::Done;
}

} // namespace Marvane::FrameSift
