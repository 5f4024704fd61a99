#include "Check/FileCheck.h"

#include <algorithm>
#include <new>
#include <optional>

#include "Check/ByteTail.h"
#include "Check/FrameAccount.h"
#include "Check/Sha256.h"
#include "Check/TailScan.h"
#include "Frames/CodeNames.h"
#include "Frames/FrameSource.h"
#include "Frames/ProgressBar.h"
#include "Frames/WhyNoFrames.h"
#include "Io/EscapeBytes.h"
#include "Io/InputFile.h"

namespace Marvane::FrameSift {

namespace {

// A magic that two chunks share is found with the second one, and may turn out to wait.
constexpr uint64_t sc_leastTail = 4;

bool IsZoavFamily(int32_t nStreamType)
{
    return nStreamType == KX_STREAM_TYPE_ZOSTD || nStreamType == KX_STREAM_TYPE_STD_MY ||
           nStreamType == KX_STREAM_TYPE_STD_LX || nStreamType == KX_STREAM_TYPE_STD_WM;
}

class CFileCheck
{
public:
    CFileCheck(const CHECK_OPTIONS& options, CHECK_REPORT& report)
        : m_report(report),
          m_account(report, options),
          m_chunk(options.nChunk),
          m_source(options.nType),
          m_bFixedType(options.nType != KX_STREAM_TYPE_UNKNOWN)
    {}

    void ReadAll(CInputFile& input)
    {
        CProgressBar progress(input.Size(), false);
        // Whole chunks, so that a pipe that gives its bytes in crumbs is read like a file.
        while (const size_t nRead = input.ReadAtLeast(m_chunk, m_chunk.size())) {
            const auto chunk = std::span(m_chunk).first(nRead);
            m_sha256.Update(chunk);
            m_report.nBytes += nRead;
            TakeChunk(chunk);
            progress.Update(m_report.nBytes);
        }
        Judge(m_source.Flush());
        TakeRecords();
        m_report.sha256 = m_sha256.TakeHex();
    }

    // At the end of the file, or where it could be read no further.
    void Finish()
    {
        m_report.nStreamType = m_source.StreamType();
        m_report.nInnerType = m_source.InnerType();
        const std::string whyNoRecording = WhyNoRecording();
        if (whyNoRecording.empty()) {
            ScanTail();
            m_account.Finish();
        } else {
            m_report.nOutsideBytes = m_report.nBytes - m_report.nGoodBytes - m_report.nDamagedBytes;
        }
        if (m_report.BytesInParts() != m_report.nBytes)
            throw std::logic_error("the parts of " + m_report.name + " do not add up to its size");
        if (!m_report.error.empty())
            return;
        m_report.error = whyNoRecording;
        if (!whyNoRecording.empty())
            m_report.eCode = EXIT_CODE::Format;
        else if (m_report.findings.HasDamage() || m_report.GoodFrames() == 0)
            m_report.eCode = EXIT_CODE::Damage;
    }

private:
    void TakeChunk(std::span<uint8_t> chunk)
    {
        m_start.Take(chunk);
        Judge(m_source.Feed(chunk));
        TakeRecords();
        if (m_block && BlockEnd() <= m_report.nBytes)
            TakeBlock();
        m_tail.Keep(chunk, std::max(m_report.nBytes - OpenFrom(), sc_leastTail));
    }

    void Judge(int nResult)
    {
        if (nResult == KX_ERROR_SYSTEM_OUT_OF_MEMORY)
            throw std::bad_alloc();
        m_bSupported = m_bSupported && nResult != KX_ERROR_STREAM_NOSUPPORT;
    }

    void TakeRecords()
    {
        for (LISTED_FRAME listed; m_source.Next(listed);) {
            m_bAnyFrame = true;
            // Frames that are put together from blocks stand nowhere, and their lengths account for no bytes.
            if (listed.nInnerType != KX_STREAM_TYPE_HB)
                TakeRecord(listed.parsed, listed.nFrameOffset);
        }
    }

    // A block is stepped over before it has come whole. It counts when it has: until then it is as good as unfinished.
    void TakeRecord(const FrameInfo& frame, int64_t nOffset)
    {
        if (m_block)
            TakeBlock();
        if (IsBlock(frame))
            m_block = {frame, nOffset};
        else
            m_account.Take(frame, nOffset);
    }

