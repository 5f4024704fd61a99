#include "Ivs/IvsListing.h"

#include <unistd.h>

#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <optional>
#include <set>

#include "Frames/CodeNames.h"
#include "Frames/FrameReading.h"
#include "Frames/FrameState.h"
#include "Frames/FrameSummary.h"
#include "Io/AppError.h"
#include "Io/EscapeBytes.h"
#include "Io/Interrupt.h"
#include "Io/OutputSink.h"
#include "Ivs/IvsListingSummary.h"
#include "Ivs/IvsPrinter.h"
#include "Ivs/Picture/IvsScene.h"
#include "Recordings/RangeRead.h"

namespace Marvane::FrameSift {

namespace {

constexpr size_t sc_maxRawPayload = size_t{64} << 20; // far beyond what a frame holds

// Whether the picture could be written, told before a long input is read. What stands there stays untouched until the
// picture is ready: the input may yet turn out to be none.
void RequireWritable(const std::string& path)
{
    if (path == "-")
        return;
    const std::string parent = std::filesystem::path(path).parent_path().string();
    const bool bThere = access(path.c_str(), F_OK) == 0;
    const std::string written = bThere ? path : parent.empty() ? "." : parent;
    std::error_code noMatter;
    int nError = access(written.c_str(), W_OK) == 0 ? 0 : errno;
    if (bThere && std::filesystem::is_directory(path, noMatter))
        nError = EISDIR;
    if (nError != 0)
        throw CAppError(EXIT_CODE::Io, "cannot create " + EscapeBytes(path) + ": " + std::strerror(nError));
}

// A listing or a picture.
class CIvsOutput
{
public:
    explicit CIvsOutput(const IVS_LISTING_OPTIONS& options) : m_options(options)
    {
        if (!IsPicture())
            m_printer = options.bJson ? MakeIvsJsonPrinter(options.path) : MakeIvsTextPrinter();
    }

    bool IsPicture() const { return !m_options.picturePath.empty(); }

    void Open(const CInputFile& input)
    {
        if (!IsPicture()) {
            m_sink.emplace("-");
            return;
        }
        if (input.IsSameFile(m_options.picturePath))
            throw CAppError(EXIT_CODE::Usage, "the picture would overwrite " + input.Name());
        RequireWritable(m_options.picturePath);
    }

    void TakePictureSize(const FrameInfo& frame) { m_scene.TakePictureSize(frame.width, frame.height); }

    void Show(const IVS_FRAME& frame)
    {
        if (IsPicture())
            m_scene.BeginFrame(frame);
        IVS_OUTCOME outcome;
        uint64_t nKept = 0;
        outcome.result = DecodeIvs(frame, [&](KX_IVS_PARSE_TYPE eType, const void* pRecords, int nLen) {
            const IVS_COUNT count = CountIvsRecords(eType, pRecords, nLen);
            m_summary.CountRecords(count);
            if (nKept >= gsk_maxIvsRecords)
                outcome.nLeftOut += count.nCount;
            else if (IsPicture())
                m_scene.Take(eType, pRecords, nLen);
            else
                m_printer->Take(eType, pRecords, nLen);
            nKept += count.nCount + count.nParts;
        });
        m_summary.CountPayload(frame, outcome);
        if (IsPicture())
            m_scene.EndFrame(frame, outcome);
        else
            m_sink->Write(m_printer->Finish(frame, outcome));
    }

    void Flush()
    {
        if (m_sink)
            m_sink->Flush();
    }

    IVS_LISTING_RESULT Finish(const IVS_STREAM_ACCOUNT& account)
    {
        if (IsPicture()) {
            const std::string name = m_options.path == "-" ? "standard input" : m_options.path;
            const std::string svg = IvsSvg(m_scene.Scene(), m_options.units, name);
            m_sink.emplace(m_options.picturePath);
            m_sink->Write(svg);
        }
        m_sink->Flush();
        m_sink->Close();
        return {m_summary.Text(account), {}, m_summary.IsSound(), false};
    }

    CIvsSummary& Summary() { return m_summary; }

private:
    const IVS_LISTING_OPTIONS& m_options;
    std::optional<COutputSink> m_sink;
    std::unique_ptr<CIvsPrinter> m_printer; // not for a picture
    CIvsSceneMaker m_scene;
    CIvsSummary m_summary;
};

IVS_FRAME_HEAD HeadOf(const LISTED_FRAME& listed)
{
    const FrameInfo& frame = listed.frame;
    IVS_FRAME_HEAD head;
    head.nOffset = listed.nFrameOffset;
    head.time = KX_TIME(frame.frameTime);
    head.nSeq = static_cast<uint32_t>(frame.frameSeq);
    head.nSubType = frame.frameSubType;
    head.damage = ErrorName(frame.errorFlags);
    if (CipherStateOf(listed.parsed) == CIPHER_STATE::Enciphered)
        head.cipher = CipherName(listed.parsed.nEncryptType);
    return head;
}

class CIvsStream
{
public:
    explicit CIvsStream(const IVS_LISTING_OPTIONS& options)
        : m_options(options),
          m_output(options),
          m_reading(options.path, options.nChunk, options.key, IsOutputOnTerminal(options))
    {
        m_output.Open(m_reading.Input());
    }

