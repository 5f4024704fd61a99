#include "Recordings/Recording.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <new>
#include <vector>

#include "Frames/AnnouncedSize.h"
#include "Frames/CodeNames.h"
#include "Frames/ProgressBar.h"
#include "Frames/WhyNoFrames.h"
#include "Io/AppError.h"
#include "Io/Interrupt.h"
#include "ParserMethod/FileAnalyzer.h"
#include "Recordings/RegularFile.h"

namespace Marvane::FrameSift {

namespace {

constexpr size_t sc_chunk = size_t{1024} * 1024;
constexpr auto sc_patience = std::chrono::milliseconds(50); // Ctrl-C and the bar wait so long at most
constexpr int sc_allPercent = 100;

// As a stream, so that a disk that fails shows, a long search can be stopped, and the answer is that of the other verbs. A
// type that was fixed stays; of it is looked at the first chunk.
int32_t FindType(const CRegularFile& file, const CInterruptWatch& watch, int32_t nFixedType)
{
    CFrameSource source(nFixedType);
    std::vector<uint8_t> chunk(sc_chunk);
    CInputStart start;
    uint64_t nDone = 0;
    while (const size_t nRead = file.ReadAt(nDone, chunk)) {
        watch.ThrowIfAsked();
        nDone += nRead;
        start.Take(std::span(chunk).first(nRead));
        const int nResult = source.Feed(std::span(chunk).first(nRead));
        const int32_t nType = source.StreamType();
        if (nResult == KX_ERROR_SYSTEM_OUT_OF_MEMORY)
            throw std::bad_alloc();
        if (nResult == KX_ERROR_STREAM_NOSUPPORT)
            throw CAppError(EXIT_CODE::Format, file.Name() + " is a stream of type " + StreamTypeName(nType) + " (" +
                                                   std::to_string(nType) + "), which is not supported");
        for (LISTED_FRAME listed; source.Next(listed);) {
            if (listed.parsed.streamType == KX_STREAM_TYPE_HB)
                throw CNoIndex(file.Name());
        }
        if (nType != KX_STREAM_TYPE_UNKNOWN)
            return nType;
    }
    throw CAppError(EXIT_CODE::Format,
                    file.Name() + (nDone == 0 ? std::string(" is empty") : ": " + start.NoFormatText(nDone)));
}

struct FORMAT
{
    int32_t nStreamType;
    int32_t nInnerType;
};

LISTED_FRAME ListedFrame(const FrameInfo& record, int64_t nFrameOffset, int64_t nPayloadOffset, const FORMAT& format)
{
    LISTED_FRAME listed;
    listed.parsed = record;
    // The library hands out a deciphered frame as a clear one; the one cipher that it deciphers is this.
    if (record.bHasDecrypt != 0)
        listed.parsed.nEncryptType = KX_ENCRYPT_AES;
    listed.frame = listed.parsed;
    listed.nStreamType = format.nStreamType;
    listed.nInnerType = format.nInnerType;
    listed.nFrameOffset = nFrameOffset;
    listed.nPayloadOffset = nPayloadOffset;
    TakeAnnouncedSize(listed);
    return listed;
}

int64_t PayloadOffset(const FrameInfo& record, int64_t nFrameOffset)
{
    const bool bTold = record.streamPointer != nullptr && record.framePointer != nullptr;
    return bTold ? nFrameOffset + (record.streamPointer - record.framePointer) : nFrameOffset;
}

} // namespace

class CRecording::CPass : private CFileAnalyzer
{
public:
    CPass(const std::string& path, std::span<const uint8_t> key, int32_t nFixedType);
    ~CPass() override { Uninit(); } // while the members that the thread works on are still there
    CPass(const CPass&) = delete;
    CPass& operator=(const CPass&) = delete;

    KX_FILE_INFO Run(const TakeFrame& take, CProgressBar& progress);
    void Seek(int64_t nOffset, bool bPrecise);
    bool Read(LISTED_FRAME& listed);
    const CRegularFile& File() const { return m_file; }
    uint64_t Size() const { return m_nSize; }
    int32_t Type() const { return m_nType; }
    int32_t InnerType() { return GetInnerType(); }

private:
    int OnIndex(KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx) override;
    int OnFileInfo(KX_FILE_INFO* fileInfo) override;
    static int32_t OnEndMark(void* pAnalyzer, KX_FRAME_INFO* pFrame, KX_INDEX_INFO* pIndex, int32_t nProcess,
                             void* pUserData);

    void Start();
    bool IsAbandoned();
    void WaitForEnd(CProgressBar& progress);
    void JudgePass();
    void JudgeRest(uint64_t nFrom);

    // From before the type is known to the end: a Ctrl-C that came between two shorter watches would be forgotten.
    CInterruptWatch m_watch;
    CRegularFile m_file;
    int32_t m_nFixedType; // 0: found out
    int32_t m_nType;
    uint64_t m_nSize;
    uint64_t m_nReadEnd = 0; // behind the last frame that Read has answered

