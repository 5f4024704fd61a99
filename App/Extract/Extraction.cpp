#include "Extract/Extraction.h"

#include <fmt/format.h>

#include "Frames/CodeNames.h"
#include "Frames/FrameReading.h"
#include "Frames/FrameState.h"
#include "Frames/FrameText.h"
#include "Io/AppError.h"
#include "Io/EscapeBytes.h"
#include "Io/Interrupt.h"
#include "Recordings/RangeRead.h"

namespace Marvane::FrameSift {

namespace {

constexpr int32_t sc_cipherBlock = 16;

// What may be used although the record has a code: a time or a subtype in doubt is no damage of the payload. A frame that
// does not decipher is whole, but noise.
bool IsPayloadSound(int32_t nErrorFlags)
{
    return nErrorFlags == KX_ERROR_FLAGS_NOERROR || nErrorFlags == KX_ERROR_FLAGS_TIMESTAND ||
           nErrorFlags == KX_ERROR_FLAGS_SUBTYPE_UNKNOWN;
}

// Less than a block of AES is announced as enciphered, and stands there plain.
bool IsNoise(const FrameInfo& parsed)
{
    const bool bNoBlock =
        parsed.nEncryptType == KX_ENCRYPT_AES && parsed.nEncryptLen >= 0 && parsed.nEncryptLen < sc_cipherBlock;
    return CipherStateOf(parsed) == CIPHER_STATE::Enciphered && !bNoBlock;
}

} // namespace

CExtraction::CExtraction(const EXTRACT_OPTIONS& options)
    : m_options(options),
      m_outputs{{{KX_FRAME_TYPE_VIDEO, "video", options.videoPath, {}},
                 {KX_FRAME_TYPE_AUDIO, "audio", options.audioPath, {}},
                 {KX_FRAME_TYPE_DATA, "data", options.dataPath, {}}}}
{}

void CExtraction::Run()
{
    try {
        RunIndexed();
    } catch (const CNoIndex&) {
        RunAsStream();
    }
}

void CExtraction::RunIndexed()
{
    CRecording recording(m_options.path, m_options.key, m_options.nType);
    m_name = recording.Name();
    const FOUND_RANGE range = FindRange(recording, m_options.times);
    m_note = range.note;
    RefuseChangeOfCodec(range);
    WriteAll([&] {
        m_nUnread =
            ReadRange(recording, range, [this](const LISTED_FRAME& listed) { Take(listed.frame, listed.parsed); });
    });
}

// What cannot be read at a place has no places, nor times to find one by: it is the whole, or an error.
void CExtraction::RunAsStream()
{
    m_name = EscapeBytes(m_options.path);
    CTimeSearch search(m_options.times);
    ReadStream([&search](const LISTED_FRAME& listed) { search.Take(listed); });
    RefuseChangeOfCodec(search.Result(m_name));
    WriteAll([this] { ReadStream([this](const LISTED_FRAME& listed) { Take(listed.frame, listed.parsed); }); });
}

void CExtraction::ReadStream(const std::function<void(const LISTED_FRAME&)>& take)
{
    constexpr int32_t sc_chunk = 1024 * 1024;
    const CInterruptWatch watch;
    CFrameReading reading(m_options.path, sc_chunk, m_options.key, false, m_options.nType);
    while (reading.ReadChunk()) {
        watch.ThrowIfAsked();
        for (LISTED_FRAME listed; reading.Next(listed);)
            take(listed);
        reading.ShowProgress();
    }
}

// No player reads a stream that becomes another one in its midst, and a file cut there is made in two calls.
void CExtraction::RefuseChangeOfCodec(const FOUND_RANGE& range) const
{
    for (const auto& output : m_outputs) {
        if (output.path.empty() || output.nFrameType == KX_FRAME_TYPE_DATA)
            continue;
        const bool bVideo = output.nFrameType == KX_FRAME_TYPE_VIDEO;
        const auto& change = bVideo ? range.start.video.change : range.start.audio.change;
        if (!change || change->nOffset >= range.nEnd)
            continue;
        throw CAppError(
            EXIT_CODE::Format,
            fmt::format(
                "the {} of {} changes from {} to {} at offset {}: take the parts one by one, with --from and --to",
                output.pName, m_name, CodecName(output.nFrameType, change->nBefore),
                CodecName(output.nFrameType, change->nAfter), change->nOffset));
    }
}

void CExtraction::WriteAll(const std::function<void()>& write)
{
    try {
        write();
        for (auto& output : m_outputs) {
            if (output.sink)
                output.sink->Close();
        }
    } catch (const CAppError& error) {
        throw CAppError(error.Code(), error.what() + OutputsSoFar());
    }
}

void CExtraction::Take(const FrameInfo& frame, const FrameInfo& parsed)
{
    PAYLOAD_OUTPUT* pOutput = OutputFor(frame.frameType);
    const int32_t nErrorFlags = frame.errorFlags;
    // What is so damaged that its kind is not known may have been of the kind that was asked for.
    if (pOutput == nullptr && frame.frameType != KX_FRAME_TYPE_UNKNOWN)
        return;
    if (!IsPayloadSound(nErrorFlags)) {
        ++m_damaged[nErrorFlags];
    } else if (IsNoise(parsed)) {
        ++m_enciphered[int32_t{parsed.nEncryptType}];
    } else if (pOutput != nullptr) {
        if (!pOutput->sink)
            pOutput->sink.emplace(pOutput->path);
        const auto payload = PayloadOf(frame);
        pOutput->sink->Write(payload);
        ++pOutput->nFrames;
        pOutput->nBytes += payload.size();
    }
}

PAYLOAD_OUTPUT* CExtraction::OutputFor(int32_t nFrameType)
{
    for (auto& output : m_outputs) {
        if (output.nFrameType == nFrameType && !output.path.empty())
            return &output;
    }
    return nullptr;
}

std::string CExtraction::OutputsSoFar() const
{
    std::string text;
    for (const auto& output : m_outputs) {
        if (output.sink)
            text +=
                fmt::format("; {} is incomplete: it has {} bytes", output.sink->Name(), output.sink->WrittenBytes());
    }
    return text;
}

std::vector<std::string> CExtraction::Notes() const
{
    std::vector<std::string> notes;
    if (!m_note.empty())
        notes.push_back(m_note);
    if (m_nUnread > 0)
        notes.push_back(fmt::format("{}: its last {} bytes are no whole frame, or wait for the end of one that is not "
                                    "there; \"framesift check\" tells what is in them",
                                    m_name, m_nUnread));
    if (!m_damaged.empty())
        notes.push_back(fmt::format("{}: damaged, and left out: {}", m_name, CountsText(m_damaged, &ErrorName)));
    if (!m_enciphered.empty()) {
        const bool bKeyWouldDo = m_options.key.empty() && m_enciphered.count(KX_ENCRYPT_AES) > 0;
        notes.push_back(fmt::format("{}: enciphered, and left out: {}{}", m_name, CountsText(m_enciphered, &CipherName),
                                    bKeyWouldDo ? " (--key deciphers aes)" : ""));
    }
    return notes;
}

std::string CExtraction::Summary() const
{
    std::string text;
    for (const auto& output : m_outputs) {
        if (output.sink)
            text += fmt::format("{}{}: {} {} frames, {} bytes", text.empty() ? "" : "; ", output.sink->Name(),
                                output.nFrames, output.pName, output.nBytes);
    }
    return text;
}

const char* CExtraction::MissingKind() const
{
    for (const auto& output : m_outputs) {
        if (!output.path.empty() && output.nFrames == 0)
            return output.pName;
    }
    return nullptr;
}

} // namespace Marvane::FrameSift
