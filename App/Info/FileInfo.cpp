#include "Info/FileInfo.h"

#include <algorithm>
#include <array>
#include <vector>

#include "Check/FrameAccount.h"
#include "Check/TailScan.h"
#include "Frames/CodeNames.h"
#include "Frames/FrameReading.h"
#include "Frames/FrameState.h"
#include "Frames/ProgressBar.h"
#include "Io/Interrupt.h"
#include "Recordings/RangeRead.h"
#include "StreamAnalzyer/OldStream/LegacyWords.h"
#include "Tools/BufferRead.h"

namespace Marvane::FrameSift {

namespace {

// A frame is shorter, so the one that the end cuts off begins in here.
constexpr uint64_t sc_longestFrame = uint64_t{20} * 1024 * 1024;

class CFileInfo
{
public:
    explicit CFileInfo(INFO_REPORT& report) : m_report(report), m_account(report.check, m_options) {}

    void Take(const LISTED_FRAME& listed)
    {
        FrameInfo frame = listed.parsed;
        CountCipher(frame);
        if (CipherStateOf(frame) == CIPHER_STATE::Deciphered)
            frame.nEncryptType = KX_ENCRYPT_UNKOWN; // the account would try to decipher it once more
        m_account.Take(frame, listed.nFrameOffset);
        TakeContents(listed);
    }

    // All but its place.
    void TakeContents(const LISTED_FRAME& listed)
    {
        const FrameInfo& frame = listed.parsed;
        m_report.nInnerType = listed.nInnerType;
        m_report.nLargestFrame = std::max(m_report.nLargestFrame, static_cast<uint32_t>(frame.frameLen));
        if (frame.errorFlags == KX_ERROR_FLAGS_NOERROR)
            TakeGood(listed);
    }

    void Finish(const CRecording& recording)
    {
        m_report.check.name = recording.Name();
        m_report.check.nStreamType = recording.StreamType();
        m_report.check.nBytes = recording.Size();
        ScanTail(recording);
        FinishAccount(recording.Size());
    }

    void Finish(CFrameReading& reading)
    {
        m_report.check.name = reading.Input().Name();
        m_report.check.nStreamType = reading.StreamType();
        m_report.check.nBytes = reading.Bytes();
        m_report.bHasPlaces = m_report.nInnerType != KX_STREAM_TYPE_HB;
        if (const uint64_t nTail = reading.UnfinishedBytes())
            TakeOldTail(nTail);
        FinishAccount(reading.Bytes());
    }

private:
    void FinishAccount(uint64_t nSize)
    {
        m_account.Finish();
        m_report.check.nBytes = nSize;
        TakeFirstFormats();
    }

    void TakeFirstFormats()
    {
        for (const auto& [nChannel, listed] : m_firstVideo) {
            if (!m_report.video.HasSeen(nChannel))
                m_report.video.Follow(FormatOf(listed.parsed), listed);
        }
    }

    void CountCipher(const FrameInfo& frame)
    {
        const CIPHER_STATE eState = CipherStateOf(frame);
        if (eState == CIPHER_STATE::Enciphered)
            ++m_report.encipheredByType[int32_t{frame.nEncryptType}];
        m_report.nDeciphered += eState == CIPHER_STATE::Deciphered ? 1 : 0;
    }

    void TakeGood(const LISTED_FRAME& listed)
    {
        const FrameInfo& frame = listed.parsed;
        const int32_t nType = frame.frameType;
        ++m_report.goodByType[nType];
        m_report.payloadByType[nType] += static_cast<uint64_t>(std::max(int32_t{frame.streamLen}, 0));
        const KX_TIME time = frame.frameTime;
        if (IsCalendarTime(time)) {
            m_report.first = m_report.first.value_or(time);
            m_report.last = time;
        }
        if (nType == KX_FRAME_TYPE_VIDEO)
            TakeVideo(listed);
        else if (nType == KX_FRAME_TYPE_AUDIO)
            m_report.audio.Follow({frame.frameEncodeType, frame.samplesPerSec, frame.channels, frame.bitsPerSample},
                                  listed);
    }

    static VIDEO_FORMAT FormatOf(const FrameInfo& frame)
    {
        return {frame.frameEncodeType, frame.width, frame.height, frame.frameRate};
    }

