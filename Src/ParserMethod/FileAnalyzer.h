// The object behind a file handle: the path, the keys, the callbacks, and the thread of the pass.
#ifndef FRAMESIFT_SRC_PARSERMETHOD_FILEANALYZER_H
#define FRAMESIFT_SRC_PARSERMETHOD_FILEANALYZER_H

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

#include "ESParse/ESHead.h"
#include "Error/Error.h"
#include "IAnalyzer/IFileAnalzyer.h"
#include "IAnalyzer/IGetError.h"
#include "Memory/LogicData.h"
#include "ThreadControl/KXThread.h"

namespace Marvane::FrameSift {

// One thread of the caller and one parse thread. The caller reads and seeks once the end mark has come. What the parse
// thread looks at is set before it begins and stays until it has ended; there is no lock.
class CFileAnalyzer : public IIndexCallBack, public CKXThread, public IGetError
{
public:
    CFileAnalyzer() = default;
    ~CFileAnalyzer() override;

    int OnIndex(KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx) override;
    int OnFileInfo(KX_FILE_INFO* fileInfo) override;
    int32_t GetLastError() override { return m_errorType.GetErrorType(); }
    // A key for the parser, to be given before parsing: kinds 1 and 8 as bytes, 9 to 13 as a KX_DECRYPT_PARAM.
    virtual int SetExtInfo(uint32_t type, unsigned char* key, int keylen);
    int InsideThreadProc() override;

    // Keeps path and type; no file is opened. 6 for a null path, 13 without memory.
    int InitEx(int nType, const char* fileName);
    // Starts the pass over the path that InitEx kept. A pass that runs is stopped and waited for first; on the parse
    // thread itself, which cannot wait for its own end, the answer is 4.
    int FileParse(fFileIndex fileIndex, fFileInfo fileInfo, void* userData);
    // Both in one; the path is not kept.
    int Init(int nType, const char* fileName, fFileIndex fileIndex, fFileInfo fileInfo, void* userData);
    // Stops the pass, waits for its thread and lets go of all. A derived class calls it in its own destructor.
    int Uninit();
    // Deletes the object as soon as no thread runs in it: here, or by the parse thread, if that is the caller.
    void Destroy();
    // No callback begins any more, and no pass. One that runs goes on to its next block. Any thread.
    void EndCallBacks();

    int SetSlice(int64_t sliceoffset, int64_t slicesize);
    int SetExtCommonInfo(uint32_t type, const unsigned char* pExtData, int nExtDataLen);
    // The pass will be the fast one.
    void SetBaseRead() { m_bBaseRead = true; }

    int GetStreamType();
    // The format that the parser has found inside: of a legacy recording, 0 as long as it is audio alone. During the pass
    // for its callbacks only.
    int GetInnerType() { return m_pFileAnalzyer != nullptr ? m_pFileAnalzyer->GetInnerType() : 0; }
    int GetProcess(int* process);
    int GetOneIndex(int index, KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx);
    int GetIndexCount(int flags, int* indexCount);
    int GetAllIndex(int flags, KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo, int structCount, int* indexCount);
    int GetFrameByIndex(KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx);
    int ReadOneFrame(int64_t* pFrameOffset, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx);
    int SeekByTime(uint32_t nTime);
    int SeekByFileOffset(int64_t fileOffset, int seekType);

protected:
    // The pass ends at its next block, as if the file ended there. Any thread, once FileParse has answered.
    void StopParse();
    // Null for a type without a parser, and without memory.
    virtual std::unique_ptr<IFileAnalzyer> MakeParser(int nStreamType);

private:
    int StoreError(int nResult);
    int Start(const char* fileName, fFileIndex fileIndex, fFileInfo fileInfo, void* userData);
    IFileManipPtr OpenFile(const char* fileName) const;
    bool IsOpen() const { return m_opFile.get() != nullptr && m_opFile->IsOpen(); }
    void CloseFile();

    int AnalyzeStreamType();
    int DetectType();
    bool CreateFileAnalzyer();
    bool CreateOfKnownType();
    void HandOverKey();
    void HandOverKeyRing();
    int StoreInKeyRing(const KX_DECRYPT_PARAM& param);

    int FullPass();
    int FastPass();
    int BaseParseFile();
    void SendEndMark();

    CESHead m_aesKey; // kinds 1 and 8
    std::array<KX_DECRYPT_PARAM, 10> m_DecryptParam{};
    int32_t m_nVkekNum = 0; // next slot of m_DecryptParam
    void* m_pUserData = nullptr;
    fFileIndex m_pfnFileIndex = nullptr;
    fFileInfo m_pfnFileInfo = nullptr;
    IFileManipPtr m_opFile;        // of the detection, then of the pass
    int64_t m_nSliceStartPos = -1; // below 0: the whole file
    int64_t m_nSliceLength = -1;
    CError m_errorType;
    std::unique_ptr<IFileAnalzyer> m_pFileAnalzyer;
    CLogicData m_logicData;      // the detector's window
    int32_t m_nExtInfoType = -1; // kind of the last key, also of one that was refused
    std::atomic<int32_t> m_nStreamType{0};
    bool m_bHasPreParse = false; // the detector has read the file
    std::atomic<bool> m_bEnded{false};
    int32_t m_nExtCommonType = -1;
    int32_t m_nPathEncodeType = 0;
    bool m_bBaseRead = false;
    std::string m_FileName;
};

} // namespace Marvane::FrameSift

#endif
