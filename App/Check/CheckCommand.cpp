#include "Check/CheckCommand.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>

#include "Check/ReportJson.h"
#include "Check/ReportText.h"
#include "Keys/KeyOption.h"

namespace Marvane::FrameSift {

namespace {

constexpr const char* sc_example =
    "Example:\n"
    "  framesift check recording.zoav\n"
    "  framesift check --json *.zoav | jq -r '.files[] | select(.verdict != \"clean\") | .file'\n"
    "\n"
    "A recording is damaged if frames are lost (the numbers of its video frames leave some out), if sums or "
    "watermarks\n"
    "do not match, if bytes belong to no frame, or if its end is cut off. Clock jumps, frame numbers that step back "
    "and\n"
    "enciphered frames are told, but are no damage. Nothing in a recording tells of frames that are missing behind "
    "the\n"
    "last one, or of a changed payload without a sum. Without the key, the payload sums of enciphered frames are "
    "checked\n"
    "and their watermarks are not; with it, the other way round. Times are those of the recording's own clock.\n"
    "Exit codes: 0 clean, 1 damaged, 2 wrong usage, 3 cannot read or write, 4 no recording (an empty file is none);\n"
    "of several files the highest.";

// A range would write its numbers into the help.
std::string NotNegative(const std::string& text)
{
    return text.starts_with('-') ? text + " is negative" : std::string();
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
    m_pVerb
        ->add_option("--max-findings", m_options.nMaxFindings,
                     "List so many findings of each kind and file (default 1000); the totals count all")
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
            ->check(NotNegative);
    };
    declare(
        "--clock-back", m_options.clock.nBack,
        "Call it a clock jump if time steps back by more than this from one video frame, or one audio frame, to the "
        "next (default 1)");
    declare("--clock-ahead", m_options.clock.nAhead, "The same for steps ahead (default 10)");
}

EXIT_CODE CCheckCommand::Run()
{
    COutputSink output("-");
    EXIT_CODE eWorst = EXIT_CODE::Done;
    bool bFirst = true;
    if (m_bJson)
        output.Write(JsonTitle());
    for (const std::string& path : m_paths) {
        const CHECK_REPORT report = CheckFile(path, m_options);
        if (!report.error.empty())
            fmt::print(stderr, "framesift: {}\n", ErrorText(report));
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