    IVS_LISTING_RESULT Run()
    {
        // A picture of a stream that does not end by itself is worth having; a listing stands there already.
        std::optional<CInterruptWatch> watch;
        if (m_output.IsPicture())
            watch.emplace();
        const auto isStopped = [&] { return watch && watch->IsAsked(); };
        while (!IsAtLimit() && !isStopped() && m_reading.ReadChunk()) {
            TakeFrames();
            m_output.Flush();
            m_reading.ShowProgress();
        }
        m_reading.RequireFormat();
        const bool bAtEnd = !IsAtLimit() && !isStopped();
        IVS_LISTING_RESULT result = m_output.Finish(Account(bAtEnd));
        if (bAtEnd)
            result.warnings = Warnings();
        result.bInterrupted = isStopped();
        return result;
    }

private:
    static bool IsOutputOnTerminal(const IVS_LISTING_OPTIONS& options)
    {
        return (options.picturePath.empty() || options.picturePath == "-") && isatty(STDOUT_FILENO) == 1;
    }

    bool IsAtLimit() { return m_output.Summary().Payloads() >= m_options.nLimit; }

    // What stands in no frame is known at the end only.
    IVS_STREAM_ACCOUNT Account(bool bAtEnd)
    {
        IVS_STREAM_ACCOUNT account;
        account.nDamagedFrames = m_frames.DamagedFrames();
        if (bAtEnd) {
            account.nUnfinished = m_reading.UnfinishedBytes();
            account.nOutside = m_frames.OutsideBytes(m_reading.Bytes(), account.nUnfinished);
        }
        return account;
    }

    std::vector<std::string> Warnings() const
    {
        std::vector<std::string> warnings;
        for (const auto& [nSubType, pFormat] : m_options.formats) {
            if (m_subTypes.count(nSubType) == 0)
                warnings.push_back(fmt::format("no data frame of subtype {}: --as {}={} had no effect", nSubType,
                                               SubTypeName(KX_FRAME_TYPE_DATA, nSubType), pFormat->name));
        }
        return warnings;
    }

    void TakeFrames()
    {
        LISTED_FRAME listed;
        while (m_reading.Next(listed) && !IsAtLimit()) {
            m_frames.Count(listed);
            const FrameInfo& frame = listed.frame;
            if (frame.frameType == KX_FRAME_TYPE_VIDEO && frame.errorFlags == KX_ERROR_FLAGS_NOERROR)
                m_output.TakePictureSize(frame);
            if (frame.frameType == KX_FRAME_TYPE_DATA)
                TakeData(listed);
        }
    }

    void TakeData(const LISTED_FRAME& listed)
    {
        m_subTypes.insert(int32_t{listed.frame.frameSubType});
        IVS_FRAME frame;
        frame.pFormat = FormatOfSubType(m_options, listed.frame.frameSubType);
        if (frame.pFormat == nullptr)
            return m_output.Summary().CountOtherData(listed.frame.frameSubType);
        frame.payload = PayloadOf(listed.frame);
        frame.head = HeadOf(listed);
        m_output.Show(frame);
    }

    const IVS_LISTING_OPTIONS& m_options;
    CIvsOutput m_output;
    CFrameReading m_reading;
    CFrameSummary m_frames;
    std::set<int32_t> m_subTypes; // of the data frames
};

std::vector<uint8_t> ReadRaw(CInputFile& input)
{
    std::vector<uint8_t> bytes(size_t{1} << 20);
    size_t nBytes = 0;
    while (const size_t nRead = input.Read(std::span(bytes).subspan(nBytes))) {
        nBytes += nRead;
        if (nBytes > sc_maxRawPayload)
            throw CAppError(EXIT_CODE::Format, input.Name() + " is longer than 64 MiB, and no payload is");
        if (nBytes == bytes.size())
            bytes.resize(2 * nBytes);
    }
    if (nBytes == 0)
        throw CAppError(EXIT_CODE::Format, input.Name() + " is empty");
    bytes.resize(nBytes);
    return bytes;
}

IVS_LISTING_RESULT ListRaw(const IVS_LISTING_OPTIONS& options)
{
    CInputFile input(options.path);
    CIvsOutput output(options);
    output.Open(input);
    const std::vector<uint8_t> bytes = ReadRaw(input);
    output.Show({options.pRaw, bytes, std::nullopt});
    return output.Finish({});
}

} // namespace

const IVS_FORMAT_ROW* FormatOfSubType(const IVS_LISTING_OPTIONS& options, int32_t nSubType)
{
    const auto found = options.formats.find(nSubType);
    return found == options.formats.end() ? IvsFormatOfSubType(nSubType) : found->second;
}

IVS_LISTING_RESULT ListIvs(const IVS_LISTING_OPTIONS& options)
{
    return options.pRaw == nullptr ? CIvsStream(options).Run() : ListRaw(options);
}

} // namespace Marvane::FrameSift
