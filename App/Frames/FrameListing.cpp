#include "Frames/FrameListing.h"

#include "Frames/FramePrinter.h"
#include "Frames/FrameReading.h"
#include "Frames/FrameSummary.h"
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
          m_output("-"),
          m_reading(options.path, options.nChunk, options.key, m_output.IsTerminal(), options.nType),
          m_printer(MakePrinter(options))
    {}

    std::string Run()
    {
        while (m_nLines < m_options.nLimit && m_reading.ReadChunk()) {
            PrintFrames();
            // Each chunk at once: a slow pipe has given all it has.
            m_output.Flush();
            m_reading.ShowProgress();
        }
        m_reading.RequireFormat();
        WriteTitle(); // a table of no rows is still a table
        m_output.Flush();
        const bool bStopped = m_nLines >= m_options.nLimit;
        if (bStopped)
            return m_summary.Text(m_reading.StreamType(), m_reading.Bytes(), std::nullopt);
        return m_summary.Text(m_reading.StreamType(), m_reading.Bytes(), m_reading.UnfinishedBytes());
    }

private:
    void PrintFrames()
    {
        LISTED_FRAME listed;
        while (m_reading.Next(listed)) {
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

    const LISTING_OPTIONS& m_options;
    COutputSink m_output;
    CFrameReading m_reading;
    std::unique_ptr<CFramePrinter> m_printer;
    CFrameSummary m_summary;
    uint64_t m_nLines = 0;
};

} // namespace

std::string ListFrames(const LISTING_OPTIONS& options)
{
    return CListing(options).Run();
}

} // namespace Marvane::FrameSift
