#include "Check/CheckCommand.h"

#include "Check/ReportJson.h"
#include "Check/ReportText.h"
#include "Frames/TypeOption.h"
#include "Io/ErrorOutput.h"
#include "Keys/KeyOption.h"
#include <algorithm>

namespace Marvane::FrameSift {

namespace {

constexpr const char* sc_example =
    "Example:\n"
    "  framesift check recording.zoav\n"
    "  framesift check --json *.zoav | jq -r '.files[] | select(.verdict != \"clean\") | .file'\n"
    "\n"
    "A recording is damaged if frames are lost, if sums or watermarks do not match, if bytes belong to no frame, or "
    "if\n"
    "its end is cut off. All else that is told is worth a look and no damage.\n"
    "Lost are the frames whose numbers are left out: video frames, and audio frames if their numbers run by one "
    "around\n"
    "the gap. Nothing tells of frames that are missing behind the last one.\n"
    "The sum of a frame's head covers the 23 bytes of the head only: the extension heads have no sum of their own. A\n"
    "payload is proven by a payload sum, if the frame carries one. It is checked over the bytes of the file, with a "
    "key\n"
    "or without; with --key it is also tried whether enciphered frames decipher, and their watermarks are checked.\n"
    "Nothing proves a key: that no deciphered key frame begins like a picture tells of a wrong one.\n"
    "Times are those of the recording's own clock.\n"
    "The older formats have no sums and no numbers: only a frame whose end no other one vouches for shows as damage, "
    "and "
    "the\n"
    "last one is not whole unless the first bytes of another follow. hb cannot be checked.\n"
    "Exit codes: 0 clean, 1 damaged, 2 wrong usage, 3 cannot read or write, 4 no recording (an empty file is none);\n"
    "of several files the highest.";

// A range would write its numbers into the help.
std::string NotNegative(const std::string& text)
{
    return text.starts_with('-') ? text + " is negative" : std::string();
}

std::string WholeSeconds(const std::string& text)
{
    constexpr size_t sc_maxDigits = 9; // 31 years
    const bool bDigits = !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
    return bDigits && text.size() <= sc_maxDigits ? std::string()
                                                  : "\"" + text + "\" is not a number of whole seconds, such as 2";
}

// The texts of the system's own errors name the file.
std::string ErrorText(const CHECK_REPORT& report)
{
    return report.eCode == EXIT_CODE::Format ? report.name + ": " + report.error : report.error;
}

} // namespace

CCheckCommand::CCheckCommand(CLI::App& app)
    : m_pVerb(app.add_subcommand("check", "Tell whether recordings are complete and undamaged, and where not"))
{
    m_pVerb->footer(sc_example);
    m_pVerb->add_option("FILE", m_paths, "The recordings; - is standard input")->required();
    m_pVerb->add_flag("--json", m_bJson, "One JSON object for all files");
    AddKeyOption(*m_pVerb, m_options.key);
    AddTypeOption(*m_pVerb, m_options.nType);
    m_pVerb
        ->add_option("--max-findings", m_maxFindings,
                     "List so many findings of each kind and file (default 20, with --json 1000); the totals count all")
        ->type_name("N")
        ->check(NotNegative);
    DeclareClock();
}

void CCheckCommand::DeclareClock()
{
    const auto declare = [this](const char* pName, CLOCK_MS& nLimit, const char* pHelp) {
        m_pVerb
            ->add_option_function<uint32_t>(
                pName, [&nLimit](uint32_t nSeconds) { nLimit = CLOCK_MS{nSeconds} * 1000; }, pHelp)
            ->type_name("SECONDS")
            ->check(WholeSeconds);
    };
    declare(
        "--clock-back", m_options.clock.nBack,
        "Call it a clock jump if time steps back by more than this from one video frame, or one audio frame, to the "
        "next; whole seconds (default 1)");
    declare("--clock-ahead", m_options.clock.nAhead, "The same for steps ahead; whole seconds (default 10)");
}

EXIT_CODE CCheckCommand::Run()
{
    constexpr uint64_t sc_listedInText = 20; // on one screen
    constexpr uint64_t sc_listedInJson = 1000;
    m_options.nMaxFindings = m_maxFindings.value_or(m_bJson ? sc_listedInJson : sc_listedInText);
    COutputSink output("-");
    EXIT_CODE eWorst = EXIT_CODE::Done;
    bool bFirst = true;
    if (m_bJson)
        output.Write(JsonTitle());
    for (const std::string& path : m_paths) {
        const CHECK_REPORT report = CheckFile(path, m_options);
        if (!report.error.empty())
            WriteErrorLine(ErrorText(report));
        output.Write(m_bJson ? JsonEntry(report, bFirst) : ReportText(report));
        output.Flush(); // many large files take long
        eWorst = std::max(eWorst, report.eCode);
        bFirst = false;
    }
    if (m_bJson)
        output.Write(JsonEnd(eWorst));
    output.Flush();
    return eWorst;
}

} // namespace Marvane::FrameSift
