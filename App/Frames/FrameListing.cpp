#include "Frames/FrameListing.h"

#include <vector>

#include "Frames/CodeNames.h"
#include "Frames/FramePrinter.h"
#include "Frames/FrameSource.h"
#include "Frames/FrameSummary.h"
#include "Frames/ProgressBar.h"
#include "Io/AppError.h"
#include "Io/InputFile.h"
#include "Io/OutputSink.h"

namespace Marvane::FrameSift {

namespace {

std::unique_ptr<CFramePrinter> MakePrinter(const LISTING_OPTIONS& options)
{
    switch (options.eForm) {
    case LISTING_FORM::Json:
        return MakeJsonPrinter(options.path);
    case LISTING_FORM::Csv:
        return MakeCsvPrinter();
    case LISTING_FORM::Text:
        break;
    }
    return MakeTextPrinter();
}

class CListing
{
public:
    explicit CListing(const LISTING_OPTIONS& options)
        : m_options(options),
          m_input(options.path),
          m_output("-"),
          m_printer(MakePrinter(options)),
          m_chunk(static_cast<size_t>(options.nChunk))
    {
        if (!options.key.empty())
            JudgeResult(m_source.SetKey(options.key));
    }

    std::string Run()
    {
        CProgressBar progress(m_input.Size(), m_output.IsTerminal());
        while (m_nLines < m_options.nLimit) {
            const size_t nRead = m_input.Read(m_chunk);
            if (nRead == 0)
                break;
            m_nBytes += nRead;
            JudgeResult(m_source.Feed(std::span(m_chunk).first(nRead)));
            PrintFrames();
            // Each chunk at once: a slow pipe has given all it has.
            m_output.Flush();
            progress.Update(m_nBytes);
        }
        if (m_source.StreamType() == KX_STREAM_TYPE_UNKNOWN)
            ThrowNotRecognised();
        WriteTitle(); // a table of no rows is still a table
        m_output.Flush();
        const bool bStopped = m_nLines >= m_options.nLimit;
        if (bStopped)
            return m_summary.Text(m_source.StreamType(), m_nBytes, std::nullopt);
        return m_summary.Text(m_source.StreamType(), m_nBytes, m_source.UnfinishedBytes());
    }

private:
    void PrintFrames()
    {
        LISTED_FRAME listed;
        while (m_source.Next(listed)) {
            m_summary.Count(listed);
            if (m_nLines >= m_options.nLimit || !m_options.filter.Passes(listed.frame))
                continue;
            WriteTitle();
            m_output.Write(m_printer->Line(listed));
            ++m_nLines;
        }
    }

    void WriteTitle()
    {
        if (m_nLines == 0)
            m_output.Write(m_printer->Title());
    }

    void JudgeResult(int nResult)
    {
        if (nResult == KX_SUCCESS || nResult == KX_ERROR_UNGET_STREAM_TYPE)
            return; // the latter asks for more bytes
        const int32_t nType = m_source.StreamType();
        if (nResult == KX_ERROR_STREAM_NOSUPPORT)
            throw CAppError(EXIT_CODE::Format, m_input.Name() + " is a stream of type " + StreamTypeName(nType) + " (" +
                                                   std::to_string(nType) + "), which is not supported");
        if (nResult == KX_ERROR_SYSTEM_OUT_OF_MEMORY)
            throw CAppError(EXIT_CODE::Io, "out of memory while reading " + m_input.Name());
        throw CAppError(EXIT_CODE::Io, "parsing " + m_input.Name() + " failed with code " + std::to_string(nResult));
    }

    [[noreturn]] void ThrowNotRecognised() const
    {
        if (m_nBytes == 0)
            throw CAppError(EXIT_CODE::Format, m_input.Name() + " is empty");
        throw CAppError(EXIT_CODE::Format,
                        m_input.Name() + ": no known stream format in " + std::to_string(m_nBytes) + " bytes");
    }

    const LISTING_OPTIONS& m_options;
    CInputFile m_input;
    COutputSink m_output;
    std::unique_ptr<CFramePrinter> m_printer;
    std::vector<uint8_t> m_chunk;
    CFrameSource m_source;
    CFrameSummary m_summary;
    uint64_t m_nBytes = 0;
    uint64_t m_nLines = 0;
};

} // namespace

std::string ListFrames(const LISTING_OPTIONS& options)
{
    return CListing(options).Run();
}

} // namespace Marvane::FrameSift
