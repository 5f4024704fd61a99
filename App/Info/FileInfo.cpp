#include "Info/FileInfo.h"

#include <algorithm>
#include <vector>

#include "Check/FrameAccount.h"
#include "Check/TailScan.h"
#include "Frames/FrameState.h"
#include "Frames/ProgressBar.h"
#include "Recordings/Recording.h"

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
        m_account.Finish();
        for (const auto& [nChannel, listed] : m_firstVideo) {
            if (!m_report.video.HasSeen(nChannel))
                m_report.video.Follow(FormatOf(listed.parsed), listed);
        }
    }

private:
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
        const uint64_t nFrom =
            std::max(nSize - std::min(nSize, sc_longestFrame), static_cast<uint64_t>(m_account.End()));
        if (nFrom == nSize)
            return;
        std::vector<uint8_t> tail;
        tail.resize(nSize - nFrom);
        recording.ReadBytes(nFrom, tail);
        CTailScan().Scan(std::move(tail), static_cast<int64_t>(nFrom), m_account);
    }

    INFO_REPORT& m_report;
    const CHECK_OPTIONS m_options; // no key: the pass has deciphered what it could
    CFrameAccount m_account;
    std::map<uint8_t, LISTED_FRAME> m_firstVideo; // by channel
};

} // namespace

INFO_REPORT InfoOf(const std::string& path, std::span<const uint8_t> key)
{
    INFO_REPORT report;
    CFileInfo info(report);
    CRecording recording(path, key);
    CProgressBar progress(recording.Size(), false);
    recording.Index([&info](const LISTED_FRAME& listed, int64_t) { info.Take(listed); }, progress);
    info.Finish(recording);
    return report;
}

} // namespace Marvane::FrameSift