    // The payload of key frames tells the format, and the others inherit it. Those in front of the first one know less,
    // which is no change.
    void TakeVideo(const LISTED_FRAME& listed)
    {
        const FrameInfo& frame = listed.parsed;
        ++m_report.videoBySubType[int32_t{frame.frameSubType}];
        m_report.keys.Follow(frame);
        m_firstVideo.try_emplace(frame.curChannel, listed);
        if (IsIFrameSubType(frame.frameSubType))
            m_report.video.Follow(FormatOf(frame), listed);
    }

    void ScanTail(const CRecording& recording)
    {
        const uint64_t nSize = recording.Size();
        if (!InnerFormatName(recording.StreamType(), recording.InnerType()).empty()) {
            ScanOldTail(recording);
            return;
        }
        const uint64_t nFrom =
            std::max(nSize - std::min(nSize, sc_longestFrame), static_cast<uint64_t>(m_account.End()));
        if (nFrom == nSize)
            return;
        std::vector<uint8_t> tail;
        tail.resize(nSize - nFrom);
        recording.ReadBytes(nFrom, tail);
        CTailScan().Scan(std::move(tail), static_cast<int64_t>(nFrom), m_account);
    }

    // The pass does not say what waits at its end. Behind the last frame it is the next one, if it begins like one.
    void ScanOldTail(const CRecording& recording)
    {
        const auto nFrom = static_cast<uint64_t>(m_account.End());
        if (IsEndMark(recording, nFrom) || BeginsOldFrame(recording, nFrom))
            TakeOldTail(recording.Size() - nFrom);
    }

    // Bytes that only end the last frame are none of what is between frames: here nobody says what such bytes are.
    void TakeOldTail(uint64_t nBytes)
    {
        if (nBytes == gsk_endMarkSize)
            m_report.check.nBytes -= nBytes;
        else
            m_account.TakeOldTail(static_cast<int64_t>(m_report.check.nBytes - nBytes), nBytes);
    }

    static bool BeginsOldFrame(const CRecording& recording, uint64_t nOffset)
    {
        std::array<uint8_t, sizeof(uint32_t)> id{};
        if (recording.ReadBytes(nOffset, id) < id.size() || recording.Size() - nOffset == id.size())
            return false;
        const uint32_t nWord = LoadUint32Msb(id.data());
        return IsLegacyStart(nWord) || nWord == sc_wordData || nWord == sc_wordZOPT || nWord == MPEG4_VOP;
    }

    INFO_REPORT& m_report;
    const CHECK_OPTIONS m_options; // no key: the pass has deciphered what it could
    CFrameAccount m_account;
    std::map<uint8_t, LISTED_FRAME> m_firstVideo; // by channel
};

} // namespace

namespace {

INFO_REPORT InfoOfIndexed(const std::string& path, std::span<const uint8_t> key, int32_t nType)
{
    INFO_REPORT report;
    CFileInfo info(report);
    CRecording recording(path, key, nType);
    CProgressBar progress(recording.Size(), false);
    recording.Index([&info](const LISTED_FRAME& listed, int64_t) { info.Take(listed); }, progress);
    info.Finish(recording);
    return report;
}

INFO_REPORT InfoOfStream(const std::string& path, std::span<const uint8_t> key, int32_t nType)
{
    constexpr int32_t sc_chunk = 1024 * 1024;
    INFO_REPORT report;
    CFileInfo info(report);
    const CInterruptWatch watch;
    CFrameReading reading(path, sc_chunk, key, false, nType);
    while (reading.ReadChunk()) {
        watch.ThrowIfAsked();
        for (LISTED_FRAME listed; reading.Next(listed);) {
            if (listed.nInnerType == KX_STREAM_TYPE_HB)
                info.TakeContents(listed);
            else
                info.Take(listed);
        }
        reading.ShowProgress();
    }
    info.Finish(reading);
    return report;
}

} // namespace

INFO_REPORT InfoOf(const std::string& path, std::span<const uint8_t> key, int32_t nType)
{
    try {
        return InfoOfIndexed(path, key, nType);
    } catch (const CNoIndex&) {
        return InfoOfStream(path, key, nType);
    }
}

} // namespace Marvane::FrameSift
