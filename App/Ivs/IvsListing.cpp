#include "Ivs/IvsListing.h"

#include <unistd.h>

#include <fmt/format.h>

#include <optional>

#include "Frames/CodeNames.h"
#include "Frames/FrameReading.h"
#include "Frames/FrameState.h"
#include "Io/AppError.h"
#include "Io/Interrupt.h"
#include "Io/OutputSink.h"
#include "Ivs/IvsListingSummary.h"
#include "Ivs/IvsPrinter.h"
#include "Ivs/Picture/IvsScene.h"
#include "Recordings/RangeRead.h"

namespace Marvane::FrameSift {

namespace {

constexpr size_t sc_maxRawPayload = size_t{64} << 20; // far beyond what a frame holds

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

    // Before a long input is read, lest it turns out at its end that nothing can be written.
    void Open(const CInputFile& input)
    {
        if (IsPicture() && input.IsSameFile(m_options.picturePath))
            throw CAppError(EXIT_CODE::Usage, "the picture would overwrite " + input.Name());
        m_sink.emplace(IsPicture() ? m_options.picturePath : "-");
    }

    void TakePictureSize(const FrameInfo& frame) { m_scene.TakePictureSize(frame.width, frame.height); }

    void Show(const IVS_FRAME& frame)
    {
        if (IsPicture())
            m_scene.BeginFrame(frame);
        const auto result = DecodeIvs(frame, [&](KX_IVS_PARSE_TYPE eType, const void* pRecords, int nLen) {
            m_summary.CountRecords(CountIvsRecords(eType, pRecords, nLen));
            if (IsPicture())
                m_scene.Take(eType, pRecords, nLen);
            else
                m_printer->Take(eType, pRecords, nLen);
        });
        m_summary.CountPayload(frame, IvsErrorText(frame, result));
        if (!IsPicture())
            m_sink->Write(m_printer->Finish(frame, result));
    }

    void Flush() { m_sink->Flush(); }

    IVS_LISTING_RESULT Finish(uint64_t nUnfinished)
    {
        if (IsPicture())
            m_sink->Write(
                IvsSvg(m_scene.Scene(), m_options.units, m_options.path == "-" ? "standard input" : m_options.path));
        m_sink->Flush();
        m_sink->Close();
        return {m_summary.Text(nUnfinished), m_summary.IsSound(), false};
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
        IVS_LISTING_RESULT result = m_output.Finish(bAtEnd ? m_reading.UnfinishedBytes() : 0);
        result.bInterrupted = isStopped();
        return result;
    }

private:
    static bool IsOutputOnTerminal(const IVS_LISTING_OPTIONS& options)
    {
        return (options.picturePath.empty() || options.picturePath == "-") && isatty(STDOUT_FILENO) == 1;
    }

    bool IsAtLimit() { return m_output.Summary().Payloads() >= m_options.nLimit; }

    void TakeFrames()
    {
        LISTED_FRAME listed;
        while (m_reading.Next(listed) && !IsAtLimit()) {
            const FrameInfo& frame = listed.frame;
            if (frame.frameType == KX_FRAME_TYPE_VIDEO && frame.errorFlags == KX_ERROR_FLAGS_NOERROR)
                m_output.TakePictureSize(frame);
            if (frame.frameType == KX_FRAME_TYPE_DATA)
                TakeData(listed);
        }
    }

    void TakeData(const LISTED_FRAME& listed)
    {
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
    return output.Finish(0);
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
