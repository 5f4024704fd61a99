#include "Command.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <csignal>
#include <cstdio>

#include "Frames/FramesCommand.h"
#include "Mux/MuxCommand.h"
#include "framesift/framesift.h"

namespace Marvane::FrameSift {

namespace {

constexpr const char* sc_example = "Example:\n"
                                   "  framesift frames recording.zoav\n"
                                   "\n"
                                   "framesift VERB --help tells all of a verb.";

int Fail(EXIT_CODE eCode, const std::string& text)
{
    fmt::print(stderr, "framesift: {}\n", text);
    return static_cast<int>(eCode);
}

EXIT_CODE ParseAndRun(int nArguments, char** pArguments)
{
    CLI::App app("Takes the frames out of recordings and streams of video surveillance", "framesift");
    app.footer(sc_example);
    app.set_version_flag("--version", std::string("framesift ") + KX_GetVersion());
    app.require_subcommand(0, 1);
    CFramesCommand frames(app);
    CMuxCommand mux(app);
    try {
        app.parse(nArguments, pArguments);
    } catch (const CLI::Success& answer) { // --help and --version, which are no failure
        app.exit(answer);
        return EXIT_CODE::Done;
    } catch (const CLI::ParseError& error) {
        throw CAppError(EXIT_CODE::Usage, std::string(error.what()) + "; --help tells more");
    }
    if (app.get_subcommands().empty())
        throw CAppError(EXIT_CODE::Usage, "name a verb, frames or mux; --help tells more");
    return frames.IsChosen() ? frames.Run() : mux.Run();
}

} // namespace

int RunCommand(int nArguments, char** pArguments)
{
    // A reader that goes away then shows as a failed write, which gets its line.
    std::signal(SIGPIPE, SIG_IGN);
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
