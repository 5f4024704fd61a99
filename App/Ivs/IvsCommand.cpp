#include "Ivs/IvsCommand.h"

#include <charconv>
#include <limits>
#include <optional>

#include "Frames/CodeNames.h"
#include "Io/ErrorOutput.h"
#include "Io/EscapeBytes.h"
#include "Keys/KeyOption.h"

namespace Marvane::FrameSift {

namespace {

constexpr int32_t sc_maxChunk = 1 << 30; // the library counts in 31 bits
constexpr int sc_maxAs = 1 << 28; // any number; with none told the help would show several values behind one --as

constexpr const char* sc_example =
    "Examples:\n"
    "  framesift ivs night.zoav\n"
    "  framesift ivs --json night.zoav | jq -c '.records[].objects[]?'\n"
    "  framesift ivs --svg night.svg night.zoav\n"
    "  framesift ivs --raw track-ex payload.bin\n"
    "\n"
    "The listing goes to standard output, the summary to standard error: a heading line for each payload, then a\n"
    "line for each object, lane, region or drawing. JSON holds one object in each line, with all fields of the\n"
    "records by their names in the C headers. Times are those of the recording's own clock.\n"
    "The data frames of these subtypes are read, and so:\n";

constexpr const char* sc_notes =
    "A frame does not tell its format: for older cameras say --as intl=track. A payload that fails gives what\n"
    "stands in front of the damage, and does not stop the listing. Enciphered frames are not read without --key.\n"
    "Of one payload about 100000 records are shown, and how many are left out.\n"
    "The picture shows all of a recording at once: objects where they were last seen, their ways, lanes, regions,\n"
    "drawings and counts. The data does not tell its units: 8192 across and 8192 down the whole picture are\n"
    "assumed, x and y as the middle of an object, xSize and ySize as its width and height. Of long recordings it\n"
    "holds the newest objects and says what is left out. Ctrl-C ends the reading; the picture is written all the\n"
    "same.\n"
    "Exit codes: 0 done, 1 a payload failed, was damaged or stayed enciphered, 2 wrong usage, 3 cannot read or\n"
    "write, 4 format not recognised, 130 interrupted.";

std::string Example()
{
    std::string text = sc_example;
    for (const IVS_FORMAT_ROW& row : IvsFormats()) {
        if (row.bRead)
            text.append("  ").append(SubTypeName(KX_FRAME_TYPE_DATA, row.frameSubType)).append("=").append(row.name);
    }
    return text.append("\n").append(sc_notes);
}

template <class NUMBER>
std::optional<NUMBER> NumberOf(std::string_view text)
{
    NUMBER nValue = 0;
    const auto [pEnd, eError] = std::from_chars(text.data(), text.data() + text.size(), nValue);
    const bool bWhole = eError == std::errc() && pEnd == text.data() + text.size();
    return bWhole ? std::optional(nValue) : std::nullopt;
}

const IVS_FORMAT_ROW* FormatOf(const char* pOption, std::string_view name)
{
    const IVS_FORMAT_ROW* pFormat = FindIvsFormat(name);
    if (pFormat == nullptr)
        throw CLI::ValidationError(pOption, "\"" + EscapeBytes(name) + "\" is no format: " + IvsFormatNames());
    return pFormat;
}

// The subtype that the frames listing shows under this name.
int32_t SubTypeOf(std::string_view name)
{
    if (const auto number = NumberOf<int32_t>(name))
        return *number;
    for (int32_t nSubType = 1; nSubType <= KX_FRAME_SUB_TYPE_DATA_UNKOWN; ++nSubType) {
        if (SubTypeName(KX_FRAME_TYPE_DATA, nSubType) == name)
            return nSubType;
    }
    throw CLI::ValidationError("--as",
                               "\"" + EscapeBytes(name) +
                                   "\" is no subtype: give its number or the name that \"framesift frames\" shows");
}

void TakeAs(IVS_LISTING_OPTIONS& options, const std::string& text)
{
    const size_t nSign = text.find('=');
    if (nSign == std::string::npos)
        throw CLI::ValidationError("--as", "\"" + EscapeBytes(text) +
                                               "\" is not of the form SUBTYPE=FORMAT, such as intl=track");
    const std::string_view all = text;
    const IVS_FORMAT_ROW* pFormat = FormatOf("--as", all.substr(nSign + 1));
    if (!options.formats.emplace(SubTypeOf(all.substr(0, nSign)), pFormat).second)
        throw CLI::ValidationError("--as", "\"" + EscapeBytes(text) + "\" names a subtype for the second time");
}

void TakeUnits(IVS_UNITS& units, std::string_view text)
{
    constexpr uint32_t sc_most = 65536; // positions have 16 bits
    const size_t nSign = std::min(text.find('x'), text.size());
    const auto across = NumberOf<uint32_t>(text.substr(0, nSign));
    const auto down = NumberOf<uint32_t>(text.substr(std::min(nSign + 1, text.size())));
    const auto isGood = [](const std::optional<uint32_t>& number) {
        return number && *number >= 1 && *number <= sc_most;
    };
    if (!isGood(across) || !isGood(down))
        throw CLI::ValidationError("--units", "\"" + EscapeBytes(text) +
                                                  "\" is not of the form WxH, such as 1920x1080, each from 1 to 65536");
    units = {*across, *down, false};
}

} // namespace

CIvsCommand::CIvsCommand(CLI::App& app)
    : m_pVerb(app.add_subcommand("ivs", "List or draw the intelligent video metadata of a recording or a stream"))
{
    m_pVerb->footer(Example());
    m_pVerb->add_option("FILE", m_options.path, "The stream; - is standard input")->required();
    DeclareOutput();
    DeclareStream();
}

void CIvsCommand::DeclareOutput()
{
    auto* pJson = m_pVerb->add_flag("--json", m_options.bJson, "One JSON object in each line");
    auto* pSvg = m_pVerb
                     ->add_option("--svg", m_options.picturePath,
                                  "Write a picture of the whole recording instead of the listing; - is standard output")
                     ->type_name("OUT")
                     ->check([](const std::string& path) {
                         return path.empty() ? std::string("the name of the picture is empty") : std::string();
                     })
                     ->excludes(pJson);
    m_pVerb
        ->add_option_function<std::string>(
            "--units", [this](const std::string& text) { TakeUnits(m_options.units, text); },
            "Units across and down the picture (default 8192x8192)")
        ->type_name("WxH")
        ->needs(pSvg);
}

void CIvsCommand::DeclareStream()
{
    auto* pAs = m_pVerb
                    ->add_option_function<std::vector<std::string>>(
                        "--as",
                        [this](const std::vector<std::string>& texts) {
                            for (const std::string& text : texts)
                                TakeAs(m_options, text);
                        },
                        "How the data frames of a subtype are read; may be given several times")
                    ->type_name("SUBTYPE=FORMAT")
                    ->expected(1, sc_maxAs)
                    ->allow_extra_args(false); // or it would take FILE too
    auto* pKey = AddKeyOption(*m_pVerb, m_options.key);
    auto* pChunk = m_pVerb->add_option("--chunk", m_options.nChunk, "Bytes fed at a time (default 1048576)")
                       ->check(CLI::Range(1, sc_maxChunk));
    auto* pLimit = m_pVerb->add_option("--limit", m_options.nLimit, "Stop after so many payloads")
                       ->check(CLI::Range(int64_t{1}, std::numeric_limits<int64_t>::max()));
    auto* pRaw = m_pVerb
                     ->add_option_function<std::string>(
                         "--raw", [this](const std::string& name) { m_options.pRaw = FormatOf("--raw", name); },
                         "FILE is one payload of this format, without a frame, of at most 64 MiB: " + IvsFormatNames())
                     ->type_name("FORMAT");
    for (CLI::Option* pOther : {pAs, pKey, pChunk, pLimit})
        pRaw->excludes(pOther);
}

EXIT_CODE CIvsCommand::Run()
{
    try {
        const IVS_LISTING_RESULT result = ListIvs(m_options);
        WriteError(result.summary);
        for (const std::string& warning : result.warnings)
            WriteErrorLine(warning);
        if (result.bInterrupted)
            throw CAppError(EXIT_CODE::Interrupted, "interrupted: the picture is of what was read so far");
        return result.bSound ? EXIT_CODE::Done : EXIT_CODE::Damage;
    } catch (const CClosedPipe& closed) {
        WriteErrorLine(std::string(closed.what()) + "; stopped");
    }
    return EXIT_CODE::Done;
}

} // namespace Marvane::FrameSift
