#include "Command.h"

#include <CLI/CLI.hpp>
#include <csignal>
#include <functional>
#include <memory>
#include <sstream>
#include <vector>

#include "Check/CheckCommand.h"
#include "Cut/CutCommand.h"
#include "Extract/ExtractCommand.h"
#include "Frames/FramesCommand.h"
#include "Index/IndexCommand.h"
#include "Info/InfoCommand.h"
#include "Io/ErrorOutput.h"
#include "Io/OutputSink.h"
#include "Ivs/IvsCommand.h"
#include "Keys/UnexpectedText.h"
#include "Mux/MuxCommand.h"
#include "Seek/SeekCommand.h"
#include "framesift/framesift.h"

namespace Marvane::FrameSift {

namespace {

constexpr const char* sc_example = "Example:\n"
                                   "  framesift frames recording.zoav\n"
                                   "\n"
                                   "framesift VERB --help tells all of a verb.";

int Fail(EXIT_CODE eCode, std::string_view text)
{
    WriteErrorLine(text);
    return static_cast<int>(eCode);
}

struct VERB
{
    std::function<bool()> isChosen;
    std::function<EXIT_CODE()> run;
};

template <class COMMAND>
VERB Declare(CLI::App& app)
{
    auto pCommand = std::make_shared<COMMAND>(app);
    return {[pCommand] { return pCommand->IsChosen(); }, [pCommand] { return pCommand->Run(); }};
}

std::string VerbNames(const CLI::App& app)
{
    std::string names;
    for (const CLI::App* pVerb : app.get_subcommands(nullptr))
        names += (names.empty() ? "" : ", ") + pVerb->get_name();
    return names;
}

void Answer(const CLI::App& app, const CLI::Success& answer)
{
    std::ostringstream text;
    app.exit(answer, text, text);
    try {
        COutputSink output("-");
        output.Write(text.str());
        output.Flush();
    } catch (const CClosedPipe&) { // who has read enough of a help needs no message
    }
}

EXIT_CODE ParseAndRun(int nArguments, char** pArguments)
{
    CLI::App app("Takes the frames out of recordings and streams of video surveillance", "framesift");
    app.footer(sc_example);
    app.set_version_flag("--version", std::string("framesift ") + KX_GetVersion());
    app.require_subcommand(0, 1);
    const std::vector<VERB> verbs = {
        Declare<CFramesCommand>(app),  Declare<CMuxCommand>(app),   Declare<CCheckCommand>(app),
        Declare<CInfoCommand>(app),    Declare<CIndexCommand>(app), Declare<CSeekCommand>(app),
        Declare<CExtractCommand>(app), Declare<CCutCommand>(app),   Declare<CIvsCommand>(app)};
    try {
        app.parse(nArguments, pArguments);
    } catch (const CLI::Success& answer) { // --help and --version, which are no failure
        Answer(app, answer);
        return EXIT_CODE::Done;
    } catch (const CLI::ExtrasError&) { // whose own text shows the arguments, and one of them may be a key
        throw CAppError(EXIT_CODE::Usage, UnexpectedText(app.remaining(true)) + "; --help tells more");
    } catch (const CLI::ParseError& error) {
        throw CAppError(EXIT_CODE::Usage, std::string(error.what()) + "; --help tells more");
    }
    for (const VERB& verb : verbs) {
        if (verb.isChosen())
            return verb.run();
    }
    throw CAppError(EXIT_CODE::Usage, "name a verb: " + VerbNames(app) + "; --help tells more");
}

} // namespace

int RunCommand(int nArguments, char** pArguments)
{
    // A reader that goes away then shows as a failed write, which gets its line.
    std::signal(SIGPIPE, SIG_IGN);
    OccupyErrorOutput();
    try {
        return static_cast<int>(ParseAndRun(nArguments, pArguments));
    } catch (const CAppError& error) {
        return Fail(error.Code(), error.what());
    } catch (const std::bad_alloc&) {
        return Fail(EXIT_CODE::Io, "out of memory");
    } catch (const std::exception& error) {
        return Fail(EXIT_CODE::Io, error.what());
    }
}

} // namespace Marvane::FrameSift
