#include "Frames/FramesCommand.h"

#include <unistd.h>

#include <cstdint>
#include <limits>

#include "Frames/TypeOption.h"
#include "Io/ErrorOutput.h"
#include "Keys/KeyOption.h"

namespace Marvane::FrameSift {

namespace {

constexpr const char* sc_example =
    "Examples:\n"
    "  framesift frames --keys-only recording.zoav\n"
    "  framesift frames --key @camera.key recording.zoav\n"
    "  framesift frames --type 1 --type video camera.m4v\n"
    "  framesift frames --json - < recording.zoav | jq 'select(.error != null) | .offset'\n"
    "\n"
    "The listing goes to standard output, the summary to standard error. Times are those of the recording's own "
    "clock.\n"
    "FORMAT is what the payload of a key frame says, or else the heads, and the heads alone where the payload came "
    "enciphered;\n"
    "\"head WxH\" stands where a head says another size, \"coded WxH\" where the picture is cropped. CIPHER is "
    "\"enciphered\"\n"
    "where the payload still is. Nothing in a frame proves a key: with a wrong one the payloads come out as noise, "
    "marked\n"
    "\"deciphered\". A row with the error lost-frame is no frame: the numbers of the video frames jump there, and SEQ "
    "is "
    "the\n"
    "last one missing.\n"
    "The name of an older format stands in front of FORMAT: new, hb, zopt, audio (as long as there was no video), or\n"
    "raw-mpeg4. The OFFSET of a picture of hb is that of the block that completed it; it stands nowhere in one piece.\n"
    "JSON holds one object in each line, with the record's own fields under \"raw\"; in file names, bytes that are no\n"
    "printable UTF-8 stand as \\xNN and a backslash as \\\\. max_luminance and min_luminance count in 0.0001 cd/m2.\n"
    "Exit codes: 0 done, 2 wrong usage, 3 cannot read or write, 4 format not recognised.";

constexpr int32_t sc_maxChunk = 1 << 30; // the library counts in 31 bits

} // namespace

CFramesCommand::CFramesCommand(CLI::App& app)
    : m_pVerb(app.add_subcommand("frames", "List the frames of a recording or a stream"))
{
    m_pVerb->footer(sc_example);
    m_pVerb->add_option("FILE", m_options.path, "The stream; - is standard input")->required();
    m_pVerb->add_option("--chunk", m_options.nChunk, "Bytes fed at a time (default 1048576)")
        ->check(CLI::Range(1, sc_maxChunk));
    AddKeyOption(*m_pVerb, m_options.key);
    DeclareForm();
    DeclareFilter();
    DeclareLog();
}

void CFramesCommand::DeclareForm()
{
    auto* pJson = m_pVerb->add_flag_callback(
        "--json", [this] { m_options.eForm = LISTING_FORM::Json; }, "One JSON object in each line");
    auto* pCsv = m_pVerb->add_flag_callback(
        "--csv", [this] { m_options.eForm = LISTING_FORM::Csv; }, "Comma-separated, with a line of field names");
    pJson->excludes(pCsv);
}

void CFramesCommand::DeclareFilter()
{
    const std::map<std::string, int32_t> types = {{"unknown", KX_FRAME_TYPE_UNKNOWN},
                                                  {"video", KX_FRAME_TYPE_VIDEO},
                                                  {"audio", KX_FRAME_TYPE_AUDIO},
                                                  {"data", KX_FRAME_TYPE_DATA}};
    m_pVerb
        ->add_option_function<std::vector<std::string>>(
            "--type",
            [this, types](const std::vector<std::string>& names) {
                for (const std::string& name : names) {
                    if (IsTypeNumber(name)) {
                        FixType(ParseStreamType(name));
                        continue;
                    }
                    const auto found = types.find(name);
                    if (found == types.end())
                        throw CLI::ValidationError("--type", "knows no kind \"" + name + "\"");
                    m_options.filter.types.insert(found->second);
                }
            },
            "A name: only frames of this kind: video, audio, data, unknown; several with commas. A number: " +
                std::string(gsk_typeHelp))
        ->delimiter(',')
        ->allow_extra_args(false); // or it would take FILE too
    m_pVerb->add_flag("--keys-only", m_options.filter.bKeysOnly, "Only frames that a decoder can start from");
    m_pVerb->add_flag("--errors-only", m_options.filter.bErrorsOnly,
                      "Only damaged frames, and places where video frames were lost");
    m_pVerb
        ->add_option("--limit", m_options.nLimit,
                     "Stop after so many lines; the summary is then of what was read so far")
        ->check(CLI::Range(int64_t{1}, std::numeric_limits<int64_t>::max()));
}

void CFramesCommand::FixType(int32_t nType)
{
    if (m_options.nType != KX_STREAM_TYPE_UNKNOWN && m_options.nType != nType)
        throw CLI::ValidationError("--type", "a stream has one type only");
    m_options.nType = nType;
}

void CFramesCommand::DeclareLog()
{
    auto* pLog =
        m_pVerb->add_option("--log", m_logDirectory, "Append the library's log to SiftKit.log in this directory")
            ->check(CLI::ExistingDirectory)
            ->check([](const std::string& directory) {
                // The library stays silent about a log that it cannot open.
                return access(directory.c_str(), W_OK) == 0 ? std::string() : "no right to write in " + directory;
            });
    m_pVerb->add_option("--log-level", m_nLogLevel, "1 fatal to 7 hidden (default 3, warn)")
        ->check(CLI::Range(1, 7))
        ->needs(pLog);
}

EXIT_CODE CFramesCommand::Run()
{
    if (!m_logDirectory.empty())
        KX_CreatePrintLog(m_logDirectory.c_str(), static_cast<int32_t>(m_logDirectory.size()), nullptr, m_nLogLevel,
                          nullptr);
    try {
        WriteError(ListFrames(m_options));
    } catch (const CClosedPipe& closed) {
        WriteErrorLine(std::string(closed.what()) + "; stopped");
    }
    return EXIT_CODE::Done;
}

} // namespace Marvane::FrameSift
