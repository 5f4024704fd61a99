#include "Info/InfoCommand.h"

#include <algorithm>
#include <new>

#include "Frames/TypeOption.h"
#include "Info/FileInfo.h"
#include "Info/InfoJson.h"
#include "Info/InfoText.h"
#include "Io/ErrorOutput.h"
#include "Io/EscapeBytes.h"
#include "Io/Interrupt.h"
#include "Keys/KeyOption.h"

namespace Marvane::FrameSift {

namespace {

constexpr const char* sc_example =
    "Examples:\n"
    "  framesift info recording.zoav\n"
    "  framesift info --json *.zoav | jq -r '[.file, .time.earliest, .time.duration_ms] | @tsv'\n"
    "\n"
    "A recording is read to its end, once. Times are those of the recording's own clock; the duration runs from the "
    "earliest\n"
    "good frame to the latest, clock jumps included, and bit rates are payload over this duration. The typical "
    "distance "
    "of\n"
    "key frames is the median. Formats are what key frames and audio frames say.\n"
    "Gaps and damage are counted as \"framesift check\" does, which tells where they are and what they are: bytes in "
    "no "
    "frame\n"
    "may be blocks of another kind, which are no damage. It also is the judge: info ends with 0 for a damaged "
    "recording.\n"
    "A recording of the older format hb is read as a stream, and nothing is told of its gaps and damage.\n"
    "JSON holds one object in each line, also for a file that failed.\n"
    "Exit codes: 0 done, 2 wrong usage, 3 cannot read or write, 4 no recording (an empty file is none), of several "
    "files "
    "the\n"
    "highest; 130 interrupted.";

} // namespace

CInfoCommand::CInfoCommand(CLI::App& app) : m_pVerb(app.add_subcommand("info", "Tell what is in recordings"))
{
    m_pVerb->footer(sc_example);
    m_pVerb->add_option("FILE", m_paths, "The recordings; files, no pipes")->required();
    m_pVerb->add_flag("--json", m_bJson, "One JSON object in each line, one for each file");
    AddKeyOption(*m_pVerb, m_key);
    AddTypeOption(*m_pVerb, m_nType);
}

EXIT_CODE CInfoCommand::Run()
{
    const CInterruptWatch watch;
    COutputSink output("-");
    EXIT_CODE eWorst = EXIT_CODE::Done;
    for (const std::string& path : m_paths) {
        watch.ThrowIfAsked();
        eWorst = std::max(eWorst, TellAbout(path, output));
        output.Flush(); // many large files take long
    }
    return eWorst;
}

EXIT_CODE CInfoCommand::TellAbout(const std::string& path, COutputSink& output) const
{
    try {
        const INFO_REPORT report = InfoOf(path, m_key, m_nType);
        output.Write(m_bJson ? InfoJson(report) : InfoText(report));
        return EXIT_CODE::Done;
    } catch (const CAppError& error) {
        if (error.Code() == EXIT_CODE::Interrupted)
            throw;
        return TellFailure(path, error.Code(), error.what(), output);
    } catch (const std::bad_alloc&) {
        return TellFailure(path, EXIT_CODE::Io, "out of memory while reading " + EscapeBytes(path), output);
    }
}

EXIT_CODE CInfoCommand::TellFailure(const std::string& path, EXIT_CODE eCode, const std::string& error,
                                    COutputSink& output) const
{
    WriteErrorLine(error);
    if (m_bJson)
        output.Write(FailureJson(EscapeBytes(path), eCode, error));
    return eCode;
}

} // namespace Marvane::FrameSift
