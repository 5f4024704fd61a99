#include "Index/IndexListing.h"

#include <fmt/format.h>

#include "Frames/FramePrinter.h"
#include "Frames/ProgressBar.h"
#include "Io/AppError.h"
#include "Io/OutputSink.h"
#include "Recordings/Recording.h"
#include "Recordings/RegularFile.h"

namespace Marvane::FrameSift {

namespace {

void ExpectAnotherFile(const INDEX_OPTIONS& options)
{
    if (options.output != "-" && CRegularFile(options.path).IsSameFile(options.output))
        throw CAppError(EXIT_CODE::Usage, "the recording and the output are the same file");
}

// The lines of frames, with the number in front.
class CIndexPrinter
{
public:
    explicit CIndexPrinter(const INDEX_OPTIONS& options)
        : m_bJson(options.bJson), m_printer(options.bJson ? MakeJsonPrinter(options.path) : MakeCsvPrinter())
    {}

    std::string Title() const { return m_bJson ? m_printer->Title() : fmt::format("index,{}", m_printer->Title()); }

    std::string Line(const LISTED_FRAME& listed, int64_t nIndex) const
    {
        const std::string line = m_printer->Line(listed);
        if (!m_bJson)
            return fmt::format("{},{}", nIndex, line);
        return fmt::format("{{\"index\":{},{}", nIndex, std::string_view(line).substr(1)); // behind its "{"
    }

private:
    bool m_bJson;
    std::unique_ptr<CFramePrinter> m_printer;
};

} // namespace

void ListIndex(const INDEX_OPTIONS& options)
{
    ExpectAnotherFile(options);
    CRecording recording(options.path, options.key, options.nType); // first: no output without an input
    COutputSink output(options.output);
    const CIndexPrinter printer(options);
    CProgressBar progress(recording.Size(), output.IsTerminal());
    output.Write(printer.Title());
    try {
        recording.Index(
            [&](const LISTED_FRAME& listed, int64_t nIndex) {
                if (options.filter.Passes(listed.frame))
                    output.Write(printer.Line(listed, nIndex));
            },
            progress);
    } catch (const CClosedPipe&) {
        throw;
    } catch (...) {
        output.Flush();
        throw;
    }
    output.Close();
}

} // namespace Marvane::FrameSift