    void TakeBlock()
    {
        m_account.Take(m_block->frame, m_block->nOffset);
        m_block.reset();
    }

    uint64_t BlockEnd() const
    {
        return static_cast<uint64_t>(m_block->nOffset) + static_cast<uint64_t>(m_block->frame.frameLen);
    }

    // From here on the parser waits, or has promised bytes that have not come.
    uint64_t OpenFrom()
    {
        const uint64_t nWaits = m_report.nBytes - m_source.UnfinishedBytes();
        return m_block ? std::min(nWaits, static_cast<uint64_t>(m_block->nOffset)) : nWaits;
    }

    void ScanTail()
    {
        if (m_report.nBytes == 0)
            return;
        if (!IsZoavFamily(m_report.nStreamType)) {
            if (const uint64_t nTail = m_source.UnfinishedBytes())
                m_account.TakeOldTail(static_cast<int64_t>(m_report.nBytes - nTail), nTail);
            return;
        }
        const uint64_t nLeast = m_report.nBytes - std::min(m_report.nBytes, sc_leastTail);
        const uint64_t nFrom = std::max(std::min(OpenFrom(), nLeast), static_cast<uint64_t>(m_account.End()));
        CTailScan().Scan(m_tail.TakeLast(m_report.nBytes - nFrom), static_cast<int64_t>(nFrom), m_account);
    }

    std::string WhyNoRecording() const
    {
        if (m_report.nBytes == 0)
            return "it is empty";
        if (m_report.nStreamType == KX_STREAM_TYPE_UNKNOWN)
            return m_start.NoFormatText(m_report.nBytes);
        if (!m_bSupported)
            return "it is a stream of type " + StreamTypeName(m_report.nStreamType) + " (" +
                   std::to_string(m_report.nStreamType) + "), which is not supported";
        if (m_source.InnerType() == KX_STREAM_TYPE_HB)
            return "it is a recording of hb, whose pictures are put together from blocks: nothing accounts for its "
                   "bytes; "
                   "\"framesift info\" tells what is in it";
        if (!m_bAnyFrame && NeedsFrame(m_report.nStreamType, m_bFixedType))
            return NoFrameText(m_report.nStreamType, m_report.nBytes);
        return {};
    }

    struct OPEN_BLOCK
    {
        FrameInfo frame;
        int64_t nOffset;
    };

    CHECK_REPORT& m_report;
    CFrameAccount m_account;
    std::vector<uint8_t> m_chunk;
    CFrameSource m_source; // has no key: sums are of the bytes as they stand
    bool m_bFixedType;
    CInputStart m_start;
    CSha256 m_sha256;
    CByteTail m_tail;
    std::optional<OPEN_BLOCK> m_block;
    bool m_bAnyFrame = false;
    bool m_bSupported = true;
};

void ReadAndJudge(const std::string& path, const CHECK_OPTIONS& options, CHECK_REPORT& report)
{
    CInputFile input(path);
    CFileCheck check(options, report);
    try {
        check.ReadAll(input);
    } catch (const CAppError& error) { // a failing disk; what it gave is worth a report all the same
        report.error = error.what();
        report.eCode = error.Code();
    }
    check.Finish();
}

// Without what was found: it stops somewhere, so nobody could rely on it.
CHECK_REPORT FailedReport(const CHECK_REPORT& report, const std::string& error, EXIT_CODE eCode)
{
    CHECK_REPORT failed(0);
    failed.name = report.name;
    failed.error = error;
    failed.eCode = eCode;
    return failed;
}

} // namespace

CHECK_REPORT CheckFile(const std::string& path, const CHECK_OPTIONS& options)
{
    CHECK_REPORT report(options.nMaxFindings);
    report.name = path == "-" ? "standard input" : EscapeBytes(path);
    try {
        ReadAndJudge(path, options, report);
        return report;
    } catch (const CAppError& error) {
        return FailedReport(report, error.what(), error.Code());
    } catch (const std::bad_alloc&) {
        return FailedReport(report, "out of memory while checking " + report.name, EXIT_CODE::Io);
    } catch (const std::exception& error) {
        return FailedReport(report, error.what(), EXIT_CODE::Io);
    }
}

} // namespace Marvane::FrameSift