    // The thread's, until the end mark has come.
    const TakeFrame* m_pTake = nullptr;
    KX_FILE_INFO m_info = {};
    uint64_t m_nGood = 0;
    std::atomic<int64_t> m_nEnd = 0; // of the last frame

    std::mutex m_lock;
    std::condition_variable m_news;
    bool m_bEnded = false;
    std::exception_ptr m_failure; // of the taker
};

CRecording::CPass::CPass(const std::string& path, std::span<const uint8_t> key, int32_t nFixedType)
    : m_file(path), m_nFixedType(nFixedType), m_nType(FindType(m_file, m_watch, nFixedType)), m_nSize(m_file.Size())
{
    InitEx(m_nType, path.c_str());
    std::vector<uint8_t> copy(key.begin(), key.end());
    if (!key.empty() && SetExtInfo(KX_ENCRYPT_AES, copy.data(), static_cast<int>(copy.size())) != KX_SUCCESS)
        throw std::bad_alloc();
}

KX_FILE_INFO CRecording::CPass::Run(const TakeFrame& take, CProgressBar& progress)
{
    m_pTake = &take;
    Start();
    try {
        WaitForEnd(progress);
    } catch (...) {
        Uninit(); // the taker may end with our caller
        throw;
    }
    CloseThread();
    if (IsAbandoned())
        throw CNoIndex(m_file.Name());
    JudgePass();
    // The window still holds the pass's last bytes, and the next read would begin with them.
    Seek(0, true);
    return m_info;
}

// Then nothing can be read any more, wherever the pass has met the frame.
bool CRecording::CPass::IsAbandoned()
{
    FrameInfo record = {};
    ExtZOAVIFrameInfo ext = {};
    int64_t nOffset = 0;
    return m_nType == KX_STREAM_TYPE_OLD && SeekByFileOffset(0, KX_SEEK_PRECISE_OFFSET) == 0 &&
           ReadOneFrame(&nOffset, &record, &ext) == KX_ERROR_PARAMETER;
}

void CRecording::CPass::Start()
{
    const int nResult = FileParse(&OnEndMark, nullptr, this);
    if (nResult == KX_SUCCESS)
        return;
    if (nResult == KX_ERROR_SYSTEM_OUT_OF_MEMORY)
        throw std::bad_alloc();
    if (nResult == KX_ERROR_FILE_TYPE_NOSUPPORT)
        throw CAppError(EXIT_CODE::Format, "recordings of type " + StreamTypeName(m_nType) + ", as " + m_file.Name() +
                                               " is one, are not supported");
    throw CAppError(EXIT_CODE::Io, "reading " + m_file.Name() + " failed with code " + std::to_string(nResult));
}

void CRecording::CPass::WaitForEnd(CProgressBar& progress)
{
    std::unique_lock lock(m_lock);
    while (!m_bEnded && !m_failure) {
        m_news.wait_for(lock, sc_patience);
        m_watch.ThrowIfAsked();
        int nPercent = 0;
        GetProcess(&nPercent);
        const uint64_t nShare = m_nSize / sc_allPercent * static_cast<uint64_t>(std::clamp(nPercent, 0, sc_allPercent));
        progress.Update(std::max(nShare, static_cast<uint64_t>(m_nEnd.load(std::memory_order_relaxed))));
    }
    if (m_failure)
        std::rethrow_exception(m_failure);
}

// The library tells neither a read that fails from the end of the file, nor an index that has no memory from a bad frame.
void CRecording::CPass::JudgePass()
{
    if (GetLastError() == KX_ERROR_SYSTEM_OUT_OF_MEMORY || m_info.framenum != m_nGood)
        throw CAppError(EXIT_CODE::Io, "out of memory: the index of " + m_file.Name() + " does not fit");
    const auto nEnd = static_cast<uint64_t>(m_nEnd.load());
    m_nSize = std::max({m_nSize, nEnd, static_cast<uint64_t>(m_info.filesize64)}); // it may have grown meanwhile
    JudgeRest(nEnd);
    if (nEnd == 0 && NeedsFrame(m_nType, m_nFixedType != KX_STREAM_TYPE_UNKNOWN))
        throw CAppError(EXIT_CODE::Format, m_file.Name() + ": " + NoFrameText(m_nType, m_nSize));
}

// Behind the last frame there is nothing, or a frame that is cut off, or what is no frame: all of it can be read.
void CRecording::CPass::JudgeRest(uint64_t nFrom)
{
    if (m_file.Size() < m_nSize)
        throw CAppError(EXIT_CODE::Io, m_file.Name() + " became shorter while it was read");
    std::vector<uint8_t> chunk(nFrom < m_nSize ? sc_chunk : 0);
    while (nFrom < m_nSize) {
        m_watch.ThrowIfAsked();
        const size_t nRead = m_file.ReadAt(nFrom, std::span(chunk).first(std::min(chunk.size(), m_nSize - nFrom)));
        if (nRead == 0)
            throw CAppError(EXIT_CODE::Io, m_file.Name() + " became shorter while it was read");
        nFrom += nRead;
    }
}

void CRecording::CPass::Seek(int64_t nOffset, bool bPrecise)
{
    const int nResult = SeekByFileOffset(nOffset, bPrecise ? KX_SEEK_PRECISE_OFFSET : KX_SEEK_I_FRAME);
    if (nResult == KX_ERROR_SYSTEM_OUT_OF_MEMORY)
        throw std::bad_alloc();
    if (nResult != 0)
        throw CAppError(EXIT_CODE::Format,
                        m_file.Name() + ": nothing to be found around offset " + std::to_string(nOffset));
    m_nReadEnd = static_cast<uint64_t>(nOffset);
}

bool CRecording::CPass::Read(LISTED_FRAME& listed)
{
    FrameInfo record = {};
    ExtZOAVIFrameInfo ext = {};
    int64_t nOffset = 0;
    const int nResult = ReadOneFrame(&nOffset, &record, &ext);
    if (nResult == KX_ERROR_READ_FILE_END) {
        JudgeRest(m_nReadEnd);
        m_nReadEnd = m_nSize;
        return false;
    }
    if (nResult == KX_ERROR_SYSTEM_OUT_OF_MEMORY)
        throw std::bad_alloc();
    if (nResult != 0)
        throw CAppError(EXIT_CODE::Io, "reading " + m_file.Name() + " failed with code " + std::to_string(nResult));
    listed = ListedFrame(record, nOffset, PayloadOffset(record, nOffset), {m_nType, GetInnerType()});
    listed.bNumbered = InnerFormatName(m_nType, listed.nInnerType).empty();
    m_nReadEnd = static_cast<uint64_t>(nOffset + std::max(int32_t{record.frameLen}, 0));
    return true;
}

int CRecording::CPass::OnIndex(KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo, ExtZOAVIFrameInfo*)
{
    if (m_failure)
        return KX_SUCCESS; // the owner is about to stop the pass
    const int64_t nFrame = indexInfo->frameOffset;
    const FORMAT format = {m_nType, GetInnerType()};
    // The library's summary counts no frame of audio alone.
    const bool bAudioAlone = m_nType == KX_STREAM_TYPE_OLD && format.nInnerType == KX_STREAM_TYPE_UNKNOWN;
    m_nGood += frameInfo->errorFlags == KX_ERROR_FLAGS_NOERROR && !bAudioAlone ? 1 : 0;
    m_nEnd.store(nFrame + frameInfo->frameLen, std::memory_order_relaxed);
    try {
        (*m_pTake)(ListedFrame(*frameInfo, nFrame, indexInfo->streamOffset, format), indexInfo->index);
    } catch (...) { // no exception may pass through the library
        const std::lock_guard lock(m_lock);
        m_failure = std::current_exception();
        m_news.notify_one();
    }
    return KX_SUCCESS;
}

int CRecording::CPass::OnFileInfo(KX_FILE_INFO* fileInfo)
{
    m_info = *fileInfo;
    return KX_SUCCESS;
}

int32_t CRecording::CPass::OnEndMark(void*, KX_FRAME_INFO*, KX_INDEX_INFO*, int32_t, void* pUserData)
{
    auto& pass = *static_cast<CPass*>(pUserData);
    const std::lock_guard lock(pass.m_lock);
    pass.m_bEnded = true;
    pass.m_news.notify_one();
    return KX_SUCCESS;
}

CNoIndex::CNoIndex(const std::string& name)
    : CAppError(EXIT_CODE::Format,
                name + " has no index: its frames are of hb, or audio with the heads of hb, and are read "
                       "as a stream only; \"framesift frames\", \"info\" and \"extract\" do so")
{}

CRecording::CRecording(const std::string& path, std::span<const uint8_t> key, int32_t nType)
    : m_pPass(std::make_unique<CPass>(path, key, nType))
{}

CRecording::~CRecording() = default;

KX_FILE_INFO CRecording::Index(const TakeFrame& take, CProgressBar& progress)
{
    return m_pPass->Run(take, progress);
}

void CRecording::Seek(int64_t nOffset, bool bPrecise)
{
    m_pPass->Seek(nOffset, bPrecise);
}

bool CRecording::Read(LISTED_FRAME& listed)
{
    return m_pPass->Read(listed);
}

size_t CRecording::ReadBytes(uint64_t nOffset, std::span<uint8_t> buffer) const
{
    return m_pPass->File().ReadAt(nOffset, buffer);
}

const std::string& CRecording::Name() const
{
    return m_pPass->File().Name();
}

uint64_t CRecording::Size() const
{
    return m_pPass->Size();
}

int32_t CRecording::StreamType() const
{
    return m_pPass->Type();
}

int32_t CRecording::InnerType() const
{
    return m_pPass->InnerType();
}

} // namespace Marvane::FrameSift
