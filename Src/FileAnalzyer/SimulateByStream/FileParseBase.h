// A recording, parsed by pushing it through a stream parser as if it were live.
#ifndef FRAMESIFT_SRC_FILEANALZYER_SIMULATEBYSTREAM_FILEPARSEBASE_H
#define FRAMESIFT_SRC_FILEANALZYER_SIMULATEBYSTREAM_FILEPARSEBASE_H

#include <atomic>
#include <cstdint>
#include <memory>

#include "FileAnalzyer/SimulateByStream/FrameStore.h"
#include "FileAnalzyer/SimulateByStream/IndexList.h"
#include "FileAnalzyer/SimulateByStream/ReadBlock.h"
#include "IAnalyzer/IFileAnalzyer.h"
#include "IAnalyzer/IStreamAnalzyer.h"
#include "Memory/LinkedBuffer.h"
#include "Memory/LogicData.h"

namespace Marvane::FrameSift {

struct TIME_SEARCH;

// Three passes build an index; one of them runs per object. Reads and seeks work on a second file object, through the
// parser and window of the pass: behind a full pass, and beside the index stage of a fast one, which has its own.
class CFileParseBase : public IFileAnalzyer, public IFrameCallBack
{
public:
    // Without a parser, for want of memory, a pass answers 13.
    explicit CFileParseBase(std::unique_ptr<IStreamAnalzyer> pFrameSift) : m_pFrameSift(std::move(pFrameSift)) {}
    CFileParseBase(const CFileParseBase&) = delete;
    CFileParseBase& operator=(const CFileParseBase&) = delete;

    // The full pass: all frames into the index and to the callback.
    int ParseFile(IFileManipPtr& file, IIndexCallBack* indexCallBack) override;
    // The same for a part of the file. It reports no summary and leaves the index open; nothing can be read behind it.
    int ParseSlice(IFileManipPtr& file, IIndexCallBack* indexCallBack, int64_t offset, int64_t size) override;
    // The fast pass: the times of begin and end, then, if asked for, the video frames to the callback, without an index.
    int BaseParseFile(IFileManipPtr& file, IIndexCallBack* indexCallBack, bool bParseBaseIndex) override;
    int GetProcess(int* process) override;
    void StopParse() override { m_bStopParse.store(true, std::memory_order_relaxed); }

    int GetFrameByIndex(KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx) override;
    int GetOneIndex(int index, KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx) override;
    int GetIndexCount(int flags, int* indexCount) override;
    int GetAllIndex(int flags, KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo, int structCount,
                    int* indexCount) override;
    int SetExtCommonInfo(uint32_t type, unsigned char* info, int nlen) override;

    // Pointers of the frame end at the next read or seek.
    int ReadOneFrame(int64_t* pFrameOffset, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx) override;
    int SeekByTime(uint32_t nTime) override;
    int SeekByFileOffset(int64_t fileOffset, int seekType) override;

    int GetInnerType() override { return m_pFrameSift != nullptr ? m_pFrameSift->GetType() : 0; }

    int OnFrame(FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx, void* userData) override;
    virtual void CalcDuration(KX_FILE_INFO& stFileInfo);
    // The time of a frame, in milliseconds on the clock of the summary.
    virtual int64_t RecalcTimeStamp(FrameInfo* frameInfo);
    // Another parser of the file's format; null without memory.
    virtual std::unique_ptr<IStreamAnalzyer> CreateStreamObj() { return nullptr; }

protected:
    // What the index refuses is not reported either.
    int IndexFrame(KX_INDEX_INFO& index, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx);
    IIndexCallBack* IndexCallBack() const { return m_pIndexCallBack; }
    int64_t SliceStartPos() const { return m_nSliceStartPos; }

    bool IsStopped() const { return m_bStopParse.load(std::memory_order_relaxed); }
    int FindInIndex(KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx);
    int TakeFrameBytes(const KX_INDEX_INFO& indexInfo, int32_t nFrameLen, std::unique_ptr<uint8_t[]>& pBytes,
                       int64_t& nRead);
    void PointInto(uint8_t* pFrame, const KX_INDEX_INFO& indexInfo, FrameInfo& frameInfo) const;

    std::unique_ptr<IStreamAnalzyer> m_pFrameSift;
    CLinkedBuffer m_fixBuffer; // the frame that GetFrameByIndex handed out
    CIndexList m_IndexList;

private:
    // the state of a pass
    int PrepareFeeding(IFileManipulate& file, uint32_t nBlockSize);
    int FeedFile(IFileManipulate& file, int64_t nLeft, int64_t nWhole);
    int Feed(CLogicData& window, IStreamAnalzyer& parser, CReadBlock& block, int64_t nRead);
    void CountProgress(int64_t nRead, int64_t nWhole);
    bool IsThroughIndexType() const;
    KX_INDEX_INFO IndexOf(CLogicData& window, int64_t nBase) const;
    void TellFileInfo();

    // frame events
    void ParseFileInfo(const FrameInfo& frameInfo);
    int OnFrameCommon(FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx);
    int OnFrameBase(FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx, intptr_t nUse);
    void KeepEndFrame(KX_INDEX_INFO& index, FrameInfo& frameInfo);
    void NotePreIndexFrame(const FrameInfo& frameInfo);
    int OnBaseParseIndex(KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx);

    // the fast pass
    int BaseParseInfo(IFileManipPtr& file, CReadBlock& block);
    int BaseParseBeginTime(IFileManipulate& file, CReadBlock& block);
    int GetBeginTimeFromeStore();
    bool TakeBeginTime(FrameInfo& frameInfo, int64_t nOffset);
    bool TakeStartTime(FrameInfo& frameInfo);
    int BaseParseEndTime(IFileManipulate& file, CReadBlock& block);
    bool ReadEndWindow(IFileManipulate& file, CReadBlock& block, int64_t nStart, int64_t nWindow);
    bool IsUsableEnd(const FrameInfo& frameInfo) const;
    int GetEndTimeFromStore();
    bool IsPureAudio() const { return m_bHaveAudio && !m_bHaveVideo; }
    int BaseParseIndex(IFileManipulate& file);
    int LearnStream(IFileManipulate& file, CReadBlock& block);
    int IndexFrames(IFileManipulate& file, CReadBlock& block);

    // reads
    bool CanRead() const;
    bool HasFileForReading() const { return m_fileForReadData.get() != nullptr && m_fileForReadData->IsOpen(); }
    int ReadThroughIndex(int64_t* pFrameOffset, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx);
    int ReadThroughWindow(int64_t* pFrameOffset, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx);
    int GetOneFrame(int64_t* pFrameOffset, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx);
    int HandOutNewFrame(int64_t* pFrameOffset, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx);
    int FlushLastFrame(int64_t* pFrameOffset, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx);
    int SmartPFrameSeekReposition(IFileManipPtr& file);

    // seeks
    void DropJump();
    void StartAt(int64_t nPos);
    void SeekClear();
    int SearchKeyFrame(uint64_t nOffset);
    int BackSearchIFrame(IFileManipPtr& file, uint64_t fileCurOffset);
    int ScanKeyFrames(IFileManipulate& file, int64_t nStart, int64_t nWindow, int64_t nBlock);
    bool TakeLastKeyFrame(int64_t nStart, int& nResult);
    int ForwardSearchIFrame(IFileManipPtr& file, uint64_t fileCurOffset);
    int SearchTime(TIME_SEARCH& search);
    int StartAtTime(int64_t nPos);

    CLogicData m_logicData;                     // byte window of m_pFrameSift
    IIndexCallBack* m_pIndexCallBack = nullptr; // not owned
    IFileManipPtr m_fileForReadData;            // the second file object
    CFrameStore m_frameStore;
    KX_FILE_INFO m_FileInfo{};

    int64_t m_nFileSize = 0;            // of the file or slice
    int64_t m_nCurPos = 0;              // bytes fed in this pass
    int64_t m_nSliceStartPos = 0;       // file offset of the first byte of m_logicData
    int32_t m_nFrameRate = 0;           // of the last key frame
    int32_t m_nPathEncodeType = 0;      // of the second file object
    CReadBlock m_passBlock;             // m_logicData leads into it behind the pass
    std::atomic<int32_t> m_nProcess{0}; // 0 to 100

    std::atomic<bool> m_bStopParse{false};            // never cleared
    std::atomic<bool> m_bParseFileInfoSucceed{false}; // reads and seeks are allowed; publishes what the pass has set up
    // A full pass feeds the window that reads use. A read meanwhile would pull it from under the scan.
    std::atomic<bool> m_bPassFeeds{false};
    bool m_bThroughIndex = false; // a container that can only be read through the index

    int64_t m_nStartTime = -1;            // of the first video frame, milliseconds
    int64_t m_nEndTime = -1;              // of the last usable frame
    int64_t m_nStartAudioTime = -1;       // of the first audio frame in front of any video
    int64_t m_BeginPos = -1;              // file offset where media begins
    std::atomic<uint32_t> m_nDuration{0}; // seconds, for seeking by time
    bool m_bHaveAudio = false;            // audio seen before video
    bool m_bHaveVideo = false;            // a key frame seen
    bool m_bHavaData = false;             // a cipher auxiliary data frame seen
    bool m_bEndFrameHasTime = false;      // the one that waits in the store during the end stage
    int32_t m_nStreamType = 0;            // of the last frame of the begin stage

    CLogicData m_logicDataIndex; // of the index stage, as the next
    std::unique_ptr<IStreamAnalzyer> m_pFrameSiftIndex;
    bool m_bIndexGotIframe = false;   // it has seen its first key frame
    bool m_bPreIndexGotFrame = false; // its first part may end
    bool m_bPreGotVideo = false;
    bool m_bPreGotAudio = false;

    CReadBlock m_readBlock;
    bool m_bGotFrame = false; // a frame arrived during a read
    bool m_bFlushed = false;
    int32_t m_nCurrentVideoFrameID = 1;
    bool m_bFrameLost = false;     // for want of memory, and nobody has been told yet
    int64_t m_nSmartPPos = -1;     // where reading goes on behind the key frame that a seek has found
    int64_t m_nNextSmartPPos = -1; // the same, once that key frame is out: the next read owes the jump
};

} // namespace Marvane::FrameSift

#endif
